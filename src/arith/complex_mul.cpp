// The loops of complex_mul.hpp. Rounding to float uses the processor's
// default mode, round to nearest, as a C cast does.
#include "arith/complex_mul.hpp"

#include <immintrin.h>

#include <cstdint>

namespace orv {
namespace arith {

void mul32fcPlain(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double a = x[i].re, b = x[i].im, c = y[i].re, d = y[i].im;
    const float re = static_cast<float>(a * c - b * d);
    const float im = static_cast<float>(a * d + b * c);
    dst[i].re = re;
    dst[i].im = im;
  }
}

namespace {

// [a, b] as doubles from one complex element.
inline __m128d loadWidened(const orv32fc* p) {
  return _mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(p))));
}

}  // namespace

void mul32fcSse2(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n) {
  const __m128d negateLow = _mm_set_pd(0.0, -0.0);
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const __m128d ab = loadWidened(x + i);
    const __m128d cd = loadWidened(y + i);
    const __m128d cc = _mm_unpacklo_pd(cd, cd);
    const __m128d dd = _mm_unpackhi_pd(cd, cd);
    const __m128d ba = _mm_shuffle_pd(ab, ab, 1);
    const __m128d acBc = _mm_mul_pd(ab, cc);                         // [a*c, b*c]
    const __m128d bdAd = _mm_xor_pd(_mm_mul_pd(ba, dd), negateLow);  // [-(b*d), a*d]
    const __m128 parts = _mm_cvtpd_ps(_mm_add_pd(acBc, bdAd));
    _mm_storel_pi(reinterpret_cast<__m64*>(dst + i), parts);
  }
}

__attribute__((target("avx"))) void mul32fcAvx(const orv32fc* x, const orv32fc* y, orv32fc* dst,
                                                std::ptrdiff_t n) {
  std::ptrdiff_t i = 0;
  for (; i + 2 <= n; i += 2) {
    // [a0, b0, a1, b1] and [c0, d0, c1, d1]
    const __m256d ab = _mm256_cvtps_pd(_mm_loadu_ps(reinterpret_cast<const float*>(x + i)));
    const __m256d cd = _mm256_cvtps_pd(_mm_loadu_ps(reinterpret_cast<const float*>(y + i)));
    const __m256d cc = _mm256_movedup_pd(cd);
    const __m256d dd = _mm256_permute_pd(cd, 0xF);
    const __m256d ba = _mm256_permute_pd(ab, 0x5);
    const __m256d acBc = _mm256_mul_pd(ab, cc);  // [a*c, b*c, ...]
    const __m256d bdAd = _mm256_mul_pd(ba, dd);  // [b*d, a*d, ...]
    // Even lanes a*c - b*d, odd lanes b*c + a*d.
    const __m128 parts = _mm256_cvtpd_ps(_mm256_addsub_pd(acBc, bdAd));
    _mm_storeu_ps(reinterpret_cast<float*>(dst + i), parts);
  }
  mul32fcPlain(x + i, y + i, dst + i, n - i);
}

// A fused multiply-add rounds x*y + z once. Where x*y is the product of
// two floats widened to double it is exact: 24 + 24 significant bits fit the
// 53 of a double, and its magnitude lies between 2^-298 and 2^256, far from
// the limits of the double range. So fma(x, y, z) equals the double sum
// (x*y) + z of the separate multiplication, for every input:
//   - finite operands: both round the same exact value once;
//   - an infinite or NaN x*y (inf * 0 included, which is invalid in both)
//     reaches the sum as the same infinity or as a NaN;
//   - a zero x*y has the sign of the exact product, which is the sign the
//     rounded product has, and a zero sum takes its sign from the same
//     addition rule.
// The two forms can differ only in which of several NaN operands they pass
// on, as any reordering of commutative operations does.
//
// Here the even lanes are a*c - b*d and the odd lanes b*c + a*d, each with
// the first product fused; the result of elements i and i+1 as four floats.
namespace {

__attribute__((target("avx,fma"))) inline __m128 twoProductsFma(const orv32fc* x, const orv32fc* y) {
  // [a0, b0, a1, b1] and [c0, d0, c1, d1]
  const __m256d ab = _mm256_cvtps_pd(_mm_loadu_ps(reinterpret_cast<const float*>(x)));
  const __m256d cd = _mm256_cvtps_pd(_mm_loadu_ps(reinterpret_cast<const float*>(y)));
  const __m256d cc = _mm256_movedup_pd(cd);
  const __m256d dd = _mm256_permute_pd(cd, 0xF);
  const __m256d ba = _mm256_permute_pd(ab, 0x5);
  const __m256d bdAd = _mm256_mul_pd(ba, dd);  // [b*d, a*d, ...]
  return _mm256_cvtpd_ps(_mm256_fmaddsub_pd(ab, cc, bdAd));
}

}  // namespace

__attribute__((target("avx,fma"))) void mul32fcAvxFma(const orv32fc* x, const orv32fc* y, orv32fc* dst,
                                                       std::ptrdiff_t n) {
  std::ptrdiff_t i = 0;
  // A streaming store needs a 16-byte aligned address; a dst aligned to 8
  // bytes gets there after at most one element.
  const auto address = reinterpret_cast<std::uintptr_t>(dst);
  if (n >= kMul32fcStreamingElements && address % 8 == 0) {
    if (address % 16 != 0) {
      mul32fcPlain(x, y, dst, 1);
      i = 1;
    }
    for (; i + 2 <= n; i += 2) _mm_stream_ps(reinterpret_cast<float*>(dst + i), twoProductsFma(x + i, y + i));
    // Streaming stores are weakly ordered; make them visible before any
    // later store.
    _mm_sfence();
  } else {
    for (; i + 2 <= n; i += 2) _mm_storeu_ps(reinterpret_cast<float*>(dst + i), twoProductsFma(x + i, y + i));
  }
  mul32fcPlain(x + i, y + i, dst + i, n - i);
}

void mulC32fcPlain(const orv32fc* x, orv32fc v, orv32fc* dst, std::ptrdiff_t n) {
  const double c = v.re, d = v.im;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double a = x[i].re, b = x[i].im;
    const float re = static_cast<float>(a * c - b * d);
    const float im = static_cast<float>(a * d + b * c);
    dst[i].re = re;
    dst[i].im = im;
  }
}

__attribute__((target("avx,fma"))) void mulC32fcAvxFma(const orv32fc* x, orv32fc v, orv32fc* dst,
                                                        std::ptrdiff_t n) {
  const __m256d cc = _mm256_set1_pd(v.re);
  const __m256d dd = _mm256_set1_pd(v.im);
  std::ptrdiff_t i = 0;
  for (; i + 2 <= n; i += 2) {
    // [a0, b0, a1, b1]; even lanes a*c - b*d, odd lanes b*c + a*d.
    const __m256d ab = _mm256_cvtps_pd(_mm_loadu_ps(reinterpret_cast<const float*>(x + i)));
    const __m256d bdAd = _mm256_mul_pd(_mm256_permute_pd(ab, 0x5), dd);
    _mm_storeu_ps(reinterpret_cast<float*>(dst + i), _mm256_cvtpd_ps(_mm256_fmaddsub_pd(ab, cc, bdAd)));
  }
  mulC32fcPlain(x + i, v, dst + i, n - i);
}

void mul64fcPlain(const orv64fc* x, const orv64fc* y, orv64fc* dst, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double a = x[i].re, b = x[i].im, c = y[i].re, d = y[i].im;
    const double re = a * c - b * d;
    const double im = b * c + a * d;
    dst[i].re = re;
    dst[i].im = im;
  }
}

namespace {

// Elements i and i+1: even lanes a*c - b*d, odd lanes b*c + a*d.
__attribute__((target("avx"))) inline __m256d twoProducts64(const orv64fc* x, const orv64fc* y) {
  const __m256d ab = _mm256_loadu_pd(&x->re);  // [a0, b0, a1, b1]
  const __m256d cd = _mm256_loadu_pd(&y->re);  // [c0, d0, c1, d1]
  const __m256d acBc = _mm256_mul_pd(ab, _mm256_movedup_pd(cd));
  const __m256d bdAd = _mm256_mul_pd(_mm256_permute_pd(ab, 0x5), _mm256_permute_pd(cd, 0xF));
  return _mm256_addsub_pd(acBc, bdAd);
}

}  // namespace

__attribute__((target("avx"))) void mul64fcAvx(const orv64fc* x, const orv64fc* y, orv64fc* dst,
                                                std::ptrdiff_t n) {
  std::ptrdiff_t i = 0;
  for (; i + 2 <= n; i += 2) _mm256_storeu_pd(&dst[i].re, twoProducts64(x + i, y + i));
  mul64fcPlain(x + i, y + i, dst + i, n - i);
}

}  // namespace arith
}  // namespace orv
