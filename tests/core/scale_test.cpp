// The shared scaling steps on their own, at the widths later families use
// them (products that fill 32 and 64 bits), against the exact reference.
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "core/scale.hpp"
#include "orvspx.h"
#include "support/exact_ref.hpp"

namespace {

using orvtest::Wide;

TEST(ScaleSteps, CaseOfEachScale) {
  const orv::ScaleLimits lim{16, -15};
  EXPECT_EQ(orv::classifyScale(0, lim), orv::ScaleCase::kKeep);
  EXPECT_EQ(orv::classifyScale(1, lim), orv::ScaleCase::kHalve);
  EXPECT_EQ(orv::classifyScale(2, lim), orv::ScaleCase::kRound);
  EXPECT_EQ(orv::classifyScale(16, lim), orv::ScaleCase::kRound);
  EXPECT_EQ(orv::classifyScale(17, lim), orv::ScaleCase::kZero);
  EXPECT_EQ(orv::classifyScale(INT_MAX, lim), orv::ScaleCase::kZero);
  EXPECT_EQ(orv::classifyScale(-1, lim), orv::ScaleCase::kShiftUp);
  EXPECT_EQ(orv::classifyScale(-15, lim), orv::ScaleCase::kShiftUp);
  EXPECT_EQ(orv::classifyScale(-16, lim), orv::ScaleCase::kSignOnly);
  EXPECT_EQ(orv::classifyScale(INT_MIN, lim), orv::ScaleCase::kSignOnly);
}

// Rounding at bit s of any t for which |t| + 2^(s-1) fits W, checked with
// random t of every magnitude, their neighbours and the exact ties.
template <typename W>
void checkRounding(unsigned seed) {
  std::mt19937_64 gen(seed);
  const int bits = std::numeric_limits<W>::digits;  // 31 or 63
  for (int s = 1; s < bits; ++s) {
    const orv::RoundStep<W> round(s);
    const Wide limit = (Wide(1) << bits) - (Wide(1) << (s - 1)) - 1;  // |t| allowed
    for (int i = 0; i < 4000; ++i) {
      const int mag = static_cast<int>(gen() % bits);
      Wide t = static_cast<Wide>(gen() >> (64 - bits)) >> (bits - mag);
      if (i % 4 == 1) t = (t >> s << s) | (Wide(1) << (s - 1));  // a tie
      if (i % 2) t = -t;
      if (t > limit || t < -limit) continue;
      const W w = static_cast<W>(t);
      const Wide want = orvtest::roundDown(t, s);
      ASSERT_EQ(Wide(round(w)), want) << "t " << orvtest::toString(t) << " s " << s;
      if (s == 1) {
        ASSERT_EQ(Wide(orv::HalveStep<W>{}(w)), want) << "t " << orvtest::toString(t);
      }
    }
  }
}

TEST(ScaleSteps, RoundingToNearestEvenIn32And64Bits) {
  checkRounding<std::int32_t>(1);
  checkRounding<std::int64_t>(2);
}

// Saturate, shift, saturate equals the exact rule for products that fill W.
TEST(ScaleSteps, SaturateBeforeShiftMatchesExactRule) {
  const std::int64_t ts[] = {0, 1, -1, 3, -3, 32767, -32768, 65535, -65536, 1LL << 30, -(1LL << 30),
                             (1LL << 62), -(1LL << 62), INT64_MAX, INT64_MIN + 1};
  for (std::int64_t t : ts) {
    for (int d = 1; d <= 31; ++d) {
      const orv::SaturateShiftUpStep<orv32s, std::int64_t> step{d};
      const orv32s got = orv::limitTo<orv32s, orv::Bound::kBoth>(step(t));
      EXPECT_EQ(got, orvtest::exactScaledTo<orv32s>(t, -d)) << t << " << " << d;
    }
  }
}

}  // namespace
