// Floating-point to integer steps shared by the families that leave floating
// point: the rounding rules, the power-of-two scale factor of the narrowing
// conversions, the limit-then-round step of one element, and the truncating
// 32-bit store with its power-of-two divisors.
//
// All of them follow one numeric model: a value is held in double (the 53-bit
// working precision), a scale factor in long double (extended exponent
// range), and every truncation is a C conversion, which truncates towards
// zero whatever rounding mode the caller has set. Nothing here changes the
// caller's floating-point environment.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace orv {

// The value of a rounding-mode argument that selects round-to-nearest; every
// other value selects truncation towards zero.
constexpr int kRoundNearest = 1;

// Truncation towards zero of a value of magnitude below 2^63.
inline std::int64_t truncateToInteger(double v) { return static_cast<std::int64_t>(v); }

// Nearest integer with ties to the even neighbour, formed as the library
// forms it everywhere: move the value half a unit away from zero, truncate,
// and if the truncated value is odd and equals the moved value exactly, the
// value was a tie that landed on the odd neighbour, so step back towards zero
// by one. The half is added in double under the caller's rounding mode; for
// values with fewer than 53 significant bits above the half (every float and
// every scaled float) the sum is exact and the result is the true nearest
// integer with ties to even. `v` must have magnitude below 2^62.
inline std::int64_t roundHalfEven(double v) {
  if (v < 0.0) {
    const double z = v - 0.5;
    std::int64_t t = truncateToInteger(z);
    if ((t & 1) != 0 && static_cast<double>(t) == z) t += 1;
    return t;
  }
  const double z = v + 0.5;
  std::int64_t t = truncateToInteger(z);
  if ((t & 1) != 0 && static_cast<double>(t) == z) t -= 1;
  return t;
}

// The factor 2^-scale, built as the repeated doubling (negative scale) or
// halving (positive scale) of 1.0 in long double, under the caller's rounding
// mode. While the power of two is representable the steps are exact and the
// result is that power. Past the extended range each further step leaves the
// value where it is once it reaches 0, the smallest subnormal, infinity or
// the largest finite value (which of them depends on the rounding mode), so
// the walk stops there: any scale, INT_MIN and INT_MAX included, costs at
// most some sixteen thousand steps beyond the exact part.
inline long double powerOfTwoByRepeatedSteps(int scale) {
  if (scale == 0) return 1.0L;
  // Every power of two from 2^-16382 to 2^16382 is a normal long double, so
  // that far the walk is exact and can be taken in one step.
  constexpr std::uint32_t kExactSteps = 16382;
  std::uint32_t steps = scale > 0 ? static_cast<std::uint32_t>(scale)
                                  : 0u - static_cast<std::uint32_t>(scale);
  const std::uint32_t exact = steps < kExactSteps ? steps : kExactSteps;
  long double f = std::ldexp(1.0L, scale > 0 ? -static_cast<int>(exact) : static_cast<int>(exact));
  steps -= exact;
  const long double step = scale > 0 ? 0.5L : 2.0L;
  for (; steps > 0; --steps) {
    const long double next = f * step;
    if (next == f) break;  // a fixed point: no further step changes it
    f = next;
  }
  return f;
}

// The limits of one float-to-integer conversion: a value that is not below
// `upperLimit` stores `upperBound`; a value that is not above `lowerLimit`
// (NaN included) stores `lowerBound`.
template <typename T>
struct IntegerLimits {
  double upperLimit;
  double lowerLimit;
  T upperBound;
  T lowerBound;
};

// One element of a float-to-integer conversion: the limit tests, then the
// rounding chosen by `Nearest` on the value held in double. V is double or
// long double (a value scaled at extended exponent range); NaN fails both
// comparisons that would let it through and goes to the lower bound.
template <typename T, bool Nearest, typename V>
inline T limitAndRound(V v, const IntegerLimits<T>& lim) {
  if (v >= static_cast<V>(lim.upperLimit)) return lim.upperBound;
  if (!(v > static_cast<V>(lim.lowerLimit))) return lim.lowerBound;
  const double d = static_cast<double>(v);
  return static_cast<T>(Nearest ? roundHalfEven(d) : truncateToInteger(d));
}

// ---- Saturate, then round half away from zero ------------------------------

// The output step of the filters that accumulate in floating point and store
// integers: a value below T's smallest value stores that value, a value above
// T's largest stores that one; only then is the value rounded, by adding 0.5
// away from zero and truncating, so ties go away from zero. An exact zero
// stays 0. A NaN passes none of the tests and stores T's smallest value, the
// "integer indefinite" of the processor's integer store.
template <typename T>
inline T saturateRoundHalfAway(double v) {
  constexpr double lo = static_cast<double>(std::numeric_limits<T>::min());
  constexpr double hi = static_cast<double>(std::numeric_limits<T>::max());
  if (v < lo) return std::numeric_limits<T>::min();
  if (v > hi) return std::numeric_limits<T>::max();
  if (v < 0.0) return static_cast<T>(truncateToInteger(v + -0.5));
  if (v > 0.0) return static_cast<T>(truncateToInteger(v + 0.5));
  if (v == 0.0) return T(0);
  return std::numeric_limits<T>::min();
}

// ---- The truncating integer store -----------------------------------------

// v truncated towards zero to a signed 32-bit integer. A value whose
// truncation lies outside the 32-bit range, and every NaN, gives the
// processor's "integer indefinite" -2147483648, as the store instruction
// delivers it.
inline std::int32_t truncateToInt32(double v) {
  if (v > -2147483649.0 && v < 2147483648.0) return static_cast<std::int32_t>(v);
  return std::numeric_limits<std::int32_t>::min();
}

// 2^d for a shift distance d, formed as the signed 32-bit integer 1 shifted
// left by d modulo 32 and then turned into floating point: 2^31 comes out as
// -2147483648.0, and a distance of 32 as 1.0.
inline double powerOfTwoMod32(std::uint32_t d) {
  return static_cast<double>(static_cast<std::int32_t>(std::uint32_t{1} << (d & 31u)));
}

// |s| of a scale factor as an unsigned distance, defined for every s
// (including the most negative one, whose magnitude is 2^31).
inline std::uint32_t scaleDistance(int s) {
  const std::uint32_t u = static_cast<std::uint32_t>(s);
  return s < 0 ? 0u - u : u;
}

}  // namespace orv
