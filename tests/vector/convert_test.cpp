// Type conversion against exact references: every 8- and 16-bit value through
// the widening forms; the float-to-integer forms at every tie and its
// neighbours near each target's range, under each rounding mode of the
// caller; the extreme scales; the fast loops against the plain ones bit for
// bit; the argument checks.
#include <gtest/gtest.h>

#include <cfenv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/test_support.hpp"
#include "vector/convert_kernels.hpp"

namespace {

using orvtest::Guarded;
using i64 = std::int64_t;
using i128 = __int128;

template <typename To, typename From>
To bits(From v) {  // the same bytes as another type
  static_assert(sizeof(To) == sizeof(From), "same size");
  To t;
  std::memcpy(&t, &v, sizeof t);
  return t;
}

const int kModes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};

// Sets the caller's rounding mode for one scope, round-to-nearest after.
struct ModeScope {
  explicit ModeScope(int mode) { std::fesetround(mode); }
  ~ModeScope() { std::fesetround(FE_TONEAREST); }
};

// ---- Float to integer: the exact reference -------------------------------------

i128 pow2(int p) { return static_cast<i128>(1) << p; }
int sign(i128 v) { return v > 0 ? 1 : v < 0 ? -1 : 0; }

// A finite double times 2^-scale as m * 2^q, m an integer of at most 53 bits.
struct Dyadic { i64 m; int q; };
Dyadic dyadic(double x, long scale) {
  int e = 0;
  const double f = std::frexp(x, &e);
  return {static_cast<i64>(std::ldexp(f, 53)), static_cast<int>(e - 53 - scale)};
}

// Sign of (m * 2^q - c) for an integer c with |c| < 2^40.
int compareDyadic(Dyadic y, i64 c) {
  if (y.q > 60) return y.m == 0 ? sign(-c) : sign(y.m);
  if (y.q >= 0) return sign(static_cast<i128>(y.m) * pow2(y.q) - c);
  if (y.q < -80) return c != 0 ? sign(-c) : sign(y.m);  // |y| < 2^-27
  return sign(static_cast<i128>(y.m) - static_cast<i128>(c) * pow2(-y.q));
}

// m * 2^q rounded to an integer: by truncation, or to nearest with ties even.
i64 roundDyadic(Dyadic y, bool nearest) {
  if (y.q >= 0) return static_cast<i64>(static_cast<i128>(y.m) * pow2(y.q));
  if (y.q < -80) return 0;
  const i128 unit = pow2(-y.q), fl = static_cast<i128>(y.m) >> -y.q;  // floor
  const i128 twice = (y.m - fl * unit) * 2;
  if (!nearest) return static_cast<i64>(y.m >= 0 || twice == 0 ? fl : fl + 1);
  return static_cast<i64>(twice < unit || (twice == unit && (fl & 1) == 0) ? fl : fl + 1);
}

// A target's bounds; without a scale the upper limit compared may differ.
struct Target { i64 lower, upper, upperLimitUnscaled; };

// The integer stored for x * 2^-scale. `halfAt53` marks a double source,
// whose half-step is rounded to 53 bits.
i64 expectedNarrow(double x, long scale, bool nearest, const Target& t, bool halfAt53, int mode) {
  if (std::isnan(x)) return t.lower;
  if (std::isinf(x)) return x > 0 ? t.upper : t.lower;
  if (x == 0.0) return 0;
  const Dyadic y = dyadic(x, scale);
  if (compareDyadic(y, scale == 0 ? t.upperLimitUnscaled : t.upper) >= 0) return t.upper;
  if (compareDyadic(y, t.lower) <= 0) return t.lower;
  // y = +-(1/2 + 2^-53): the half-step y + 1/2 needs 54 bits, and unless the
  // caller's mode rounds it away from zero it lands on the odd neighbour 1
  // exactly, which the tie rule takes back to 0.
  if (nearest && halfAt53 && y.q > -200 && std::fabs(std::ldexp(static_cast<double>(y.m), y.q)) == 0.5 + 0x1p-53) {
    const bool away = (y.m > 0 && mode == FE_UPWARD) || (y.m < 0 && mode == FE_DOWNWARD);
    return away ? (y.m > 0 ? 1 : -1) : 0;
  }
  return roundDyadic(y, nearest);
}

// ---- The float-to-integer forms, erased ----------------------------------------

struct NarrowCase {
  std::string name;
  Target target;
  bool doubleSource;
  // Converts the values (as double; a float source gets them as float).
  std::function<orvStatus(const std::vector<double>&, std::vector<i64>&, int, int)> run;
};

template <typename S, typename D>
NarrowCase narrowCase(const char* name, Target t, orvStatus (*f)(const S*, D*, int, int, int)) {
  return {name, t, sizeof(S) == 8, [f](const std::vector<double>& in, std::vector<i64>& out, int rnd, int scale) {
            std::vector<S> src(in.begin(), in.end());
            std::vector<D> dst(in.size());
            const orvStatus st = f(src.data(), dst.data(), static_cast<int>(in.size()), rnd, scale);
            out.assign(dst.begin(), dst.end());
            return st;
          }};
}

const std::vector<NarrowCase>& narrowCases() {
  static const std::vector<NarrowCase> cases = {
      narrowCase("32f8u", {0, 255, 255}, orvsConvert_32f8u_Sfs),
      narrowCase("32f8s", {-128, 127, 127}, orvsConvert_32f8s_Sfs),
      narrowCase("32f16u", {0, 65535, 65535}, orvsConvert_32f16u_Sfs),
      narrowCase("32f16s", {-32768, 32767, 32767}, orvsConvert_32f16s_Sfs),
      narrowCase("32f32s", {INT32_MIN, INT32_MAX, i64{1} << 31}, orvsConvert_32f32s_Sfs),
      narrowCase("64f32s", {INT32_MIN, INT32_MAX, INT32_MAX}, orvsConvert_64f32s_Sfs),
  };
  return cases;
}

// Every integer k and k + 1/2 near the bounds (all of them for 8- and 16-bit
// targets), times 2^scale, with two neighbours on each side in the source
// type; then signed zeros, subnormals, infinities, NaNs and known ties.
std::vector<double> narrowInputs(const NarrowCase& c, int scale) {
  std::vector<i64> ks;
  const i64 lo = c.target.lower, hi = c.target.upper;
  if (hi - lo <= 65535) {
    for (i64 k = lo - 3; k <= hi + 3; ++k) ks.push_back(k);
  } else {
    for (i64 k = -3000; k <= 3000; ++k) ks.push_back(k);
    for (i64 d = -300; d <= 300; ++d) ks.insert(ks.end(), {lo + d, hi + d});
    std::mt19937_64 gen(77);
    for (int i = 0; i < 4000; ++i) ks.push_back(static_cast<i64>(gen() % (hi - lo)) + lo);
  }
  std::vector<double> out;
  for (i64 k : ks) {
    for (double b : {static_cast<double>(k), static_cast<double>(k) + 0.5}) {
      const double x = std::ldexp(b, scale);
      const double step = c.doubleSource ? x : static_cast<float>(x);
      for (double dir : {-INFINITY, INFINITY}) {
        double v = step;
        for (int i = 0; i < 2; ++i)
          out.push_back(v = c.doubleSource ? std::nextafter(v, dir) : std::nextafterf(static_cast<float>(v), dir));
      }
      out.push_back(step);
    }
  }
  for (double s : {0.0, -0.0, double{INFINITY}, double{-INFINITY}, double{NAN}, double{-NAN},
                   double{bits<float>(0x7fa00001u)} /* signalling, as float */, double{FLT_TRUE_MIN},
                   double{-FLT_TRUE_MIN}, double{FLT_MIN}, double{-FLT_MIN}, double{FLT_MAX}, double{-FLT_MAX},
                   double{0.49999997f}, 0.5, double{0.50000006f}, double{1.4999999f}, 1.5, 2.5, -2.5})
    out.push_back(s);
  if (c.doubleSource) {
    for (double s : {DBL_TRUE_MIN, -DBL_TRUE_MIN, DBL_MIN, DBL_MAX, -DBL_MAX, 0.5 + 0x1p-53, -0.5 - 0x1p-53,
                     0.5 - 0x1p-54, 1.5 + 0x1p-52, 2147483646.5, 2147483646.4999998, -2147483647.5,
                     -2147483648.5, 2147483647.0 - 0x1p-22})
      out.push_back(s);
  }
  return out;
}

void checkNarrow(const NarrowCase& c, const std::vector<double>& in, int rnd, int scale, int mode) {
  std::vector<i64> got;
  ASSERT_EQ(c.run(in, got, rnd, scale), orvOk);
  int failures = 0;
  for (std::size_t i = 0; i < in.size() && failures < 5; ++i) {
    const i64 want = expectedNarrow(in[i], scale, rnd == orvRndNear, c.target, c.doubleSource, mode);
    if (got[i] != want && ++failures)
      ADD_FAILURE() << c.name << " x=" << std::hexfloat << in[i] << std::defaultfloat << " scale=" << scale
                    << " rndMode=" << rnd << " got " << got[i] << " want " << want;
  }
}

// Every form, scales -3 to 3, nearest and truncation (every rndMode other
// than 1 truncates), the caller in each rounding mode, which the result must
// not follow and the call must not change.
TEST(ConvertNarrow, MatchesExactReferenceAtEveryTieAndNeighbour) {
  const int truncating[] = {orvRndZero, 2, -1, 3, INT_MIN, INT_MAX, 7};
  int t = 0;
  for (const NarrowCase& c : narrowCases()) {
    for (int scale = -3; scale <= 3; ++scale) {
      const std::vector<double> in = narrowInputs(c, scale);
      for (int mode : kModes) {
        SCOPED_TRACE(c.name + " caller mode " + std::to_string(mode));
        ModeScope ms(mode);
        checkNarrow(c, in, orvRndNear, scale, mode);
        checkNarrow(c, in, truncating[t++ % 7], scale, mode);
        EXPECT_EQ(std::fegetround(), mode);
      }
    }
  }
}

// Scales beyond the double range: the factor is exact at extended exponent
// range, so the reference is still exact.
TEST(ConvertNarrow, LargeScalesUseTheExactPowerOfTwo) {
  std::mt19937 gen(5);
  for (const NarrowCase& c : narrowCases()) {
    std::vector<double> in = {1.0, -1.0, 0.75, FLT_MAX, -FLT_MAX, FLT_TRUE_MIN, DBL_MAX, DBL_TRUE_MIN, 0.0, -0.0};
    for (int i = 0; i < 400; ++i)
      in.push_back(c.doubleSource ? bits<double>((static_cast<std::uint64_t>(gen()) << 32) | gen())
                                  : double{bits<float>(static_cast<std::uint32_t>(gen()))});
    for (int scale : {-1100, -1022, -150, -126, -31, 31, 32, 126, 150, 1022, 1023, 1100, 16382}) {
      std::vector<double> at = in;
      for (double b : {0.5, 1.5, 2.5, 100.5, -2.5, 127.5})  // ties near the range at the scale
        if (std::abs(scale) < 900 || c.doubleSource) at.push_back(std::ldexp(b, scale));
      if (!c.doubleSource)
        for (double& v : at) v = static_cast<float>(v);
      SCOPED_TRACE(c.name + " scale " + std::to_string(scale));
      for (int rnd : {int{orvRndNear}, int{orvRndZero}}) checkNarrow(c, at, rnd, scale, FE_TONEAREST);
    }
  }
}

// The factor is built by doubling or halving in long double: past its range
// it becomes infinity (0 times it is NaN, stored as the lower bound) or 0 (an
// infinity times it is NaN as well). Under a directed mode of the caller,
// rounding down or towards zero, doubling stops at the largest finite value
// and halving reaches 0; rounding up, halving stops at the smallest subnormal.
TEST(ConvertNarrow, ExtremeScales) {
  const std::vector<double> in = {0.0, -0.0, 1.0, -1.0, FLT_TRUE_MIN, -FLT_MAX, INFINITY, -INFINITY, NAN};
  for (const NarrowCase& c : narrowCases()) {
    const i64 lo = c.target.lower, hi = c.target.upper;
    const std::pair<int, std::vector<i64>> rows[] = {
        {INT_MIN, {lo, lo, hi, lo, hi, lo, hi, lo, lo}}, {-16384, {lo, lo, hi, lo, hi, lo, hi, lo, lo}},
        {-16383, {0, 0, hi, lo, hi, lo, hi, lo, lo}},    {16445, {0, 0, 0, 0, 0, 0, hi, lo, lo}},
        {16446, {0, 0, 0, 0, 0, 0, lo, lo, lo}},         {INT_MAX, {0, 0, 0, 0, 0, 0, lo, lo, lo}},
    };
    for (const auto& [scale, want] : rows) {
      for (int rnd : {int{orvRndNear}, int{orvRndZero}, INT_MIN}) {
        std::vector<i64> got;
        ASSERT_EQ(c.run(in, got, rnd, scale), orvOk);
        EXPECT_EQ(got, want) << c.name << " scale " << scale << " rndMode " << rnd;
      }
    }
  }
  struct Row {
    int mode, scale;
    std::vector<i64> want;  // for 0, 1, +inf, -inf to 16s
  };
  const Row rows[] = {{FE_DOWNWARD, INT_MIN, {0, 32767, 32767, -32768}},
                      {FE_TOWARDZERO, INT_MIN, {0, 32767, 32767, -32768}},
                      {FE_UPWARD, INT_MIN, {-32768, 32767, 32767, -32768}},
                      {FE_UPWARD, INT_MAX, {0, 0, 32767, -32768}},
                      {FE_DOWNWARD, INT_MAX, {0, 0, -32768, -32768}},
                      {FE_TOWARDZERO, INT_MAX, {0, 0, -32768, -32768}}};
  for (const Row& r : rows) {
    ModeScope ms(r.mode);
    std::vector<i64> got;
    ASSERT_EQ(narrowCases()[3].run({0.0, 1.0, INFINITY, -INFINITY}, got, orvRndNear, r.scale), orvOk);
    EXPECT_EQ(got, r.want) << "mode " << r.mode << " scale " << r.scale;
    EXPECT_EQ(std::fegetround(), r.mode);
  }
}

// Worked values, independent of the reference above.
TEST(ConvertNarrow, KnownValues) {
  struct Row {
    int form;  // index into narrowCases()
    double x;
    int rnd, scale;
    i64 want;
  };
  const Row rows[] = {
      {0, 2.5, 1, 0, 2}, {0, 254.6f, 1, 0, 255}, {0, 300.0, 1, 0, 255}, {0, 1.9f, -1, 0, 1},
      {3, -2.5, 1, 0, -2}, {3, -1.5, 1, 0, -2}, {3, NAN, 1, 0, -32768}, {3, 5.0, 0, 1, 2}, {3, 5.0, 0, -1, 10},
      {1, -NAN, 0, 0, -128}, {2, 65534.5, 1, 0, 65534},
      // Without a scale the 32-bit form compares with 2^31 as orv32f, whose
      // float neighbour below is the largest value that passes.
      {4, 2147483520.0, 1, 0, 2147483520}, {4, 2147483648.0, 1, 0, INT32_MAX},
      {4, 1073741760.0, 1, -1, 2147483520}, {4, 1073741824.0, 1, -1, INT32_MAX},
      {5, 2147483646.5, 1, 0, 2147483646}, {5, -2147483647.5, 1, 0, INT32_MIN},
      {5, -2147483647.5, 0, 0, -2147483647}, {5, 0.5 + 0x1p-53, 1, 0, 0}, {5, 0.5 + 0x1p-52, 1, 0, 1},
  };
  for (const Row& r : rows) {
    std::vector<i64> got;
    ASSERT_EQ(narrowCases()[r.form].run({r.x}, got, r.rnd, r.scale), orvOk);
    EXPECT_EQ(got[0], r.want) << narrowCases()[r.form].name << " x=" << r.x << " rnd=" << r.rnd;
  }
}

// Exactly `len` elements are written, for lengths past any unrolled pass.
TEST(ConvertNarrow, WritesExactlyLenElements) {
  for (int len = 1; len <= 13; ++len) {
    std::vector<orv32f> src(len);
    for (int i = 0; i < len; ++i) src[i] = static_cast<float>(i) * 1.5f - 4.0f;
    for (int offset = 0; offset < 3; ++offset) {
      Guarded<orv16s> dst(len, offset);
      ASSERT_EQ(orvsConvert_32f16s_Sfs(src.data(), dst.data(), len, orvRndNear, 0), orvOk);
      EXPECT_TRUE(dst.intactOutside());
      for (int i = 0; i < len; ++i) EXPECT_EQ(dst[i], std::nearbyint(src[i])) << "len " << len << " i " << i;
    }
  }
}

// ---- Widening ------------------------------------------------------------------

template <typename S>
std::vector<S> everyValue() {
  std::vector<S> v;
  for (i64 x = std::numeric_limits<S>::min(); x <= std::numeric_limits<S>::max(); ++x) v.push_back(static_cast<S>(x));
  return v;
}

std::vector<orv32s> someInt32(unsigned seed, std::vector<orv32s> v) {
  std::mt19937 gen(seed);
  for (int i = 0; i < 2000; ++i) v.push_back(static_cast<orv32s>(gen()));
  return v;
}

// Runs f on src and checks each output against want(src element).
template <typename S, typename D, typename Want, typename... A>
void expectEach(orvStatus (*f)(const S*, D*, int, A...), const std::vector<S>& src, Want want, A... a) {
  std::vector<D> dst(src.size());
  ASSERT_EQ(f(src.data(), dst.data(), static_cast<int>(src.size()), a...), orvOk);
  for (std::size_t i = 0; i < src.size(); ++i) ASSERT_EQ(double{dst[i]}, want(src[i])) << i64{src[i]};
}

TEST(ConvertWiden, EverySmallIntegerIsExact) {
  const auto same = [](auto v) { return static_cast<double>(v); };
  expectEach(orvsConvert_8s16s, everyValue<orv8s>(), same);
  expectEach(orvsConvert_8s32f, everyValue<orv8s>(), same);
  expectEach(orvsConvert_8u32f, everyValue<orv8u>(), same);
  expectEach(orvsConvert_16s32f, everyValue<orv16s>(), same);
  expectEach(orvsConvert_16u32f, everyValue<orv16u>(), same);
  expectEach(orvsConvert_32s64f, someInt32(3, {INT32_MIN, INT32_MIN + 1, -16777217, -1, 0, 16777217, INT32_MAX}),
             same);
}

TEST(ConvertWiden, FloatToDoubleIsExact) {
  std::vector<orv32f> src = {0.0f, -0.0f, FLT_TRUE_MIN, -FLT_MIN, FLT_MAX, INFINITY, -INFINITY, NAN};
  std::mt19937 gen(11);
  for (int i = 0; i < 20000; ++i) src.push_back(bits<float>(static_cast<std::uint32_t>(gen())));
  std::vector<orv64f> dst(src.size());
  ASSERT_EQ(orvsConvert_32f64f(src.data(), dst.data(), static_cast<int>(src.size())), orvOk);
  for (std::size_t i = 0; i < src.size(); ++i) {
    if (std::isnan(src[i])) {
      ASSERT_TRUE(std::isnan(dst[i]));
    } else {  // the same float bits back, so also the sign of a zero
      ASSERT_EQ(bits<std::uint32_t>(static_cast<float>(dst[i])), bits<std::uint32_t>(src[i]));
    }
  }
}

// The float nearest to x by the mode, walking float neighbours and comparing
// exact distances; beyond the range the largest finite value.
float expectedFloat(double x, int mode) {
  if (!(x > -static_cast<double>(FLT_MAX))) return -FLT_MAX;
  if (!(x < static_cast<double>(FLT_MAX))) return FLT_MAX;
  float lo = static_cast<float>(x);
  while (static_cast<double>(lo) > x) lo = std::nextafterf(lo, -INFINITY);
  while (static_cast<double>(std::nextafterf(lo, INFINITY)) <= x) lo = std::nextafterf(lo, INFINITY);
  if (static_cast<double>(lo) == x) return lo;
  const float hi = std::nextafterf(lo, INFINITY);
  if (mode != FE_TONEAREST) return mode == FE_UPWARD || (mode == FE_TOWARDZERO && x < 0) ? hi : lo;
  const long double below = static_cast<long double>(x) - lo, above = static_cast<long double>(hi) - x;
  if (below != above) return below < above ? lo : hi;
  return (bits<std::uint32_t>(lo) & 1) == 0 ? lo : hi;
}

// orvsConvert_32s32f rounds by the caller's mode and leaves it set; with a
// scale the product is rounded once, and scales outside the range act like
// its ends.
TEST(ConvertWiden, Int32ToFloatFollowsTheCallersMode) {
  const auto src = someInt32(13, {INT32_MIN, INT32_MAX, 16777217, -16777217, 16777219, 33554435, -33554435,
                                  16777216, 2147483520, 2147483583, 2147483584, -2147483584, 0, 1, -1});
  for (int mode : kModes) {
    SCOPED_TRACE("mode " + std::to_string(mode));
    ModeScope ms(mode);
    for (int scale : {0, 3, -3, 126, 1000, -96, -1000}) {
      const int s = scale > 126 ? 126 : scale < -96 ? -96 : scale;
      const auto want = [&](orv32s v) { return std::ldexp(double{expectedFloat(v, mode)}, -s); };
      expectEach(orvsConvert_32s32f_Sfs, src, want, scale);
      if (scale == 0) expectEach(orvsConvert_32s32f, src, want);
      EXPECT_EQ(std::fegetround(), mode);
    }
  }
}

// Scaled widening of every 16-bit value; scales outside the range act like
// its ends (2^-126 and 2^112 for orv32f).
TEST(ConvertWiden, ScaledForms) {
  const auto all16s = everyValue<orv16s>();
  const auto s32 = someInt32(17, {INT32_MIN, INT32_MAX, -1, 0, 1, 123456789});
  auto by = [](int scale, int lo, int hi) {
    return [=](i64 v) { return std::ldexp(static_cast<double>(v), -(scale < lo ? lo : scale > hi ? hi : scale)); };
  };
  for (int scale : {-3, -2, -1, 0, 1, 2, 3, 111, -111, 125, 126, 127, -112, -113, 1000, -1000, 1021, 1022, 1023,
                    -1007, -1008, -1009, -992, -993, INT_MIN, INT_MAX}) {
    SCOPED_TRACE("scale " + std::to_string(scale));
    expectEach(orvsConvert_16s32f_Sfs, all16s, by(scale, -112, 126), scale);
    expectEach(orvsConvert_16s64f_Sfs, all16s, by(scale, -1008, 1022), scale);
    expectEach(orvsConvert_32s64f_Sfs, s32, by(scale, -992, 1022), scale);
  }
  const orv16s one = 1;
  orv32f out[2];
  ASSERT_EQ(orvsConvert_16s32f_Sfs(&one, &out[0], 1, 1000), orvOk);
  ASSERT_EQ(orvsConvert_16s32f_Sfs(&one, &out[1], 1, -1000), orvOk);
  EXPECT_EQ(out[0], 0x1p-126f);
  EXPECT_EQ(out[1], 0x1p112f);
}

// ---- Double to float -----------------------------------------------------------

// Saturates to the largest finite value (NaN to the largest negative one) and
// otherwise rounds by the caller's mode.
TEST(Convert64f32f, SaturatesAndRoundsByTheCallersMode) {
  std::vector<double> src = {INFINITY, -INFINITY, 1e39, -1e39, 0.0, -0.0, FLT_MAX, -FLT_MAX,
                             std::nextafter(double{FLT_MAX}, 0.0), std::nextafter(-double{FLT_MAX}, 0.0),
                             std::nextafter(double{FLT_MAX}, INFINITY), 0x1.ffffffp127, DBL_TRUE_MIN,
                             -DBL_TRUE_MIN, 0x1p-150, 0x1.8p-150, -0x1p-150};
  std::mt19937_64 gen(19);
  for (int i = 0; i < 4000; ++i) {  // floats, and floats moved by fractions of an ulp
    const float f = bits<float>(static_cast<std::uint32_t>(gen()));
    if (!std::isfinite(f)) continue;
    const double ulp = static_cast<double>(std::nextafterf(std::fabs(f), INFINITY)) - std::fabs(f);
    src.insert(src.end(), {f, f + ulp / 2, f - ulp / 2, f + ulp / 3,
                           std::ldexp(static_cast<double>(gen() >> 11), static_cast<int>(gen() % 300) - 253)});
  }
  src.insert(src.end(), {NAN, -NAN});
  for (int mode : kModes) {
    SCOPED_TRACE("mode " + std::to_string(mode));
    ModeScope ms(mode);
    std::vector<orv32f> dst(src.size());
    ASSERT_EQ(orvsConvert_64f32f(src.data(), dst.data(), static_cast<int>(src.size())), orvOk);
    EXPECT_EQ(std::fegetround(), mode);
    for (std::size_t i = 0; i < src.size(); ++i) {
      const float want = std::isnan(src[i]) ? -FLT_MAX : expectedFloat(src[i], mode);
      ASSERT_EQ(bits<std::uint32_t>(dst[i]), bits<std::uint32_t>(want)) << std::hexfloat << src[i];
    }
  }
}

// ---- Argument checks -----------------------------------------------------------

using Erased = std::function<orvStatus(const void*, void*, int)>;
template <typename S, typename D, typename... A, typename... V>
Erased erase(orvStatus (*f)(const S*, D*, int, A...), V... v) {
  return [=](const void* s, void* d, int n) { return f(static_cast<const S*>(s), static_cast<D*>(d), n, v...); };
}

TEST(ConvertChecks, NullPointersThenLength) {
  const Erased forms[] = {
      erase(orvsConvert_8s16s), erase(orvsConvert_8s32f), erase(orvsConvert_8u32f), erase(orvsConvert_16s32f),
      erase(orvsConvert_16u32f), erase(orvsConvert_32s32f), erase(orvsConvert_32s64f), erase(orvsConvert_32f64f),
      erase(orvsConvert_64f32f), erase(orvsConvert_16s32f_Sfs, 1), erase(orvsConvert_16s64f_Sfs, 1),
      erase(orvsConvert_32s32f_Sfs, 1), erase(orvsConvert_32s64f_Sfs, 1), erase(orvsConvert_32f8u_Sfs, 1, 0),
      erase(orvsConvert_32f8s_Sfs, 1, 0), erase(orvsConvert_32f16u_Sfs, 1, 0), erase(orvsConvert_32f16s_Sfs, 1, 0),
      erase(orvsConvert_32f32s_Sfs, 1, 0), erase(orvsConvert_64f32s_Sfs, 1, 0)};
  int i = 0;
  for (const Erased& f : forms) {
    SCOPED_TRACE("form " + std::to_string(i++));
    alignas(16) unsigned char src[16] = {};
    Guarded<std::uint64_t> dst(2);
    EXPECT_EQ(f(nullptr, dst.data(), 1), orvErrNullPointer);
    EXPECT_EQ(f(src, nullptr, 1), orvErrNullPointer);
    EXPECT_EQ(f(nullptr, nullptr, 0), orvErrNullPointer);
    for (int len : {0, -1, INT_MIN}) EXPECT_EQ(f(src, dst.data(), len), orvErrSize);
    EXPECT_TRUE(dst.untouched());
  }
}

// ---- Fast float-to-integer loops, bit for bit against the plain loops -----------

namespace fast {
using namespace orv::convert;

// Random bit patterns of every class, and values at and next to every tie
// and integer of the target's range times 2^scale.
std::vector<orv32f> inputs(int scale, double lo, double hi, unsigned seed) {
  std::mt19937 gen(seed);
  std::vector<orv32f> v(300);
  for (orv32f& f : v) f = bits<orv32f>(static_cast<std::uint32_t>(gen()));
  std::uniform_int_distribution<int> k(static_cast<int>(lo) - 2, static_cast<int>(hi) + 2);
  for (int i = 0; i < 400; ++i) {
    const orv32f x = static_cast<orv32f>(std::ldexp(k(gen) + (i % 2 ? 0.5 : 0.0), scale));
    v.insert(v.end(), {x, std::nextafterf(x, INFINITY), std::nextafterf(x, -INFINITY)});
  }
  for (double b : {lo, hi, lo - 0.5, hi + 0.5, -0.5, 0.5, -1.5, 1.5, 0.0})
    v.push_back(static_cast<orv32f>(std::ldexp(b, scale)));
  v.insert(v.end(), {-0.0f, NAN, INFINITY, -INFINITY});
  return v;
}

template <typename T>
void checkTarget(const NarrowingLimits<T>& lim) {
  for (int scale = kFastScaleLowest; scale <= kFastScaleHighest; ++scale) {
    const std::vector<orv32f> x = inputs(scale, lim.scaled.lowerLimit, lim.scaled.upperLimit, 1000 + scale);
    const int len = static_cast<int>(x.size());
    const orv32f f = std::ldexp(1.0f, -scale);
    for (int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
      std::fesetround(mode);
      std::vector<T> wantNear(len), wantZero(len), got(len);
      narrowPlain<orv32f, T, true>(x.data(), wantNear.data(), len, scale, lim);
      narrowPlain<orv32f, T, false>(x.data(), wantZero.data(), len, scale, lim);
      const std::string where = "upper " + std::to_string(lim.scaled.upperLimit) + " scale " + std::to_string(scale) + " mode " + std::to_string(mode);

      narrowFloatFast<T, true>(x.data(), got.data(), len, f, lim.scaled);
      EXPECT_EQ(got, wantNear) << "scalar nearest, " << where;
      narrowFloatFast<T, false>(x.data(), got.data(), len, f, lim.scaled);
      EXPECT_EQ(got, wantZero) << "scalar truncate, " << where;
      narrow<orv32f, T, true>(x.data(), got.data(), len, scale, lim);
      EXPECT_EQ(got, wantNear) << "dispatch nearest, " << where;
      narrow<orv32f, T, false>(x.data(), got.data(), len, scale, lim);
      EXPECT_EQ(got, wantZero) << "dispatch truncate, " << where;
#if defined(__SSE2__)
      // A lane path covers whole blocks and reports how many it wrote.
      auto lanes = [&](auto path, const std::vector<T>& want, const char* label) {
        std::vector<T> out = want;
        for (auto& v : out) v = static_cast<T>(v ^ 0x5a);
        out.resize(path(x.data(), out.data(), len, f, lim.scaled));
        EXPECT_EQ(out, std::vector<T>(want.begin(), want.begin() + out.size())) << label << ", " << where;
      };
      lanes(narrowFloatLanesSse2<T, LaneRounding::kNearestByFraction>, wantNear, "four lanes by fraction");
      lanes(narrowFloatLanesSse2<T, LaneRounding::kTruncate>, wantZero, "four lanes truncating");
      if (orv::cpu::hasAvx2()) lanes(narrowFloatLanesAvx2<T, LaneRounding::kTruncate>, wantZero, "eight truncating");
      if (mode == FE_TONEAREST) {
        lanes(narrowFloatLanesSse2<T, LaneRounding::kNearestByControl>, wantNear, "four lanes by control");
        if (orv::cpu::hasAvx2())
          lanes(narrowFloatLanesAvx2<T, LaneRounding::kNearestByControl>, wantNear, "eight lanes by control");
      }
#endif
      EXPECT_EQ(std::fegetround(), mode);
      std::fesetround(FE_TONEAREST);
      if (::testing::Test::HasFailure()) return;
    }
  }
}

TEST(ConvertFastPath, BitIdenticalToThePlainLoop) {
  checkTarget(kLimits8u);
  checkTarget(kLimits8s);
  checkTarget(kLimits16u);
  checkTarget(kLimits16s);
}

}  // namespace fast
}  // namespace
