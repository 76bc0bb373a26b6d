// Every vector level the processor has against the plain kernels, through the
// public transforms: complex (interleaved) and real, both directions, every
// flag, orders 0 to 20, in place and out of place, random data and special
// values. The plain level is the reference; the results must agree bit for
// bit (a NaN only has to stay a NaN, its sign being the compiler's choice in
// the plain code).
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "orvspx.h"
#include "transform/fft_internal.hpp"

namespace {

using orv::fft::fast::kAvx;
using orv::fft::fast::kPlain;
using orv::fft::fast::level;
using orv::fft::fast::limitLevel;

// Caps the vector level for the lifetime of the object.
class LevelCap {
 public:
  explicit LevelCap(int cap) { limitLevel(cap); }
  ~LevelCap() { limitLevel(kAvx); }
};

// The levels above plain that this processor runs.
std::vector<int> vectorLevels() {
  std::vector<int> out;
  for (int l = kAvx; l <= level(); ++l) out.push_back(l);
  return out;
}

constexpr int kFlags[] = {orvScaleNone, orvScaleBothSqrt, orvScaleForward, orvScaleInverse};

template <typename T>
void expectSameBits(const std::vector<T>& got, const std::vector<T>& want, const std::string& what) {
  ASSERT_EQ(got.size(), want.size());
  std::size_t bad = 0;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const bool same = std::isnan(want[i]) ? std::isnan(got[i]) : std::memcmp(&got[i], &want[i], sizeof(T)) == 0;
    if (!same && bad++ < 3) ADD_FAILURE() << what << ": element " << i << " is " << got[i] << ", want " << want[i];
  }
  EXPECT_EQ(bad, 0u) << what;
}

template <typename T>
std::vector<T> randomData(std::size_t n, unsigned seed) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> dist(-1.0, 1.0);
  std::vector<T> x(n);
  for (T& v : x) v = T(dist(gen));
  return x;
}

// Zeros of both signs almost everywhere, so that most results stay exact
// zeros whose signs tell whether a butterfly skipped or did a multiplication;
// among them a few subnormals and values near the top of the range, and one
// infinity, whose trail of infinities and NaNs must come out the same.
template <typename T>
std::vector<T> specialData(std::size_t n, unsigned seed) {
  using L = std::numeric_limits<T>;
  std::mt19937 gen(seed);
  std::vector<T> x(n);
  for (T& v : x) v = (gen() & 1) ? T(0) : -T(0);
  const T rare[] = {L::denorm_min(), -L::min() / 2, L::max() / 4, -L::max() / 2, L::min(), T(0.75)};
  for (std::size_t i = 0; i < n / 32 + 1; ++i) x[gen() % n] = rare[gen() % 6];
  x[gen() % n] = L::infinity();
  return x;
}

// ---- Complex --------------------------------------------------------------------

template <typename T>
struct ComplexForm;
template <>
struct ComplexForm<float> {
  static constexpr auto init = orvsFFTInitAlloc_C_32fc;
  static constexpr auto release = orvsFFTFree_C_32fc;
  static orvStatus run(bool inv, const float* s, float* d, const orvsFFTContext* c) {
    auto* src = reinterpret_cast<const orv32fc*>(s);
    auto* dst = reinterpret_cast<orv32fc*>(d);
    return inv ? orvsFFTInv_CToC_32fc(src, dst, c, nullptr) : orvsFFTFwd_CToC_32fc(src, dst, c, nullptr);
  }
};
template <>
struct ComplexForm<double> {
  static constexpr auto init = orvsFFTInitAlloc_C_64fc;
  static constexpr auto release = orvsFFTFree_C_64fc;
  static orvStatus run(bool inv, const double* s, double* d, const orvsFFTContext* c) {
    auto* src = reinterpret_cast<const orv64fc*>(s);
    auto* dst = reinterpret_cast<orv64fc*>(d);
    return inv ? orvsFFTInv_CToC_64fc(src, dst, c, nullptr) : orvsFFTFwd_CToC_64fc(src, dst, c, nullptr);
  }
};

template <typename T>
void compareComplex(int order, int flag, const std::vector<T>& x, const std::string& data) {
  using F = ComplexForm<T>;
  orvsFFTContext* ctx = nullptr;
  ASSERT_EQ(F::init(&ctx, order, flag, 0), orvOk);
  for (bool inv : {false, true}) {
    std::vector<T> want(x.size());
    {
      LevelCap plain(kPlain);
      ASSERT_EQ(F::run(inv, x.data(), want.data(), ctx), orvOk);
    }
    for (int l : vectorLevels()) {
      LevelCap cap(l);
      const std::string what = std::string(sizeof(T) == 4 ? "32fc" : "64fc") + " order " + std::to_string(order) +
                               " flag " + std::to_string(flag) + (inv ? " inverse" : " forward") + " level " +
                               std::to_string(l) + " " + data;
      std::vector<T> out(x.size());
      ASSERT_EQ(F::run(inv, x.data(), out.data(), ctx), orvOk);
      expectSameBits(out, want, what + " out of place");
      std::vector<T> in = x;
      ASSERT_EQ(F::run(inv, in.data(), in.data(), ctx), orvOk);
      expectSameBits(in, want, what + " in place");
    }
  }
  F::release(ctx);
}

TEST(FftLevels, ComplexMatchesThePlainKernelsAtEveryOrderAndFlag) {
  for (int order = 0; order <= 20; ++order) {
    for (int flag : kFlags) {
      const std::size_t n = std::size_t(2) << order;
      compareComplex<float>(order, flag, randomData<float>(n, unsigned(order * 8 + flag)), "random");
      compareComplex<double>(order, flag, randomData<double>(n, unsigned(order * 8 + flag)), "random");
    }
  }
}

TEST(FftLevels, ComplexSpecialValues) {
  // One order of each kind of path for both precisions: leaves of even and
  // odd order, the blocked orders and the four-step levels.
  for (int order = 4; order <= 14; ++order) {
    for (int flag : {orvScaleNone, orvScaleBothSqrt}) {
      const std::size_t n = std::size_t(2) << order;
      compareComplex<float>(order, flag, specialData<float>(n, unsigned(order)), "special");
      compareComplex<double>(order, flag, specialData<double>(n, unsigned(order)), "special");
    }
  }
}

// ---- Real -----------------------------------------------------------------------

enum class Layout { Perm, Pack, Ccs };

template <typename T>
struct RealForm;
template <>
struct RealForm<float> {
  static constexpr auto init = orvsFFTInitAlloc_R_32f;
  static constexpr auto release = orvsFFTFree_R_32f;
  static orvStatus fwd(Layout k, const float* s, float* d, const orvsFFTContext* c) {
    return k == Layout::Perm   ? orvsFFTFwd_RToPerm_32f(s, d, c, nullptr)
           : k == Layout::Pack ? orvsFFTFwd_RToPack_32f(s, d, c, nullptr)
                               : orvsFFTFwd_RToCCS_32f(s, d, c, nullptr);
  }
  static orvStatus inv(Layout k, const float* s, float* d, const orvsFFTContext* c) {
    return k == Layout::Perm   ? orvsFFTInv_PermToR_32f(s, d, c, nullptr)
           : k == Layout::Pack ? orvsFFTInv_PackToR_32f(s, d, c, nullptr)
                               : orvsFFTInv_CCSToR_32f(s, d, c, nullptr);
  }
};
template <>
struct RealForm<double> {
  static constexpr auto init = orvsFFTInitAlloc_R_64f;
  static constexpr auto release = orvsFFTFree_R_64f;
  static orvStatus fwd(Layout k, const double* s, double* d, const orvsFFTContext* c) {
    return k == Layout::Perm   ? orvsFFTFwd_RToPerm_64f(s, d, c, nullptr)
           : k == Layout::Pack ? orvsFFTFwd_RToPack_64f(s, d, c, nullptr)
                               : orvsFFTFwd_RToCCS_64f(s, d, c, nullptr);
  }
  static orvStatus inv(Layout k, const double* s, double* d, const orvsFFTContext* c) {
    return k == Layout::Perm   ? orvsFFTInv_PermToR_64f(s, d, c, nullptr)
           : k == Layout::Pack ? orvsFFTInv_PackToR_64f(s, d, c, nullptr)
                               : orvsFFTInv_CCSToR_64f(s, d, c, nullptr);
  }
};

// Forward into each layout and back from it, at every level, in place and
// out of place; the inverse is fed the plain forward's spectrum.
template <typename T>
void compareReal(int order, int flag, const std::vector<T>& x, const std::string& data) {
  using F = RealForm<T>;
  orvsFFTContext* ctx = nullptr;
  ASSERT_EQ(F::init(&ctx, order, flag, 0), orvOk);
  const std::size_t n = std::size_t(1) << order;
  for (Layout k : {Layout::Perm, Layout::Pack, Layout::Ccs}) {
    const std::size_t reals = k == Layout::Ccs ? n + 2 : n;
    std::vector<T> wantF(reals), wantI(n);
    {
      LevelCap plain(kPlain);
      std::vector<T> src = x;
      src.resize(reals);
      ASSERT_EQ(F::fwd(k, src.data(), wantF.data(), ctx), orvOk);
      ASSERT_EQ(F::inv(k, wantF.data(), wantI.data(), ctx), orvOk);
    }
    for (int l : vectorLevels()) {
      LevelCap cap(l);
      const std::string what = std::string(sizeof(T) == 4 ? "32f" : "64f") + " order " + std::to_string(order) +
                               " flag " + std::to_string(flag) + " layout " + std::to_string(int(k)) + " level " +
                               std::to_string(l) + " " + data;
      std::vector<T> src = x, out(reals);
      src.resize(reals);
      ASSERT_EQ(F::fwd(k, src.data(), out.data(), ctx), orvOk);
      expectSameBits(out, wantF, what + " forward");
      ASSERT_EQ(F::fwd(k, src.data(), src.data(), ctx), orvOk);
      expectSameBits(src, wantF, what + " forward in place");
      std::vector<T> back(n);
      ASSERT_EQ(F::inv(k, wantF.data(), back.data(), ctx), orvOk);
      expectSameBits(back, wantI, what + " inverse");
      std::vector<T> same = wantF;
      ASSERT_EQ(F::inv(k, same.data(), same.data(), ctx), orvOk);
      same.resize(n);
      expectSameBits(same, wantI, what + " inverse in place");
    }
  }
  F::release(ctx);
}

TEST(FftLevels, RealMatchesThePlainKernelsAtEveryOrderAndFlag) {
  for (int order = 0; order <= 20; ++order) {
    for (int flag : kFlags) {
      const std::size_t n = std::size_t(1) << order;
      compareReal<float>(order, flag, randomData<float>(n, unsigned(order * 8 + flag + 3)), "random");
      compareReal<double>(order, flag, randomData<double>(n, unsigned(order * 8 + flag + 3)), "random");
    }
  }
}

TEST(FftLevels, RealSpecialValues) {
  for (int order = 4; order <= 15; ++order) {
    const std::size_t n = std::size_t(1) << order;
    compareReal<float>(order, orvScaleForward, specialData<float>(n, unsigned(order + 40)), "special");
    compareReal<double>(order, orvScaleForward, specialData<double>(n, unsigned(order + 40)), "special");
  }
}

TEST(FftLevels, DispatchNeverExceedsTheProcessor) {
  // The cap only lowers the level; lifting it gives back what the processor
  // has, and a cap above that changes nothing.
  const int has = level();
  {
    LevelCap cap(kAvx + 5);
    EXPECT_EQ(level(), has);
  }
  {
    LevelCap cap(kPlain);
    EXPECT_EQ(level(), kPlain);
    EXPECT_FALSE(orv::fft::fast::available());
  }
  EXPECT_EQ(level(), has);
  EXPECT_EQ(orv::fft::fast::available(), __builtin_cpu_supports("avx") != 0);
}

}  // namespace
