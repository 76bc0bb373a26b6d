// Products against independent references: the exact rounding of scaled
// integer products (every 8u pair, boundary and random operands of the wider
// types, scales -40 to 40 and the extremes), double evaluations of the
// floating forms, and the val shortcuts with NaN and signed zeros.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "orvspx.h"
#include "support/exact_ref.hpp"
#include "support/test_support.hpp"

namespace {

using orvtest::Wide;

std::vector<int> scales(int lo, int hi) {
  std::vector<int> out;
  for (int s = lo; s <= hi; ++s) out.push_back(s);
  for (int s : {INT_MIN, INT_MIN + 1, -1000, 1000, INT_MAX - 1, INT_MAX}) out.push_back(s);
  return out;
}

// One integer product function on part arrays of type P. Real forms combine
// x[j] with y[j] (y[0] for a scalar); complex forms treat parts 2e and 2e+1
// as one element. In-place forms find x in dst.
template <typename P>
struct Form {
  std::string name;
  bool complex;
  bool scalar;
  bool inPlace;
  bool scaled;
  std::function<orvStatus(const P* x, const P* y, P* dst, int len, int s)> run;
};

template <typename C, typename P>
const C* as(const P* p) {
  return reinterpret_cast<const C*>(p);
}
template <typename C, typename P>
C* as(P* p) {
  return reinterpret_cast<C*>(p);
}
template <typename C, typename P>
C scalarOf(const P* y) {
  if constexpr (sizeof(C) == sizeof(P)) {
    return static_cast<C>(y[0]);
  } else {
    return C{y[0], y[1]};
  }
}
template <typename P, typename C>
constexpr bool isComplex() {
  return sizeof(C) != sizeof(P);
}

template <typename P, typename C>
Form<P> vecOut(const char* n, orvStatus (*f)(const C*, const C*, C*, int, int)) {
  return {n, isComplex<P, C>(), false, false, true,
          [f](const P* x, const P* y, P* d, int len, int s) { return f(as<C>(x), as<C>(y), as<C>(d), len, s); }};
}
template <typename P, typename C>
Form<P> vecIn(const char* n, orvStatus (*f)(const C*, C*, int, int)) {
  return {n, isComplex<P, C>(), false, true, true,
          [f](const P*, const P* y, P* d, int len, int s) { return f(as<C>(y), as<C>(d), len, s); }};
}
template <typename P, typename C>
Form<P> vecOut0(const char* n, orvStatus (*f)(const C*, const C*, C*, int)) {
  return {n, isComplex<P, C>(), false, false, false,
          [f](const P* x, const P* y, P* d, int len, int) { return f(as<C>(x), as<C>(y), as<C>(d), len); }};
}
template <typename P, typename C>
Form<P> vecIn0(const char* n, orvStatus (*f)(const C*, C*, int)) {
  return {n, isComplex<P, C>(), false, true, false,
          [f](const P*, const P* y, P* d, int len, int) { return f(as<C>(y), as<C>(d), len); }};
}
template <typename P, typename C>
Form<P> scalarOut(const char* n, orvStatus (*f)(const C*, C, C*, int, int)) {
  return {n, isComplex<P, C>(), true, false, true, [f](const P* x, const P* y, P* d, int len, int s) {
            return f(as<C>(x), scalarOf<C>(y), as<C>(d), len, s);
          }};
}
template <typename P, typename C>
Form<P> scalarIn(const char* n, orvStatus (*f)(C, C*, int, int)) {
  return {n, isComplex<P, C>(), true, true, true,
          [f](const P*, const P* y, P* d, int len, int s) { return f(scalarOf<C>(y), as<C>(d), len, s); }};
}
template <typename P, typename C>
Form<P> scalarIn0(const char* n, orvStatus (*f)(C, C*, int)) {
  return {n, isComplex<P, C>(), true, true, false,
          [f](const P*, const P* y, P* d, int len, int) { return f(scalarOf<C>(y), as<C>(d), len); }};
}

#define MUL_FORM(maker, P, fn) maker<P>(#fn, fn)

std::vector<Form<orv8u>> forms8u() {
  return {MUL_FORM(vecOut, orv8u, orvsMul_8u_Sfs), MUL_FORM(vecIn, orv8u, orvsMul_8u_ISfs),
          MUL_FORM(scalarOut, orv8u, orvsMulC_8u_Sfs), MUL_FORM(scalarIn, orv8u, orvsMulC_8u_ISfs)};
}

std::vector<Form<orv16s>> forms16s() {
  return {MUL_FORM(vecOut, orv16s, orvsMul_16s_Sfs),    MUL_FORM(vecIn, orv16s, orvsMul_16s_ISfs),
          MUL_FORM(vecOut0, orv16s, orvsMul_16s),       MUL_FORM(vecIn0, orv16s, orvsMul_16s_I),
          MUL_FORM(scalarOut, orv16s, orvsMulC_16s_Sfs), MUL_FORM(scalarIn, orv16s, orvsMulC_16s_ISfs),
          MUL_FORM(scalarIn0, orv16s, orvsMulC_16s_I),  MUL_FORM(vecOut, orv16s, orvsMul_16sc_Sfs),
          MUL_FORM(vecIn, orv16s, orvsMul_16sc_ISfs),   MUL_FORM(scalarOut, orv16s, orvsMulC_16sc_Sfs),
          MUL_FORM(scalarIn, orv16s, orvsMulC_16sc_ISfs)};
}

std::vector<Form<orv32s>> forms32s() {
  return {MUL_FORM(vecOut, orv32s, orvsMul_32s_Sfs),     MUL_FORM(vecIn, orv32s, orvsMul_32s_ISfs),
          MUL_FORM(scalarOut, orv32s, orvsMulC_32s_Sfs), MUL_FORM(scalarIn, orv32s, orvsMulC_32s_ISfs),
          MUL_FORM(vecOut, orv32s, orvsMul_32sc_Sfs),    MUL_FORM(vecIn, orv32s, orvsMul_32sc_ISfs),
          MUL_FORM(scalarOut, orv32s, orvsMulC_32sc_Sfs), MUL_FORM(scalarIn, orv32s, orvsMulC_32sc_ISfs)};
}

// The exact product of part j: x[j] * y[j], or the re or im sum of the
// complex element that part j belongs to.
template <typename P>
Wide exactPart(const Form<P>& form, const std::vector<P>& x, const std::vector<P>& y, std::size_t j) {
  auto yAt = [&](std::size_t k) { return Wide(form.scalar ? y[k % (form.complex ? 2 : 1)] : y[k]); };
  if (!form.complex) return Wide(x[j]) * yAt(j);
  const std::size_t e = j & ~std::size_t(1);
  const Wide a = x[e], b = x[e + 1], c = yAt(e), d = yAt(e + 1);
  return (j & 1) ? a * d + b * c : a * c - b * d;
}

template <typename P>
std::string show(P v) {
  return std::to_string(static_cast<long long>(v));
}

// Runs `form` on x with y and compares every part with the exact reference.
template <typename P, typename Expected>
void runAndCheck(const Form<P>& form, const std::vector<P>& x, const std::vector<P>& y, int s,
                 const Expected& expected) {
  const int len = static_cast<int>(x.size()) / (form.complex ? 2 : 1);
  std::vector<P> dst(x.size() + 1, P(0x5A));
  if (form.inPlace) std::copy(x.begin(), x.end(), dst.begin());
  ASSERT_EQ(form.run(x.data(), y.data(), dst.data(), len, s), orvOk) << form.name << " scaleFactor " << s;
  ASSERT_EQ(dst.back(), P(0x5A)) << form.name << " wrote past the end, scaleFactor " << s;
  for (std::size_t j = 0; j < x.size(); ++j) {
    const Wide t = exactPart(form, x, y, j);
    const P want = expected(t);
    if (dst[j] != want) {
      ADD_FAILURE() << form.name << " scaleFactor " << s << " part " << j << " (t " << orvtest::toString(t)
                    << ") gave " << show(dst[j]) << ", expected " << show(want);
      return;
    }
  }
}

// ---- 8u: every operand pair ---------------------------------------------

TEST(Mul8u, EveryOperandPairAtEveryScale) {
  std::vector<orv8u> pairX(65536), pairY(65536), row(256);
  for (int i = 0; i < 65536; ++i) {
    pairX[i] = static_cast<orv8u>(i & 255);
    pairY[i] = static_cast<orv8u>(i >> 8);
  }
  for (int i = 0; i < 256; ++i) row[i] = static_cast<orv8u>(i);

  for (int s : scales(-10, 18)) {
    std::vector<orv8u> table(65026);
    for (int t = 0; t <= 65025; ++t) table[t] = orvtest::exactScaledTo<orv8u>(t, s);
    const auto expected = [&table](Wide t) { return table[static_cast<int>(t)]; };
    for (const auto& form : forms8u()) {
      if (!form.scalar) {
        runAndCheck(form, pairX, pairY, s, expected);
      } else {
        for (int v = 0; v < 256; ++v) runAndCheck(form, row, {static_cast<orv8u>(v)}, s, expected);
      }
    }
  }
}

TEST(Mul8u, WidenedProductsOfEveryPair) {
  std::vector<orv8u> a(65536), b(65536);
  for (int i = 0; i < 65536; ++i) {
    a[i] = static_cast<orv8u>(i & 255);
    b[i] = static_cast<orv8u>(i >> 8);
  }
  std::vector<orv16u> d(65536);
  ASSERT_EQ(orvsMul_8u16u(a.data(), b.data(), d.data(), 65536), orvOk);
  for (int i = 0; i < 65536; ++i) ASSERT_EQ(d[i], a[i] * b[i]) << i;
}

// ---- 16s, 16sc, 32s, 32sc ----------------------------------------------------

// 0, +-1, +-2, +-3, the extremes and their neighbours, +-2^k and +-(2^k +- 1).
template <typename P>
std::vector<P> boundaryValues() {
  using L = std::numeric_limits<P>;
  std::vector<long long> v = {0, 1, -1, 2, -2, 3, -3, L::max(), L::max() - 1, L::min(), L::min() + 1};
  for (int k = 2; k < L::digits; ++k) {
    const long long p = 1LL << k;
    for (long long q : {p, p - 1, p + 1}) {
      if (q <= L::max()) v.push_back(q);
      if (-q >= L::min()) v.push_back(-q);
    }
  }
  std::vector<P> out;
  for (long long q : v) out.push_back(static_cast<P>(q));
  return out;
}

template <typename P>
void sweepWide(const std::vector<Form<P>>& forms, int boundaryStep, unsigned seed) {
  using L = std::numeric_limits<P>;
  const std::vector<P> all = boundaryValues<P>();
  std::vector<P> values;
  for (std::size_t i = 0; i < all.size(); i += (i < 11 ? 1 : boundaryStep)) values.push_back(all[i]);
  const std::size_t n = values.size();
  std::mt19937_64 gen(seed);
  auto randomPart = [&gen]() {
    const std::uint64_t r = gen();
    return (r & 1) ? static_cast<P>(r >> 8) : static_cast<P>(static_cast<std::int64_t>(r >> 8) % 4096);
  };

  // Complex elements whose imaginary sum reaches 2^(bits - 1) and its
  // neighbours, then every pair of boundary values, then random pairs.
  std::vector<P> pairX = {L::min(), L::min(), L::min(), L::min(), L::min(), L::min(), L::min(), L::max()};
  std::vector<P> pairY = {L::min(), L::min(), L::min(), L::max(), L::max(), L::min(), L::min(), L::min()};
  for (std::size_t a = 0; a < n; ++a) {
    for (std::size_t b = 0; b < n; ++b) {
      pairX.push_back(values[a]);
      pairY.push_back(values[b]);
    }
  }
  while (pairX.size() < n * n + 2048 || pairX.size() % 2 != 0) {
    pairX.push_back(randomPart());
    pairY.push_back(randomPart());
  }
  std::vector<P> row = values;
  while (row.size() < n + 254 || row.size() % 2 != 0) row.push_back(randomPart());
  for (P v : {L::min(), L::min(), L::min(), L::max()}) row.push_back(v);
  std::vector<std::vector<P>> scalars = {{L::min(), L::min()}, {L::max(), L::min()}, {0, 0}, {1, 0}};
  for (std::size_t a = 0; a < n; ++a) scalars.push_back({values[a], values[(a * 7 + 3) % n]});
  for (int i = 0; i < 8; ++i) scalars.push_back({randomPart(), randomPart()});

  for (int s : scales(-40, 40)) {
    const auto expected = [s](Wide t) { return orvtest::exactScaledTo<P>(t, s); };
    for (const auto& form : forms) {
      if (!form.scaled && s != 0) continue;
      SCOPED_TRACE(form.name);
      if (!form.scalar) {
        runAndCheck(form, pairX, pairY, s, expected);
      } else {
        for (const auto& val : scalars) runAndCheck(form, row, val, s, expected);
      }
    }
  }
}

TEST(Mul16s, BoundaryAndRandomOperandsAtEveryScale) { sweepWide(forms16s(), 1, 16); }

TEST(Mul32s, BoundaryAndRandomOperandsAtEveryScale) { sweepWide(forms32s(), 2, 32); }

// The mixed forms: 16u x 16s -> 16s and 16s x 16s -> 32s.
TEST(MulMixed, BoundaryOperandsAtEveryScale) {
  const std::vector<orv16s> s16 = boundaryValues<orv16s>();
  std::vector<orv16u> u16 = {0, 1, 2, 3, 65535, 65534, 32767, 32768};
  for (int k = 2; k < 16; ++k) u16.insert(u16.end(), {orv16u(1 << k), orv16u((1 << k) - 1), orv16u((1 << k) + 1)});
  std::vector<orv16u> ux;
  std::vector<orv16s> uy, sx, sy;
  for (orv16u a : u16)
    for (orv16s b : s16) ux.push_back(a), uy.push_back(b);
  for (orv16s a : s16)
    for (orv16s b : s16) sx.push_back(a), sy.push_back(b);
  std::vector<orv16s> d16(ux.size());
  std::vector<orv32s> d32(sx.size());
  for (int s : scales(-40, 40)) {
    ASSERT_EQ(orvsMul_16u16s_Sfs(ux.data(), uy.data(), d16.data(), int(ux.size()), s), orvOk);
    for (std::size_t i = 0; i < ux.size(); ++i) {
      ASSERT_EQ(d16[i], orvtest::exactScaledTo<orv16s>(Wide(ux[i]) * uy[i], s))
          << ux[i] << " * " << uy[i] << " scaleFactor " << s;
    }
    ASSERT_EQ(orvsMul_16s32s_Sfs(sx.data(), sy.data(), d32.data(), int(sx.size()), s), orvOk);
    for (std::size_t i = 0; i < sx.size(); ++i) {
      ASSERT_EQ(d32[i], orvtest::exactScaledTo<orv32s>(Wide(sx[i]) * sy[i], s))
          << sx[i] << " * " << sy[i] << " scaleFactor " << s;
    }
  }
}

// ---- Worked values ---------------------------------------------------------------

TEST(MulWorkedValues, SaturationShiftAndGuard) {
  struct Row {
    orvStatus (*f)(const orv16s*, const orv16s*, orv16s*, int, int);
    orv16s a, b;
    int s;
    orv16s result;
  };
  const Row rows[] = {
      {orvsMul_16s_Sfs, -32768, -32768, 15, 32767}, {orvsMul_16s_Sfs, -32768, -32768, 30, 1},
      {orvsMul_16s_Sfs, -32768, -32768, 31, 0},     {orvsMul_16s_Sfs, 1, 1, -16, 32767},
      {orvsMul_16s_Sfs, 1, -1, -16, -32768},        {orvsMul_16s_Sfs, 0, 1, -16, 0},
      {orvsMul_16s_Sfs, 300, 200, 1, 30000},        {orvsMul_16s_Sfs, 300, 200, 0, 32767},
  };
  for (const Row& r : rows) {
    orv16s d = 0x5A;
    ASSERT_EQ(r.f(&r.a, &r.b, &d, 1, r.s), orvOk);
    EXPECT_EQ(d, r.result) << r.a << " * " << r.b << " scaleFactor " << r.s;
  }
  // Both operands -32768 - 32768i: re 0, im 2^31 read as 2^31 - 1.
  const orv16sc m{-32768, -32768};
  for (auto [s, im] : {std::pair<int, orv16s>{0, 32767}, {1, 32767}, {16, 32767}, {17, 16384}, {31, 1}, {32, 0}}) {
    orv16sc d{1, 1};
    ASSERT_EQ(orvsMul_16sc_Sfs(&m, &m, &d, 1, s), orvOk);
    EXPECT_EQ(d.re, 0) << s;
    EXPECT_EQ(d.im, im) << s;
    orv16sc e = m;
    ASSERT_EQ(orvsMulC_16sc_ISfs(m, &e, 1, s), orvOk);
    EXPECT_EQ(e.im, im) << s;
  }
  const orv32sc m32{INT32_MIN, INT32_MIN};
  orv32sc d32{};
  ASSERT_EQ(orvsMul_32sc_Sfs(&m32, &m32, &d32, 1, 63), orvOk);
  EXPECT_EQ(d32.im, 1);
  ASSERT_EQ(orvsMul_32sc_Sfs(&m32, &m32, &d32, 1, 32), orvOk);
  EXPECT_EQ(d32.im, INT32_MAX);

  orv16s x[2] = {3, 1};
  ASSERT_EQ(orvsMulC_16s_ISfs(2, x, 2, 1), orvOk);
  EXPECT_EQ(x[0], 3);
  EXPECT_EQ(x[1], 1);
  for (auto [s, r] : {std::pair<int, orv16s>{-1, 32767}, {30, 1}, {31, 0}}) {
    orv16s e = -32768;
    ASSERT_EQ(orvsMulC_16s_ISfs(-32768, &e, 1, s), orvOk);
    EXPECT_EQ(e, r) << s;
  }
  for (auto [s, r] : {std::pair<int, orv8u>{16, 1}, {17, 0}, {8, 254}}) {
    const orv8u a = 255;
    orv8u d = 0;
    ASSERT_EQ(orvsMul_8u_Sfs(&a, &a, &d, 1, s), orvOk);
    EXPECT_EQ(d, r) << s;
  }
  const orv16u u = 65535;
  const orv16s v = -32768;
  orv16s d = 0;
  ASSERT_EQ(orvsMul_16u16s_Sfs(&u, &v, &d, 1, 0), orvOk);
  EXPECT_EQ(d, -32768);
  ASSERT_EQ(orvsMul_16u16s_Sfs(&u, &v, &d, 1, -15), orvOk);
  EXPECT_EQ(d, -32768);
}

// ---- val shortcuts of the integer scalar forms --------------------------------------

TEST(MulCShortcuts, ZeroClearsAtEveryScaleAndOneKeepsAtScaleZero) {
  for (int s : {INT_MIN, -40, -1, 0, 1, 40, INT_MAX}) {
    orv16s v[3] = {5, -7, 32767};
    ASSERT_EQ(orvsMulC_16s_ISfs(0, v, 3, s), orvOk);
    EXPECT_EQ(v[0] | v[1] | v[2], 0) << s;
    orv8u b[2] = {9, 255};
    ASSERT_EQ(orvsMulC_8u_ISfs(0, b, 2, s), orvOk);
    EXPECT_EQ(b[0] | b[1], 0) << s;
  }
  const orv16s src[3] = {5, -7, -32768};
  orv16s dst[3] = {0, 0, 0};
  ASSERT_EQ(orvsMulC_16s_Sfs(src, 1, dst, 3, 0), orvOk);
  EXPECT_EQ(std::memcmp(src, dst, sizeof src), 0);
  orv16s inPlace[3] = {5, -7, -32768};
  ASSERT_EQ(orvsMulC_16s_I(1, inPlace, 3), orvOk);
  EXPECT_EQ(std::memcmp(src, inPlace, sizeof src), 0);
  ASSERT_EQ(orvsMulC_16s_I(0, inPlace, 3), orvOk);
  EXPECT_EQ(inPlace[0] | inPlace[1] | inPlace[2], 0);
}

// ---- Argument checks -------------------------------------------------------------------

template <typename P>
void checkForms(const std::vector<Form<P>>& forms) {
  const std::vector<P> x(4, P(3)), y(4, P(2));
  for (const auto& form : forms) {
    std::vector<P> dst(4, P(0x5A));
    EXPECT_EQ(form.run(x.data(), y.data(), nullptr, 2, 0), orvErrNullPointer) << form.name;
    EXPECT_EQ(form.run(x.data(), y.data(), nullptr, 0, 0), orvErrNullPointer) << form.name;
    if (!form.inPlace) {
      EXPECT_EQ(form.run(nullptr, y.data(), dst.data(), 2, 0), orvErrNullPointer) << form.name;
    }
    if (!form.scalar) {
      EXPECT_EQ(form.run(x.data(), nullptr, dst.data(), 2, 0), orvErrNullPointer) << form.name;
    }
    EXPECT_EQ(form.run(x.data(), y.data(), dst.data(), 0, 0), orvErrSize) << form.name;
    EXPECT_EQ(form.run(x.data(), y.data(), dst.data(), INT_MIN, 5), orvErrSize) << form.name;
    EXPECT_EQ(dst, std::vector<P>(4, P(0x5A))) << form.name;
  }
}

TEST(MulChecks, NullPointerBeforeSizeAndNothingWritten) {
  checkForms(forms8u());
  checkForms(forms16s());
  checkForms(forms32s());
  const orv16s a = 1;
  orv16s d16 = 0;
  orv32s d32 = 0;
  EXPECT_EQ(orvsMul_16u16s_Sfs(nullptr, &a, &d16, 0, 0), orvErrNullPointer);
  EXPECT_EQ(orvsMul_16s32s_Sfs(&a, &a, &d32, 0, 0), orvErrSize);
  EXPECT_EQ(orvsMul_8u16u(nullptr, nullptr, nullptr, 0), orvErrNullPointer);
  EXPECT_EQ(orvsMul_16s32f(&a, &a, nullptr, 1), orvErrNullPointer);
  EXPECT_EQ(orvsMulC_8u_ISfs(0, nullptr, 1, 0), orvErrNullPointer);
  EXPECT_EQ(orvsMulC_16s_I(1, &d16, 0), orvErrSize);
}

}  // namespace
