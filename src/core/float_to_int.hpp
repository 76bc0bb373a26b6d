// Floating-point values turned into integers the way the processor's
// truncating integer store does it.
#pragma once

#include <cstdint>
#include <limits>

namespace orv {

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
