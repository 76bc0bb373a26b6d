// The complex FFT in its four forms: accuracy against a naive transform in
// long double, round trips, bit identity between the ways of calling it,
// work sizes and buffers, statuses, and allocation failures.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <complex>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/test_hooks.hpp"
#include "orvspx.h"
#include "support/test_support.hpp"

namespace {

using Cd = std::complex<double>;
using Cl = std::complex<long double>;

const int kFlags[] = {orvScaleNone, orvScaleBothSqrt, orvScaleForward, orvScaleInverse};

// ---- One interface over the four forms -------------------------------------

class Form {
 public:
  virtual ~Form() = default;
  virtual const char* name() const = 0;
  virtual bool isDouble() const = 0;
  virtual bool isSplit() const = 0;
  virtual orvStatus init(orvsFFTContext** ctx, int order, int flag, int hint = 0) const = 0;
  virtual orvStatus release(orvsFFTContext* ctx) const = 0;
  virtual orvStatus bufSize(const orvsFFTContext* ctx, int* size) const = 0;
  // The transform on raw pointers of the form's layout. Interleaved forms
  // use only srcRe and dstRe.
  virtual orvStatus raw(bool inv, const void* srcRe, const void* srcIm, void* dstRe, void* dstIm,
                        const orvsFFTContext* ctx, orv8u* work) const = 0;
  // Transforms `in` into `out` (values widened exactly from the element
  // type). inPlaceRe/inPlaceIm pick src == dst per array; the interleaved
  // forms use inPlaceRe for their one array.
  virtual orvStatus run(bool inv, const orvsFFTContext* ctx, const std::vector<Cd>& in, std::vector<Cd>& out,
                        orv8u* work = nullptr, bool inPlaceRe = false, bool inPlaceIm = false) const = 0;
  double eps() const { return isDouble() ? 0x1p-52 : 0x1p-23; }
};

template <typename T, bool Split>
class FormOf final : public Form {
 public:
  using InitFn = orvStatus (*)(orvsFFTContext**, int, int, int);
  using FreeFn = orvStatus (*)(orvsFFTContext*);
  using BufFn = orvStatus (*)(const orvsFFTContext*, int*);
  FormOf(const char* n, InitFn i, FreeFn f, BufFn b) : name_(n), init_(i), free_(f), buf_(b) {}
  const char* name() const override { return name_; }
  bool isDouble() const override { return sizeof(T) == 8; }
  bool isSplit() const override { return Split; }
  orvStatus init(orvsFFTContext** ctx, int order, int flag, int hint) const override {
    return init_(ctx, order, flag, hint);
  }
  orvStatus release(orvsFFTContext* ctx) const override { return free_(ctx); }
  orvStatus bufSize(const orvsFFTContext* ctx, int* size) const override { return buf_(ctx, size); }

  orvStatus raw(bool inv, const void* sr, const void* si, void* dr, void* di, const orvsFFTContext* ctx,
                orv8u* work) const override {
    return rawImpl(inv, static_cast<const T*>(sr), static_cast<const T*>(si), static_cast<T*>(dr),
                   static_cast<T*>(di), ctx, work);
  }

  orvStatus run(bool inv, const orvsFFTContext* ctx, const std::vector<Cd>& in, std::vector<Cd>& out,
                orv8u* work, bool inPlaceRe, bool inPlaceIm) const override {
    const std::size_t n = in.size();
    orvStatus st;
    if (Split) {
      std::vector<T> sr(n), si(n), dr(n), di(n);
      for (std::size_t i = 0; i < n; ++i) {
        sr[i] = T(in[i].real());
        si[i] = T(in[i].imag());
      }
      T* outRe = inPlaceRe ? sr.data() : dr.data();
      T* outIm = inPlaceIm ? si.data() : di.data();
      st = raw(inv, sr.data(), si.data(), outRe, outIm, ctx, work);
      out.resize(n);
      for (std::size_t i = 0; i < n; ++i) out[i] = Cd(outRe[i], outIm[i]);
    } else {
      std::vector<T> s(2 * n), d(2 * n);
      for (std::size_t i = 0; i < n; ++i) {
        s[2 * i] = T(in[i].real());
        s[2 * i + 1] = T(in[i].imag());
      }
      T* o = inPlaceRe ? s.data() : d.data();
      st = raw(inv, s.data(), nullptr, o, nullptr, ctx, work);
      out.resize(n);
      for (std::size_t i = 0; i < n; ++i) out[i] = Cd(o[2 * i], o[2 * i + 1]);
    }
    return st;
  }

 private:
  orvStatus rawImpl(bool inv, const T* sr, const T* si, T* dr, T* di, const orvsFFTContext* ctx,
                    orv8u* work) const;
  const char* name_;
  InitFn init_;
  FreeFn free_;
  BufFn buf_;
};

template <>
orvStatus FormOf<orv32f, false>::rawImpl(bool inv, const orv32f* sr, const orv32f*, orv32f* dr, orv32f*,
                                          const orvsFFTContext* ctx, orv8u* work) const {
  auto* s = reinterpret_cast<const orv32fc*>(sr);
  auto* d = reinterpret_cast<orv32fc*>(dr);
  return inv ? orvsFFTInv_CToC_32fc(s, d, ctx, work) : orvsFFTFwd_CToC_32fc(s, d, ctx, work);
}
template <>
orvStatus FormOf<orv64f, false>::rawImpl(bool inv, const orv64f* sr, const orv64f*, orv64f* dr, orv64f*,
                                          const orvsFFTContext* ctx, orv8u* work) const {
  auto* s = reinterpret_cast<const orv64fc*>(sr);
  auto* d = reinterpret_cast<orv64fc*>(dr);
  return inv ? orvsFFTInv_CToC_64fc(s, d, ctx, work) : orvsFFTFwd_CToC_64fc(s, d, ctx, work);
}
template <>
orvStatus FormOf<orv32f, true>::rawImpl(bool inv, const orv32f* sr, const orv32f* si, orv32f* dr, orv32f* di,
                                         const orvsFFTContext* ctx, orv8u* work) const {
  return inv ? orvsFFTInv_CToC_32f(sr, si, dr, di, ctx, work) : orvsFFTFwd_CToC_32f(sr, si, dr, di, ctx, work);
}
template <>
orvStatus FormOf<orv64f, true>::rawImpl(bool inv, const orv64f* sr, const orv64f* si, orv64f* dr, orv64f* di,
                                         const orvsFFTContext* ctx, orv8u* work) const {
  return inv ? orvsFFTInv_CToC_64f(sr, si, dr, di, ctx, work) : orvsFFTFwd_CToC_64f(sr, si, dr, di, ctx, work);
}

const FormOf<orv32f, false> kForm32fc("32fc", orvsFFTInitAlloc_C_32fc, orvsFFTFree_C_32fc,
                                      orvsFFTGetBufSize_C_32fc);
const FormOf<orv32f, true> kForm32f("32f", orvsFFTInitAlloc_C_32f, orvsFFTFree_C_32f, orvsFFTGetBufSize_C_32f);
const FormOf<orv64f, false> kForm64fc("64fc", orvsFFTInitAlloc_C_64fc, orvsFFTFree_C_64fc,
                                      orvsFFTGetBufSize_C_64fc);
const FormOf<orv64f, true> kForm64f("64f", orvsFFTInitAlloc_C_64f, orvsFFTFree_C_64f, orvsFFTGetBufSize_C_64f);
const Form* const kForms[] = {&kForm32fc, &kForm32f, &kForm64fc, &kForm64f};

// A context freed at the end of the scope.
struct Ctx {
  const Form* form;
  orvsFFTContext* ctx = nullptr;
  Ctx(const Form& f, int order, int flag) : form(&f) {
    EXPECT_EQ(f.init(&ctx, order, flag), orvOk) << f.name() << " order " << order;
  }
  ~Ctx() {
    if (ctx) form->release(ctx);
  }
  Ctx(const Ctx&) = delete;
  Ctx& operator=(const Ctx&) = delete;
};

// Random values in [-1, 1) that every form holds exactly.
std::vector<Cd> randomInput(std::size_t n, unsigned seed) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<float> dist(-1.0f, 1.0f);
  std::vector<Cd> x(n);
  for (auto& v : x) {
    const float re = dist(gen), im = dist(gen);
    v = Cd(re, im);
  }
  return x;
}

// Bins of the naive transform in long double, exp(-+2 pi i n k / N) taken
// from a table of exact-index angles.
class NaiveDft {
 public:
  explicit NaiveDft(std::size_t n) : n_(n), w_(n) {
    const long double pi = 3.141592653589793238462643383279502884L;
    for (std::size_t k = 0; k < n; ++k) {
      const long double a = 2 * pi * static_cast<long double>(k) / static_cast<long double>(n);
      w_[k] = Cl(std::cos(a), -std::sin(a));
    }
  }
  Cl bin(const std::vector<Cd>& x, std::size_t k, bool inv) const {
    Cl sum = 0;
    std::size_t idx = 0;
    for (std::size_t i = 0; i < n_; ++i) {
      const Cl w = inv ? std::conj(w_[idx]) : w_[idx];
      sum += Cl(x[i].real(), x[i].imag()) * w;
      idx += k;
      if (idx >= n_) idx -= n_;
    }
    return sum;
  }

 private:
  std::size_t n_;
  std::vector<Cl> w_;
};

double factor(int flag, bool inv, std::size_t n) {
  switch (flag) {
    case orvScaleBothSqrt:
      return 1.0 / std::sqrt(double(n));
    case orvScaleForward:
      return inv ? 1.0 : 1.0 / double(n);
    case orvScaleInverse:
      return inv ? 1.0 / double(n) : 1.0;
    default:
      return 1.0;
  }
}

double norm2(const std::vector<Cd>& x) {
  long double s = 0;
  for (const Cd& v : x) s += std::norm(Cl(v.real(), v.imag()));
  return double(std::sqrt(s));
}

bool sameBits(const std::vector<Cd>& a, const std::vector<Cd>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Cd)) == 0;
}

// ---- Accuracy ---------------------------------------------------------------
//
// Error bound. Each of the log2(N) stages rounds every value it stores (and
// its twiddles carry half an ulp), adding an error of a few eps times the
// 2-norm of that stage's data; the stages are orthogonal up to a factor, so
// the errors add up without growing: ||X' - X|| <= C log2(N) eps ||X||. For
// random input the error spreads evenly over the bins, so one bin is held to
// C log2(N) eps ||X|| / sqrt(N) = C log2(N) eps ||x||, times the flag's
// factor c. One more step (log2(N) + 1) covers the final multiplication by
// the scale, which rounds once more, and order 0. eps is the machine epsilon
// of the form (2^-52 for double, 2^-23 for float) and C = 1: the worst bin
// measured over all orders, forms, flags and directions is about a third of
// this bound, while a wrong twiddle or sign gives errors of order ||x||.
constexpr double kC = 1.0;

double bound(const Form& f, int order, double c, double xnorm) {
  return kC * (order + 1) * f.eps() * c * xnorm;
}

// Bins to compare: all up to order 10, then 0, 1, N/2, N-1 and a dozen
// random ones.
std::vector<std::size_t> binsFor(int order, unsigned seed) {
  const std::size_t n = std::size_t(1) << order;
  std::vector<std::size_t> bins;
  if (order <= 10) {
    for (std::size_t k = 0; k < n; ++k) bins.push_back(k);
    return bins;
  }
  bins = {0, 1, n / 2, n - 1, n / 4 + 3};
  std::mt19937 gen(seed);
  for (int i = 0; i < 12; ++i) bins.push_back(gen() % n);
  return bins;
}

class FftAccuracy : public ::testing::TestWithParam<int> {};

TEST_P(FftAccuracy, MatchesNaiveTransformAndRoundTrips) {
  const int order = GetParam();
  const std::size_t n = std::size_t(1) << order;
  const std::vector<Cd> x = randomInput(n, 1234u + unsigned(order));
  const double xnorm = norm2(x);
  const NaiveDft dft(n);
  const std::vector<std::size_t> bins = binsFor(order, 99u + unsigned(order));
  std::vector<Cl> refFwd, refInv;
  for (std::size_t k : bins) {
    refFwd.push_back(dft.bin(x, k, false));
    refInv.push_back(dft.bin(x, k, true));
  }
  double worst = 0;
  for (const Form* f : kForms) {
    for (int flag : kFlags) {
      SCOPED_TRACE(std::string(f->name()) + " flag " + std::to_string(flag));
      Ctx c(*f, order, flag);
      ASSERT_NE(c.ctx, nullptr);
      std::vector<Cd> fwd, inv, back;
      ASSERT_EQ(f->run(false, c.ctx, x, fwd), orvOk);
      ASSERT_EQ(f->run(true, c.ctx, x, inv), orvOk);
      for (int dir = 0; dir < 2; ++dir) {
        const std::vector<Cd>& got = dir ? inv : fwd;
        const std::vector<Cl>& ref = dir ? refInv : refFwd;
        const double cf = factor(flag, dir == 1, n);
        const double tol = bound(*f, order, cf, xnorm);
        for (std::size_t b = 0; b < bins.size(); ++b) {
          const Cl want = ref[b] * static_cast<long double>(cf);
          const double err = double(std::abs(Cl(got[bins[b]].real(), got[bins[b]].imag()) - want));
          worst = std::max(worst, err / tol);
          ASSERT_LE(err, tol) << "dir " << dir << " bin " << bins[b];
        }
      }
      // The inverse of the forward returns the input, N times it unscaled.
      ASSERT_EQ(f->run(true, c.ctx, fwd, back), orvOk);
      const double g = flag == orvScaleNone ? double(n) : 1.0;
      const double tol = 2 * bound(*f, order, g, xnorm / std::sqrt(double(n)));
      for (std::size_t i = 0; i < n; ++i) ASSERT_LE(std::abs(back[i] - g * x[i]), tol) << "element " << i;
    }
  }
  RecordProperty("worst_bin_over_bound", std::to_string(worst));
}

INSTANTIATE_TEST_SUITE_P(Orders, FftAccuracy, ::testing::Range(0, 21));

// Exact results of the small orders: integer data make every sum exact.
TEST(FftSmallOrders, ExactOnIntegersAndLeaveTheWorkBufferAlone) {
  for (const Form* f : kForms) {
    for (int order = 0; order <= 3; ++order) {
      const std::size_t n = std::size_t(1) << order;
      std::vector<Cd> x(n);
      for (std::size_t i = 0; i < n; ++i) x[i] = Cd(double(i * i % 7) - 3.0, double(i % 3) + 1.0);
      Ctx c(*f, order, orvScaleNone);
      orvtest::Guarded<orv8u> work(64);
      orv::testing::resetAllocationCount();
      std::vector<Cd> fwd;
      ASSERT_EQ(f->run(false, c.ctx, x, fwd, work.data()), orvOk);
      EXPECT_EQ(orv::testing::allocationCount(), 0);
      EXPECT_TRUE(work.untouched());
      int bytes = -1;
      ASSERT_EQ(f->bufSize(c.ctx, &bytes), orvOk);
      EXPECT_EQ(bytes, 0);
      for (std::size_t k = 0; k < n; ++k) {
        Cd want = 0;
        for (std::size_t i = 0; i < n; ++i) {
          // exp(-2 pi i ik/n) for n <= 8 computed exactly where it is exact
          const double a = -2.0 * M_PI * double(i * k % n) / double(n);
          want += x[i] * Cd(std::cos(a), std::sin(a));
        }
        const bool exact = order <= 2;
        if (exact) {
          EXPECT_EQ(fwd[k], Cd(std::round(want.real()), std::round(want.imag())))
              << f->name() << " order " << order << " bin " << k;
        } else {
          EXPECT_NEAR(std::abs(fwd[k] - want), 0.0, 1e-5) << f->name() << " bin " << k;
        }
      }
    }
  }
}

TEST(FftSmallOrders, OrderZeroIsTheInputTimesOneWhenScaled) {
  const std::vector<Cd> x = {Cd(0.3, -7.25)};
  for (const Form* f : kForms) {
    for (int flag : kFlags) {
      Ctx c(*f, 0, flag);
      std::vector<Cd> out;
      ASSERT_EQ(f->run(false, c.ctx, x, out), orvOk);
      EXPECT_EQ(out[0], Cd(double(f->isDouble() ? 0.3 : double(0.3f)), -7.25)) << f->name();
      ASSERT_EQ(f->run(true, c.ctx, x, out), orvOk);
      EXPECT_EQ(out[0].imag(), -7.25);
    }
  }
}

// ---- Bit identity -----------------------------------------------------------

TEST(FftBitIdentity, InPlaceEqualsOutOfPlace) {
  for (const Form* f : kForms) {
    for (int order = 0; order <= 16; ++order) {
      const std::vector<Cd> x = randomInput(std::size_t(1) << order, 7u * unsigned(order) + 1u);
      for (int flag : {orvScaleNone, orvScaleBothSqrt}) {
        Ctx c(*f, order, flag);
        for (bool inv : {false, true}) {
          std::vector<Cd> out, in, mixedA, mixedB;
          ASSERT_EQ(f->run(inv, c.ctx, x, out), orvOk);
          ASSERT_EQ(f->run(inv, c.ctx, x, in, nullptr, true, true), orvOk);
          EXPECT_TRUE(sameBits(out, in)) << f->name() << " order " << order << " inv " << inv;
          if (f->isSplit()) {
            ASSERT_EQ(f->run(inv, c.ctx, x, mixedA, nullptr, true, false), orvOk);
            ASSERT_EQ(f->run(inv, c.ctx, x, mixedB, nullptr, false, true), orvOk);
            EXPECT_TRUE(sameBits(out, mixedA)) << f->name() << " order " << order;
            EXPECT_TRUE(sameBits(out, mixedB)) << f->name() << " order " << order;
          }
        }
      }
    }
  }
}

// The split forms use another stage order only in leaf transforms of odd
// order; at these orders every step is the same arithmetic.
TEST(FftBitIdentity, SplitEqualsInterleavedWhereTheStagesAgree) {
  struct Case {
    const Form* split;
    const Form* inter;
    std::vector<int> orders;
  };
  const Case cases[] = {
      {&kForm32f, &kForm32fc, {0, 1, 2, 3, 4, 6, 8, 10, 11, 12, 13, 14, 15, 16, 18}},
      {&kForm64f, &kForm64fc, {0, 1, 2, 3, 4, 6, 8, 12, 13, 14, 15}},
  };
  for (const Case& cs : cases) {
    for (int order : cs.orders) {
      const std::vector<Cd> x = randomInput(std::size_t(1) << order, 31u + unsigned(order));
      for (int flag : kFlags) {
        Ctx a(*cs.split, order, flag), b(*cs.inter, order, flag);
        for (bool inv : {false, true}) {
          std::vector<Cd> ya, yb;
          ASSERT_EQ(cs.split->run(inv, a.ctx, x, ya), orvOk);
          ASSERT_EQ(cs.inter->run(inv, b.ctx, x, yb), orvOk);
          EXPECT_TRUE(sameBits(ya, yb)) << cs.split->name() << " order " << order << " flag " << flag;
        }
      }
    }
  }
}

// ---- Work size and work buffer ----------------------------------------------

TEST(FftWork, SizesPerOrder) {
  // 0 on the leaf path, 16 on the blocked path, otherwise 16 plus the bytes
  // of four work columns of the longest column of any level.
  const int want64[21] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 16, 1040, 2064, 4112, 8208, 8208, 16400,
                          32784, 32784, 32784};
  const int want32[21] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 16, 1040, 2064, 4112, 8208, 8208,
                          8208, 32784, 32784};
  for (const Form* f : kForms) {
    for (int order = 0; order <= 20; ++order) {
      Ctx c(*f, order, orvScaleNone);
      int bytes = -1;
      ASSERT_EQ(f->bufSize(c.ctx, &bytes), orvOk);
      EXPECT_EQ(bytes, f->isDouble() ? want64[order] : want32[order]) << f->name() << " order " << order;
    }
  }
}

TEST(FftWork, MisalignedCallerBufferServesAndNothingOutsideIsTouched) {
  for (const Form* f : kForms) {
    for (int order : {10, 11, 12, 13, 15}) {
      Ctx c(*f, order, orvScaleForward);
      int bytes = 0;
      ASSERT_EQ(f->bufSize(c.ctx, &bytes), orvOk);
      const std::vector<Cd> x = randomInput(std::size_t(1) << order, 5u);
      std::vector<Cd> ref;
      ASSERT_EQ(f->run(false, c.ctx, x, ref), orvOk);
      for (std::size_t offset : {0, 1, 7, 15}) {
        if (bytes == 0) continue;
        orvtest::Guarded<orv8u> work(std::size_t(bytes), offset);
        orv::testing::resetAllocationCount();
        std::vector<Cd> got;
        ASSERT_EQ(f->run(false, c.ctx, x, got, work.data()), orvOk);
        EXPECT_EQ(orv::testing::allocationCount(), 0) << "a caller's buffer means no allocation";
        EXPECT_TRUE(work.intactOutside()) << f->name() << " order " << order << " offset " << offset;
        EXPECT_TRUE(sameBits(ref, got));
      }
    }
  }
}

TEST(FftWork, NullBufferAllocatesExactlyTheWorkSize) {
  for (const Form* f : kForms) {
    const int leafMax = f->isDouble() ? 9 : 10;
    for (int order : {4, leafMax, leafMax + 1, 14}) {
      Ctx c(*f, order, orvScaleNone);
      int bytes = 0;
      ASSERT_EQ(f->bufSize(c.ctx, &bytes), orvOk);
      const std::vector<Cd> x = randomInput(std::size_t(1) << order, 3u);
      std::vector<Cd> out;
      orv::testing::resetAllocationCount();
      ASSERT_EQ(f->raw(false, nullptr, nullptr, nullptr, nullptr, c.ctx, nullptr), orvErrNullPointer);
      EXPECT_EQ(orv::testing::allocationCount(), 0);
      ASSERT_EQ(f->run(false, c.ctx, x, out), orvOk);
      if (bytes == 0) {
        EXPECT_EQ(orv::testing::allocationCount(), 0) << f->name() << " order " << order;
      } else {
        EXPECT_EQ(orv::testing::allocationCount(), 1) << f->name() << " order " << order;
        EXPECT_GE(orv::testing::lastRequestBytes(), std::uint64_t(bytes));
        EXPECT_LE(orv::testing::lastRequestBytes(), std::uint64_t(bytes) + 64);
      }
    }
  }
}

TEST(FftWork, FailedInternalBufferReportsNoMemoryBeforeTouchingData) {
  for (const Form* f : kForms) {
    Ctx c(*f, 13, orvScaleNone);
    const std::size_t n = 1 << 13, reals = f->isSplit() ? n : 2 * n;
    const std::size_t size = f->isDouble() ? 8 : 4;
    orvtest::Guarded<orv8u> src(reals * size), srcIm(reals * size), dst(reals * size), dstIm(reals * size);
    orv::testing::failNthAllocation(1);
    EXPECT_EQ(f->raw(false, src.data(), srcIm.data(), dst.data(), dstIm.data(), c.ctx, nullptr), orvErrNoMemory);
    orv::testing::failNthAllocation(0);
    EXPECT_TRUE(dst.untouched() && dstIm.untouched() && src.untouched()) << f->name();
  }
}

// ---- Statuses ---------------------------------------------------------------

TEST(FftStatus, ChecksInOrder) {
  for (const Form* f : kForms) {
    SCOPED_TRACE(f->name());
    orvsFFTContext* ctx = reinterpret_cast<orvsFFTContext*>(&ctx);
    EXPECT_EQ(f->init(nullptr, 4, orvScaleNone), orvErrNullPointer);
    EXPECT_EQ(f->init(&ctx, 4, 3), orvErrFftFlag);
    for (int order : {-1, 31}) EXPECT_EQ(f->init(&ctx, order, 0), orvErrFftOrder);  // order before flag
    for (int flag : {0, 3, 5, 16, -8}) EXPECT_EQ(f->init(&ctx, 5, flag), orvErrFftFlag);
    EXPECT_EQ(ctx, reinterpret_cast<orvsFFTContext*>(&ctx)) << "written only on success";

    int size = 0;
    float buf[4] = {};
    EXPECT_EQ(f->release(nullptr), orvErrNullPointer);
    EXPECT_EQ(f->bufSize(nullptr, &size), orvErrNullPointer);
    EXPECT_EQ(f->raw(false, buf, buf, buf, buf, nullptr, nullptr), orvErrNullPointer);
    EXPECT_EQ(f->raw(true, buf, buf, buf, buf, nullptr, nullptr), orvErrNullPointer);

    Ctx own(*f, 2, orvScaleNone);
    EXPECT_EQ(f->bufSize(own.ctx, nullptr), orvErrNullPointer);
    for (bool inv : {false, true}) {
      EXPECT_EQ(f->raw(inv, nullptr, buf, buf, buf, own.ctx, nullptr), orvErrNullPointer);
      EXPECT_EQ(f->raw(inv, buf, buf, nullptr, buf, own.ctx, nullptr), orvErrNullPointer);
      if (f->isSplit()) {
        EXPECT_EQ(f->raw(inv, buf, nullptr, buf, buf, own.ctx, nullptr), orvErrNullPointer);
        EXPECT_EQ(f->raw(inv, buf, buf, buf, nullptr, own.ctx, nullptr), orvErrNullPointer);
      }
    }
    // A context of any other suffix is refused before the data pointers.
    for (const Form* other : kForms) {
      if (other == f) continue;
      Ctx foreign(*other, 5, orvScaleNone);
      EXPECT_EQ(f->raw(false, nullptr, nullptr, nullptr, nullptr, foreign.ctx, nullptr), orvErrContextMismatch);
      EXPECT_EQ(f->raw(true, nullptr, nullptr, nullptr, nullptr, foreign.ctx, nullptr), orvErrContextMismatch);
      EXPECT_EQ(f->bufSize(foreign.ctx, &size), orvErrContextMismatch);
      EXPECT_EQ(f->release(foreign.ctx), orvErrContextMismatch) << "and frees nothing";
    }
  }
}

TEST(FftStatus, FreeClearsTheTag) {
  // The allocator's test hook records the first word of every block as it is
  // released, so the tag is seen at the moment the record goes back.
  for (const Form* f : kForms) {
    orvsFFTContext* ctx = nullptr;
    ASSERT_EQ(f->init(&ctx, 6, orvScaleNone), orvOk);
    orv32u before = 0;
    std::memcpy(&before, ctx, sizeof before);
    EXPECT_NE(before, 0u);
    const void* block = ctx;
    ASSERT_EQ(f->release(ctx), orvOk);
    orv32u atRelease = 1;
    ASSERT_TRUE(orv::testing::releasedFirstWord(block, &atRelease)) << f->name();
    EXPECT_EQ(atRelease, 0u) << f->name();
  }
}

// ---- Memory -----------------------------------------------------------------

TEST(FftMemory, TopOrdersFailFastWithoutLargeRequests) {
  for (const Form* f : kForms) {
    for (int order : {29, 30}) {
      orvsFFTContext* ctx = nullptr;
      orv::testing::resetAllocationCount();
      const auto t0 = std::chrono::steady_clock::now();
      EXPECT_EQ(f->init(&ctx, order, orvScaleNone), orvErrNoMemory) << f->name() << " order " << order;
      const double secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
      EXPECT_LT(secs, 0.5);
      EXPECT_EQ(ctx, nullptr);
      EXPECT_EQ(orv::testing::allocationCount(), 1) << "only the context block is requested";
      EXPECT_LT(orv::testing::lastRequestBytes(), 4096u);
    }
  }
}

// Under the leak checker of the sanitizer build, a table left behind by any
// order shows up at exit.
TEST(FftMemory, CreateAndFreeEveryOrderUpTo24) {
  for (const Form* f : kForms) {
    // Split and interleaved forms of one precision build the same tables, so
    // the largest orders run once per precision.
    const int top = f->isSplit() == f->isDouble() ? 24 : 20;
    for (int order = 0; order <= top; ++order) {
      orvsFFTContext* ctx = nullptr;
      ASSERT_EQ(f->init(&ctx, order, orvScaleBothSqrt, 7), orvOk) << f->name() << " order " << order;
      ASSERT_EQ(f->release(ctx), orvOk);
    }
  }
}

TEST(FftMemory, EveryAllocationFailureOfInitAllocReportsNoMemory) {
  for (const Form* f : kForms) {
    // one order per path: small, leaf, blocked, one level, two levels
    for (int order : {2, 7, 11, 14, 21}) {
      int failures = 0;
      for (long nth = 1;; ++nth) {
        orvsFFTContext* ctx = nullptr;
        orv::testing::failNthAllocation(nth);
        const orvStatus st = f->init(&ctx, order, orvScaleForward);
        orv::testing::failNthAllocation(0);
        if (st == orvOk) {
          ASSERT_EQ(f->release(ctx), orvOk);
          break;
        }
        ASSERT_EQ(st, orvErrNoMemory) << f->name() << " order " << order << " allocation " << nth;
        EXPECT_EQ(ctx, nullptr);
        ++failures;
        ASSERT_LT(nth, 64);
      }
      EXPECT_GE(failures, order >= 4 ? 4 : 1) << f->name() << " order " << order;
    }
  }
}

// ---- Numbers pass through -------------------------------------------------

TEST(FftSpecialValues, NaNAndInfinityPropagate) {
  for (const Form* f : kForms) {
    for (int order : {3, 6}) {
      std::vector<Cd> x(std::size_t(1) << order, Cd(0, 0));
      x[1] = Cd(std::nan(""), 0);
      Ctx c(*f, order, orvScaleNone);
      std::vector<Cd> out;
      ASSERT_EQ(f->run(false, c.ctx, x, out), orvOk);
      for (const Cd& v : out) EXPECT_TRUE(std::isnan(v.real()) || std::isnan(v.imag())) << f->name();
    }
  }
}

}  // namespace
