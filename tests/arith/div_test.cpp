// Quotients against references in exact rational arithmetic: the rounding
// by adding one half (ties up) or one half away from zero, the truncating
// 32-bit store, the powers of two taken modulo 32 and the zero divisors;
// every 8u pair, boundary and random operands of 16s and 16sc. Forms that
// multiply by a rounded reciprocal may take either neighbour at an exact tie,
// and nowhere else.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "orvspx.h"
#include "support/exact_ref.hpp"

namespace {

using orvtest::Wide;

std::vector<int> scales(int lo, int hi) {
  std::vector<int> out;
  for (int s = lo; s <= hi; ++s) out.push_back(s);
  for (int s : {-33, -32, -31, 31, 32, 33, 63, 64, INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX}) out.push_back(s);
  return out;
}

// ---- References ------------------------------------------------------------

// n / d at scale s as one fraction: n * 2^-s below 0, n / 2^s from 0 up,
// the power of two taken modulo 32.
std::pair<Wide, Wide> scaled(Wide n, Wide d, long long s) {
  const Wide p = orvtest::powerOfTwoMod32(s);
  return s < 0 ? std::pair<Wide, Wide>{n * p, d} : std::pair<Wide, Wide>{n, d * p};
}

bool tieAt(Wide n, Wide d, long long s) {
  const auto [sn, sd] = scaled(n, d, s);
  return orvtest::isTie(sn, sd);
}

// dividend / divisor at scale s, ties up, 255 where a scaled-up quotient
// reaches 255 (8u).
orv8u ref8u(Wide a, Wide b, long long s) {
  const auto [n, d] = scaled(a, b, s);
  if (s < 0 && n >= 255 * d) return 255;
  return static_cast<orv8u>(orvtest::plusHalfTruncated(n, d));
}

// Ties away from zero, limited to 16s where the quotient reaches a bound.
orv16s saturatedAway16s(Wide n, Wide d) {
  if (d < 0) n = -n, d = -d;
  if (n > 0 && n >= 32767 * d) return 32767;
  if (n <= 0 && n <= -32768 * d) return -32768;
  return static_cast<orv16s>(orvtest::awayFromZeroTruncated(n, d));
}

// dividend / divisor at scale s for 16s: no saturation from scale 0 up (the
// low 16 bits are kept), the dividend shifted as a wrapping 32-bit integer
// below.
orv16s ref16s(Wide a, Wide b, long long s) {
  if (s >= 0) return static_cast<orv16s>(orvtest::awayFromZeroTruncated(a, b * orvtest::powerOfTwoMod32(s)));
  const auto shifted = static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int32_t>(a))
                                                 << ((-s) % 32));
  return saturatedAway16s(shifted, b);
}

// A scaled complex part n / d, saturated.
orv16s refComplexPart(Wide n, Wide d, long long s) {
  const auto [sn, sd] = scaled(n, d, s);
  return saturatedAway16s(sn, sd);
}

std::int32_t wrap32(Wide v) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(v))); }

// Reciprocal forms may give either neighbour at an exact tie.
template <typename T>
bool matchesUpToTie(T got, T want, bool tie) {
  return got == want || (tie && (got == want - 1 || got == want + 1));
}

// ---- 8u: every pair ------------------------------------------------------------

TEST(Div8u, EveryOperandPairAtEveryScale) {
  std::vector<orv8u> divisor(65536), dividend(65536), row(256), dst(65536), inPlace;
  for (int i = 0; i < 65536; ++i) divisor[i] = orv8u(i & 255), dividend[i] = orv8u(i >> 8);
  for (int i = 0; i < 256; ++i) row[i] = orv8u(i);
  for (int s : scales(-10, 18)) {
    ASSERT_EQ(orvsDiv_8u_Sfs(divisor.data(), dividend.data(), dst.data(), 65536, s), orvWarnDivByZero);
    inPlace = dividend;
    ASSERT_EQ(orvsDiv_8u_ISfs(divisor.data(), inPlace.data(), 65536, s), orvWarnDivByZero);
    ASSERT_EQ(inPlace, dst);
    for (int i = 0; i < 65536; ++i) {
      const int a = dividend[i], b = divisor[i];
      ASSERT_EQ(dst[i], b == 0 ? (a == 0 ? 0 : 255) : ref8u(a, b, s)) << a << " / " << b << " scaleFactor " << s;
    }
    // The scalar form, through a reciprocal.
    for (int v = 1; v < 256; ++v) {
      std::vector<orv8u> d(256), e = row;
      ASSERT_EQ(orvsDivC_8u_Sfs(row.data(), orv8u(v), d.data(), 256, s), orvOk);
      for (int a = 0; a < 256; ++a) {
        ASSERT_TRUE(matchesUpToTie(d[a], ref8u(a, v, s), tieAt(a, v, s)))
            << "orvsDivC_8u_Sfs " << a << " / " << v << " scaleFactor " << s << ": " << int(d[a]);
      }
      ASSERT_EQ(orvsDivC_8u_ISfs(orv8u(v), e.data(), 256, s), orvOk);
      ASSERT_EQ(e, d);
    }
  }
}

// ---- 16s ------------------------------------------------------------------------

std::vector<orv16s> boundary16s() {
  std::vector<int> v = {0, 1, -1, 2, -2, 3, -3, 5, -5, 7, 32767, 32766, -32768, -32767};
  for (int k = 2; k < 15; ++k)
    for (int q : {1 << k, (1 << k) - 1, (1 << k) + 1}) v.push_back(q), v.push_back(-q);
  std::mt19937 gen(7);
  for (int i = 0; i < 40; ++i) v.push_back(static_cast<orv16s>(gen()));
  return std::vector<orv16s>(v.begin(), v.end());
}

TEST(Div16s, BoundaryAndRandomOperandsAtEveryScale) {
  const std::vector<orv16s> values = boundary16s();
  std::vector<orv16s> divisor, dividend;
  for (orv16s b : values)
    for (orv16s a : values) divisor.push_back(b), dividend.push_back(a);
  const int n = int(divisor.size());
  std::vector<orv16s> dst(n), inPlace;
  for (int s : scales(-40, 40)) {
    ASSERT_EQ(orvsDiv_16s_Sfs(divisor.data(), dividend.data(), dst.data(), n, s), orvWarnDivByZero);
    inPlace = dividend;
    ASSERT_EQ(orvsDiv_16s_ISfs(divisor.data(), inPlace.data(), n, s), orvWarnDivByZero);
    ASSERT_EQ(inPlace, dst);
    for (int i = 0; i < n; ++i) {
      const int a = dividend[i], b = divisor[i];
      const orv16s want = b == 0 ? (a == 0 ? 0 : (a > 0 ? 32767 : -32768)) : ref16s(a, b, s);
      ASSERT_EQ(dst[i], want) << a << " / " << b << " scaleFactor " << s;
    }
    for (orv16s v : values) {
      if (v == 0) continue;
      std::vector<orv16s> d(values.size());
      ASSERT_EQ(orvsDivC_16s_Sfs(values.data(), v, d.data(), int(d.size()), s), orvOk);
      for (std::size_t i = 0; i < values.size(); ++i) {
        // From scale 0 up as the vector form; below, the dividend scaled in
        // floating point, so without the wrap, and saturated.
        const orv16s want = s >= 0 ? ref16s(values[i], v, s) : refComplexPart(values[i], v, s);
        ASSERT_TRUE(matchesUpToTie(d[i], want, tieAt(values[i], v, s)))
            << "orvsDivC_16s_Sfs " << values[i] << " / " << v << " scaleFactor " << s << ": " << d[i] << " vs "
            << want;
      }
      std::vector<orv16s> e = values;
      ASSERT_EQ(orvsDivC_16s_ISfs(v, e.data(), int(e.size()), s), orvOk);
      ASSERT_EQ(e, d);
    }
  }
}

// Long vectors go through the vector loop, single elements through the plain
// one: every dividend, divided as one long vector (out of place, at an odd
// offset, and in place), gives the bits of the same dividend divided alone,
// for divisors and scales that reach the ties, the wrap of 32768 to -32768,
// saturation and the scales whose power of two wraps.
TEST(Div16s, ScalarDivisorLongVectorsMatchSingleElements) {
  std::vector<orv16s> all(65536 + 1);
  for (int i = 0; i < 65536; ++i) all[std::size_t(i) + 1] = static_cast<orv16s>(i - 32768);
  const orv16s* src = all.data() + 1;
  std::vector<orv16s> got(65536), inPlace;
  for (orv16s v : {orv16s(1), orv16s(-1), orv16s(2), orv16s(-3), orv16s(7), orv16s(10), orv16s(-32768),
                   orv16s(32767), orv16s(12345)}) {
    for (int s : {-33, -31, -17, -16, -15, -8, -1, 0, 1, 2, 3, 15, 16, 31, 32, 33}) {
      ASSERT_EQ(orvsDivC_16s_Sfs(src, v, got.data(), 65536, s), orvOk);
      inPlace.assign(src, src + 65536);
      ASSERT_EQ(orvsDivC_16s_ISfs(v, inPlace.data(), 65536, s), orvOk);
      ASSERT_EQ(inPlace, got) << "in place, " << v << " scaleFactor " << s;
      for (int i = 0; i < 65536; ++i) {
        orv16s alone;
        ASSERT_EQ(orvsDivC_16s_Sfs(src + i, v, &alone, 1, s), orvOk);
        ASSERT_EQ(got[std::size_t(i)], alone) << src[i] << " / " << v << " scaleFactor " << s;
      }
    }
  }
}

// ---- 16sc ----------------------------------------------------------------------

// The quotient of (a + bi) / (c + di) through wrapped 32-bit sums: m = c^2 +
// d^2, p = ac + bd, q = bc - ad; a zero m saturates by the sign of p and q.
::testing::AssertionResult complexQuotient(orv16sc x, orv16sc v, orv16sc got, int s) {
  const Wide a = x.re, b = x.im, c = v.re, d = v.im;
  const Wide m = wrap32(c * c + d * d), p = wrap32(a * c + b * d), q = wrap32(b * c - a * d);
  const auto sat = [](Wide t) { return orv16s(t == 0 ? 0 : (t > 0 ? 32767 : -32768)); };
  const orv16s re = m == 0 ? sat(p) : refComplexPart(p, m, s), im = m == 0 ? sat(q) : refComplexPart(q, m, s);
  if (matchesUpToTie(got.re, re, m != 0 && tieAt(p, m, s)) && matchesUpToTie(got.im, im, m != 0 && tieAt(q, m, s)))
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << x.re << "," << x.im << ") / (" << v.re << "," << v.im
                                       << ") scaleFactor " << s << " gave " << got.re << "," << got.im << " for "
                                       << re << "," << im;
}

TEST(Div16sc, BoundaryAndRandomOperandsAtEveryScale) {
  const std::vector<orv16s> values = boundary16s();
  std::mt19937 gen(11);
  auto pick = [&]() { return values[gen() % values.size()]; };
  std::vector<orv16sc> divisor = {{0, 0}, {0, 0}, {-32768, -32768}, {1, 0}, {0, -1}, {3, 4}},
                       dividend = {{0, 0}, {5, -5}, {-32768, -32768}, {-32768, 32767}, {7, 7}, {25, 0}};
  while (divisor.size() < 4000) divisor.push_back({pick(), pick()}), dividend.push_back({pick(), pick()});
  std::vector<orv16sc> vals = {{1, 0}, {0, 1}, {-32768, -32768}, {-32768, 0}, {3, -4}, {181, 181}};
  for (int i = 0; i < 6; ++i) vals.push_back({pick(), pick()});
  const int n = int(divisor.size());
  std::vector<orv16sc> dst(n), inPlace(n);
  for (int s : scales(-40, 40)) {
    ASSERT_EQ(orvsDiv_16sc_Sfs(divisor.data(), dividend.data(), dst.data(), n, s), orvWarnDivByZero);
    inPlace = dividend;
    ASSERT_EQ(orvsDiv_16sc_ISfs(divisor.data(), inPlace.data(), n, s), orvWarnDivByZero);
    for (int i = 0; i < n; ++i) {
      ASSERT_TRUE(complexQuotient(dividend[i], divisor[i], dst[i], s));
      ASSERT_TRUE(inPlace[i].re == dst[i].re && inPlace[i].im == dst[i].im) << i;
    }
    for (const orv16sc v : vals) {
      ASSERT_EQ(orvsDivC_16sc_Sfs(dividend.data(), v, dst.data(), n, s), orvOk);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(complexQuotient(dividend[i], v, dst[i], s)) << "orvsDivC_16sc_Sfs";
    }
  }
}

// ---- 16u reversed ----------------------------------------------------------------

TEST(DivCRev16u, QuotientsTiesUpAndZeroElements) {
  std::vector<orv16u> src = {0, 1, 2, 3, 4, 5, 7, 255, 256, 32767, 32768, 65534, 65535};
  std::mt19937 gen(5);
  while (src.size() < 2000) src.push_back(static_cast<orv16u>(gen()));
  for (orv16u val : {orv16u(1), orv16u(2), orv16u(3), orv16u(7), orv16u(32768), orv16u(65535), orv16u(gen())}) {
    std::vector<orv16u> dst(src.size());
    ASSERT_EQ(orvsDivCRev_16u(src.data(), val, dst.data(), int(src.size())), orvWarnDivByZero);
    for (std::size_t i = 0; i < src.size(); ++i) {
      const orv16u want = src[i] == 0 ? 65535 : orv16u(orvtest::plusHalfTruncated(val, src[i]));
      ASSERT_EQ(dst[i], want) << val << " / " << src[i];
    }
    std::vector<orv16u> e = src;
    ASSERT_EQ(orvsDivCRev_16u_I(val, e.data(), int(e.size())), orvWarnDivByZero);
    ASSERT_EQ(e, dst);
    ASSERT_EQ(orvsDivCRev_16u(src.data() + 1, val, dst.data(), 5), orvOk);  // no zero: no warning
  }
  // val 0 clears without looking at src, and answers as the zero function.
  std::vector<orv16u> dst(4, 9);
  EXPECT_EQ(orvsDivCRev_16u(nullptr, 0, dst.data(), 4), orvOk);
  EXPECT_EQ(dst, std::vector<orv16u>(4, 0));
  EXPECT_EQ(orvsDivCRev_16u(src.data(), 0, nullptr, 4), orvErrNullPointer);
  EXPECT_EQ(orvsDivCRev_16u(nullptr, 0, dst.data(), 0), orvErrSize);
  EXPECT_EQ(orvsDivCRev_16u(nullptr, 7, dst.data(), 0), orvErrNullPointer);
  EXPECT_EQ(orvsDivCRev_16u_I(7, dst.data(), 0), orvErrSize);
}

// ---- Worked values and checks --------------------------------------------------------

TEST(DivWorkedValues, RoundingWrapAndZeroDivisors) {
  auto div8u = [](orv8u a, orv8u b, int s) {
    orv8u d = 0x5A;
    orvsDiv_8u_Sfs(&b, &a, &d, 1, s);
    return int(d);
  };
  EXPECT_EQ(div8u(5, 2, 0), 3);
  EXPECT_EQ(div8u(1, 2, 0), 1);
  EXPECT_EQ(div8u(200, 1, -1), 255);
  EXPECT_EQ(div8u(200, 1, 32), 200);  // 1 << 32 is 1 << 0
  EXPECT_EQ(div8u(200, 1, 31), 0);    // 1 << 31 is negative
  auto div16s = [](orv16s a, orv16s b, int s, orvStatus st = orvOk) {
    orv16s d = 0x5A;
    EXPECT_EQ(orvsDiv_16s_Sfs(&b, &a, &d, 1, s), st);
    return int(d);
  };
  EXPECT_EQ(div16s(-5, 2, 0), -3);
  EXPECT_EQ(div16s(5, 2, 0), 3);
  EXPECT_EQ(div16s(-32768, -1, 0), -32768);
  EXPECT_EQ(div16s(1, 0, 0, orvWarnDivByZero), 32767);
  EXPECT_EQ(div16s(-1, 0, 0, orvWarnDivByZero), -32768);
  EXPECT_EQ(div16s(1, 1, -16), 32767);       // 65536, saturated
  EXPECT_EQ(div16s(32767, 1, -17), -32768);  // shifted as a 32-bit integer: wraps negative
  EXPECT_EQ(div16s(-32768, 1, -17), 0);      // -2^32 wraps to 0
  EXPECT_EQ(div16s(3, 2, -32), 2);           // a distance of 32 is 0
}

TEST(DivChecks, OrderOfChecksPerForm) {
  orv16s s16 = 1;
  orv8u s8 = 1;
  orv16sc c16{1, 1};
  orv32fc c32{1, 1};
  orv64fc c64{1, 1};
  // Scalar integer and complex forms: pointers, then len, then a zero val.
  EXPECT_EQ(orvsDivC_16s_Sfs(nullptr, 0, nullptr, 1, 0), orvErrNullPointer);
  EXPECT_EQ(orvsDivC_16s_ISfs(0, &s16, 0, 0), orvErrSize);
  EXPECT_EQ(orvsDivC_16s_ISfs(0, &s16, 1, 0), orvErrDivideByZero);
  EXPECT_EQ(orvsDivC_8u_Sfs(&s8, 0, nullptr, 1, 0), orvErrNullPointer);
  EXPECT_EQ(orvsDivC_8u_ISfs(0, &s8, 1, 0), orvErrDivideByZero);
  EXPECT_EQ(orvsDivC_16sc_ISfs(orv16sc{0, 0}, &c16, -1, 0), orvErrSize);
  EXPECT_EQ(orvsDivC_16sc_ISfs(orv16sc{0, 0}, &c16, 1, 0), orvErrDivideByZero);
  EXPECT_EQ(orvsDivC_32fc_I(orv32fc{0, -0.0f}, &c32, 1), orvErrDivideByZero);
  EXPECT_EQ(orvsDivC_32fc_I(orv32fc{0, 0}, nullptr, 1), orvErrNullPointer);
  EXPECT_EQ(orvsDivC_64fc(&c64, orv64fc{0, 0}, &c64, 0), orvErrSize);
  EXPECT_EQ(s16, 1);
  EXPECT_EQ(s8, 1);
  EXPECT_EQ(c16.re, 1);
  EXPECT_EQ(c32.re, 1.0f);
  // Two-vector forms: pointers, then len.
  EXPECT_EQ(orvsDiv_16sc_Sfs(&c16, nullptr, &c16, 0, 0), orvErrNullPointer);
  EXPECT_EQ(orvsDiv_16sc_ISfs(&c16, &c16, 0, 0), orvErrSize);
  EXPECT_EQ(orvsDiv_8u_ISfs(nullptr, &s8, 1, 0), orvErrNullPointer);
  EXPECT_EQ(orvsDiv_16s_Sfs(&s16, &s16, &s16, -5, 0), orvErrSize);
}

}  // namespace
