// Arithmetic on packed spectra: expansion of a CCS, Pack or Perm spectrum to
// the full complex vector (ConjCcs, ConjPack, ConjPerm), and the element-wise
// product of two packed spectra without unpacking them (MulPack, MulPerm,
// MulPackConj). `len` is always the length of the real signal.
#include <algorithm>
#include <cstdint>

#include "arith/complex_mul.hpp"
#include "core/internal.hpp"
#include "core/saturate.hpp"
#include "core/scale.hpp"
#include "transform/packed_layout.hpp"

namespace orv {
namespace {

using layout::Kind;

// ---- Expansion ---------------------------------------------------------------

// The negated imaginary part of a mirrored bin. 16-bit values saturate, so
// -32768 gives 32767; floating values simply change sign.
template <typename T>
inline T negate(T v) {
  if constexpr (std::is_integral<T>::value) {
    return saturate<T>(-static_cast<std::int32_t>(v));
  } else {
    return -v;
  }
}

// dst[k] = P[k] for k = 0..len/2 and dst[len-k] = conj(P[k]) for
// k = 1..(len-1)/2, P[k] being bin k read from the layout at `reals`. The
// walk runs from the highest bin down, and every bin is read before anything
// is stored, so the layout may lie at the start of dst itself: a stored bin k
// covers reals 2k and 2k+1, which no lower bin reads, and a mirrored bin lies
// past the end of every layout.
template <Kind K, typename T, typename C>
void expand(const T* reals, C* dst, int len) {
  const std::ptrdiff_t n = len, half = n / 2, mirrored = (n - 1) / 2;
  for (std::ptrdiff_t k = half; k >= 0; --k) {
    const layout::Slots at = layout::binSlots(K, n, k);
    const T re = reals[at.re];
    const T im = at.im >= 0 ? reals[at.im] : T(0);
    if (k >= 1 && k <= mirrored) {
      dst[n - k].re = re;
      dst[n - k].im = negate(im);
    }
    dst[k].re = re;
    dst[k].im = im;
  }
}

// Out of place: CCS is read through the complex element type, Pack and Perm
// through the real one.
template <Kind K, typename S, typename C>
orvStatus conjKernel(const S* src, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  using T = decltype(C{}.re);
  expand<K>(reinterpret_cast<const T*>(src), dst, len);
  return orvOk;
}

template <Kind K, typename C>
orvStatus conjKernelInPlace(C* srcDst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, srcDst));
  using T = decltype(C{}.re);
  expand<K>(reinterpret_cast<const T*>(srcDst), srcDst, len);
  return orvOk;
}

// ---- Multiplication ----------------------------------------------------------

// `real(i)` for each real bin of a packed spectrum of layout K at its
// position i: bin 0, and the middle bin of even len.
template <Kind K, typename Real>
inline void forEachRealBin(int len, const Real& real) {
  const std::ptrdiff_t n = len;
  real(std::ptrdiff_t{0});
  if (n % 2 == 0) real(layout::binSlots(K, n, n / 2).re);
}

// Walks the bins of two packed spectra of layout K: `real(i)` for each real
// bin, `pair(i)` for each (re, im) pair starting at position i.
template <Kind K, typename Real, typename Pair>
inline void forEachBin(int len, const Real& real, const Pair& pair) {
  forEachRealBin<K>(len, real);
  const std::ptrdiff_t first = layout::firstPair(K, len), count = layout::pairCount(len);
  for (std::ptrdiff_t p = 0; p < count; ++p) pair(first + 2 * p);
}

// The (re, im) pairs of a packed spectrum lie next to each other like the
// elements of a complex vector, so the complex vector product serves them:
// re = ar*br - ai*bi and im = ai*br + ar*bi in double, each rounded once to
// the element type, dst allowed to be either source.
inline void mulPairs(const float* a, const float* b, float* dst, std::ptrdiff_t count) {
  arith::mul32fc(reinterpret_cast<const orv32fc*>(a), reinterpret_cast<const orv32fc*>(b),
                 reinterpret_cast<orv32fc*>(dst), count);
}
inline void mulPairs(const double* a, const double* b, double* dst, std::ptrdiff_t count) {
  arith::mul64fc(reinterpret_cast<const orv64fc*>(a), reinterpret_cast<const orv64fc*>(b),
                 reinterpret_cast<orv64fc*>(dst), count);
}

// Floating forms: dst = a * b bin by bin, in working precision and rounded
// once on storing. Every operand is read before dst is written, so dst may
// be either source.
template <Kind K, typename T>
void mulFloat(const T* a, const T* b, T* dst, int len) {
  forEachRealBin<K>(len, [&](std::ptrdiff_t i) { dst[i] = T(double(a[i]) * double(b[i])); });
  const std::ptrdiff_t first = layout::firstPair(K, len);
  mulPairs(a + first, b + first, dst + first, layout::pairCount(len));
}

template <Kind K, typename T>
orvStatus mulKernel(const T* src1, const T* src2, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src1, src2, dst));
  mulFloat<K>(src1, src2, dst, len);
  return orvOk;
}

template <Kind K, typename T>
orvStatus mulKernelInPlace(const T* src, T* srcDst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, srcDst));
  mulFloat<K>(src, srcDst, srcDst, len);
  return orvOk;
}

// srcDst = src * conj(srcDst) in the Pack layout. The operand conjugated is
// the one overwritten.
template <typename T>
orvStatus mulPackConjKernel(const T* src, T* srcDst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, srcDst));
  forEachBin<Kind::Pack>(
      len, [&](std::ptrdiff_t i) { srcDst[i] = T(double(src[i]) * double(srcDst[i])); },
      [&](std::ptrdiff_t i) {
        const double sr = src[i], si = src[i + 1], dr = srcDst[i], di = srcDst[i + 1];
        srcDst[i] = T(dr * sr + di * si);
        srcDst[i + 1] = T(si * dr - sr * di);
      });
  return orvOk;
}

// ---- 16-bit multiplication ----------------------------------------------------
//
// Products are exact 32-bit values. A real bin's product v and a pair's real
// sum r = a.re*b.re - a.im*b.im go straight to the scale step. The pair's
// imaginary sum is p + q with p = a.re*b.im and q = a.im*b.re, except where
// p is exactly 2^30 (both factors -32768): then q is dropped, which keeps the
// sum inside 32 bits. Only p is tested, and r has no guard.
//
// Scale s, chosen once per call:
//   s == 0   saturate
//   s > 0    shift right arithmetically by s (no rounding), saturate; the
//            imaginary sum is shifted as ((x >> 1) + (x & 1)) >> (s - 1) with
//            x = p + (q - 1) (or p alone), which is (p + q) >> s without
//            forming p + q
//   s < 0    real bins: saturate, shift left by -s, saturate again; pairs:
//            compared with the bounds shifted right by -s and either
//            delivered as a bound or shifted left
// A shift by 32 or more gives what a shift of that distance means: 0 or -1
// to the right, a saturated non-zero value to the left.

using Wide = std::int32_t;
constexpr Wide kGuardProduct = Wide(1) << 30;

struct Products {
  Wide p, q;
  bool dropped;  // q counts as 0
};

inline Products imagProducts(orv16s ar, orv16s ai, orv16s br, orv16s bi) {
  const Wide p = Wide(ar) * Wide(bi), q = Wide(ai) * Wide(br);
  return {p, q, p == kGuardProduct};
}

inline Wide realSum(orv16s ar, orv16s ai, orv16s br, orv16s bi) {
  // |a.re*b.re - a.im*b.im| stays below 2^31 for every 16-bit input.
  return Wide(ar) * Wide(br) - Wide(ai) * Wide(bi);
}

inline Wide imagSum(const Products& pq) { return pq.dropped ? pq.p : pq.p + pq.q; }

// The distance of a right shift of a 32-bit value; 31 and more all give the
// sign.
inline int rightDistance(int s) { return std::min(s, 31); }

// Scale 0: every value saturates.
struct KeepScale {
  orv16s real(Wide v) const { return limitTo<orv16s, Bound::kBoth>(v); }
  orv16s pairRe(Wide r) const { return limitTo<orv16s, Bound::kBoth>(r); }
  orv16s pairIm(const Products& pq) const { return limitTo<orv16s, Bound::kBoth>(imagSum(pq)); }
};

// Positive scale: arithmetic shift right by s, then saturation.
struct DownScale {
  int s;
  orv16s real(Wide v) const { return limitTo<orv16s, Bound::kBoth>(v >> rightDistance(s)); }
  orv16s pairRe(Wide r) const { return limitTo<orv16s, Bound::kBoth>(r >> rightDistance(s)); }
  orv16s pairIm(const Products& pq) const {
    const Wide x = pq.dropped ? pq.p : pq.p + (pq.q - 1);
    const Wide halved = (x >> 1) + (x & 1);
    return limitTo<orv16s, Bound::kBoth>(halved >> rightDistance(s - 1));
  }
};

// Negative scale, n = -s. Past a distance of 16 every non-zero 16-bit value
// saturates, so longer distances are served as 16.
struct UpScale {
  explicit UpScale(int s)
      : n(s < -16 ? 16 : -s),
        upper(Wide(32767) >> n),
        lower(n >= 16 ? Wide(0) : (Wide(-32768) >> n)),
        realStep{n} {}
  int n;
  Wide upper, lower;
  SaturateShiftUpStep<orv16s, Wide> realStep;

  orv16s real(Wide v) const { return limitTo<orv16s, Bound::kBoth>(realStep(v)); }
  orv16s bounded(Wide v) const {
    if (v > upper) return 32767;
    if (v < lower) return -32768;
    return static_cast<orv16s>(shiftUp(v, n));
  }
  orv16s pairRe(Wide r) const { return bounded(r); }
  orv16s pairIm(const Products& pq) const { return bounded(imagSum(pq)); }
};

// One loop per scale case. a is src1 (or src of an in-place form), b is src2
// (or srcDst); every operand is read before dst is written.
template <Kind K, class Scale>
void mul16s(const orv16s* a, const orv16s* b, orv16s* dst, int len, const Scale& scale) {
  forEachBin<K>(
      len, [&](std::ptrdiff_t i) { dst[i] = scale.real(Wide(a[i]) * Wide(b[i])); },
      [&](std::ptrdiff_t i) {
        const orv16s ar = a[i], ai = a[i + 1], br = b[i], bi = b[i + 1];
        const Wide r = realSum(ar, ai, br, bi);
        const Products pq = imagProducts(ar, ai, br, bi);
        dst[i] = scale.pairRe(r);
        dst[i + 1] = scale.pairIm(pq);
      });
}

template <Kind K>
void mul16sScaled(const orv16s* a, const orv16s* b, orv16s* dst, int len, int scaleFactor) {
  if (scaleFactor == 0) {
    mul16s<K>(a, b, dst, len, KeepScale{});
  } else if (scaleFactor > 0) {
    mul16s<K>(a, b, dst, len, DownScale{scaleFactor});
  } else {
    mul16s<K>(a, b, dst, len, UpScale(scaleFactor));
  }
}

template <Kind K>
orvStatus mul16sKernel(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src1, src2, dst));
  mul16sScaled<K>(src1, src2, dst, len, scaleFactor);
  return orvOk;
}

template <Kind K>
orvStatus mul16sKernelInPlace(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, srcDst));
  mul16sScaled<K>(src, srcDst, srcDst, len, scaleFactor);
  return orvOk;
}

}  // namespace
}  // namespace orv

using orv::layout::Kind;

extern "C" {

// ---- Expansion -------------------------------------------------------------------

orvStatus orvsConjCcs_16sc(const orv16sc* src, orv16sc* dst, int len) {
  return orv::conjKernel<Kind::Ccs>(src, dst, len);
}
orvStatus orvsConjCcs_32fc(const orv32fc* src, orv32fc* dst, int len) {
  return orv::conjKernel<Kind::Ccs>(src, dst, len);
}
orvStatus orvsConjCcs_64fc(const orv64fc* src, orv64fc* dst, int len) {
  return orv::conjKernel<Kind::Ccs>(src, dst, len);
}
orvStatus orvsConjPack_16sc(const orv16s* src, orv16sc* dst, int len) {
  return orv::conjKernel<Kind::Pack>(src, dst, len);
}
orvStatus orvsConjPack_32fc(const orv32f* src, orv32fc* dst, int len) {
  return orv::conjKernel<Kind::Pack>(src, dst, len);
}
orvStatus orvsConjPack_64fc(const orv64f* src, orv64fc* dst, int len) {
  return orv::conjKernel<Kind::Pack>(src, dst, len);
}
orvStatus orvsConjPerm_16sc(const orv16s* src, orv16sc* dst, int len) {
  return orv::conjKernel<Kind::Perm>(src, dst, len);
}
orvStatus orvsConjPerm_32fc(const orv32f* src, orv32fc* dst, int len) {
  return orv::conjKernel<Kind::Perm>(src, dst, len);
}
orvStatus orvsConjPerm_64fc(const orv64f* src, orv64fc* dst, int len) {
  return orv::conjKernel<Kind::Perm>(src, dst, len);
}

orvStatus orvsConjCcs_16sc_I(orv16sc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Ccs>(srcDst, len);
}
orvStatus orvsConjCcs_32fc_I(orv32fc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Ccs>(srcDst, len);
}
orvStatus orvsConjCcs_64fc_I(orv64fc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Ccs>(srcDst, len);
}
orvStatus orvsConjPack_16sc_I(orv16sc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Pack>(srcDst, len);
}
orvStatus orvsConjPack_32fc_I(orv32fc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Pack>(srcDst, len);
}
orvStatus orvsConjPack_64fc_I(orv64fc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Pack>(srcDst, len);
}
orvStatus orvsConjPerm_16sc_I(orv16sc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Perm>(srcDst, len);
}
orvStatus orvsConjPerm_32fc_I(orv32fc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Perm>(srcDst, len);
}
orvStatus orvsConjPerm_64fc_I(orv64fc* srcDst, int len) {
  return orv::conjKernelInPlace<Kind::Perm>(srcDst, len);
}

// ---- Multiplication -------------------------------------------------------------

orvStatus orvsMulPack_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len) {
  return orv::mulKernel<Kind::Pack>(src1, src2, dst, len);
}
orvStatus orvsMulPack_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len) {
  return orv::mulKernel<Kind::Pack>(src1, src2, dst, len);
}
orvStatus orvsMulPerm_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len) {
  return orv::mulKernel<Kind::Perm>(src1, src2, dst, len);
}
orvStatus orvsMulPerm_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len) {
  return orv::mulKernel<Kind::Perm>(src1, src2, dst, len);
}
orvStatus orvsMulPack_32f_I(const orv32f* src, orv32f* srcDst, int len) {
  return orv::mulKernelInPlace<Kind::Pack>(src, srcDst, len);
}
orvStatus orvsMulPack_64f_I(const orv64f* src, orv64f* srcDst, int len) {
  return orv::mulKernelInPlace<Kind::Pack>(src, srcDst, len);
}
orvStatus orvsMulPerm_32f_I(const orv32f* src, orv32f* srcDst, int len) {
  return orv::mulKernelInPlace<Kind::Perm>(src, srcDst, len);
}
orvStatus orvsMulPerm_64f_I(const orv64f* src, orv64f* srcDst, int len) {
  return orv::mulKernelInPlace<Kind::Perm>(src, srcDst, len);
}
orvStatus orvsMulPackConj_32f_I(const orv32f* src, orv32f* srcDst, int len) {
  return orv::mulPackConjKernel(src, srcDst, len);
}
orvStatus orvsMulPackConj_64f_I(const orv64f* src, orv64f* srcDst, int len) {
  return orv::mulPackConjKernel(src, srcDst, len);
}

orvStatus orvsMulPack_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len,
                              int scaleFactor) {
  return orv::mul16sKernel<Kind::Pack>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMulPerm_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len,
                              int scaleFactor) {
  return orv::mul16sKernel<Kind::Perm>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMulPack_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  return orv::mul16sKernelInPlace<Kind::Pack>(src, srcDst, len, scaleFactor);
}
orvStatus orvsMulPerm_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  return orv::mul16sKernelInPlace<Kind::Perm>(src, srcDst, len, scaleFactor);
}

}  // extern "C"
