// The output rules of the FIR families with integer samples, on values
// worked out by hand: saturation before rounding half away from zero, the
// scaleFactor taken modulo 128 into a float's exponent, and the shift rule
// of integer taps with its wrapping 32-bit sums and limits.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "core/float_to_int.hpp"
#include "fir_rows.hpp"

namespace firtest {
namespace {

TEST(FirOutputRule, SaturatesThenRoundsHalfAwayFromZero) {
  using orv::saturateRoundHalfAway;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    double v;
    orv16s s16;
    orv32s s32;
  };
  // Above the largest value saturated, not rounded: 32767.25 gives 32767.
  const Case cases[] = {
      {0.0, 0, 0},          {-0.0, 0, 0},        {1e-300, 0, 0},           {0.5, 1, 1},
      {-0.5, -1, -1},       {1.5, 2, 2},         {2.5, 3, 3},              {-2.5, -3, -3},
      {2.4999999999999996, 2, 2},                {32766.5, 32767, 32767},  {32767.0, 32767, 32767},
      {32767.25, 32767, 32767},                  {-32767.5, -32768, -32768},
      {-32768.0, -32768, -32768},                {-32768.25, -32768, -32768},
      {40000.0, 32767, 40000},                   {2147483646.5, 32767, 2147483647},
      {2147483647.0, 32767, 2147483647},         {2147483647.5, 32767, 2147483647},
      {-2147483647.5, -32768, INT_MIN},          {-2147483648.5, -32768, INT_MIN},
      {inf, 32767, INT_MAX}, {-inf, -32768, INT_MIN}, {nan, -32768, INT_MIN},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(saturateRoundHalfAway<orv16s>(c.v), c.s16) << c.v;
    EXPECT_EQ(saturateRoundHalfAway<orv32s>(c.v), c.s32) << c.v;
  }
}

// One tap and one sample through the stateless single-sample forms, so that
// the accumulator is the product itself.
template <typename Row>
typename Row::Sample oneProduct(typename Row::Tap tap, typename Row::Sample x, int sf) {
  typename Row::Sample d[2] = {}, y{};
  int index = 0;
  EXPECT_EQ(Row::directOne(x, &y, &tap, 1, 0, d, &index, sf), orvOk);
  return y;
}

struct RuleCase {
  double tap;
  int x;
  int sf;
  long long expect;  // before saturation to the sample type
};

// tap * x * 2^-(sf mod 128), saturated, then rounded half away from zero.
const RuleCase kRuleCases[] = {
    {0.5, 5, 0, 3},      {0.5, -5, 0, -3},    {0.5, 3, 0, 2},       {1.0, 5, 1, 3},
    {1.0, -5, 1, -3},    {1.0, 5, 129, 3},    {1.0, 5, -129, 10},   {1.0, 5, -1, 10},
    {1.0, 3, 2, 1},      {1.0, 2, 2, 1},      {1.0, -2, 2, -1},     {1.0, 1, 2, 0},
    {1.0, 5, 128, 5},    {1.0, 5, 256, 5},    {1.0, 5, INT_MIN, 5}, {1.0, 5, 127, 0},
    {1.0, -5, 255, 0},   {1.0, 5, INT_MAX, 0}, {1.0, 5, 126, 0},    {1.0, 1, -127, 1LL << 62},
    {1.0, 20000, -1, 40000}, {4.0, -20000, 0, -80000}, {0.75, 32767, 0, 24575},
};

template <typename Row>
class FirIntegerSamples : public ::testing::Test {};
using IntegerSampleRows = ::testing::Types<F32f16s, F64f16s, F64f32s, F32fc16sc, F64fc16sc,
                                           F64fc32sc>;
TYPED_TEST_SUITE(FirIntegerSamples, IntegerSampleRows, FilterRowName);

template <typename P>
P saturated(long long v) {
  if (v > std::numeric_limits<P>::max()) return std::numeric_limits<P>::max();
  if (v < std::numeric_limits<P>::min()) return std::numeric_limits<P>::min();
  return static_cast<P>(v);
}

TYPED_TEST(FirIntegerSamples, OutputRule) {
  using Row = TypeParam;
  using Tap = typename Row::Tap;
  using S = typename Row::Sample;
  for (const RuleCase& c : kRuleCases) {
    SCOPED_TRACE(::testing::Message() << c.tap << " * " << c.x << " sf " << c.sf);
    if constexpr (Row::Family::kComplex) {
      // (tap, 0) * (x, -x): re = tap x, im = -tap x.
      using TP = decltype(Tap{}.re);
      using SP = decltype(S{}.re);
      const Tap t{static_cast<TP>(c.tap), 0};
      const S x{static_cast<SP>(c.x), static_cast<SP>(-c.x)};
      const S y = oneProduct<Row>(t, x, c.sf);
      EXPECT_EQ(y.re, saturated<SP>(c.expect));
      // -x is the mirror case of every row; rounding is symmetric.
      EXPECT_EQ(y.im, saturated<SP>(-c.expect));
    } else {
      const S y = oneProduct<Row>(static_cast<Tap>(c.tap), static_cast<S>(c.x), c.sf);
      EXPECT_EQ(y, saturated<S>(c.expect));
    }
  }
  // A NaN accumulator stores the smallest value.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  if constexpr (!Row::Family::kComplex) {
    EXPECT_EQ(oneProduct<Row>(static_cast<Tap>(nan), 1, 0), std::numeric_limits<S>::min());
  }
}

// ---- Integer taps ---------------------------------------------------------------------

orv16s shiftOut(std::vector<orv32s> taps, std::vector<orv16s> xs, int tf, int sf) {
  const int T = static_cast<int>(taps.size());
  std::vector<orv16s> d(2 * T);
  int index = 0;
  orv16s y = 0;
  for (orv16s x : xs)
    EXPECT_EQ(orvsFIROne32s_Direct_16s_Sfs(x, &y, taps.data(), T, tf, d.data(), &index, sf), orvOk);
  return y;
}

TEST(FirShiftRule, WorkedValues) {
  struct Case {
    std::vector<orv32s> taps;
    std::vector<orv16s> xs;  // the last output is checked
    int tf, sf;
    orv16s expect;
  };
  const Case cases[] = {
      {{3}, {5}, 0, 0, 15},
      {{3}, {5}, 0, 1, 7},       // 7.5 truncated towards minus infinity
      {{3}, {-5}, 0, 1, -8},     // -7.5 likewise
      {{3}, {5}, 2, 0, 60},
      {{3}, {5}, -2, -2, 15},
      {{1}, {1}, 31, 0, -32768},  // 1 << 31 is the most negative 32-bit value
      {{1}, {1}, 40, 0, -32768},  // a distance of 40 acts as 31
      {{1}, {2}, 40, 0, 0},       // 2 << 31 leaves nothing
      {{1}, {1}, 30, 0, 32767},
      {{1}, {1}, 0, -30, 32767},
      {{1}, {-1}, 0, 40, -1},     // right by 31 at most
      {{1}, {5}, 0, 40, 0},
      {{1}, {5}, INT_MAX, -1, 0},      // the difference wraps to INT_MIN: right by 31
      {{1}, {-5}, INT_MAX, -1, -1},
      {{1}, {5}, 0, INT_MIN, 0},       // 0 - INT_MIN wraps to INT_MIN as well
      {{1}, {5}, INT_MIN, INT_MIN, 5},
      {{0x7FFFFFFF}, {2}, 0, 0, -2},   // the product wraps
      {{0x40000000, 0x40000000}, {2, 2}, 0, 0, 0},  // two products of 2^31 wrap to 0
      {{0x40000000, 0x40000000}, {2, 2}, 0, 31, 0},
      {{0x7FFE}, {32767}, 0, 0, 32767},
      {{0x7FFE}, {-32768}, 0, 0, -32768},
      {{0x7FFE}, {32767}, 0, 15, 32765},  // 1073643522 >> 15
  };
  for (const Case& c : cases) {
    EXPECT_EQ(shiftOut(c.taps, c.xs, c.tf, c.sf), c.expect)
        << "taps " << c.taps[0] << " tf " << c.tf << " sf " << c.sf;
  }
}

TEST(FirShiftRule, ComplexPartsWrapAndShiftAlike) {
  orv32sc tap{1, 2};
  orv16sc d[2] = {}, y{};
  int index = 0;
  ASSERT_EQ(orvsFIROne32sc_Direct_16sc_Sfs({3, 4}, &y, &tap, 1, 0, d, &index, 0), orvOk);
  EXPECT_EQ(y.re, -5);  // 1*3 - 2*4
  EXPECT_EQ(y.im, 10);  // 1*4 + 2*3
  ASSERT_EQ(orvsFIROne32sc_Direct_16sc_Sfs({3, 4}, &y, &tap, 1, 1, d, &index, 0), orvOk);
  EXPECT_EQ(y.re, -10);
  EXPECT_EQ(y.im, 20);
  tap = {0x40000000, 0};
  ASSERT_EQ(orvsFIROne32sc_Direct_16sc_Sfs({4, -4}, &y, &tap, 1, 0, d, &index, 0), orvOk);
  EXPECT_EQ(y.re, 0);  // 2^32 wraps to 0
  EXPECT_EQ(y.im, 0);
  ASSERT_EQ(orvsFIROne32sc_Direct_16sc_ISfs(nullptr, &tap, 1, 0, d, &index, 0), orvErrNullPointer);
}

// A state keeps its taps shifted into 16 bits and the factor grown by the
// shift: its outputs are those of the stateless form on the stored taps and
// factor, which differ from the unshifted taps by the lost low bit.
TEST(FirShiftRule, StateUsesStoredTapsAndFactor) {
  const std::vector<orv32s> taps = {0x7FFF, -3, 1001, 7, -0x7FFF};
  const int T = 5;
  orvsFIRState* s = nullptr;
  ASSERT_EQ(orvsFIRInitAlloc32s_16s(&s, taps.data(), T, -3, nullptr), orvOk);
  std::vector<orv32s> stored(T);
  int factor = 0;
  ASSERT_EQ(orvsFIRGetTaps32s_16s(s, stored.data(), &factor), orvOk);
  EXPECT_EQ(factor, -2);
  EXPECT_EQ(stored[0], 0x3FFF);
  EXPECT_EQ(stored[1], -2);  // -3 >> 1, towards minus infinity
  const std::vector<orv16s> x = {30000, -30000, 12345, -1, 7, 32767, -32768, 100, 5, 0, 3};
  const int len = static_cast<int>(x.size());
  std::vector<orv16s> y(len), yRef(len), d(2 * T);
  int index = 0;
  for (int sf : {-3, 0, 5}) {
    ASSERT_EQ(orvsFIRSetDlyLine32s_16s(s, nullptr), orvOk);
    ASSERT_EQ(orvsFIR32s_16s_Sfs(x.data(), y.data(), len, s, sf), orvOk);
    std::fill(d.begin(), d.end(), orv16s{0});
    index = 0;
    ASSERT_EQ(orvsFIR32s_Direct_16s_Sfs(x.data(), yRef.data(), len, stored.data(), T, factor,
                                        d.data(), &index, sf),
              orvOk);
    EXPECT_EQ(y, yRef) << sf;
    // And the reference sum of the stored taps.
    const auto expect =
        reference<F32s16s>(stored, std::vector<orv16s>(T, 0), x, sf, factor);
    EXPECT_EQ(y, expect) << sf;
  }
  ASSERT_EQ(orvsFIRFree32s_16s(s), orvOk);
}

}  // namespace
}  // namespace firtest
