// The FFT path of long FIR filters: when a state has one, its length, and
// the spectrum of the taps that creation keeps.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "fir_rows.hpp"

namespace firtest {
namespace {

using orv::filter::FirFft;

// The transform a family's path is made with, called through its exports.
template <FirFft P>
struct Engine;
#define FIRTEST_ENGINE(P, ELEM, EPS, KIND, FWD, INV, SUF)                                  \
  template <>                                                                             \
  struct Engine<FirFft::P> {                                                              \
    using Elem = ELEM;                                                                    \
    static constexpr double kEps = EPS;                                                   \
    static orvStatus init(orvsFFTContext** c, int order) {                                \
      return orvsFFTInitAlloc_##KIND##_##SUF(c, order, orvScaleInverse, 0);               \
    }                                                                                     \
    static orvStatus forward(const Elem* s, Elem* d, const orvsFFTContext* c) {           \
      return orvsFFTFwd_##FWD##_##SUF(s, d, c, nullptr);                                  \
    }                                                                                     \
    static orvStatus inverse(const Elem* s, Elem* d, const orvsFFTContext* c) {           \
      return orvsFFTInv_##INV##_##SUF(s, d, c, nullptr);                                  \
    }                                                                                     \
    static void release(orvsFFTContext* c) { orvsFFTFree_##KIND##_##SUF(c); }             \
  };
FIRTEST_ENGINE(Real32, orv32f, 0x1p-24, R, RToPerm, PermToR, 32f)
FIRTEST_ENGINE(Real64, orv64f, 0x1p-53, R, RToPerm, PermToR, 64f)
FIRTEST_ENGINE(Complex32, orv32fc, 0x1p-24, C, CToC, CToC, 32fc)
FIRTEST_ENGINE(Complex64, orv64fc, 0x1p-53, C, CToC, CToC, 64fc)
#undef FIRTEST_ENGINE

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
TYPED_TEST_SUITE(FirStateFft, FftFilterRows, FilterRowName);

// The transform length by tap count (first counts of each length): none
// below the threshold, then the smallest power of two above tapsLen,
// doubled while that is below 256.
struct LenFrom {
  int from, fftLen;
};
const std::vector<LenFrom> kRealLens = {{1, -1},    {32, 128},  {64, 256},   {256, 512},
                                        {512, 1024}, {1024, 2048}, {1031, 0}};
const std::vector<LenFrom> kComplexLens = {{1, -1},     {16, 64},     {32, 128}, {64, 256},
                                           {256, 512}, {512, 1024}, {1024, 2048}, {1031, 0}};

TYPED_TEST(FirStateFft, TransformLengthFollowsTheTapCount) {
  using Row = TypeParam;
  const auto h = taps<Row>(1030, 61);
  const auto& lens = Row::Family::kComplex ? kComplexLens : kRealLens;
  for (std::size_t r = 0; r + 1 < lens.size(); ++r) {
    // Both ends of every range, and every count up to 130.
    for (int n = lens[r].from; n < lens[r + 1].from; ++n) {
      if (n > 130 && n != lens[r].from && n != lens[r + 1].from - 1) continue;
      orvsFIRState* s = nullptr;
      ASSERT_EQ(Row::init(&s, h.data(), n, nullptr), orvOk) << n;
      EXPECT_EQ(s->fftLen, lens[r].fftLen) << "tapsLen " << n;
      EXPECT_EQ(s->fftContext == nullptr, lens[r].fftLen < 0) << n;
      EXPECT_EQ(s->fftTaps == nullptr, lens[r].fftLen < 0) << n;
      EXPECT_EQ(Row::release(s), orvOk);
    }
  }
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
    const std::vector<Tap> taps = firtest::taps<Row>(n, 70 + n);
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

}  // namespace
}  // namespace firtest
