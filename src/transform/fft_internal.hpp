// The FFT context record, its tables and the kernels of the power-of-two
// complex transform. Every transform of the library (complex, real, 16-bit,
// DFT, DCT and the FFT paths of filters and correlations) runs on these
// pieces, so they are kept here as reusable templates.
//
// Arithmetic model: every butterfly reads its operands as double, computes in
// double and rounds once when it stores to the element type. The order of the
// operations below is part of the results; changing it changes the numbers of
// every transform built on top.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/internal.hpp"
#include "orvspx.h"

// The record behind the opaque orvsFFTContext. The block comes from the
// library's allocator and is zero-filled before any field is set.
struct orvsFFTContext {
  orv32s tag;           // variant, see orv::fft::Tag; 0 once freed
  orv32s order;         // log2 of the transform length
  orv32s scaleForward;  // 1 if the forward direction multiplies by scale
  orv32s scaleInverse;  // 1 if the inverse direction multiplies by scale
  union {
    orv32f f32;  // 32-bit contexts
    orv64f f64;  // 64-bit contexts
  } scale;       // 1/N or 1/sqrt(N); 0 when nothing is scaled
  orv32s hint;
  orv32s workBytes;  // work buffer a transform needs, 16 bytes of slack included
  orv32s* bitReversal;
  void* leafTwiddles;
  void* passTwiddles;
  void* outerPassTwiddles;  // never built; released like the others
  void* realForwardTwiddles;
  void* realInverseTwiddles;
  void* columnTwiddles[3];  // per four-step level, level 0 outermost
  void* stepTwiddles[3];
  // The leaf table's last radix-4 stage in the order the vector kernel reads
  // it, widened to double (see makeLastStageTable); null where that stage
  // has no general butterflies.
  double* lastStageTwiddles;
};

namespace orv {
namespace fft {

// Variant tags of the FFT contexts.
enum Tag : orv32s {
  kTagC_16sc = 1,
  kTagC_16s = 2,
  kTagR_16s = 3,
  kTagC_32fc = 4,
  kTagC_32f = 5,
  kTagR_32f = 6,
  kTagC_64fc = 7,
  kTagC_64f = 8,
  kTagR_64f = 9,
};

constexpr int kMaxOrder = 30;
constexpr int kMaxLevels = 3;
// Orders below this are served by the small kernels without tables.
constexpr int kFirstTableOrder = 4;

// How a transform of a given complex order is done.
enum class Path { Small, Leaf, Blocked, FourStep };

// The constants that tell the two precisions apart. `split[n]` is the number
// of row bits of a four-step level at order n (0: not a four-step order).
template <typename T>
struct Precision;

template <>
struct Precision<orv64f> {
  static constexpr int kMaxLeafOrder = 9;
  static constexpr int kBlockedLeafOrder = 9;
  static constexpr int kLastBlockedOrder = 11;
  static constexpr std::size_t kStripe = 64;
  static constexpr int kRowWorkBytes = 64;
  static constexpr int kSplit[kMaxOrder + 1] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                0, 4, 5, 6, 7, 7, 8, 9, 9, 9, 8,
                                                8, 9, 9, 9, 9, 9, 9, 9, 9};
};

template <>
struct Precision<orv32f> {
  static constexpr int kMaxLeafOrder = 10;
  static constexpr int kBlockedLeafOrder = 10;
  static constexpr int kLastBlockedOrder = 12;
  static constexpr std::size_t kStripe = 128;
  static constexpr int kRowWorkBytes = 32;
  static constexpr int kSplit[kMaxOrder + 1] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  0,
                                                0, 0, 5, 6, 7, 8, 8, 8, 10, 10, 10,
                                                10, 8, 8, 10, 10, 10, 10, 10, 10};
};

// The path of a complex transform of `order`. Order 3 reaches the leaf only
// as the half of a real transform.
template <typename T>
inline Path pathOf(int order) {
  if (order < 3) return Path::Small;
  if (order <= Precision<T>::kMaxLeafOrder) return Path::Leaf;
  if (order <= Precision<T>::kLastBlockedOrder) return Path::Blocked;
  return Path::FourStep;
}

// ---- Tables ---------------------------------------------------------------

// Quarter sine table of length 2^order: 2^order/4 + 1 entries of the form's
// precision, each evaluated in extended precision and rounded once. Null if
// the block can't be had. Released by the caller with orvsFree.
template <typename T>
T* makeSineTable(int order);

// Bit-reversal swap list of `order` (at least 2), or null.
orv32s* makeBitReversal(int order);

// Builds every table a complex transform of `order` needs from a sine table
// of length 2^sineOrder (sineOrder >= order), and sets workBytes. On failure
// returns false; the tables made so far stay in the context, for
// releaseTables to free.
template <typename T>
bool buildComplexTables(orvsFFTContext* ctx, int order, const T* sine, int sineOrder);

// True if every block that buildComplexTables (and the sine table of
// sineOrder) would request can be granted by the allocator's size limit.
template <typename T>
bool complexTablesFit(int order, int sineOrder);

// Releases every non-null table of the context and nulls the pointers.
void releaseTables(orvsFFTContext* ctx);

// exp(-2*pi*i*m/L) read from a sine table of length sineLen (sineLen >= L),
// folded by quadrant.
template <typename T>
inline void twiddleFromSine(const T* sine, std::int64_t sineLen, std::int64_t len, std::int64_t m,
                            T& re, T& im) {
  const std::int64_t stride = sineLen / len;
  const std::int64_t q = len / 4;
  if (m < q) {
    re = sine[(q - m) * stride];
    im = -sine[m * stride];
  } else if (m < 2 * q) {
    re = -sine[(m - q) * stride];
    im = -sine[(2 * q - m) * stride];
  } else if (m < 3 * q) {
    re = -sine[(3 * q - m) * stride];
    im = sine[(m - 2 * q) * stride];
  } else {
    re = sine[(m - 3 * q) * stride];
    im = sine[(len - m) * stride];
  }
}

// ---- Complex values in working precision ----------------------------------

struct Cx {
  double re;
  double im;
};

inline Cx operator+(Cx a, Cx b) { return {a.re + b.re, a.im + b.im}; }
inline Cx operator-(Cx a, Cx b) { return {a.re - b.re, a.im - b.im}; }

// b times the twiddle (wr, wi); the inverse direction uses the conjugate.
// (The operand order of the sums matters only to which NaN comes out; it is
// the order of the vector kernels.)
template <bool Inv>
inline Cx twiddle(Cx b, double wr, double wi) {
  if (Inv) wi = -wi;
  return {b.re * wr - b.im * wi, b.im * wr + b.re * wi};
}

// Multiplication by -i (forward) or +i (inverse).
template <bool Inv>
inline Cx rotate(Cx b) {
  return Inv ? Cx{-b.im, b.re} : Cx{b.im, -b.re};
}

// Multiplication by the first eighth root W_8 (or its conjugate), written as
// a sum and a difference times r = sqrt(1/2).
template <bool Inv>
inline Cx eighth1(Cx b, double r) {
  return Inv ? Cx{(b.re - b.im) * r, (b.im + b.re) * r} : Cx{(b.re + b.im) * r, (b.im - b.re) * r};
}

// Multiplication by W_8^3 (or its conjugate), likewise.
template <bool Inv>
inline Cx eighth3(Cx b, double r) {
  return Inv ? Cx{-((b.im + b.re) * r), (b.re - b.im) * r}
             : Cx{(b.im - b.re) * r, -((b.re + b.im) * r)};
}

// The radix-4 combination of four twiddled values:
// y0 = (a+b)+(c+d), y2 = (a+b)-(c+d), y1 = (a-b)-i(c-d), y3 = (a-b)+i(c-d),
// with the signs of i exchanged in the inverse direction.
template <bool Inv>
inline void combine4(Cx a, Cx b, Cx c, Cx d, Cx& y0, Cx& y1, Cx& y2, Cx& y3) {
  const Cx apb = a + b, amb = a - b, cpd = c + d, cmd = c - d;
  y0 = apb + cpd;
  y2 = apb - cpd;
  const Cx r = rotate<Inv>(cmd);
  y1 = amb + r;
  y3 = amb - r;
}

// ---- Data views -----------------------------------------------------------

// An interleaved complex array of T.
template <typename T>
struct Interleaved {
  T* p;
  Interleaved at(std::size_t i) const { return {p + 2 * i}; }
  Cx load(std::size_t i) const { return {double(p[2 * i]), double(p[2 * i + 1])}; }
  void store(std::size_t i, Cx v) const {
    p[2 * i] = T(v.re);
    p[2 * i + 1] = T(v.im);
  }
  // Multiplies n complex elements by s.
  void scale(std::size_t n, T s) const {
    const double d = s;
    for (std::size_t i = 0; i < 2 * n; ++i) p[i] = T(double(p[i]) * d);
  }
  static constexpr bool kSplit = false;
};

// Two arrays of T: real parts and imaginary parts.
template <typename T>
struct Split {
  T* re;
  T* im;
  Split at(std::size_t i) const { return {re + i, im + i}; }
  Cx load(std::size_t i) const { return {double(re[i]), double(im[i])}; }
  void store(std::size_t i, Cx v) const {
    re[i] = T(v.re);
    im[i] = T(v.im);
  }
  void scale(std::size_t n, T s) const {
    const double d = s;
    for (std::size_t i = 0; i < n; ++i) re[i] = T(double(re[i]) * d);
    for (std::size_t i = 0; i < n; ++i) im[i] = T(double(im[i]) * d);
  }
  static constexpr bool kSplit = true;
};

// ---- Bit reversal ---------------------------------------------------------

// Reorders 2^order elements of E in place with the swap list of that order.
// Entry 4i of the list stands for element 2i.
template <typename E>
inline void reorderInPlace(const orv32s* list, int order, E* x) {
  const std::size_t n = std::size_t(1) << order;
  const std::size_t h = n / 2, m = n / 4;
  auto swap = [x](std::size_t a, std::size_t b) {
    const E t = x[a];
    x[a] = x[b];
    x[b] = t;
  };
  std::size_t k = 0;
  for (; list[k] != 0; k += 2) {
    const std::size_t i = std::size_t(list[k]) / 2, j = std::size_t(list[k + 1]) / 2;
    swap(i, j);
    swap(i + 1, h + j);
    swap(h + i, j + 1);
    swap(h + i + 1, h + j + 1);
  }
  for (; k < m; ++k) {
    const std::size_t i = std::size_t(list[k]) / 2;
    swap(i + 1, h + i);
  }
}

// Writes the bit-reversed permutation of src into dst (no overlap).
template <typename E>
inline void reorderCopy(const orv32s* list, int order, const E* src, E* dst) {
  const std::size_t n = std::size_t(1) << order;
  const std::size_t h = n / 2, m = n / 4;
  auto both = [src, dst](std::size_t a, std::size_t b) {
    dst[a] = src[b];
    dst[b] = src[a];
  };
  std::size_t k = 0;
  for (; list[k] != 0; k += 2) {
    const std::size_t i = std::size_t(list[k]) / 2, j = std::size_t(list[k + 1]) / 2;
    both(i, j);
    both(i + 1, h + j);
    both(h + i, j + 1);
    both(h + i + 1, h + j + 1);
  }
  for (; k < m; ++k) {
    const std::size_t i = std::size_t(list[k]) / 2;
    dst[i] = src[i];
    both(i + 1, h + i);
    dst[h + i + 1] = src[h + i + 1];
  }
}

// ---- Leaf transform -------------------------------------------------------
// In place on bit-reversed input of length L = 2^order, natural-order output.
// The leaf table holds, per entry k = 0..L/4, W^k, W^2k, W^3k as (re, im).

// Radix-4 stage of span s with bit-reversed data: b takes W^2t, c W^t and d
// W^3t, t = j*L/s. j = 0 has no multiplication. With `special16` (the
// unrolled span 16) j = 2 uses the rotation and the sqrt(1/2) forms.
template <bool Inv, class V, typename T>
inline void radix4Stage(V x, std::size_t len, std::size_t span, const T* tab, bool special16) {
  const std::size_t q = span / 4, stride = len / span;
  const double r = special16 ? double(tab[6 * (len / 16) + 2]) : 0.0;
  for (std::size_t g = 0; g < len; g += span) {
    for (std::size_t j = 0; j < q; ++j) {
      const std::size_t i0 = g + j;
      Cx a = x.load(i0), b = x.load(i0 + q), c = x.load(i0 + 2 * q), d = x.load(i0 + 3 * q);
      if (j != 0) {
        if (special16 && j == 2) {
          b = rotate<Inv>(b);
          c = eighth1<Inv>(c, r);
          d = eighth3<Inv>(d, r);
        } else {
          const T* w = tab + 6 * (j * stride);
          b = twiddle<Inv>(b, w[2], w[3]);
          c = twiddle<Inv>(c, w[0], w[1]);
          d = twiddle<Inv>(d, w[4], w[5]);
        }
      }
      Cx y0, y1, y2, y3;
      combine4<Inv>(a, b, c, d, y0, y1, y2, y3);
      x.store(i0, y0);
      x.store(i0 + q, y1);
      x.store(i0 + 2 * q, y2);
      x.store(i0 + 3 * q, y3);
    }
  }
}

// The first stage, span 4, has no multiplications.
template <bool Inv, class V>
inline void radix4First(V x, std::size_t len) {
  for (std::size_t g = 0; g < len; g += 4) {
    Cx y0, y1, y2, y3;
    combine4<Inv>(x.load(g), x.load(g + 1), x.load(g + 2), x.load(g + 3), y0, y1, y2, y3);
    x.store(g, y0);
    x.store(g + 1, y1);
    x.store(g + 2, y2);
    x.store(g + 3, y3);
  }
}

// Radix-2 stage of span 8 pairing g+j with g+j+4: j = 0 plain, j = 2 the
// rotation, j = 1 and 3 the sqrt(1/2) forms (r read from entry L/8).
template <bool Inv, class V, typename T>
inline void radix2Span8(V x, std::size_t len, const T* tab) {
  const double r = tab[6 * (len / 8)];
  for (std::size_t g = 0; g < len; g += 8) {
    for (std::size_t j = 0; j < 4; ++j) {
      const Cx a = x.load(g + j);
      Cx b = x.load(g + j + 4);
      if (j == 1) b = eighth1<Inv>(b, r);
      else if (j == 2) b = rotate<Inv>(b);
      else if (j == 3) b = eighth3<Inv>(b, r);
      x.store(g + j, a + b);
      x.store(g + j + 4, a - b);
    }
  }
}

// Final radix-2 stage over the whole length (split kernel): j pairs with
// j + L/2 under W^j, and j + L/4 pairs with j + 3L/4 under -i W^j.
template <bool Inv, class V, typename T>
inline void radix2Last(V x, std::size_t len, const T* tab) {
  const std::size_t h = len / 2, q = len / 4;
  for (std::size_t j = 0; j < q; ++j) {
    Cx a = x.load(j), b = x.load(j + h);
    Cx c = x.load(j + q), d = x.load(j + q + h);
    if (j == 0) {
      d = rotate<Inv>(d);
    } else {
      b = twiddle<Inv>(b, tab[6 * j], tab[6 * j + 1]);
      d = rotate<Inv>(twiddle<Inv>(d, tab[6 * j], tab[6 * j + 1]));
    }
    x.store(j, a + b);
    x.store(j + h, a - b);
    x.store(j + q, c + d);
    x.store(j + q + h, c - d);
  }
}

// Stage list of the interleaved kernel: span 4, then radix-4 spans 16, 64,
// ... for a power of 4, else radix-2 span 8 and radix-4 spans 32, 128, 512.
template <bool Inv, class V, typename T>
inline void leafInterleaved(V x, int order, const T* tab) {
  const std::size_t len = std::size_t(1) << order;
  radix4First<Inv>(x, len);
  std::size_t span = 16;
  if (order & 1) {
    radix2Span8<Inv>(x, len, tab);
    span = 32;
  } else if (len >= 16) {
    radix4Stage<Inv>(x, len, 16, tab, true);
    span = 64;
  }
  for (; span <= len; span *= 4) radix4Stage<Inv>(x, len, span, tab, false);
}

// Stage list of the split kernel: radix-4 spans 4, 16, 64, ... as far as they
// fit, then for an odd order one radix-2 stage over the whole length.
template <bool Inv, class V, typename T>
inline void leafSplit(V x, int order, const T* tab) {
  const std::size_t len = std::size_t(1) << order;
  radix4First<Inv>(x, len);
  std::size_t span = 16;
  if (span <= len) {
    radix4Stage<Inv>(x, len, 16, tab, true);
    span = 64;
  }
  for (; span <= len; span *= 4) radix4Stage<Inv>(x, len, span, tab, false);
  if (order & 1) radix2Last<Inv>(x, len, tab);
}

// ---- Fast kernels -----------------------------------------------------------
// Vector versions of the interleaved kernels (fft_fast.cpp). Each does, per
// butterfly, the very double operations of the plain templates above, so the
// results are bit-identical; they run only where the processor has them.
namespace fast {
// Instruction-set levels of the vector kernels. level() is the best one the
// processor supports; a kernel of a higher level is never chosen.
// kAvxFma is kAvx with fused multiply-adds where they are exact.
enum Level : int { kPlain = 0, kAvx = 1, kAvxFma = 2, kTop = kAvxFma };
int level();
inline bool available() { return level() >= kAvx; }
// Caps level(), so that the tests can run every level the processor has.
// Internal to the library (not exported); nothing but the tests calls it.
void limitLevel(int cap);
// The bit-reversed permutation of 2^order interleaved complex values, out of
// place or (src == dst) in place. False, with nothing done, where it has no
// vector version (orders below 4).
template <typename T>
bool reorder(const T* src, T* dst, int order);
// The pairs (k, h-k) of the real FFT's unpacking pass from k = 1 on, as far
// as they go four at a time; returns the first k left to do.
template <typename T>
std::size_t unpackForward(T* x, std::size_t h, const T* tab);
// The same for the packing pass of the inverse real FFT, from src (which may
// be dst) into dst.
template <typename T>
std::size_t packInverse(const T* src, T* dst, std::size_t h, const T* tab);
template <bool Inv, typename T>
// `last`, where not null, is the leaf's widened last stage
// (orvsFFTContext::lastStageTwiddles) for the same order.
void leafInterleaved(T* x, int order, const T* tab, const double* last);
template <bool Inv, typename T>
void blockedPass(T* x, std::size_t n, std::size_t span, const T* pass, std::size_t stripe);
// The column step of a four-step level for columns c..c+3 of a rows x cols
// matrix: step twiddles, a leaf of order s over each column (table `tab`),
// results back in place. `work` holds rows x 4 complex values.
template <bool Inv, typename T>
void columnGroup(T* x, std::size_t rows, std::size_t cols, std::size_t c, const T* step, int s, const T* tab,
                 T* work);
}  // namespace fast

// The leaf kernel of a data form; `Fast` lets the vector kernels serve.
template <bool Inv, bool Fast, class V, typename T>
inline void leaf(V x, int order, const T* tab, const double* last = nullptr) {
  if constexpr (V::kSplit) {
    leafSplit<Inv>(x, order, tab);
  } else {
    if (Fast && fast::available()) fast::leafInterleaved<Inv>(x.p, order, tab, last);
    else leafInterleaved<Inv>(x, order, tab);
  }
}

// The bit-reversed permutation of 2^order interleaved complex values, in
// place when src equals dst.
template <typename T>
inline void reorderComplex(const orv32s* list, int order, const T* src, T* dst) {
  if (fast::reorder(src, dst, order)) return;
  struct Pair {
    T re, im;
  };
  if (src == dst) reorderInPlace(list, order, reinterpret_cast<Pair*>(dst));
  else reorderCopy(list, order, reinterpret_cast<const Pair*>(src), reinterpret_cast<Pair*>(dst));
}

// ---- Blocked radix-2 path -------------------------------------------------

// Radix-2 pass of span L over the whole array, stripe-major: a stripe of
// twiddles W_2L^(p+j) (and the same times -i for the second quarter) serves
// every group before the next stripe is read.
template <bool Inv, class V, typename T>
inline void blockedPass(V x, std::size_t n, std::size_t span, const T* pass, std::size_t stripe) {
  const std::size_t stride = n / (2 * span);
  const std::size_t half = span / 2;
  for (std::size_t p = 0; p < half; p += stripe) {
    for (std::size_t g = 0; g < n; g += 2 * span) {
      for (std::size_t j = 0; j < stripe; ++j) {
        const std::size_t k = (p + j) * stride;
        const double wr = pass[2 * k], wi = pass[2 * k + 1];
        const std::size_t o = g + p + j;
        const Cx a = x.load(o), b = twiddle<Inv>(x.load(o + span), wr, wi);
        x.store(o, a + b);
        x.store(o + span, a - b);
      }
      for (std::size_t j = 0; j < stripe; ++j) {
        const std::size_t k = (p + j) * stride;
        const double wr = pass[2 * k], wi = pass[2 * k + 1];
        const std::size_t o = g + half + p + j;
        const Cx a = x.load(o), b = rotate<Inv>(twiddle<Inv>(x.load(o + span), wr, wi));
        x.store(o, a + b);
        x.store(o + span, a - b);
      }
    }
  }
}

// The blocked path on bit-reversed data: leaves from the last block back to
// the first, each scaled if the direction is, then the joining passes.
template <bool Inv, bool Fast, class V, typename T>
inline void blockedPath(V x, int order, const orvsFFTContext* ctx, bool scaled, T scale) {
  const int leafOrder = Precision<T>::kBlockedLeafOrder;
  const std::size_t n = std::size_t(1) << order, leafLen = std::size_t(1) << leafOrder;
  const T* tab = static_cast<const T*>(ctx->leafTwiddles);
  for (std::size_t b = n / leafLen; b-- > 0;) {
    leaf<Inv, Fast>(x.at(b * leafLen), leafOrder, tab, ctx->lastStageTwiddles);
    if (scaled) x.at(b * leafLen).scale(leafLen, scale);
  }
  const T* pass = static_cast<const T*>(ctx->passTwiddles);
  for (std::size_t span = leafLen; span <= n / 2; span *= 2) {
    if constexpr (!V::kSplit) {
      if (Fast && fast::available()) {
        fast::blockedPass<Inv>(x.p, n, span, pass, Precision<T>::kStripe);
        continue;
      }
    }
    blockedPass<Inv>(x, n, span, pass, Precision<T>::kStripe);
  }
}

// ---- Four-step levels -----------------------------------------------------

template <bool Inv, bool Fast, class V, typename T>
void fourStepLevel(V x, int order, int level, const orvsFFTContext* ctx, bool scaled, T scale,
                   T* work);

// A block of 2^order bit-reversed elements by the path of its order, scaled
// where the direction is.
template <bool Inv, bool Fast, class V, typename T>
inline void runPath(V x, int order, int level, const orvsFFTContext* ctx, bool scaled, T scale,
                    T* work) {
  switch (pathOf<T>(order)) {
    case Path::Leaf:
      leaf<Inv, Fast>(x, order, static_cast<const T*>(ctx->leafTwiddles), ctx->lastStageTwiddles);
      if (scaled) x.scale(std::size_t(1) << order, scale);
      break;
    case Path::Blocked:
      blockedPath<Inv, Fast>(x, order, ctx, scaled, scale);
      break;
    case Path::FourStep:
      fourStepLevel<Inv, Fast>(x, order, level, ctx, scaled, scale, work);
      break;
    case Path::Small:
      break;
  }
}

// One four-step level: rows of 2^r elements by their own path, then, four
// columns at a time, the step twiddles and a leaf transform of length 2^s
// over each column, gathered into interleaved work columns.
template <bool Inv, bool Fast, class V, typename T>
void fourStepLevel(V x, int order, int level, const orvsFFTContext* ctx, bool scaled, T scale,
                   T* work) {
  const int s = Precision<T>::kSplit[order], r = order - s;
  const std::size_t rows = std::size_t(1) << s, cols = std::size_t(1) << r;
  for (std::size_t p = 0; p < rows; ++p)
    runPath<Inv, Fast>(x.at(p * cols), r, level + 1, ctx, scaled, scale, work);

  const T* step = static_cast<const T*>(ctx->stepTwiddles[level]);
  const T* colTab = static_cast<const T*>(ctx->columnTwiddles[level]);
  Interleaved<T> w[4] = {{work}, {work + 2 * rows}, {work + 4 * rows}, {work + 6 * rows}};
  if constexpr (!V::kSplit) {
    if (Fast && fast::available()) {
      for (std::size_t c = 0; c < cols; c += 4, step += 8 * rows) {
        fast::columnGroup<Inv>(x.p, rows, cols, c, step, s, colTab, work);
      }
      return;
    }
  }
  for (std::size_t c = 0; c < cols; c += 4) {
    for (std::size_t p = 0; p < rows; ++p, step += 8) {
      for (std::size_t q = 0; q < 4; ++q)
        w[q].store(p, twiddle<Inv>(x.load(p * cols + c + q), step[2 * q], step[2 * q + 1]));
    }
    for (std::size_t q = 0; q < 4; ++q) leaf<Inv, Fast>(w[q], s, colTab);
    for (std::size_t p = 0; p < rows; ++p)
      for (std::size_t q = 0; q < 4; ++q) x.store(p * cols + c + q, w[q].load(p));
  }
}

// Everything after the reordering: the transform of bit-reversed data of
// complex order `order` (at least 3), scaled where the direction is. `work`
// is 16-aligned and of ctx->workBytes bytes when that is positive. With
// `Fast` false only the plain templates run (the reference of the fast ones).
template <bool Inv, bool Fast = true, class V, typename T>
inline void runComplex(V x, int order, const orvsFFTContext* ctx, bool scaled, T scale, orv8u* work) {
  runPath<Inv, Fast>(x, order, 0, ctx, scaled, scale, reinterpret_cast<T*>(work));
}

// ---- Small orders ---------------------------------------------------------
// Orders 0 to 3 without tables or reordering. Every input is read before the
// output that overlays it is written. The scaled kernels multiply the sums
// and differences of the first stage by the scale.

template <typename T>
constexpr double kSqrtHalf = double(T(0.707106781186547524400844362104849039L));

template <bool Inv, bool Scaled, typename T, class V>
inline void smallKernel(int order, V src, V dst, T scaleT) {
  const double sc = scaleT;
  auto sv = [sc](Cx v) { return Scaled ? Cx{v.re * sc, v.im * sc} : v; };
  switch (order) {
    case 0:
      dst.store(0, sv(src.load(0)));
      break;
    case 1: {
      const Cx x0 = src.load(0), x1 = src.load(1);
      dst.store(0, sv(x0 + x1));
      dst.store(1, sv(x0 - x1));
      break;
    }
    case 2: {
      const Cx x0 = src.load(0), x1 = src.load(1), x2 = src.load(2), x3 = src.load(3);
      const Cx s02 = sv(x0 + x2), d02 = sv(x0 - x2), s13 = sv(x1 + x3), d13 = sv(x1 - x3);
      const Cx rd = rotate<Inv>(d13);
      dst.store(0, s02 + s13);
      dst.store(1, d02 + rd);
      dst.store(2, s02 - s13);
      dst.store(3, d02 - rd);
      break;
    }
    case 3: {
      Cx x[8];
      for (int i = 0; i < 8; ++i) x[i] = src.load(i);
      // first stage: pairs n, n+4
      const Cx a0 = sv(x[0] + x[4]), a1 = sv(x[0] - x[4]);
      const Cx a2 = sv(x[2] + x[6]), a3 = sv(x[2] - x[6]);
      const Cx b0 = sv(x[1] + x[5]), b1 = sv(x[1] - x[5]);
      const Cx b2 = sv(x[3] + x[7]), b3 = sv(x[3] - x[7]);
      // second stage: length-4 transforms of the even and the odd samples
      const Cx e0 = a0 + a2, e2 = a0 - a2, ra = rotate<Inv>(a3);
      const Cx e1 = a1 + ra, e3 = a1 - ra;
      const Cx o0 = b0 + b2, o2 = b0 - b2, rb = rotate<Inv>(b3);
      const Cx o1 = b1 + rb, o3 = b1 - rb;
      // third stage: the eighth roots
      const double r = kSqrtHalf<T>;
      const Cx t1 = eighth1<Inv>(o1, r), t2 = rotate<Inv>(o2), t3 = eighth3<Inv>(o3, r);
      dst.store(0, e0 + o0);
      dst.store(4, e0 - o0);
      dst.store(1, e1 + t1);
      dst.store(5, e1 - t1);
      dst.store(2, e2 + t2);
      dst.store(6, e2 - t2);
      dst.store(3, e3 + t3);
      dst.store(7, e3 - t3);
      break;
    }
    default:
      break;
  }
}

// ---- Context lifecycle ------------------------------------------------------
// The steps that every 32- and 64-bit FFT context shares, complex or real:
// creation up to the tables, release, the work size and the work memory of
// one call.

template <typename T>
inline T& scaleOf(orvsFFTContext* ctx);
template <>
inline orv32f& scaleOf<orv32f>(orvsFFTContext* ctx) {
  return ctx->scale.f32;
}
template <>
inline orv64f& scaleOf<orv64f>(orvsFFTContext* ctx) {
  return ctx->scale.f64;
}
template <typename T>
inline T scaleOf(const orvsFFTContext* ctx) {
  return scaleOf<T>(const_cast<orvsFFTContext*>(ctx));
}

// The checks of an InitAlloc up to the flag, in their order, and a
// zero-filled context with tag, order, hint and the flag's scale for the
// length 2^order. On success `made` holds the context, still without tables;
// on failure nothing is left allocated.
template <typename T>
inline orvStatus beginContext(orvsFFTContext** context, int order, int flag, int hint, orv32s tag,
                              orvsFFTContext*& made) {
  if (context == nullptr) return orvErrNullPointer;
  if (order < 0 || order > kMaxOrder) return orvErrFftOrder;
  auto* ctx = reinterpret_cast<orvsFFTContext*>(orvsMalloc_8s(int(sizeof(orvsFFTContext))));
  if (ctx == nullptr) return orvErrNoMemory;
  std::memset(static_cast<void*>(ctx), 0, sizeof(orvsFFTContext));
  const double n = std::ldexp(1.0, order);
  switch (flag) {
    case orvScaleNone:
      break;
    case orvScaleBothSqrt:
      ctx->scaleForward = ctx->scaleInverse = 1;
      scaleOf<T>(ctx) = T(1.0 / std::sqrt(n));
      break;
    case orvScaleForward:
      ctx->scaleForward = 1;
      scaleOf<T>(ctx) = T(1.0 / n);
      break;
    case orvScaleInverse:
      ctx->scaleInverse = 1;
      scaleOf<T>(ctx) = T(1.0 / n);
      break;
    default:
      orvsFree(ctx);
      return orvErrFftFlag;
  }
  ctx->tag = tag;
  ctx->order = order;
  ctx->hint = hint;
  made = ctx;
  return orvOk;
}

// Releases a context whose tables could not all be made.
inline void abandonContext(orvsFFTContext* ctx) {
  releaseTables(ctx);
  orvsFree(ctx);
}

// Free of a context of the given tag.
inline orvStatus freeContext(orvsFFTContext* ctx, orv32s tag) {
  if (ctx == nullptr) return orvErrNullPointer;
  if (ctx->tag != tag) return orvErrContextMismatch;
  releaseTables(ctx);
  ctx->tag = 0;
  orvsFree(ctx);
  return orvOk;
}

// GetBufSize of a context of the given tag.
inline orvStatus getBufSize(const orvsFFTContext* ctx, orv32s tag, int* size) {
  if (ctx == nullptr || size == nullptr) return orvErrNullPointer;
  if (ctx->tag != tag) return orvErrContextMismatch;
  *size = ctx->workBytes;
  return orvOk;
}

// Work memory of one call: the caller's buffer moved up to 16 bytes, or a
// block of its own when the caller gave none.
class WorkArea {
 public:
  WorkArea(int bytes, orv8u* given) {
    if (bytes <= 0) return;
    if (given != nullptr) {
      const std::uintptr_t a = (reinterpret_cast<std::uintptr_t>(given) + 15) & ~std::uintptr_t(15);
      ptr_ = reinterpret_cast<orv8u*>(a);
    } else {
      owned_ = reinterpret_cast<orv8u*>(orvsMalloc_8s(bytes));
      ptr_ = owned_;
      failed_ = owned_ == nullptr;
    }
  }
  ~WorkArea() { orvsFree(owned_); }
  WorkArea(const WorkArea&) = delete;
  WorkArea& operator=(const WorkArea&) = delete;
  bool failed() const { return failed_; }
  orv8u* get() const { return ptr_; }

 private:
  orv8u* ptr_ = nullptr;
  orv8u* owned_ = nullptr;
  bool failed_ = false;
};

}  // namespace fft
}  // namespace orv
