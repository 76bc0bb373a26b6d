// Element counts derived from a caller's `len`.
#pragma once

#include <cstdint>

namespace orv {

// 2 * len as a 32-bit count, the way a complex function hands its vector on
// to the real function of its part type. The product wraps: any len above
// 2^30 - 1 gives a negative count, which the real function refuses with
// orvErrSize (or orvErrNullPointer first) before it touches memory. It never
// becomes a large positive count.
inline int doubledCount(int len) {
  return static_cast<int>(static_cast<std::uint32_t>(len) * 2u);
}

}  // namespace orv
