// Every vector level the processor has against the plain kernels, through the
// public transforms: complex (interleaved) and real in every layout, both
// directions, every flag, orders 0 to 20, in place and out of place, random
// data and special values. Results must agree bit for bit (a NaN only has to
// stay a NaN, its sign being the compiler's choice in the plain code).
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "orvspx.h"
#include "transform/fft_internal.hpp"

namespace {

using orv::fft::fast::kAvx;
using orv::fft::fast::kPlain;
using orv::fft::fast::kTop;
using orv::fft::fast::level;
using orv::fft::fast::limitLevel;

constexpr int kFlags[] = {orvScaleNone, orvScaleBothSqrt, orvScaleForward, orvScaleInverse};

// Runs `run` at the plain level, then at every vector level, and compares.
template <typename T>
void sameAtEveryLevel(const std::function<std::vector<T>()>& run, const std::string& what) {
  limitLevel(kPlain);
  const std::vector<T> want = run();
  limitLevel(kTop);
  for (int l = kAvx; l <= level(); ++l) {
    limitLevel(l);
    const std::vector<T> got = run();
    limitLevel(kTop);
    ASSERT_EQ(got.size(), want.size());
    std::size_t bad = 0;
    for (std::size_t i = 0; i < got.size(); ++i) {
      const bool same = std::isnan(want[i]) ? std::isnan(got[i]) : std::memcmp(&got[i], &want[i], sizeof(T)) == 0;
      if (!same && bad++ < 3) ADD_FAILURE() << what << " level " << l << ": element " << i << " is " << got[i];
    }
    ASSERT_EQ(bad, 0u) << what;
  }
}

// Random data in [-1, 1), or (special) zeros of both signs almost everywhere,
// so that the signs of the exact zeros tell whether a butterfly skipped or did
// a multiplication, with a few subnormals and huge values, and one infinity.
template <typename T>
std::vector<T> data(std::size_t n, unsigned seed, bool special) {
  using L = std::numeric_limits<T>;
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> dist(-1.0, 1.0);
  std::vector<T> x(n);
  for (T& v : x) v = special ? ((gen() & 1) ? T(0) : -T(0)) : T(dist(gen));
  if (!special) return x;
  const T rare[] = {L::denorm_min(), -L::min() / 2, L::max() / 4, -L::max() / 2, L::min(), T(0.75)};
  for (std::size_t i = 0; i < n / 32 + 1; ++i) x[gen() % n] = rare[gen() % 6];
  x[gen() % n] = L::infinity();
  return x;
}

#define FFT_NAMES(T, S)                                                                                         \
  orvStatus initC(T, orvsFFTContext** c, int o, int f) { return orvsFFTInitAlloc_C_##S##c(c, o, f, 0); }       \
  orvStatus freeC(T, orvsFFTContext* c) { return orvsFFTFree_C_##S##c(c); }                                    \
  orvStatus runC(bool inv, const T* s, T* d, const orvsFFTContext* c) {                                         \
    auto* src = reinterpret_cast<const orv##S##c*>(s);                                                          \
    auto* dst = reinterpret_cast<orv##S##c*>(d);                                                                \
    return inv ? orvsFFTInv_CToC_##S##c(src, dst, c, nullptr) : orvsFFTFwd_CToC_##S##c(src, dst, c, nullptr);   \
  }                                                                                                             \
  orvStatus initR(T, orvsFFTContext** c, int o, int f) { return orvsFFTInitAlloc_R_##S(c, o, f, 0); }          \
  orvStatus freeR(T, orvsFFTContext* c) { return orvsFFTFree_R_##S(c); }                                       \
  orvStatus runR(bool inv, int k, const T* s, T* d, const orvsFFTContext* c) {                                  \
    if (inv) return k == 0 ? orvsFFTInv_PermToR_##S(s, d, c, nullptr)                                          \
                           : k == 1 ? orvsFFTInv_PackToR_##S(s, d, c, nullptr) : orvsFFTInv_CCSToR_##S(s, d, c, nullptr); \
    return k == 0 ? orvsFFTFwd_RToPerm_##S(s, d, c, nullptr)                                                   \
                  : k == 1 ? orvsFFTFwd_RToPack_##S(s, d, c, nullptr) : orvsFFTFwd_RToCCS_##S(s, d, c, nullptr); \
  }
FFT_NAMES(float, 32f)
FFT_NAMES(double, 64f)
#undef FFT_NAMES

template <typename T>
void compareComplex(int order, int flag, bool special) {
  orvsFFTContext* ctx = nullptr;
  ASSERT_EQ(initC(T(), &ctx, order, flag), orvOk);
  const std::vector<T> x = data<T>(std::size_t(2) << order, unsigned(order * 8 + flag), special);
  const std::string what = std::string(sizeof(T) == 4 ? "32fc" : "64fc") + " order " + std::to_string(order) +
                           " flag " + std::to_string(flag) + (special ? " special" : "");
  for (bool inv : {false, true}) {
    sameAtEveryLevel<T>([&] {
      std::vector<T> out(x.size());
      EXPECT_EQ(runC(inv, x.data(), out.data(), ctx), orvOk);
      return out;
    }, what + (inv ? " inverse" : " forward"));
    sameAtEveryLevel<T>([&] {
      std::vector<T> in = x;
      EXPECT_EQ(runC(inv, in.data(), in.data(), ctx), orvOk);
      return in;
    }, what + (inv ? " inverse in place" : " forward in place"));
  }
  freeC(T(), ctx);
}

// Forward into each layout and back from it, in place and out of place; the
// inverse is fed the plain forward's spectrum.
template <typename T>
void compareReal(int order, int flag, bool special) {
  orvsFFTContext* ctx = nullptr;
  ASSERT_EQ(initR(T(), &ctx, order, flag), orvOk);
  const std::size_t n = std::size_t(1) << order;
  std::vector<T> x = data<T>(n, unsigned(order * 8 + flag + 3), special);
  for (int k = 0; k < 3; ++k) {
    const std::size_t reals = k == 2 ? n + 2 : n;
    x.resize(reals);
    const std::string what = std::string(sizeof(T) == 4 ? "32f" : "64f") + " order " + std::to_string(order) +
                             " flag " + std::to_string(flag) + " layout " + std::to_string(k) +
                             (special ? " special" : "");
    std::vector<T> spec(reals);
    limitLevel(kPlain);
    ASSERT_EQ(runR(false, k, x.data(), spec.data(), ctx), orvOk);
    limitLevel(kTop);
    for (bool inPlace : {false, true}) {
      sameAtEveryLevel<T>([&] {
        std::vector<T> src = x, out(reals);
        EXPECT_EQ(runR(false, k, src.data(), inPlace ? src.data() : out.data(), ctx), orvOk);
        return inPlace ? src : out;
      }, what + " forward" + (inPlace ? " in place" : ""));
      sameAtEveryLevel<T>([&] {
        std::vector<T> src = spec, out(n);
        EXPECT_EQ(runR(true, k, src.data(), inPlace ? src.data() : out.data(), ctx), orvOk);
        src.resize(n);
        return inPlace ? src : out;
      }, what + " inverse" + (inPlace ? " in place" : ""));
    }
  }
  freeR(T(), ctx);
}

TEST(FftLevels, MatchThePlainKernelsAtEveryOrderAndFlag) {
  for (int order = 0; order <= 20; ++order) {
    for (int flag : kFlags) {
      // Special values at the orders of every kind of path: leaves of even and
      // odd order, the blocked orders and the four-step levels.
      for (bool special : {false, true}) {
        if (special && (order < 4 || order > 15 || flag == orvScaleNone || flag == orvScaleInverse)) continue;
        compareComplex<float>(order, flag, special);
        compareComplex<double>(order, flag, special);
        compareReal<float>(order, flag, special);
        compareReal<double>(order, flag, special);
      }
    }
  }
}

TEST(FftLevels, DispatchNeverExceedsTheProcessor) {
  const int has = level();
  limitLevel(kTop + 5);
  EXPECT_EQ(level(), has);
  limitLevel(kPlain);
  EXPECT_EQ(level(), kPlain);
  EXPECT_FALSE(orv::fft::fast::available());
  limitLevel(kTop);
  EXPECT_EQ(level(), has);
  EXPECT_EQ(orv::fft::fast::available(), __builtin_cpu_supports("avx") != 0);
}

}  // namespace
