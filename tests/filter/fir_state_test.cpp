// FIR state of every family: the record made by creation, taps and delay
// lines through Get and Set, tags, argument checks and failed allocations.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "fir_rows.hpp"

namespace firtest {
namespace {

// Tag words ("FI01" is 0x46493031) and whether stagingLen has the extra sample.
struct Tags {
  const char* name;
  std::uint32_t single, multi;
  int extra;
};
const Tags kTags[] = {
    {"_32f", 0x46493031u, 0x46493033u, 1},      {"_32fc", 0x46493032u, 0x46493034u, 0},
    {"32f_16s", 0x46493035u, 0x46493037u, 1},   {"32fc_16sc", 0x46493036u, 0x46493038u, 1},
    {"32s_16s", 0x46493039u, 0x46493131u, 1},   {"32sc_16sc", 0x46493130u, 0x46493132u, 1},
    {"_64f", 0x46493133u, 0x46493135u, 1},      {"_64fc", 0x46493134u, 0x46493136u, 0},
    {"64f_32f", 0x46493137u, 0x46493139u, 1},   {"64fc_32fc", 0x46493138u, 0x46493230u, 0},
    {"64f_32s", 0x46493231u, 0x46493233u, 1},   {"64fc_32sc", 0x46493232u, 0x46493234u, 0},
    {"64f_16s", 0x46493235u, 0x46493237u, 1},   {"64fc_16sc", 0x46493236u, 0x46493238u, 0},
};
template <typename Row>
const Tags& tagsOf() {
  for (const Tags& t : kTags)
    if (std::strcmp(t.name, Row::kName) == 0) return t;
  ADD_FAILURE() << "no tags for " << Row::kName;
  return kTags[0];
}

// A state of the row with random taps and delay line, released at the end.
template <typename Row>
struct Made {
  Made(int n, bool withDelay, unsigned seed)
      : taps(firtest::taps<Row>(n, seed)),
        delay(randomBits<typename Row::Sample>(n, seed + 1)),
        st(taps, withDelay ? &delay : nullptr) {}
  std::vector<typename Row::Tap> taps;
  std::vector<typename Row::Sample> delay;
  State<Row> st;
};

template <typename Row>
class FirState : public ::testing::Test {};
TYPED_TEST_SUITE(FirState, AllFilterRows, FilterRowName);

// Below the FFT thresholds every family makes the same kind of record:
// reversed taps, history oldest first; Get gives back taps and delay line,
// Set replaces it, Set(null) clears it.
TYPED_TEST(FirState, CreationGetAndSet) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using S = typename Row::Sample;
  for (int n : {1, 2, 3, 4, 5, 7, 8, 13, 15}) {
    SCOPED_TRACE(n);
    Made<Row> m(n, true, 100 + n);
    ASSERT_EQ(m.st.status, orvOk);
    const orvsFIRState* s = m.st.s;
    EXPECT_EQ(s->tag, tagsOf<Row>().single);
    EXPECT_EQ(s->tapsLen, n);
    EXPECT_EQ(s->dlyIndex, 0);
    EXPECT_EQ(s->stagingLen, (n + 3) / 4 * 4 + tagsOf<Row>().extra);
    EXPECT_EQ(s->fftLen, -1);
    EXPECT_TRUE(!s->fftContext && !s->fftTaps && !s->stepTable && !s->polyTaps);
    const auto* rev = orv::filter::firRevTaps<F>(s);
    const auto* d = orv::filter::firDelay<F>(s);
    for (int j = 0; j < n; ++j) {
      EXPECT_TRUE(sameBits(&rev[j], &m.taps[n - 1 - j], 1)) << "tap " << j;
      EXPECT_TRUE(sameBits(&d[j], &m.delay[n - 1 - j], 1)) << "sample " << j;
    }
    if (!F::kIntegerTaps) {  // integer taps: fir_integer_taps_test
      std::vector<typename Row::Tap> out(n);
      ASSERT_EQ(Row::getTaps(s, out.data()), orvOk);
      EXPECT_TRUE(sameBits(out, m.taps));
    }
    std::vector<S> out(n);
    ASSERT_EQ(Row::getDly(s, out.data()), orvOk);
    EXPECT_TRUE(sameBits(out, m.delay)) << "as created";
    const std::vector<S> other = randomBits<S>(n, 400 + n);
    ASSERT_EQ(Row::setDly(m.st.s, other.data()), orvOk);
    ASSERT_EQ(Row::getDly(s, out.data()), orvOk);
    EXPECT_TRUE(sameBits(out, other)) << "after Set";
    ASSERT_EQ(Row::setDly(m.st.s, nullptr), orvOk);
    ASSERT_EQ(Row::getDly(s, out.data()), orvOk);
    EXPECT_TRUE(sameBits(out, std::vector<S>(n, S{}))) << "after Set(null)";
  }
  Made<Row> zero(6, false, 1);
  std::vector<S> out = randomBits<S>(6, 2);
  ASSERT_EQ(Row::getDly(zero.st.s, out.data()), orvOk);
  EXPECT_TRUE(sameBits(out, std::vector<S>(6, S{}))) << "created with null";
}

// After single samples the running index is anywhere in 0..T-1: Get reads
// the run from there, Set starts over at 0.
TYPED_TEST(FirState, DelayLineFollowsTheRunningIndex) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int n = 7;
  Made<Row> m(n, true, 11);
  orvsFIRState* s = m.st.s;
  const std::vector<S> run = randomBits<S>(n, 12);
  std::vector<S> out(n);
  for (int index = 0; index < n; ++index) {
    S* d = orv::filter::firDelay<typename Row::Family>(s);
    for (int i = 0; i < n; ++i) d[index + i] = run[i];  // oldest first
    s->dlyIndex = index;
    ASSERT_EQ(Row::getDly(s, out.data()), orvOk);
    EXPECT_TRUE(sameBits(historyOf(out), run)) << "index " << index;
  }
  ASSERT_EQ(Row::setDly(s, nullptr), orvOk);
  EXPECT_EQ(s->dlyIndex, 0);
  EXPECT_TRUE(sameBits(orv::filter::firDelay<typename Row::Family>(s), std::vector<S>(n).data(), n));
}

// Get, Set and Free take the family's multi-rate state too: a linear delay
// line of dlyLen samples from d[0], and tables that Free releases.
TYPED_TEST(FirState, MultiRateStateOfTheFamilyIsAccepted) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int n = 10, dlyLen = 4;
  const auto h = taps<Row>(n, 21);
  orvsFIRState* s = nullptr;
  ASSERT_EQ(Row::init(&s, h.data(), n, nullptr), orvOk);
  s->tag = tagsOf<Row>().multi;
  s->dlyIndex = dlyLen;
  s->stepTable = orvsMalloc_32s(9);
  s->polyTaps = orvsMalloc_8u(64);
  const std::vector<S> in = randomBits<S>(dlyLen, 22);
  ASSERT_EQ(Row::setDly(s, in.data()), orvOk);
  EXPECT_EQ(s->dlyIndex, dlyLen) << "Set keeps dlyLen";
  const S* d = orv::filter::firDelay<typename Row::Family>(s);
  EXPECT_TRUE(sameBits(std::vector<S>(d, d + dlyLen), historyOf(in)));
  std::vector<S> out(dlyLen);
  ASSERT_EQ(Row::getDly(s, out.data()), orvOk);
  EXPECT_TRUE(sameBits(out, in));
  ASSERT_EQ(Row::setDly(s, nullptr), orvOk);
  EXPECT_TRUE(sameBits(std::vector<S>(d, d + dlyLen), std::vector<S>(dlyLen, S{})));
  std::vector<typename Row::Tap> got(n);
  ASSERT_EQ(Row::getTaps(s, got.data()), orvOk);
  EXPECT_EQ(Row::release(s), orvOk);
}

// Every other family's tags, and words near the own ones, are refused by
// Get, Set and Free, and nothing of the state changes.
TYPED_TEST(FirState, ForeignTagsAreRefusedAndKept) {
  using Row = TypeParam;
  using S = typename Row::Sample;
  const int n = 9;
  Made<Row> m(n, true, 31);
  orvsFIRState* s = m.st.s;
  const Tags& own = tagsOf<Row>();
  std::vector<std::uint32_t> words = {0u, own.single + 1, own.single - 1, own.multi + 1,
                                      0x49493031u};
  for (const Tags& t : kTags)
    if (&t != &own) words.insert(words.end(), {t.single, t.multi});
  std::vector<typename Row::Tap> h(n);
  std::vector<S> d(n), before(n);
  ASSERT_EQ(Row::getDly(s, before.data()), orvOk);
  for (std::uint32_t word : words) {
    if (word == own.single || word == own.multi) continue;
    s->tag = word;
    EXPECT_EQ(Row::getTaps(s, h.data()), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(Row::getDly(s, d.data()), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(Row::setDly(s, d.data()), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(Row::setDly(s, nullptr), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(Row::release(s), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(s->tag, word);
  }
  s->tag = own.single;
  ASSERT_EQ(Row::getDly(s, d.data()), orvOk);
  EXPECT_TRUE(sameBits(d, before));
}

TYPED_TEST(FirState, ArgumentChecksInOrder) {
  using Row = TypeParam;
  const auto h = taps<Row>(4, 41);
  int dummy = 0;
  orvsFIRState* const untouched = reinterpret_cast<orvsFIRState*>(&dummy);
  orvsFIRState* s = untouched;
  EXPECT_EQ(Row::init(nullptr, h.data(), 4, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::init(&s, nullptr, 4, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::init(&s, nullptr, 0, nullptr), orvErrNullPointer) << "null before length";
  EXPECT_EQ(Row::init(&s, h.data(), 0, nullptr), orvErrFirLength);
  EXPECT_EQ(Row::init(&s, h.data(), -1, nullptr), orvErrFirLength);
  EXPECT_EQ(s, untouched) << "a refused creation writes no handle";
  typename Row::Tap t[4];
  typename Row::Sample d[4];
  EXPECT_EQ(Row::getTaps(nullptr, t), orvErrNullPointer);
  EXPECT_EQ(Row::getDly(nullptr, d), orvErrNullPointer);
  EXPECT_EQ(Row::setDly(nullptr, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::release(nullptr), orvErrNullPointer);
  // The result pointer is tested before the tag.
  Made<Row> m(4, false, 42);
  for (std::uint32_t tag : {0u, m.st.s->tag}) {
    const std::uint32_t own = m.st.s->tag;
    m.st.s->tag = tag;
    EXPECT_EQ(Row::getTaps(m.st.s, nullptr), orvErrNullPointer);
    EXPECT_EQ(Row::getDly(m.st.s, nullptr), orvErrNullPointer);
    m.st.s->tag = own;
  }
}

// Every allocation of a creation fails in turn, the FFT layer's own included.
TYPED_TEST(FirState, EveryFailedAllocationIsReleased) {
  using Row = TypeParam;
  using F = typename Row::Family;
  const int fftFrom = F::kFft == orv::filter::FirFft::None ? 1 << 30 : (F::kComplex ? 16 : 32);
  for (int n : {1, 6, 40, 300}) {
    const auto h = taps<Row>(n, 51);
    const auto delay = randomBits<typename Row::Sample>(n, 52);
    orvsFIRState* kept = nullptr;
    const long count = driveAllocationFailures(
        [&](orvsFIRState** s) {
          const orvStatus st = Row::init(s, h.data(), n, delay.data());
          kept = *s;
          return st;
        },
        "tapsLen " + std::to_string(n));
    ASSERT_NE(kept, nullptr);
    if (n < fftFrom) {
      // The record, the taps, the delay buffer (and the 16-bit copy of
      // integer taps).
      EXPECT_EQ(count, F::kIntegerTaps ? 4 : 3) << n;
      EXPECT_EQ(kept->fftLen, -1);
    } else {
      EXPECT_GT(count, 4) << n;  // and the spectrum, and the FFT context's own
      EXPECT_GT(kept->fftLen, 0);
    }
    std::vector<typename Row::Tap> got(n);
    ASSERT_EQ(Row::getTaps(kept, got.data()), orvOk);
    EXPECT_EQ(Row::release(kept), orvOk);
  }
}

template <typename Row>
class FirStateFftLen : public ::testing::Test {};
TYPED_TEST_SUITE(FirStateFftLen, FftFilterRows, FilterRowName);

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

TYPED_TEST(FirStateFftLen, TransformLengthFollowsTheTapCount) {
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

// The spectrum a state keeps is the forward transform of its zero-padded
// taps, bit for bit what the family's engine gives for the same input. (The
// engine itself is checked against an exact DFT with the transforms.)
template <orv::filter::FirFft P>
struct Engine;
#define FIRTEST_ENGINE(P, ELEM, KIND, FWD, SUF)                                        \
  template <>                                                                         \
  struct Engine<orv::filter::FirFft::P> {                                             \
    using Elem = ELEM;                                                                \
    static orvStatus init(orvsFFTContext** c, int order) {                            \
      return orvsFFTInitAlloc_##KIND##_##SUF(c, order, orvScaleInverse, 0);           \
    }                                                                                 \
    static orvStatus forward(const Elem* s, Elem* d, const orvsFFTContext* c) {       \
      return orvsFFTFwd_##FWD##_##SUF(s, d, c, nullptr);                              \
    }                                                                                 \
    static void release(orvsFFTContext* c) { orvsFFTFree_##KIND##_##SUF(c); }         \
  };
FIRTEST_ENGINE(Real32, orv32f, R, RToPerm, 32f)
FIRTEST_ENGINE(Real64, orv64f, R, RToPerm, 64f)
FIRTEST_ENGINE(Complex32, orv32fc, C, CToC, 32fc)
FIRTEST_ENGINE(Complex64, orv64fc, C, CToC, 64fc)
#undef FIRTEST_ENGINE

TYPED_TEST(FirStateFftLen, SpectrumOfTheTapsIsTheirTransform) {
  using Row = TypeParam;
  using E = Engine<Row::Family::kFft>;
  using Elem = typename E::Elem;
  static_assert(std::is_same<Elem, typename Row::Tap>::value, "the spectrum has the tap type");
  for (int n : {16, 45, 64, 200}) {
    if (n < (Row::Family::kComplex ? 16 : 32)) continue;
    const auto h = taps<Row>(n, 70 + n);
    orvsFIRState* s = nullptr;
    ASSERT_EQ(Row::init(&s, h.data(), n, nullptr), orvOk);
    const int N = s->fftLen;
    int order = 0;
    while ((1 << order) < N) ++order;
    orvsFFTContext* c = nullptr;
    ASSERT_EQ(E::init(&c, order), orvOk);
    std::vector<Elem> padded(N, Elem{}), expected(N);
    std::copy(h.begin(), h.end(), padded.begin());
    ASSERT_EQ(E::forward(padded.data(), expected.data(), c), orvOk);
    EXPECT_TRUE(sameBits(static_cast<const Elem*>(s->fftTaps), expected.data(), N)) << "tapsLen " << n;
    E::release(c);
    EXPECT_EQ(Row::release(s), orvOk);
  }
}

}  // namespace
}  // namespace firtest
