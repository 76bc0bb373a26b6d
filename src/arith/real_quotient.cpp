// The vector loops of real_quotient.hpp.
//
// A block of divisors holding a zero or NaN is handed whole to the plain
// loop, which also gives the warning; the other blocks divide in float.
//
// The float division gives the bits of the double quotient rounded to float.
// Let a and b be floats, b finite and non-zero, q = a / b exactly, and let
// the rounding mode be to nearest, ties to even. If a is infinite or NaN,
// both forms pass on the same infinity or the same NaN (a NaN dividend keeps
// its payload through the widening and narrowing); an infinite b gives a
// zero of the same sign, or the default NaN for an infinite a, in both. For
// finite a, rounding to float decides between neighbours at the boundaries
// M = (2K+1) * 2^m, the midpoints of adjacent floats, the top one (halfway
// from the largest float to 2^128) deciding overflow; m = e - 24 for
// boundaries in [2^e, 2^(e+1)) with e >= -126, and m = -150 below 2^-126.
// Every M is a double, and rounding to double is monotonic, so rounding q to
// double first can change the float result only if it lands on some M while
// q != M. That needs |q - M| <= ulp/2 of a double near q, at most
// |q| * 2^-53, and |q| lies in [2^-277, 2^277], well inside the normal
// doubles. Write a = A * 2^s, b = B * 2^t with integers |A|, |B| < 2^24.
// Then q - M = (A * 2^s - (2K+1) * B * 2^(m+t)) / b, whose numerator is a
// non-zero multiple of 2^min(s, m+t):
//   - if that is 2^(m+t): |q - M| >= 2^(m+t) / |b| > 2^(m-24), while
//     |M| < 2^(m+25), so a q that close to M has |q| * 2^-53 < 2^(m-27);
//   - if it is 2^s: |q - M| >= 2^s / |b|, while |q| < 2^(s+24) / |b|, so
//     |q| * 2^-53 < 2^(s-29) / |b|.
// Either way q is too far from M, and the single rounding of the float
// division equals the double rounding of the plain loop.
#include "arith/real_quotient.hpp"

#include <immintrin.h>

namespace orv {
namespace arith {

orvStatus quotients32fSse2(const orv32f* divisor, const orv32f* dividend, orv32f* dst, std::ptrdiff_t n) {
  orvStatus status = orvOk;
  const __m128 zero = _mm_setzero_ps();
  std::ptrdiff_t i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m128 b = _mm_loadu_ps(divisor + i);
    const __m128 a = _mm_loadu_ps(dividend + i);
    // Equal to zero or unordered: a zero or NaN divisor.
    if (_mm_movemask_ps(_mm_or_ps(_mm_cmpeq_ps(b, zero), _mm_cmpunord_ps(b, b))) != 0) {
      status = quotientsPlain(divisor + i, dividend + i, dst + i, 4);
      continue;
    }
    _mm_storeu_ps(dst + i, _mm_div_ps(a, b));
  }
  if (quotientsPlain(divisor + i, dividend + i, dst + i, n - i) != orvOk) status = orvWarnDivByZero;
  return status;
}

__attribute__((target("avx"))) orvStatus quotients32fAvx(const orv32f* divisor, const orv32f* dividend,
                                                         orv32f* dst, std::ptrdiff_t n) {
  orvStatus status = orvOk;
  const __m256 zero = _mm256_setzero_ps();
  std::ptrdiff_t i = 0;
  for (; i + 8 <= n; i += 8) {
    const __m256 b = _mm256_loadu_ps(divisor + i);
    const __m256 a = _mm256_loadu_ps(dividend + i);
    if (_mm256_movemask_ps(_mm256_cmp_ps(b, zero, _CMP_EQ_UQ)) != 0) {
      status = quotientsPlain(divisor + i, dividend + i, dst + i, 8);
      continue;
    }
    _mm256_storeu_ps(dst + i, _mm256_div_ps(a, b));
  }
  if (quotientsPlain(divisor + i, dividend + i, dst + i, n - i) != orvOk) status = orvWarnDivByZero;
  return status;
}

}  // namespace arith
}  // namespace orv
