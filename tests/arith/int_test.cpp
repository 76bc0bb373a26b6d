// Scaled, saturating integer sums, differences and products against the
// exact reference: every 8u operand pair at every scale that is not
// constant, boundary and random operands of 16s, 16sc, 32s and 32sc across
// scales -40 to 40 and the extreme scales.
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <vector>

#include "arith/forms.hpp"

namespace {

using arithtest::Form;
using orvtest::Wide;

std::vector<int> scales(int lo, int hi) {
  std::vector<int> out;
  for (int s = lo; s <= hi; ++s) out.push_back(s);
  for (int s : {INT_MIN, INT_MIN + 1, -1000, 1000, INT_MAX - 1, INT_MAX}) out.push_back(s);
  return out;
}

// Runs `form` on x with second operand y and compares each part with
// expected(exact part); one spare part must stay as it is.
template <typename P, typename Expected>
void runAndCheck(const Form<P>& form, const std::vector<P>& x, const std::vector<P>& y, int s,
                 const Expected& expected) {
  std::vector<P> dst(x.size() + 1, P(0x5A));
  if (form.inPlace) std::copy(x.begin(), x.end(), dst.begin());
  ASSERT_EQ(form.run(x.data(), y.data(), dst.data(), int(x.size()) / form.lanes, s), orvOk) << form.name << " " << s;
  ASSERT_EQ(dst.back(), P(0x5A)) << form.name << " wrote past the end, scaleFactor " << s;
  for (std::size_t j = 0; j < x.size(); ++j) {
    const Wide t = arithtest::exactPart(form, x.data(), y.data(), j);
    if (dst[j] != expected(t)) {
      ADD_FAILURE() << form.name << " scaleFactor " << s << " part " << j << " (t " << orvtest::toString(t)
                    << ") gave " << (long long)dst[j] << ", expected " << (long long)expected(t);
      return;
    }
  }
}

// Vector forms take the pairs, scalar forms each scalar with the row.
template <typename P, typename Expected>
void runForms(const std::vector<Form<P>>& forms, const std::vector<P>& pairX, const std::vector<P>& pairY,
              const std::vector<P>& row, const std::vector<std::vector<P>>& scalars, int s, const Expected& expected) {
  for (const auto& form : forms) {
    if (!form.scaled && s != 0) continue;
    if (!form.scalar) runAndCheck(form, pairX, pairY, s, expected);
    for (const auto& val : scalars)
      if (form.scalar) runAndCheck(form, row, val, s, expected);
  }
}

TEST(Arith8u, EveryOperandPairAtEveryScale) {
  std::vector<orv8u> pairX(65536), pairY(65536), row(256);
  std::vector<std::vector<orv8u>> scalars;
  for (int i = 0; i < 65536; ++i) pairX[i] = orv8u(i & 255), pairY[i] = orv8u(i >> 8);
  for (int i = 0; i < 256; ++i) row[i] = orv8u(i), scalars.push_back({orv8u(i)});
  for (int s : scales(-12, 18)) {
    // t lies in -255..65025: the expected results of this scale as a table.
    std::vector<orv8u> table(65281);
    for (int t = -255; t <= 65025; ++t) table[t + 255] = orvtest::exactScaledTo<orv8u>(t, s);
    runForms(arithtest::forms8u(), pairX, pairY, row, scalars, s, [&](Wide t) { return table[int(t) + 255]; });
  }
}

// 0, +-1, +-2, +-3, the extremes and their neighbours, +-2^k and +-(2^k +- 1):
// their sums, differences and products hit the extremes and the ties of
// every scale and their neighbours.
template <typename P>
std::vector<P> boundaryValues() {
  using L = std::numeric_limits<P>;
  std::vector<P> v = {0, 1, -1, 2, -2, 3, -3, L::max(), L::max() - 1, L::min(), L::min() + 1};
  for (int k = 2; k < L::digits; ++k) {
    for (long long q : {1LL << k, (1LL << k) - 1, (1LL << k) + 1}) {
      if (q <= L::max()) v.push_back(P(q));
      if (-q >= L::min()) v.push_back(P(-q));
    }
  }
  return v;
}

template <typename P>
void sweepWide(const std::vector<Form<P>>& forms, unsigned seed) {
  using L = std::numeric_limits<P>;
  const std::vector<P> values = boundaryValues<P>();
  const std::size_t n = values.size();
  std::mt19937_64 gen(seed);
  auto randomPart = [&gen]() {  // half full-range, half small, where rounding shows
    const std::uint64_t r = gen();
    return (r & 1) ? static_cast<P>(r >> 8) : static_cast<P>(static_cast<std::int64_t>(r >> 8) % 4096);
  };
  // Complex elements whose imaginary product sum reaches 2^(bits - 1) and
  // its neighbours, every pair of boundary values, random pairs.
  std::vector<P> pairX = {L::min(), L::min(), L::min(), L::min(), L::min(), L::min(), L::min(), L::max()};
  std::vector<P> pairY = {L::min(), L::min(), L::min(), L::max(), L::max(), L::min(), L::min(), L::min()};
  for (P a : values)
    for (P b : values) pairX.push_back(a), pairY.push_back(b);
  while (pairX.size() < n * n + 2048 || pairX.size() % 2) pairX.push_back(randomPart()), pairY.push_back(randomPart());
  std::vector<P> row = values;
  while (row.size() < n + 254 || row.size() % 2) row.push_back(randomPart());
  for (P v : {L::min(), L::min(), L::min(), L::max()}) row.push_back(v);
  std::vector<std::vector<P>> scalars = {{L::min(), L::min()}, {L::max(), L::min()}, {0, 0}, {1, 0}};
  for (std::size_t a = 0; a < n; ++a) scalars.push_back({values[a], values[(a * 7 + 3) % n]});
  for (int i = 0; i < 8; ++i) scalars.push_back({randomPart(), randomPart()});
  for (int s : scales(-40, 40)) {
    SCOPED_TRACE(s);
    runForms(forms, pairX, pairY, row, scalars, s, [s](Wide t) { return orvtest::exactScaledTo<P>(t, s); });
  }
}

TEST(Arith16s, BoundaryAndRandomOperandsAtEveryScale) { sweepWide(arithtest::forms16s(), 16); }
TEST(Arith32s, BoundaryAndRandomOperandsAtEveryScale) { sweepWide(arithtest::forms32s(), 32); }

// The mixed and widening forms against exact sums and products.
TEST(ArithMixed, WideningAndMixedFormsAtEveryScale) {
  std::vector<orv8u> a(65536), b(65536);
  for (int i = 0; i < 65536; ++i) a[i] = orv8u(i & 255), b[i] = orv8u(i >> 8);
  std::vector<orv16u> w(65536), p(65536);
  ASSERT_EQ(orvsAdd_8u16u(a.data(), b.data(), w.data(), 65536), orvOk);
  ASSERT_EQ(orvsMul_8u16u(a.data(), b.data(), p.data(), 65536), orvOk);
  for (int i = 0; i < 65536; ++i) ASSERT_TRUE(w[i] == a[i] + b[i] && p[i] == a[i] * b[i]) << i;

  const std::vector<orv32u> v = {0, 1, 2, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF, 0x10000, 0x7FFFFFFF, 0x80000000u,
                                 0xFFFFFFFEu, 0xFFFFFFFFu};
  std::vector<orv16u> x16, y16;
  std::vector<orv32u> x32, y32;
  for (orv32u p : v) {
    for (orv32u q : v) {
      x32.push_back(p), y32.push_back(q);
      if (p <= 0xFFFF && q <= 0xFFFF) x16.push_back(orv16u(p)), y16.push_back(orv16u(q));
    }
  }
  std::vector<orv16u> d16(x16.size());
  std::vector<orv32u> d32(x32.size());
  ASSERT_EQ(orvsAdd_16u(x16.data(), y16.data(), d16.data(), int(d16.size())), orvOk);
  ASSERT_EQ(orvsAdd_32u(x32.data(), y32.data(), d32.data(), int(d32.size())), orvOk);
  for (std::size_t i = 0; i < d16.size(); ++i) EXPECT_EQ(d16[i], std::min(x16[i] + y16[i], 65535));
  for (std::size_t i = 0; i < d32.size(); ++i)
    EXPECT_EQ(d32[i], std::min<std::uint64_t>(std::uint64_t(x32[i]) + y32[i], 0xFFFFFFFFu)) << x32[i] << "+" << y32[i];

  // 16u x 16s -> 16s and 16s x 16s -> 32s.
  const std::vector<orv16s> s16 = boundaryValues<orv16s>();
  std::vector<orv16u> u16 = {0, 1, 2, 3, 65535, 65534, 32767, 32768};
  for (int k = 2; k < 16; ++k) u16.insert(u16.end(), {orv16u(1 << k), orv16u((1 << k) - 1), orv16u((1 << k) + 1)});
  std::vector<orv16u> ux;
  std::vector<orv16s> uy, sx, sy;
  for (orv16s c : s16) {
    for (orv16u u : u16) ux.push_back(u), uy.push_back(c);
    for (orv16s d : s16) sx.push_back(c), sy.push_back(d);
  }
  std::vector<orv16s> m16(ux.size());
  std::vector<orv32s> m32(sx.size());
  for (int s : scales(-40, 40)) {
    ASSERT_EQ(orvsMul_16u16s_Sfs(ux.data(), uy.data(), m16.data(), int(ux.size()), s), orvOk);
    for (std::size_t i = 0; i < ux.size(); ++i)
      ASSERT_EQ(m16[i], orvtest::exactScaledTo<orv16s>(Wide(ux[i]) * uy[i], s)) << ux[i] << "*" << uy[i] << " " << s;
    ASSERT_EQ(orvsMul_16s32s_Sfs(sx.data(), sy.data(), m32.data(), int(sx.size()), s), orvOk);
    for (std::size_t i = 0; i < sx.size(); ++i)
      ASSERT_EQ(m32[i], orvtest::exactScaledTo<orv32s>(Wide(sx[i]) * sy[i], s)) << sx[i] << "*" << sy[i] << " " << s;
  }
}

// Worked values: of the reference the sweeps rely on (rounding to even,
// saturation), and of the library at products past the 16s range.
TEST(ArithWorkedValues, ReferenceAndProducts) {
  struct Row {
    long long s, t, result;
  };
  const Row rows[] = {{1, 1, 0},   {1, 3, 2},   {1, 5, 2},  {1, -1, 0},   {1, -3, -2},  {2, 2, 0},
                      {2, 5, 1},   {2, 6, 2},   {2, 7, 2},  {2, 10, 2},   {2, -6, -2},  {9, 510, 1},
                      {8, 255, 1}, {10, 510, 0}, {-6, 2, 128}, {-7, 2, 255}, {-1, 510, 255}};
  for (const Row& r : rows) EXPECT_EQ(orvtest::exactScaled(r.t, r.s, -32768, 255), r.result) << r.t << " " << r.s;
  EXPECT_EQ(orvtest::exactScaledTo<orv16s>(65535, 1), 32767);
  EXPECT_EQ(orvtest::exactScaledTo<orv16s>(-65536, 1), -32768);
  EXPECT_EQ(orvtest::exactScaledTo<orv32s>(-1, -2147483647LL - 1), INT_MIN);
  EXPECT_EQ(orvtest::exactScaledTo<orv32s>(Wide(1) << 62, 2147483647LL), 0);

  // (-32768 - 32768i)^2: re 0, im 2^31 read as 2^31 - 1 by the 16s forms.
  const orv16sc m{-32768, -32768};
  for (auto [s, im] : {std::pair<int, orv16s>{0, 32767}, {16, 32767}, {17, 16384}, {31, 1}, {32, 0}}) {
    orv16sc d{1, 1};
    ASSERT_EQ(orvsMul_16sc_Sfs(&m, &m, &d, 1, s), orvOk);
    EXPECT_TRUE(d.re == 0 && d.im == im) << s;
  }
  const orv32sc m32{INT32_MIN, INT32_MIN};
  orv32sc d32{};
  ASSERT_EQ(orvsMul_32sc_Sfs(&m32, &m32, &d32, 1, 63), orvOk);
  EXPECT_EQ(d32.im, 1);
  const orv16s a = -32768;
  orv16s d = 0;
  ASSERT_EQ(orvsMul_16s_Sfs(&a, &a, &d, 1, 30), orvOk);
  EXPECT_EQ(d, 1);
}

}  // namespace
