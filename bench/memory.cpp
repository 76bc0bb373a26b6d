// Copy, Set and Zero next to memcpy and memset on the same buffers.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "orvspx.h"

namespace {

void BM_orvsCopy_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv32f> src(n, 1.0f), dst(n);
  for (auto _ : state) {
    orvsCopy_32f(src.data(), dst.data(), n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n * sizeof(orv32f));
}

void BM_memcpy(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv32f> src(n, 1.0f), dst(n);
  for (auto _ : state) {
    std::memcpy(dst.data(), src.data(), n * sizeof(orv32f));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n * sizeof(orv32f));
}

void BM_orvsSet_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv32f> dst(n);
  for (auto _ : state) {
    orvsSet_32f(0.0f, dst.data(), n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n * sizeof(orv32f));
}

void BM_orvsSet_8u(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv8u> dst(n);
  for (auto _ : state) {
    orvsSet_8u(0x5A, dst.data(), n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n);
}

void BM_memset_8u(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv8u> dst(n);
  for (auto _ : state) {
    std::memset(dst.data(), 0x5A, n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n);
}

void BM_orvsZero_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv32f> dst(n);
  for (auto _ : state) {
    orvsZero_32f(dst.data(), n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n * sizeof(orv32f));
}

void BM_memset_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<orv32f> dst(n);
  for (auto _ : state) {
    std::memset(dst.data(), 0, n * sizeof(orv32f));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * n * sizeof(orv32f));
}

#define ORV_SIZES ->Arg(1024)->Arg(65536)->Arg(1 << 20)
BENCHMARK(BM_orvsCopy_32f) ORV_SIZES;
BENCHMARK(BM_memcpy) ORV_SIZES;
BENCHMARK(BM_orvsSet_32f) ORV_SIZES;
BENCHMARK(BM_orvsSet_8u) ORV_SIZES;
BENCHMARK(BM_memset_8u) ORV_SIZES;
BENCHMARK(BM_orvsZero_32f) ORV_SIZES;
BENCHMARK(BM_memset_32f) ORV_SIZES;

}  // namespace
