// The FIR state families as test rows: each row binds a family's traits to
// its exported operations, so that one test body serves all of them.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/test_hooks.hpp"
#include "filter/filter_state.hpp"
#include "orvspx.h"

namespace firtest {

using orv::filter::tagOf;

// Creation with the family's own taps type; integer-tap rows pass factor 0.
template <typename F, auto Init, auto GetTaps, auto GetDly, auto SetDly, auto Free>
struct FloatRow {
  static const char* name;
  using Family = F;
  using Tap = typename F::Tap;
  using Sample = typename F::Sample;
  static orvStatus init(orvsFIRState** s, const Tap* t, int n, const Sample* d) {
    return Init(s, t, n, d);
  }
  static orvStatus getTaps(const orvsFIRState* s, Tap* t) { return GetTaps(s, t); }
  static orvStatus getDly(const orvsFIRState* s, Sample* d) { return GetDly(s, d); }
  static orvStatus setDly(orvsFIRState* s, const Sample* d) { return SetDly(s, d); }
  static orvStatus release(orvsFIRState* s) { return Free(s); }
};

template <typename F, auto Init, auto GetTaps, auto GetDly, auto SetDly, auto Free>
struct IntegerRow {
  static const char* name;
  using Family = F;
  using Tap = typename F::Tap;
  using Sample = typename F::Sample;
  static orvStatus init(orvsFIRState** s, const Tap* t, int n, const Sample* d) {
    return Init(s, t, n, 0, d);
  }
  static orvStatus getTaps(const orvsFIRState* s, Tap* t) {
    int factor = 0;
    return GetTaps(s, t, &factor);
  }
  static orvStatus getDly(const orvsFIRState* s, Sample* d) { return GetDly(s, d); }
  static orvStatus setDly(orvsFIRState* s, const Sample* d) { return SetDly(s, d); }
  static orvStatus release(orvsFIRState* s) { return Free(s); }
};

#define FIRTEST_FLOAT_ROW(SUFFIX, FAMILY)                                                   \
  FloatRow<orv::filter::FAMILY, orvsFIRInitAlloc##SUFFIX, orvsFIRGetTaps##SUFFIX,            \
           orvsFIRGetDlyLine##SUFFIX, orvsFIRSetDlyLine##SUFFIX, orvsFIRFree##SUFFIX>
#define FIRTEST_INTEGER_ROW(SUFFIX, FAMILY)                                                 \
  IntegerRow<orv::filter::FAMILY, orvsFIRInitAlloc##SUFFIX, orvsFIRGetTaps##SUFFIX,          \
             orvsFIRGetDlyLine##SUFFIX, orvsFIRSetDlyLine##SUFFIX, orvsFIRFree##SUFFIX>

// Test names by the family's suffix.
struct RowName {
  template <typename Row>
  static std::string GetName(int) {
    return Row::name;
  }
};

#define FIRTEST_ROW_NAME(ROW, SUFFIX) \
  template <>                         \
  inline const char* ROW::name = #SUFFIX;

using Row32f = FIRTEST_FLOAT_ROW(_32f, Fir32f);
using Row32fc = FIRTEST_FLOAT_ROW(_32fc, Fir32fc);
using Row32f16s = FIRTEST_FLOAT_ROW(32f_16s, Fir32f16s);
using Row32fc16sc = FIRTEST_FLOAT_ROW(32fc_16sc, Fir32fc16sc);
using Row64f = FIRTEST_FLOAT_ROW(_64f, Fir64f);
using Row64fc = FIRTEST_FLOAT_ROW(_64fc, Fir64fc);
using Row64f32f = FIRTEST_FLOAT_ROW(64f_32f, Fir64f32f);
using Row64fc32fc = FIRTEST_FLOAT_ROW(64fc_32fc, Fir64fc32fc);
using Row64f32s = FIRTEST_FLOAT_ROW(64f_32s, Fir64f32s);
using Row64fc32sc = FIRTEST_FLOAT_ROW(64fc_32sc, Fir64fc32sc);
using Row64f16s = FIRTEST_FLOAT_ROW(64f_16s, Fir64f16s);
using Row64fc16sc = FIRTEST_FLOAT_ROW(64fc_16sc, Fir64fc16sc);
using Row32s16s = FIRTEST_INTEGER_ROW(32s_16s, Fir32s16s);
using Row32sc16sc = FIRTEST_INTEGER_ROW(32sc_16sc, Fir32sc16sc);

FIRTEST_ROW_NAME(Row32f, _32f)
FIRTEST_ROW_NAME(Row32fc, _32fc)
FIRTEST_ROW_NAME(Row32f16s, 32f_16s)
FIRTEST_ROW_NAME(Row32fc16sc, 32fc_16sc)
FIRTEST_ROW_NAME(Row64f, _64f)
FIRTEST_ROW_NAME(Row64fc, _64fc)
FIRTEST_ROW_NAME(Row64f32f, 64f_32f)
FIRTEST_ROW_NAME(Row64fc32fc, 64fc_32fc)
FIRTEST_ROW_NAME(Row64f32s, 64f_32s)
FIRTEST_ROW_NAME(Row64fc32sc, 64fc_32sc)
FIRTEST_ROW_NAME(Row64f16s, 64f_16s)
FIRTEST_ROW_NAME(Row64fc16sc, 64fc_16sc)
FIRTEST_ROW_NAME(Row32s16s, 32s_16s)
FIRTEST_ROW_NAME(Row32sc16sc, 32sc_16sc)
#undef FIRTEST_ROW_NAME

using FloatRows = ::testing::Types<Row32f, Row32fc, Row32f16s, Row32fc16sc, Row64f, Row64fc,
                                   Row64f32f, Row64fc32fc, Row64f32s, Row64fc32sc, Row64f16s,
                                   Row64fc16sc>;
using AllRows = ::testing::Types<Row32f, Row32fc, Row32f16s, Row32fc16sc, Row64f, Row64fc,
                                 Row64f32f, Row64fc32fc, Row64f32s, Row64fc32sc, Row64f16s,
                                 Row64fc16sc, Row32s16s, Row32sc16sc>;

// ---- Values ---------------------------------------------------------------------

// Taps that every creation of the type takes as they are: floating values in
// [-1, 1), integers that fit 0x7FFE.
inline void randomTap(std::mt19937& g, orv32f& t) {
  t = std::uniform_real_distribution<float>(-1.0f, 1.0f)(g);
}
inline void randomTap(std::mt19937& g, orv64f& t) {
  t = std::uniform_real_distribution<double>(-1.0, 1.0)(g);
}
inline void randomTap(std::mt19937& g, orv32s& t) {
  t = std::uniform_int_distribution<orv32s>(-0x7FFE, 0x7FFE)(g);
}
template <typename C>
void randomTap(std::mt19937& g, C& t) {
  randomTap(g, t.re);
  randomTap(g, t.im);
}

template <typename T>
std::vector<T> makeTaps(int n, unsigned seed) {
  std::mt19937 g(seed);
  std::vector<T> v(static_cast<std::size_t>(n));
  for (T& x : v) randomTap(g, x);
  return v;
}

// Samples of any type as random bit patterns: the delay line moves them as
// they are, so they must come back bit for bit.
template <typename T>
std::vector<T> makeSamples(int n, unsigned seed) {
  std::vector<T> v(static_cast<std::size_t>(n));
  std::mt19937 g(seed);
  auto* p = reinterpret_cast<unsigned char*>(v.data());
  for (std::size_t i = 0; i < v.size() * sizeof(T); ++i) p[i] = static_cast<unsigned char>(g());
  return v;
}

template <typename T>
bool sameBits(const T* a, const T* b, std::size_t n) {
  return std::memcmp(a, b, n * sizeof(T)) == 0;
}

template <typename T>
bool allZeroBits(const T* a, std::size_t n) {
  const auto* p = reinterpret_cast<const unsigned char*>(a);
  for (std::size_t i = 0; i < n * sizeof(T); ++i)
    if (p[i] != 0) return false;
  return true;
}

// Makes the n-th allocation of a creation fail, for n = 1, 2, ... until the
// creation gets through. Every failure must give orvErrNoMemory, a null
// handle, and no further allocation; the sanitizer build shows that nothing
// leaks. Returns the number of allocations of the successful creation, whose
// state `init` keeps for the caller.
template <typename Init>
long driveAllocationFailures(const Init& init, const std::string& what) {
  using orv::testing::allocationCount;
  using orv::testing::failNthAllocation;
  using orv::testing::resetAllocationCount;
  for (long n = 1; n < 1000; ++n) {
    int dummy = 0;
    orvsFIRState* s = reinterpret_cast<orvsFIRState*>(&dummy);
    resetAllocationCount();
    failNthAllocation(n);
    const orvStatus st = init(&s);
    const long made = allocationCount();
    failNthAllocation(0);
    if (st == orvOk) {
      EXPECT_EQ(made, n - 1) << what << ": succeeded though allocation " << n << " failed";
      return made;
    }
    EXPECT_EQ(st, orvErrNoMemory) << what << " n " << n;
    EXPECT_EQ(s, nullptr) << what << " n " << n;
    EXPECT_EQ(made, n) << what << ": went on after allocation " << n << " failed";
  }
  ADD_FAILURE() << what << " never succeeded";
  return -1;
}

}  // namespace firtest
