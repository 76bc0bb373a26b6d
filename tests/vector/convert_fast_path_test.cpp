// The fast float-to-integer loops give the plain loops' results bit for bit:
// every lane path (scalar, four lanes by fraction, by rounding control and
// truncating, eight lanes where the processor has them) against the plain
// loop, for every 8- and 16-bit target, every scale of the fast range, and
// the caller in each rounding mode where the path may run under it.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "vector/convert_kernels.hpp"

namespace {

using namespace orv::convert;
using orv::IntegerLimits;

// Random bit patterns of every class, and values at and next to every tie
// and integer of the target's range times 2^scale.
std::vector<orv32f> inputs(int scale, double lo, double hi, unsigned seed) {
  std::mt19937 gen(seed);
  std::vector<orv32f> v;
  for (int i = 0; i < 300; ++i) {
    const std::uint32_t b = static_cast<std::uint32_t>(gen());
    orv32f f;
    std::memcpy(&f, &b, sizeof f);
    v.push_back(f);
  }
  std::uniform_int_distribution<int> k(static_cast<int>(lo) - 2, static_cast<int>(hi) + 2);
  for (int i = 0; i < 400; ++i) {
    const double base = k(gen) + (i % 2 ? 0.5 : 0.0);
    const orv32f x = static_cast<orv32f>(std::ldexp(base, scale));
    v.push_back(x);
    v.push_back(std::nextafterf(x, INFINITY));
    v.push_back(std::nextafterf(x, -INFINITY));
  }
  for (double b : {lo, hi, lo - 0.5, hi + 0.5, -0.5, 0.5, -1.5, 1.5, 0.0}) {
    v.push_back(static_cast<orv32f>(std::ldexp(b, scale)));
  }
  v.push_back(-0.0f);
  v.push_back(NAN);
  v.push_back(INFINITY);
  v.push_back(-INFINITY);
  return v;
}

template <typename T, bool Nearest>
std::vector<T> plain(const std::vector<orv32f>& x, int scale, const NarrowingLimits<T>& lim) {
  std::vector<T> out(x.size());
  narrowPlain<orv32f, T, Nearest>(x.data(), out.data(), static_cast<int>(x.size()), scale, lim);
  return out;
}

orv32f factorOf(int scale) { return std::ldexp(1.0f, -scale); }

template <typename T>
void checkTarget(const char* name, const NarrowingLimits<T>& lim) {
  const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
  for (int scale = kFastScaleLowest; scale <= kFastScaleHighest; ++scale) {
    const std::vector<orv32f> x = inputs(scale, lim.scaled.lowerLimit, lim.scaled.upperLimit, 1000 + scale);
    const int len = static_cast<int>(x.size());
    const orv32f f = factorOf(scale);
    for (int mode : modes) {
      std::fesetround(mode);
      const std::vector<T> wantNear = plain<T, true>(x, scale, lim);
      const std::vector<T> wantZero = plain<T, false>(x, scale, lim);
      std::vector<T> got(x.size());
      const std::string where = std::string(name) + " scale " + std::to_string(scale) + " mode " + std::to_string(mode);

      narrowFloatFast<T, true>(x.data(), got.data(), len, f, lim.scaled);
      EXPECT_EQ(got, wantNear) << "scalar nearest, " << where;
      narrowFloatFast<T, false>(x.data(), got.data(), len, f, lim.scaled);
      EXPECT_EQ(got, wantZero) << "scalar truncate, " << where;
      narrow<orv32f, T, true>(x.data(), got.data(), len, scale, lim);
      EXPECT_EQ(got, wantNear) << "dispatch nearest, " << where;
      narrow<orv32f, T, false>(x.data(), got.data(), len, scale, lim);
      EXPECT_EQ(got, wantZero) << "dispatch truncate, " << where;

#if defined(__SSE2__)
      // A lane path covers whole blocks; the rest stays as the plain loop wrote it.
      auto lanes = [&](auto path, const std::vector<T>& want, const char* label) {
        std::vector<T> out = want;
        for (auto& v : out) v = static_cast<T>(v ^ 0x5a);
        const int done = path(x.data(), out.data(), len, f, lim.scaled);
        out.resize(done);
        EXPECT_EQ(out, std::vector<T>(want.begin(), want.begin() + done)) << label << ", " << where;
      };
      lanes(narrowFloatLanesSse2<T, LaneRounding::kNearestByFraction>, wantNear, "four lanes by fraction");
      lanes(narrowFloatLanesSse2<T, LaneRounding::kTruncate>, wantZero, "four lanes truncating");
      if (orv::cpu::hasAvx2()) {
        lanes(narrowFloatLanesAvx2<T, LaneRounding::kTruncate>, wantZero, "eight lanes truncating");
      }
      if (mode == FE_TONEAREST) {
        lanes(narrowFloatLanesSse2<T, LaneRounding::kNearestByControl>, wantNear, "four lanes by control");
        if (orv::cpu::hasAvx2()) {
          lanes(narrowFloatLanesAvx2<T, LaneRounding::kNearestByControl>, wantNear, "eight lanes by control");
        }
      }
#endif
      EXPECT_EQ(std::fegetround(), mode);
      std::fesetround(FE_TONEAREST);
      if (::testing::Test::HasFailure()) return;
    }
  }
}

TEST(ConvertFastPath, BitIdenticalToThePlainLoop8u) { checkTarget("8u", kLimits8u); }
TEST(ConvertFastPath, BitIdenticalToThePlainLoop8s) { checkTarget("8s", kLimits8s); }
TEST(ConvertFastPath, BitIdenticalToThePlainLoop16u) { checkTarget("16u", kLimits16u); }
TEST(ConvertFastPath, BitIdenticalToThePlainLoop16s) { checkTarget("16s", kLimits16s); }

}  // namespace
