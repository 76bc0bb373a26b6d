// Floating sums, differences and products, bit for bit against the
// operation done in double and rounded once, over special values (signed
// zeros, infinities, NaNs with payloads, subnormals) and random ones; the
// real scalar forms pass the vector on bit for bit (or clear it) at their
// shortcut values.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "arith/forms.hpp"

namespace {

using arithtest::Form;

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

// Bits equal; where the result is computed any NaN matches any NaN (which
// NaN operand an operation passes on is the processor's choice), where it
// is a copy the payload must survive.
template <typename P>
void runAndCheck(const Form<P>& form, const std::vector<P>& x, const std::vector<P>& y) {
  std::vector<P> dst(x.size(), P(-99));
  if (form.inPlace) dst = x;
  ASSERT_EQ(form.run(x.data(), y.data(), dst.data(), int(x.size()) / form.lanes, 0), orvOk) << form.name;
  for (std::size_t j = 0; j < x.size(); ++j) {
    bool copied;
    const P want = arithtest::floatPart(form, x.data(), y.data(), j, &copied);
    const bool ok = std::memcmp(&dst[j], &want, sizeof(P)) == 0 || (!copied && std::isnan(dst[j]) && std::isnan(want));
    if (!ok) {
      ADD_FAILURE() << form.name << " part " << j << ": x " << bitsOf(x[j]) << ", y "
                    << bitsOf(form.scalar ? y[j % form.lanes] : y[j]) << " gave " << bitsOf(dst[j]) << ", expected "
                    << bitsOf(want);
      return;
    }
  }
}

template <typename P>
void sweepFloat(const std::vector<Form<P>>& forms) {
  const std::vector<P> values = specialValues<P>(7, 41);  // an even count, for complex forms
  std::vector<P> pairX, pairY;
  for (P a : values)
    for (P b : values) pairX.push_back(a), pairY.push_back(b);
  for (int i = 0; i < 6; ++i) pairX.push_back(values[30 + i]), pairY.push_back(values[40 - i]);  // no multiple of 4
  for (const auto& form : forms) {
    if (!form.scalar) runAndCheck(form, pairX, pairY);
    for (std::size_t a = 0; a < values.size() && form.scalar; ++a)
      runAndCheck(form, values, {values[a], values[(a * 5 + 1) % values.size()]});
  }
}

TEST(ArithFloat, SpecialAndRandomValuesIn32f) { sweepFloat(arithtest::forms32f()); }
TEST(ArithFloat, SpecialAndRandomValuesIn64f) { sweepFloat(arithtest::forms64f()); }

// A product whose parts nearly cancel: rounding each product to float first
// would give another re.
TEST(ArithFloat, ComplexProductRoundedOnceFromDouble) {
  const orv32fc x{1.0f + 0x1p-23f, 1.0f}, y{1.0f - 0x1p-23f, 1.0f - 0x1p-23f};
  orv32fc d{};
  ASSERT_EQ(orvsMul_32fc(&x, &y, &d, 1), orvOk);
  EXPECT_EQ(d.re, static_cast<float>((1.0 + 0x1p-23) * (1.0 - 0x1p-23) - (1.0 - 0x1p-23)));
}

TEST(ArithFloat, Widened16sSumsDifferencesAndProducts) {
  std::vector<orv16s> x, y;
  const orv16s v[] = {0, 1, -1, 2, -3, 127, -128, 4097, 12345, 16384, -16385, 32767, 32766, -32768, -32767};
  for (orv16s a : v)
    for (orv16s b : v) x.push_back(a), y.push_back(b);
  const int n = static_cast<int>(x.size());
  std::vector<orv32f> sum(n), diff(n), prod(n);
  ASSERT_EQ(orvsAdd_16s32f(x.data(), y.data(), sum.data(), n), orvOk);
  ASSERT_EQ(orvsSub_16s32f(x.data(), y.data(), diff.data(), n), orvOk);
  ASSERT_EQ(orvsMul_16s32f(x.data(), y.data(), prod.data(), n), orvOk);
  for (int i = 0; i < n; ++i) {
    EXPECT_EQ(sum[i], static_cast<orv32f>(x[i] + y[i])) << x[i] << " + " << y[i];
    EXPECT_EQ(diff[i], static_cast<orv32f>(y[i] - x[i])) << y[i] << " - " << x[i];
    EXPECT_EQ(prod[i], static_cast<orv32f>(double(long(x[i]) * y[i]))) << x[i] << " * " << y[i];
  }
}

}  // namespace
