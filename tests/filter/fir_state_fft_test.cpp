// The FFT path of long FIR filters: when a state has one, its length, and
// the spectrum of the taps that creation keeps.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "fir_families.hpp"

namespace firtest {
namespace {

using orv::filter::FirFft;

// The transform a family's path is made with, called through its exports.
template <FirFft P>
struct Engine;

template <>
struct Engine<FirFft::Real32> {
  using Elem = orv32f;
  static constexpr double kEps = 0x1p-24;
  static orvStatus init(orvsFFTContext** c, int order) {
    return orvsFFTInitAlloc_R_32f(c, order, orvScaleInverse, 0);
  }
  static orvStatus forward(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTFwd_RToPerm_32f(s, d, c, nullptr);
  }
  static orvStatus inverse(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTInv_PermToR_32f(s, d, c, nullptr);
  }
  static void release(orvsFFTContext* c) { orvsFFTFree_R_32f(c); }
};

template <>
struct Engine<FirFft::Real64> {
  using Elem = orv64f;
  static constexpr double kEps = 0x1p-53;
  static orvStatus init(orvsFFTContext** c, int order) {
    return orvsFFTInitAlloc_R_64f(c, order, orvScaleInverse, 0);
  }
  static orvStatus forward(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTFwd_RToPerm_64f(s, d, c, nullptr);
  }
  static orvStatus inverse(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTInv_PermToR_64f(s, d, c, nullptr);
  }
  static void release(orvsFFTContext* c) { orvsFFTFree_R_64f(c); }
};

template <>
struct Engine<FirFft::Complex32> {
  using Elem = orv32fc;
  static constexpr double kEps = 0x1p-24;
  static orvStatus init(orvsFFTContext** c, int order) {
    return orvsFFTInitAlloc_C_32fc(c, order, orvScaleInverse, 0);
  }
  static orvStatus forward(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTFwd_CToC_32fc(s, d, c, nullptr);
  }
  static orvStatus inverse(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTInv_CToC_32fc(s, d, c, nullptr);
  }
  static void release(orvsFFTContext* c) { orvsFFTFree_C_32fc(c); }
};

template <>
struct Engine<FirFft::Complex64> {
  using Elem = orv64fc;
  static constexpr double kEps = 0x1p-53;
  static orvStatus init(orvsFFTContext** c, int order) {
    return orvsFFTInitAlloc_C_64fc(c, order, orvScaleInverse, 0);
  }
  static orvStatus forward(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTFwd_CToC_64fc(s, d, c, nullptr);
  }
  static orvStatus inverse(const Elem* s, Elem* d, const orvsFFTContext* c) {
    return orvsFFTInv_CToC_64fc(s, d, c, nullptr);
  }
  static void release(orvsFFTContext* c) { orvsFFTFree_C_64fc(c); }
};

// Taps as complex long doubles, whatever their type.
inline void parts(orv32f v, long double& re, long double& im) { re = v, im = 0; }
inline void parts(orv64f v, long double& re, long double& im) { re = v, im = 0; }
inline void parts(orv32fc v, long double& re, long double& im) { re = v.re, im = v.im; }
inline void parts(orv64fc v, long double& re, long double& im) { re = v.re, im = v.im; }

// The spectrum X[k] = sum h[n] exp(-2 pi i n k / N) in long double, written in
// the layout the family keeps: N complex values for complex taps; Perm for
// real taps (X[0], X[N/2], then re and im of X[1] .. X[N/2-1]).
template <typename Tap>
std::vector<long double> referenceSpectrum(const std::vector<Tap>& h, int N) {
  const long double pi = 3.141592653589793238462643383279502884L;
  std::vector<long double> re(N, 0.0L), im(N, 0.0L);
  for (int k = 0; k < N; ++k) {
    for (std::size_t n = 0; n < h.size(); ++n) {
      long double hr, hi;
      parts(h[n], hr, hi);
      const long double a = -2 * pi * static_cast<long double>((n * k) % N) / N;
      re[k] += hr * std::cos(a) - hi * std::sin(a);
      im[k] += hr * std::sin(a) + hi * std::cos(a);
    }
  }
  std::vector<long double> out;
  if (orv::filter::IsComplex<Tap>::value) {
    for (int k = 0; k < N; ++k) out.insert(out.end(), {re[k], im[k]});
  } else {
    out = {re[0], re[N / 2]};
    for (int k = 1; k < N / 2; ++k) out.insert(out.end(), {re[k], im[k]});
  }
  return out;
}

template <typename T>
std::vector<double> flatten(const T* v, int n) {
  std::vector<double> out;
  for (int i = 0; i < n; ++i) {
    long double re, im;
    parts(v[i], re, im);
    out.push_back(static_cast<double>(re));
    if (orv::filter::IsComplex<T>::value) out.push_back(static_cast<double>(im));
  }
  return out;
}

template <typename Row>
class FirStateFft : public ::testing::Test {};
TYPED_TEST_SUITE(FirStateFft, FloatRows, RowName);

// The transform length by tap count: none below the threshold, then the
// smallest power of two above tapsLen, doubled while that is below 256.
struct LenRange {
  int from, to, fftLen;
};
const LenRange kRealLens[] = {{1, 31, -1},     {32, 63, 128},    {64, 127, 256},
                              {128, 255, 256}, {256, 511, 512},  {512, 1023, 1024},
                              {1024, 1030, 2048}};
const LenRange kComplexLens[] = {{1, 15, -1},    {16, 31, 64},     {32, 63, 128},
                                 {64, 127, 256}, {128, 255, 256},  {256, 511, 512},
                                 {512, 1023, 1024}, {1024, 1030, 2048}};

TYPED_TEST(FirStateFft, TransformLengthFollowsTheTapCount) {
  using Row = TypeParam;
  using Tap = typename Row::Tap;
  const bool complexTaps = Row::Family::kComplex;
  const std::vector<Tap> taps = makeTaps<Tap>(1030, 61);
  int checked = 0;
  for (const LenRange& r : complexTaps ? std::vector<LenRange>(std::begin(kComplexLens),
                                                                std::end(kComplexLens))
                                       : std::vector<LenRange>(std::begin(kRealLens),
                                                               std::end(kRealLens))) {
    // Both ends of every range, and every count up to 130.
    for (int n = r.from; n <= r.to; ++n) {
      if (n > 130 && n != r.from && n != r.to) continue;
      orvsFIRState* s = nullptr;
      ASSERT_EQ(Row::init(&s, taps.data(), n, nullptr), orvOk) << n;
      EXPECT_EQ(s->fftLen, r.fftLen) << "tapsLen " << n;
      EXPECT_EQ(s->fftContext == nullptr, r.fftLen < 0) << n;
      EXPECT_EQ(s->fftTaps == nullptr, r.fftLen < 0) << n;
      EXPECT_EQ(Row::release(s), orvOk);
      ++checked;
    }
  }
  EXPECT_GT(checked, 130);
}

// The kept spectrum is the forward transform of the zero-padded taps, made
// with the family's engine in the taps' precision: bit for bit what the
// engine gives for the same input, and close to an exact DFT. The context
// divides by the length on the way back, so the inverse gives the taps.
TYPED_TEST(FirStateFft, SpectrumOfTheTaps) {
  using Row = TypeParam;
  using Tap = typename Row::Tap;
  using E = Engine<Row::Family::kFft>;
  using Elem = typename E::Elem;
  static_assert(std::is_same<Elem, Tap>::value, "the spectrum has the tap type");
  for (int n : {16, 31, 32, 45, 64, 100, 128, 200, 256}) {
    if (n < (Row::Family::kComplex ? 16 : 32)) continue;
    const std::vector<Tap> taps = makeTaps<Tap>(n, 70 + n);
    orvsFIRState* s = nullptr;
    ASSERT_EQ(Row::init(&s, taps.data(), n, nullptr), orvOk);
    const int N = s->fftLen;
    ASSERT_GT(N, n);
    const Elem* kept = static_cast<const Elem*>(s->fftTaps);

    // Same engine, same input.
    int order = 0;
    while ((1 << order) < N) ++order;
    orvsFFTContext* c = nullptr;
    ASSERT_EQ(E::init(&c, order), orvOk);
    std::vector<Elem> padded(N, Elem{});
    std::copy(taps.begin(), taps.end(), padded.begin());
    std::vector<Elem> direct(N);
    ASSERT_EQ(E::forward(padded.data(), direct.data(), c), orvOk);
    EXPECT_TRUE(sameBits(kept, direct.data(), N)) << "tapsLen " << n;
    E::release(c);

    // An exact DFT.
    const std::vector<long double> ref = referenceSpectrum(taps, N);
    const std::vector<double> got = flatten(kept, N);
    ASSERT_EQ(got.size(), ref.size());
    long double l1 = 0;
    for (const Tap& t : taps) {
      long double re, im;
      parts(t, re, im);
      l1 += std::fabs(re) + std::fabs(im);
    }
    const double tol = static_cast<double>(l1) * E::kEps * 4 * order;
    for (std::size_t i = 0; i < got.size(); ++i)
      ASSERT_NEAR(got[i], static_cast<double>(ref[i]), tol) << "tapsLen " << n << " at " << i;

    // Back through the state's own context: the taps, not N times them.
    std::vector<Elem> back(N);
    ASSERT_EQ(E::inverse(kept, back.data(), s->fftContext), orvOk);
    const std::vector<double> b = flatten(back.data(), N);
    const std::vector<double> t = flatten(padded.data(), N);
    for (std::size_t i = 0; i < b.size(); ++i)
      ASSERT_NEAR(b[i], t[i], tol) << "tapsLen " << n << " at " << i;
    EXPECT_EQ(Row::release(s), orvOk);
  }
}

// Every allocation of a creation with an FFT path fails in turn, the FFT
// layer's own included: orvErrNoMemory, a null handle, nothing leaked.
TYPED_TEST(FirStateFft, EveryFailedAllocationIsReleased) {
  using Row = TypeParam;
  using Tap = typename Row::Tap;
  for (int n : {40, 300}) {
    const std::vector<Tap> taps = makeTaps<Tap>(n, 81);
    orvsFIRState* kept = nullptr;
    const long count = driveAllocationFailures(
        [&](orvsFIRState** s) {
          const orvStatus st = Row::init(s, taps.data(), n, nullptr);
          kept = *s;
          return st;
        },
        "tapsLen " + std::to_string(n));
    // Record, taps, delay buffer, spectrum, then the FFT context's own.
    EXPECT_GT(count, 4) << n;
    ASSERT_NE(kept, nullptr);
    EXPECT_GT(kept->fftLen, 0);
    EXPECT_EQ(Row::release(kept), orvOk);
  }
}

}  // namespace
}  // namespace firtest
