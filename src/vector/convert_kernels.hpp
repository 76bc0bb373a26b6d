// The float-to-integer conversion kernels: the plain loops, which are the
// definition, and the fast loop for orv32f sources to 8- and 16-bit targets,
// which the test suite checks against the plain loops bit for bit.
#pragma once

#include <cfloat>
#include <cstdint>
#include <type_traits>

#if defined(__SSE2__)
#include <emmintrin.h>
#include <immintrin.h>
#include <xmmintrin.h>
#endif

#include "core/cpu.hpp"
#include "core/float_to_int.hpp"
#include "core/internal.hpp"

namespace orv {
namespace convert {

// The limits of one target. Without a scale the orv32f-to-orv32s form
// compares with the orv32f constant 2^31, since 2147483647 has no orv32f
// form; with a scale it compares in double with 2147483647.
template <typename T>
struct NarrowingLimits {
  IntegerLimits<T> unscaled;
  IntegerLimits<T> scaled;
};

template <typename T>
constexpr NarrowingLimits<T> sameLimits(double upper, double lower, T upperBound, T lowerBound) {
  return {{upper, lower, upperBound, lowerBound}, {upper, lower, upperBound, lowerBound}};
}

constexpr NarrowingLimits<orv8u> kLimits8u = sameLimits<orv8u>(255.0, 0.0, 255, 0);
constexpr NarrowingLimits<orv8s> kLimits8s = sameLimits<orv8s>(127.0, -128.0, 127, -128);
constexpr NarrowingLimits<orv16u> kLimits16u = sameLimits<orv16u>(65535.0, 0.0, 65535, 0);
constexpr NarrowingLimits<orv16s> kLimits16s = sameLimits<orv16s>(32767.0, -32768.0, 32767, -32768);
constexpr NarrowingLimits<orv32s> kLimits32f32s = {
    {static_cast<double>(2147483648.0f), -2147483648.0, 2147483647, -2147483647 - 1},
    {2147483647.0, -2147483648.0, 2147483647, -2147483647 - 1}};
constexpr NarrowingLimits<orv32s> kLimits64f32s =
    sameLimits<orv32s>(2147483647.0, -2147483648.0, 2147483647, -2147483647 - 1);

// ---- Plain loops ------------------------------------------------------------

template <typename S, typename T, bool Nearest>
void narrowUnscaled(const S* src, T* dst, int len, const IntegerLimits<T>& lim) {
  for (int i = 0; i < len; ++i) dst[i] = limitAndRound<T, Nearest>(static_cast<double>(src[i]), lim);
}

// The factor is a normal double: the product in double is the exact scaled
// value except where it overflows (the exact value is then beyond every
// limit) or underflows (its magnitude is then far below one half, which
// stores 0 either way), so the stored integers equal those of the product at
// extended exponent range.
template <typename S, typename T, bool Nearest>
void narrowScaled(const S* src, T* dst, int len, double factor, const IntegerLimits<T>& lim) {
  for (int i = 0; i < len; ++i) {
    dst[i] = limitAndRound<T, Nearest>(static_cast<double>(src[i]) * factor, lim);
  }
}

// A factor beyond the double range (0, subnormal, huge or infinite in long
// double): the product is formed at extended exponent range.
template <typename S, typename T, bool Nearest>
void narrowScaledExtended(const S* src, T* dst, int len, long double factor,
                          const IntegerLimits<T>& lim) {
  for (int i = 0; i < len; ++i) {
    dst[i] = limitAndRound<T, Nearest>(static_cast<long double>(src[i]) * factor, lim);
  }
}

// The plain conversion of a whole vector: one loop per case of the scale.
template <typename S, typename T, bool Nearest>
void narrowPlain(const S* src, T* dst, int len, int scaleFactor, const NarrowingLimits<T>& limits) {
  if (scaleFactor == 0) {
    narrowUnscaled<S, T, Nearest>(src, dst, len, limits.unscaled);
    return;
  }
  const long double factor = powerOfTwoByRepeatedSteps(scaleFactor);
  if (factor >= static_cast<long double>(DBL_MIN) && factor <= static_cast<long double>(DBL_MAX)) {
    narrowScaled<S, T, Nearest>(src, dst, len, static_cast<double>(factor), limits.scaled);
  } else {
    narrowScaledExtended<S, T, Nearest>(src, dst, len, factor, limits.scaled);
  }
}

// ---- Fast loop: orv32f to 8- and 16-bit targets -------------------------------

// Scales whose factor 2^-s is a normal orv32f.
constexpr int kFastScaleLowest = -126;
constexpr int kFastScaleHighest = 126;

// The same results as narrowPlain for an orv32f source, a target whose
// limits are its bounds and lie within +-2^24, and a scale in the fast
// range, in a loop the compiler can vectorise:
// - the product in orv32f is exact, or it overflows where the exact value is
//   beyond every limit, or it underflows where the exact value stores 0;
// - the value is clamped into [lower, upper] (NaN to lower) before it is
//   truncated, so the truncation is always in range, and a clamped value
//   is the bound itself;
// - to nearest, the fraction y - trunc(y) is exact, and the step from the
//   truncated value follows from comparing it with one half: above moves
//   away from zero, equal moves only from an odd value.
// No step rounds, so the caller's rounding mode plays no part.
template <typename T, bool Nearest>
void narrowFloatFast(const orv32f* src, T* dst, int len, orv32f factor, const IntegerLimits<T>& lim) {
  const orv32f upper = static_cast<orv32f>(lim.upperLimit);
  const orv32f lower = static_cast<orv32f>(lim.lowerLimit);
  for (int i = 0; i < len; ++i) {
    orv32f y = src[i] * factor;
    y = y >= upper ? upper : y;
    y = y > lower ? y : lower;
    std::int32_t t = static_cast<std::int32_t>(y);
    if (Nearest) {
      const orv32f fraction = y - static_cast<orv32f>(t);
      const std::int32_t odd = t & 1;
      t += static_cast<std::int32_t>(fraction > 0.5f) - static_cast<std::int32_t>(fraction < -0.5f) +
           (static_cast<std::int32_t>(fraction == 0.5f) - static_cast<std::int32_t>(fraction == -0.5f)) * odd;
    }
    dst[i] = static_cast<T>(t);
  }
}

#if defined(__SSE2__)
// Four lanes of narrowFloatFast at a time, step for step: minps(upper, y)
// keeps y unless upper < y, so NaN stays NaN and then maxps(y, lower) gives
// lower for it; the masks of the comparisons are -1, so subtracting a mask
// adds one. The result lanes are packed to the target with saturating packs
// that never saturate, since every lane is already within the bounds.
//
// To nearest there are two ways. With the processor's rounding control at
// round-to-nearest (the usual case, tested once per call), the converting
// instruction rounds each clamped lane to nearest with ties to even by
// itself. Under any other rounding control the step is formed from the
// exact fraction as in narrowFloatFast.
enum class LaneRounding { kTruncate, kNearestByControl, kNearestByFraction };

template <LaneRounding Rounding>
inline __m128i narrowFourLanes(__m128 x, __m128 factor, __m128 upper, __m128 lower) {
  const __m128 y = _mm_max_ps(_mm_min_ps(upper, _mm_mul_ps(x, factor)), lower);
  if (Rounding == LaneRounding::kNearestByControl) return _mm_cvtps_epi32(y);
  __m128i t = _mm_cvttps_epi32(y);
  if (Rounding == LaneRounding::kNearestByFraction) {
    const __m128 fraction = _mm_sub_ps(y, _mm_cvtepi32_ps(t));
    const __m128 half = _mm_set1_ps(0.5f), minusHalf = _mm_set1_ps(-0.5f);
    const __m128i one = _mm_set1_epi32(1);
    const __m128i odd = _mm_cmpeq_epi32(_mm_and_si128(t, one), one);
    const __m128i up = _mm_or_si128(_mm_castps_si128(_mm_cmpgt_ps(fraction, half)),
                                    _mm_and_si128(_mm_castps_si128(_mm_cmpeq_ps(fraction, half)), odd));
    const __m128i down = _mm_or_si128(_mm_castps_si128(_mm_cmplt_ps(fraction, minusHalf)),
                                      _mm_and_si128(_mm_castps_si128(_mm_cmpeq_ps(fraction, minusHalf)), odd));
    t = _mm_add_epi32(_mm_sub_epi32(t, up), down);
  }
  return t;
}

// Eight int32 lanes of values within the target's range, packed and stored.
template <typename T>
inline void storeEightLanes(T* dst, __m128i a, __m128i b) {
  if constexpr (std::is_same<T, orv16s>::value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm_packs_epi32(a, b));
  } else if constexpr (std::is_same<T, orv16u>::value) {
    // 0..65535 moved to -32768..32767, packed, and moved back.
    const __m128i bias = _mm_set1_epi32(32768);
    const __m128i packed = _mm_packs_epi32(_mm_sub_epi32(a, bias), _mm_sub_epi32(b, bias));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm_xor_si128(packed, _mm_set1_epi16(-32768)));
  } else {
    const __m128i words = _mm_packs_epi32(a, b);
    const __m128i bytes = std::is_same<T, orv8u>::value ? _mm_packus_epi16(words, words)
                                                        : _mm_packs_epi16(words, words);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), bytes);
  }
}

template <typename T, LaneRounding Rounding>
int narrowFloatLanesSse2(const orv32f* src, T* dst, int len, orv32f factor, const IntegerLimits<T>& lim) {
  const __m128 f = _mm_set1_ps(factor);
  const __m128 upper = _mm_set1_ps(static_cast<orv32f>(lim.upperLimit));
  const __m128 lower = _mm_set1_ps(static_cast<orv32f>(lim.lowerLimit));
  int i = 0;
  for (; i + 8 <= len; i += 8) {
    const __m128i a = narrowFourLanes<Rounding>(_mm_loadu_ps(src + i), f, upper, lower);
    const __m128i b = narrowFourLanes<Rounding>(_mm_loadu_ps(src + i + 4), f, upper, lower);
    storeEightLanes(dst + i, a, b);
  }
  return i;
}

// The same as narrowFloatLanesSse2 with eight lanes per step, for the
// truncating and the by-control ways; each half of the eight is packed and
// stored as by the four-lane path.
template <typename T, LaneRounding Rounding>
__attribute__((target("avx2"))) int narrowFloatLanesAvx2(const orv32f* src, T* dst, int len, orv32f factor,
                                                         const IntegerLimits<T>& lim) {
  static_assert(Rounding != LaneRounding::kNearestByFraction, "four-lane path only");
  const __m256 f = _mm256_set1_ps(factor);
  const __m256 upper = _mm256_set1_ps(static_cast<orv32f>(lim.upperLimit));
  const __m256 lower = _mm256_set1_ps(static_cast<orv32f>(lim.lowerLimit));
  int i = 0;
  for (; i + 16 <= len; i += 16) {
    const __m256 y0 = _mm256_max_ps(_mm256_min_ps(upper, _mm256_mul_ps(_mm256_loadu_ps(src + i), f)), lower);
    const __m256 y1 =
        _mm256_max_ps(_mm256_min_ps(upper, _mm256_mul_ps(_mm256_loadu_ps(src + i + 8), f)), lower);
    const __m256i t0 = Rounding == LaneRounding::kTruncate ? _mm256_cvttps_epi32(y0) : _mm256_cvtps_epi32(y0);
    const __m256i t1 = Rounding == LaneRounding::kTruncate ? _mm256_cvttps_epi32(y1) : _mm256_cvtps_epi32(y1);
    storeEightLanes(dst + i, _mm256_castsi256_si128(t0), _mm256_extracti128_si256(t0, 1));
    storeEightLanes(dst + i + 8, _mm256_castsi256_si128(t1), _mm256_extracti128_si256(t1, 1));
  }
  return i;
}

// Returns how many leading elements were done; the caller finishes the rest.
template <typename T, bool Nearest>
int narrowFloatFastSimd(const orv32f* src, T* dst, int len, orv32f factor, const IntegerLimits<T>& lim) {
  constexpr LaneRounding kTruncate = LaneRounding::kTruncate;
  constexpr LaneRounding kByControl = LaneRounding::kNearestByControl;
  constexpr unsigned kRoundingControl = 0x6000u;  // 0 is round-to-nearest
  if (Nearest && (_mm_getcsr() & kRoundingControl) != 0) {
    return narrowFloatLanesSse2<T, LaneRounding::kNearestByFraction>(src, dst, len, factor, lim);
  }
  if (cpu::hasAvx2()) {
    return Nearest ? narrowFloatLanesAvx2<T, kByControl>(src, dst, len, factor, lim)
                   : narrowFloatLanesAvx2<T, kTruncate>(src, dst, len, factor, lim);
  }
  return Nearest ? narrowFloatLanesSse2<T, kByControl>(src, dst, len, factor, lim)
                 : narrowFloatLanesSse2<T, kTruncate>(src, dst, len, factor, lim);
}
#endif

// The conversion of a whole vector, the fast loop where it applies.
template <typename S, typename T, bool Nearest>
void narrow(const S* src, T* dst, int len, int scaleFactor, const NarrowingLimits<T>& limits) {
  if constexpr (std::is_same<S, orv32f>::value && sizeof(T) <= 2) {
    if (scaleFactor >= kFastScaleLowest && scaleFactor <= kFastScaleHighest) {
      const orv32f factor = bitCast<orv32f>(static_cast<std::uint32_t>(127 - scaleFactor) << 23);
      int done = 0;
#if defined(__SSE2__)
      done = narrowFloatFastSimd<T, Nearest>(src, dst, len, factor, limits.scaled);
#endif
      narrowFloatFast<T, Nearest>(src + done, dst + done, len - done, factor, limits.scaled);
      return;
    }
  }
  narrowPlain<S, T, Nearest>(src, dst, len, scaleFactor, limits);
}

}  // namespace convert
}  // namespace orv
