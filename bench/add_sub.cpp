// Addition and subtraction next to plain -O3 loops doing the same
// arithmetic: a float sum, and saturating (rounded, for scale 1) integer
// sums and differences.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "orvspx.h"

namespace {

template <typename T>
std::vector<T> randomVector(std::size_t n, unsigned seed) {
  std::mt19937 gen(seed);
  std::vector<T> v(n);
  for (auto& x : v) {
    if constexpr (std::is_floating_point<T>::value) {
      x = static_cast<T>(static_cast<int>(gen() % 20001) - 10000) / T(7);
    } else {
      x = static_cast<T>(gen());
    }
  }
  return v;
}

// ---- Plain loops ----------------------------------------------------------

__attribute__((noinline)) void plainAdd32f(const float* a, const float* b, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = a[i] + b[i];
}

inline std::int32_t roundHalf(std::int32_t t) { return (t + ((t >> 1) & 1)) >> 1; }
inline std::int64_t roundHalf(std::int64_t t) { return (t + ((t >> 1) & 1)) >> 1; }

__attribute__((noinline)) void plainAdd16sSat(const std::int16_t* a, const std::int16_t* b, std::int16_t* d,
                                              int n, int s) {
  for (int i = 0; i < n; ++i) {
    std::int32_t t = std::int32_t(a[i]) + b[i];
    if (s == 1) t = roundHalf(t);
    d[i] = static_cast<std::int16_t>(t > 32767 ? 32767 : (t < -32768 ? -32768 : t));
  }
}

__attribute__((noinline)) void plainAddC8uSatI(std::uint8_t val, std::uint8_t* d, int n, int s) {
  for (int i = 0; i < n; ++i) {
    std::int32_t t = std::int32_t(d[i]) + val;
    if (s == 1) t = roundHalf(t);
    d[i] = static_cast<std::uint8_t>(t > 255 ? 255 : t);
  }
}

__attribute__((noinline)) void plainSub32scSat(const std::int32_t* a, const std::int32_t* b, std::int32_t* d,
                                               int n, int s) {
  for (int i = 0; i < 2 * n; ++i) {
    std::int64_t t = std::int64_t(b[i]) - a[i];
    if (s == 1) t = roundHalf(t);
    d[i] = static_cast<std::int32_t>(t > INT32_MAX ? INT32_MAX : (t < INT32_MIN ? INT32_MIN : t));
  }
}

// ---- Benchmarks -----------------------------------------------------------

void BM_orvsAdd_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  auto a = randomVector<float>(n, 1), b = randomVector<float>(n, 2);
  std::vector<float> d(n);
  for (auto _ : state) {
    orvsAdd_32f(a.data(), b.data(), d.data(), n);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}
void BM_plain_Add_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  auto a = randomVector<float>(n, 1), b = randomVector<float>(n, 2);
  std::vector<float> d(n);
  for (auto _ : state) {
    plainAdd32f(a.data(), b.data(), d.data(), n);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_orvsAdd_16s_Sfs(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int s = static_cast<int>(state.range(1));
  auto a = randomVector<orv16s>(n, 1), b = randomVector<orv16s>(n, 2);
  std::vector<orv16s> d(n);
  for (auto _ : state) {
    orvsAdd_16s_Sfs(a.data(), b.data(), d.data(), n, s);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}
void BM_plain_Add_16s_Sat(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int s = static_cast<int>(state.range(1));
  auto a = randomVector<orv16s>(n, 1), b = randomVector<orv16s>(n, 2);
  std::vector<orv16s> d(n);
  for (auto _ : state) {
    plainAdd16sSat(a.data(), b.data(), d.data(), n, s);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_orvsAddC_8u_ISfs(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int s = static_cast<int>(state.range(1));
  auto d = randomVector<orv8u>(n, 3);
  for (auto _ : state) {
    orvsAddC_8u_ISfs(3, d.data(), n, s);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}
void BM_plain_AddC_8u_Sat_I(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int s = static_cast<int>(state.range(1));
  auto d = randomVector<orv8u>(n, 3);
  for (auto _ : state) {
    plainAddC8uSatI(3, d.data(), n, s);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_orvsSub_32sc_Sfs(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int s = static_cast<int>(state.range(1));
  auto a = randomVector<orv32s>(2 * n, 1), b = randomVector<orv32s>(2 * n, 2);
  std::vector<orv32s> d(2 * n);
  for (auto _ : state) {
    orvsSub_32sc_Sfs(reinterpret_cast<const orv32sc*>(a.data()), reinterpret_cast<const orv32sc*>(b.data()),
                     reinterpret_cast<orv32sc*>(d.data()), n, s);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}
void BM_plain_Sub_32sc_Sat(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int s = static_cast<int>(state.range(1));
  auto a = randomVector<orv32s>(2 * n, 1), b = randomVector<orv32s>(2 * n, 2);
  std::vector<orv32s> d(2 * n);
  for (auto _ : state) {
    plainSub32scSat(a.data(), b.data(), d.data(), n, s);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

#define ORV_SIZES ->Arg(1024)->Arg(1 << 20)
#define ORV_SIZES_SCALES ->Args({1024, 0})->Args({1024, 1})->Args({1 << 20, 0})->Args({1 << 20, 1})
BENCHMARK(BM_orvsAdd_32f) ORV_SIZES;
BENCHMARK(BM_plain_Add_32f) ORV_SIZES;
BENCHMARK(BM_orvsAdd_16s_Sfs) ORV_SIZES_SCALES;
BENCHMARK(BM_plain_Add_16s_Sat) ORV_SIZES_SCALES;
BENCHMARK(BM_orvsAddC_8u_ISfs) ORV_SIZES_SCALES;
BENCHMARK(BM_plain_AddC_8u_Sat_I) ORV_SIZES_SCALES;
BENCHMARK(BM_orvsSub_32sc_Sfs) ORV_SIZES_SCALES;
BENCHMARK(BM_plain_Sub_32sc_Sat) ORV_SIZES_SCALES;

}  // namespace
