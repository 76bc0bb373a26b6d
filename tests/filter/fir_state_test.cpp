// FIR state of every family: the record made by creation, taps and delay
// lines through Get and Set, tags, argument checks and failed allocations.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "fir_families.hpp"

namespace firtest {
namespace {

// The family table: tag words and whether stagingLen has the extra sample.
template <typename Row>
struct Expect;
#define FIRTEST_EXPECT(ROW, SINGLE, MULTI, EXTRA)               \
  template <>                                                   \
  struct Expect<ROW> {                                          \
    static constexpr std::uint32_t kSingle = SINGLE;            \
    static constexpr std::uint32_t kMulti = MULTI;              \
    static constexpr int kExtra = EXTRA;                        \
  }
// "FI01" is 0x46493031, "FI10" is 0x46493130.
FIRTEST_EXPECT(Row32f, 0x46493031u, 0x46493033u, 1);
FIRTEST_EXPECT(Row32fc, 0x46493032u, 0x46493034u, 0);
FIRTEST_EXPECT(Row32f16s, 0x46493035u, 0x46493037u, 1);
FIRTEST_EXPECT(Row32fc16sc, 0x46493036u, 0x46493038u, 1);
FIRTEST_EXPECT(Row32s16s, 0x46493039u, 0x46493131u, 1);
FIRTEST_EXPECT(Row32sc16sc, 0x46493130u, 0x46493132u, 1);
FIRTEST_EXPECT(Row64f, 0x46493133u, 0x46493135u, 1);
FIRTEST_EXPECT(Row64fc, 0x46493134u, 0x46493136u, 0);
FIRTEST_EXPECT(Row64f32f, 0x46493137u, 0x46493139u, 1);
FIRTEST_EXPECT(Row64fc32fc, 0x46493138u, 0x46493230u, 0);
FIRTEST_EXPECT(Row64f32s, 0x46493231u, 0x46493233u, 1);
FIRTEST_EXPECT(Row64fc32sc, 0x46493232u, 0x46493234u, 0);
FIRTEST_EXPECT(Row64f16s, 0x46493235u, 0x46493237u, 1);
FIRTEST_EXPECT(Row64fc16sc, 0x46493236u, 0x46493238u, 0);
#undef FIRTEST_EXPECT

// Lengths below the FFT thresholds, so that every family makes the same
// kind of record.
const int kShortLens[] = {1, 2, 3, 4, 5, 7, 8, 13, 15};

// A state of the row with random taps and delay line, released at the end.
template <typename Row>
struct Made {
  using Tap = typename Row::Tap;
  using Sample = typename Row::Sample;
  Made(int n, bool withDelay, unsigned seed)
      : taps(makeTaps<Tap>(n, seed)), delay(makeSamples<Sample>(n, seed + 1)) {
    status = Row::init(&state, taps.data(), n, withDelay ? delay.data() : nullptr);
  }
  ~Made() {
    if (status == orvOk) {
      EXPECT_EQ(Row::release(state), orvOk);
    }
  }
  std::vector<Tap> taps;
  std::vector<Sample> delay;
  orvsFIRState* state = nullptr;
  orvStatus status;
};

template <typename Row>
class FirStateAll : public ::testing::Test {};
TYPED_TEST_SUITE(FirStateAll, AllRows, RowName);

TYPED_TEST(FirStateAll, CreationFillsTheRecord) {
  using Row = TypeParam;
  using F = typename Row::Family;
  for (int n : kShortLens) {
    Made<Row> m(n, true, 100 + n);
    ASSERT_EQ(m.status, orvOk) << n;
    const orvsFIRState* s = m.state;
    EXPECT_EQ(s->tag, Expect<Row>::kSingle);
    EXPECT_EQ(s->tapsLen, n);
    EXPECT_EQ(s->dlyIndex, 0);
    EXPECT_EQ(s->stagingLen, (n + 3) / 4 * 4 + Expect<Row>::kExtra) << n;
    EXPECT_EQ(s->fftLen, -1);
    EXPECT_EQ(s->fftContext, nullptr);
    EXPECT_EQ(s->fftTaps, nullptr);
    EXPECT_EQ(s->stepTable, nullptr);
    EXPECT_EQ(s->polyTaps, nullptr);
    // Reversed taps; the history oldest first.
    const auto* rev = orv::filter::firRevTaps<F>(s);
    const auto* d = orv::filter::firDelay<F>(s);
    for (int j = 0; j < n; ++j) {
      EXPECT_TRUE(sameBits(&rev[j], &m.taps[n - 1 - j], 1)) << n << " tap " << j;
      EXPECT_TRUE(sameBits(&d[j], &m.delay[n - 1 - j], 1)) << n << " sample " << j;
    }
    // Floating taps come back exactly (integer taps: fir_integer_taps_test).
    if (!F::kIntegerTaps) {
      std::vector<typename Row::Tap> out(n);
      ASSERT_EQ(Row::getTaps(s, out.data()), orvOk);
      EXPECT_TRUE(sameBits(out.data(), m.taps.data(), n)) << n;
    }
  }
}

TYPED_TEST(FirStateAll, DelayLineRoundTrips) {
  using Row = TypeParam;
  using Sample = typename Row::Sample;
  for (int n : kShortLens) {
    Made<Row> m(n, true, 300 + n);
    ASSERT_EQ(m.status, orvOk);
    std::vector<Sample> out(n);
    ASSERT_EQ(Row::getDly(m.state, out.data()), orvOk);
    EXPECT_TRUE(sameBits(out.data(), m.delay.data(), n)) << "as created, " << n;

    const std::vector<Sample> other = makeSamples<Sample>(n, 400 + n);
    ASSERT_EQ(Row::setDly(m.state, other.data()), orvOk);
    ASSERT_EQ(Row::getDly(m.state, out.data()), orvOk);
    EXPECT_TRUE(sameBits(out.data(), other.data(), n)) << "after Set, " << n;

    ASSERT_EQ(Row::setDly(m.state, nullptr), orvOk);
    ASSERT_EQ(Row::getDly(m.state, out.data()), orvOk);
    EXPECT_TRUE(allZeroBits(out.data(), n)) << "after Set(null), " << n;
  }
  Made<Row> zero(6, false, 1);
  ASSERT_EQ(zero.status, orvOk);
  std::vector<Sample> out = makeSamples<Sample>(6, 2);
  ASSERT_EQ(Row::getDly(zero.state, out.data()), orvOk);
  EXPECT_TRUE(allZeroBits(out.data(), 6)) << "created with null";
}

// A single-sample call leaves the running index anywhere in 0..T-1: Get reads
// the run from there, Set starts over at 0.
TYPED_TEST(FirStateAll, DelayLineFollowsTheRunningIndex) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using Sample = typename Row::Sample;
  const int n = 7;
  Made<Row> m(n, true, 11);
  ASSERT_EQ(m.status, orvOk);
  const std::vector<Sample> run = makeSamples<Sample>(n, 12);
  for (int index = 0; index < n; ++index) {
    Sample* d = orv::filter::firDelay<F>(m.state);
    for (int i = 0; i < n; ++i) d[index + i] = run[i];  // oldest first
    m.state->dlyIndex = index;
    std::vector<Sample> out(n);
    ASSERT_EQ(Row::getDly(m.state, out.data()), orvOk);
    for (int i = 0; i < n; ++i)
      EXPECT_TRUE(sameBits(&out[i], &run[n - 1 - i], 1)) << "index " << index << " i " << i;
  }
  m.state->dlyIndex = 3;
  ASSERT_EQ(Row::setDly(m.state, nullptr), orvOk);
  EXPECT_EQ(m.state->dlyIndex, 0);
  EXPECT_TRUE(allZeroBits(orv::filter::firDelay<F>(m.state), n));
  std::vector<Sample> out = makeSamples<Sample>(n, 13);
  ASSERT_EQ(Row::getDly(m.state, out.data()), orvOk);
  EXPECT_TRUE(allZeroBits(out.data(), n));
}

// Get, Set and Free take the family's multi-rate state too: a linear delay
// line of dlyLen samples from d[0], and the tables that Free releases.
TYPED_TEST(FirStateAll, MultiRateStateOfTheFamilyIsAccepted) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using Sample = typename Row::Sample;
  const int n = 10, dlyLen = 4;
  std::vector<typename Row::Tap> taps = makeTaps<typename Row::Tap>(n, 21);
  orvsFIRState* s = nullptr;
  ASSERT_EQ(Row::init(&s, taps.data(), n, nullptr), orvOk);
  s->tag = Expect<Row>::kMulti;
  s->dlyIndex = dlyLen;
  s->stepTable = orvsMalloc_32s(9);
  s->polyTaps = orvsMalloc_8u(64);

  const std::vector<Sample> in = makeSamples<Sample>(dlyLen, 22);
  ASSERT_EQ(Row::setDly(s, in.data()), orvOk);
  EXPECT_EQ(s->dlyIndex, dlyLen) << "Set keeps dlyLen";
  const Sample* d = orv::filter::firDelay<F>(s);
  for (int i = 0; i < dlyLen; ++i) EXPECT_TRUE(sameBits(&d[i], &in[dlyLen - 1 - i], 1)) << i;
  std::vector<Sample> out(dlyLen);
  ASSERT_EQ(Row::getDly(s, out.data()), orvOk);
  EXPECT_TRUE(sameBits(out.data(), in.data(), dlyLen));
  ASSERT_EQ(Row::setDly(s, nullptr), orvOk);
  EXPECT_TRUE(allZeroBits(d, dlyLen));

  std::vector<typename Row::Tap> got(n);
  ASSERT_EQ(Row::getTaps(s, got.data()), orvOk);
  EXPECT_EQ(Row::release(s), orvOk);  // the sanitizer build shows the tables released
}

// ---- Tags --------------------------------------------------------------------------

// The operations of one family with type-erased arguments.
struct FamilyOps {
  const char* name;
  std::function<orvStatus(orvsFIRState*)> getTaps, getDly, setDly, setDlyNull, release;
};

template <typename Row>
FamilyOps opsOf(const char* name) {
  using Tap = typename Row::Tap;
  using Sample = typename Row::Sample;
  return FamilyOps{
      name,
      [](orvsFIRState* s) {
        std::vector<Tap> t(64);
        return Row::getTaps(s, t.data());
      },
      [](orvsFIRState* s) {
        std::vector<Sample> d(64);
        return Row::getDly(s, d.data());
      },
      [](orvsFIRState* s) {
        std::vector<Sample> d(64);
        return Row::setDly(s, d.data());
      },
      [](orvsFIRState* s) { return Row::setDly(s, nullptr); },
      [](orvsFIRState* s) { return Row::release(s); }};
}

std::vector<FamilyOps> allFamilies() {
  return {opsOf<Row32f>("_32f"),           opsOf<Row32fc>("_32fc"),
          opsOf<Row32f16s>("32f_16s"),     opsOf<Row32fc16sc>("32fc_16sc"),
          opsOf<Row32s16s>("32s_16s"),     opsOf<Row32sc16sc>("32sc_16sc"),
          opsOf<Row64f>("_64f"),           opsOf<Row64fc>("_64fc"),
          opsOf<Row64f32f>("64f_32f"),     opsOf<Row64fc32fc>("64fc_32fc"),
          opsOf<Row64f32s>("64f_32s"),     opsOf<Row64fc32sc>("64fc_32sc"),
          opsOf<Row64f16s>("64f_16s"),     opsOf<Row64fc16sc>("64fc_16sc")};
}

// A state of another family, or any word that is not one of the family's two
// tags, is refused by Get, Set and Free, and nothing of it changes.
TYPED_TEST(FirStateAll, ForeignStatesAreRefusedAndKept) {
  using Row = TypeParam;
  using F = typename Row::Family;
  using Sample = typename Row::Sample;
  const int n = 9;
  Made<Row> m(n, true, 31);
  ASSERT_EQ(m.status, orvOk);
  const std::uint32_t own = m.state->tag;
  const std::vector<Sample> before(orv::filter::firDelay<F>(m.state),
                                   orv::filter::firDelay<F>(m.state) + n);
  int owners = 0;
  for (const FamilyOps& ops : allFamilies()) {
    if (ops.getTaps(m.state) == orvOk) {
      ++owners;
      continue;
    }
    EXPECT_EQ(ops.getTaps(m.state), orvErrContextMismatch) << ops.name;
    EXPECT_EQ(ops.getDly(m.state), orvErrContextMismatch) << ops.name;
    EXPECT_EQ(ops.setDly(m.state), orvErrContextMismatch) << ops.name;
    EXPECT_EQ(ops.setDlyNull(m.state), orvErrContextMismatch) << ops.name;
    EXPECT_EQ(ops.release(m.state), orvErrContextMismatch) << ops.name;
  }
  EXPECT_EQ(owners, 1) << "exactly one family takes the state";
  EXPECT_EQ(m.state->tag, own);
  EXPECT_TRUE(sameBits(orv::filter::firDelay<F>(m.state), before.data(), n));

  // Words near the family's own tags.
  for (std::uint32_t word : {0u, own + 1, own - 1, Expect<Row>::kMulti + 1, 0x49493031u}) {
    if (word == Expect<Row>::kSingle || word == Expect<Row>::kMulti) continue;
    m.state->tag = word;
    std::vector<Sample> d(n);
    EXPECT_EQ(Row::getDly(m.state, d.data()), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(Row::setDly(m.state, nullptr), orvErrContextMismatch) << std::hex << word;
    EXPECT_EQ(Row::release(m.state), orvErrContextMismatch) << std::hex << word;
  }
  m.state->tag = own;
}

// ---- Argument checks -----------------------------------------------------------------

TYPED_TEST(FirStateAll, ArgumentChecksInOrder) {
  using Row = TypeParam;
  using Tap = typename Row::Tap;
  using Sample = typename Row::Sample;
  const std::vector<Tap> taps = makeTaps<Tap>(4, 41);
  int dummy = 0;
  orvsFIRState* const untouched = reinterpret_cast<orvsFIRState*>(&dummy);
  orvsFIRState* s = untouched;

  EXPECT_EQ(Row::init(nullptr, taps.data(), 4, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::init(&s, nullptr, 4, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::init(&s, nullptr, 0, nullptr), orvErrNullPointer) << "null before length";
  EXPECT_EQ(Row::init(&s, taps.data(), 0, nullptr), orvErrFirLength);
  EXPECT_EQ(Row::init(&s, taps.data(), -1, nullptr), orvErrFirLength);
  EXPECT_EQ(s, untouched) << "a refused creation writes no handle";

  Tap t[4];
  Sample d[4];
  EXPECT_EQ(Row::getTaps(nullptr, t), orvErrNullPointer);
  EXPECT_EQ(Row::getDly(nullptr, d), orvErrNullPointer);
  EXPECT_EQ(Row::setDly(nullptr, d), orvErrNullPointer);
  EXPECT_EQ(Row::setDly(nullptr, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::release(nullptr), orvErrNullPointer);

  // The result pointer is tested before the tag.
  Made<Row> m(4, false, 42);
  ASSERT_EQ(m.status, orvOk);
  const std::uint32_t own = m.state->tag;
  m.state->tag = 0;
  EXPECT_EQ(Row::getTaps(m.state, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::getDly(m.state, nullptr), orvErrNullPointer);
  m.state->tag = own;
  EXPECT_EQ(Row::getTaps(m.state, nullptr), orvErrNullPointer);
  EXPECT_EQ(Row::getDly(m.state, nullptr), orvErrNullPointer);
}

// ---- Failed allocations ------------------------------------------------------------------

TYPED_TEST(FirStateAll, EveryFailedAllocationIsReleased) {
  using Row = TypeParam;
  using Tap = typename Row::Tap;
  using Sample = typename Row::Sample;
  for (int n : {1, 6}) {
    const std::vector<Tap> taps = makeTaps<Tap>(n, 51);
    const std::vector<Sample> delay = makeSamples<Sample>(n, 52);
    orvsFIRState* kept = nullptr;
    const long count = driveAllocationFailures(
        [&](orvsFIRState** s) {
          const orvStatus st = Row::init(s, taps.data(), n, delay.data());
          if (st == orvOk) kept = *s;
          return st;
        },
        "short taps");
    // The record, the taps and the delay buffer (and the 16-bit copy of
    // integer taps).
    EXPECT_EQ(count, Row::Family::kIntegerTaps ? 4 : 3);
    ASSERT_NE(kept, nullptr);
    std::vector<Tap> got(n);
    ASSERT_EQ(Row::getTaps(kept, got.data()), orvOk);
    EXPECT_EQ(Row::release(kept), orvOk);
  }
}

}  // namespace
}  // namespace firtest
