// Every FIR family as a test row, and an independent reference: the
// convolution summed in double (or exactly in 64-bit integers for integer
// taps), with the output rules written out here from their definitions.
#pragma once

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "core/test_hooks.hpp"
#include "filter/filter_state.hpp"
#include "orvspx.h"

namespace firtest {

// One row per family: creation, Get/Set, Free and every filtering form with a
// common signature. Forms without scaleFactor or tapsFactor ignore them;
// integer-tap rows create with tapsFactor 0. The last four arguments name the
// argument-list pieces that differ between the kinds of family.
#define FIRTEST_N
#define FIRTEST_TF0 0,
#define FIRTEST_TF tf,
#define FIRTEST_SF , sf
#define FIRTEST_GF , &f
#define FIRTEST_ROW(ROW, FAMILY, SUFFIX, DT, DS, SFS, ISFS, TF0, TF, SF, GF)                    \
  struct ROW {                                                                                  \
    using Family = orv::filter::FAMILY;                                                         \
    using Tap = Family::Tap;                                                                    \
    using Sample = Family::Sample;                                                              \
    static constexpr const char* kName = #SUFFIX;                                               \
    static orvStatus init(orvsFIRState** s, const Tap* t, int n, const Sample* d) {            \
      return orvsFIRInitAlloc##SUFFIX(s, t, n, TF0 d);                                          \
    }                                                                                           \
    static orvStatus getTaps(const orvsFIRState* s, Tap* t) {                                  \
      [[maybe_unused]] int f = 0;                                                               \
      return orvsFIRGetTaps##SUFFIX(s, t GF);                                                   \
    }                                                                                           \
    static orvStatus getDly(const orvsFIRState* s, Sample* d) {                                \
      return orvsFIRGetDlyLine##SUFFIX(s, d);                                                   \
    }                                                                                           \
    static orvStatus setDly(orvsFIRState* s, const Sample* d) {                                \
      return orvsFIRSetDlyLine##SUFFIX(s, d);                                                   \
    }                                                                                           \
    static orvStatus release(orvsFIRState* s) { return orvsFIRFree##SUFFIX(s); }               \
    static orvStatus block(const Sample* x, Sample* y, int len, orvsFIRState* s,               \
                           [[maybe_unused]] int sf) {                                           \
      return orvsFIR##SUFFIX##SFS(x, y, len, s SF);                                             \
    }                                                                                           \
    static orvStatus blockI(Sample* xy, int len, orvsFIRState* s, [[maybe_unused]] int sf) {   \
      return orvsFIR##SUFFIX##ISFS(xy, len, s SF);                                              \
    }                                                                                           \
    static orvStatus one(Sample x, Sample* y, orvsFIRState* s, [[maybe_unused]] int sf) {      \
      return orvsFIROne##SUFFIX##SFS(x, y, s SF);                                               \
    }                                                                                           \
    static orvStatus direct(const Sample* x, Sample* y, int len, const Tap* t, int n,          \
                            [[maybe_unused]] int tf, Sample* d, int* i,                         \
                            [[maybe_unused]] int sf) {                                          \
      return orvsFIR##DT##_Direct_##DS##SFS(x, y, len, t, n, TF d, i SF);                       \
    }                                                                                           \
    static orvStatus directI(Sample* xy, int len, const Tap* t, int n, [[maybe_unused]] int tf,\
                             Sample* d, int* i, [[maybe_unused]] int sf) {                      \
      return orvsFIR##DT##_Direct_##DS##ISFS(xy, len, t, n, TF d, i SF);                        \
    }                                                                                           \
    static orvStatus directOne(Sample x, Sample* y, const Tap* t, int n,                       \
                               [[maybe_unused]] int tf, Sample* d, int* i,                      \
                               [[maybe_unused]] int sf) {                                       \
      return orvsFIROne##DT##_Direct_##DS##SFS(x, y, t, n, TF d, i SF);                         \
    }                                                                                           \
    static orvStatus directOneI(Sample* xy, const Tap* t, int n, [[maybe_unused]] int tf,      \
                                Sample* d, int* i, [[maybe_unused]] int sf) {                   \
      return orvsFIROne##DT##_Direct_##DS##ISFS(xy, t, n, TF d, i SF);                          \
    }                                                                                           \
  };
#define FIRTEST_FLOAT(ROW, FAMILY, SUFFIX, DT, DS) \
  FIRTEST_ROW(ROW, FAMILY, SUFFIX, DT, DS, , _I, FIRTEST_N, FIRTEST_N, FIRTEST_N, FIRTEST_N)
#define FIRTEST_INT(ROW, FAMILY, SUFFIX, DT, DS) \
  FIRTEST_ROW(ROW, FAMILY, SUFFIX, DT, DS, _Sfs, _ISfs, FIRTEST_N, FIRTEST_N, FIRTEST_SF, FIRTEST_N)
#define FIRTEST_INT_TAPS(ROW, FAMILY, SUFFIX, DT, DS)                                     \
  FIRTEST_ROW(ROW, FAMILY, SUFFIX, DT, DS, _Sfs, _ISfs, FIRTEST_TF0, FIRTEST_TF, FIRTEST_SF, \
              FIRTEST_GF)

FIRTEST_FLOAT(F32f, Fir32f, _32f, , 32f)
FIRTEST_FLOAT(F32fc, Fir32fc, _32fc, , 32fc)
FIRTEST_FLOAT(F64f, Fir64f, _64f, , 64f)
FIRTEST_FLOAT(F64fc, Fir64fc, _64fc, , 64fc)
FIRTEST_FLOAT(F64f32f, Fir64f32f, 64f_32f, 64f, 32f)
FIRTEST_FLOAT(F64fc32fc, Fir64fc32fc, 64fc_32fc, 64fc, 32fc)
FIRTEST_INT(F32f16s, Fir32f16s, 32f_16s, 32f, 16s)
FIRTEST_INT(F32fc16sc, Fir32fc16sc, 32fc_16sc, 32fc, 16sc)
FIRTEST_INT(F64f16s, Fir64f16s, 64f_16s, 64f, 16s)
FIRTEST_INT(F64fc16sc, Fir64fc16sc, 64fc_16sc, 64fc, 16sc)
FIRTEST_INT(F64f32s, Fir64f32s, 64f_32s, 64f, 32s)
FIRTEST_INT(F64fc32sc, Fir64fc32sc, 64fc_32sc, 64fc, 32sc)
FIRTEST_INT_TAPS(F32s16s, Fir32s16s, 32s_16s, 32s, 16s)
FIRTEST_INT_TAPS(F32sc16sc, Fir32sc16sc, 32sc_16sc, 32sc, 16sc)

struct FilterRowName {
  template <typename Row>
  static std::string GetName(int) {
    return Row::kName;
  }
};

using AllFilterRows = ::testing::Types<F32f, F32fc, F32f16s, F32fc16sc, F32s16s, F32sc16sc, F64f,
                                       F64fc, F64f32f, F64fc32fc, F64f32s, F64fc32sc, F64f16s,
                                       F64fc16sc>;
using FftFilterRows = ::testing::Types<F32f, F32fc, F32f16s, F32fc16sc, F64f, F64fc, F64f32f,
                                       F64fc32fc, F64f32s, F64fc32sc, F64f16s, F64fc16sc>;

// ---- Values -------------------------------------------------------------------------

// Taps: floating in [-1, 1), integers that every creation keeps unshifted.
// Samples: floating in [-amp, amp), integers in [-amp, amp].
template <typename T>
void randomValue(std::mt19937& g, T& v, double amp = 1.0) {
  if constexpr (std::is_floating_point<T>::value) {
    v = static_cast<T>(std::uniform_real_distribution<double>(-amp, amp)(g));
  } else if constexpr (std::is_integral<T>::value) {
    const long long m = amp == 1.0 ? 0x7FFE : static_cast<long long>(amp);
    v = static_cast<T>(std::uniform_int_distribution<long long>(-m, m)(g));
  } else {
    randomValue(g, v.re, amp);
    randomValue(g, v.im, amp);
  }
}

template <typename Row>
std::vector<typename Row::Tap> taps(int n, unsigned seed) {
  std::mt19937 g(seed);
  std::vector<typename Row::Tap> v(static_cast<std::size_t>(n));
  for (auto& t : v) randomValue(g, t);
  return v;
}

// A sample amplitude and a scaleFactor that keep most integer outputs of a
// few dozen taps in range, without making them all small.
template <typename Row>
double amplitude() {
  using S = typename Row::Sample;
  if constexpr (std::is_same<S, orv16s>::value || std::is_same<S, orv16sc>::value) {
    return 1000.0;
  } else if constexpr (std::is_same<S, orv32s>::value || std::is_same<S, orv32sc>::value) {
    return 1.0e8;
  } else {
    return 1.0;
  }
}
template <typename S>
constexpr bool kFloatSample = std::is_floating_point<S>::value ||
                              std::is_same<S, orv32fc>::value || std::is_same<S, orv64fc>::value;

template <typename Row>
int defaultScale() {
  if constexpr (Row::Family::kIntegerTaps) {
    return 14;
  } else if constexpr (kFloatSample<typename Row::Sample>) {
    return 0;
  } else {
    return 1;
  }
}

template <typename Row>
std::vector<typename Row::Sample> samples(int n, unsigned seed) {
  std::mt19937 g(seed);
  std::vector<typename Row::Sample> v(static_cast<std::size_t>(n));
  for (auto& x : v) randomValue(g, x, amplitude<Row>());
  return v;
}

// Random bit patterns: the delay line must move samples as they are.
template <typename T>
std::vector<T> randomBits(int n, unsigned seed) {
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
bool sameBits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
}

// First index where two vectors differ in their bits, or -1.
template <typename T>
long firstDifference(const std::vector<T>& a, const std::vector<T>& b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    if (std::memcmp(&a[i], &b[i], sizeof(T)) != 0) return static_cast<long>(i);
  return a.size() == b.size() ? -1 : static_cast<long>(std::min(a.size(), b.size()));
}

// ---- Reference ----------------------------------------------------------------------

struct Parts {
  double re, im;
};
inline Parts partsOf(orv32fc v) { return {v.re, v.im}; }
inline Parts partsOf(orv64fc v) { return {v.re, v.im}; }
inline Parts partsOf(orv16sc v) { return {double(v.re), double(v.im)}; }
inline Parts partsOf(orv32sc v) { return {double(v.re), double(v.im)}; }

// 2^-s with only |s| mod 128 counting, as a float: s = 127 (mod 128, positive)
// is below the float range and gives 0.
inline double refFactor(int s) {
  const long long m = std::llabs(static_cast<long long>(s)) % 128;
  if (s > 0) return m == 127 ? 0.0 : std::ldexp(1.0, static_cast<int>(-m));
  return std::ldexp(1.0, static_cast<int>(m));
}

// Saturate, then round half away from zero; NaN gives the smallest value.
template <typename T>
T refSaturateRound(double v) {
  const double lo = std::numeric_limits<T>::min(), hi = std::numeric_limits<T>::max();
  if (std::isnan(v) || v < lo) return std::numeric_limits<T>::min();
  if (v > hi) return std::numeric_limits<T>::max();
  return static_cast<T>(std::round(v));
}

// The shift rule on an exact integer sum: the sum modulo 2^32, then shifted
// by tapsFactor - scaleFactor (a 32-bit difference) limited to 31 either way.
inline orv16s refShift(long long sum, int tapsFactor, int scaleFactor) {
  const std::int32_t wrapped = static_cast<std::int32_t>(static_cast<std::uint32_t>(sum));
  const std::int32_t d = static_cast<std::int32_t>(static_cast<std::uint32_t>(tapsFactor) -
                                                   static_cast<std::uint32_t>(scaleFactor));
  long long v;
  if (d > 0) {
    const int k = d > 31 ? 31 : d;
    v = static_cast<std::int32_t>(static_cast<std::uint32_t>(
        (static_cast<unsigned long long>(static_cast<long long>(wrapped)) << k) & 0xFFFFFFFFull));
  } else {
    const int k = d < -31 ? 31 : -d;
    v = static_cast<long long>(std::floor(static_cast<double>(wrapped) / std::ldexp(1.0, k)));
  }
  return static_cast<orv16s>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
}

template <typename S>
S refStoreReal(double acc, int sf) {
  if constexpr (std::is_floating_point<S>::value) {
    return static_cast<S>(acc);
  } else {
    return refSaturateRound<S>(acc * refFactor(sf));
  }
}

// Outputs of the filter over history h (tapsLen samples, oldest first; the
// oldest is never used) followed by x: y[n] = sum over j of
// taps[T-1-j] * w[n+j], j ascending, w = h[1..] ++ x.
template <typename Row>
std::vector<typename Row::Sample> reference(const std::vector<typename Row::Tap>& t,
                                            const std::vector<typename Row::Sample>& history,
                                            const std::vector<typename Row::Sample>& x, int sf,
                                            int tf = 0) {
  using F = typename Row::Family;
  using S = typename Row::Sample;
  const int T = static_cast<int>(t.size());
  std::vector<S> w(history.begin() + 1, history.end());
  w.insert(w.end(), x.begin(), x.end());
  std::vector<S> y(x.size());
  for (std::size_t n = 0; n < x.size(); ++n) {
    if constexpr (F::kIntegerTaps) {
      if constexpr (F::kComplex) {
        long long re = 0, im = 0;
        for (int j = 0; j < T; ++j) {
          const auto& c = t[T - 1 - j];
          const auto& s = w[n + j];
          re += (long long)c.re * s.re - (long long)c.im * s.im;
          im += (long long)c.re * s.im + (long long)c.im * s.re;
        }
        y[n] = {refShift(re, tf, sf), refShift(im, tf, sf)};
      } else {
        long long acc = 0;
        for (int j = 0; j < T; ++j) acc += (long long)t[T - 1 - j] * w[n + j];
        y[n] = refShift(acc, tf, sf);
      }
    } else if constexpr (F::kComplex) {
      double re = 0.0, im = 0.0;
      for (int j = 0; j < T; ++j) {
        const Parts c = partsOf(t[T - 1 - j]);
        const Parts s = partsOf(w[n + j]);
        re += c.re * s.re - c.im * s.im;
        im += c.re * s.im + c.im * s.re;
      }
      using P = decltype(S{}.re);
      y[n] = {refStoreReal<P>(re, sf), refStoreReal<P>(im, sf)};
    } else {
      double acc = 0.0;
      for (int j = 0; j < T; ++j) acc += double(t[T - 1 - j]) * double(w[n + j]);
      y[n] = refStoreReal<S>(acc, sf);
    }
  }
  return y;
}

// The caller's delay line (newest first) as a history, oldest first.
template <typename S>
std::vector<S> historyOf(const std::vector<S>& callerDelay) {
  return std::vector<S>(callerDelay.rbegin(), callerDelay.rend());
}

// The last n samples of history ++ x, oldest first.
template <typename S>
std::vector<S> lastSamples(const std::vector<S>& history, const std::vector<S>& x, int n) {
  std::vector<S> all(history);
  all.insert(all.end(), x.begin(), x.end());
  return std::vector<S>(all.end() - n, all.end());
}

// A state of the row, released at the end of the scope.
template <typename Row>
struct State {
  State(const std::vector<typename Row::Tap>& t, const std::vector<typename Row::Sample>* delay) {
    status = Row::init(&s, t.data(), static_cast<int>(t.size()), delay ? delay->data() : nullptr);
  }
  ~State() {
    if (status == orvOk) {
      EXPECT_EQ(Row::release(s), orvOk);
    }
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  orvsFIRState* s = nullptr;
  orvStatus status;
};

// Fails the n-th allocation of a creation for n = 1, 2, ... until it gets
// through: each failure gives orvErrNoMemory, a null handle and no further
// allocation (the sanitizer build shows nothing leaks). Returns the
// allocation count of the successful creation, whose state init keeps.
template <typename Init>
long driveAllocationFailures(const Init& init, const std::string& what) {
  using namespace orv::testing;
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
