// The sums of the fast direct FIR kernel: many outputs at once, one vector
// lane per output. Each lane starts from 0.0 and adds its products in
// ascending tap order, one multiply and one add per term (never fused), which
// is exactly the plain sum of that output.
#include <immintrin.h>

#include "core/cpu.hpp"
#include "filter/fir_kernels.hpp"

namespace orv {
namespace filter {

namespace {

void dotPlain(const double* h, int tapsLen, const double* x, double* y, int count) {
  for (int n = 0; n < count; ++n) {
    double acc = 0.0;
    const double* p = x + n;
    for (int j = 0; j < tapsLen; ++j) acc += h[j] * p[j];
    y[n] = acc;
  }
}

// Baseline: sixteen outputs in eight two-lane accumulators.
}  // namespace

void firDotDoublesSse2(const double* h, int tapsLen, const double* x, double* y, int count) {
  int n = 0;
  for (; n + 16 <= count; n += 16) {
    __m128d a[8];
    for (__m128d& v : a) v = _mm_setzero_pd();
    const double* p = x + n;
    for (int j = 0; j < tapsLen; ++j) {
      const __m128d t = _mm_set1_pd(h[j]);
      const double* q = p + j;
      for (int k = 0; k < 8; ++k) a[k] = _mm_add_pd(a[k], _mm_mul_pd(t, _mm_loadu_pd(q + 2 * k)));
    }
    for (int k = 0; k < 8; ++k) _mm_storeu_pd(y + n + 2 * k, a[k]);
  }
  dotPlain(h, tapsLen, x + n, y + n, count - n);
}

// With AVX: thirty-two outputs in eight four-lane accumulators, then four
// at a time.
__attribute__((target("avx"))) void firDotDoublesAvx(const double* h, int tapsLen,
                                                     const double* x, double* y, int count) {
  int n = 0;
  for (; n + 32 <= count; n += 32) {
    __m256d a0 = _mm256_setzero_pd(), a1 = a0, a2 = a0, a3 = a0, a4 = a0, a5 = a0, a6 = a0,
            a7 = a0;
    const double* p = x + n;
    for (int j = 0; j < tapsLen; ++j) {
      const __m256d t = _mm256_broadcast_sd(h + j);
      const double* q = p + j;
      a0 = _mm256_add_pd(a0, _mm256_mul_pd(t, _mm256_loadu_pd(q)));
      a1 = _mm256_add_pd(a1, _mm256_mul_pd(t, _mm256_loadu_pd(q + 4)));
      a2 = _mm256_add_pd(a2, _mm256_mul_pd(t, _mm256_loadu_pd(q + 8)));
      a3 = _mm256_add_pd(a3, _mm256_mul_pd(t, _mm256_loadu_pd(q + 12)));
      a4 = _mm256_add_pd(a4, _mm256_mul_pd(t, _mm256_loadu_pd(q + 16)));
      a5 = _mm256_add_pd(a5, _mm256_mul_pd(t, _mm256_loadu_pd(q + 20)));
      a6 = _mm256_add_pd(a6, _mm256_mul_pd(t, _mm256_loadu_pd(q + 24)));
      a7 = _mm256_add_pd(a7, _mm256_mul_pd(t, _mm256_loadu_pd(q + 28)));
    }
    double* o = y + n;
    _mm256_storeu_pd(o, a0);
    _mm256_storeu_pd(o + 4, a1);
    _mm256_storeu_pd(o + 8, a2);
    _mm256_storeu_pd(o + 12, a3);
    _mm256_storeu_pd(o + 16, a4);
    _mm256_storeu_pd(o + 20, a5);
    _mm256_storeu_pd(o + 24, a6);
    _mm256_storeu_pd(o + 28, a7);
  }
  for (; n + 4 <= count; n += 4) {
    __m256d a = _mm256_setzero_pd();
    const double* p = x + n;
    for (int j = 0; j < tapsLen; ++j)
      a = _mm256_add_pd(a, _mm256_mul_pd(_mm256_broadcast_sd(h + j), _mm256_loadu_pd(p + j)));
    _mm256_storeu_pd(y + n, a);
  }
  dotPlain(h, tapsLen, x + n, y + n, count - n);
}

void firDotDoubles(const double* h, int tapsLen, const double* x, double* y, int count) {
  if (cpu::hasAvx()) {
    firDotDoublesAvx(h, tapsLen, x, y, count);
  } else {
    firDotDoublesSse2(h, tapsLen, x, y, count);
  }
}

}  // namespace filter
}  // namespace orv
