// The three element operations of the add and subtract families.
#pragma once

#include <type_traits>

namespace orv {
namespace addsub {

// kPlus: x + y. kMinus: x - y. kRevMinus: y - x.
// x is the vector element (or the first operand), y the second vector's
// element or the scalar.
enum class Op { kPlus, kMinus, kRevMinus };

// The exact integer result t of one element, in the wide type W. An unsigned
// element type cannot hold a negative difference: it is limited below to 0
// here, before any scaling or rounding.
template <Op O, typename W, typename T>
inline W exactTerm(T x, T y) {
  W t;
  if constexpr (O == Op::kPlus) {
    t = static_cast<W>(static_cast<W>(x) + static_cast<W>(y));
  } else if constexpr (O == Op::kMinus) {
    t = static_cast<W>(static_cast<W>(x) - static_cast<W>(y));
  } else {
    t = static_cast<W>(static_cast<W>(y) - static_cast<W>(x));
  }
  if constexpr (!std::is_signed<T>::value) t = t < 0 ? W(0) : t;
  return t;
}

// One floating-point element. A single IEEE addition or subtraction of two
// values of T rounds to exactly the value that the double intermediate,
// rounded once to T, would give (double has more than twice the precision of
// float, plus two bits), so the operation is done in T itself.
template <Op O, typename T>
inline T floatTerm(T x, T y) {
  if constexpr (O == Op::kPlus) {
    return x + y;
  } else if constexpr (O == Op::kMinus) {
    return x - y;
  } else {
    return y - x;
  }
}

// A complex vector seen as its parts (re, im, re, im, ...).
template <typename P, typename C>
inline P* partsOf(C* v) {
  return reinterpret_cast<P*>(v);
}
template <typename P, typename C>
inline const P* partsOf(const C* v) {
  return reinterpret_cast<const P*>(v);
}

}  // namespace addsub
}  // namespace orv
