// Integer taps: the shift into 16 bits, the stored factor, the 16-bit copy,
// and the quantisation of floating taps into an integer-tap state.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "core/test_hooks.hpp"
#include "fir_rows.hpp"

namespace firtest {
namespace {

using orv::filter::Fir32s16s;
using orv::filter::Fir32sc16sc;

// ---- Shift of integer taps --------------------------------------------------------

struct ShiftCase {
  std::vector<orv32s> taps;
  int factor;
  std::vector<orv32s> stored;
  int storedFactor;
};

const ShiftCase kShiftCases[] = {
    {{0x7FFE, -3, 0}, 5, {0x7FFE, -3, 0}, 5},         // the bound itself is kept
    {{-0x7FFE, 1}, 0, {-0x7FFE, 1}, 0},
    {{0x7FFF, 2, -5}, 0, {0x3FFF, 1, -3}, 1},         // one above: halved, towards -inf
    {{-0x7FFF, 100}, -4, {-0x4000, 50}, -3},
    {{0xFFFD, -1}, 0, {0x7FFE, -1}, 1},
    {{0xFFFE}, 0, {0x3FFF}, 2},
    {{0x7FFFFFFF, -1}, 3, {0x3FFF, -1}, 20},
    {{INT_MIN, 5}, 0, {INT_MIN, 5}, 0},               // the most negative escapes
    {{INT_MIN, 0x10000}, 0, {INT_MIN >> 2, 0x4000}, 2},
    {{0, 0, 0}, 7, {0, 0, 0}, 7},
};

TEST(FirIntegerTaps, LargeTapsAreShiftedInto16Bits) {
  for (const ShiftCase& c : kShiftCases) {
    const int n = static_cast<int>(c.taps.size());
    orvsFIRState* s = nullptr;
    ASSERT_EQ(orvsFIRInitAlloc32s_16s(&s, c.taps.data(), n, c.factor, nullptr), orvOk);
    std::vector<orv32s> got(n);
    int factor = 0;
    ASSERT_EQ(orvsFIRGetTaps32s_16s(s, got.data(), &factor), orvOk);
    EXPECT_EQ(got, c.stored) << "first tap " << c.taps[0];
    EXPECT_EQ(factor, c.storedFactor) << "first tap " << c.taps[0];
    EXPECT_EQ(orvsFIRFree32s_16s(s), orvOk);

    // The same values as the real and the imaginary parts of complex taps
    // give the same shift: all 2n parts count.
    std::vector<orv32sc> ctaps(n), cgot(n);
    for (int i = 0; i < n; ++i) ctaps[i] = {i % 2 ? 0 : c.taps[i], i % 2 ? c.taps[i] : 0};
    ASSERT_EQ(orvsFIRInitAlloc32sc_16sc(&s, ctaps.data(), n, c.factor, nullptr), orvOk);
    ASSERT_EQ(orvsFIRGetTaps32sc_16sc(s, cgot.data(), &factor), orvOk);
    EXPECT_EQ(factor, c.storedFactor) << "complex, first tap " << c.taps[0];
    for (int i = 0; i < n; ++i) {
      EXPECT_EQ(i % 2 ? cgot[i].im : cgot[i].re, c.stored[i]) << i;
      EXPECT_EQ(i % 2 ? cgot[i].re : cgot[i].im, 0) << i;
    }
    EXPECT_EQ(orvsFIRFree32sc_16sc(s), orvOk);
  }
}

// ---- Quantisation -------------------------------------------------------------------

struct QuantCase {
  std::vector<float> taps;
  std::vector<orv32s> stored;
  int factor;
};

const QuantCase kQuantCases[] = {
    // The largest magnitude is doubled until it reaches 16383.5 .. 32767.
    {{1.0f, -0.5f, 0.25f}, {16384, -8192, 4096}, -14},
    {{0.75f}, {24576}, -15},
    // Half away from zero.
    {{1.0f, 2.5f / 16384, -2.5f / 16384, 1.5f / 16384}, {16384, 3, -3, 2}, -14},
    // At the bounds of the range: no doubling.
    {{16383.5f}, {16384}, 0},
    {{-32767.0f}, {-16384}, 1},  // -32767 is beyond 0x7FFE: one more shift
    // Doubled to 32766.8, rounded to 32767, then shifted by one bit.
    {{16383.4f, 2.0f}, {16383, 2}, 0},
    // Above 32767: halved.
    {{40000.0f, -1.0f}, {20000, -1}, 1},
    {{1.0e9f, 3.0e8f}, {30518, 9155}, 15},
    // A NaN tap becomes the most negative integer and escapes the shift.
    {{1.0f, std::numeric_limits<float>::quiet_NaN()}, {16384, INT_MIN}, -14},
};

// Real taps, and the same values alternately as re and im of complex taps:
// every part counts.
TEST(FirQuantizedTaps, WorkedValues) {
  for (const QuantCase& c : kQuantCases) {
    SCOPED_TRACE(c.taps[0]);
    const int n = static_cast<int>(c.taps.size()), cn = (n + 1) / 2;
    orvsFIRState* s = nullptr;
    ASSERT_EQ(orvsFIRInitAlloc32s_16s32f(&s, c.taps.data(), n, nullptr), orvOk);
    EXPECT_EQ(s->tag, 0x46493039u);
    std::vector<orv32s> got(n);
    int factor = 0;
    ASSERT_EQ(orvsFIRGetTaps32s_16s(s, got.data(), &factor), orvOk);
    EXPECT_EQ(got, c.stored);
    EXPECT_EQ(factor, c.factor);
    EXPECT_EQ(orvsFIRFree32s_16s(s), orvOk);

    std::vector<orv32fc> taps(cn, orv32fc{0.0f, 0.0f});
    for (int i = 0; i < n; ++i) (i % 2 ? taps[i / 2].im : taps[i / 2].re) = c.taps[i];
    ASSERT_EQ(orvsFIRInitAlloc32sc_16sc32fc(&s, taps.data(), cn, nullptr), orvOk);
    EXPECT_EQ(s->tag, 0x46493130u);
    std::vector<orv32sc> cgot(cn);
    ASSERT_EQ(orvsFIRGetTaps32sc_16sc(s, cgot.data(), &factor), orvOk);
    EXPECT_EQ(factor, c.factor);
    for (int i = 0; i < n; ++i) EXPECT_EQ(i % 2 ? cgot[i / 2].im : cgot[i / 2].re, c.stored[i]) << i;
    EXPECT_EQ(orvsFIRFree32sc_16sc(s), orvOk);
  }
}

// Any taps: the stored values times 2^factor are within one unit of the
// taps, and the largest stored value uses the 16-bit range.
TEST(FirQuantizedTaps, RandomTapsAreApproximated) {
  std::mt19937 g(5);
  for (int round = 0; round < 200; ++round) {
    const int n = 1 + round % 23;
    const float scale = std::ldexp(1.0f, static_cast<int>(g() % 80) - 40);
    std::vector<float> taps(n);
    for (float& t : taps) t = std::uniform_real_distribution<float>(-1.0f, 1.0f)(g) * scale;
    orvsFIRState* s = nullptr;
    ASSERT_EQ(orvsFIRInitAlloc32s_16s32f(&s, taps.data(), n, nullptr), orvOk);
    std::vector<orv32s> got(n);
    std::vector<float> back(n);
    int factor = 0;
    ASSERT_EQ(orvsFIRGetTaps32s_16s(s, got.data(), &factor), orvOk);
    ASSERT_EQ(orvsFIRGetTaps32s_16s32f(s, back.data()), orvOk);
    orv32s largest = 0;
    for (int i = 0; i < n; ++i) {
      largest = std::max(largest, std::abs(got[i]));
      const double unit = std::ldexp(1.0, factor);
      EXPECT_LE(std::fabs(got[i] * unit - taps[i]), unit) << round << " " << i;
      EXPECT_EQ(back[i], static_cast<float>(got[i] * unit)) << round << " " << i;
    }
    EXPECT_GE(largest, 8192);
    EXPECT_LE(largest, 0x7FFE);
    EXPECT_EQ(orvsFIRFree32s_16s(s), orvOk);
  }
}

// Taps without a largest magnitude to scale by would have the quantisation
// search forever; they are refused, and nothing is made.
TEST(FirQuantizedTaps, TapsWithoutScaleAreRefused) {
  const float inf = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  struct Case {
    std::vector<float> taps;
    orvStatus status;
  } cases[] = {
      {{0.0f}, orvErrBadArgument},
      {{0.0f, -0.0f, 0.0f}, orvErrBadArgument},
      {{nan, 0.0f}, orvErrBadArgument},
      {{inf, 1.0f}, orvErrOutOfRange},
      {{0.5f, -inf}, orvErrOutOfRange},
  };
  for (const Case& c : cases) {
    int dummy = 0;
    orvsFIRState* const untouched = reinterpret_cast<orvsFIRState*>(&dummy);
    orvsFIRState* s = untouched;
    const int n = static_cast<int>(c.taps.size());
    EXPECT_EQ(orvsFIRInitAlloc32s_16s32f(&s, c.taps.data(), n, nullptr), c.status);
    EXPECT_EQ(s, untouched);
    std::vector<orv32fc> ctaps(n);
    for (int i = 0; i < n; ++i) ctaps[i] = {0.0f, c.taps[i]};
    EXPECT_EQ(orvsFIRInitAlloc32sc_16sc32fc(&s, ctaps.data(), n, nullptr), c.status);
    EXPECT_EQ(s, untouched);
  }
}

TEST(FirQuantizedTaps, ArgumentChecks) {
  const float taps[2] = {1.0f, 0.0f};
  const orv32fc ctaps[2] = {{1.0f, 0.0f}, {0.0f, 0.0f}};
  orvsFIRState* s = nullptr;
  EXPECT_EQ(orvsFIRInitAlloc32s_16s32f(nullptr, taps, 2, nullptr), orvErrNullPointer);
  EXPECT_EQ(orvsFIRInitAlloc32s_16s32f(&s, nullptr, 0, nullptr), orvErrNullPointer);
  EXPECT_EQ(orvsFIRInitAlloc32s_16s32f(&s, taps, 0, nullptr), orvErrFirLength);
  EXPECT_EQ(orvsFIRInitAlloc32sc_16sc32fc(nullptr, ctaps, 2, nullptr), orvErrNullPointer);
  EXPECT_EQ(orvsFIRInitAlloc32sc_16sc32fc(&s, nullptr, 2, nullptr), orvErrNullPointer);
  EXPECT_EQ(orvsFIRInitAlloc32sc_16sc32fc(&s, ctaps, -3, nullptr), orvErrFirLength);
  EXPECT_EQ(s, nullptr);
}

// ---- Taps with a float result -----------------------------------------------------

// 2^tapsFactor is made by moving the exponent of 1.0 by |tapsFactor| mod 128.
TEST(FirQuantizedTaps, FloatTapsUseTheFactorModulo128) {
  struct Case {
    int factor;
    float multiplier;
  } cases[] = {{0, 1.0f},    {3, 8.0f},        {-3, 0.125f}, {127, 0x1p127f},
               {128, 1.0f},  {130, 4.0f},      {-130, 0.25f}, {-126, 0x1p-126f},
               {-127, 0.0f},  // the exponent field reaches zero
               {INT_MIN, 1.0f}};
  const orv32s taps[3] = {3, -5, 0};
  const orv32sc ctaps[1] = {{-7, 1}};
  for (const Case& c : cases) {
    orvsFIRState* s = nullptr;
    ASSERT_EQ(orvsFIRInitAlloc32s_16s(&s, taps, 3, c.factor, nullptr), orvOk);
    float got[3];
    ASSERT_EQ(orvsFIRGetTaps32s_16s32f(s, got), orvOk);
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(got[i], static_cast<float>(taps[i]) * c.multiplier) << c.factor << " " << i;
    EXPECT_EQ(orvsFIRFree32s_16s(s), orvOk);

    ASSERT_EQ(orvsFIRInitAlloc32sc_16sc(&s, ctaps, 1, c.factor, nullptr), orvOk);
    orv32fc cgot[1];
    ASSERT_EQ(orvsFIRGetTaps32sc_16sc32fc(s, cgot), orvOk);
    EXPECT_EQ(cgot[0].re, -7.0f * c.multiplier) << c.factor;
    EXPECT_EQ(cgot[0].im, 1.0f * c.multiplier) << c.factor;
    EXPECT_EQ(orvsFIRFree32sc_16sc(s), orvOk);
  }
}

TEST(FirIntegerTaps, GetTapsChecksAndTags) {
  const orv32s taps[1] = {1};
  orvsFIRState* s = nullptr;
  ASSERT_EQ(orvsFIRInitAlloc32s_16s(&s, taps, 1, 0, nullptr), orvOk);
  float out[1];
  orv32s iout[1];
  orv32fc cout[1];
  orv32sc ciout[1];
  EXPECT_EQ(orvsFIRGetTaps32s_16s(s, iout, nullptr), orvErrNullPointer);
  EXPECT_EQ(orvsFIRGetTaps32sc_16sc(s, ciout, nullptr), orvErrNullPointer);
  int factor = 0;
  EXPECT_EQ(orvsFIRGetTaps32sc_16sc(s, ciout, &factor), orvErrContextMismatch);
  EXPECT_EQ(orvsFIRGetTaps32s_16s32f(nullptr, out), orvErrNullPointer);
  EXPECT_EQ(orvsFIRGetTaps32s_16s32f(s, nullptr), orvErrNullPointer);
  EXPECT_EQ(orvsFIRGetTaps32sc_16sc32fc(s, cout), orvErrContextMismatch);
  s->tag = 0x46493131u;  // the family's multi-rate tag
  EXPECT_EQ(orvsFIRGetTaps32s_16s32f(s, out), orvOk);
  EXPECT_EQ(out[0], 1.0f);
  s->tag = 0x46493039u;
  EXPECT_EQ(orvsFIRFree32s_16s(s), orvOk);
}

// ---- Failed allocations --------------------------------------------------------------

TEST(FirQuantizedTaps, EveryFailedAllocationIsReleased) {
  const float taps[5] = {0.1f, -0.2f, 0.3f, 0.4f, 0.5f};
  const orv32fc ctaps[3] = {{0.1f, -0.2f}, {0.3f, 0.4f}, {0.5f, 0.0f}};
  for (bool complex : {false, true}) {
    orvsFIRState* kept = nullptr;
    // The temporary of integers, then the record, taps, 16-bit copy and delay.
    EXPECT_EQ(driveAllocationFailures(
                  [&](orvsFIRState** s) {
                    const orvStatus st = complex ? orvsFIRInitAlloc32sc_16sc32fc(s, ctaps, 3, nullptr)
                                                 : orvsFIRInitAlloc32s_16s32f(s, taps, 5, nullptr);
                    kept = *s;
                    return st;
                  },
                  complex ? "complex" : "real"),
              5);
    EXPECT_EQ(complex ? orvsFIRFree32sc_16sc(kept) : orvsFIRFree32s_16s(kept), orvOk);
  }
}

}  // namespace
}  // namespace firtest
