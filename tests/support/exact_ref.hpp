// Exact reference for scaled integer results: t * 2^-s rounded to the
// nearest integer with ties to the even neighbour, then saturated.
//
// Worked out with a 128-bit integer, floor division and a comparison of the
// remainder with one half: it shares no step with the library's rounding
// (which adds a bias and the bit s of t, then shifts).
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace orvtest {

__extension__ typedef __int128 Wide;

// round(t / 2^s) for s >= 1, ties to even. |t| must be below 2^120.
inline Wide roundDown(Wide t, long long s) {
  if (s >= 121) return 0;  // |t| / 2^s < 1/2
  const Wide d = Wide(1) << s;
  Wide q = t / d;  // towards zero
  Wide r = t % d;  // sign of t
  if (r < 0) {     // make it the floor
    q -= 1;
    r += d;
  }
  const Wide twice = 2 * r;
  if (twice > d) return q + 1;
  if (twice < d) return q;
  return (q % 2 == 0) ? q : q + 1;
}

// t * 2^-s, exact for s <= 0 and rounded to nearest even for s > 0, limited
// to [lo, hi]. |t| must be below 2^64; bounds must lie within 62 bits.
inline long long exactScaled(Wide t, long long s, long long lo, long long hi) {
  Wide v;
  if (s > 0) {
    v = roundDown(t, s);
  } else {
    // Any non-zero t shifted by 62 bits is beyond every bound.
    const long long e = std::min<long long>(-s, 62);
    v = t * (Wide(1) << e);
  }
  if (v > hi) return hi;
  if (v < lo) return lo;
  return static_cast<long long>(v);
}

// The same, with the bounds of the integer type T.
template <typename T>
T exactScaledTo(Wide t, long long s) {
  return static_cast<T>(exactScaled(t, s, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}

inline std::string toString(Wide v) {
  if (v == 0) return "0";
  const bool neg = v < 0;
  std::string out;
  while (v != 0) {
    const int digit = static_cast<int>(v % 10);
    out.insert(out.begin(), static_cast<char>('0' + (digit < 0 ? -digit : digit)));
    v /= 10;
  }
  return neg ? "-" + out : out;
}

}  // namespace orvtest
