// The three packed layouts of a real signal's spectrum, and the moves between
// them. A real signal of length n has X[0] real, X[n-k] = conj(X[k]) and,
// for even n, a real middle bin X[n/2]; a layout stores the bins 0..n/2 as
// reals of the data's element type. With M = n/2 (rounded down):
//
//   even n   CCS (n+2)   [0] Re X0, [1] 0, [2k] Re Xk, [2k+1] Im Xk (k < M),
//                        [n] Re XM, [n+1] 0
//            Pack (n)    [0] Re X0, [2k-1] Re Xk, [2k] Im Xk (k < M), [n-1] Re XM
//            Perm (n)    [0] Re X0, [1] Re XM, [2k] Re Xk, [2k+1] Im Xk (k < M)
//   odd n    CCS (n+1)   [0] Re X0, [1] 0, [2k] Re Xk, [2k+1] Im Xk (k <= M)
//            Pack = Perm [0] Re X0, [2k-1] Re Xk, [2k] Im Xk (k <= M)
//
// The real FFT produces Perm and moves it into the other two; the inverse
// brings the other two back into Perm first. The DFT of any length uses the
// same moves for its odd lengths, so they all live here.
#pragma once

#include <cstddef>

namespace orv {
namespace layout {

enum class Kind { Ccs, Pack, Perm };

// Number of reals that a layout of a length-n spectrum takes.
inline std::ptrdiff_t realCount(Kind kind, std::ptrdiff_t n) {
  if (kind != Kind::Ccs) return n;
  return (n % 2 == 0) ? n + 2 : n + 1;
}

// Array positions of Re X[k] and Im X[k], 0 <= k <= n/2. `im` is -1 where
// the layout has no slot for the imaginary part (bin 0, and the middle bin
// of even n, in Pack and Perm).
struct Slots {
  std::ptrdiff_t re;
  std::ptrdiff_t im;
};

inline Slots binSlots(Kind kind, std::ptrdiff_t n, std::ptrdiff_t k) {
  if (kind == Kind::Ccs) return {2 * k, 2 * k + 1};
  if (k == 0) return {0, -1};
  const bool even = (n % 2 == 0);
  if (even && k == n / 2) return {kind == Kind::Pack ? n - 1 : 1, -1};
  if (kind == Kind::Perm && even) return {2 * k, 2 * k + 1};
  return {2 * k - 1, 2 * k};
}

// First array position of the (re, im) pairs, and their number. Bin 0, and
// the middle bin of even n, are the real bins that lie outside the pairs.
inline std::ptrdiff_t firstPair(Kind kind, std::ptrdiff_t n) {
  if (kind == Kind::Ccs) return 2;
  return (kind == Kind::Perm && n % 2 == 0) ? 2 : 1;
}
inline std::ptrdiff_t pairCount(std::ptrdiff_t n) { return (n % 2 == 0) ? n / 2 - 1 : (n - 1) / 2; }

// ---- Moves out of Perm, in place ------------------------------------------

// Perm to Pack. Only even n above 2 moves anything: Re X[M] goes from [1]
// to [n-1], everything from [2] on moves down by one.
template <typename T>
inline void permToPack(T* x, std::ptrdiff_t n) {
  if (n % 2 != 0 || n <= 2) return;
  const T middle = x[1];
  for (std::ptrdiff_t j = 1; j < n - 1; ++j) x[j] = x[j + 1];
  x[n - 1] = middle;
}

// Perm to CCS; x has room for realCount(Ccs, n) reals. Even n: Re X[M] goes
// from [1] to [n], zeros at [1] and [n+1]. Odd n (Perm being Pack there):
// everything from [1] on moves up by one, and [1] becomes 0.
template <typename T>
inline void permToCcs(T* x, std::ptrdiff_t n) {
  if (n % 2 == 0) {
    x[n] = x[1];
    x[n + 1] = T(0);
    x[1] = T(0);
    return;
  }
  for (std::ptrdiff_t j = n - 1; j >= 1; --j) x[j + 1] = x[j];
  x[1] = T(0);
}

// Perm in place into the layout `kind`.
template <typename T>
inline void fromPerm(Kind kind, T* x, std::ptrdiff_t n) {
  if (kind == Kind::Pack) permToPack(x, n);
  else if (kind == Kind::Ccs) permToCcs(x, n);
}

// ---- Moves into Perm; src may equal dst ----------------------------------

// Pack to Perm, from the top of the array down so that src equal to dst
// works: [0] stays, [j+1] = src[j] for j = n-2 down to 1, [1] = src[n-1].
template <typename T>
inline void packToPerm(const T* src, T* dst, std::ptrdiff_t n) {
  dst[0] = src[0];
  if (n % 2 != 0) {
    for (std::ptrdiff_t j = 1; j < n; ++j) dst[j] = src[j];
    return;
  }
  if (n < 2) return;
  const T middle = src[n - 1];
  for (std::ptrdiff_t j = n - 2; j >= 1; --j) dst[j + 1] = src[j];
  dst[1] = middle;
}

// CCS to Perm: [0] stays; even n: [1] = src[n] (n above 1), [2..n-1] are
// copied; odd n: [j] = src[j+1] for j = 1..n-1, the slot [1] being dropped.
template <typename T>
inline void ccsToPerm(const T* src, T* dst, std::ptrdiff_t n) {
  dst[0] = src[0];
  if (n % 2 != 0) {
    for (std::ptrdiff_t j = 1; j < n; ++j) dst[j] = src[j + 1];
    return;
  }
  if (n > 1) dst[1] = src[n];
  for (std::ptrdiff_t j = 2; j < n; ++j) dst[j] = src[j];
}

// The layout `kind` from src into Perm in dst. Perm itself is copied.
template <typename T>
inline void toPerm(Kind kind, const T* src, T* dst, std::ptrdiff_t n) {
  if (kind == Kind::Pack) {
    packToPerm(src, dst, n);
  } else if (kind == Kind::Ccs) {
    ccsToPerm(src, dst, n);
  } else if (src != dst) {
    for (std::ptrdiff_t j = 0; j < n; ++j) dst[j] = src[j];
  }
}

}  // namespace layout
}  // namespace orv
