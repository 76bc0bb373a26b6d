// The vector kernels of the FFT against the plain templates they speed up:
// the public transforms must give the very bits of the plain algorithm.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "orvspx.h"
#include "transform/fft_internal.hpp"

namespace {

template <typename T>
struct Pair {
  T re, im;
};

// The whole transform by the plain templates only, on the context's tables.
template <typename T>
std::vector<T> plainTransform(const orvsFFTContext* ctx, bool inv, std::vector<T> x) {
  using namespace orv::fft;
  const int order = ctx->order;
  const bool scaled = (inv ? ctx->scaleInverse : ctx->scaleForward) != 0;
  const T scale = sizeof(T) == 8 ? T(ctx->scale.f64) : T(ctx->scale.f32);
  std::vector<double> work(std::size_t(ctx->workBytes) / sizeof(double) + 2);
  reorderInPlace(ctx->bitReversal, order, reinterpret_cast<Pair<T>*>(x.data()));
  auto* w = reinterpret_cast<orv8u*>(work.data());
  if (inv) runComplex<true, false>(Interleaved<T>{x.data()}, order, ctx, scaled, scale, w);
  else runComplex<false, false>(Interleaved<T>{x.data()}, order, ctx, scaled, scale, w);
  return x;
}

template <typename T>
void compareAtOrder(int order, int flag, orvStatus (*init)(orvsFFTContext**, int, int, int),
                    orvStatus (*release)(orvsFFTContext*),
                    orvStatus (*fwd)(const T*, T*, const orvsFFTContext*, orv8u*),
                    orvStatus (*invFn)(const T*, T*, const orvsFFTContext*, orv8u*)) {
  orvsFFTContext* ctx = nullptr;
  ASSERT_EQ(init(&ctx, order, flag, 0), orvOk);
  std::mt19937 gen(unsigned(order * 10 + flag));
  std::uniform_real_distribution<double> dist(-1.0, 1.0);
  std::vector<T> x(std::size_t(2) << order);
  for (T& v : x) v = T(dist(gen));
  for (bool inv : {false, true}) {
    std::vector<T> got(x.size());
    ASSERT_EQ((inv ? invFn : fwd)(x.data(), got.data(), ctx, nullptr), orvOk);
    const std::vector<T> want = plainTransform<T>(ctx, inv, x);
    EXPECT_EQ(std::memcmp(got.data(), want.data(), x.size() * sizeof(T)), 0)
        << "order " << order << " flag " << flag << " inverse " << inv;
  }
  release(ctx);
}

orvStatus fwd32(const float* s, float* d, const orvsFFTContext* c, orv8u* w) {
  return orvsFFTFwd_CToC_32fc(reinterpret_cast<const orv32fc*>(s), reinterpret_cast<orv32fc*>(d), c, w);
}
orvStatus inv32(const float* s, float* d, const orvsFFTContext* c, orv8u* w) {
  return orvsFFTInv_CToC_32fc(reinterpret_cast<const orv32fc*>(s), reinterpret_cast<orv32fc*>(d), c, w);
}
orvStatus fwd64(const double* s, double* d, const orvsFFTContext* c, orv8u* w) {
  return orvsFFTFwd_CToC_64fc(reinterpret_cast<const orv64fc*>(s), reinterpret_cast<orv64fc*>(d), c, w);
}
orvStatus inv64(const double* s, double* d, const orvsFFTContext* c, orv8u* w) {
  return orvsFFTInv_CToC_64fc(reinterpret_cast<const orv64fc*>(s), reinterpret_cast<orv64fc*>(d), c, w);
}

// Every path: leaves of every order, the blocked orders, one, two levels.
TEST(FftFastPath, BitIdenticalToThePlainKernels) {
  for (int order = 4; order <= 21; ++order) {
    for (int flag : {orvScaleNone, orvScaleBothSqrt}) {
      compareAtOrder<float>(order, flag, orvsFFTInitAlloc_C_32fc, orvsFFTFree_C_32fc, fwd32, inv32);
      compareAtOrder<double>(order, flag, orvsFFTInitAlloc_C_64fc, orvsFFTFree_C_64fc, fwd64, inv64);
    }
  }
}

TEST(FftFastPath, SpecialValuesTakeTheSamePath) {
  // Infinities, zeros of both signs and NaN through every butterfly kind.
  for (int order : {4, 5, 8, 9, 10, 11, 12, 13}) {
    orvsFFTContext* ctx = nullptr;
    ASSERT_EQ(orvsFFTInitAlloc_C_64fc(&ctx, order, orvScaleNone, 0), orvOk);
    std::vector<double> x(std::size_t(2) << order, 0.0);
    for (std::size_t i = 0; i < x.size(); i += 3) x[i] = -0.0;
    x[6] = INFINITY;
    x[11] = -INFINITY;
    std::vector<double> got(x.size());
    ASSERT_EQ(fwd64(x.data(), got.data(), ctx, nullptr), orvOk);
    const std::vector<double> want = plainTransform<double>(ctx, false, x);
    // Bit for bit, infinities and signed zeros included; a NaN only has to
    // be a NaN, as the compiler may turn a + (-b) into a - b in the plain
    // code, which changes nothing but the sign of a NaN.
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (std::isnan(want[i])) {
        EXPECT_TRUE(std::isnan(got[i])) << "order " << order << " element " << i;
      } else {
        EXPECT_EQ(std::memcmp(&got[i], &want[i], sizeof(double)), 0) << "order " << order << " element " << i;
      }
    }
    orvsFFTFree_C_64fc(ctx);
  }
}

}  // namespace
