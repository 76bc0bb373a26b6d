// AVX versions of the interleaved FFT kernels, of the bit-reversed
// reordering and of the real FFT's unpacking pass. A register holds two
// complex values as [re0 im0 re1 im1] in double (or four reals of one kind);
// float data are widened on loading and rounded on storing, as the plain
// kernels do. Every lane does exactly the double operations of the plain code
// in the same order (a complex product is two rounded products and one
// rounded sum or difference), so the results are bit-identical to the plain
// templates.
#include <immintrin.h>

#include <atomic>

#include "core/cpu.hpp"
#include "transform/fft_internal.hpp"

// Everything that touches vector registers is compiled for AVX and reached
// only through the plain wrappers at the end, after the processor check.
#pragma GCC push_options
#pragma GCC target("avx")
#define ORV_AVX
#define ORV_AVX_INLINE __attribute__((always_inline)) inline

namespace orv {
namespace fft {
namespace fast {
namespace {

using V2 = __m256d;

// ---- Loads and stores of two complex values -------------------------------

template <typename T>
struct Mem;

template <>
struct Mem<double> {
  // elements i and i+1
  static ORV_AVX_INLINE V2 load2(const double* p) { return _mm256_loadu_pd(p); }
  static ORV_AVX_INLINE void store2(double* p, V2 v) { _mm256_storeu_pd(p, v); }
  // one element from each address
  static ORV_AVX_INLINE V2 loadPair(const double* p0, const double* p1) {
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(p0)), _mm_loadu_pd(p1), 1);
  }
  static ORV_AVX_INLINE void storePair(double* p0, double* p1, V2 v) {
    _mm_storeu_pd(p0, _mm256_castpd256_pd128(v));
    _mm_storeu_pd(p1, _mm256_extractf128_pd(v, 1));
  }
  // one element in both lanes
  static ORV_AVX_INLINE V2 broadcast(const double* p) { return _mm256_broadcast_pd(reinterpret_cast<const __m128d*>(p)); }
};

template <>
struct Mem<float> {
  static ORV_AVX_INLINE __m128 load64(const float* p) {
    return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
  }
  static ORV_AVX_INLINE void store64(float* p, __m128 v) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(v));
  }
  static ORV_AVX_INLINE V2 load2(const float* p) { return _mm256_cvtps_pd(_mm_loadu_ps(p)); }
  static ORV_AVX_INLINE void store2(float* p, V2 v) { _mm_storeu_ps(p, _mm256_cvtpd_ps(v)); }
  static ORV_AVX_INLINE V2 loadPair(const float* p0, const float* p1) {
    return _mm256_cvtps_pd(_mm_movelh_ps(load64(p0), load64(p1)));
  }
  static ORV_AVX_INLINE void storePair(float* p0, float* p1, V2 v) {
    const __m128 f = _mm256_cvtpd_ps(v);
    store64(p0, f);
    store64(p1, _mm_movehl_ps(f, f));
  }
  static ORV_AVX_INLINE V2 broadcast(const float* p) {
    const __m128 f = load64(p);
    return _mm256_cvtps_pd(_mm_movelh_ps(f, f));
  }
};

// ---- Complex arithmetic per lane -------------------------------------------

ORV_AVX_INLINE V2 swapReIm(V2 v) { return _mm256_permute_pd(v, 0x5); }
ORV_AVX_INLINE V2 negOdd(V2 v) { return _mm256_xor_pd(v, _mm256_set_pd(-0.0, 0.0, -0.0, 0.0)); }
ORV_AVX_INLINE V2 negEven(V2 v) { return _mm256_xor_pd(v, _mm256_set_pd(0.0, -0.0, 0.0, -0.0)); }

// b times w per lane (conjugate w in the inverse direction):
// re = br*wr - bi*wi, im = bi*wr + br*wi.
template <bool Inv>
ORV_AVX_INLINE V2 twiddle(V2 b, V2 w) {
  const V2 wr = _mm256_movedup_pd(w);
  V2 wi = _mm256_permute_pd(w, 0xF);
  if (Inv) wi = _mm256_xor_pd(wi, _mm256_set1_pd(-0.0));
  return _mm256_addsub_pd(_mm256_mul_pd(b, wr), _mm256_mul_pd(swapReIm(b), wi));
}

// -i*b forward, +i*b inverse
template <bool Inv>
ORV_AVX_INLINE V2 rotate(V2 b) {
  return Inv ? negEven(swapReIm(b)) : negOdd(swapReIm(b));
}

// W_8 forward: ((re+im) r, (im-re) r); inverse: ((re-im) r, (re+im) r)
template <bool Inv>
ORV_AVX_INLINE V2 eighth1(V2 b, V2 r) {
  if (Inv) return _mm256_mul_pd(_mm256_addsub_pd(b, swapReIm(b)), r);
  return _mm256_mul_pd(swapReIm(_mm256_addsub_pd(swapReIm(b), b)), r);
}

// W_8^3 forward: ((im-re) r, -((re+im) r)); inverse: (-((re+im) r), (re-im) r)
template <bool Inv>
ORV_AVX_INLINE V2 eighth3(V2 b, V2 r) {
  if (Inv) return negEven(_mm256_mul_pd(swapReIm(_mm256_addsub_pd(b, swapReIm(b))), r));
  return negOdd(_mm256_mul_pd(_mm256_addsub_pd(swapReIm(b), b), r));
}

template <bool Inv>
ORV_AVX_INLINE void combine4(V2 a, V2 b, V2 c, V2 d, V2& y0, V2& y1, V2& y2, V2& y3) {
  const V2 apb = _mm256_add_pd(a, b), amb = _mm256_sub_pd(a, b);
  const V2 cpd = _mm256_add_pd(c, d), cmd = _mm256_sub_pd(c, d);
  y0 = _mm256_add_pd(apb, cpd);
  y2 = _mm256_sub_pd(apb, cpd);
  const V2 r = rotate<Inv>(cmd);
  y1 = _mm256_add_pd(amb, r);
  y3 = _mm256_sub_pd(amb, r);
}

// ---- Leaf stages ------------------------------------------------------------

// Span 4, two groups at a time (len >= 8).
template <bool Inv, typename T>
ORV_AVX void first4(T* x, std::size_t len) {
  using M = Mem<T>;
  for (std::size_t g = 0; g < len; g += 8) {
    T* p = x + 2 * g;
    V2 y0, y1, y2, y3;
    combine4<Inv>(M::loadPair(p, p + 8), M::loadPair(p + 2, p + 10), M::loadPair(p + 4, p + 12),
                  M::loadPair(p + 6, p + 14), y0, y1, y2, y3);
    M::storePair(p, p + 8, y0);
    M::storePair(p + 2, p + 10, y1);
    M::storePair(p + 4, p + 12, y2);
    M::storePair(p + 6, p + 14, y3);
  }
}

// Radix-2 span 8, two groups at a time (len >= 16).
template <bool Inv, typename T>
ORV_AVX void span8(T* x, std::size_t len, const T* tab) {
  using M = Mem<T>;
  const V2 r = _mm256_set1_pd(double(tab[6 * (len / 8)]));
  for (std::size_t j = 0; j < 4; ++j) {
    for (std::size_t g = 0; g < len; g += 16) {
      T* p = x + 2 * (g + j);
      const V2 a = M::loadPair(p, p + 16);
      V2 b = M::loadPair(p + 8, p + 24);
      if (j == 1) b = eighth1<Inv>(b, r);
      else if (j == 2) b = rotate<Inv>(b);
      else if (j == 3) b = eighth3<Inv>(b, r);
      M::storePair(p, p + 16, _mm256_add_pd(a, b));
      M::storePair(p + 8, p + 24, _mm256_sub_pd(a, b));
    }
  }
}

// Radix-4 stage of span s. Butterflies j = 0 and 1 (and all of span 16,
// whose j = 2 is special) go two groups at a time under one twiddle, or by
// the plain butterfly when there is one group; the rest go two adjacent j at
// a time with their own twiddles.
template <bool Inv, typename T>
ORV_AVX void radix4(T* x, std::size_t len, std::size_t span, const T* tab, bool special16) {
  using M = Mem<T>;
  const std::size_t q = span / 4, stride = len / span;
  const V2 r = special16 ? _mm256_set1_pd(double(tab[6 * (len / 16) + 2])) : _mm256_setzero_pd();
  const std::size_t single = special16 ? q : 2;
  if (span == len) {
    if (special16) {
      fft::radix4Stage<Inv>(Interleaved<T>{x}, len, span, tab, true);
      return;
    }
    const Interleaved<T> v{x};
    for (std::size_t j = 0; j < 2; ++j) {
      Cx a = v.load(j), b = v.load(j + q), c = v.load(j + 2 * q), d = v.load(j + 3 * q);
      if (j != 0) {
        const T* w = tab + 6 * j;
        b = fft::twiddle<Inv>(b, w[2], w[3]);
        c = fft::twiddle<Inv>(c, w[0], w[1]);
        d = fft::twiddle<Inv>(d, w[4], w[5]);
      }
      Cx y0, y1, y2, y3;
      fft::combine4<Inv>(a, b, c, d, y0, y1, y2, y3);
      v.store(j, y0);
      v.store(j + q, y1);
      v.store(j + 2 * q, y2);
      v.store(j + 3 * q, y3);
    }
  } else {
    for (std::size_t j = 0; j < single; ++j) {
      const T* w = tab + 6 * (j * stride);
      const V2 w1 = M::broadcast(w), w2 = M::broadcast(w + 2), w3 = M::broadcast(w + 4);
      const int kind = j == 0 ? 0 : (special16 && j == 2 ? 2 : 1);
      const std::size_t o = 2 * span;  // reals between two groups
      for (std::size_t g = 0; g < len; g += 2 * span) {
        T* p = x + 2 * (g + j);
        const V2 a = M::loadPair(p, p + o);
        V2 b = M::loadPair(p + 2 * q, p + 2 * q + o);
        V2 c = M::loadPair(p + 4 * q, p + 4 * q + o);
        V2 d = M::loadPair(p + 6 * q, p + 6 * q + o);
        if (kind == 1) {
          b = twiddle<Inv>(b, w2);
          c = twiddle<Inv>(c, w1);
          d = twiddle<Inv>(d, w3);
        } else if (kind == 2) {
          b = rotate<Inv>(b);
          c = eighth1<Inv>(c, r);
          d = eighth3<Inv>(d, r);
        }
        V2 y0, y1, y2, y3;
        combine4<Inv>(a, b, c, d, y0, y1, y2, y3);
        M::storePair(p, p + o, y0);
        M::storePair(p + 2 * q, p + 2 * q + o, y1);
        M::storePair(p + 4 * q, p + 4 * q + o, y2);
        M::storePair(p + 6 * q, p + 6 * q + o, y3);
      }
    }
    if (special16) return;
  }
  for (std::size_t j = 2; j < q; j += 2) {
    const T* w = tab + 6 * (j * stride);
    const T* wn = w + 6 * stride;
    const V2 w1 = M::loadPair(w, wn), w2 = M::loadPair(w + 2, wn + 2), w3 = M::loadPair(w + 4, wn + 4);
    for (std::size_t g = 0; g < len; g += span) {
      T* p = x + 2 * (g + j);
      const V2 a = M::load2(p);
      const V2 b = twiddle<Inv>(M::load2(p + 2 * q), w2);
      const V2 c = twiddle<Inv>(M::load2(p + 4 * q), w1);
      const V2 d = twiddle<Inv>(M::load2(p + 6 * q), w3);
      V2 y0, y1, y2, y3;
      combine4<Inv>(a, b, c, d, y0, y1, y2, y3);
      M::store2(p, y0);
      M::store2(p + 2 * q, y1);
      M::store2(p + 4 * q, y2);
      M::store2(p + 6 * q, y3);
    }
  }
}

// b times w with w given as its real and imaginary parts, each in both
// halves of its complex lane (conjugate w in the inverse direction).
template <bool Inv>
ORV_AVX_INLINE V2 twiddleSplit(V2 b, V2 wr, V2 wi) {
  if (Inv) wi = _mm256_xor_pd(wi, _mm256_set1_pd(-0.0));
  return _mm256_addsub_pd(_mm256_mul_pd(b, wr), _mm256_mul_pd(swapReIm(b), wi));
}

// The last radix-4 stage, whose span is the whole leaf: butterflies j = 0
// and 1 as in radix4, the rest two at a time with their twiddles read in
// sequence from the widened table.
template <bool Inv, typename T>
ORV_AVX void lastStage(T* x, std::size_t len, const T* tab, const double* w) {
  using M = Mem<T>;
  const std::size_t q = len / 4;
  const Interleaved<T> v{x};
  for (std::size_t j = 0; j < 2; ++j) {
    Cx a = v.load(j), b = v.load(j + q), c = v.load(j + 2 * q), d = v.load(j + 3 * q);
    if (j != 0) {
      const T* t = tab + 6 * j;
      b = fft::twiddle<Inv>(b, t[2], t[3]);
      c = fft::twiddle<Inv>(c, t[0], t[1]);
      d = fft::twiddle<Inv>(d, t[4], t[5]);
    }
    Cx y0, y1, y2, y3;
    fft::combine4<Inv>(a, b, c, d, y0, y1, y2, y3);
    v.store(j, y0);
    v.store(j + q, y1);
    v.store(j + 2 * q, y2);
    v.store(j + 3 * q, y3);
  }
  for (std::size_t j = 2; j < q; j += 2, w += 24) {
    T* p = x + 2 * j;
    const V2 a = M::load2(p);
    const V2 b = twiddleSplit<Inv>(M::load2(p + 2 * q), _mm256_loadu_pd(w), _mm256_loadu_pd(w + 4));
    const V2 c = twiddleSplit<Inv>(M::load2(p + 4 * q), _mm256_loadu_pd(w + 8), _mm256_loadu_pd(w + 12));
    const V2 d = twiddleSplit<Inv>(M::load2(p + 6 * q), _mm256_loadu_pd(w + 16), _mm256_loadu_pd(w + 20));
    V2 y0, y1, y2, y3;
    combine4<Inv>(a, b, c, d, y0, y1, y2, y3);
    M::store2(p, y0);
    M::store2(p + 2 * q, y1);
    M::store2(p + 4 * q, y2);
    M::store2(p + 6 * q, y3);
  }
}

// The stage list of the plain interleaved kernel.
template <bool Inv, typename T>
ORV_AVX void leafAvx(T* x, int order, const T* tab, const double* last) {
  const std::size_t len = std::size_t(1) << order;
  if (len < 16) {
    fft::leafInterleaved<Inv>(Interleaved<T>{x}, order, tab);
    return;
  }
  first4<Inv>(x, len);
  std::size_t span = 16;
  if (order & 1) {
    span8<Inv>(x, len, tab);
    span = 32;
  } else {
    radix4<Inv>(x, len, 16, tab, true);
    span = 64;
  }
  for (; span < len; span *= 4) radix4<Inv>(x, len, span, tab, false);
  if (last != nullptr) lastStage<Inv>(x, len, tab, last);
  else if (span == len) radix4<Inv>(x, len, span, tab, false);
}

template <bool Inv, typename T>
ORV_AVX void blockedPassAvx(T* x, std::size_t n, std::size_t span, const T* pass, std::size_t stripe) {
  using M = Mem<T>;
  const std::size_t stride = n / (2 * span);
  const std::size_t half = span / 2;
  for (std::size_t p = 0; p < half; p += stripe) {
    for (std::size_t g = 0; g < n; g += 2 * span) {
      // the two runs share each twiddle: offset p + j under W, and
      // half + p + j under -i W
      T* base = x + 2 * (g + p);
      for (std::size_t j = 0; j < stripe; j += 2) {
        const T* w = pass + 2 * (p + j) * stride;
        const V2 tw = stride == 1 ? M::load2(w) : M::loadPair(w, w + 2 * stride);
        T* o = base + 2 * j;
        const V2 a = M::load2(o);
        const V2 b = twiddle<Inv>(M::load2(o + 2 * span), tw);
        M::store2(o, _mm256_add_pd(a, b));
        M::store2(o + 2 * span, _mm256_sub_pd(a, b));
        T* o2 = o + 2 * half;
        const V2 a2 = M::load2(o2);
        const V2 b2 = rotate<Inv>(twiddle<Inv>(M::load2(o2 + 2 * span), tw));
        M::store2(o2, _mm256_add_pd(a2, b2));
        M::store2(o2 + 2 * span, _mm256_sub_pd(a2, b2));
      }
    }
  }
}

// ---- Bit reversal ---------------------------------------------------------------
// Element i = a*Q + 4*m + b (Q = N/4, a and b of two bits) goes to
// rev(b)*Q + 4*rev(m) + rev(a). For each m the four rows a of four elements
// are transposed in registers: output row b, stored at quarter rev(b), holds
// element b of the rows 0, 2, 1, 3. Only bits are moved.

// Elements of 8 bytes (complex float), one row per register.
struct Rows8 {
  __m256d r[4];
  ORV_AVX_INLINE void load(const void* base, std::size_t q, std::size_t m) {
    const double* p = static_cast<const double*>(base) + 4 * m;
    for (std::size_t a = 0; a < 4; ++a) r[a] = _mm256_loadu_pd(p + a * q);
  }
  ORV_AVX_INLINE void storeReversed(void* base, std::size_t q, std::size_t rm) const {
    double* p = static_cast<double*>(base) + 4 * rm;
    const __m256d t0 = _mm256_unpacklo_pd(r[0], r[2]), t1 = _mm256_unpackhi_pd(r[0], r[2]);
    const __m256d t2 = _mm256_unpacklo_pd(r[1], r[3]), t3 = _mm256_unpackhi_pd(r[1], r[3]);
    _mm256_storeu_pd(p, _mm256_permute2f128_pd(t0, t2, 0x20));
    _mm256_storeu_pd(p + 2 * q, _mm256_permute2f128_pd(t1, t3, 0x20));
    _mm256_storeu_pd(p + q, _mm256_permute2f128_pd(t0, t2, 0x31));
    _mm256_storeu_pd(p + 3 * q, _mm256_permute2f128_pd(t1, t3, 0x31));
  }
};

// Elements of 16 bytes (complex double), one row in two registers.
struct Rows16 {
  __m256d lo[4], hi[4];
  ORV_AVX_INLINE void load(const void* base, std::size_t q, std::size_t m) {
    const double* p = static_cast<const double*>(base) + 8 * m;
    for (std::size_t a = 0; a < 4; ++a) {
      lo[a] = _mm256_loadu_pd(p + 2 * a * q);
      hi[a] = _mm256_loadu_pd(p + 2 * a * q + 4);
    }
  }
  ORV_AVX_INLINE void storeReversed(void* base, std::size_t q, std::size_t rm) const {
    double* p = static_cast<double*>(base) + 8 * rm;
    // output row b: element b of rows 0 and 2 (low half), of rows 1 and 3 (high half)
    auto row = [&](double* o, __m256d s0, __m256d s2, __m256d s1, __m256d s3, int sel) {
      _mm256_storeu_pd(o, _mm256_permute2f128_pd(s0, s2, sel));
      _mm256_storeu_pd(o + 4, _mm256_permute2f128_pd(s1, s3, sel));
    };
    row(p, lo[0], lo[2], lo[1], lo[3], 0x20);
    row(p + 4 * q, lo[0], lo[2], lo[1], lo[3], 0x31);
    row(p + 2 * q, hi[0], hi[2], hi[1], hi[3], 0x20);
    row(p + 6 * q, hi[0], hi[2], hi[1], hi[3], 0x31);
  }
};

// Steps r to the bit reversal of the next counter value, the reversal being
// over the bits below 2*top.
ORV_AVX_INLINE std::size_t nextReversed(std::size_t r, std::size_t top) {
  std::size_t bit = top;
  while (r & bit) {
    r ^= bit;
    bit >>= 1;
  }
  return r | bit;
}

template <class Rows>
ORV_AVX void reverseAvx(const void* src, void* dst, int order) {
  const std::size_t q = std::size_t(1) << (order - 2);
  const std::size_t blocks = std::size_t(1) << (order - 4);
  const std::size_t top = blocks / 2;  // highest bit of m
  if (src != dst && blocks > 1) {
    // Blocks m and m + blocks/2 land at rev(m) and rev(m) + 1, so that
    // together they write whole cache lines.
    for (std::size_t m = 0, rm = 0; m < top; ++m, rm = nextReversed(rm, top)) {
      Rows r;
      r.load(src, q, m);
      r.storeReversed(dst, q, rm);
      r.load(src, q, m + top);
      r.storeReversed(dst, q, rm + 1);
    }
    return;
  }
  for (std::size_t m = 0, rm = 0; m < blocks; ++m, rm = nextReversed(rm, top)) {
    if (src != dst) {
      Rows r;
      r.load(src, q, m);
      r.storeReversed(dst, q, rm);
    } else if (m <= rm) {
      // in place: blocks m and rev(m) trade places
      Rows r, s;
      r.load(src, q, m);
      s.load(src, q, rm);
      r.storeReversed(dst, q, rm);
      s.storeReversed(dst, q, m);
    }
  }
}

// ---- Four-step columns ------------------------------------------------------------
// A group of four adjacent columns is transformed "vertically": the work
// buffer holds the group row by row, element p being the four values of row
// p, so that every butterfly of the column leaf runs on all four columns at
// once (two registers) under one twiddle, with no shuffling of data. The
// columns' arithmetic is that of the plain leaf, value for value.

template <typename T>
struct Row4 {
  V2 lo, hi;  // columns 0, 1 and 2, 3
};

template <typename T>
ORV_AVX_INLINE Row4<T> loadRow(const T* w, std::size_t i) {
  return {Mem<T>::load2(w + 8 * i), Mem<T>::load2(w + 8 * i + 4)};
}
template <typename T>
ORV_AVX_INLINE void storeRow(T* w, std::size_t i, Row4<T> v) {
  Mem<T>::store2(w + 8 * i, v.lo);
  Mem<T>::store2(w + 8 * i + 4, v.hi);
}

template <bool Inv, typename T>
ORV_AVX_INLINE void combineRows(T* w, std::size_t i0, std::size_t q, Row4<T> a, Row4<T> b, Row4<T> c, Row4<T> d) {
  Row4<T> y0, y1, y2, y3;
  combine4<Inv>(a.lo, b.lo, c.lo, d.lo, y0.lo, y1.lo, y2.lo, y3.lo);
  combine4<Inv>(a.hi, b.hi, c.hi, d.hi, y0.hi, y1.hi, y2.hi, y3.hi);
  storeRow(w, i0, y0);
  storeRow(w, i0 + q, y1);
  storeRow(w, i0 + 2 * q, y2);
  storeRow(w, i0 + 3 * q, y3);
}

template <bool Inv, typename T>
ORV_AVX_INLINE Row4<T> twiddleRow(Row4<T> v, V2 w) {
  return {twiddle<Inv>(v.lo, w), twiddle<Inv>(v.hi, w)};
}

// The stage list of the interleaved leaf on rows of four columns.
template <bool Inv, typename T>
ORV_AVX void leafRows(T* w, int order, const T* tab) {
  using M = Mem<T>;
  const std::size_t len = std::size_t(1) << order;
  for (std::size_t g = 0; g < len; g += 4)
    combineRows<Inv>(w, g, 1, loadRow(w, g), loadRow(w, g + 1), loadRow(w, g + 2), loadRow(w, g + 3));
  std::size_t span = 16;
  if (order & 1) {
    const V2 r = _mm256_set1_pd(double(tab[6 * (len / 8)]));
    for (std::size_t g = 0; g < len; g += 8) {
      for (std::size_t j = 0; j < 4; ++j) {
        const Row4<T> a = loadRow(w, g + j);
        Row4<T> b = loadRow(w, g + j + 4);
        if (j == 1) b = {eighth1<Inv>(b.lo, r), eighth1<Inv>(b.hi, r)};
        else if (j == 2) b = {rotate<Inv>(b.lo), rotate<Inv>(b.hi)};
        else if (j == 3) b = {eighth3<Inv>(b.lo, r), eighth3<Inv>(b.hi, r)};
        storeRow(w, g + j, Row4<T>{_mm256_add_pd(a.lo, b.lo), _mm256_add_pd(a.hi, b.hi)});
        storeRow(w, g + j + 4, Row4<T>{_mm256_sub_pd(a.lo, b.lo), _mm256_sub_pd(a.hi, b.hi)});
      }
    }
    span = 32;
  } else {
    // span 16: j = 2 by the rotation and the sqrt(1/2) forms
    const V2 r = _mm256_set1_pd(double(tab[6 * (len / 16) + 2]));
    const std::size_t stride = len / 16;
    for (std::size_t j = 0; j < 4; ++j) {
      const T* t = tab + 6 * (j * stride);
      const V2 w1 = M::broadcast(t), w2 = M::broadcast(t + 2), w3 = M::broadcast(t + 4);
      for (std::size_t g = 0; g < len; g += 16) {
        Row4<T> a = loadRow(w, g + j), b = loadRow(w, g + j + 4), c = loadRow(w, g + j + 8),
                d = loadRow(w, g + j + 12);
        if (j == 2) {
          b = {rotate<Inv>(b.lo), rotate<Inv>(b.hi)};
          c = {eighth1<Inv>(c.lo, r), eighth1<Inv>(c.hi, r)};
          d = {eighth3<Inv>(d.lo, r), eighth3<Inv>(d.hi, r)};
        } else if (j != 0) {
          b = twiddleRow<Inv>(b, w2);
          c = twiddleRow<Inv>(c, w1);
          d = twiddleRow<Inv>(d, w3);
        }
        combineRows<Inv>(w, g + j, 4, a, b, c, d);
      }
    }
    span = 64;
  }
  for (; span <= len; span *= 4) {
    const std::size_t q = span / 4, stride = len / span;
    for (std::size_t j = 0; j < q; ++j) {
      const T* t = tab + 6 * (j * stride);
      const V2 w1 = M::broadcast(t), w2 = M::broadcast(t + 2), w3 = M::broadcast(t + 4);
      for (std::size_t g = 0; g < len; g += span) {
        Row4<T> b = loadRow(w, g + j + q), c = loadRow(w, g + j + 2 * q), d = loadRow(w, g + j + 3 * q);
        if (j != 0) {
          b = twiddleRow<Inv>(b, w2);
          c = twiddleRow<Inv>(c, w1);
          d = twiddleRow<Inv>(d, w3);
        }
        combineRows<Inv>(w, g + j, q, loadRow(w, g + j), b, c, d);
      }
    }
  }
}

// Columns c..c+3 of a rows x cols matrix: twiddled row by row into the work
// buffer, transformed there, and copied back.
template <bool Inv, typename T>
ORV_AVX void columnsAvx(T* x, std::size_t rows, std::size_t cols, std::size_t c, const T* step, int s,
                        const T* tab, T* work) {
  using M = Mem<T>;
  for (std::size_t p = 0; p < rows; ++p, step += 8) {
    const T* e = x + 2 * (p * cols + c);
    storeRow(work, p, Row4<T>{twiddle<Inv>(M::load2(e), M::load2(step)), twiddle<Inv>(M::load2(e + 4), M::load2(step + 4))});
  }
  leafRows<Inv>(work, s, tab);
  // copies only: eight reals per row, moved as bits
  for (std::size_t p = 0; p < rows; ++p) {
    const double* from = reinterpret_cast<const double*>(work + 8 * p);
    double* to = reinterpret_cast<double*>(x + 2 * (p * cols + c));
    if (sizeof(T) == 4) {
      _mm256_storeu_pd(to, _mm256_loadu_pd(from));
    } else {
      _mm256_storeu_pd(to, _mm256_loadu_pd(from));
      _mm256_storeu_pd(to + 4, _mm256_loadu_pd(from + 4));
    }
  }
}

// ---- Unpacking pass of the real FFT ---------------------------------------------
// Four pairs (k, H-k) at a time, the four k ascending and the four H-k
// descending. Real and imaginary parts go to separate registers in the lane
// order k, k+2, k+1, k+3 (for the H-k side after swapping halves), where
// each lane does the plain pass's double operations.

template <typename T>
struct Cx4;
template <>
struct Cx4<double> {
  static ORV_AVX_INLINE void load(const double* p, __m256d& lo, __m256d& hi) {
    lo = _mm256_loadu_pd(p);
    hi = _mm256_loadu_pd(p + 4);
  }
  static ORV_AVX_INLINE void store(double* p, __m256d lo, __m256d hi) {
    _mm256_storeu_pd(p, lo);
    _mm256_storeu_pd(p + 4, hi);
  }
};
template <>
struct Cx4<float> {
  static ORV_AVX_INLINE void load(const float* p, __m256d& lo, __m256d& hi) {
    lo = _mm256_cvtps_pd(_mm_loadu_ps(p));
    hi = _mm256_cvtps_pd(_mm_loadu_ps(p + 4));
  }
  static ORV_AVX_INLINE void store(float* p, __m256d lo, __m256d hi) {
    _mm_storeu_ps(p, _mm256_cvtpd_ps(lo));
    _mm_storeu_ps(p + 4, _mm256_cvtpd_ps(hi));
  }
};

ORV_AVX_INLINE __m256d swapHalves(__m256d v) { return _mm256_permute2f128_pd(v, v, 0x01); }

template <typename T>
ORV_AVX std::size_t unpackAvx(T* x, std::size_t h, const T* tab) {
  using C = Cx4<T>;
  std::size_t k = 1;
  for (; 2 * k + 6 < h; k += 4) {
    const std::size_t m = h - k;
    __m256d lo, hi;
    C::load(x + 2 * k, lo, hi);
    const __m256d a = _mm256_unpacklo_pd(lo, hi), c = _mm256_unpackhi_pd(lo, hi);
    C::load(x + 2 * (m - 3), lo, hi);
    const __m256d b = swapHalves(_mm256_unpacklo_pd(hi, lo)), d = swapHalves(_mm256_unpackhi_pd(hi, lo));
    C::load(tab + 2 * k, lo, hi);
    const __m256d A = _mm256_unpacklo_pd(lo, hi), B = _mm256_unpackhi_pd(lo, hi);
    const __m256d p = _mm256_sub_pd(a, b), q = _mm256_add_pd(c, d);
    const __m256d u = _mm256_add_pd(_mm256_mul_pd(A, q), _mm256_mul_pd(B, p));
    const __m256d v = _mm256_sub_pd(_mm256_mul_pd(B, q), _mm256_mul_pd(A, p));
    const __m256d kre = _mm256_add_pd(b, u), kim = _mm256_sub_pd(v, d);
    const __m256d mre = swapHalves(_mm256_sub_pd(a, u)), mim = swapHalves(_mm256_sub_pd(v, c));
    C::store(x + 2 * k, _mm256_unpacklo_pd(kre, kim), _mm256_unpackhi_pd(kre, kim));
    C::store(x + 2 * (m - 3), _mm256_unpackhi_pd(mre, mim), _mm256_unpacklo_pd(mre, mim));
  }
  return k;
}

// The inverse pass, from a spectrum in Perm positions (`src`, which may be
// dst) into the half-length spectrum in dst, four pairs at a time.
template <typename T>
ORV_AVX std::size_t packAvx(const T* src, T* dst, std::size_t h, const T* tab) {
  using C = Cx4<T>;
  std::size_t k = 1;
  for (; 2 * k + 6 < h; k += 4) {
    const std::size_t m = h - k;
    __m256d lo, hi;
    C::load(src + 2 * k, lo, hi);
    const __m256d a = _mm256_unpacklo_pd(lo, hi), c = _mm256_unpackhi_pd(lo, hi);
    C::load(src + 2 * (m - 3), lo, hi);
    const __m256d b = swapHalves(_mm256_unpacklo_pd(hi, lo)), d = swapHalves(_mm256_unpackhi_pd(hi, lo));
    C::load(tab + 2 * k, lo, hi);
    const __m256d cs = _mm256_unpacklo_pd(lo, hi), sn = _mm256_unpackhi_pd(lo, hi);
    const __m256d p = _mm256_sub_pd(a, b), q = _mm256_add_pd(c, d);
    const __m256d u = _mm256_sub_pd(_mm256_mul_pd(sn, p), _mm256_mul_pd(cs, q));
    const __m256d v = _mm256_add_pd(_mm256_mul_pd(cs, p), _mm256_mul_pd(sn, q));
    const __m256d sum = _mm256_add_pd(a, b), dif = _mm256_sub_pd(c, d);
    const __m256d kre = _mm256_add_pd(sum, u), kim = _mm256_add_pd(v, dif);
    const __m256d mre = swapHalves(_mm256_sub_pd(sum, u)), mim = swapHalves(_mm256_sub_pd(v, dif));
    C::store(dst + 2 * k, _mm256_unpacklo_pd(kre, kim), _mm256_unpackhi_pd(kre, kim));
    C::store(dst + 2 * (m - 3), _mm256_unpackhi_pd(mre, mim), _mm256_unpacklo_pd(mre, mim));
  }
  return k;
}

}  // namespace
#pragma GCC pop_options

namespace {

int processorLevel() { return cpu::hasAvx() ? kAvx : kPlain; }

std::atomic<int> gLevelCap{kAvx};

}  // namespace

int level() {
  static const int has = processorLevel();
  const int cap = gLevelCap.load(std::memory_order_relaxed);
  return has < cap ? has : cap;
}

void limitLevel(int cap) { gLevelCap.store(cap, std::memory_order_relaxed); }

template <typename T>
bool reorder(const T* src, T* dst, int order) {
  if (order < 4 || !available()) return false;
  if (sizeof(T) == 4) reverseAvx<Rows8>(src, dst, order);
  else reverseAvx<Rows16>(src, dst, order);
  return true;
}

template <typename T>
std::size_t unpackForward(T* x, std::size_t h, const T* tab) {
  return available() ? unpackAvx(x, h, tab) : 1;
}

template <bool Inv, typename T>
void leafInterleaved(T* x, int order, const T* tab, const double* last) {
  leafAvx<Inv>(x, order, tab, last);
}

template <bool Inv, typename T>
void blockedPass(T* x, std::size_t n, std::size_t span, const T* pass, std::size_t stripe) {
  blockedPassAvx<Inv>(x, n, span, pass, stripe);
}

template <bool Inv, typename T>
void columnGroup(T* x, std::size_t rows, std::size_t cols, std::size_t c, const T* step, int s, const T* tab,
                 T* work) {
  columnsAvx<Inv>(x, rows, cols, c, step, s, tab, work);
}

template void leafInterleaved<false, float>(float*, int, const float*, const double*);
template void leafInterleaved<true, float>(float*, int, const float*, const double*);
template void leafInterleaved<false, double>(double*, int, const double*, const double*);
template void leafInterleaved<true, double>(double*, int, const double*, const double*);
template void blockedPass<false, float>(float*, std::size_t, std::size_t, const float*, std::size_t);
template void blockedPass<true, float>(float*, std::size_t, std::size_t, const float*, std::size_t);
template void blockedPass<false, double>(double*, std::size_t, std::size_t, const double*, std::size_t);
template void blockedPass<true, double>(double*, std::size_t, std::size_t, const double*, std::size_t);
template void columnGroup<false, float>(float*, std::size_t, std::size_t, std::size_t, const float*, int,
                                       const float*, float*);
template void columnGroup<true, float>(float*, std::size_t, std::size_t, std::size_t, const float*, int,
                                      const float*, float*);
template void columnGroup<false, double>(double*, std::size_t, std::size_t, std::size_t, const double*, int,
                                        const double*, double*);
template void columnGroup<true, double>(double*, std::size_t, std::size_t, std::size_t, const double*, int,
                                       const double*, double*);
template <typename T>
std::size_t packInverse(const T* src, T* dst, std::size_t h, const T* tab) {
  return available() ? packAvx(src, dst, h, tab) : 1;
}

template bool reorder<float>(const float*, float*, int);
template bool reorder<double>(const double*, double*, int);
template std::size_t unpackForward<float>(float*, std::size_t, const float*);
template std::size_t unpackForward<double>(double*, std::size_t, const double*);
template std::size_t packInverse<float>(const float*, float*, std::size_t, const float*);
template std::size_t packInverse<double>(const double*, double*, std::size_t, const double*);

}  // namespace fast
}  // namespace fft
}  // namespace orv
