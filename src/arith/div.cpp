// Div, DivC and DivCRev. Every quotient, also of integers, is computed in
// double (the working precision) and rounded by its own rule:
//
//   8u, 16u    (y + 0.5) truncated: ties go up
//   16s, 16sc  y + 0.5 above 0, else y - 0.5, truncated: ties away from zero
//
// A power of two of a scale is the 32-bit integer 1 shifted left by |s|
// modulo 32: there are no scale limits and no constant shortcuts here.
//
// A zero divisor element in the two-vector forms gives a fixed result and
// orvWarnDivByZero after the whole vector; a zero scalar divisor is an error
// before anything is written. The scalar forms multiply by a reciprocal
// formed once per call.
#include <immintrin.h>

#include <cstdint>
#include <limits>

#include "arith/real_quotient.hpp"
#include "arith/shortcuts.hpp"
#include "core/cpu.hpp"
#include "core/float_to_int.hpp"
#include "core/internal.hpp"
#include "core/scale.hpp"

namespace orv {
namespace divide {
namespace {

using arith::zeroOrNaN;

// Integer results from the truncating store; a narrower element keeps the
// low bits of the 32-bit integer.
template <typename T>
inline T truncated(double v) {
  return static_cast<T>(truncateToInt32(v));
}

// Ties away from zero, no saturation.
inline orv16s awayFromZero16s(double y) {
  return truncated<orv16s>(y > 0 ? y + 0.5 : y - 0.5);
}

// Ties away from zero, limited to 16s before rounding.
inline orv16s saturatedAwayFromZero16s(double y) {
  if (y > 0) return y >= 32767.0 ? orv16s{32767} : truncated<orv16s>(y + 0.5);
  return y <= -32768.0 ? orv16s{-32768} : truncated<orv16s>(y - 0.5);
}

// Ties up, limited above to 255.
inline orv8u saturatedUp8u(double y) {
  return y >= 255.0 ? orv8u{255} : truncated<orv8u>(y + 0.5);
}

// dst[i] = quotient(dividend[i], divisor[i]) for a non-zero divisor; a zero
// divisor gives the upper bound of T for a positive dividend, the lower one
// for a negative dividend, 0 for a zero one, and the warning.
template <typename T, typename Quotient>
orvStatus integerQuotients(const T* divisor, const T* dividend, T* dst, int len,
                           const Quotient& quotient) {
  orvStatus status = orvOk;
  const SignOnlyStep<T, std::int32_t> byZero{};
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const T b = divisor[i];
    const T a = dividend[i];
    if (b == 0) {
      status = orvWarnDivByZero;
      dst[i] = static_cast<T>(byZero(a));
    } else {
      dst[i] = quotient(a, b);
    }
  }
  return status;
}

orvStatus divide8u(const orv8u* divisor, const orv8u* dividend, orv8u* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, divisor, dividend, dst));
  const double p = powerOfTwoMod32(scaleDistance(s));
  if (s == 0) {
    return integerQuotients(divisor, dividend, dst, len, [](double a, double b) {
      return truncated<orv8u>(a / b + 0.5);
    });
  }
  if (s > 0) {
    return integerQuotients(divisor, dividend, dst, len, [p](double a, double b) {
      return truncated<orv8u>(a / (b * p) + 0.5);
    });
  }
  return integerQuotients(divisor, dividend, dst, len, [p](double a, double b) {
    return saturatedUp8u(a * p / b);
  });
}

orvStatus divide16s(const orv16s* divisor, const orv16s* dividend, orv16s* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, divisor, dividend, dst));
  if (s == 0) {
    return integerQuotients(divisor, dividend, dst, len, [](double a, double b) {
      return awayFromZero16s(a / b);
    });
  }
  if (s > 0) {
    const double p = powerOfTwoMod32(scaleDistance(s));
    return integerQuotients(divisor, dividend, dst, len, [p](double a, double b) {
      return awayFromZero16s(a / (b * p));
    });
  }
  // The dividend is shifted as a 32-bit integer and wraps from a distance of
  // 16 up.
  const std::uint32_t d = scaleDistance(s) & 31u;
  return integerQuotients(divisor, dividend, dst, len, [d](orv16s a, orv16s b) {
    const auto shifted = static_cast<std::int32_t>(static_cast<std::uint32_t>(a) << d);
    return saturatedAwayFromZero16s(static_cast<double>(shifted) / b);
  });
}

// The factor of a complex scale: 2^-s for a negative s, 1 / 2^s for a
// positive one.
inline double complexScaleFactor(int s) {
  const double p = powerOfTwoMod32(scaleDistance(s));
  if (s == 0) return 1.0;
  return s < 0 ? p : 1.0 / p;
}

inline std::int32_t wrapping32(std::int64_t v) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
}

orvStatus divide16sc(const orv16sc* divisor, const orv16sc* dividend, orv16sc* dst, int len,
                     int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, divisor, dividend, dst));
  const double f = complexScaleFactor(s);
  const SignOnlyStep<orv16s, std::int32_t> byZero{};
  orvStatus status = orvOk;
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const std::int64_t a = dividend[i].re, b = dividend[i].im;
    const std::int64_t c = divisor[i].re, d = divisor[i].im;
    // Each sum as a 32-bit integer, with no guard against the wrap.
    const std::int32_t m = wrapping32(c * c + d * d);
    const std::int32_t p = wrapping32(a * c + b * d);
    const std::int32_t q = wrapping32(b * c - a * d);
    orv16s re, im;
    if (m == 0) {
      status = orvWarnDivByZero;
      re = static_cast<orv16s>(byZero(p));
      im = static_cast<orv16s>(byZero(q));
    } else {
      const double r = f / m;
      re = saturatedAwayFromZero16s(p * r);
      im = saturatedAwayFromZero16s(r * q);
    }
    dst[i].re = re;
    dst[i].im = im;
  }
  return status;
}

// ---- Floating point ----------------------------------------------------------

using arith::byZeroDivisor;

template <typename T>
orvStatus floatQuotients(const T* divisor, const T* dividend, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, divisor, dividend, dst));
  if constexpr (sizeof(T) == 4) {
    return arith::quotients32f(divisor, dividend, dst, len);
  } else {
    return arith::quotientsPlain(divisor, dividend, dst, len);
  }
}

template <typename C>
orvStatus floatComplexQuotients(const C* divisor, const C* dividend, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, divisor, dividend, dst));
  using T = decltype(C::re);
  orvStatus status = orvOk;
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double a = dividend[i].re, b = dividend[i].im;
    const double c = divisor[i].re, d = divisor[i].im;
    const double m = c * c + d * d;
    const double p = a * c + b * d;
    const double q = c * b - d * a;
    T re, im;
    if (zeroOrNaN(m)) {
      status = orvWarnDivByZero;
      re = byZeroDivisor<T>(p);
      im = byZeroDivisor<T>(q);
    } else {
      const double r = 1.0 / m;
      re = static_cast<T>(p * r);
      im = static_cast<T>(q * r);
    }
    dst[i].re = re;
    dst[i].im = im;
  }
  return status;
}

// ---- Scalar divisors -----------------------------------------------------------

template <typename T, typename Quotient>
void scalarQuotients(const T* src, T* dst, int len, const Quotient& quotient) {
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) dst[i] = quotient(src[i]);
}

orvStatus scalar8u(const orv8u* src, orv8u val, orv8u* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (val == 0) return orvErrDivideByZero;
  const double r = 1.0 / val;
  const double p = powerOfTwoMod32(scaleDistance(s));
  if (s < 0) {
    scalarQuotients(src, dst, len, [p, r](double a) { return saturatedUp8u(a * p * r); });
  } else {
    const double rs = s == 0 ? r : r * (1.0 / p);
    scalarQuotients(src, dst, len, [rs](double a) { return truncated<orv8u>(a * rs + 0.5); });
  }
  return orvOk;
}

// The 16s scalar quotients eight elements a pass in AVX2 registers, on the
// leading multiple of 8 of n elements; returns that count. Each element is
// a * p * r (kScaleUp) or a * p (otherwise) in double, the same
// multiplications in the same order as the plain loops, then rounded as
// they round it:
//   - ties away from zero: y + 0.5 above 0 and y - 0.5 otherwise is y plus
//     0.5 with the sign of y (for y = +0 or -0 both truncate to 0);
//   - kScaleUp saturates first: clamping y to [-32768, 32767] and then
//     rounding gives the bound exactly where the plain test does, and the
//     plain rounding elsewhere;
//   - truncation of values within the 32-bit range is what a C cast does;
//     without kScaleUp |y| <= 32768, so the 32-bit value is always exact and
//     its low 16 bits are stored, as the plain store keeps them.
template <bool kScaleUp>
__attribute__((target("avx2"))) inline __m128i roundedQuotients4(__m128i a4, __m256d p, __m256d r) {
  __m256d y = _mm256_mul_pd(_mm256_cvtepi32_pd(a4), p);
  if constexpr (kScaleUp) {
    y = _mm256_mul_pd(y, r);
    y = _mm256_min_pd(_mm256_max_pd(y, _mm256_set1_pd(-32768.0)), _mm256_set1_pd(32767.0));
  }
  const __m256d half = _mm256_or_pd(_mm256_and_pd(y, _mm256_set1_pd(-0.0)), _mm256_set1_pd(0.5));
  return _mm256_cvttpd_epi32(_mm256_add_pd(y, half));
}

template <bool kScaleUp>
__attribute__((target("avx2"))) std::ptrdiff_t quotients16sAvx2(const orv16s* src, orv16s* dst,
                                                                 std::ptrdiff_t n, double p, double r) {
  const __m256d pp = _mm256_set1_pd(p), rr = _mm256_set1_pd(r);
  const __m128i low16 = _mm_set1_epi32(0xFFFF);
  std::ptrdiff_t i = 0;
  for (; i + 8 <= n; i += 8) {
    const __m256i a = _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i)));
    const __m128i lo = roundedQuotients4<kScaleUp>(_mm256_castsi256_si128(a), pp, rr);
    const __m128i hi = roundedQuotients4<kScaleUp>(_mm256_extracti128_si256(a, 1), pp, rr);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                     _mm_packus_epi32(_mm_and_si128(lo, low16), _mm_and_si128(hi, low16)));
  }
  return i;
}

orvStatus scalar16s(const orv16s* src, orv16s val, orv16s* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (val == 0) return orvErrDivideByZero;
  const double r = 1.0 / val;
  const double p = powerOfTwoMod32(scaleDistance(s));
  const bool vectors = cpu::hasAvx2();
  if (s < 0) {
    // The dividend is scaled in floating point: no wrap.
    const std::ptrdiff_t done = vectors ? quotients16sAvx2<true>(src, dst, len, p, r) : 0;
    scalarQuotients(src + done, dst + done, int(len - done),
                    [p, r](double a) { return saturatedAwayFromZero16s(a * p * r); });
  } else {
    const double rs = s == 0 ? r : r * (1.0 / p);
    const std::ptrdiff_t done = vectors ? quotients16sAvx2<false>(src, dst, len, rs, 1.0) : 0;
    scalarQuotients(src + done, dst + done, int(len - done), [rs](double a) { return awayFromZero16s(a * rs); });
  }
  return orvOk;
}

orvStatus scalar16sc(const orv16sc* src, orv16sc val, orv16sc* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (val.re == 0 && val.im == 0) return orvErrDivideByZero;
  const std::int64_t c = val.re, d = val.im;
  const double r = complexScaleFactor(s) * (1.0 / wrapping32(c * c + d * d));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const std::int64_t a = src[i].re, b = src[i].im;
    const std::int32_t p = wrapping32(a * c + b * d);
    const std::int32_t q = wrapping32(b * c - a * d);
    const orv16s re = saturatedAwayFromZero16s(p * r);
    const orv16s im = saturatedAwayFromZero16s(q * r);
    dst[i].re = re;
    dst[i].im = im;
  }
  return orvOk;
}

template <typename C>
orvStatus floatComplexScalar(const C* src, C val, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (val.re == 0 && val.im == 0) return orvErrDivideByZero;
  using T = decltype(C::re);
  const double c = val.re, d = val.im;
  const double r = 1.0 / (c * c + d * d);
  const double negD = -d;
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double a = src[i].re, b = src[i].im;
    const T re = static_cast<T>((a * c + b * d) * r);
    const T im = static_cast<T>((a * negD + b * c) * r);
    dst[i].re = re;
    dst[i].im = im;
  }
  return orvOk;
}

// val / src on 16u. A val of 0 clears dst before anything else is looked at.
orvStatus reverse16u(const orv16u* src, orv16u val, orv16u* dst, int len) {
  if (val == 0) return arith::clearElements(dst, len);
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  const double v = val;
  orvStatus status = orvOk;
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const orv16u b = src[i];
    if (b == 0) {
      status = orvWarnDivByZero;
      dst[i] = 65535;
    } else {
      dst[i] = truncated<orv16u>(v / b + 0.5);
    }
  }
  return status;
}

}  // namespace
}  // namespace divide
}  // namespace orv

using namespace orv::divide;

extern "C" {

// ---- Two vectors: src2 / src1 -----------------------------------------------------
// Each in-place form is its out-of-place form with dst = srcDst.

orvStatus orvsDiv_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor) {
  return divide8u(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsDiv_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor) {
  return orvsDiv_8u_Sfs(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsDiv_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len,
                          int scaleFactor) {
  return divide16s(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsDiv_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  return orvsDiv_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsDiv_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len,
                           int scaleFactor) {
  return divide16sc(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsDiv_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor) {
  return orvsDiv_16sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}
orvStatus orvsDiv_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len) {
  return floatQuotients(src1, src2, dst, len);
}
orvStatus orvsDiv_32f_I(const orv32f* src, orv32f* srcDst, int len) {
  return orvsDiv_32f(src, srcDst, srcDst, len);
}
orvStatus orvsDiv_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len) {
  return floatQuotients(src1, src2, dst, len);
}
orvStatus orvsDiv_64f_I(const orv64f* src, orv64f* srcDst, int len) {
  return orvsDiv_64f(src, srcDst, srcDst, len);
}
orvStatus orvsDiv_32fc(const orv32fc* src1, const orv32fc* src2, orv32fc* dst, int len) {
  return floatComplexQuotients(src1, src2, dst, len);
}
orvStatus orvsDiv_32fc_I(const orv32fc* src, orv32fc* srcDst, int len) {
  return orvsDiv_32fc(src, srcDst, srcDst, len);
}
orvStatus orvsDiv_64fc(const orv64fc* src1, const orv64fc* src2, orv64fc* dst, int len) {
  return floatComplexQuotients(src1, src2, dst, len);
}
orvStatus orvsDiv_64fc_I(const orv64fc* src, orv64fc* srcDst, int len) {
  return orvsDiv_64fc(src, srcDst, srcDst, len);
}

// ---- Scalar divisor: src / val ----------------------------------------------------

orvStatus orvsDivC_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor) {
  return scalar8u(src, val, dst, len, scaleFactor);
}
orvStatus orvsDivC_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor) {
  return orvsDivC_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}
orvStatus orvsDivC_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor) {
  return scalar16s(src, val, dst, len, scaleFactor);
}
orvStatus orvsDivC_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor) {
  return orvsDivC_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}
orvStatus orvsDivC_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len,
                            int scaleFactor) {
  return scalar16sc(src, val, dst, len, scaleFactor);
}
orvStatus orvsDivC_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor) {
  return orvsDivC_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

// A zero or NaN val is refused before the vectors are looked at; otherwise
// the vector is multiplied by the reciprocal, rounded to the element type.
// So a val of 1.0 copies, and a val whose reciprocal underflows clears.
orvStatus orvsDivC_32f(const orv32f* src, orv32f val, orv32f* dst, int len) {
  if (zeroOrNaN(val)) return orvErrDivideByZero;
  return orvsMulC_32f(src, static_cast<orv32f>(1.0 / static_cast<double>(val)), dst, len);
}
orvStatus orvsDivC_32f_I(orv32f val, orv32f* srcDst, int len) {
  return orvsDivC_32f(srcDst, val, srcDst, len);
}
orvStatus orvsDivC_64f(const orv64f* src, orv64f val, orv64f* dst, int len) {
  if (zeroOrNaN(val)) return orvErrDivideByZero;
  return orvsMulC_64f(src, 1.0 / val, dst, len);
}
orvStatus orvsDivC_64f_I(orv64f val, orv64f* srcDst, int len) {
  return orvsDivC_64f(srcDst, val, srcDst, len);
}
orvStatus orvsDivC_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len) {
  return floatComplexScalar(src, val, dst, len);
}
orvStatus orvsDivC_32fc_I(orv32fc val, orv32fc* srcDst, int len) {
  return orvsDivC_32fc(srcDst, val, srcDst, len);
}
orvStatus orvsDivC_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len) {
  return floatComplexScalar(src, val, dst, len);
}
orvStatus orvsDivC_64fc_I(orv64fc val, orv64fc* srcDst, int len) {
  return orvsDivC_64fc(srcDst, val, srcDst, len);
}

// ---- Reversed: val / src --------------------------------------------------------------

orvStatus orvsDivCRev_16u(const orv16u* src, orv16u val, orv16u* dst, int len) {
  return reverse16u(src, val, dst, len);
}
orvStatus orvsDivCRev_16u_I(orv16u val, orv16u* srcDst, int len) {
  return orvsDivCRev_16u(srcDst, val, srcDst, len);
}

}  // extern "C"
