// Saturation to the range of an integer element type.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

namespace orv {

// The value `v` limited to the range of the integer type T. W is an integer
// type wide enough to hold every value that reaches it.
template <typename T, typename W>
constexpr T saturate(W v) {
  static_assert(std::is_integral<T>::value && std::is_integral<W>::value, "integers only");
  using L = std::numeric_limits<T>;
  if constexpr (std::is_signed<W>::value) {
    if (v < static_cast<W>(L::min())) return L::min();
  }
  if (static_cast<std::make_unsigned_t<W>>(v) > static_cast<std::make_unsigned_t<W>>(L::max()) &&
      !(std::is_signed<W>::value && v < 0)) {
    return L::max();
  }
  return static_cast<T>(v);
}

}  // namespace orv
