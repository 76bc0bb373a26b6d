// Floating-point products against double evaluations of their formulas, bit
// for bit, over random bit patterns that include NaN, infinities, zeros of
// both signs and subnormals; and the val shortcuts of MulC.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "arith/complex_mul.hpp"
#include "orvspx.h"

namespace {

template <typename T>
auto bitsOf(T v) {
  using U = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
  U u;
  std::memcpy(&u, &v, sizeof v);
  return u;
}

// Random values: a quarter are raw bit patterns (any class, NaN payloads
// included), the rest ordinary values, with the special values up front.
template <typename T>
std::vector<T> mixedValues(std::size_t n, unsigned seed) {
  using L = std::numeric_limits<T>;
  std::vector<T> v = {T(0),          -T(0),         T(1),          T(-1),          L::infinity(), -L::infinity(),
                      L::quiet_NaN(), -L::quiet_NaN(), L::denorm_min(), -L::denorm_min(), L::min(),   L::max(),
                      -L::max(),     T(0.5),        T(3)};
  std::mt19937_64 gen(seed);
  std::uniform_real_distribution<double> real(-1000.0, 1000.0);
  while (v.size() < n) {
    const std::uint64_t r = gen();
    if ((r & 3) == 0) {
      using U = decltype(bitsOf(T(0)));
      const U u = static_cast<U>(gen());
      T t;
      std::memcpy(&t, &u, sizeof t);
      v.push_back(t);
    } else {
      v.push_back(static_cast<T>(real(gen)));
    }
  }
  return v;
}

// Equal bits, where any NaN matches any NaN: which of two NaN operands an
// operation passes on is the processor's choice (and the compiler's, which
// may swap the operands of a commutative operation), not the formula's.
template <typename T>
void expectSameValues(const std::vector<T>& got, const std::vector<T>& want, const char* name) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    if (std::isnan(got[i]) && std::isnan(want[i])) continue;
    ASSERT_EQ(bitsOf(got[i]), bitsOf(want[i])) << name << " element " << i << ": " << got[i] << " vs " << want[i];
  }
}

// Equal bits, NaN payloads included: for results that are copies.
template <typename T>
void expectSameBits(const std::vector<T>& got, const std::vector<T>& want, const char* name) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    ASSERT_EQ(bitsOf(got[i]), bitsOf(want[i])) << name << " element " << i << ": " << got[i] << " vs " << want[i];
  }
}

// ---- Real and complex products ------------------------------------------------

TEST(MulFloat, RealProductsAreTheDoubleProductRoundedOnce) {
  const std::size_t n = 4099;  // not a multiple of any vector width
  const auto x = mixedValues<orv32f>(n, 1), y = mixedValues<orv32f>(n, 2);
  std::vector<orv32f> want(n), got(n);
  for (std::size_t i = 0; i < n; ++i) want[i] = static_cast<orv32f>(double(x[i]) * double(y[i]));
  ASSERT_EQ(orvsMul_32f(x.data(), y.data(), got.data(), int(n)), orvOk);
  expectSameValues(got, want, "orvsMul_32f");
  got = y;
  ASSERT_EQ(orvsMul_32f_I(x.data(), got.data(), int(n)), orvOk);
  expectSameValues(got, want, "orvsMul_32f_I");

  const auto a = mixedValues<orv64f>(n, 3), b = mixedValues<orv64f>(n, 4);
  std::vector<orv64f> want64(n), got64(n);
  for (std::size_t i = 0; i < n; ++i) want64[i] = a[i] * b[i];
  ASSERT_EQ(orvsMul_64f(a.data(), b.data(), got64.data(), int(n)), orvOk);
  expectSameValues(got64, want64, "orvsMul_64f");
  got64 = b;
  ASSERT_EQ(orvsMul_64f_I(a.data(), got64.data(), int(n)), orvOk);
  expectSameValues(got64, want64, "orvsMul_64f_I");

  // 16s operands: the exact product rounded once to 32f.
  std::vector<orv16s> s1, s2;
  for (int p : {-32768, -32767, -1, 0, 1, 2, 3, 4097, 32767})
    for (int q : {-32768, -32767, -4097, -1, 0, 1, 12345, 32767}) s1.push_back(orv16s(p)), s2.push_back(orv16s(q));
  std::vector<orv32f> d(s1.size());
  ASSERT_EQ(orvsMul_16s32f(s1.data(), s2.data(), d.data(), int(d.size())), orvOk);
  for (std::size_t i = 0; i < d.size(); ++i) EXPECT_EQ(d[i], float(double(long(s1[i]) * s2[i]))) << s1[i] << "*" << s2[i];
}

// re = a*c - b*d, im = a*d + b*c in double, each rounded once to T.
template <typename C>
C complexProduct(C x, C y) {
  using T = decltype(C::re);
  const double a = x.re, b = x.im, c = y.re, d = y.im;
  return C{static_cast<T>(a * c - b * d), static_cast<T>(a * d + b * c)};
}

template <typename C>
void checkComplexForms(orvStatus (*vec)(const C*, const C*, C*, int), orvStatus (*vecI)(const C*, C*, int),
                       orvStatus (*sca)(const C*, C, C*, int), orvStatus (*scaI)(C, C*, int)) {
  using T = decltype(C::re);
  const std::size_t n = 1027;
  const auto px = mixedValues<T>(2 * n, 5), py = mixedValues<T>(2 * n, 6);
  std::vector<C> x(n), y(n), want(n), got(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = {px[2 * i], px[2 * i + 1]}, y[i] = {py[2 * i], py[2 * i + 1]};
  const auto flat = [](const std::vector<C>& v) {
    std::vector<T> f;
    for (const C& c : v) f.push_back(c.re), f.push_back(c.im);
    return f;
  };
  for (std::size_t i = 0; i < n; ++i) want[i] = complexProduct(x[i], y[i]);
  ASSERT_EQ(vec(x.data(), y.data(), got.data(), int(n)), orvOk);
  expectSameValues(flat(got), flat(want), "two vectors");
  got = y;
  ASSERT_EQ(vecI(x.data(), got.data(), int(n)), orvOk);
  expectSameValues(flat(got), flat(want), "two vectors in place");

  for (const C val : {y[20], C{T(1), T(0)}, C{T(0), T(0)}, C{T(0), T(1)}}) {
    for (std::size_t i = 0; i < n; ++i) want[i] = complexProduct(x[i], val);
    ASSERT_EQ(sca(x.data(), val, got.data(), int(n)), orvOk);
    expectSameValues(flat(got), flat(want), "scalar");  // no shortcut for val 1 or 0
    got = x;
    ASSERT_EQ(scaI(val, got.data(), int(n)), orvOk);
    expectSameValues(flat(got), flat(want), "scalar in place");
  }
}

TEST(MulFloat, ComplexProductsInDoubleRoundedOnce) {
  checkComplexForms<orv32fc>(orvsMul_32fc, orvsMul_32fc_I, orvsMulC_32fc, orvsMulC_32fc_I);
  checkComplexForms<orv64fc>(orvsMul_64fc, orvsMul_64fc_I, orvsMulC_64fc, orvsMulC_64fc_I);
  // A case where rounding each product to float first would differ: the
  // difference of the exact products is tiny.
  const orv32fc x{1.0f + 0x1p-23f, 1.0f}, y{1.0f - 0x1p-23f, 1.0f - 0x1p-23f};
  orv32fc d{};
  ASSERT_EQ(orvsMul_32fc(&x, &y, &d, 1), orvOk);
  const double re = (1.0 + 0x1p-23) * (1.0 - 0x1p-23) - (1.0 - 0x1p-23);
  EXPECT_EQ(d.re, static_cast<float>(re));
}

// ---- MulC shortcuts on real vectors ----------------------------------------------------

template <typename T>
void checkRealScalarShortcuts(orvStatus (*f)(const T*, T, T*, int), orvStatus (*fI)(T, T*, int)) {
  using L = std::numeric_limits<T>;
  const std::vector<T> src = {L::quiet_NaN(), -L::infinity(), -T(0), T(2.5), L::denorm_min()};
  const int n = int(src.size());
  std::vector<T> dst(src.size(), T(7));

  // 1.0 and NaN copy bit for bit; the in-place form leaves the vector.
  for (T val : {T(1), L::quiet_NaN()}) {
    ASSERT_EQ(f(src.data(), val, dst.data(), n), orvOk);
    expectSameBits(dst, src, "copy");
    std::vector<T> v = src;
    ASSERT_EQ(fI(val, v.data(), n), orvOk);
    expectSameBits(v, src, "keep");
  }
  // 0.0 of either sign clears to +0.0, NaN and infinity included.
  for (T val : {T(0), -T(0)}) {
    ASSERT_EQ(f(src.data(), val, dst.data(), n), orvOk);
    expectSameBits(dst, std::vector<T>(src.size(), T(0)), "clear");
    std::vector<T> v = src;
    ASSERT_EQ(fI(val, v.data(), n), orvOk);
    expectSameBits(v, std::vector<T>(src.size(), T(0)), "clear in place");
  }
  // Other values: plain IEEE products, rounded once.
  for (T val : {T(-1), T(3), L::infinity(), L::max()}) {
    std::vector<T> want;
    for (T s : src) want.push_back(static_cast<T>(double(s) * double(val)));
    ASSERT_EQ(f(src.data(), val, dst.data(), n), orvOk);
    expectSameValues(dst, want, "product");
    std::vector<T> v = src;
    ASSERT_EQ(fI(val, v.data(), n), orvOk);
    expectSameValues(v, want, "product in place");
  }
  // Checks come before the shortcuts.
  EXPECT_EQ(f(nullptr, T(0), dst.data(), 1), orvErrNullPointer);
  EXPECT_EQ(f(src.data(), T(1), dst.data(), 0), orvErrSize);
  EXPECT_EQ(fI(T(1), nullptr, 1), orvErrNullPointer);
  EXPECT_EQ(fI(T(0), dst.data(), -1), orvErrSize);
}

TEST(MulFloat, ScalarOneOrNaNCopiesAndZeroClears) {
  checkRealScalarShortcuts<orv32f>(orvsMulC_32f, orvsMulC_32f_I);
  checkRealScalarShortcuts<orv64f>(orvsMulC_64f, orvsMulC_64f_I);
}

TEST(MulFloat, ChecksOfTheVectorForms) {
  orv32f f = 1;
  orv64fc z{};
  EXPECT_EQ(orvsMul_32f(&f, nullptr, &f, 1), orvErrNullPointer);
  EXPECT_EQ(orvsMul_32f_I(&f, &f, 0), orvErrSize);
  EXPECT_EQ(orvsMul_64fc(&z, &z, nullptr, 0), orvErrNullPointer);
  EXPECT_EQ(orvsMul_64fc_I(&z, &z, 0), orvErrSize);
  EXPECT_EQ(orvsMulC_32fc(nullptr, orv32fc{}, nullptr, 1), orvErrNullPointer);
  EXPECT_EQ(f, 1.0f);
}

}  // namespace

// ---- The vector loops of the 32fc product ---------------------------------------------

namespace {

using Loop = void (*)(const orv32fc*, const orv32fc*, orv32fc*, std::ptrdiff_t);

// Every vector loop this processor runs.
std::vector<std::pair<const char*, Loop>> vectorLoops() {
  std::vector<std::pair<const char*, Loop>> loops = {{"sse2", orv::arith::mul32fcSse2}};
  if (orv::cpu::hasAvx()) loops.push_back({"avx", orv::arith::mul32fcAvx});
  if (orv::cpu::hasAvxFma()) loops.push_back({"avx+fma", orv::arith::mul32fcAvxFma});
  return loops;
}

bool sameValue(float got, float want) {
  return (std::isnan(got) && std::isnan(want)) || bitsOf(got) == bitsOf(want);
}

// The loop's results over x and y against the plain loop's, any NaN
// matching any NaN; with dst a fresh vector and dst = y.
void expectMatchesPlain(const char* name, Loop loop, const std::vector<orv32fc>& x, const std::vector<orv32fc>& y) {
  const std::size_t n = x.size();
  std::vector<orv32fc> want(n), got(n);
  orv::arith::mul32fcPlain(x.data(), y.data(), want.data(), std::ptrdiff_t(n));
  loop(x.data(), y.data(), got.data(), std::ptrdiff_t(n));
  std::vector<orv32fc> inPlace = y;
  loop(x.data(), inPlace.data(), inPlace.data(), std::ptrdiff_t(n));
  for (std::size_t i = 0; i < n; ++i) {
    ASSERT_TRUE(sameValue(got[i].re, want[i].re) && sameValue(got[i].im, want[i].im))
        << name << " element " << i << ": (" << x[i].re << ", " << x[i].im << ") * (" << y[i].re << ", " << y[i].im
        << ") gave (" << got[i].re << ", " << got[i].im << ") for (" << want[i].re << ", " << want[i].im << ")";
    ASSERT_TRUE(sameValue(inPlace[i].re, want[i].re) && sameValue(inPlace[i].im, want[i].im))
        << name << " in place, element " << i;
  }
}

// Each vector loop gives the bits of the plain loop, on every length up to a
// few passes (tails included), in place too.
TEST(MulFloat, VectorLoopsOfThe32fcProductMatchThePlainLoop) {
  const std::size_t n = 3001;
  const auto px = mixedValues<float>(2 * n, 21), py = mixedValues<float>(2 * n, 22);
  std::vector<orv32fc> x(n), y(n), want(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = {px[2 * i], px[2 * i + 1]}, y[i] = {py[2 * i], py[2 * i + 1]};
  orv::arith::mul32fcPlain(x.data(), y.data(), want.data(), std::ptrdiff_t(n));
  for (const auto& [name, loop] : vectorLoops()) {
    for (std::size_t len : {std::size_t(1), std::size_t(2), std::size_t(3), std::size_t(5), n}) {
      std::vector<orv32fc> got(len + 1, orv32fc{7, 7});
      loop(x.data(), y.data(), got.data(), std::ptrdiff_t(len));
      for (std::size_t i = 0; i < len; ++i) {
        ASSERT_TRUE(sameValue(got[i].re, want[i].re) && sameValue(got[i].im, want[i].im)) << name << " element " << i;
      }
      ASSERT_EQ(got[len].re, 7.0f) << name << " wrote past the end";
    }
    expectMatchesPlain(name, loop, x, y);
  }
}

// All quadruples of special values as (a + bi)(c + di).
TEST(MulFloat, VectorLoopsOfThe32fcProductOnSpecialQuadruples) {
  using L = std::numeric_limits<float>;
  const float specials[] = {0.0f, -0.0f, 1.0f, -1.5f, 0x1p-75f, 0x1p100f, L::infinity(), -L::infinity(),
                            L::quiet_NaN(), L::denorm_min(), -L::denorm_min(), L::min(), L::max(), -L::max()};
  std::vector<orv32fc> x, y;
  for (float a : specials)
    for (float b : specials)
      for (float c : specials)
        for (float d : specials) x.push_back({a, b}), y.push_back({c, d});
  for (const auto& [name, loop] : vectorLoops()) expectMatchesPlain(name, loop, x, y);
}

float randomFloat(std::mt19937_64& gen, int minExp, int maxExp) {
  const std::uint64_t r = gen();
  const float m = 1.0f + float(r & 0xffffff) * 0x1p-24f;
  const int e = minExp + int((r >> 24) % std::uint64_t(maxExp - minExp + 1));
  return std::ldexp(m, e) * ((r >> 63) ? -1.0f : 1.0f);
}

// Millions of elements: raw bit patterns; ordinary values; parts where the
// two products nearly cancel, so that the exact difference decides the low
// bits; products that overflow float or fall into its subnormals.
TEST(MulFloat, VectorLoopsOfThe32fcProductOnManyElements) {
  std::mt19937_64 gen(77);
  const std::size_t chunk = 1 << 15;
  std::vector<orv32fc> x(chunk), y(chunk);
  const auto bitsFloat = [](std::uint32_t u) {
    float f;
    std::memcpy(&f, &u, 4);
    return f;
  };
  // A float a few units in the last place away from v.
  const auto near = [&](float v) {
    const std::uint32_t step = std::uint32_t(gen() % 9);
    return bitsFloat(bitsOf(v) + step - 4u);
  };
  for (int round = 0; round < 256; ++round) {
    for (std::size_t i = 0; i < chunk; ++i) {
      switch (round % 4) {
        case 0: {
          const std::uint64_t r = gen(), s = gen();
          x[i] = {bitsFloat(std::uint32_t(r)), bitsFloat(std::uint32_t(r >> 32))};
          y[i] = {bitsFloat(std::uint32_t(s)), bitsFloat(std::uint32_t(s >> 32))};
          break;
        }
        case 1:
          x[i] = {randomFloat(gen, -30, 30), randomFloat(gen, -30, 30)};
          y[i] = {randomFloat(gen, -30, 30), randomFloat(gen, -30, 30)};
          break;
        case 2: {
          // a*c - b*d with b = near(a), d = near(c); a*d + b*c with the signs
          // of d or c flipped to cancel there instead.
          const float a = randomFloat(gen, -60, 60), c = randomFloat(gen, -60, 60);
          const bool imaginary = gen() & 1;
          x[i] = {a, near(a)};
          y[i] = imaginary ? orv32fc{c, -near(c)} : orv32fc{c, near(c)};
          break;
        }
        default: {
          // Magnitudes around the float limits of the product.
          const bool large = gen() & 1;
          const int lo = large ? 55 : -80, hi = large ? 70 : -60;
          x[i] = {randomFloat(gen, lo, hi), randomFloat(gen, lo, hi)};
          y[i] = {randomFloat(gen, lo, hi), randomFloat(gen, lo, hi)};
          break;
        }
      }
    }
    for (const auto& [name, loop] : vectorLoops()) {
      expectMatchesPlain(name, loop, x, y);
      if (::testing::Test::HasFatalFailure()) return;
    }
  }
}

// From the streaming length on, with dst aligned to 16 bytes, to 8 bytes
// only (one element first) and to 4 bytes only (no streaming), in place too.
TEST(MulFloat, FusedLoopOfThe32fcProductWithStreamingStores) {
  if (!orv::cpu::hasAvxFma()) GTEST_SKIP() << "no AVX and FMA";
  const std::size_t n = std::size_t(orv::arith::kMul32fcStreamingElements) + 5;
  const auto px = mixedValues<float>(2 * n, 23), py = mixedValues<float>(2 * n, 24);
  std::vector<orv32fc> x(n), y(n), want(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = {px[2 * i], px[2 * i + 1]}, y[i] = {py[2 * i], py[2 * i + 1]};
  orv::arith::mul32fcPlain(x.data(), y.data(), want.data(), std::ptrdiff_t(n));
  // Room for n elements plus a guard at any of the offsets.
  std::vector<double> storage(n + 4);
  for (std::size_t offset : {std::size_t(0), std::size_t(8), std::size_t(4), std::size_t(12)}) {
    char* base = reinterpret_cast<char*>(storage.data());
    base += (16 - reinterpret_cast<std::uintptr_t>(base) % 16) % 16 + offset;
    auto* dst = reinterpret_cast<orv32fc*>(base);
    const orv32fc guard{-7.0f, 7.0f};
    std::memcpy(dst + n, &guard, sizeof guard);
    orv::arith::mul32fcAvxFma(x.data(), y.data(), dst, std::ptrdiff_t(n));
    for (int pass = 0; pass < 2; ++pass) {
      for (std::size_t i = 0; i < n; ++i) {
        orv32fc got;
        std::memcpy(&got, dst + i, sizeof got);
        ASSERT_TRUE(sameValue(got.re, want[i].re) && sameValue(got.im, want[i].im))
            << "offset " << offset << (pass ? " in place" : "") << ", element " << i;
      }
      orv32fc after;
      std::memcpy(&after, dst + n, sizeof after);
      ASSERT_EQ(std::memcmp(&after, &guard, sizeof guard), 0) << "offset " << offset << " wrote past the end";
      // Again with dst holding y.
      std::memcpy(dst, y.data(), n * sizeof(orv32fc));
      orv::arith::mul32fcAvxFma(x.data(), dst, dst, std::ptrdiff_t(n));
    }
  }
}

}  // namespace
