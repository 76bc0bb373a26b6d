// The packed layouts and the moves between them, for even and odd lengths.
#include <gtest/gtest.h>

#include <complex>
#include <vector>

#include "transform/packed_layout.hpp"
#include "transform/spectrum_support.hpp"

namespace {

using orv::layout::Kind;
using spectest::Layout;

// Distinct bin values that show any misplaced slot: Re X[k] = 10k + 1,
// Im X[k] = -(10k + 2); bin 0 and the middle bin of even n are real.
std::vector<std::complex<double>> markedBins(std::size_t n) {
  std::vector<std::complex<double>> X(n / 2 + 1);
  for (std::size_t k = 0; k < X.size(); ++k) {
    const bool real = k == 0 || (n % 2 == 0 && k == n / 2);
    X[k] = {10.0 * k + 1, real ? 0.0 : -(10.0 * k + 2)};
  }
  return X;
}

// The smallest cases, exactly as the layouts' table gives them, with
// X0 = 1, X1 = 11 - 12i, X2 = 21.
TEST(PackedLayout, SmallestCasesTable) {
  struct Row {
    std::size_t n;
    std::vector<double> ccs, pack, perm;
  };
  const Row rows[] = {
      {1, {1, 0}, {1}, {1}},
      {2, {1, 0, 11, 0}, {1, 11}, {1, 11}},
      {3, {1, 0, 11, -12}, {1, 11, -12}, {1, 11, -12}},
      {4, {1, 0, 11, -12, 21, 0}, {1, 11, -12, 21}, {1, 21, 11, -12}},
  };
  for (const Row& r : rows) {
    const auto X = markedBins(r.n);
    EXPECT_EQ(spectest::packLayout<double>(Layout::Ccs, X, r.n), r.ccs) << "n=" << r.n;
    EXPECT_EQ(spectest::packLayout<double>(Layout::Pack, X, r.n), r.pack) << "n=" << r.n;
    EXPECT_EQ(spectest::packLayout<double>(Layout::Perm, X, r.n), r.perm) << "n=" << r.n;
  }
}

TEST(PackedLayout, BinSlotsMatchTheLayouts) {
  const Kind kinds[] = {Kind::Ccs, Kind::Pack, Kind::Perm};
  const Layout layouts[] = {Layout::Ccs, Layout::Pack, Layout::Perm};
  for (std::size_t n = 1; n <= 17; ++n) {
    const auto X = markedBins(n);
    for (int l = 0; l < 3; ++l) {
      const auto arr = spectest::packLayout<double>(layouts[l], X, n);
      ASSERT_EQ(std::size_t(orv::layout::realCount(kinds[l], std::ptrdiff_t(n))), arr.size());
      for (std::size_t k = 0; k <= n / 2; ++k) {
        const auto at = orv::layout::binSlots(kinds[l], std::ptrdiff_t(n), std::ptrdiff_t(k));
        EXPECT_EQ(arr[at.re], X[k].real()) << spectest::layoutName(layouts[l]) << " n=" << n << " k=" << k;
        if (at.im >= 0) EXPECT_EQ(arr[at.im], X[k].imag());
        else EXPECT_EQ(X[k].imag(), 0.0);
      }
    }
  }
}

TEST(PackedLayout, MovesBetweenLayouts) {
  for (std::size_t n = 1; n <= 17; ++n) {
    SCOPED_TRACE("n=" + std::to_string(n));
    const auto X = markedBins(n);
    const auto ccs = spectest::packLayout<double>(Layout::Ccs, X, n);
    const auto pack = spectest::packLayout<double>(Layout::Pack, X, n);
    const auto perm = spectest::packLayout<double>(Layout::Perm, X, n);
    const std::ptrdiff_t sn = std::ptrdiff_t(n);

    // Out of Perm, in place; CCS needs its extra room.
    std::vector<double> a(perm);
    orv::layout::fromPerm(Kind::Pack, a.data(), sn);
    EXPECT_EQ(a, pack);
    a = perm;
    a.resize(ccs.size(), 99.0);
    orv::layout::fromPerm(Kind::Ccs, a.data(), sn);
    EXPECT_EQ(a, ccs);

    // Into Perm, out of place and in place. CCS slots of zero imaginary
    // parts are ignored, so junk there must not matter.
    std::vector<double> junkCcs(ccs);
    junkCcs[1] = 555;
    if (n % 2 == 0) junkCcs[n + 1] = 777;
    for (bool inPlace : {false, true}) {
      std::vector<double> out(n, -1.0), src(pack);
      if (inPlace) {
        orv::layout::toPerm(Kind::Pack, src.data(), src.data(), sn);
        EXPECT_EQ(src, perm);
      } else {
        orv::layout::toPerm(Kind::Pack, src.data(), out.data(), sn);
        EXPECT_EQ(out, perm);
      }
      std::vector<double> c(junkCcs);
      if (inPlace) {
        orv::layout::toPerm(Kind::Ccs, c.data(), c.data(), sn);
        EXPECT_EQ(std::vector<double>(c.begin(), c.begin() + sn), perm);
      } else {
        orv::layout::toPerm(Kind::Ccs, c.data(), out.data(), sn);
        EXPECT_EQ(out, perm);
      }
    }
  }
}

}  // namespace
