// The overlap-save FFT kernel of every family with an FFT path: outputs
// within a rounding bound of an exact reference that loads its blocks by the
// kernel's rule (history start included), the delay line after the call,
// and the choice between the FFT and the direct kernel.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "core/test_hooks.hpp"
#include "fir_rows.hpp"

namespace firtest {
namespace {

template <typename Row>
class FirFft : public ::testing::Test {};
TYPED_TEST_SUITE(FirFft, FftFilterRows, FilterRowName);

// ---- Exact values -----------------------------------------------------------------

inline double valueOf(orv32f v) { return v; }
inline double valueOf(orv64f v) { return v; }
inline double valueOf(orv16s v) { return v; }
inline double valueOf(orv32s v) { return v; }
template <typename C>
Parts valueOf(const C& v) {
  return partsOf(v);
}

inline double magnitude(double v) { return std::fabs(v); }
inline double magnitude(Parts v) { return std::max(std::fabs(v.re), std::fabs(v.im)); }
inline void addProduct(double& acc, double h, double x) { acc += h * x; }
inline void addProduct(Parts& acc, Parts h, Parts x) {
  acc.re += h.re * x.re - h.im * x.im;
  acc.im += h.re * x.im + h.im * x.re;
}

template <typename Row>
using Val = decltype(valueOf(typename Row::Sample{}));

// Values of a run of samples.
template <typename Row>
std::vector<Val<Row>> values(const std::vector<typename Row::Sample>& x) {
  std::vector<Val<Row>> v;
  for (const auto& s : x) v.push_back(valueOf(s));
  return v;
}

// The values of the history a delay line (newest first) gives: the oldest
// sample is never used.
template <typename Row>
std::vector<Val<Row>> pastOf(const std::vector<typename Row::Sample>& dly) {
  auto v = values<Row>(historyOf(dly));
  v.erase(v.begin());
  return v;
}

// Linear convolution outputs over a block b: y[i] = sum_j h[j] b[i-j] for i
// from T-1 to b.size()-1, in long double-free double (the reference needs
// to be far more accurate than a 32-bit transform, and is).
template <typename Row>
std::vector<Val<Row>> validOutputs(const std::vector<typename Row::Tap>& h,
                                   const std::vector<Val<Row>>& b) {
  const int T = static_cast<int>(h.size());
  std::vector<Val<Row>> y;
  for (std::size_t i = T - 1; i < b.size(); ++i) {
    Val<Row> acc{};
    for (int j = 0; j < T; ++j) addProduct(acc, valueOf(h[j]), b[i - j]);
    y.push_back(acc);
  }
  return y;
}

// The outputs of overlap-save with transforms of length N over history
// (T-1 values used, oldest first) and x, loading each block by the kernel's
// rule: a block that begins before x takes its history part from position
// H of the history, whichever pass it is. Outputs that the rule leaves
// unspecified (a block that reads before x) come back as NaN.
template <typename Row>
std::vector<Val<Row>> overlapSave(const std::vector<typename Row::Tap>& h,
                                  const std::vector<Val<Row>>& hist, const std::vector<Val<Row>>& x,
                                  int N) {
  const int T = static_cast<int>(h.size());
  const int len = static_cast<int>(x.size());
  const int H = N - (T - 1);
  const Val<Row> zero{};
  Val<Row> nan;
  std::memset(static_cast<void*>(&nan), 0xFF, sizeof nan);  // NaN in every part
  std::vector<Val<Row>> y(len, nan);
  auto block = [&](std::vector<Val<Row>> b, int first, int count) {
    b.resize(N, zero);
    const auto v = validOutputs<Row>(h, b);
    for (int k = 0; k < count; ++k) y[first + k] = v[k];
  };
  std::vector<Val<Row>> b(hist);
  if (len <= H) {
    b.insert(b.end(), x.begin(), x.end());
    block(b, 0, len);
    return y;
  }
  b.insert(b.end(), x.begin(), x.begin() + H);
  block(b, 0, H);
  for (int pos = H - (T - 1);;) {
    int rem = len - pos;
    bool specified = true;
    if (pos < 0) {
      b.assign(hist.begin() + H, hist.begin() + H - pos);
      if (rem > N) {
        b.insert(b.end(), x.begin(), x.begin() + (N + pos));
      } else {
        specified = false;
      }
    } else {
      b.assign(x.begin() + pos, x.begin() + std::min(len, pos + N));
    }
    rem -= T - 1;
    const int count = std::min(H, rem);
    if (specified) block(b, pos + T - 1, count);
    if (H >= rem) break;
    pos += H;
  }
  return y;
}

// The direct outputs, exact up to double rounding.
template <typename Row>
std::vector<Val<Row>> exactDirect(const std::vector<typename Row::Tap>& h,
                                  const std::vector<Val<Row>>& hist, const std::vector<Val<Row>>& x) {
  std::vector<Val<Row>> b(hist);
  b.insert(b.end(), x.begin(), x.end());
  return validOutputs<Row>(h, b);
}

// The rounding bound of one transform: a few units of the transform's
// precision per stage, times the size of the terms. Complex products count
// twice.
template <typename Row>
double transformBound(const std::vector<typename Row::Tap>& h, double amp, int N) {
  using Tap = typename Row::Tap;
  const bool single = std::is_same<Tap, orv32f>::value || std::is_same<Tap, orv32fc>::value;
  const double eps = single ? std::ldexp(1.0, -24) : std::ldexp(1.0, -53);
  double sum = 0.0;
  for (const auto& t : h) sum += magnitude(valueOf(t));
  return 8.0 * (Row::Family::kComplex ? 2.0 : 1.0) * std::log2(double(N)) * eps * sum * amp;
}

// How far an output lies from an exact value: for floating samples the
// distance itself less the rounding of the store; for integer samples the
// distance from the scaled, saturated value less the final rounding (1).
template <typename S>
double excess(S got, double exact, int sf) {
  if constexpr (std::is_floating_point<S>::value) {
    const double store = std::is_same<S, orv32f>::value ? std::fabs(exact) * std::ldexp(1.0, -24) : 0.0;
    return std::fabs(double(got) - exact) - store;
  } else {
    double e = exact * std::ldexp(1.0, -sf);
    e = std::min(std::max(e, double(std::numeric_limits<S>::min())),
                 double(std::numeric_limits<S>::max()));
    return std::fabs(double(got) - e) * std::ldexp(1.0, sf) - std::ldexp(1.0, sf);
  }
}
template <typename S>
double excess(S got, Parts exact, int sf) {
  return std::max(excess(got.re, exact.re, sf), excess(got.im, exact.im, sf));
}

// Largest excess over the outputs whose expectation is specified.
template <typename Row>
double worstExcess(const std::vector<typename Row::Sample>& got, const std::vector<Val<Row>>& expect,
                   int sf, std::size_t from = 0, std::size_t to = SIZE_MAX) {
  double worst = -1e300;
  for (std::size_t i = from; i < std::min(to, got.size()); ++i) {
    if (std::isnan(magnitude(expect[i]))) continue;
    worst = std::max(worst, excess(got[i], expect[i], sf));
  }
  return worst;
}

template <typename Row>
int fftLenOf(int T) {
  return 1 << orv::filter::firFftOrder(T, Row::Family::kComplex);
}

// Blocks longer than the transform against overlap-save, two calls in a
// row; the delay line after each call holds the last T samples.
TYPED_TEST(FirFft, OutputsWithinRoundingOfTheExactFilter) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const std::vector<int> tapLens = Row::Family::kComplex ? std::vector<int>{16, 23, 40, 100}
                                                         : std::vector<int>{32, 45, 64, 100, 128};
  for (int T : tapLens) {
    const int N = fftLenOf<Row>(T);
    const auto h = taps<Row>(T, 300 + T);
    std::vector<S> dly = samples<Row>(T, 301 + T);
    State<Row> st(h, &dly);
    ASSERT_EQ(st.status, orvOk);
    ASSERT_EQ(st.s->fftLen, N);
    const double bound = transformBound<Row>(h, amplitude<Row>(), N);
    // Each call continues from the last one: dly is the state's delay line.
    for (int len : {N + 1, 2 * N + 7, 5 * N + 3}) {
      SCOPED_TRACE(::testing::Message() << "T " << T << " N " << N << " len " << len);
      const auto hist = pastOf<Row>(dly);
      const auto x = samples<Row>(len, 302 + T + len);
      const auto xv = values<Row>(x);
      const auto expect = overlapSave<Row>(h, hist, xv, N);
      // Below the lengths where the history rule shows, these are the
      // direct filter's values.
      const auto direct = exactDirect<Row>(h, hist, xv);
      ASSERT_EQ(std::memcmp(expect.data(), direct.data(), sizeof(direct[0]) * direct.size()), 0);
      std::vector<S> y(len);
      ASSERT_EQ(Row::block(x.data(), y.data(), len, st.s, sf), orvOk);
      EXPECT_LE(worstExcess<Row>(y, expect, sf), bound);
      EXPECT_EQ(st.s->dlyIndex, 0);
      // The in-place form runs the same kernel on the same data.
      {
        State<Row> st2(h, &dly);
        std::vector<S> z(x);
        ASSERT_EQ(Row::blockI(z.data(), len, st2.s, sf), orvOk);
        EXPECT_TRUE(sameBits(z, y));
      }
      std::vector<S> d(T);
      ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
      EXPECT_TRUE(sameBits(historyOf(d), lastSamples(historyOf(dly), x, T)));
      dly = d;
    }
  }
}

// With twice H below T-1, blocks after the first that begin in the history
// take it from position H: the kernel follows that rule and so departs from
// the direct filter by far more than rounding.
TYPED_TEST(FirFft, BlocksInTheHistoryStartAtPositionH) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int T = 200, len = 600;
  const int N = fftLenOf<Row>(T);
  ASSERT_EQ(N, 256);
  const auto h = taps<Row>(T, 401);
  const auto dly = samples<Row>(T, 402);
  const auto x = samples<Row>(len, 403);
  const auto hist = pastOf<Row>(dly);
  const auto expect = overlapSave<Row>(h, hist, values<Row>(x), N);
  const auto direct = exactDirect<Row>(h, hist, values<Row>(x));
  State<Row> st(h, &dly);
  ASSERT_EQ(st.status, orvOk);
  std::vector<S> y(len);
  ASSERT_EQ(Row::block(x.data(), y.data(), len, st.s, sf), orvOk);
  const double bound = transformBound<Row>(h, amplitude<Row>(), N);
  EXPECT_LE(worstExcess<Row>(y, expect, sf), bound);
  EXPECT_LE(worstExcess<Row>(y, direct, sf, 0, N - (T - 1)), bound);
  EXPECT_GT(worstExcess<Row>(y, direct, sf), 1000 * bound + 2.0);
  std::vector<S> d(T);
  ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
  EXPECT_TRUE(sameBits(historyOf(d), lastSamples(historyOf(dly), x, T)));
}

// Out of place, the FFT kernel serves blocks longer than the transform; a
// block of exactly fftLen stays direct, bit for bit. In place, real-tap
// families take the transform for any length, complex-tap families only
// above it. Made visible by failing an allocation of the FFT kernel: the
// direct kernel needs none (in place: none after the temporary).
TYPED_TEST(FirFft, ChoiceOfTheKernel) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int T = 32, N = fftLenOf<Row>(T), len = 10;
  const auto h = taps<Row>(T, 501);
  const auto dly = samples<Row>(T, 502);
  const auto x = samples<Row>(N + 1, 503);
  State<Row> st(h, &dly);
  ASSERT_EQ(st.status, orvOk);
  std::vector<S> y(N);
  orv::testing::failNthAllocation(1);
  EXPECT_EQ(Row::block(x.data(), y.data(), N, st.s, sf), orvOk);
  orv::testing::failNthAllocation(0);
  EXPECT_EQ(firstDifference(y, reference<Row>(h, historyOf(dly), {x.begin(), x.end() - 1}, sf)), -1);
  y.resize(N + 1);
  orv::testing::failNthAllocation(1);
  EXPECT_EQ(Row::block(x.data(), y.data(), N + 1, st.s, sf), orvErrNoMemory);
  orv::testing::failNthAllocation(0);

  State<Row> st2(h, &dly), st3(h, &dly);
  const std::vector<S> x10(x.begin(), x.begin() + len);
  std::vector<S> z(x10);
  orv::testing::failNthAllocation(2);
  const orvStatus status = Row::blockI(z.data(), len, st2.s, sf);
  orv::testing::failNthAllocation(0);
  if (Row::Family::kComplex) {
    EXPECT_EQ(status, orvOk);
    EXPECT_EQ(firstDifference(z, reference<Row>(h, historyOf(dly), x10, sf)), -1);
  } else {
    EXPECT_EQ(status, orvErrNoMemory);
    // The short case of the transform, within rounding of the filter.
    z = x10;
    ASSERT_EQ(Row::blockI(z.data(), len, st3.s, sf), orvOk);
    EXPECT_LE(worstExcess<Row>(z, exactDirect<Row>(h, pastOf<Row>(dly), values<Row>(x10)), sf),
              transformBound<Row>(h, amplitude<Row>(), N));
  }
}

template <typename Row>
class FirFftRealTaps : public ::testing::Test {};
using RealFftRows = ::testing::Types<F32f, F32f16s, F64f, F64f32f, F64f32s, F64f16s>;
TYPED_TEST_SUITE(FirFftRealTaps, RealFftRows, FilterRowName);

// The short case after single samples reads the history where the index
// stands; so does the delay line it leaves.
TYPED_TEST(FirFftRealTaps, ShortCaseFollowsTheRunningIndex) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int T = 40, len = 30;
  const auto h = taps<Row>(T, 701);
  const auto dly = samples<Row>(T, 702);
  const auto x = samples<Row>(3 + len, 703);
  State<Row> st(h, &dly);
  ASSERT_EQ(st.status, orvOk);
  std::vector<S> y(3 + len);
  for (int k = 0; k < 3; ++k) ASSERT_EQ(Row::one(x[k], &y[k], st.s, sf), orvOk);
  ASSERT_EQ(st.s->dlyIndex, 3);
  std::vector<S> z(x.begin() + 3, x.end());
  ASSERT_EQ(Row::blockI(z.data(), len, st.s, sf), orvOk);
  std::copy(z.begin(), z.end(), y.begin() + 3);
  const auto hist = pastOf<Row>(dly);
  const auto exact = exactDirect<Row>(h, hist, values<Row>(x));
  EXPECT_LE(worstExcess<Row>(y, exact, sf, 3),
            transformBound<Row>(h, amplitude<Row>(), st.s->fftLen));
  std::vector<S> d(T);
  ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
  EXPECT_TRUE(sameBits(historyOf(d), lastSamples(historyOf(dly), x, T)));
}

// In place with more than H but fewer than T samples, the blocks after the
// first begin before the start of the input; the read there gives
// unspecified outputs but no fault, the first H outputs are the filter's,
// and the delay line keeps the older part from d[len] on. After single
// samples that is not where the history stands: those samples drop out.
TYPED_TEST(FirFftRealTaps, InPlaceBlockShorterThanTheFilter) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int T = 200, len = 100, N = 256, H = N - (T - 1);
  const auto h = taps<Row>(T, 801);
  const auto dly = samples<Row>(T, 802);
  const auto x = samples<Row>(len, 803);
  const auto oldest = historyOf(dly);
  const auto hist = pastOf<Row>(dly);
  const double bound = transformBound<Row>(h, amplitude<Row>(), N);
  {
    State<Row> st(h, &dly);
    std::vector<S> y(x);
    ASSERT_EQ(Row::blockI(y.data(), len, st.s, sf), orvOk);
    EXPECT_LE(worstExcess<Row>(y, exactDirect<Row>(h, hist, values<Row>(x)), sf, 0, H), bound);
    std::vector<S> d(T);
    ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
    EXPECT_TRUE(sameBits(historyOf(d), lastSamples(oldest, x, T)));
  }
  {
    State<Row> st(h, &dly);
    const auto extra = samples<Row>(3, 804);
    S out;
    for (const S& v : extra) ASSERT_EQ(Row::one(v, &out, st.s, sf), orvOk);
    std::vector<S> y(x);
    ASSERT_EQ(Row::blockI(y.data(), len, st.s, sf), orvOk);
    // The buffer held the oldest-first history at d[0..T-1], then the three
    // samples at d[0..2] and d[T..T+2]; the kept part is d[len..T-1].
    std::vector<S> expectOldest(oldest.begin() + len, oldest.end());
    expectOldest.insert(expectOldest.end(), x.begin(), x.end());
    std::vector<S> d(T);
    ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
    EXPECT_TRUE(sameBits(historyOf(d), expectOldest));
  }
}

}  // namespace
}  // namespace firtest
