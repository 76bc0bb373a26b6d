// Type conversion against references in exact integer arithmetic: every 8-
// and 16-bit value through the widening forms, the float-to-integer forms
// at every tie and its neighbours near each target's range, under each
// rounding mode of the caller, and the extreme scales.
#include <gtest/gtest.h>

#include <cfenv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace {

using orvtest::Guarded;
using i64 = std::int64_t;
using i128 = __int128;

template <typename To, typename From>
To bits(From v) {
  static_assert(sizeof(To) == sizeof(From), "same size");
  To t;
  std::memcpy(&t, &v, sizeof t);
  return t;
}

// ---- The caller's rounding mode ------------------------------------------------

struct CallerMode {
  int mode;
  const char* name;
};
const CallerMode kCallerModes[] = {{FE_TONEAREST, "nearest"},
                                   {FE_UPWARD, "upward"},
                                   {FE_DOWNWARD, "downward"},
                                   {FE_TOWARDZERO, "towardzero"}};

// Sets a rounding mode for one scope and restores round-to-nearest after.
class ModeScope {
 public:
  explicit ModeScope(int mode) { std::fesetround(mode); }
  ~ModeScope() { std::fesetround(FE_TONEAREST); }
  ModeScope(const ModeScope&) = delete;
  ModeScope& operator=(const ModeScope&) = delete;
};

// ---- Exact references ----------------------------------------------------------

// Rounds the integer v to 24 significant bits (the orv32f grid) by the mode.
i64 roundToFloatGrid(i64 v, int mode) {
  const i64 mag = v < 0 ? -v : v;
  int width = 0;
  while (width < 63 && (i64{1} << width) <= mag) ++width;
  if (width <= 24) return v;
  const int shift = width - 24;
  const i64 unit = i64{1} << shift;
  const i64 lo = v >= 0 ? (v / unit) * unit : -(((-v) + unit - 1) / unit) * unit;  // floor
  if (lo == v) return v;
  const i64 hi = lo + unit;
  switch (mode) {
    case FE_UPWARD: return hi;
    case FE_DOWNWARD: return lo;
    case FE_TOWARDZERO: return v > 0 ? lo : hi;
    default: {
      const i64 below = v - lo, above = hi - v;
      if (below != above) return below < above ? lo : hi;
      return ((lo >> shift) & 1) == 0 ? lo : hi;
    }
  }
}

// A finite double as m * 2^q with an integer m of at most 53 bits.
struct Dyadic {
  i64 m;
  int q;
};
Dyadic dyadic(double x, long scale) {
  int e = 0;
  const double f = std::frexp(x, &e);
  return {static_cast<i64>(std::ldexp(f, 53)), static_cast<int>(e - 53 - scale)};
}

i128 pow2(int p) { return static_cast<i128>(1) << p; }

// Sign of (m * 2^q - c) for an integer c with |c| < 2^40.
int compareDyadic(Dyadic y, i64 c) {
  auto sign = [](i128 v) { return v > 0 ? 1 : v < 0 ? -1 : 0; };
  if (y.q >= 0) {
    if (y.q > 60) return y.m == 0 ? sign(-c) : sign(y.m);
    return sign(static_cast<i128>(y.m) * pow2(y.q) - c);
  }
  const int p = -y.q;
  if (p > 80) return c != 0 ? sign(-c) : sign(y.m);  // |y| < 2^-27
  return sign(static_cast<i128>(y.m) - static_cast<i128>(c) * pow2(p));
}

// m * 2^q rounded to an integer: by truncation, or to nearest with ties even.
i64 roundDyadic(Dyadic y, bool nearest) {
  if (y.q >= 0) return static_cast<i64>(static_cast<i128>(y.m) * pow2(y.q));
  const int p = -y.q;
  if (p > 80) return 0;
  const i128 m = y.m;
  const i128 fl = m >> p;  // floor
  const i128 rem = m - fl * pow2(p);
  if (!nearest) return static_cast<i64>(m >= 0 || rem == 0 ? fl : fl + 1);
  const i128 twice = rem * 2, unit = pow2(p);
  if (twice < unit) return static_cast<i64>(fl);
  if (twice > unit) return static_cast<i64>(fl + 1);
  return static_cast<i64>((fl & 1) == 0 ? fl : fl + 1);
}

// A float-to-integer target: its bounds and the limits of its comparisons.
struct Target {
  i64 lower, upper;  // bounds stored, also the limits except the one below
  i64 upperLimitUnscaled;
};

// The expected integer for x * 2^-scale, with the power of two exact.
// `halfAt53` marks a double source, whose half-step is rounded to 53 bits.
i64 expectedNarrow(double x, long scale, bool nearest, const Target& t, bool halfAt53, int mode) {
  if (std::isnan(x)) return t.lower;
  if (std::isinf(x)) return x > 0 ? t.upper : t.lower;
  if (x == 0.0) return 0;
  const Dyadic y = dyadic(x, scale);
  const i64 upperLimit = scale == 0 ? t.upperLimitUnscaled : t.upper;
  if (compareDyadic(y, upperLimit) >= 0) return t.upper;
  if (compareDyadic(y, t.lower) <= 0) return t.lower;
  // y = +-(1/2 + 2^-53): the half-step y + 1/2 needs 54 bits, and unless the
  // caller's mode rounds it away from zero it lands on the odd neighbour 1
  // exactly, which the tie rule takes back to 0.
  if (nearest && halfAt53 && std::fabs(std::ldexp(static_cast<double>(y.m), y.q)) == 0.5 + 0x1p-53 &&
      y.q > -200) {
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
  // Converts `n` values (as double; a float source gets them as float).
  std::function<orvStatus(const std::vector<double>&, std::vector<i64>&, int, int)> run;
};

template <typename S, typename D>
NarrowCase narrowCase(const char* name, Target t, orvStatus (*f)(const S*, D*, int, int, int)) {
  return {name, t, sizeof(S) == 8,
          [f](const std::vector<double>& in, std::vector<i64>& out, int rnd, int scale) {
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

// Source values near the target's range at one scale: every integer k and
// half-integer k + 1/2 near the bounds (all of them for 8- and 16-bit
// targets), times 2^scale, each with its two nearest neighbours on both
// sides in the source type; then signed zeros, subnormals, infinities and
// NaNs.
std::vector<double> narrowInputs(const NarrowCase& c, int scale) {
  std::vector<i64> ks;
  const i64 lo = c.target.lower, hi = c.target.upper;
  if (hi - lo <= 65535) {
    for (i64 k = lo - 3; k <= hi + 3; ++k) ks.push_back(k);
  } else {
    for (i64 k = -3000; k <= 3000; ++k) ks.push_back(k);
    for (i64 d = -300; d <= 300; ++d) {
      ks.push_back(lo + d);
      ks.push_back(hi + d);
    }
    std::mt19937_64 gen(77);
    for (int i = 0; i < 4000; ++i) ks.push_back(static_cast<i64>(gen() % (hi - lo)) + lo);
  }
  std::vector<double> out;
  out.reserve(ks.size() * 10 + 64);
  for (i64 k : ks) {
    for (double b : {static_cast<double>(k), static_cast<double>(k) + 0.5}) {
      const double x = std::ldexp(b, scale);
      if (c.doubleSource) {
        double v = x;
        for (int i = 0; i < 2; ++i) v = std::nextafter(v, -INFINITY), out.push_back(v);
        out.push_back(x);
        v = x;
        for (int i = 0; i < 2; ++i) v = std::nextafter(v, INFINITY), out.push_back(v);
      } else {
        const float xf = static_cast<float>(x);
        float v = xf;
        for (int i = 0; i < 2; ++i) v = std::nextafterf(v, -INFINITY), out.push_back(v);
        out.push_back(xf);
        v = xf;
        for (int i = 0; i < 2; ++i) v = std::nextafterf(v, INFINITY), out.push_back(v);
      }
    }
  }
  const double specials[] = {0.0, -0.0, INFINITY, -INFINITY, NAN, -NAN,
                             bits<float>(0x7fa00001u),  // a signalling NaN, as float
                             FLT_TRUE_MIN, -FLT_TRUE_MIN, FLT_MIN, -FLT_MIN, FLT_MAX, -FLT_MAX,
                             0.49999997f, 0.5f, 0.50000006f, 1.4999999f, 1.5f, 2.5f, -2.5f};
  for (double s : specials) out.push_back(s);
  if (c.doubleSource) {
    for (double s : {DBL_TRUE_MIN, -DBL_TRUE_MIN, DBL_MIN, DBL_MAX, -DBL_MAX, 0.5 + 0x1p-53,
                     -0.5 - 0x1p-53, 0.5 - 0x1p-54, 1.5 + 0x1p-52, 2147483646.5, 2147483646.4999998,
                     -2147483647.5, -2147483648.5, 2147483647.0 - 0x1p-22})
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
    if (got[i] != want) {
      ++failures;
      ADD_FAILURE() << c.name << " x=" << std::hexfloat << in[i] << std::defaultfloat << " scale=" << scale
                    << " rndMode=" << rnd << " got " << got[i] << " want " << want;
    }
  }
}

// Every form, scales -3 to 3, nearest and truncation, the caller in each of
// the four rounding modes (which the result must not follow).
TEST(ConvertNarrow, MatchesExactReferenceAtEveryTieAndNeighbour) {
  for (const NarrowCase& c : narrowCases()) {
    for (int scale = -3; scale <= 3; ++scale) {
      const std::vector<double> in = narrowInputs(c, scale);
      for (const CallerMode& m : kCallerModes) {
        SCOPED_TRACE(std::string(c.name) + " caller mode " + m.name);
        ModeScope ms(m.mode);
        checkNarrow(c, in, orvRndNear, scale, m.mode);
        checkNarrow(c, in, orvRndZero, scale, m.mode);
        EXPECT_EQ(std::fegetround(), m.mode);
      }
    }
  }
}

// Every rndMode other than 1 truncates.
TEST(ConvertNarrow, EveryOtherRoundingValueTruncates) {
  for (const NarrowCase& c : narrowCases()) {
    const std::vector<double> in = narrowInputs(c, 1);
    for (int rnd : {2, -1, 3, INT_MIN, INT_MAX}) {
      SCOPED_TRACE(c.name + " rndMode " + std::to_string(rnd));
      checkNarrow(c, in, rnd, 1, FE_TONEAREST);
    }
  }
}

// Scales beyond the double range: the factor is exact at extended exponent
// range, so the reference is still exact.
TEST(ConvertNarrow, LargeScalesUseTheExactPowerOfTwo) {
  std::mt19937 gen(5);
  for (const NarrowCase& c : narrowCases()) {
    std::vector<double> in;
    for (int i = 0; i < 400; ++i) {
      in.push_back(c.doubleSource ? bits<double>((static_cast<std::uint64_t>(gen()) << 32) | gen())
                                  : static_cast<double>(bits<float>(static_cast<std::uint32_t>(gen()))));
    }
    for (double v : {1.0, -1.0, 0.75, double{FLT_MAX}, -double{FLT_MAX}, double{FLT_TRUE_MIN}, DBL_MAX, DBL_TRUE_MIN, 0.0, -0.0})
      in.push_back(c.doubleSource ? v : static_cast<double>(static_cast<float>(v)));
    // Values whose scaled form lands on a tie near the range at the scale.
    for (int scale : {-1100, -1022, -150, -126, -31, 31, 32, 126, 150, 1022, 1023, 1100, 16382}) {
      std::vector<double> at = in;
      for (double b : {0.5, 1.5, 2.5, 100.5, -2.5, 127.5})
        if (std::abs(scale) < 900 || c.doubleSource) at.push_back(std::ldexp(b, scale));
      if (!c.doubleSource)
        for (double& v : at) v = static_cast<float>(v);
      for (int rnd : {orvRndNear, orvRndZero}) {
        SCOPED_TRACE(c.name + " scale " + std::to_string(scale));
        checkNarrow(c, at, rnd, scale, FE_TONEAREST);
      }
    }
  }
}

// The factor is built by doubling or halving in long double: past its range
// it becomes infinity (so 0 times it is NaN, stored as the lower bound) or 0
// (so an infinity times it is NaN as well). Within it, values still follow
// the exact power of two.
TEST(ConvertNarrow, ExtremeScales) {
  const std::vector<double> in = {0.0, -0.0, 1.0, -1.0, FLT_TRUE_MIN, -FLT_MAX, INFINITY, -INFINITY, NAN};
  for (const NarrowCase& c : narrowCases()) {
    const i64 lo = c.target.lower, hi = c.target.upper;
    struct Row {
      int scale;
      std::vector<i64> want;  // for each value of `in`
    };
    const Row rows[] = {
        {INT_MIN, {lo, lo, hi, lo, hi, lo, hi, lo, lo}},
        {-16384, {lo, lo, hi, lo, hi, lo, hi, lo, lo}},
        {-16383, {0, 0, hi, lo, hi, lo, hi, lo, lo}},
        {16445, {0, 0, 0, 0, 0, 0, hi, lo, lo}},
        {16446, {0, 0, 0, 0, 0, 0, lo, lo, lo}},
        {INT_MAX, {0, 0, 0, 0, 0, 0, lo, lo, lo}},
    };
    for (const Row& r : rows) {
      for (int rnd : {int{orvRndNear}, int{orvRndZero}, 7}) {
        std::vector<i64> got;
        ASSERT_EQ(c.run(in, got, rnd, r.scale), orvOk);
        EXPECT_EQ(got, r.want) << c.name << " scale " << r.scale << " rndMode " << rnd;
      }
    }
  }
}

// The same walk under a directed mode of the caller: rounding down or
// towards zero, doubling stops at the largest finite value and halving
// reaches 0; rounding up, halving stops at the smallest subnormal.
TEST(ConvertNarrow, ExtremeScalesFollowTheCallersModeInTheFactor) {
  const std::vector<double> in = {0.0, 1.0, INFINITY, -INFINITY};
  const NarrowCase& c = narrowCases()[3];  // 32f16s
  struct Row {
    int mode, scale;
    std::vector<i64> want;
  };
  const Row rows[] = {
      {FE_DOWNWARD, INT_MIN, {0, 32767, 32767, -32768}},
      {FE_TOWARDZERO, INT_MIN, {0, 32767, 32767, -32768}},
      {FE_UPWARD, INT_MIN, {-32768, 32767, 32767, -32768}},
      {FE_UPWARD, INT_MAX, {0, 0, 32767, -32768}},
      {FE_DOWNWARD, INT_MAX, {0, 0, -32768, -32768}},
      {FE_TOWARDZERO, INT_MAX, {0, 0, -32768, -32768}},
  };
  for (const Row& r : rows) {
    ModeScope ms(r.mode);
    std::vector<i64> got;
    ASSERT_EQ(c.run(in, got, orvRndNear, r.scale), orvOk);
    EXPECT_EQ(got, r.want) << "mode " << r.mode << " scale " << r.scale;
    EXPECT_EQ(std::fegetround(), r.mode);
  }
}

// Examples with known answers, one row each.
TEST(ConvertNarrow, KnownValues) {
  struct Row {
    const char* form;
    double x;
    int rnd, scale;
    i64 want;
  };
  const Row rows[] = {
      {"32f8u", 0.5, 1, 0, 0},          {"32f8u", 1.5, 1, 0, 2},
      {"32f8u", 2.5, 1, 0, 2},          {"32f8u", 254.5, 1, 0, 254},
      {"32f8u", 254.6f, 1, 0, 255},     {"32f8u", 300.0, 1, 0, 255},
      {"32f8u", -1.0, 1, 0, 0},         {"32f8u", NAN, 1, 0, 0},
      {"32f8u", 1.9f, 0, 0, 1},         {"32f8u", 1.9f, 2, 0, 1},
      {"32f8u", 1.9f, -1, 0, 1},        {"32f16s", -0.5, 1, 0, 0},
      {"32f16s", -1.5, 1, 0, -2},       {"32f16s", -2.5, 1, 0, -2},
      {"32f16s", 40000.0, 1, 0, 32767}, {"32f16s", -40000.0, 1, 0, -32768},
      {"32f16s", NAN, 1, 0, -32768},    {"32f16s", 5.0, 0, 1, 2},
      {"32f16s", 5.0, 0, -1, 10},       {"32f8s", 127.0, 1, 0, 127},
      {"32f8s", -128.0, 1, 0, -128},    {"32f16u", 65534.5, 1, 0, 65534},
      {"32f16u", -0.0, 1, 0, 0},        {"32f8s", -NAN, 0, 0, -128},
      // Without a scale the 32-bit form compares with 2^31 as orv32f, whose
      // float neighbour below is the largest value that passes.
      {"32f32s", 2147483520.0, 1, 0, 2147483520}, {"32f32s", 2147483648.0, 1, 0, INT32_MAX},
      {"32f32s", 1073741760.0, 1, -1, 2147483520}, {"32f32s", 1073741824.0, 1, -1, INT32_MAX},
      {"32f32s", -2147483648.0, 1, 0, INT32_MIN}, {"32f32s", -2147483520.0, 0, 0, -2147483520},
      {"64f32s", 2147483646.5, 1, 0, 2147483646}, {"64f32s", 2147483647.0, 1, 0, INT32_MAX},
      {"64f32s", -2147483647.5, 1, 0, INT32_MIN}, {"64f32s", -2147483647.5, 0, 0, -2147483647},
      {"64f32s", 0.5 + 0x1p-53, 1, 0, 0},        {"64f32s", 0.5 + 0x1p-52, 1, 0, 1},
  };
  for (const Row& r : rows) {
    for (const NarrowCase& c : narrowCases()) {
      if (c.name != r.form) continue;
      std::vector<i64> got;
      ASSERT_EQ(c.run({r.x}, got, r.rnd, r.scale), orvOk);
      EXPECT_EQ(got[0], r.want) << r.form << " x=" << r.x << " rnd=" << r.rnd << " scale=" << r.scale;
    }
  }
}

// A vector longer than any unrolled pass, with canaries around the output:
// exactly `len` elements are written, at every offset of the buffer.
TEST(ConvertNarrow, WritesExactlyLenElements) {
  for (int len = 1; len <= 13; ++len) {
    std::vector<orv32f> src(len);
    for (int i = 0; i < len; ++i) src[i] = static_cast<float>(i) * 1.5f - 4.0f;
    for (int offset = 0; offset < 3; ++offset) {
      Guarded<orv16s> dst(len, offset);
      ASSERT_EQ(orvsConvert_32f16s_Sfs(src.data(), dst.data(), len, orvRndNear, 0), orvOk);
      EXPECT_TRUE(dst.intactOutside());
      for (int i = 0; i < len; ++i)
        EXPECT_EQ(dst[i], static_cast<orv16s>(std::nearbyint(src[i]))) << "len " << len << " i " << i;
    }
  }
}

// ---- Widening ------------------------------------------------------------------

template <typename S>
std::vector<S> everyValue() {
  std::vector<S> v;
  for (i64 x = std::numeric_limits<S>::min(); x <= std::numeric_limits<S>::max(); ++x)
    v.push_back(static_cast<S>(x));
  return v;
}

template <typename S, typename D>
void expectExactWidening(orvStatus (*f)(const S*, D*, int), const std::vector<S>& src, const char* name) {
  std::vector<D> dst(src.size());
  ASSERT_EQ(f(src.data(), dst.data(), static_cast<int>(src.size())), orvOk);
  for (std::size_t i = 0; i < src.size(); ++i)
    ASSERT_EQ(static_cast<double>(dst[i]), static_cast<double>(src[i])) << name << " at " << i64{src[i]};
}

TEST(ConvertWiden, EverySmallIntegerIsExact) {
  const auto all8s = everyValue<orv8s>();
  const auto all8u = everyValue<orv8u>();
  const auto all16s = everyValue<orv16s>();
  const auto all16u = everyValue<orv16u>();
  expectExactWidening(orvsConvert_8s16s, all8s, "8s16s");
  expectExactWidening(orvsConvert_8s32f, all8s, "8s32f");
  expectExactWidening(orvsConvert_8u32f, all8u, "8u32f");
  expectExactWidening(orvsConvert_16s32f, all16s, "16s32f");
  expectExactWidening(orvsConvert_16u32f, all16u, "16u32f");
  std::vector<orv32s> s32 = {INT32_MIN, INT32_MIN + 1, -16777217, -1, 0, 1, 16777217, INT32_MAX};
  std::mt19937 gen(3);
  for (int i = 0; i < 1000; ++i) s32.push_back(static_cast<orv32s>(gen()));
  expectExactWidening(orvsConvert_32s64f, s32, "32s64f");
}

TEST(ConvertWiden, FloatToDoubleIsExact) {
  std::vector<orv32f> src;
  std::mt19937 gen(11);
  for (int i = 0; i < 20000; ++i) {
    const float f = bits<float>(static_cast<std::uint32_t>(gen()));
    if (!std::isnan(f)) src.push_back(f);
  }
  for (float f : {0.0f, -0.0f, FLT_TRUE_MIN, -FLT_MIN, FLT_MAX, INFINITY, -INFINITY}) src.push_back(f);
  std::vector<orv64f> dst(src.size());
  ASSERT_EQ(orvsConvert_32f64f(src.data(), dst.data(), static_cast<int>(src.size())), orvOk);
  for (std::size_t i = 0; i < src.size(); ++i) {
    // Exact: the double converts back to the same float bits, and the sign of a zero is kept.
    ASSERT_EQ(bits<std::uint32_t>(static_cast<float>(dst[i])), bits<std::uint32_t>(src[i]));
    ASSERT_EQ(std::signbit(dst[i]), std::signbit(src[i]));
  }
  const orv32f nan = NAN;
  orv64f out = 0;
  ASSERT_EQ(orvsConvert_32f64f(&nan, &out, 1), orvOk);
  EXPECT_TRUE(std::isnan(out));
}

// orvsConvert_32s32f rounds by the caller's mode, and leaves the mode set.
TEST(ConvertWiden, Int32ToFloatFollowsTheCallersMode) {
  std::vector<orv32s> src = {INT32_MIN, INT32_MAX, 16777217, -16777217, 16777219, 33554435, -33554435,
                             16777216, 2147483520, 2147483583, 2147483584, -2147483584, 0, 1, -1};
  std::mt19937 gen(13);
  for (int i = 0; i < 5000; ++i) src.push_back(static_cast<orv32s>(gen()));
  for (const CallerMode& m : kCallerModes) {
    SCOPED_TRACE(m.name);
    ModeScope ms(m.mode);
    std::vector<orv32f> dst(src.size());
    ASSERT_EQ(orvsConvert_32s32f(src.data(), dst.data(), static_cast<int>(src.size())), orvOk);
    EXPECT_EQ(std::fegetround(), m.mode);
    for (std::size_t i = 0; i < src.size(); ++i)
      ASSERT_EQ(static_cast<double>(dst[i]), static_cast<double>(roundToFloatGrid(src[i], m.mode)))
          << src[i];
    // With a scale, the product is rounded once, by the same mode.
    for (int scale : {0, 3, -3, 126, 1000, -96, -1000}) {
      ASSERT_EQ(orvsConvert_32s32f_Sfs(src.data(), dst.data(), static_cast<int>(src.size()), scale), orvOk);
      const int s = scale > 126 ? 126 : scale < -96 ? -96 : scale;
      for (std::size_t i = 0; i < src.size(); ++i)
        ASSERT_EQ(static_cast<double>(dst[i]),
                  std::ldexp(static_cast<double>(roundToFloatGrid(src[i], m.mode)), -s))
            << src[i] << " scale " << scale;
    }
  }
}

// Scaled widening of every 16-bit value; scales outside the range act like
// its ends.
TEST(ConvertWiden, ScaledForms) {
  const auto all16s = everyValue<orv16s>();
  const int n = static_cast<int>(all16s.size());
  std::vector<orv32s> s32 = {INT32_MIN, INT32_MAX, -1, 0, 1, 123456789};
  std::mt19937 gen(17);
  for (int i = 0; i < 1000; ++i) s32.push_back(static_cast<orv32s>(gen()));
  const int m32 = static_cast<int>(s32.size());
  auto clamp = [](int s, int lo, int hi) { return s < lo ? lo : s > hi ? hi : s; };
  for (int scale : {-3, -2, -1, 0, 1, 2, 3, 111, -111, 125, 126, 127, -112, -113, 1000, -1000, 1021, 1022,
                    1023, -1007, -1008, -1009, -992, -993, INT_MIN, INT_MAX}) {
    SCOPED_TRACE("scale " + std::to_string(scale));
    std::vector<orv32f> f(n);
    std::vector<orv64f> d(n);
    ASSERT_EQ(orvsConvert_16s32f_Sfs(all16s.data(), f.data(), n, scale), orvOk);
    ASSERT_EQ(orvsConvert_16s64f_Sfs(all16s.data(), d.data(), n, scale), orvOk);
    for (int i = 0; i < n; ++i) {
      ASSERT_EQ(static_cast<double>(f[i]), std::ldexp(all16s[i], -clamp(scale, -112, 126)));
      ASSERT_EQ(d[i], std::ldexp(all16s[i], -clamp(scale, -1008, 1022)));
    }
    std::vector<orv64f> d32(m32);
    ASSERT_EQ(orvsConvert_32s64f_Sfs(s32.data(), d32.data(), m32, scale), orvOk);
    for (int i = 0; i < m32; ++i) ASSERT_EQ(d32[i], std::ldexp(s32[i], -clamp(scale, -992, 1022)));
  }
  // The ends, spelt out: 2^-126 and 2^112.
  const orv16s one = 1;
  orv32f out = 0;
  ASSERT_EQ(orvsConvert_16s32f_Sfs(&one, &out, 1, 1000), orvOk);
  EXPECT_EQ(out, 0x1p-126f);
  ASSERT_EQ(orvsConvert_16s32f_Sfs(&one, &out, 1, -1000), orvOk);
  EXPECT_EQ(out, 0x1p112f);
}

// ---- Double to float -----------------------------------------------------------

// The float nearest to x by the mode, found by walking float neighbours and
// comparing exact distances.
float expectedNarrowFloat(double x, int mode) {
  if (!(x > -static_cast<double>(FLT_MAX))) return -FLT_MAX;
  if (!(x < static_cast<double>(FLT_MAX))) return FLT_MAX;
  float lo = static_cast<float>(x);
  while (static_cast<double>(lo) > x) lo = std::nextafterf(lo, -INFINITY);
  while (static_cast<double>(std::nextafterf(lo, INFINITY)) <= x) lo = std::nextafterf(lo, INFINITY);
  if (static_cast<double>(lo) == x) return lo;
  const float hi = std::nextafterf(lo, INFINITY);
  switch (mode) {
    case FE_UPWARD: return hi;
    case FE_DOWNWARD: return lo;
    case FE_TOWARDZERO: return x > 0 ? lo : hi;
    default: {
      const long double below = static_cast<long double>(x) - lo, above = static_cast<long double>(hi) - x;
      if (below != above) return below < above ? lo : hi;
      return (bits<std::uint32_t>(lo) & 1) == 0 ? lo : hi;
    }
  }
}

TEST(Convert64f32f, SaturatesAndRoundsByTheCallersMode) {
  std::vector<double> src = {NAN, -NAN, INFINITY, -INFINITY, 1e39, -1e39, 0.0, -0.0,
                             static_cast<double>(FLT_MAX), -static_cast<double>(FLT_MAX),
                             std::nextafter(static_cast<double>(FLT_MAX), 0.0),
                             std::nextafter(-static_cast<double>(FLT_MAX), 0.0),
                             std::nextafter(static_cast<double>(FLT_MAX), INFINITY),
                             0x1.ffffffp127, DBL_TRUE_MIN, -DBL_TRUE_MIN, 0x1p-150, 0x1.8p-150, -0x1p-150};
  std::mt19937_64 gen(19);
  for (int i = 0; i < 4000; ++i) {
    // Doubles across the float range, and floats moved by half an ulp.
    const float f = bits<float>(static_cast<std::uint32_t>(gen()));
    if (std::isnan(f) || std::isinf(f)) continue;
    src.push_back(f);
    const double ulp = static_cast<double>(std::nextafterf(std::fabs(f), INFINITY)) - std::fabs(f);
    src.push_back(f + ulp / 2);
    src.push_back(f - ulp / 2);
    src.push_back(f + ulp / 3);
    src.push_back(std::ldexp(static_cast<double>(gen() >> 11), static_cast<int>(gen() % 300) - 200 - 53));
  }
  for (const CallerMode& m : kCallerModes) {
    SCOPED_TRACE(m.name);
    ModeScope ms(m.mode);
    std::vector<orv32f> dst(src.size());
    ASSERT_EQ(orvsConvert_64f32f(src.data(), dst.data(), static_cast<int>(src.size())), orvOk);
    EXPECT_EQ(std::fegetround(), m.mode);
    for (std::size_t i = 0; i < src.size(); ++i) {
      const float want = expectedNarrowFloat(src[i], m.mode);
      ASSERT_EQ(bits<std::uint32_t>(dst[i]), bits<std::uint32_t>(want)) << std::hexfloat << src[i];
    }
  }
  // No infinity and no NaN comes out; NaN gives the largest negative value.
  const double special[] = {1e39, -1e39, NAN};
  orv32f out[3];
  ASSERT_EQ(orvsConvert_64f32f(special, out, 3), orvOk);
  EXPECT_EQ(bits<std::uint32_t>(out[0]), 0x7f7fffffu);
  EXPECT_EQ(bits<std::uint32_t>(out[1]), 0xff7fffffu);
  EXPECT_EQ(bits<std::uint32_t>(out[2]), 0xff7fffffu);
}

// ---- Argument checks -----------------------------------------------------------

TEST(ConvertChecks, NullPointersThenLength) {
  using Fn = std::function<orvStatus(const void*, void*, int)>;
  const std::vector<std::pair<const char*, Fn>> forms = {
      {"8s16s", [](const void* s, void* d, int n) { return orvsConvert_8s16s((const orv8s*)s, (orv16s*)d, n); }},
      {"8s32f", [](const void* s, void* d, int n) { return orvsConvert_8s32f((const orv8s*)s, (orv32f*)d, n); }},
      {"8u32f", [](const void* s, void* d, int n) { return orvsConvert_8u32f((const orv8u*)s, (orv32f*)d, n); }},
      {"16s32f", [](const void* s, void* d, int n) { return orvsConvert_16s32f((const orv16s*)s, (orv32f*)d, n); }},
      {"16u32f", [](const void* s, void* d, int n) { return orvsConvert_16u32f((const orv16u*)s, (orv32f*)d, n); }},
      {"32s32f", [](const void* s, void* d, int n) { return orvsConvert_32s32f((const orv32s*)s, (orv32f*)d, n); }},
      {"32s64f", [](const void* s, void* d, int n) { return orvsConvert_32s64f((const orv32s*)s, (orv64f*)d, n); }},
      {"32f64f", [](const void* s, void* d, int n) { return orvsConvert_32f64f((const orv32f*)s, (orv64f*)d, n); }},
      {"64f32f", [](const void* s, void* d, int n) { return orvsConvert_64f32f((const orv64f*)s, (orv32f*)d, n); }},
      {"16s32f_Sfs", [](const void* s, void* d, int n) { return orvsConvert_16s32f_Sfs((const orv16s*)s, (orv32f*)d, n, 1); }},
      {"16s64f_Sfs", [](const void* s, void* d, int n) { return orvsConvert_16s64f_Sfs((const orv16s*)s, (orv64f*)d, n, 1); }},
      {"32s32f_Sfs", [](const void* s, void* d, int n) { return orvsConvert_32s32f_Sfs((const orv32s*)s, (orv32f*)d, n, 1); }},
      {"32s64f_Sfs", [](const void* s, void* d, int n) { return orvsConvert_32s64f_Sfs((const orv32s*)s, (orv64f*)d, n, 1); }},
      {"32f8u", [](const void* s, void* d, int n) { return orvsConvert_32f8u_Sfs((const orv32f*)s, (orv8u*)d, n, 1, 0); }},
      {"32f8s", [](const void* s, void* d, int n) { return orvsConvert_32f8s_Sfs((const orv32f*)s, (orv8s*)d, n, 1, 0); }},
      {"32f16u", [](const void* s, void* d, int n) { return orvsConvert_32f16u_Sfs((const orv32f*)s, (orv16u*)d, n, 1, 0); }},
      {"32f16s", [](const void* s, void* d, int n) { return orvsConvert_32f16s_Sfs((const orv32f*)s, (orv16s*)d, n, 1, 0); }},
      {"32f32s", [](const void* s, void* d, int n) { return orvsConvert_32f32s_Sfs((const orv32f*)s, (orv32s*)d, n, 1, 0); }},
      {"64f32s", [](const void* s, void* d, int n) { return orvsConvert_64f32s_Sfs((const orv64f*)s, (orv32s*)d, n, 1, 0); }},
  };
  for (const auto& [name, f] : forms) {
    SCOPED_TRACE(name);
    alignas(16) unsigned char src[16] = {};
    Guarded<std::uint64_t> dst(2);
    EXPECT_EQ(f(nullptr, dst.data(), 1), orvErrNullPointer);
    EXPECT_EQ(f(src, nullptr, 1), orvErrNullPointer);
    EXPECT_EQ(f(nullptr, nullptr, 0), orvErrNullPointer);
    EXPECT_EQ(f(src, dst.data(), 0), orvErrSize);
    EXPECT_EQ(f(src, dst.data(), -1), orvErrSize);
    EXPECT_EQ(f(src, dst.data(), INT_MIN), orvErrSize);
    EXPECT_TRUE(dst.untouched());
  }
}

}  // namespace
