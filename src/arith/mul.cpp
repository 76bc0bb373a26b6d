// Mul and MulC on integer vectors: the scaled and saturating products on 8u,
// 16s, 16sc, 32s and 32sc, the unscaled 16s products and the forms with mixed
// types (8u -> 16u, 16s -> 32s, 16u x 16s -> 16s, 16s -> 32f).
//
// The exact product t is formed in a signed integer W and handed to the
// shared scaling steps. W and the scale limits per type:
//
//   type      W    t                         zero above   sign only below
//   8u       32    0 .. 65025                     16            -7
//   16s      32    31 bits                        30           -15
//   32s      64    63 bits                        62           -31
//   16sc     32    sums up to 2^31, guarded       31           -15
//   32sc     64    sums up to 2^63, guarded       63           -31
//   16u16s   32    -2147450880 .. 2147385345      31           -14
//   16s32s   32    31 bits                        30           -30
//
// A product can fill its W, so at a negative scale it is saturated to the
// element type first, then shifted, then saturated again (8u alone, whose
// product has 16 bits and is shifted by at most 7, shifts at once). The
// complex and 16u16s forms round at a positive scale in the split form that
// never adds the bias to a full-width value.
#include <immintrin.h>

#include <cstdint>
#include <limits>
#include <type_traits>

#include "arith/complex_mul.hpp"
#include "arith/shortcuts.hpp"
#include "core/cpu.hpp"
#include "core/internal.hpp"
#include "core/lengths.hpp"
#include "core/scale.hpp"

namespace orv {
namespace mul {
namespace {

using arith::clearElements;
using arith::copyElements;

template <typename T>
struct RealPart;

template <>
struct RealPart<orv8u> {
  using W = std::int32_t;
  static constexpr ScaleLimits kLimits{16, -7};
  // t is never negative: only the upper bound can be passed.
  using Plan = BoundPlan<Bound::kUpper, Bound::kUpper, Bound::kUpper, Bound::kUpper>;
};

template <>
struct RealPart<orv16s> {
  using W = std::int32_t;
  static constexpr ScaleLimits kLimits{30, -15};
  using Plan = BoundPlan<Bound::kBoth, Bound::kBoth, Bound::kBoth, Bound::kBoth, true>;
};

template <>
struct RealPart<orv32s> {
  using W = std::int64_t;
  static constexpr ScaleLimits kLimits{62, -31};
  using Plan = BoundPlan<Bound::kBoth, Bound::kBoth, Bound::kBoth, Bound::kBoth, true>;
};

// Complex forms, by part type.
template <typename P>
struct ComplexPart;

template <>
struct ComplexPart<orv16s> {
  using C = orv16sc;
  using W = std::int32_t;
  static constexpr ScaleLimits kLimits{31, -15};
};

template <>
struct ComplexPart<orv32s> {
  using C = orv32sc;
  using W = std::int64_t;
  static constexpr ScaleLimits kLimits{63, -31};
};

using ComplexPlan = BoundPlan<Bound::kBoth, Bound::kBoth, Bound::kBoth, Bound::kBoth, true>;

template <typename W, typename A, typename B>
inline W product(A x, B y) {
  return static_cast<W>(static_cast<W>(x) * static_cast<W>(y));
}

// The scaled 16s products sixteen elements a pass in AVX2 registers, on the
// leading multiple of 16 of n elements; returns that count. The exact
// 32-bit products come from the low and high halves of the 16-bit products
// (interleaved within each 128-bit lane, which the final pack undoes), each
// goes through the integer step of its case as in the plain loops, and the
// signed pack saturates to both bounds of 16s as their limitTo does:
//   kKeep      t
//   kShiftUp   t limited to 16s, shifted left by -s (at most 15: no wrap)
//   kHalve     (t + ((t >> 1) & 1)) >> 1
//   kRound     (t + 2^(s-1) - 1 + ((t >> s) & 1)) >> s
template <ScaleCase C>
__attribute__((target("avx2"))) inline __m256i scaledProducts16s(__m256i t, __m128i distance, __m256i bias) {
  const __m256i one = _mm256_set1_epi32(1);
  if constexpr (C == ScaleCase::kShiftUp) {
    const __m256i limited = _mm256_min_epi32(_mm256_max_epi32(t, _mm256_set1_epi32(-32768)), _mm256_set1_epi32(32767));
    return _mm256_sll_epi32(limited, distance);
  } else if constexpr (C == ScaleCase::kHalve) {
    return _mm256_srai_epi32(_mm256_add_epi32(t, _mm256_and_si256(_mm256_srai_epi32(t, 1), one)), 1);
  } else if constexpr (C == ScaleCase::kRound) {
    const __m256i odd = _mm256_and_si256(_mm256_sra_epi32(t, distance), one);
    return _mm256_sra_epi32(_mm256_add_epi32(_mm256_add_epi32(t, bias), odd), distance);
  } else {
    return t;
  }
}

template <ScaleCase C>
__attribute__((target("avx2"))) std::ptrdiff_t products16sAvx2(const orv16s* x, const orv16s* y, orv16s* dst,
                                                               std::ptrdiff_t n, int s) {
  const __m128i distance = _mm_cvtsi32_si128(s < 0 ? -s : s);
  const __m256i bias = _mm256_set1_epi32(C == ScaleCase::kRound ? (std::int32_t(1) << (s - 1)) - 1 : 0);
  std::ptrdiff_t i = 0;
  for (; i + 16 <= n; i += 16) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(x + i));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + i));
    const __m256i low = _mm256_mullo_epi16(a, b), high = _mm256_mulhi_epi16(a, b);
    const __m256i t0 = scaledProducts16s<C>(_mm256_unpacklo_epi16(low, high), distance, bias);
    const __m256i t1 = scaledProducts16s<C>(_mm256_unpackhi_epi16(low, high), distance, bias);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + i), _mm256_packs_epi32(t0, t1));
  }
  return i;
}

// The count of leading elements a vector loop has done for this case; 0
// where none serves (other types, the sign-only case, no AVX2).
template <typename T>
std::ptrdiff_t vectorProducts(const T* x, const T* y, T* dst, int len, ScaleCase scaleCase, int s) {
  if constexpr (std::is_same<T, orv16s>::value) {
    if (!cpu::hasAvx2()) return 0;
    switch (scaleCase) {
      case ScaleCase::kKeep:
        return products16sAvx2<ScaleCase::kKeep>(x, y, dst, len, s);
      case ScaleCase::kShiftUp:
        return products16sAvx2<ScaleCase::kShiftUp>(x, y, dst, len, s);
      case ScaleCase::kHalve:
        return products16sAvx2<ScaleCase::kHalve>(x, y, dst, len, s);
      case ScaleCase::kRound:
        return products16sAvx2<ScaleCase::kRound>(x, y, dst, len, s);
      default:
        return 0;
    }
  }
  return 0;
}

// dst = scaled x * y. In place, x or y is dst itself.
template <typename T>
orvStatus vectorSfs(const T* x, const T* y, T* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using Part = RealPart<T>;
  using W = typename Part::W;
  const ScaleCase scaleCase = classifyScale(s, Part::kLimits);
  if (scaleCase == ScaleCase::kZero) return clearElements(dst, len);
  const std::ptrdiff_t done = vectorProducts(x, y, dst, len, scaleCase, s);
  const T* xr = x + done;
  const T* yr = y + done;
  const auto term = [xr, yr](std::ptrdiff_t j, int) { return product<W>(xr[j], yr[j]); };
  storeScaled<T, 1, typename Part::Plan>(scaleCase, s, dst + done, int(len - done), term);
  return orvOk;
}

// dst = scaled src * val. A val of 0 clears dst at any scale; a val of 1 at
// scale 0 leaves the vector (in place) or copies it.
template <typename T>
orvStatus scalarSfs(const T* src, T val, T* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (val == 0) return clearElements(dst, len);
  if (s == 0 && val == 1) return src == dst ? orvOk : copyElements(src, dst, len);
  using Part = RealPart<T>;
  using W = typename Part::W;
  const ScaleCase scaleCase = classifyScale(s, Part::kLimits);
  if (scaleCase == ScaleCase::kZero) return clearElements(dst, len);
  const W v = val;
  const auto term = [src, v](std::ptrdiff_t j, int) { return static_cast<W>(src[j] * v); };
  storeScaled<T, 1, typename Part::Plan>(scaleCase, s, dst, len, term);
  return orvOk;
}

// Unscaled saturated products of 16s.
orvStatus vector16s(const orv16s* x, const orv16s* y, orv16s* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using W = std::int32_t;
  storeParts<orv16s, 1, Bound::kBoth>(dst, len, KeepStep<W>{},
                                      [x, y](std::ptrdiff_t j, int) { return product<W>(x[j], y[j]); });
  return orvOk;
}

// The two parts of a complex product, in W.
template <typename W>
struct WidePair {
  W re;
  W im;
};

// a*d + b*c in W; each product fits W. The sum reaches 2^(bits of W - 1)
// only when all four operands are the part type's minimum, and then wraps to
// W's minimum; the guard reads that value as W's maximum (no other sum can
// come out as W's minimum).
template <typename W>
inline W guardedImaginary(W a, W b, W c, W d) {
  using U = std::make_unsigned_t<W>;
  const W im = static_cast<W>(static_cast<U>(a * d) + static_cast<U>(b * c));
  return im == std::numeric_limits<W>::min() ? std::numeric_limits<W>::max() : im;
}

// The term of a complex product, asked for part by part. The real part's
// turn forms both parts from the element as it is and keeps the imaginary
// part for the next turn: storeParts asks for the two parts of one element
// in order, so an in-place call reads each element before writing it.
template <typename W, typename Pair>
struct PairTerm {
  Pair pair;      // pair(i) -> WidePair of element i
  W* pendingIm;   // the kept imaginary part
  W operator()(std::ptrdiff_t j, int k) const {
    if (k == 1) return *pendingIm;
    const auto p = pair(j >> 1);
    *pendingIm = p.im;
    return p.re;
  }
};

template <typename P, typename Pair>
void storeComplex(ScaleCase scaleCase, int s, typename ComplexPart<P>::C* dst, int len,
                  const Pair& pair) {
  using W = typename ComplexPart<P>::W;
  W pendingIm = 0;
  const PairTerm<W, Pair> term{pair, &pendingIm};
  storeScaledFullWidth<P, 2, ComplexPlan>(scaleCase, s, reinterpret_cast<P*>(dst), len, term);
}

template <typename C>
orvStatus clearComplex(C* dst, int len) {
  if constexpr (sizeof(C) == 4) {
    return orvsZero_16sc(dst, len);
  } else {
    return orvsZero_16sc(reinterpret_cast<orv16sc*>(dst), doubledCount(len));
  }
}

// dst = scaled x * y on complex vectors, with the guard on im.
template <typename P>
orvStatus complexVectorSfs(const typename ComplexPart<P>::C* x, const typename ComplexPart<P>::C* y,
                           typename ComplexPart<P>::C* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using W = typename ComplexPart<P>::W;
  const ScaleCase scaleCase = classifyScale(s, ComplexPart<P>::kLimits);
  if (scaleCase == ScaleCase::kZero) return clearComplex(dst, len);
  storeComplex<P>(scaleCase, s, dst, len, [x, y](std::ptrdiff_t i) {
    const W a = x[i].re, b = x[i].im, c = y[i].re, d = y[i].im;
    return WidePair<W>{static_cast<W>(a * c - b * d), guardedImaginary(a, b, c, d)};
  });
  return orvOk;
}

// dst = scaled src * val. The real part is val.re * a + (-val.im) * b, with
// -val.im held in W (32768 for a val.im of -32768, which has no negative in
// 16 bits). Only a val.im at the part type's minimum lets im reach the
// wrapping sum, so only that case has loops with the guard.
template <typename P>
orvStatus complexScalarSfs(const typename ComplexPart<P>::C* src, typename ComplexPart<P>::C val,
                           typename ComplexPart<P>::C* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  using W = typename ComplexPart<P>::W;
  const ScaleCase scaleCase = classifyScale(s, ComplexPart<P>::kLimits);
  if (scaleCase == ScaleCase::kZero) return clearComplex(dst, len);
  const W c = val.re;
  const W d = val.im;
  const W negD = -d;
  if (val.im == std::numeric_limits<P>::min()) {
    storeComplex<P>(scaleCase, s, dst, len, [src, c, d, negD](std::ptrdiff_t i) {
      const W a = src[i].re, b = src[i].im;
      return WidePair<W>{static_cast<W>(c * a + negD * b), guardedImaginary(a, b, c, d)};
    });
  } else {
    storeComplex<P>(scaleCase, s, dst, len, [src, c, d, negD](std::ptrdiff_t i) {
      const W a = src[i].re, b = src[i].im;
      return WidePair<W>{static_cast<W>(c * a + negD * b), static_cast<W>(a * d + b * c)};
    });
  }
  return orvOk;
}

// 16s x 16s delivered as 32s: the product fits the result, so no positive
// scale saturates, and a negative one compares the product with the bounds
// shifted right by the distance.
orvStatus mul16s32s(const orv16s* x, const orv16s* y, orv32s* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using W = std::int32_t;
  const ScaleCase scaleCase = classifyScale(s, ScaleLimits{30, -30});
  if (scaleCase == ScaleCase::kZero) return clearElements(dst, len);
  const auto term = [x, y](std::ptrdiff_t j, int) { return product<W>(x[j], y[j]); };
  if (scaleCase == ScaleCase::kShiftUp) {
    storeParts<orv32s, 1, Bound::kNone>(dst, len, SaturatingShiftUpStep<orv32s, W>(-s), term);
  } else {
    storeScaled<orv32s, 1, BoundPlan<Bound::kNone, Bound::kNone, Bound::kNone, Bound::kNone>>(
        scaleCase, s, dst, len, term);
  }
  return orvOk;
}

// 16u x 16s delivered as 16s. The product fills 32 bits nearly both ways.
orvStatus mul16u16s(const orv16u* x, const orv16s* y, orv16s* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using W = std::int32_t;
  const ScaleCase scaleCase = classifyScale(s, ScaleLimits{31, -14});
  if (scaleCase == ScaleCase::kZero) return clearElements(dst, len);
  const auto term = [x, y](std::ptrdiff_t j, int) { return product<W>(x[j], y[j]); };
  storeScaledFullWidth<orv16s, 1, RealPart<orv16s>::Plan>(scaleCase, s, dst, len, term);
  return orvOk;
}

// ---- Floating point ----------------------------------------------------------

// x * y rounded once to T. For T = float the product of two floats is exact
// in double, so the single float multiplication gives the same bits as the
// double product rounded to float; the loop uses it.
template <typename T>
orvStatus floatVector(const T* x, const T* y, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) dst[i] = x[i] * y[i];
  return orvOk;
}

// MulC on a real floating vector: a val equal to 1.0, or NaN (the comparison
// reads an unordered result as equal), copies src or leaves the vector in
// place; a val equal to 0.0 of either sign clears dst, whatever the source
// holds.
template <typename T>
orvStatus floatScalar(const T* src, T val, T* dst, int len, bool inPlace) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (arith::oneOrNaN(val)) return inPlace ? orvOk : copyElements(src, dst, len);
  if (val == T(0)) return clearElements(dst, len);
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) dst[i] = src[i] * val;
  return orvOk;
}

// (a + bi)(c + di) with the products and sums in double, rounded once to T.
template <typename T>
struct FloatComplexProduct {
  T re;
  T im;
  FloatComplexProduct(double a, double b, double c, double d)
      : re(static_cast<T>(a * c - b * d)), im(static_cast<T>(a * d + b * c)) {}
};

template <typename C>
orvStatus floatComplexVector(const C* x, const C* y, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using T = decltype(C::re);
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const FloatComplexProduct<T> p(x[i].re, x[i].im, y[i].re, y[i].im);
    dst[i].re = p.re;
    dst[i].im = p.im;
  }
  return orvOk;
}

template <typename C>
orvStatus floatComplexScalar(const C* src, C val, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if constexpr (std::is_same<C, orv32fc>::value) {
    // the vector loop of complex_mul.hpp, with the bits of the loop below
    arith::mulC32fc(src, val, dst, len);
    return orvOk;
  }
  using T = decltype(C::re);
  const double c = val.re;
  const double d = val.im;
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const FloatComplexProduct<T> p(src[i].re, src[i].im, c, d);
    dst[i].re = p.re;
    dst[i].im = p.im;
  }
  return orvOk;
}

}  // namespace
}  // namespace mul
}  // namespace orv

using namespace orv::mul;

extern "C" {

// ---- Scaled integer products ------------------------------------------------

orvStatus orvsMul_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor) {
  return vectorSfs(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMul_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv8u>(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsMul_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len,
                          int scaleFactor) {
  return vectorSfs(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMul_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv16s>(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsMul_32s_Sfs(const orv32s* src1, const orv32s* src2, orv32s* dst, int len,
                          int scaleFactor) {
  return vectorSfs(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMul_32s_ISfs(const orv32s* src, orv32s* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv32s>(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsMul_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len,
                           int scaleFactor) {
  return complexVectorSfs<orv16s>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMul_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor) {
  return complexVectorSfs<orv16s>(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsMul_32sc_Sfs(const orv32sc* src1, const orv32sc* src2, orv32sc* dst, int len,
                           int scaleFactor) {
  return complexVectorSfs<orv32s>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsMul_32sc_ISfs(const orv32sc* src, orv32sc* srcDst, int len, int scaleFactor) {
  return complexVectorSfs<orv32s>(src, srcDst, srcDst, len, scaleFactor);
}

orvStatus orvsMulC_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor) {
  return scalarSfs(src, val, dst, len, scaleFactor);
}
orvStatus orvsMulC_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor) {
  return scalarSfs<orv8u>(srcDst, val, srcDst, len, scaleFactor);
}
orvStatus orvsMulC_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor) {
  return scalarSfs(src, val, dst, len, scaleFactor);
}
orvStatus orvsMulC_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor) {
  return scalarSfs<orv16s>(srcDst, val, srcDst, len, scaleFactor);
}
orvStatus orvsMulC_32s_Sfs(const orv32s* src, orv32s val, orv32s* dst, int len, int scaleFactor) {
  return scalarSfs(src, val, dst, len, scaleFactor);
}
orvStatus orvsMulC_32s_ISfs(orv32s val, orv32s* srcDst, int len, int scaleFactor) {
  return scalarSfs<orv32s>(srcDst, val, srcDst, len, scaleFactor);
}
orvStatus orvsMulC_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len,
                            int scaleFactor) {
  return complexScalarSfs<orv16s>(src, val, dst, len, scaleFactor);
}
orvStatus orvsMulC_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor) {
  return complexScalarSfs<orv16s>(srcDst, val, srcDst, len, scaleFactor);
}
orvStatus orvsMulC_32sc_Sfs(const orv32sc* src, orv32sc val, orv32sc* dst, int len,
                            int scaleFactor) {
  return complexScalarSfs<orv32s>(src, val, dst, len, scaleFactor);
}
orvStatus orvsMulC_32sc_ISfs(orv32sc val, orv32sc* srcDst, int len, int scaleFactor) {
  return complexScalarSfs<orv32s>(srcDst, val, srcDst, len, scaleFactor);
}

// ---- Unscaled and mixed integer products -------------------------------------

orvStatus orvsMul_16s(const orv16s* src1, const orv16s* src2, orv16s* dst, int len) {
  return vector16s(src1, src2, dst, len);
}
orvStatus orvsMul_16s_I(const orv16s* src, orv16s* srcDst, int len) {
  return vector16s(src, srcDst, srcDst, len);
}

// val 1 leaves the vector, val 0 clears it, else saturated products.
orvStatus orvsMulC_16s_I(orv16s val, orv16s* srcDst, int len) {
  ORV_RETURN_IF_ERROR(orv::checkVectors(len, srcDst));
  if (val == 1) return orvOk;
  if (val == 0) return orvsZero_16s(srcDst, len);
  using W = std::int32_t;
  const W v = val;
  orv::storeParts<orv16s, 1, orv::Bound::kBoth>(
      srcDst, len, orv::KeepStep<W>{},
      [srcDst, v](std::ptrdiff_t j, int) { return static_cast<W>(srcDst[j] * v); });
  return orvOk;
}

// The product of two 8u values fits 16u exactly.
orvStatus orvsMul_8u16u(const orv8u* src1, const orv8u* src2, orv16u* dst, int len) {
  ORV_RETURN_IF_ERROR(orv::checkVectors(len, src1, src2, dst));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    dst[i] = static_cast<orv16u>(static_cast<unsigned>(src1[i]) * src2[i]);
  }
  return orvOk;
}

// Both sources as floating-point numbers; the product (exact in double) is
// rounded once to 32f.
orvStatus orvsMul_16s32f(const orv16s* src1, const orv16s* src2, orv32f* dst, int len) {
  ORV_RETURN_IF_ERROR(orv::checkVectors(len, src1, src2, dst));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    dst[i] = static_cast<orv32f>(static_cast<double>(src1[i]) * static_cast<double>(src2[i]));
  }
  return orvOk;
}

orvStatus orvsMul_16s32s_Sfs(const orv16s* src1, const orv16s* src2, orv32s* dst, int len,
                             int scaleFactor) {
  return mul16s32s(src1, src2, dst, len, scaleFactor);
}

orvStatus orvsMul_16u16s_Sfs(const orv16u* src1, const orv16s* src2, orv16s* dst, int len,
                             int scaleFactor) {
  return mul16u16s(src1, src2, dst, len, scaleFactor);
}

// ---- Floating point ----------------------------------------------------------

orvStatus orvsMul_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len) {
  return floatVector(src1, src2, dst, len);
}
orvStatus orvsMul_32f_I(const orv32f* src, orv32f* srcDst, int len) {
  return floatVector<orv32f>(src, srcDst, srcDst, len);
}
orvStatus orvsMul_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len) {
  return floatVector(src1, src2, dst, len);
}
orvStatus orvsMul_64f_I(const orv64f* src, orv64f* srcDst, int len) {
  return floatVector<orv64f>(src, srcDst, srcDst, len);
}
// The 32fc products run in the vector loops of complex_mul.hpp, which give
// the bits of the plain double evaluation.
orvStatus orvsMul_32fc(const orv32fc* src1, const orv32fc* src2, orv32fc* dst, int len) {
  ORV_RETURN_IF_ERROR(orv::checkVectors(len, src1, src2, dst));
  orv::arith::mul32fc(src1, src2, dst, len);
  return orvOk;
}
orvStatus orvsMul_32fc_I(const orv32fc* src, orv32fc* srcDst, int len) {
  ORV_RETURN_IF_ERROR(orv::checkVectors(len, src, srcDst));
  orv::arith::mul32fc(src, srcDst, srcDst, len);
  return orvOk;
}
orvStatus orvsMul_64fc(const orv64fc* src1, const orv64fc* src2, orv64fc* dst, int len) {
  return floatComplexVector(src1, src2, dst, len);
}
orvStatus orvsMul_64fc_I(const orv64fc* src, orv64fc* srcDst, int len) {
  return floatComplexVector<orv64fc>(src, srcDst, srcDst, len);
}

orvStatus orvsMulC_32f(const orv32f* src, orv32f val, orv32f* dst, int len) {
  return floatScalar(src, val, dst, len, false);
}
orvStatus orvsMulC_32f_I(orv32f val, orv32f* srcDst, int len) {
  return floatScalar<orv32f>(srcDst, val, srcDst, len, true);
}
orvStatus orvsMulC_64f(const orv64f* src, orv64f val, orv64f* dst, int len) {
  return floatScalar(src, val, dst, len, false);
}
orvStatus orvsMulC_64f_I(orv64f val, orv64f* srcDst, int len) {
  return floatScalar<orv64f>(srcDst, val, srcDst, len, true);
}
orvStatus orvsMulC_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len) {
  return floatComplexScalar(src, val, dst, len);
}
orvStatus orvsMulC_32fc_I(orv32fc val, orv32fc* srcDst, int len) {
  return floatComplexScalar<orv32fc>(srcDst, val, srcDst, len);
}
orvStatus orvsMulC_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len) {
  return floatComplexScalar(src, val, dst, len);
}
orvStatus orvsMulC_64fc_I(orv64fc val, orv64fc* srcDst, int len) {
  return floatComplexScalar<orv64fc>(srcDst, val, srcDst, len);
}

}  // extern "C"
