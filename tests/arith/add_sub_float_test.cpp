// Floating-point addition and subtraction: each result against the operation
// done in double and rounded once, over special values (signed zeros,
// infinities, NaNs with payloads, subnormals) and random ones; AddC and SubC
// on real vectors pass the vector bit for bit at a scalar of +-0 or NaN.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "arith/add_sub_forms.hpp"

namespace {

using addsubtest::Form;
using addsubtest::Op;

template <typename P>
P fromBits(std::uint64_t bits) {
  P v;
  if constexpr (sizeof(P) == 4) {
    const std::uint32_t b = static_cast<std::uint32_t>(bits);
    std::memcpy(&v, &b, 4);
  } else {
    std::memcpy(&v, &bits, 8);
  }
  return v;
}

template <typename P>
bool sameBits(P a, P b) {
  return std::memcmp(&a, &b, sizeof(P)) == 0;
}

template <typename P>
std::string bitsOf(P v) {
  std::uint64_t b = 0;
  std::memcpy(&b, &v, sizeof(P));
  char text[64];
  std::snprintf(text, sizeof text, "%.17g (0x%llx)", static_cast<double>(v), static_cast<unsigned long long>(b));
  return text;
}

// Zeros of both signs, quiet and signalling NaNs with payloads, infinities,
// subnormals, extremes, values whose sum rounds, then random finite values.
template <typename P>
std::vector<P> specialValues(unsigned seed, int randomCount) {
  using L = std::numeric_limits<P>;
  const bool f32 = sizeof(P) == 4;
  std::vector<P> v = {P(0), -P(0), P(1), P(-1), P(1.5), P(-2.25), P(3), L::infinity(), -L::infinity(),
                      L::denorm_min(), -L::denorm_min(), L::min(), -L::min(), L::max(), -L::max(),
                      P(1) + L::epsilon(), P(1) - L::epsilon() / 2, P(1e-3), P(-7e5), L::epsilon() / 4,
                      fromBits<P>(f32 ? 0x7FC12345u : 0x7FF8000000012345ull),   // quiet NaN, payload
                      fromBits<P>(f32 ? 0x7F812345u : 0x7FF0000000012345ull),   // signalling NaN
                      fromBits<P>(f32 ? 0xFFC00001u : 0xFFF8000000000001ull)};  // negative NaN
  std::mt19937_64 gen(seed);
  std::uniform_real_distribution<double> mant(-1.0, 1.0);
  std::uniform_int_distribution<int> expo(-30, 30);
  for (int i = 0; i < randomCount; ++i) v.push_back(static_cast<P>(std::ldexp(mant(gen), expo(gen))));
  return v;
}

template <typename P>
bool zeroOrNaN(P v) {
  return v == P(0) || std::isnan(v);
}

// The operation in double, rounded once to P.
template <typename P>
P reference(Op op, P x, P y) {
  const double a = x, b = y;
  const double r = op == Op::kPlus ? a + b : (op == Op::kMinus ? a - b : b - a);
  return static_cast<P>(r);
}

template <typename P>
void runAndCheck(const Form<P>& form, const std::vector<P>& x, const std::vector<P>& y) {
  const int len = static_cast<int>(x.size()) / form.lanes;
  std::vector<P> dst(x.size(), P(-99));
  if (form.inPlace) dst = x;
  ASSERT_EQ(form.run(x.data(), y.data(), dst.data(), len, 0), orvOk) << form.name;
  const bool passes = form.skipsZeroOrNaN && zeroOrNaN(y[0]);
  for (std::size_t j = 0; j < x.size(); ++j) {
    const P yj = form.scalar ? y[j % form.lanes] : y[j];
    const P want = passes ? x[j] : reference(form.op, x[j], yj);
    const bool ok = sameBits(dst[j], want) || (!passes && std::isnan(dst[j]) && std::isnan(want));
    if (!ok) {
      ADD_FAILURE() << form.name << " part " << j << ": x " << bitsOf(x[j]) << ", y " << bitsOf(yj) << " gave "
                    << bitsOf(dst[j]) << ", expected " << bitsOf(want);
      return;
    }
  }
}

template <typename P>
void sweepFloat(const std::vector<Form<P>>& forms) {
  const std::vector<P> values = specialValues<P>(7, 40);
  std::vector<P> pairX, pairY;
  for (P a : values) {
    for (P b : values) {
      pairX.push_back(a);
      pairY.push_back(b);
    }
  }
  if (pairX.size() % 2) {
    pairX.push_back(P(5));
    pairY.push_back(P(-5));
  }
  std::vector<P> row = values;
  if (row.size() % 2) row.push_back(P(0.25));
  for (const auto& form : forms) {
    SCOPED_TRACE(form.name);
    if (!form.scalar) {
      runAndCheck(form, pairX, pairY);
    } else {
      for (std::size_t a = 0; a < values.size(); ++a) {
        runAndCheck(form, row, {values[a], values[(a * 5 + 1) % values.size()]});
      }
    }
  }
}

TEST(AddSubFloat, SpecialAndRandomValuesIn32f) { sweepFloat(addsubtest::forms32f()); }
TEST(AddSubFloat, SpecialAndRandomValuesIn64f) { sweepFloat(addsubtest::forms64f()); }

// The copy made for a scalar of +-0 or NaN is the source's bit pattern, so a
// -0.0 stays -0.0 where arithmetic would give +0.0, and a signalling NaN is
// not quieted. The complex and reversed forms compute instead.
TEST(AddSubFloat, ZeroScalarCopiesSignedZerosAndNaNPayloads) {
  const orv32f negZero = -0.0f;
  const orv32f sNaN = fromBits<orv32f>(0x7F812345u);
  const orv32f src[2] = {negZero, sNaN};
  orv32f dst[2] = {1, 1};
  ASSERT_EQ(orvsAddC_32f(src, 0.0f, dst, 2), orvOk);
  EXPECT_TRUE(sameBits(dst[0], negZero) && sameBits(dst[1], sNaN));
  ASSERT_EQ(orvsSubC_32f(src, -0.0f, dst, 2), orvOk);
  EXPECT_TRUE(sameBits(dst[0], negZero) && sameBits(dst[1], sNaN));

  const orv32fc csrc[1] = {{negZero, negZero}};
  orv32fc cdst[1];
  ASSERT_EQ(orvsAddC_32fc(csrc, orv32fc{0.0f, 0.0f}, cdst, 1), orvOk);
  EXPECT_TRUE(sameBits(cdst[0].re, 0.0f) && sameBits(cdst[0].im, 0.0f));
  orv64f d[1] = {-0.0};
  ASSERT_EQ(orvsSubCRev_64f_I(0.0, d, 1), orvOk);
  EXPECT_TRUE(sameBits(d[0], 0.0));
}

TEST(AddSubFloat, Widened16sSumsAndDifferences) {
  std::vector<orv16s> x, y;
  const orv16s v[] = {0, 1, -1, 2, -3, 127, -128, 16384, -16385, 32767, 32766, -32768, -32767};
  for (orv16s a : v) {
    for (orv16s b : v) {
      x.push_back(a);
      y.push_back(b);
    }
  }
  const int n = static_cast<int>(x.size());
  std::vector<orv32f> sum(n), diff(n);
  ASSERT_EQ(orvsAdd_16s32f(x.data(), y.data(), sum.data(), n), orvOk);
  ASSERT_EQ(orvsSub_16s32f(x.data(), y.data(), diff.data(), n), orvOk);
  for (int i = 0; i < n; ++i) {
    EXPECT_EQ(sum[i], static_cast<orv32f>(x[i] + y[i])) << x[i] << " + " << y[i];
    EXPECT_EQ(diff[i], static_cast<orv32f>(y[i] - x[i])) << y[i] << " - " << x[i];
  }
}

}  // namespace
