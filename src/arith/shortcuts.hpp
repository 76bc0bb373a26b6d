// The constant and identity shortcuts of the arithmetic families: clearing
// and copying a vector through the zero and copy names, picked by element
// size. Elements without a name of their own go through the name of their
// size: 16u through 16s, 32s through 16sc (four bytes each).
#pragma once

#include "orvspx.h"

namespace orv {
namespace arith {

inline orvStatus clearElements(orv8u* dst, int len) { return orvsZero_8u(dst, len); }
inline orvStatus clearElements(orv16s* dst, int len) { return orvsZero_16s(dst, len); }
inline orvStatus clearElements(orv16u* dst, int len) {
  return orvsZero_16s(reinterpret_cast<orv16s*>(dst), len);
}
inline orvStatus clearElements(orv32s* dst, int len) {
  return orvsZero_16sc(reinterpret_cast<orv16sc*>(dst), len);
}
inline orvStatus clearElements(orv32f* dst, int len) { return orvsZero_32f(dst, len); }
inline orvStatus clearElements(orv64f* dst, int len) { return orvsZero_64f(dst, len); }

inline orvStatus copyElements(const orv8u* src, orv8u* dst, int len) {
  return orvsCopy_8u(src, dst, len);
}
inline orvStatus copyElements(const orv16s* src, orv16s* dst, int len) {
  return orvsCopy_16s(src, dst, len);
}
inline orvStatus copyElements(const orv32s* src, orv32s* dst, int len) {
  return orvsCopy_16sc(reinterpret_cast<const orv16sc*>(src), reinterpret_cast<orv16sc*>(dst),
                       len);
}
inline orvStatus copyElements(const orv32f* src, orv32f* dst, int len) {
  return orvsCopy_32f(src, dst, len);
}
inline orvStatus copyElements(const orv64f* src, orv64f* dst, int len) {
  return orvsCopy_64f(src, dst, len);
}

}  // namespace arith
}  // namespace orv

namespace orv {
namespace arith {

// Comparisons of a floating-point scalar that read an unordered result (a
// NaN operand) as "equal".
template <typename T>
inline bool zeroOrNaN(T v) {
  return !(v < T(0) || v > T(0));
}
template <typename T>
inline bool oneOrNaN(T v) {
  return !(v < T(1) || v > T(1));
}

}  // namespace arith
}  // namespace orv
