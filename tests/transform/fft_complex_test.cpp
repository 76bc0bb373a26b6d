// The complex FFT in its four forms: accuracy against a naive transform in
// long double, round trips, bit identity between the ways of calling it, work
// sizes and buffers, statuses, and allocation failures (real forms included).
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <complex>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "core/test_hooks.hpp"
#include "orvspx.h"
#include "support/test_support.hpp"

namespace {

using Cd = std::complex<double>;
using Cl = std::complex<long double>;
using InitFn = orvStatus (*)(orvsFFTContext**, int, int, int);
using FreeFn = orvStatus (*)(orvsFFTContext*);
using BufFn = orvStatus (*)(const orvsFFTContext*, int*);
using RawFn = orvStatus (*)(bool, const void*, const void*, void*, void*, const orvsFFTContext*, orv8u*);

const int kFlags[] = {orvScaleNone, orvScaleBothSqrt, orvScaleForward, orvScaleInverse};

// The transform on raw pointers; interleaved forms use only sr and dr.
#define RAW_INTERLEAVED(S, T)                                                                               \
  orvStatus raw##S(bool inv, const void* sr, const void*, void* dr, void*, const orvsFFTContext* c, orv8u* w) { \
    auto* s = static_cast<const T*>(sr);                                                                    \
    auto* d = static_cast<T*>(dr);                                                                          \
    return inv ? orvsFFTInv_CToC_##S(s, d, c, w) : orvsFFTFwd_CToC_##S(s, d, c, w);                         \
  }
#define RAW_SPLIT(S, T)                                                                                     \
  orvStatus raw##S(bool inv, const void* sr, const void* si, void* dr, void* di, const orvsFFTContext* c,   \
                   orv8u* w) {                                                                              \
    auto *s = static_cast<const T*>(sr), *t = static_cast<const T*>(si);                                    \
    auto *d = static_cast<T*>(dr), *e = static_cast<T*>(di);                                                \
    return inv ? orvsFFTInv_CToC_##S(s, t, d, e, c, w) : orvsFFTFwd_CToC_##S(s, t, d, e, c, w);             \
  }
RAW_INTERLEAVED(32fc, orv32fc)
RAW_INTERLEAVED(64fc, orv64fc)
RAW_SPLIT(32f, orv32f)
RAW_SPLIT(64f, orv64f)
#undef RAW_INTERLEAVED
#undef RAW_SPLIT

struct Form {
  const char* name;
  bool isDouble, isSplit;
  InitFn init;
  FreeFn release;
  BufFn bufSize;
  RawFn raw;
  double eps() const { return isDouble ? 0x1p-52 : 0x1p-23; }

  // Transforms `in` into `out` (values widened exactly from the element type).
  // inPlaceRe/inPlaceIm pick src == dst per array; interleaved forms use
  // inPlaceRe for their one array.
  template <typename T>
  orvStatus runAs(bool inv, const orvsFFTContext* ctx, const std::vector<Cd>& in, std::vector<Cd>& out, orv8u* work,
                  bool inPlaceRe, bool inPlaceIm) const {
    const std::size_t n = in.size();
    std::vector<T> s(2 * n), d(2 * n);  // split: re in [0, n), im in [n, 2n)
    for (std::size_t i = 0; i < n; ++i) {
      s[isSplit ? i : 2 * i] = T(in[i].real());
      s[isSplit ? n + i : 2 * i + 1] = T(in[i].imag());
    }
    T* o = inPlaceRe ? s.data() : d.data();
    T* oIm = inPlaceIm ? s.data() + n : d.data() + n;
    const orvStatus st = raw(inv, s.data(), s.data() + n, o, oIm, ctx, work);
    out.resize(n);
    for (std::size_t i = 0; i < n; ++i) out[i] = isSplit ? Cd(o[i], oIm[i]) : Cd(o[2 * i], o[2 * i + 1]);
    return st;
  }
  orvStatus run(bool inv, const orvsFFTContext* ctx, const std::vector<Cd>& in, std::vector<Cd>& out,
                orv8u* work = nullptr, bool inPlaceRe = false, bool inPlaceIm = false) const {
    return isDouble ? runAs<double>(inv, ctx, in, out, work, inPlaceRe, inPlaceIm)
                    : runAs<float>(inv, ctx, in, out, work, inPlaceRe, inPlaceIm);
  }
};

const Form kForms[] = {
    {"32fc", false, false, orvsFFTInitAlloc_C_32fc, orvsFFTFree_C_32fc, orvsFFTGetBufSize_C_32fc, raw32fc},
    {"32f", false, true, orvsFFTInitAlloc_C_32f, orvsFFTFree_C_32f, orvsFFTGetBufSize_C_32f, raw32f},
    {"64fc", true, false, orvsFFTInitAlloc_C_64fc, orvsFFTFree_C_64fc, orvsFFTGetBufSize_C_64fc, raw64fc},
    {"64f", true, true, orvsFFTInitAlloc_C_64f, orvsFFTFree_C_64f, orvsFFTGetBufSize_C_64f, raw64f},
};

// A context freed at the end of the scope.
struct Ctx {
  const Form& form;
  orvsFFTContext* ctx = nullptr;
  Ctx(const Form& f, int order, int flag) : form(f) {
    EXPECT_EQ(f.init(&ctx, order, flag, 0), orvOk) << f.name << " order " << order;
  }
  ~Ctx() {
    if (ctx) form.release(ctx);
  }
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

bool sameBits(const std::vector<Cd>& a, const std::vector<Cd>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Cd)) == 0;
}

double factor(int flag, bool inv, std::size_t n) {
  if (flag == orvScaleBothSqrt) return 1.0 / std::sqrt(double(n));
  return flag == (inv ? orvScaleInverse : orvScaleForward) ? 1.0 / double(n) : 1.0;
}

// ---- Accuracy ---------------------------------------------------------------
//
// Each of the log2(N) stages rounds what it stores, adding a few eps times the
// 2-norm of its data; the stages are orthogonal up to a factor, so the errors
// add without growing: ||X' - X|| <= C log2(N) eps ||X||. For random input the
// error spreads evenly over the bins, so one bin is held to C (log2(N) + 1)
// eps ||x|| times the flag's factor (+1 for the final scaling and order 0),
// with C = 1. The worst bin measured is about a third of this bound, while a
// wrong twiddle or sign gives errors of order ||x||.
double bound(const Form& f, int order, double c, double xnorm) { return (order + 1) * f.eps() * c * xnorm; }

class FftAccuracy : public ::testing::TestWithParam<int> {};

TEST_P(FftAccuracy, MatchesNaiveTransformAndRoundTrips) {
  const int order = GetParam();
  const std::size_t n = std::size_t(1) << order;
  const std::vector<Cd> x = randomInput(n, 1234u + unsigned(order));
  long double sq = 0;
  for (const Cd& v : x) sq += std::norm(Cl(v.real(), v.imag()));
  const double xnorm = double(std::sqrt(sq));
  // Bins to compare: all up to order 10, then the ends, the middle and some
  // random ones, each from exact-index angles in long double.
  std::vector<std::size_t> bins = {0, 1, n / 2, n - 1, n / 4 + 3};
  if (order <= 10) {
    bins.clear();
    for (std::size_t k = 0; k < n; ++k) bins.push_back(k);
  } else {
    std::mt19937 gen(99u + unsigned(order));
    for (int i = 0; i < 12; ++i) bins.push_back(gen() % n);
  }
  std::vector<Cl> w(n);
  for (std::size_t k = 0; k < n; ++k) {
    const long double a = 2 * 3.141592653589793238462643383279502884L * (long double)k / (long double)n;
    w[k] = Cl(std::cos(a), -std::sin(a));
  }
  std::vector<Cl> ref[2];
  for (std::size_t k : bins) {
    Cl f = 0, b = 0;
    for (std::size_t i = 0, idx = 0; i < n; ++i, idx = (idx + k) % n) {
      f += Cl(x[i].real(), x[i].imag()) * w[idx];
      b += Cl(x[i].real(), x[i].imag()) * std::conj(w[idx]);
    }
    ref[0].push_back(f);
    ref[1].push_back(b);
  }
  for (const Form& f : kForms) {
    for (int flag : kFlags) {
      SCOPED_TRACE(std::string(f.name) + " flag " + std::to_string(flag));
      Ctx c(f, order, flag);
      ASSERT_NE(c.ctx, nullptr);
      std::vector<Cd> out[2], back;
      for (int dir = 0; dir < 2; ++dir) {
        ASSERT_EQ(f.run(dir == 1, c.ctx, x, out[dir]), orvOk);
        const double cf = factor(flag, dir == 1, n), tol = bound(f, order, cf, xnorm);
        for (std::size_t b = 0; b < bins.size(); ++b) {
          const Cd got = out[dir][bins[b]];
          const double err = double(std::abs(Cl(got.real(), got.imag()) - ref[dir][b] * (long double)cf));
          ASSERT_LE(err, tol) << "dir " << dir << " bin " << bins[b];
        }
      }
      // The inverse of the forward returns the input, N times it unscaled.
      ASSERT_EQ(f.run(true, c.ctx, out[0], back), orvOk);
      const double g = flag == orvScaleNone ? double(n) : 1.0;
      const double tol = 2 * bound(f, order, g, xnorm / std::sqrt(double(n)));
      for (std::size_t i = 0; i < n; ++i) ASSERT_LE(std::abs(back[i] - g * x[i]), tol) << "element " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Orders, FftAccuracy, ::testing::Range(0, 21));

// ---- Bit identity -----------------------------------------------------------

TEST(FftBitIdentity, InPlaceEqualsOutOfPlace) {
  for (const Form& f : kForms) {
    for (int order = 0; order <= 16; ++order) {
      const std::vector<Cd> x = randomInput(std::size_t(1) << order, 7u * unsigned(order) + 1u);
      for (int flag : {orvScaleNone, orvScaleBothSqrt}) {
        Ctx c(f, order, flag);
        for (bool inv : {false, true}) {
          std::vector<Cd> out, in;
          ASSERT_EQ(f.run(inv, c.ctx, x, out), orvOk);
          for (int mode = 1; mode < (f.isSplit ? 4 : 2); ++mode) {  // re, im or both in place
            ASSERT_EQ(f.run(inv, c.ctx, x, in, nullptr, mode & 1, mode & 2), orvOk);
            EXPECT_TRUE(sameBits(out, in)) << f.name << " order " << order << " inv " << inv << " mode " << mode;
          }
        }
      }
    }
  }
}

// The split forms use another stage order only in leaf transforms of odd
// order; at these orders every step is the same arithmetic.
TEST(FftBitIdentity, SplitEqualsInterleavedWhereTheStagesAgree) {
  const struct {
    const Form &split, &inter;
    std::vector<int> orders;
  } cases[] = {
      {kForms[1], kForms[0], {0, 1, 2, 3, 4, 6, 8, 10, 11, 12, 13, 14, 15, 16, 18}},
      {kForms[3], kForms[2], {0, 1, 2, 3, 4, 6, 8, 12, 13, 14, 15}},
  };
  for (const auto& cs : cases) {
    for (int order : cs.orders) {
      const std::vector<Cd> x = randomInput(std::size_t(1) << order, 31u + unsigned(order));
      for (int flag : kFlags) {
        Ctx a(cs.split, order, flag), b(cs.inter, order, flag);
        for (bool inv : {false, true}) {
          std::vector<Cd> ya, yb;
          ASSERT_EQ(cs.split.run(inv, a.ctx, x, ya), orvOk);
          ASSERT_EQ(cs.inter.run(inv, b.ctx, x, yb), orvOk);
          EXPECT_TRUE(sameBits(ya, yb)) << cs.split.name << " order " << order << " flag " << flag;
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
  for (const Form& f : kForms) {
    for (int order = 0; order <= 20; ++order) {
      Ctx c(f, order, orvScaleNone);
      int bytes = -1;
      ASSERT_EQ(f.bufSize(c.ctx, &bytes), orvOk);
      EXPECT_EQ(bytes, f.isDouble ? want64[order] : want32[order]) << f.name << " order " << order;
    }
  }
}

// A caller's buffer (misaligned too) means no allocation, and is left alone
// where no work is needed; without one, exactly the work size is allocated,
// and a failed allocation reports no memory before any output is written.
TEST(FftWork, CallerBufferInternalBufferAndItsFailure) {
  for (const Form& f : kForms) {
    const int leafMax = f.isDouble ? 9 : 10;
    for (int order : {2, 4, leafMax, leafMax + 1, 12, 13, 15}) {
      SCOPED_TRACE(std::string(f.name) + " order " + std::to_string(order));
      Ctx c(f, order, orvScaleForward);
      int bytes = 0;
      ASSERT_EQ(f.bufSize(c.ctx, &bytes), orvOk);
      const std::size_t n = std::size_t(1) << order;
      const std::vector<Cd> x = randomInput(n, 5u);
      std::vector<Cd> ref, got;
      orv::testing::resetAllocationCount();
      ASSERT_EQ(f.raw(false, nullptr, nullptr, nullptr, nullptr, c.ctx, nullptr), orvErrNullPointer);
      EXPECT_EQ(orv::testing::allocationCount(), 0);
      ASSERT_EQ(f.run(false, c.ctx, x, ref), orvOk);
      EXPECT_EQ(orv::testing::allocationCount(), bytes == 0 ? 0 : 1);
      if (bytes != 0) {
        EXPECT_GE(orv::testing::lastRequestBytes(), std::uint64_t(bytes));
        EXPECT_LE(orv::testing::lastRequestBytes(), std::uint64_t(bytes) + 64);
      }
      for (std::size_t offset : {0, 1, 7, 15}) {
        orvtest::Guarded<orv8u> work(std::size_t(bytes == 0 ? 64 : bytes), offset);
        orv::testing::resetAllocationCount();
        ASSERT_EQ(f.run(false, c.ctx, x, got, work.data()), orvOk);
        EXPECT_EQ(orv::testing::allocationCount(), 0);
        EXPECT_TRUE(bytes == 0 ? work.untouched() : work.intactOutside()) << "offset " << offset;
        EXPECT_TRUE(sameBits(ref, got));
      }
      if (bytes == 0) continue;
      const std::size_t arr = (f.isSplit ? n : 2 * n) * (f.isDouble ? 8 : 4);
      std::vector<orv8u> src(arr), srcIm(arr);  // random, so that a copy into dst would show
      orvtest::fillRandomBytes(src.data(), arr, 1);
      orvtest::fillRandomBytes(srcIm.data(), arr, 2);
      orvtest::Guarded<orv8u> dst(arr), dstIm(arr);
      orv::testing::failNthAllocation(1);
      EXPECT_EQ(f.raw(true, src.data(), srcIm.data(), dst.data(), dstIm.data(), c.ctx, nullptr), orvErrNoMemory);
      orv::testing::failNthAllocation(0);
      EXPECT_TRUE(dst.untouched() && dstIm.untouched());
    }
  }
}

// ---- Statuses ---------------------------------------------------------------

TEST(FftStatus, ChecksInOrder) {
  for (const Form& f : kForms) {
    SCOPED_TRACE(f.name);
    orvsFFTContext* const sentinel = reinterpret_cast<orvsFFTContext*>(const_cast<Form*>(&f));
    orvsFFTContext* ctx = sentinel;
    Ctx own(f, 2, orvScaleNone);
    Ctx foreign(f.isDouble ? kForms[f.isSplit ? 0 : 1] : kForms[f.isSplit ? 2 : 3], 5, orvScaleNone);
    float b[16] = {};  // room for order 2 in every form
    int size = 0;
    const orvsFFTContext* o = own.ctx;
    const orvsFFTContext* x = foreign.ctx;
    const struct {
      orvStatus want;
      std::function<orvStatus()> call;
    } rows[] = {
        {orvErrNullPointer, [&] { return f.init(nullptr, 4, orvScaleNone, 0); }},
        {orvErrFftOrder, [&] { return f.init(&ctx, -1, 0, 0); }},  // order before flag
        {orvErrFftOrder, [&] { return f.init(&ctx, 31, 0, 0); }},
        {orvErrFftFlag, [&] { return f.init(&ctx, 5, 0, 0); }},
        {orvErrFftFlag, [&] { return f.init(&ctx, 5, 3, 0); }},
        {orvErrFftFlag, [&] { return f.init(&ctx, 5, 5, 0); }},
        {orvErrFftFlag, [&] { return f.init(&ctx, 5, 16, 0); }},
        {orvErrFftFlag, [&] { return f.init(&ctx, 5, -8, 0); }},
        {orvErrNullPointer, [&] { return f.release(nullptr); }},
        {orvErrNullPointer, [&] { return f.bufSize(nullptr, &size); }},
        {orvErrNullPointer, [&] { return f.bufSize(o, nullptr); }},
        {orvErrNullPointer, [&] { return f.raw(false, b, b, b, b, nullptr, nullptr); }},
        {orvErrNullPointer, [&] { return f.raw(true, b, b, b, b, nullptr, nullptr); }},
        {orvErrNullPointer, [&] { return f.raw(false, nullptr, b, b, b, o, nullptr); }},
        {orvErrNullPointer, [&] { return f.raw(true, b, b, nullptr, b, o, nullptr); }},
        {f.isSplit ? orvErrNullPointer : orvOk, [&] { return f.raw(false, b, nullptr, b, b, o, nullptr); }},
        {f.isSplit ? orvErrNullPointer : orvOk, [&] { return f.raw(true, b, b, b, nullptr, o, nullptr); }},
        // A context of another suffix is refused before the data pointers.
        {orvErrContextMismatch, [&] { return f.raw(false, nullptr, nullptr, nullptr, nullptr, x, nullptr); }},
        {orvErrContextMismatch, [&] { return f.raw(true, nullptr, nullptr, nullptr, nullptr, x, nullptr); }},
        {orvErrContextMismatch, [&] { return f.bufSize(x, &size); }},
        {orvErrContextMismatch, [&] { return f.release(foreign.ctx); }},  // and frees nothing
    };
    for (std::size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i) EXPECT_EQ(rows[i].call(), rows[i].want) << "row " << i;
    EXPECT_EQ(ctx, sentinel) << "written only on success";
  }
}

TEST(FftStatus, FreeClearsTheTag) {
  // The allocator's test hook records the first word of every block as it is
  // released, so the tag is seen at the moment the record goes back.
  for (const Form& f : kForms) {
    orvsFFTContext* ctx = nullptr;
    ASSERT_EQ(f.init(&ctx, 6, orvScaleNone, 0), orvOk);
    orv32u before = 0;
    std::memcpy(&before, ctx, sizeof before);
    EXPECT_NE(before, 0u);
    const void* block = ctx;
    ASSERT_EQ(f.release(ctx), orvOk);
    orv32u atRelease = 1;
    ASSERT_TRUE(orv::testing::releasedFirstWord(block, &atRelease)) << f.name;
    EXPECT_EQ(atRelease, 0u) << f.name;
  }
}

// ---- Memory (complex and real contexts) -------------------------------------

const struct {
  const char* name;
  InitFn init;
  FreeFn release;
} kInits[] = {{"C_32fc", orvsFFTInitAlloc_C_32fc, orvsFFTFree_C_32fc}, {"C_32f", orvsFFTInitAlloc_C_32f, orvsFFTFree_C_32f},
              {"C_64fc", orvsFFTInitAlloc_C_64fc, orvsFFTFree_C_64fc}, {"C_64f", orvsFFTInitAlloc_C_64f, orvsFFTFree_C_64f},
              {"R_32f", orvsFFTInitAlloc_R_32f, orvsFFTFree_R_32f},     {"R_64f", orvsFFTInitAlloc_R_64f, orvsFFTFree_R_64f}};

TEST(FftMemory, TopOrdersFailFastWithoutLargeRequests) {
  for (const auto& f : kInits) {
    for (int order : {29, 30}) {
      if (order == 29 && std::strcmp(f.name, "R_32f") == 0) continue;  // its half fits
      orvsFFTContext* ctx = nullptr;
      orv::testing::resetAllocationCount();
      const auto t0 = std::chrono::steady_clock::now();
      EXPECT_EQ(f.init(&ctx, order, orvScaleNone, 0), orvErrNoMemory) << f.name << " order " << order;
      EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count(), 0.5);
      EXPECT_EQ(ctx, nullptr);
      EXPECT_EQ(orv::testing::allocationCount(), 1) << "only the context block is requested";
      EXPECT_LT(orv::testing::lastRequestBytes(), 4096u);
    }
  }
}

TEST(FftMemory, EveryAllocationFailureOfInitAllocReportsNoMemory) {
  for (const auto& f : kInits) {
    // one order per path: small, leaf, blocked, one level, two levels
    for (int order : {2, 7, 11, 14, 21}) {
      int failures = 0;
      for (long nth = 1;; ++nth) {
        orvsFFTContext* ctx = nullptr;
        orv::testing::failNthAllocation(nth);
        const orvStatus st = f.init(&ctx, order, orvScaleForward, 0);
        orv::testing::failNthAllocation(0);
        if (st == orvOk) {
          ASSERT_EQ(f.release(ctx), orvOk);
          break;
        }
        ASSERT_EQ(st, orvErrNoMemory) << f.name << " order " << order << " allocation " << nth;
        EXPECT_EQ(ctx, nullptr);
        ++failures;
        ASSERT_LT(nth, 64);
      }
      EXPECT_GE(failures, order >= 4 ? 4 : 1) << f.name << " order " << order;
    }
  }
}

}  // namespace
