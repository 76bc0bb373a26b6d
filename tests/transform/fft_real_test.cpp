// The real FFT: against a long-double DFT, round trips, in-place and buffer variants bit for bit,
// the layouts, work sizes, statuses and allocation failures.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/test_hooks.hpp"
#include "orvspx.h"
#include "support/test_support.hpp"
#include "transform/spectrum_support.hpp"

namespace {

using spectest::Layout;
using Cd = std::complex<double>;

const int kFlags[] = {orvScaleNone, orvScaleBothSqrt, orvScaleForward, orvScaleInverse};
const Layout kLayouts[] = {Layout::Perm, Layout::Pack, Layout::Ccs};

// Forward and inverse factors of a flag at length n.
double forwardFactor(int flag, double n) {
  return flag == orvScaleForward ? 1 / n : (flag == orvScaleBothSqrt ? 1 / std::sqrt(n) : 1.0);
}
double inverseFactor(int flag, double n) {
  return flag == orvScaleInverse ? 1 / n : (flag == orvScaleBothSqrt ? 1 / std::sqrt(n) : 1.0);
}

// ---- The names of one precision --------------------------------------------

template <typename T>
struct Real;

#define REAL_NAMES(T, S)                                                                     \
  template <>                                                                                    \
  struct Real<T> {                                                                               \
    static constexpr double kEps = sizeof(T) == 8 ? 0x1p-52 : 0x1p-23;                           \
    static orvStatus init(orvsFFTContext** c, int o, int f) { return orvsFFTInitAlloc_R_##S(c, o, f, 0); } \
    static orvStatus release(orvsFFTContext* c) { return orvsFFTFree_R_##S(c); }                 \
    static orvStatus bufSize(const orvsFFTContext* c, int* s) { return orvsFFTGetBufSize_R_##S(c, s); } \
    static orvStatus fwd(Layout l, const T* s, T* d, const orvsFFTContext* c, orv8u* w) {       \
      return l == Layout::Perm ? orvsFFTFwd_RToPerm_##S(s, d, c, w)                              \
                               : (l == Layout::Pack ? orvsFFTFwd_RToPack_##S(s, d, c, w)         \
                                                    : orvsFFTFwd_RToCCS_##S(s, d, c, w));        \
    }                                                                                            \
    static orvStatus inv(Layout l, const T* s, T* d, const orvsFFTContext* c, orv8u* w) {       \
      return l == Layout::Perm ? orvsFFTInv_PermToR_##S(s, d, c, w)                              \
                               : (l == Layout::Pack ? orvsFFTInv_PackToR_##S(s, d, c, w)         \
                                                    : orvsFFTInv_CCSToR_##S(s, d, c, w));        \
    }                                                                                            \
    static orvStatus initC(orvsFFTContext** c, int o, int f) { return orvsFFTInitAlloc_C_##S##c(c, o, f, 0); } \
    static orvStatus freeC(orvsFFTContext* c) { return orvsFFTFree_C_##S##c(c); }               \
  };

REAL_NAMES(orv32f, 32f)
REAL_NAMES(orv64f, 64f)
#undef REAL_NAMES

template <typename T>
std::vector<T> randomSignal(std::size_t n, unsigned seed) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> d(-1.0, 1.0);
  std::vector<T> x(n);
  for (auto& v : x) v = T(d(gen));
  return x;
}

// Bin k of a layout, as a complex value (the real-only slots give 0).
template <typename T>
Cd binOf(Layout l, const std::vector<T>& a, std::size_t n, std::size_t k) {
  const std::size_t h = n / 2;
  if (l == Layout::Ccs) return {double(a[2 * k]), double(a[2 * k + 1])};
  if (k == 0) return {double(a[0]), 0.0};
  if (k == h) return {double(l == Layout::Perm ? a[1] : a[n - 1]), 0.0};
  return l == Layout::Perm ? Cd(a[2 * k], a[2 * k + 1]) : Cd(a[2 * k - 1], a[2 * k]);
}

struct Context {
  orvsFFTContext* ctx;
  orvStatus (*release)(orvsFFTContext*);
  ~Context() {
    if (ctx != nullptr) release(ctx);
  }
};

// ---- Against a long-double DFT, round trips, bit identity ---------------------------

// Forward against the DFT (every bin up to order 10, then the ends, the
// middle and some random ones), the inverse of the forward, in place against
// out of place, a misaligned caller buffer; up to order 11 the inverse also
// against the inverse DFT of a random spectrum (bins 0 and N/2 real).
template <typename T>
void checkOrder(int order, int flag) {
  using R = Real<T>;
  const std::size_t n = std::size_t(1) << order;
  SCOPED_TRACE("order " + std::to_string(order) + " flag " + std::to_string(flag) +
               (sizeof(T) == 8 ? " 64f" : " 32f"));
  const auto x = randomSignal<T>(n, unsigned(17 * order + flag));
  Context real{nullptr, R::release};
  ASSERT_EQ(R::init(&real.ctx, order, flag), orvOk);
  int bytes = -1;
  ASSERT_EQ(R::bufSize(real.ctx, &bytes), orvOk);
  std::vector<orv8u> work(std::size_t(bytes) + 1);

  std::vector<std::size_t> bins;
  std::mt19937 gen{unsigned(order)};
  for (std::size_t k = 0; k <= n / 2; ++k)
    if (order <= 10 || k < 2 || k == n / 2 || k == n / 4 + 3 || gen() % (n / 32) == 0) bins.push_back(k);
  const auto roots = spectest::unitRoots(n);
  std::vector<spectest::Cl> X;
  for (std::size_t k : bins) {
    spectest::Cl acc = 0;
    for (std::size_t j = 0; j < n; ++j) acc += (long double)x[j] * roots[(j * k) % n];
    X.push_back(acc);
  }
  const double fwdScale = forwardFactor(flag, double(n)), invScale = inverseFactor(flag, double(n));
  const double tol = 4 * R::kEps * (order + 1) * std::sqrt(double(n));
  for (Layout l : kLayouts) {
    SCOPED_TRACE(spectest::layoutName(l));
    const std::size_t size = spectest::layoutSize(l, n);
    std::vector<T> spec(size, T(-7));
    ASSERT_EQ(R::fwd(l, x.data(), spec.data(), real.ctx, work.data() + 1), orvOk);
    for (std::size_t b = 0; b < bins.size(); ++b) {
      const Cd want(double(X[b].real()) * fwdScale, double(X[b].imag()) * fwdScale);
      ASSERT_LE(std::abs(binOf(l, spec, n, bins[b]) - want), tol * fwdScale + 1e-300) << "k=" << bins[b];
    }
    if (l == Layout::Ccs) {
      EXPECT_EQ(spec[1], T(0));
      if (n % 2 == 0) {
        EXPECT_EQ(spec[n + 1], T(0));
      }
    }
    std::vector<T> same(x);  // in place, with the layout's room: bit for bit
    same.resize(size, T(3));
    ASSERT_EQ(R::fwd(l, same.data(), same.data(), real.ctx, nullptr), orvOk);
    EXPECT_EQ(same, spec);

    // Back: the input times N times both factors.
    std::vector<T> back(n, T(-7));
    ASSERT_EQ(R::inv(l, spec.data(), back.data(), real.ctx, nullptr), orvOk);
    const double gain = double(n) * fwdScale * invScale;
    double err = 0;
    for (std::size_t i = 0; i < n; ++i) err = std::max(err, std::abs(double(back[i]) - gain * double(x[i])));
    EXPECT_LE(err, 8 * R::kEps * (order + 1) * gain * std::max(1.0, std::sqrt(double(n)) * fwdScale));
    std::vector<T> backSame(spec);
    ASSERT_EQ(R::inv(l, backSame.data(), backSame.data(), real.ctx, work.data() + 3), orvOk);
    backSame.resize(n);
    EXPECT_EQ(backSame, back);
  }
  if (order > 11) return;
  const auto re = randomSignal<double>(n / 2 + 1, 99u + unsigned(order));
  const auto im = randomSignal<double>(n / 2 + 1, 199u + unsigned(order));
  std::vector<Cd> half(n / 2 + 1);
  for (std::size_t k = 0; k <= n / 2; ++k) half[k] = {double(T(re[k])), k == 0 || 2 * k == n ? 0.0 : double(T(im[k]))};
  std::vector<long double> want(n, 0.0L);
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t k = 0; k < n; ++k) {
      const std::size_t kk = k <= n / 2 ? k : n - k;
      const spectest::Cl b(half[kk].real(), k <= n / 2 ? half[kk].imag() : -half[kk].imag());
      want[j] += (b * std::conj(roots[(j * k) % n])).real();
    }
  }
  for (Layout l : kLayouts) {
    const auto spec = spectest::packLayout<T>(l, half, n);
    std::vector<T> out(n);
    ASSERT_EQ(R::inv(l, spec.data(), out.data(), real.ctx, nullptr), orvOk);
    for (std::size_t j = 0; j < n; ++j)
      ASSERT_NEAR(double(out[j]), double(want[j]) * invScale, tol * invScale) << spectest::layoutName(l) << " j=" << j;
  }
}

// Every flag up to order 13; above, one flag per order in turn, so that the
// largest orders stay quick.
class RealFftOrders : public ::testing::TestWithParam<int> {};

TEST_P(RealFftOrders, MatchTheDefinitionAndRoundTrip) {
  const int order = GetParam();
  for (int f = 0; f < 4; ++f) {
    if (order > 13 && f != order % 4) continue;
    checkOrder<orv32f>(order, kFlags[f]);
    checkOrder<orv64f>(order, kFlags[(f + 1) % 4]);
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, RealFftOrders, ::testing::Range(0, 21));

// ---- Layout details ---------------------------------------------------------------------

TEST(RealFftLayouts, SmallestOrdersExactOnIntegers) {
  // Order 2, x = (1, 2, 3, 4): X0 = 10, X1 = -2 + 2i, X2 = -2.
  Context c{nullptr, Real<orv64f>::release};
  ASSERT_EQ(orvsFFTInitAlloc_R_64f(&c.ctx, 2, orvScaleNone, 0), orvOk);
  const orv64f x[4] = {1, 2, 3, 4};
  orv64f perm[4], pack[4], ccs[6];
  ASSERT_EQ(orvsFFTFwd_RToPerm_64f(x, perm, c.ctx, nullptr), orvOk);
  ASSERT_EQ(orvsFFTFwd_RToPack_64f(x, pack, c.ctx, nullptr), orvOk);
  ASSERT_EQ(orvsFFTFwd_RToCCS_64f(x, ccs, c.ctx, nullptr), orvOk);
  EXPECT_EQ(std::vector<double>(perm, perm + 4), (std::vector<double>{10, -2, -2, 2}));
  EXPECT_EQ(std::vector<double>(pack, pack + 4), (std::vector<double>{10, -2, 2, -2}));
  EXPECT_EQ(std::vector<double>(ccs, ccs + 6), (std::vector<double>{10, 0, -2, 2, -2, 0}));

  // Order 0 and 1: Pack and Perm are one; CCS gets its zero slots.
  for (int order : {0, 1}) {
    Context d{nullptr, Real<orv32f>::release};
    ASSERT_EQ(orvsFFTInitAlloc_R_32f(&d.ctx, order, orvScaleForward, 0), orvOk);
    const orv32f y[2] = {3, 5};
    orv32f p[2] = {9, 9}, k[4] = {9, 9, 9, 9};
    ASSERT_EQ(orvsFFTFwd_RToPack_32f(y, p, d.ctx, nullptr), orvOk);
    ASSERT_EQ(orvsFFTFwd_RToCCS_32f(y, k, d.ctx, nullptr), orvOk);
    if (order == 0) {
      EXPECT_EQ(p[0], 3.0f);
      EXPECT_EQ(p[1], 9.0f);
      EXPECT_EQ(std::vector<float>(k, k + 4), (std::vector<float>{3, 0, 9, 9}));
    } else {
      EXPECT_EQ(std::vector<float>(p, p + 2), (std::vector<float>{4, -1}));
      EXPECT_EQ(std::vector<float>(k, k + 4), (std::vector<float>{4, 0, -1, 0}));
    }
  }
}

TEST(RealFftLayouts, CcsInverseIgnoresTheZeroSlots) {
  for (int order : {0, 1, 3, 4, 6}) {
    const std::size_t n = std::size_t(1) << order;
    Context c{nullptr, Real<orv64f>::release};
    ASSERT_EQ(orvsFFTInitAlloc_R_64f(&c.ctx, order, orvScaleInverse, 0), orvOk);
    const auto x = randomSignal<orv64f>(n, 5);
    std::vector<orv64f> ccs(n + 2), clean(n), junk(n);
    ASSERT_EQ(orvsFFTFwd_RToCCS_64f(x.data(), ccs.data(), c.ctx, nullptr), orvOk);
    ASSERT_EQ(orvsFFTInv_CCSToR_64f(ccs.data(), clean.data(), c.ctx, nullptr), orvOk);
    ccs[1] = 1e6;
    ccs[n + 1] = -3e5;
    ASSERT_EQ(orvsFFTInv_CCSToR_64f(ccs.data(), junk.data(), c.ctx, nullptr), orvOk);
    EXPECT_EQ(clean, junk) << "order " << order;
  }
}

// ---- Work sizes and buffers, statuses ------------------------------------------------

TEST(RealFftWork, SizeIsThatOfTheComplexHalf) {
  for (int order = 0; order <= 20; ++order) {
    Context r32{nullptr, Real<orv32f>::release}, r64{nullptr, Real<orv64f>::release};
    Context c32{nullptr, Real<orv32f>::freeC}, c64{nullptr, Real<orv64f>::freeC};
    int a = -1, b = -1, ca = 0, cb = 0;
    ASSERT_EQ(Real<orv32f>::init(&r32.ctx, order, orvScaleNone), orvOk);
    ASSERT_EQ(Real<orv64f>::init(&r64.ctx, order, orvScaleNone), orvOk);
    ASSERT_EQ(orvsFFTGetBufSize_R_32f(r32.ctx, &a), orvOk);
    ASSERT_EQ(orvsFFTGetBufSize_R_64f(r64.ctx, &b), orvOk);
    if (order >= 4) {
      ASSERT_EQ(Real<orv32f>::initC(&c32.ctx, order - 1, orvScaleNone), orvOk);
      ASSERT_EQ(Real<orv64f>::initC(&c64.ctx, order - 1, orvScaleNone), orvOk);
      ASSERT_EQ(orvsFFTGetBufSize_C_32fc(c32.ctx, &ca), orvOk);
      ASSERT_EQ(orvsFFTGetBufSize_C_64fc(c64.ctx, &cb), orvOk);
    }
    EXPECT_EQ(a, ca) << "order " << order;
    EXPECT_EQ(b, cb) << "order " << order;
  }
}

TEST(RealFftWork, NoAllocationBelowOrderFourAndNoMemoryBeforeTouchingData) {
  for (int order = 0; order < 4; ++order) {
    Context c{nullptr, Real<orv32f>::release};
    ASSERT_EQ(Real<orv32f>::init(&c.ctx, order, orvScaleBothSqrt), orvOk);
    orvtest::Guarded<orv8u> work(64);
    std::vector<orv32f> x(8, 1.0f), y(10);
    orv::testing::failNthAllocation(1);  // any allocation would fail the call
    EXPECT_EQ(orvsFFTFwd_RToCCS_32f(x.data(), y.data(), c.ctx, work.data()), orvOk);
    EXPECT_EQ(orvsFFTInv_PackToR_32f(y.data(), x.data(), c.ctx, nullptr), orvOk);
    orv::testing::failNthAllocation(0);
    EXPECT_TRUE(work.untouched());
  }
  Context c{nullptr, Real<orv64f>::release};
  ASSERT_EQ(Real<orv64f>::init(&c.ctx, 12, orvScaleNone), orvOk);
  std::vector<orv64f> x(4096, 2.0), y(4096, -1.0);
  for (bool inv : {false, true}) {
    orv::testing::failNthAllocation(1);
    EXPECT_EQ(inv ? orvsFFTInv_PermToR_64f(x.data(), y.data(), c.ctx, nullptr)
                  : orvsFFTFwd_RToPerm_64f(x.data(), y.data(), c.ctx, nullptr),
              orvErrNoMemory);
    orv::testing::failNthAllocation(0);
    EXPECT_EQ(y, std::vector<orv64f>(4096, -1.0));
  }
}

TEST(RealFftStatus, ChecksInOrder) {
  orvsFFTContext* ctx = nullptr;
  Context real{nullptr, Real<orv32f>::release}, cplx{nullptr, Real<orv32f>::freeC};
  Context real64{nullptr, Real<orv64f>::release};
  ASSERT_EQ(orvsFFTInitAlloc_R_32f(&real.ctx, 5, orvScaleNone, 7), orvOk);
  ASSERT_EQ(orvsFFTInitAlloc_C_32fc(&cplx.ctx, 5, orvScaleNone, 0), orvOk);
  ASSERT_EQ(orvsFFTInitAlloc_R_64f(&real64.ctx, 5, orvScaleNone, 0), orvOk);
  std::vector<orv32f> v(34);
  orv32f* p = v.data();
  int size = 0;
  // Null context first, then the tag, then the data pointers.
  const orvStatus rows[][2] = {
      {orvsFFTInitAlloc_R_32f(nullptr, 5, orvScaleNone, 0), orvErrNullPointer},
      {orvsFFTInitAlloc_R_32f(&ctx, -1, 3, 0), orvErrFftOrder},
      {orvsFFTInitAlloc_R_64f(&ctx, 31, orvScaleNone, 0), orvErrFftOrder},
      {orvsFFTInitAlloc_R_64f(&ctx, 5, 3, 0), orvErrFftFlag},
      {orvsFFTInitAlloc_R_64f(&ctx, 5, 0, 0), orvErrFftFlag},
      {orvsFFTFwd_RToPerm_32f(p, p, nullptr, nullptr), orvErrNullPointer},
      {orvsFFTFwd_RToPerm_32f(nullptr, p, cplx.ctx, nullptr), orvErrContextMismatch},
      {orvsFFTInv_CCSToR_32f(nullptr, nullptr, real64.ctx, nullptr), orvErrContextMismatch},
      {orvsFFTFwd_RToCCS_32f(p, nullptr, real.ctx, nullptr), orvErrNullPointer},
      {orvsFFTInv_PackToR_32f(nullptr, p, real.ctx, nullptr), orvErrNullPointer},
      {orvsFFTGetBufSize_R_32f(real.ctx, nullptr), orvErrNullPointer},
      {orvsFFTGetBufSize_R_32f(cplx.ctx, &size), orvErrContextMismatch},
      {orvsFFTGetBufSize_C_32fc(real.ctx, &size), orvErrContextMismatch},
      {orvsFFTFree_R_32f(nullptr), orvErrNullPointer},
      {orvsFFTFree_R_32f(cplx.ctx), orvErrContextMismatch},
      {orvsFFTFree_R_64f(real.ctx), orvErrContextMismatch},
      // The contexts are intact after the refused calls.
      {orvsFFTFwd_RToPerm_32f(p, p, real.ctx, nullptr), orvOk},
  };
  for (std::size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i) EXPECT_EQ(rows[i][0], rows[i][1]) << "row " << i;
  EXPECT_EQ(ctx, nullptr);
}

}  // namespace
