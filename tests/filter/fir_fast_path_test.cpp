// The vector lanes of the fast direct FIR kernel give the plain sum of each
// output bit for bit: every lane path against a plain loop written here, on
// values of every class, for all counts around the group sizes.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "core/cpu.hpp"
#include "filter/fir_kernels.hpp"

namespace {

std::vector<double> mixedValues(int n, unsigned seed) {
  std::mt19937_64 g(seed);
  std::vector<double> v(static_cast<std::size_t>(n));
  const double specials[] = {0.0,
                             -0.0,
                             std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::denorm_min(),
                             1e308,
                             -1e-310};
  for (auto& x : v) {
    const unsigned k = static_cast<unsigned>(g() % 64);
    if (k < 4) {
      x = specials[g() % 8];
    } else if (k < 8) {
      const std::uint64_t bits = g();
      std::memcpy(&x, &bits, sizeof x);
    } else {
      // Values of mixed magnitudes, so that the order of the sums matters.
      x = std::ldexp(std::uniform_real_distribution<double>(-1.0, 1.0)(g), int(g() % 60) - 30);
    }
  }
  return v;
}

void plainSums(const double* h, int T, const double* x, double* y, int count) {
  for (int n = 0; n < count; ++n) {
    double acc = 0.0;
    for (int j = 0; j < T; ++j) acc = acc + h[j] * x[n + j];
    y[n] = acc;
  }
}

TEST(FirFastPath, LanePathsGiveThePlainSums) {
  using Path = void (*)(const double*, int, const double*, double*, int);
  std::vector<Path> paths = {orv::filter::firDotDoublesSse2, orv::filter::firDotDoubles};
  if (orv::cpu::hasAvx()) paths.push_back(orv::filter::firDotDoublesAvx);
  for (int T : {1, 2, 3, 5, 8, 17, 40}) {
    const auto h = mixedValues(T, 11 + T);
    for (int count : {0, 1, 3, 4, 5, 15, 16, 17, 31, 32, 33, 36, 63, 64, 65, 100}) {
      const auto x = mixedValues(count + T - 1, 100 * T + count);
      std::vector<double> expect(count + 1), got(count + 1);
      plainSums(h.data(), T, x.data(), expect.data(), count);
      for (std::size_t p = 0; p < paths.size(); ++p) {
        std::fill(got.begin(), got.end(), 12345.0);
        paths[p](h.data(), T, x.data(), got.data(), count);
        // Bit for bit, but for the payload of a NaN: which NaN operand a
        // product passes on is the compiler's choice in the plain loop too.
        for (int n = 0; n < count; ++n) {
          if (std::isnan(expect[n])) {
            EXPECT_TRUE(std::isnan(got[n])) << "path " << p << " T " << T << " n " << n;
          } else {
            EXPECT_EQ(std::memcmp(&got[n], &expect[n], sizeof(double)), 0)
                << "path " << p << " T " << T << " count " << count << " n " << n;
          }
        }
        EXPECT_EQ(got[count], 12345.0) << "wrote past the outputs";
      }
    }
  }
}

}  // namespace
