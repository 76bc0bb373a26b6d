// The loops of complex_mul.hpp. Rounding to float uses the processor's
// default mode, round to nearest, as a C cast does.
#include "arith/complex_mul.hpp"

#include <immintrin.h>

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

bool processorHasAvx() { return __builtin_cpu_supports("avx"); }

}  // namespace arith
}  // namespace orv
