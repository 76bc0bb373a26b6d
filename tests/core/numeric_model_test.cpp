// The compiler keeps the numeric model: a double rounded to float and widened
// back is the float's value, also when the compiler vectorises the pair.
#include <gtest/gtest.h>

namespace {

struct Pair {
  double re, im;
};

__attribute__((noinline)) void roundPairsToFloat(const Pair* x, Pair* y, int n) {
  for (int k = 0; k < n; ++k) {
    const float re = static_cast<float>(x[k].re);
    const float im = static_cast<float>(x[k].im);
    y[k] = {static_cast<double>(re), static_cast<double>(im)};
  }
}

TEST(NumericModel, RoundingToFloatSurvivesVectorisedPairs) {
  Pair x[8], y[8];
  for (int k = 0; k < 8; ++k) x[k] = {1.0 / (3 + 2 * k), 1.0 / (7 + 2 * k)};
  roundPairsToFloat(x, y, 8);
  for (int k = 0; k < 8; ++k) {
    EXPECT_EQ(y[k].re, static_cast<double>(static_cast<float>(1.0 / (3 + 2 * k)))) << k;
    EXPECT_EQ(y[k].im, static_cast<double>(static_cast<float>(1.0 / (7 + 2 * k)))) << k;
    EXPECT_NE(y[k].re, x[k].re) << k;  // an odd denominator needs more than 24 bits
  }
}

}  // namespace
