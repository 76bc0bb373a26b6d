// Single-rate FIR filtering of every family through the direct kernels:
// outputs bit for bit against the reference sum, the delay line after each
// call, continuity over any split of the signal into blocks, single samples,
// Set and Get, and the stateless forms; argument checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "core/test_hooks.hpp"
#include "filter/fir_kernels.hpp"
#include "fir_rows.hpp"

namespace firtest {
namespace {

template <typename Row>
class FirDirect : public ::testing::Test {};
TYPED_TEST_SUITE(FirDirect, AllFilterRows, FilterRowName);

template <typename Row>
int fftThreshold() {
  return Row::Family::kFft == orv::filter::FirFft::None ? INT_MAX
                                                        : (Row::Family::kComplex ? 16 : 32);
}

// Lengths around the staging length S of T taps, and a few longer ones.
std::vector<int> lengthsFor(int T, int staging) {
  std::vector<int> v = {1, 2, 3, 4, 5, 7, staging - 1, staging, staging + 1, T + 3, 4 * T + 2,
                        61, 130};
  v.erase(std::remove_if(v.begin(), v.end(), [](int n) { return n < 1; }), v.end());
  return v;
}

// One block on a state made with a random delay line: outputs and the delay
// line afterwards against the reference, through the exported form and
// through the plain staging kernel; in place as well.
TYPED_TEST(FirDirect, BlockMatchesReference) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  // Below the FFT thresholds, and 40 taps with blocks no longer than the
  // transform (128), which stay on the direct kernel too.
  for (int T : {1, 2, 3, 4, 5, 6, 8, 9, 13, 15, 40}) {
    const auto h = taps<Row>(T, 10 + T);
    const auto dly = samples<Row>(T, 20 + T);
    const int staging = orv::filter::firStagingLen<F>(T);
    for (int len : lengthsFor(T, staging)) {
      if (T >= fftThreshold<Row>() && len > 128) continue;
      SCOPED_TRACE(::testing::Message() << "T " << T << " len " << len);
      const auto x = samples<Row>(len, 1000 * T + len);
      const auto expect = reference<Row>(h, historyOf(dly), x, sf);
      const auto expectDelay = lastSamples(historyOf(dly), x, T);
      std::vector<S> got(len), gotDelay(T);
      {
        State<Row> st(h, &dly);
        ASSERT_EQ(st.status, orvOk);
        ASSERT_EQ(Row::block(x.data(), got.data(), len, st.s, sf), orvOk);
        EXPECT_EQ(firstDifference(got, expect), -1);
        EXPECT_EQ(st.s->dlyIndex, 0);
        ASSERT_EQ(Row::getDly(st.s, gotDelay.data()), orvOk);
        EXPECT_TRUE(sameBits(historyOf(gotDelay), expectDelay));
      }
      {
        State<Row> st(h, &dly);
        std::vector<S> y(len);
        orv::filter::firDirectBlockPlain<F>(st.s, x.data(), y.data(), len,
                                            orv::filter::FirOutput<F>(sf, st.s->tapsFactor));
        EXPECT_EQ(firstDifference(y, expect), -1) << "plain kernel";
        ASSERT_EQ(Row::getDly(st.s, gotDelay.data()), orvOk);
        EXPECT_TRUE(sameBits(historyOf(gotDelay), expectDelay)) << "plain kernel";
      }
      if (T < fftThreshold<Row>()) {
        State<Row> st(h, &dly);
        std::vector<S> y(x);
        ASSERT_EQ(Row::blockI(y.data(), len, st.s, sf), orvOk);
        EXPECT_EQ(firstDifference(y, expect), -1) << "in place";
      }
    }
  }
}

// The same signal through one block, blocks of random lengths, single
// samples, and a random mixture of blocks, single samples and a Get/Set of
// the delay line: every way gives the reference's outputs, bit for bit.
TYPED_TEST(FirDirect, ContinuityOverAnySplit) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int len = 400;
  for (int T : {1, 7, 13}) {
    SCOPED_TRACE(::testing::Message() << "T " << T);
    const auto h = taps<Row>(T, 70 + T);
    const auto dly = samples<Row>(T, 80 + T);
    const auto x = samples<Row>(len, 90 + T);
    const auto expect = reference<Row>(h, historyOf(dly), x, sf);
    std::mt19937 g(5 + T);
    for (int way = 0; way < 4; ++way) {
      State<Row> st(h, &dly);
      ASSERT_EQ(st.status, orvOk);
      std::vector<S> y(len);
      int n = 0;
      while (n < len) {
        const int kind = way < 3 ? way : 1 + int(g() % 3);
        if (kind == 0) {
          ASSERT_EQ(Row::block(x.data(), y.data(), len, st.s, sf), orvOk);
          n = len;
        } else if (kind == 1) {
          const int k = std::min(len - n, 1 + int(g() % 40));
          ASSERT_EQ(Row::block(x.data() + n, y.data() + n, k, st.s, sf), orvOk);
          n += k;
        } else if (kind == 2) {
          ASSERT_EQ(Row::one(x[n], &y[n], st.s, sf), orvOk);
          ++n;
        } else {
          std::vector<S> d(T);
          ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
          ASSERT_EQ(Row::setDly(st.s, d.data()), orvOk);
          EXPECT_EQ(st.s->dlyIndex, 0);
        }
      }
      EXPECT_EQ(firstDifference(y, expect), -1) << "way " << way;
      std::vector<S> d(T);
      ASSERT_EQ(Row::getDly(st.s, d.data()), orvOk);
      EXPECT_TRUE(sameBits(historyOf(d), lastSamples(historyOf(dly), x, T))) << "way " << way;
    }
  }
}

// The stateless forms on the caller's doubled buffer: blocks of random
// lengths (out of place and in place) and single samples (both forms) give
// the reference's outputs and leave the very same buffer and index.
TYPED_TEST(FirDirect, StatelessFormsAgree) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int len = 300;
  for (int T : {1, 6, 13, 40}) {
    SCOPED_TRACE(::testing::Message() << "T " << T);
    const auto h = taps<Row>(T, 170 + T);
    const auto hist = samples<Row>(T, 180 + T);  // oldest first
    const auto x = samples<Row>(len, 190 + T);
    const auto expect = reference<Row>(h, hist, x, sf);
    const int start = T / 2;
    // The span d[start] .. d[start+T-1] holds the history, and each of its
    // samples also has its copy T places away, as the steps leave them.
    std::vector<S> initial = samples<Row>(2 * T, 200 + T);
    for (int k = 0; k < T; ++k) {
      const int p = start + k;
      initial[p] = hist[k];
      initial[p < T ? p + T : p - T] = hist[k];
    }

    std::vector<std::vector<S>> buffers;
    std::vector<int> indices;
    std::mt19937 g(9 + T);
    for (int way = 0; way < 4; ++way) {
      std::vector<S> d(initial), y(x);
      int index = start;
      for (int n = 0; n < len;) {
        if (way < 2) {
          const int k = std::min(len - n, 1 + int(g() % 70));
          if (way == 0) {
            ASSERT_EQ(Row::direct(x.data() + n, y.data() + n, k, h.data(), T, 0, d.data(),
                                  &index, sf),
                      orvOk);
          } else {
            ASSERT_EQ(Row::directI(y.data() + n, k, h.data(), T, 0, d.data(), &index, sf), orvOk);
          }
          n += k;
        } else if (way == 2) {
          ASSERT_EQ(Row::directOne(x[n], &y[n], h.data(), T, 0, d.data(), &index, sf), orvOk);
          ++n;
        } else {
          ASSERT_EQ(Row::directOneI(&y[n], h.data(), T, 0, d.data(), &index, sf), orvOk);
          ++n;
        }
      }
      EXPECT_EQ(firstDifference(y, expect), -1) << "way " << way;
      buffers.push_back(d);
      indices.push_back(index);
    }
    for (int way = 1; way < 4; ++way) {
      EXPECT_TRUE(sameBits(buffers[way], buffers[0])) << "way " << way;
      EXPECT_EQ(indices[way], indices[0]) << "way " << way;
    }
    EXPECT_EQ(indices[0], (start + len) % T);
  }
}

// The plain stateless loop and the exported form (which may batch) leave
// the same outputs, buffer and index for lengths around the batching
// threshold, also when the buffer's two halves differ.
TYPED_TEST(FirDirect, StatelessPlainLoopAgrees) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  for (int T : {1, 2, 9, 40}) {
    const auto h = taps<Row>(T, 3 + T);
    const auto initial = samples<Row>(2 * T, 4 + T);
    for (int len : {1, 15, 16, 17, T + 15, T + 16, T + 17, 2100}) {
      const auto x = samples<Row>(len, 5 + len);
      std::vector<S> d1(initial), d2(initial), y1(len), y2(len);
      int i1 = T - 1, i2 = T - 1;
      ASSERT_EQ(Row::direct(x.data(), y1.data(), len, h.data(), T, 0, d1.data(), &i1, sf), orvOk);
      orv::filter::firDirectStatelessPlain<F>(x.data(), y2.data(), len, h.data(), T, d2.data(), i2,
                                              orv::filter::FirOutput<F>(sf, 0));
      EXPECT_EQ(firstDifference(y1, y2), -1) << "T " << T << " len " << len;
      EXPECT_TRUE(sameBits(d1, d2));
      EXPECT_EQ(i1, i2);
      // An index outside 0 .. T-1 is taken modulo T.
      if (len != 17) continue;
      for (int index : {T - 1 + T, T - 1 + 7 * T, -1, INT_MIN + (T - 1 - INT_MIN % T) % T}) {
        std::vector<S> d(initial), y(len);
        ASSERT_EQ(Row::direct(x.data(), y.data(), len, h.data(), T, 0, d.data(), &index, sf), orvOk);
        EXPECT_TRUE(sameBits(y, y1) && sameBits(d, d1) && index == i1) << "T " << T;
      }
    }
  }
}

// Argument checks of every form, in their order.
TYPED_TEST(FirDirect, ArgumentChecks) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using S = typename Row::Sample;
  const int T = 4;
  const auto h = taps<Row>(T, 1);
  State<Row> st(h, nullptr);
  ASSERT_EQ(st.status, orvOk);
  std::vector<S> x(8), y(8), d(2 * T);
  int index = 0;

  EXPECT_EQ(Row::block(x.data(), y.data(), 8, nullptr, 0), orvErrNullPointer);
  EXPECT_EQ(Row::blockI(x.data(), 8, nullptr, 0), orvErrNullPointer);
  EXPECT_EQ(Row::one(x[0], y.data(), nullptr, 0), orvErrNullPointer);
  EXPECT_EQ(Row::block(nullptr, y.data(), 8, st.s, 0), orvErrNullPointer);
  EXPECT_EQ(Row::block(x.data(), nullptr, 8, st.s, 0), orvErrNullPointer);
  EXPECT_EQ(Row::block(x.data(), y.data(), 0, st.s, 0), orvErrSize);
  EXPECT_EQ(Row::blockI(nullptr, 8, st.s, 0), orvErrNullPointer);
  EXPECT_EQ(Row::blockI(x.data(), -1, st.s, 0), orvErrSize);
  EXPECT_EQ(Row::one(x[0], nullptr, st.s, 0), orvErrNullPointer);

  // Another family's tag, and this family's multi-rate tag: the block forms
  // hand the latter over (which checks its vectors first), the single-sample
  // form refuses it.
  const std::uint32_t own = st.s->tag;
  for (std::uint32_t tag : {F::kSingleTag ^ 0x0100u, orv::filter::tagOf("FI99"), F::kMultiTag}) {
    st.s->tag = tag;
    const bool multi = tag == F::kMultiTag;
    EXPECT_EQ(Row::block(x.data(), y.data(), 8, st.s, 0), orvErrContextMismatch);
    EXPECT_EQ(Row::blockI(x.data(), 8, st.s, 0), orvErrContextMismatch);
    EXPECT_EQ(Row::one(x[0], y.data(), st.s, 0), orvErrContextMismatch);
    EXPECT_EQ(Row::block(nullptr, y.data(), 8, st.s, 0),
              multi ? orvErrNullPointer : orvErrContextMismatch);
    EXPECT_EQ(Row::blockI(x.data(), 0, st.s, 0), multi ? orvErrSize : orvErrContextMismatch);
    EXPECT_EQ(Row::one(x[0], nullptr, st.s, 0), orvErrContextMismatch);
  }
  st.s->tag = own;

  // Stateless block: src/dst, len, taps, tapsLen, delay line and index.
  EXPECT_EQ(Row::direct(nullptr, y.data(), 0, nullptr, 0, 0, nullptr, nullptr, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::direct(x.data(), y.data(), 0, nullptr, 0, 0, nullptr, nullptr, 0), orvErrSize);
  EXPECT_EQ(Row::direct(x.data(), y.data(), 8, nullptr, 0, 0, nullptr, nullptr, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::direct(x.data(), y.data(), 8, h.data(), 0, 0, nullptr, nullptr, 0),
            orvErrFirLength);
  EXPECT_EQ(Row::direct(x.data(), y.data(), 8, h.data(), T, 0, nullptr, &index, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::direct(x.data(), y.data(), 8, h.data(), T, 0, d.data(), nullptr, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::directI(nullptr, 0, h.data(), T, 0, d.data(), &index, 0), orvErrNullPointer);
  EXPECT_EQ(Row::directI(x.data(), 0, nullptr, T, 0, d.data(), &index, 0), orvErrSize);
  // Stateless single sample: dst and taps, then tapsLen, then the last two.
  EXPECT_EQ(Row::directOne(x[0], nullptr, h.data(), 0, 0, nullptr, nullptr, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::directOne(x[0], y.data(), nullptr, 0, 0, nullptr, nullptr, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::directOne(x[0], y.data(), h.data(), 0, 0, nullptr, nullptr, 0), orvErrFirLength);
  EXPECT_EQ(Row::directOne(x[0], y.data(), h.data(), T, 0, d.data(), nullptr, 0),
            orvErrNullPointer);
  EXPECT_EQ(Row::directOneI(nullptr, h.data(), T, 0, d.data(), &index, 0), orvErrNullPointer);
  EXPECT_EQ(Row::directOneI(y.data(), h.data(), -3, 0, d.data(), &index, 0), orvErrFirLength);
  EXPECT_EQ(index, 0);
}

// A failing allocation: the in-place temporary gives orvErrNoMemory before
// anything is written; the direct kernel needs no memory of its own (its
// batched form falls back to the plain loops).
TYPED_TEST(FirDirect, AllocationFailures) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int sf = defaultScale<Row>();
  const int T = 9, len = 100;
  const auto h = taps<Row>(T, 61);
  const auto dly = samples<Row>(T, 62);
  const auto x = samples<Row>(len, 63);
  const auto expect = reference<Row>(h, historyOf(dly), x, sf);
  State<Row> st(h, &dly);
  ASSERT_EQ(st.status, orvOk);
  std::vector<S> y(x);
  orv::testing::failNthAllocation(1);
  EXPECT_EQ(Row::blockI(y.data(), len, st.s, sf), orvErrNoMemory);
  orv::testing::failNthAllocation(0);
  EXPECT_TRUE(sameBits(y, x));
  orv::testing::failNthAllocation(1);
  EXPECT_EQ(Row::block(x.data(), y.data(), len, st.s, sf), orvOk);
  orv::testing::failNthAllocation(0);
  EXPECT_EQ(firstDifference(y, expect), -1);
  std::vector<S> d(2 * T), y2(len);
  int index = 0;
  orv::testing::failNthAllocation(1);
  EXPECT_EQ(Row::direct(x.data(), y2.data(), len, h.data(), T, 0, d.data(), &index, sf), orvOk);
  orv::testing::failNthAllocation(0);
}

}  // namespace
}  // namespace firtest
