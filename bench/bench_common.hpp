// Conventions shared by the benchmark programs.
//
// Every case is registered under the name "<area>/<kernel>/<impl>/<size>":
// area groups the report's tables (memory, elementwise, fft, fir, ...),
// kernel is what is computed, impl is "orvspx" or the peer doing the same
// work ("plain", "memcpy", "fftw", "kissfft", "volk", "liquid"), and size is
// the vector length (for transforms, the number of points). The report script
// (scripts/bench_report.py) reads these names back from the JSON output.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "orvspx.h"

namespace orvbench {

// Buffers from the library's allocator (32-byte aligned), freed on exit.
template <typename T>
struct Buffer {
  explicit Buffer(int n) : p(reinterpret_cast<T*>(orvsMalloc_8u(static_cast<int>(n * sizeof(T))))) {}
  ~Buffer() { orvsFree(p); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  T* p;
};

// Registers one case. `body(state)` runs the timed loop; the item count per
// iteration is set from `size` so that Google Benchmark reports items/s too.
template <typename Body>
void add(const std::string& area, const std::string& kernel, const std::string& impl,
         std::int64_t size, Body body) {
  const std::string name = area + "/" + kernel + "/" + impl + "/" + std::to_string(size);
  benchmark::RegisterBenchmark(name.c_str(), [body, size](benchmark::State& state) {
    body(state);
    state.SetItemsProcessed(state.iterations() * size);
  })->Unit(benchmark::kMicrosecond);
}

// Registers an existing benchmark function once per size, under the names
// "<area>/<kernel>/<impl>/<size>"; the function reads the size from
// state.range(0).
inline void addSized(const std::string& area, const std::string& kernel, const std::string& impl,
                     void (*fn)(benchmark::State&), std::initializer_list<std::int64_t> sizes) {
  const std::string name = area + "/" + kernel + "/" + impl;
  auto* b = benchmark::RegisterBenchmark(name.c_str(), fn);
  for (std::int64_t n : sizes) b->Arg(n);
  b->Unit(benchmark::kMicrosecond);
}

// Registers an existing benchmark function for one case whose size is not
// its argument (a transform of 2^order points takes the order): the name is
// "<area>/<kernel>/<impl>/<size>" and Google Benchmark appends "/<arg>",
// which the report ignores.
inline void addWithArg(const std::string& area, const std::string& kernel, const std::string& impl,
                       std::int64_t size, void (*fn)(benchmark::State&), std::int64_t arg) {
  const std::string name = area + "/" + kernel + "/" + impl + "/" + std::to_string(size);
  benchmark::RegisterBenchmark(name.c_str(), fn)->Arg(arg)->Unit(benchmark::kMicrosecond);
}

// Reproducible test data.
template <typename T>
std::vector<T> randomVector(std::size_t n, T lo, T hi, unsigned seed = 1) {
  std::mt19937 gen(seed);
  std::vector<T> v(n);
  if constexpr (std::is_floating_point<T>::value) {
    std::uniform_real_distribution<T> d(lo, hi);
    for (auto& x : v) x = d(gen);
  } else {
    std::uniform_int_distribution<long long> d(lo, hi);
    for (auto& x : v) x = static_cast<T>(d(gen));
  }
  return v;
}

}  // namespace orvbench

// Each program defines `void orvbenchRegister()`; main registers and runs.
void orvbenchRegister();

#define ORVBENCH_MAIN()                                   \
  int main(int argc, char** argv) {                       \
    orvbenchRegister();                                   \
    benchmark::Initialize(&argc, argv);                   \
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1; \
    benchmark::RunSpecifiedBenchmarks();                  \
    benchmark::Shutdown();                                \
    return 0;                                             \
  }
