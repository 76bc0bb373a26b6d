// The vector loops of the 32fc product against the plain loop, bit for bit
// (any NaN matching any NaN), over lengths with tails, special quadruples,
// millions of random elements and the streaming stores of the fused loop;
// the 32fc product by one value against the plain vector product with that
// value repeated; the 64fc loop against the double formula; the scaled 16s
// products of long vectors against the same products one element at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "arith/complex_mul.hpp"
#include "orvspx.h"

namespace {

std::uint32_t bitsOf(float v) {
  std::uint32_t u;
  std::memcpy(&u, &v, 4);
  return u;
}

// n / 2 complex values of parts: special values up front, then a quarter raw bit patterns (any class, NaN
// payloads included) and the rest ordinary values.
std::vector<orv32fc> mixedValues(std::size_t n, unsigned seed) {
  using L = std::numeric_limits<float>;
  std::vector<float> v = {0.0f, -0.0f, 1.0f, -1.0f, L::infinity(), -L::infinity(), L::quiet_NaN(), -L::quiet_NaN(),
                          L::denorm_min(), -L::denorm_min(), L::min(), L::max(), -L::max(), 0.5f, 3.0f};
  std::mt19937_64 gen(seed);
  std::uniform_real_distribution<double> real(-1000.0, 1000.0);
  while (v.size() < n) {
    const std::uint64_t r = gen();
    float t = static_cast<float>(real(gen));
    if ((r & 3) == 0) {
      const auto u = static_cast<std::uint32_t>(gen());
      std::memcpy(&t, &u, 4);
    }
    v.push_back(t);
  }
  std::vector<orv32fc> c(n / 2);
  for (std::size_t i = 0; i < c.size(); ++i) c[i] = {v[2 * i], v[2 * i + 1]};
  return c;
}

using Loop = void (*)(const orv32fc*, const orv32fc*, orv32fc*, std::ptrdiff_t);

// Every vector loop this processor runs.
std::vector<std::pair<const char*, Loop>> vectorLoops() {
  std::vector<std::pair<const char*, Loop>> loops = {{"sse2", orv::arith::mul32fcSse2}};
  if (orv::cpu::hasAvx()) loops.push_back({"avx", orv::arith::mul32fcAvx});
  if (orv::cpu::hasAvxFma()) loops.push_back({"avx+fma", orv::arith::mul32fcAvxFma});
  return loops;
}

bool sameValue(float got, float want) {
  return (std::isnan(got) && std::isnan(want)) || bitsOf(got) == bitsOf(want);
}

// The loop's results over x and y against the plain loop's, any NaN
// matching any NaN; with dst a fresh vector (and nothing written past it)
// and with dst = y.
void expectMatchesPlain(const char* name, Loop loop, const std::vector<orv32fc>& x, const std::vector<orv32fc>& y) {
  const std::size_t n = x.size();
  std::vector<orv32fc> want(n), got(n + 1, orv32fc{7, 7}), inPlace = y;
  orv::arith::mul32fcPlain(x.data(), y.data(), want.data(), std::ptrdiff_t(n));
  loop(x.data(), y.data(), got.data(), std::ptrdiff_t(n));
  loop(x.data(), inPlace.data(), inPlace.data(), std::ptrdiff_t(n));
  ASSERT_EQ(got[n].re, 7.0f) << name << " wrote past the end";
  for (std::size_t i = 0; i < n; ++i) {
    ASSERT_TRUE(sameValue(got[i].re, want[i].re) && sameValue(got[i].im, want[i].im))
        << name << " element " << i << ": (" << x[i].re << ", " << x[i].im << ") * (" << y[i].re << ", " << y[i].im
        << ") gave (" << got[i].re << ", " << got[i].im << ") for (" << want[i].re << ", " << want[i].im << ")";
    ASSERT_TRUE(sameValue(inPlace[i].re, want[i].re) && sameValue(inPlace[i].im, want[i].im))
        << name << " in place, element " << i;
  }
}

// Each vector loop gives the bits of the plain loop on short lengths (tails
// only) and over a few passes.
TEST(MulFloat, VectorLoopsOfThe32fcProductMatchThePlainLoop) {
  const auto x = mixedValues(6002, 21), y = mixedValues(6002, 22);
  for (const auto& [name, loop] : vectorLoops()) {
    for (std::size_t len : {1, 2, 3, 5, 3001})
      expectMatchesPlain(name, loop, {x.begin(), x.begin() + len}, {y.begin(), y.begin() + len});
  }
}

// All quadruples of special values as (a + bi)(c + di).
TEST(MulFloat, VectorLoopsOfThe32fcProductOnSpecialQuadruples) {
  using L = std::numeric_limits<float>;
  const float specials[] = {0.0f, -0.0f, 1.0f, -1.5f, 0x1p-75f, 0x1p100f, L::infinity(), -L::infinity(),
                            L::quiet_NaN(), L::denorm_min(), -L::denorm_min(), L::min(), L::max(), -L::max()};
  std::vector<orv32fc> x, y;
  for (float a : specials)
    for (float b : specials)
      for (float c : specials)
        for (float d : specials) x.push_back({a, b}), y.push_back({c, d});
  for (const auto& [name, loop] : vectorLoops()) expectMatchesPlain(name, loop, x, y);
}

float randomFloat(std::mt19937_64& gen, int minExp, int maxExp) {
  const std::uint64_t r = gen();
  const float m = 1.0f + float(r & 0xffffff) * 0x1p-24f;
  const int e = minExp + int((r >> 24) % std::uint64_t(maxExp - minExp + 1));
  return std::ldexp(m, e) * ((r >> 63) ? -1.0f : 1.0f);
}

// Millions of elements: raw bit patterns; ordinary values; parts where the
// two products nearly cancel, so that the exact difference decides the low
// bits; products that overflow float or fall into its subnormals.
TEST(MulFloat, VectorLoopsOfThe32fcProductOnManyElements) {
  std::mt19937_64 gen(77);
  const std::size_t chunk = 1 << 15;
  std::vector<orv32fc> x(chunk), y(chunk);
  const auto bitsFloat = [](std::uint32_t u) {
    float f;
    std::memcpy(&f, &u, 4);
    return f;
  };
  // A float a few units in the last place away from v.
  const auto near = [&](float v) {
    const std::uint32_t step = std::uint32_t(gen() % 9);
    return bitsFloat(bitsOf(v) + step - 4u);
  };
  for (int round = 0; round < 256; ++round) {
    for (std::size_t i = 0; i < chunk; ++i) {
      switch (round % 4) {
        case 0: {
          const std::uint64_t r = gen(), s = gen();
          x[i] = {bitsFloat(std::uint32_t(r)), bitsFloat(std::uint32_t(r >> 32))};
          y[i] = {bitsFloat(std::uint32_t(s)), bitsFloat(std::uint32_t(s >> 32))};
          break;
        }
        case 1:
          x[i] = {randomFloat(gen, -30, 30), randomFloat(gen, -30, 30)};
          y[i] = {randomFloat(gen, -30, 30), randomFloat(gen, -30, 30)};
          break;
        case 2: {
          // a*c - b*d with b = near(a), d = near(c); a*d + b*c with the signs
          // of d or c flipped to cancel there instead.
          const float a = randomFloat(gen, -60, 60), c = randomFloat(gen, -60, 60);
          const bool imaginary = gen() & 1;
          x[i] = {a, near(a)};
          y[i] = imaginary ? orv32fc{c, -near(c)} : orv32fc{c, near(c)};
          break;
        }
        default: {
          // Magnitudes around the float limits of the product.
          const bool large = gen() & 1;
          const int lo = large ? 55 : -80, hi = large ? 70 : -60;
          x[i] = {randomFloat(gen, lo, hi), randomFloat(gen, lo, hi)};
          y[i] = {randomFloat(gen, lo, hi), randomFloat(gen, lo, hi)};
          break;
        }
      }
    }
    for (const auto& [name, loop] : vectorLoops()) {
      expectMatchesPlain(name, loop, x, y);
      if (::testing::Test::HasFatalFailure()) return;
    }
  }
}

// From the streaming length on, with dst aligned to 16 bytes, to 8 bytes
// only (one element first) and to 4 bytes only (no streaming), in place too.
TEST(MulFloat, FusedLoopOfThe32fcProductWithStreamingStores) {
  if (!orv::cpu::hasAvxFma()) GTEST_SKIP() << "no AVX and FMA";
  const std::size_t n = std::size_t(orv::arith::kMul32fcStreamingElements) + 5;
  const auto x = mixedValues(2 * n, 23), y = mixedValues(2 * n, 24);
  std::vector<orv32fc> want(n);
  orv::arith::mul32fcPlain(x.data(), y.data(), want.data(), std::ptrdiff_t(n));
  // Room for n elements plus a guard at any of the offsets.
  std::vector<double> storage(n + 4);
  for (std::size_t offset : {std::size_t(0), std::size_t(8), std::size_t(4), std::size_t(12)}) {
    char* base = reinterpret_cast<char*>(storage.data());
    base += (16 - reinterpret_cast<std::uintptr_t>(base) % 16) % 16 + offset;
    auto* dst = reinterpret_cast<orv32fc*>(base);
    const orv32fc guard{-7.0f, 7.0f};
    std::memcpy(dst + n, &guard, sizeof guard);
    orv::arith::mul32fcAvxFma(x.data(), y.data(), dst, std::ptrdiff_t(n));
    for (int pass = 0; pass < 2; ++pass) {
      for (std::size_t i = 0; i < n; ++i) {
        orv32fc got;
        std::memcpy(&got, dst + i, sizeof got);
        ASSERT_TRUE(sameValue(got.re, want[i].re) && sameValue(got.im, want[i].im))
            << "offset " << offset << (pass ? " in place" : "") << ", element " << i;
      }
      orv32fc after;
      std::memcpy(&after, dst + n, sizeof after);
      ASSERT_EQ(std::memcmp(&after, &guard, sizeof guard), 0) << "offset " << offset << " wrote past the end";
      // Again with dst holding y.
      std::memcpy(dst, y.data(), n * sizeof(orv32fc));
      orv::arith::mul32fcAvxFma(x.data(), dst, dst, std::ptrdiff_t(n));
    }
  }
}

// The fused loop of the product by one value against the plain vector
// product by a vector holding that value, for special and random values.
TEST(MulFloat, FusedLoopOfThe32fcScalarProductMatchesTheVectorProduct) {
  if (!orv::cpu::hasAvxFma()) GTEST_SKIP() << "no AVX and FMA";
  const auto x = mixedValues(4002, 31);
  auto values = mixedValues(64, 32);  // specials first, then a mix
  values.push_back({std::numeric_limits<float>::max(), -std::numeric_limits<float>::max()});
  for (const orv32fc v : values) {
    for (std::size_t len : {std::size_t(1), std::size_t(2), std::size_t(5), x.size()}) {
      const std::vector<orv32fc> src(x.begin(), x.begin() + std::ptrdiff_t(len)), same(len, v);
      std::vector<orv32fc> want(len), got(len + 1, orv32fc{7, 7}), inPlace = src;
      orv::arith::mul32fcPlain(src.data(), same.data(), want.data(), std::ptrdiff_t(len));
      orv::arith::mulC32fcAvxFma(src.data(), v, got.data(), std::ptrdiff_t(len));
      orv::arith::mulC32fcAvxFma(inPlace.data(), v, inPlace.data(), std::ptrdiff_t(len));
      ASSERT_EQ(got[len].re, 7.0f) << "wrote past the end";
      for (std::size_t i = 0; i < len; ++i) {
        ASSERT_TRUE(sameValue(got[i].re, want[i].re) && sameValue(got[i].im, want[i].im) &&
                    sameValue(inPlace[i].re, want[i].re) && sameValue(inPlace[i].im, want[i].im))
            << "(" << src[i].re << ", " << src[i].im << ") * (" << v.re << ", " << v.im << ") gave (" << got[i].re
            << ", " << got[i].im << ") for (" << want[i].re << ", " << want[i].im << ")";
      }
    }
  }
}

// The 64fc loops against re = a*c - b*d, im = b*c + a*d with every product
// and sum rounded to double, on values of every class (products that
// overflow double or vanish below its subnormals included), with tails and
// in place.
TEST(MulFloat, LoopsOfThe64fcProductMatchTheDoubleFormula) {
  using L = std::numeric_limits<double>;
  const double specials[] = {0.0, -0.0, 1.0, -1.5, L::infinity(), -L::infinity(), L::quiet_NaN(),
                             L::denorm_min(), -L::denorm_min(), L::min(), L::max(), -L::max(), 0x1p600, 0x1p-600};
  std::mt19937_64 gen(41);
  const auto part = [&]() {
    const std::uint64_t r = gen();
    if (r % 4 == 0) return specials[(r >> 8) % (sizeof specials / sizeof specials[0])];
    if (r % 4 == 1) {
      double v;
      const std::uint64_t u = gen();
      std::memcpy(&v, &u, 8);
      return v;
    }
    return std::ldexp(double(gen() % 0x100000000) / 0x100000000 - 0.5, int(r % 2000) - 1000);
  };
  using Loop64 = void (*)(const orv64fc*, const orv64fc*, orv64fc*, std::ptrdiff_t);
  std::vector<std::pair<const char*, Loop64>> loops = {{"plain", orv::arith::mul64fcPlain}};
  if (orv::cpu::hasAvx()) loops.push_back({"avx", orv::arith::mul64fcAvx});
  const auto same = [](double got, double want) {
    return (std::isnan(got) && std::isnan(want)) || std::memcmp(&got, &want, 8) == 0;
  };
  for (std::size_t len : {1, 2, 3, 4, 5, 7, 20001}) {
    std::vector<orv64fc> x(len), y(len);
    for (std::size_t i = 0; i < len; ++i) x[i] = {part(), part()}, y[i] = {part(), part()};
    for (const auto& [name, loop] : loops) {
      std::vector<orv64fc> got(len + 1, orv64fc{7, 7}), inPlace = y;
      loop(x.data(), y.data(), got.data(), std::ptrdiff_t(len));
      loop(x.data(), inPlace.data(), inPlace.data(), std::ptrdiff_t(len));
      ASSERT_EQ(got[len].re, 7.0) << name << " wrote past the end";
      for (std::size_t i = 0; i < len; ++i) {
        const double a = x[i].re, b = x[i].im, c = y[i].re, d = y[i].im;
        const double ac = a * c, bd = b * d, bc = b * c, ad = a * d;
        const double re = ac - bd, im = bc + ad;
        ASSERT_TRUE(same(got[i].re, re) && same(got[i].im, im) && same(inPlace[i].re, re) &&
                    same(inPlace[i].im, im))
            << name << " element " << i << ": (" << a << ", " << b << ") * (" << c << ", " << d << ")";
      }
    }
  }
}

// Long vectors go through the vector loop, single elements through the plain
// one: every 16-bit x against a set of y (the extremes, small values, odd
// ones), at every scale case that computes, gives the same bits as one long
// vector (out of place and in place on either operand) and element by
// element.
TEST(Mul16s, ScaledLongVectorsMatchSingleElements) {
  std::vector<orv16s> x(65536);
  for (int i = 0; i < 65536; ++i) x[std::size_t(i)] = static_cast<orv16s>(i - 32768);
  std::vector<orv16s> got(x.size()), inPlaceX, inPlaceY;
  for (int yv : {-32768, -32767, -1, 0, 1, 3, 181, 12345, 32767}) {
    const std::vector<orv16s> y(x.size(), static_cast<orv16s>(yv));
    for (int s : {-16, -15, -14, -8, -1, 0, 1, 2, 3, 7, 14, 15, 16, 29, 30}) {
      ASSERT_EQ(orvsMul_16s_Sfs(x.data(), y.data(), got.data(), int(x.size()), s), orvOk);
      inPlaceX = x;
      inPlaceY = y;
      ASSERT_EQ(orvsMul_16s_ISfs(y.data(), inPlaceX.data(), int(x.size()), s), orvOk);
      ASSERT_EQ(orvsMul_16s_ISfs(x.data(), inPlaceY.data(), int(x.size()), s), orvOk);
      ASSERT_EQ(inPlaceX, got) << "y = " << yv << ", scaleFactor " << s;
      ASSERT_EQ(inPlaceY, got) << "y = " << yv << ", scaleFactor " << s;
      for (std::size_t i = 0; i < x.size(); ++i) {
        orv16s alone;
        ASSERT_EQ(orvsMul_16s_Sfs(&x[i], &y[i], &alone, 1, s), orvOk);
        ASSERT_EQ(got[i], alone) << x[i] << " * " << yv << ", scaleFactor " << s;
      }
    }
  }
}

}  // namespace
