// Scaled, saturating integer addition and subtraction against the exact
// reference: every 8u operand pair at every scale that is not constant, and
// boundary and random operands of 16s, 16sc, 32s and 32sc across scales
// -40 to 40 and the extreme scales.
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <sstream>
#include <vector>

#include "arith/add_sub_forms.hpp"
#include "support/exact_ref.hpp"

namespace {

using addsubtest::exactTerm;
using addsubtest::Form;
using orvtest::Wide;

template <typename P>
std::string show(P v) {
  return std::to_string(static_cast<long long>(v));
}

// Runs `form` on x (len * lanes parts) with second operand y and compares
// each part with `expected(t)`. Reports the first mismatch of the call.
template <typename P, typename Expected>
void runAndCheck(const Form<P>& form, const std::vector<P>& x, const std::vector<P>& y, int s,
                 const Expected& expected) {
  const int len = static_cast<int>(x.size()) / form.lanes;
  std::vector<P> dst(x.size() + 1, P(0x5A));  // one spare part must stay as it is
  if (form.inPlace) std::copy(x.begin(), x.end(), dst.begin());
  const orvStatus st = form.run(x.data(), y.data(), dst.data(), len, s);
  ASSERT_EQ(st, orvOk) << form.name << " scaleFactor " << s;
  ASSERT_EQ(dst.back(), P(0x5A)) << form.name << " wrote past the end, scaleFactor " << s;
  for (std::size_t j = 0; j < x.size(); ++j) {
    const P yj = form.scalar ? y[j % form.lanes] : y[j];
    const Wide t = exactTerm(form.op, x[j], yj);
    const P want = expected(t);
    if (dst[j] != want) {
      ADD_FAILURE() << form.name << " scaleFactor " << s << " part " << j << ": x " << show(x[j]) << ", y "
                    << show(yj) << " (t " << orvtest::toString(t) << ") gave " << show(dst[j])
                    << ", expected " << show(want);
      return;
    }
  }
}

std::vector<int> scales(int lo, int hi) {
  std::vector<int> out;
  for (int s = lo; s <= hi; ++s) out.push_back(s);
  for (int s : {INT_MIN, INT_MIN + 1, -1000, 1000, INT_MAX - 1, INT_MAX}) out.push_back(s);
  return out;
}

// ---- 8u: all operand pairs ----------------------------------------------

TEST(AddSub8u, EveryOperandPairAtEveryScale) {
  std::vector<orv8u> pairX(65536), pairY(65536), row(256);
  for (int i = 0; i < 65536; ++i) {
    pairX[i] = static_cast<orv8u>(i & 255);
    pairY[i] = static_cast<orv8u>(i >> 8);
  }
  for (int i = 0; i < 256; ++i) row[i] = static_cast<orv8u>(i);

  for (int s : scales(-12, 14)) {
    // t lies in -255..510: the expected results of this scale as a table.
    std::vector<orv8u> table(766);
    for (int t = -255; t <= 510; ++t) table[t + 255] = orvtest::exactScaledTo<orv8u>(t, s);
    const auto expected = [&table](Wide t) { return table[static_cast<int>(t) + 255]; };
    for (const auto& form : addsubtest::forms8u()) {
      SCOPED_TRACE(form.name);
      if (!form.scalar) {
        runAndCheck(form, pairX, pairY, s, expected);
      } else {
        for (int v = 0; v < 256; ++v) runAndCheck(form, row, {static_cast<orv8u>(v)}, s, expected);
      }
    }
  }
}

// ---- 16s, 16sc, 32s, 32sc: boundary and random operands ----------------

// 0, +-1, +-2, +-3, the extremes and their neighbours, and +-2^k, +-(2^k - 1),
// +-(2^k + 1): sums and differences of these hit the extremes, the ties of
// every scale and their neighbours.
template <typename P>
std::vector<P> boundaryValues() {
  using L = std::numeric_limits<P>;
  std::vector<long long> v = {0, 1, -1, 2, -2, 3, -3, L::max(), L::max() - 1, L::min(), L::min() + 1};
  for (int k = 2; k < L::digits; ++k) {
    const long long p = 1LL << k;
    for (long long q : {p, p - 1, p + 1}) {
      if (q <= L::max()) v.push_back(q);
      if (-q >= L::min()) v.push_back(-q);
    }
  }
  std::vector<P> out;
  for (long long q : v) out.push_back(static_cast<P>(q));
  return out;
}

template <typename P>
void sweepWide(const std::vector<Form<P>>& forms, unsigned seed) {
  const std::vector<P> values = boundaryValues<P>();
  const std::size_t n = values.size();
  std::mt19937_64 gen(seed);
  auto randomPart = [&gen]() {
    const std::uint64_t r = gen();
    // Half of them full-range, half of them small, where rounding shows.
    return (r & 1) ? static_cast<P>(r >> 8) : static_cast<P>(static_cast<std::int64_t>(r >> 8) % 4096);
  };

  // Vector forms: every pair of boundary values, then 2048 random pairs.
  std::vector<P> pairX, pairY;
  for (std::size_t a = 0; a < n; ++a) {
    for (std::size_t b = 0; b < n; ++b) {
      pairX.push_back(values[a]);
      pairY.push_back(values[b]);
    }
  }
  for (int i = 0; i < 2048 + int(pairX.size() % 2); ++i) {  // an even count, for complex forms
    pairX.push_back(randomPart());
    pairY.push_back(randomPart());
  }
  // Scalar forms: the boundary values and about 254 random ones as the
  // vector (an even count, for the complex forms), each boundary value and 16 random
  // ones as the scalar (a complex scalar pairs it with another value).
  std::vector<P> row = values;
  while (row.size() < n + 254 || row.size() % 2 != 0) row.push_back(randomPart());
  std::vector<std::vector<P>> scalars;
  for (std::size_t a = 0; a < n; ++a) scalars.push_back({values[a], values[(a * 7 + 3) % n]});
  for (int i = 0; i < 16; ++i) scalars.push_back({randomPart(), randomPart()});

  for (int s : scales(-40, 40)) {
    const auto expected = [s](Wide t) { return orvtest::exactScaledTo<P>(t, s); };
    for (const auto& form : forms) {
      if (!form.scaled && s != 0) continue;
      SCOPED_TRACE(form.name);
      if (!form.scalar) {
        runAndCheck(form, pairX, pairY, s, expected);
      } else {
        for (const auto& val : scalars) runAndCheck(form, row, val, s, expected);
      }
    }
  }
}

TEST(AddSub16s, BoundaryAndRandomOperandsAtEveryScale) {
  sweepWide(addsubtest::forms16s(), 16);
}

TEST(AddSub32s, BoundaryAndRandomOperandsAtEveryScale) {
  sweepWide(addsubtest::forms32s(), 32);
}

// ---- The unscaled integer sums --------------------------------------------

TEST(AddUnsigned, SumsOfEvery8uPairAndOf16uAnd32uBoundaries) {
  std::vector<orv8u> a(65536), b(65536);
  for (int i = 0; i < 65536; ++i) {
    a[i] = static_cast<orv8u>(i & 255);
    b[i] = static_cast<orv8u>(i >> 8);
  }
  std::vector<orv16u> wide(65536);
  ASSERT_EQ(orvsAdd_8u16u(a.data(), b.data(), wide.data(), 65536), orvOk);
  for (int i = 0; i < 65536; ++i) ASSERT_EQ(wide[i], a[i] + b[i]) << i;

  const std::vector<orv32u> v = {0, 1, 2, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF, 0x10000, 0x7FFFFFFF, 0x80000000u,
                                 0xFFFFFFFEu, 0xFFFFFFFFu};
  std::vector<orv16u> x16, y16;
  std::vector<orv32u> x32, y32;
  for (orv32u p : v) {
    for (orv32u q : v) {
      x32.push_back(p);
      y32.push_back(q);
      if (p <= 0xFFFF && q <= 0xFFFF) {
        x16.push_back(static_cast<orv16u>(p));
        y16.push_back(static_cast<orv16u>(q));
      }
    }
  }
  std::vector<orv16u> d16(x16.size());
  std::vector<orv32u> d32(x32.size());
  ASSERT_EQ(orvsAdd_16u(x16.data(), y16.data(), d16.data(), int(d16.size())), orvOk);
  ASSERT_EQ(orvsAdd_32u(x32.data(), y32.data(), d32.data(), int(d32.size())), orvOk);
  for (std::size_t i = 0; i < d16.size(); ++i)
    EXPECT_EQ(d16[i], std::min<std::uint64_t>(std::uint64_t(x16[i]) + y16[i], 65535)) << x16[i] << "+" << y16[i];
  for (std::size_t i = 0; i < d32.size(); ++i)
    EXPECT_EQ(d32[i], std::min<std::uint64_t>(std::uint64_t(x32[i]) + y32[i], 0xFFFFFFFFu)) << x32[i] << "+" << y32[i];
}

// ---- The reference itself --------------------------------------------------

// The rounding table of worked values, and saturation, on the reference the
// sweeps above rely on.
TEST(ExactReference, WorkedRoundingValues) {
  struct Row {
    long long s, t, result;
  };
  const Row rows[] = {{1, 1, 0},  {1, 3, 2},  {1, 5, 2},  {1, -1, 0}, {1, -3, -2},  {2, 2, 0},  {2, 5, 1},
                      {2, 6, 2},  {2, 7, 2},  {2, 10, 2}, {2, -6, -2}, {9, 510, 1}, {8, 255, 1}, {10, 510, 0},
                      {-6, 2, 128}, {-7, 2, 255}, {-1, 510, 255}};
  for (const Row& r : rows) {
    EXPECT_EQ(orvtest::exactScaled(r.t, r.s, -32768, 255), r.result)
        << "t " << r.t << " s " << r.s;
  }
  EXPECT_EQ(orvtest::exactScaledTo<orv16s>(65535, 1), 32767);
  EXPECT_EQ(orvtest::exactScaledTo<orv16s>(-65536, 1), -32768);
  EXPECT_EQ(orvtest::exactScaledTo<orv32s>(-1, -2147483647LL - 1), INT_MIN);
  EXPECT_EQ(orvtest::exactScaledTo<orv32s>(Wide(1) << 62, 2147483647LL), 0);
}

}  // namespace
