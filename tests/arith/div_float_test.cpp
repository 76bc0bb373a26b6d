// Floating-point quotients: double evaluations of the formulas, the exact
// bit patterns for zero divisors, and the check order and reciprocal of the
// real scalar forms.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "arith/real_quotient.hpp"
#include "orvspx.h"

namespace {

std::uint32_t bits(float v) {
  std::uint32_t u;
  std::memcpy(&u, &v, 4);
  return u;
}
std::uint64_t bits(double v) {
  std::uint64_t u;
  std::memcpy(&u, &v, 8);
  return u;
}

template <typename T>
struct Patterns;
template <>
struct Patterns<float> {
  static constexpr std::uint32_t nan = 0xffc00000u, plusInf = 0x7f800000u, minusInf = 0xff800000u;
};
template <>
struct Patterns<double> {
  static constexpr std::uint64_t nan = 0xfff8000000000000u, plusInf = 0x7ff0000000000000u,
                                 minusInf = 0xfff0000000000000u;
};

// Same value, any NaN matching any NaN (the NaN an operation passes on is
// the processor's choice).
template <typename T>
bool sameValue(T got, T want) {
  return (std::isnan(got) && std::isnan(want)) || bits(got) == bits(want);
}

template <typename T>
void checkRealQuotients(orvStatus (*f)(const T*, const T*, T*, int), orvStatus (*fI)(const T*, T*, int)) {
  using L = std::numeric_limits<T>;
  using P = Patterns<T>;
  const std::vector<T> specials = {T(0), -T(0), L::quiet_NaN(), -L::quiet_NaN(), T(1),
                                   T(-1), T(2), L::infinity(),  -L::infinity(),  L::denorm_min()};
  std::vector<T> divisor, dividend;
  for (T b : specials)
    for (T a : specials) divisor.push_back(b), dividend.push_back(a);
  std::mt19937 gen(3);
  std::uniform_real_distribution<double> real(-1e6, 1e6);
  while (divisor.size() < 1000) divisor.push_back(T(real(gen))), dividend.push_back(T(real(gen)));
  const int n = int(divisor.size());
  std::vector<T> dst(n);
  ASSERT_EQ(f(divisor.data(), dividend.data(), dst.data(), n), orvWarnDivByZero);
  for (int i = 0; i < n; ++i) {
    const T b = divisor[i], a = dividend[i];
    if (b == 0 || std::isnan(b)) {
      // Chosen by the dividend alone; the sign of a zero divisor plays no part.
      const auto want = (a == 0 || std::isnan(a)) ? P::nan : (a > 0 ? P::plusInf : P::minusInf);
      ASSERT_EQ(bits(dst[i]), want) << a << " / " << b;
    } else {
      ASSERT_TRUE(sameValue(dst[i], static_cast<T>(double(a) / double(b)))) << a << " / " << b;
    }
  }
  std::vector<T> inPlace = dividend;
  ASSERT_EQ(fI(divisor.data(), inPlace.data(), n), orvWarnDivByZero);
  for (int i = 0; i < n; ++i) ASSERT_EQ(bits(inPlace[i]), bits(dst[i])) << i;
  // Without a zero divisor the status is orvOk.
  ASSERT_EQ(f(divisor.data() + 200, dividend.data() + 200, dst.data(), 100), orvOk);
  EXPECT_EQ(f(nullptr, dividend.data(), dst.data(), 0), orvErrNullPointer);
  EXPECT_EQ(fI(divisor.data(), inPlace.data(), 0), orvErrSize);
}

TEST(DivFloat, RealQuotientsAndZeroDivisorPatterns) {
  checkRealQuotients<float>(orvsDiv_32f, orvsDiv_32f_I);
  checkRealQuotients<double>(orvsDiv_64f, orvsDiv_64f_I);
}

// m = c*c + d*d, p = a*c + b*d, q = c*b - d*a in double, times 1 / m; a
// zero (or NaN) m picks each part from p and q by the rule of the real forms.
template <typename C>
::testing::AssertionResult complexQuotient(C x, C v, C got) {
  using P = Patterns<decltype(C::re)>;
  const double a = x.re, b = x.im, c = v.re, d = v.im;
  const double m = c * c + d * d, p = a * c + b * d, q = c * b - d * a;
  const auto byZero = [](double t) { return (t == 0 || std::isnan(t)) ? P::nan : (t > 0 ? P::plusInf : P::minusInf); };
  const bool ok = (m == 0 || std::isnan(m))
                      ? bits(got.re) == byZero(p) && bits(got.im) == byZero(q)
                      : sameValue(got.re, decltype(C::re)(p * (1.0 / m))) && sameValue(got.im, decltype(C::re)(q * (1.0 / m)));
  if (ok) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << a << ", " << b << ") / (" << c << ", " << d << ") gave (" << got.re
                                       << ", " << got.im << ")";
}

// Vector divisors (in place: the same bits), then scalar ones through one
// reciprocal, with val 1 and i not taken as shortcuts.
template <typename C>
void checkComplexQuotients(orvStatus (*f)(const C*, const C*, C*, int), orvStatus (*fI)(const C*, C*, int),
                           orvStatus (*fC)(const C*, C, C*, int), orvStatus (*fCI)(C, C*, int)) {
  using T = decltype(C::re);
  using L = std::numeric_limits<T>;
  std::vector<C> divisor = {{0, 0}, {-T(0), 0}, {0, 0}, {0, 0}, {L::quiet_NaN(), 1}, {1, 0}, {0, 2}},
                 dividend = {{1, -1}, {0, 0}, {L::infinity(), 0}, {L::quiet_NaN(), 1}, {1, 1}, {3, 4}, {1, 0}};
  std::mt19937 gen(9);
  std::uniform_real_distribution<double> real(-100.0, 100.0);
  while (divisor.size() < 700) divisor.push_back({T(real(gen)), T(real(gen))}), dividend.push_back({T(real(gen)), T(real(gen))});
  const int n = int(divisor.size());
  std::vector<C> dst(n), inPlace = dividend;
  ASSERT_EQ(f(divisor.data(), dividend.data(), dst.data(), n), orvWarnDivByZero);
  ASSERT_EQ(fI(divisor.data(), inPlace.data(), n), orvWarnDivByZero);
  ASSERT_EQ(std::memcmp(dst.data(), inPlace.data(), n * sizeof(C)), 0);
  for (int i = 0; i < n; ++i) ASSERT_TRUE(complexQuotient(dividend[i], divisor[i], dst[i]));
  ASSERT_EQ(f(divisor.data() + 10, dividend.data() + 10, dst.data(), 100), orvOk);
  for (const C val : {C{1, 0}, C{0, -1}, C{3, 4}, divisor[20]}) {
    ASSERT_EQ(fC(dividend.data() + 10, val, dst.data(), n - 10), orvOk);
    inPlace = dividend;
    ASSERT_EQ(fCI(val, inPlace.data() + 10, n - 10), orvOk);
    ASSERT_EQ(std::memcmp(dst.data(), inPlace.data() + 10, (n - 10) * sizeof(C)), 0);
    for (int i = 0; i < n - 10; ++i) ASSERT_TRUE(complexQuotient(dividend[i + 10], val, dst[i]));
  }
}

TEST(DivFloat, ComplexQuotientsThroughTheReciprocalOfTheNorm) {
  checkComplexQuotients<orv32fc>(orvsDiv_32fc, orvsDiv_32fc_I, orvsDivC_32fc, orvsDivC_32fc_I);
  checkComplexQuotients<orv64fc>(orvsDiv_64fc, orvsDiv_64fc_I, orvsDivC_64fc, orvsDivC_64fc_I);
}

// ---- Scalar divisors -----------------------------------------------------------------

template <typename T>
void checkRealScalar(orvStatus (*f)(const T*, T, T*, int), orvStatus (*fI)(T, T*, int)) {
  using L = std::numeric_limits<T>;
  // The zero test comes first of all, NaN counting as zero.
  for (T val : {T(0), -T(0), L::quiet_NaN()}) {
    EXPECT_EQ(f(nullptr, val, nullptr, 0), orvErrDivideByZero);
    EXPECT_EQ(fI(val, nullptr, -1), orvErrDivideByZero);
  }
  T one = 1;
  EXPECT_EQ(f(nullptr, T(2), &one, 1), orvErrNullPointer);
  EXPECT_EQ(fI(T(2), &one, 0), orvErrSize);

  // The vector times the reciprocal rounded to T: a val of 1 copies bit for
  // bit, an infinite one clears.
  const std::vector<T> src = {L::quiet_NaN(), -T(0), L::infinity(), T(6), T(-7.25), L::denorm_min()};
  const int n = int(src.size());
  std::vector<T> dst(n);
  ASSERT_EQ(f(src.data(), T(1), dst.data(), n), orvOk);
  for (int i = 0; i < n; ++i) EXPECT_EQ(bits(dst[i]), bits(src[i])) << i;
  ASSERT_EQ(f(src.data(), L::infinity(), dst.data(), n), orvOk);
  for (int i = 0; i < n; ++i) EXPECT_EQ(bits(dst[i]), bits(T(0))) << i;

  std::mt19937 gen(4);
  std::uniform_real_distribution<double> real(-1e4, 1e4);
  std::vector<T> x(2000);
  for (T& v : x) v = T(real(gen));
  int differsFromQuotient = 0;
  for (T val : {T(3), T(-10), T(0.1), T(7e-30)}) {
    const T r = static_cast<T>(1.0 / double(val));
    std::vector<T> d(x.size());
    ASSERT_EQ(f(x.data(), val, d.data(), int(x.size())), orvOk);
    for (std::size_t i = 0; i < x.size(); ++i) {
      ASSERT_EQ(bits(d[i]), bits(static_cast<T>(double(x[i]) * double(r)))) << x[i] << " / " << val;
      differsFromQuotient += d[i] != static_cast<T>(double(x[i]) / double(val));
    }
    std::vector<T> e = x;
    ASSERT_EQ(fI(val, e.data(), int(e.size())), orvOk);
    ASSERT_EQ(e, d);
  }
  EXPECT_GT(differsFromQuotient, 0);  // the data tell a reciprocal from a division
}

TEST(DivFloat, ScalarZeroTestFirstThenReciprocalProduct) {
  checkRealScalar<orv32f>(orvsDivC_32f, orvsDivC_32f_I);
  checkRealScalar<orv64f>(orvsDivC_64f, orvsDivC_64f_I);
}

}  // namespace

// ---- The vector loops of the 32f quotient -----------------------------------------------

namespace {

using Quotients = orvStatus (*)(const float*, const float*, float*, std::ptrdiff_t);

std::vector<std::pair<const char*, Quotients>> quotientLoops() {
  std::vector<std::pair<const char*, Quotients>> loops = {{"sse2", orv::arith::quotients32fSse2}};
  if (orv::cpu::hasAvx()) loops.push_back({"avx", orv::arith::quotients32fAvx});
  return loops;
}

float fromBits(std::uint32_t u) {
  float f;
  std::memcpy(&f, &u, 4);
  return f;
}

// Each loop against the plain one on the same pairs, bit for bit with NaN
// payloads, status included, out of place and in place over the dividend.
void expectLoopsMatchPlain(const std::vector<float>& divisor, const std::vector<float>& dividend,
                           const char* what) {
  const auto n = std::ptrdiff_t(divisor.size());
  std::vector<float> want(divisor.size());
  const orvStatus wantStatus = orv::arith::quotientsPlain(divisor.data(), dividend.data(), want.data(), n);
  for (const auto& [name, loop] : quotientLoops()) {
    std::vector<float> got(divisor.size() + 1, 7.0f);
    ASSERT_EQ(loop(divisor.data(), dividend.data(), got.data(), n), wantStatus) << name << " " << what;
    for (std::size_t i = 0; i < want.size(); ++i) {
      ASSERT_EQ(bits(got[i]), bits(want[i]))
          << name << " " << what << " element " << i << ": " << dividend[i] << " / " << divisor[i];
    }
    ASSERT_EQ(got.back(), 7.0f) << name << " wrote past the end";
    std::vector<float> inPlace = dividend;
    ASSERT_EQ(loop(divisor.data(), inPlace.data(), inPlace.data(), n), wantStatus) << name << " " << what;
    ASSERT_EQ(std::memcmp(inPlace.data(), got.data(), inPlace.size() * sizeof(float)), 0)
        << name << " " << what << " in place";
  }
}

// Every pair of special values, in every position of a pass.
TEST(DivFloat, VectorLoopsOfThe32fQuotientOnSpecialPairs) {
  using L = std::numeric_limits<float>;
  const std::vector<float> specials = {0.0f, -0.0f, 1.0f, -1.0f, 2.0f, 3.0f, 0.1f, L::infinity(), -L::infinity(),
                                       L::quiet_NaN(), -L::quiet_NaN(), fromBits(0x7fa00001u),  // signalling
                                       fromBits(0xffc12345u), L::denorm_min(), -L::denorm_min(),
                                       fromBits(0x007fffffu), L::min(), L::max(), -L::max(), L::epsilon()};
  for (std::size_t shift = 0; shift < 9; ++shift) {
    std::vector<float> divisor(shift, 1.0f), dividend(shift, 5.0f);
    for (float b : specials)
      for (float a : specials) divisor.push_back(b), dividend.push_back(a);
    expectLoopsMatchPlain(divisor, dividend, "specials");
  }
}

// A zero or NaN divisor anywhere in a vector of every short length warns,
// and only the elements it divides change pattern; no such divisor, no warning.
TEST(DivFloat, VectorLoopsOfThe32fQuotientWarnWherePlainDoes) {
  for (std::size_t len = 1; len <= 19; ++len) {
    std::vector<float> divisor(len), dividend(len);
    for (std::size_t i = 0; i < len; ++i) divisor[i] = float(i) + 0.5f, dividend[i] = float(i) - 3.0f;
    expectLoopsMatchPlain(divisor, dividend, "no zero");
    for (std::size_t at = 0; at < len; ++at) {
      for (float bad : {0.0f, -0.0f, std::numeric_limits<float>::quiet_NaN()}) {
        std::vector<float> d = divisor;
        d[at] = bad;
        expectLoopsMatchPlain(d, dividend, "one zero");
      }
    }
  }
}

// Millions of pairs: raw bit patterns of every class, ordinary values,
// quotients at and near the ties of the subnormal range (the only exact
// ties a float quotient can hit), and quotients at the overflow threshold.
TEST(DivFloat, VectorLoopsOfThe32fQuotientOnManyPairs) {
  std::mt19937_64 gen(41);
  const std::size_t chunk = 1 << 16;
  std::vector<float> divisor(chunk), dividend(chunk);
  for (int round = 0; round < 192; ++round) {
    for (std::size_t i = 0; i < chunk; ++i) {
      const std::uint64_t r = gen();
      switch (round % 4) {
        case 0:  // any bits
          divisor[i] = fromBits(std::uint32_t(r)), dividend[i] = fromBits(std::uint32_t(r >> 32));
          break;
        case 1: {  // ordinary magnitudes, sizes far apart
          const int e1 = int(r % 200) - 100, e2 = int((r >> 8) % 200) - 100;
          divisor[i] = std::ldexp(1.0f + float((r >> 16) & 0xffffff) * 0x1p-24f, e1);
          dividend[i] = std::ldexp(1.0f + float((r >> 40) & 0xffffff) * 0x1p-24f, e2) * ((r >> 63) ? -1.0f : 1.0f);
          break;
        }
        case 2: {  // subnormal quotients: k * 2^-149 over small divisors, some a step off
          const float k = float((r & 0xffff) + 1);
          const float divs[] = {2.0f, 4.0f, 8.0f, 3.0f, 6.0f, 0.5f, 1.0f + 0x1p-23f, 2.0f - 0x1p-22f};
          divisor[i] = divs[(r >> 16) & 7];
          dividend[i] = k * std::numeric_limits<float>::denorm_min() * ((r >> 63) ? -1.0f : 1.0f);
          if ((r >> 20) & 1) divisor[i] = std::nextafter(divisor[i], (r >> 21) & 1 ? 0.0f : 16.0f);
          break;
        }
        default: {  // near the largest float
          dividend[i] = std::numeric_limits<float>::max() / float(1 + (r & 7));
          dividend[i] = fromBits(bits(dividend[i]) - std::uint32_t((r >> 8) & 15));
          divisor[i] = fromBits(bits(1.0f / float(1 + (r & 7))) - std::uint32_t((r >> 16) & 15) +
                                std::uint32_t((r >> 24) & 7));
          break;
        }
      }
    }
    expectLoopsMatchPlain(divisor, dividend, "many");
  }
}

}  // namespace
