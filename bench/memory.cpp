// Memory-bound kernels: Copy, Set and Zero next to memcpy and memset on the
// same buffers.
#include <cstring>
#include <memory>

#include "bench_common.hpp"
#include "orvspx.h"

namespace {

void registerSize(int n) {
  using orvbench::add;
  auto src = std::make_shared<std::vector<orv32f>>(orvbench::randomVector<orv32f>(n, -1.f, 1.f));
  auto dst = std::make_shared<std::vector<orv32f>>(n);
  auto bytes = std::make_shared<std::vector<orv8u>>(n);

  add("memory", "copy_32f", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsCopy_32f(src->data(), dst->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("memory", "copy_32f", "memcpy", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      std::memcpy(dst->data(), src->data(), n * sizeof(orv32f));
      benchmark::ClobberMemory();
    }
  });
  add("memory", "zero_32f", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsZero_32f(dst->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("memory", "zero_32f", "memset", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      std::memset(dst->data(), 0, n * sizeof(orv32f));
      benchmark::ClobberMemory();
    }
  });
  add("memory", "set_8u", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsSet_8u(0x5A, bytes->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("memory", "set_8u", "memset", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      std::memset(bytes->data(), 0x5A, n);
      benchmark::ClobberMemory();
    }
  });
  add("memory", "set_32f", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsSet_32f(0.25f, dst->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("memory", "set_32f", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orv32f* d = dst->data();
      for (int i = 0; i < n; ++i) d[i] = 0.25f;
      benchmark::ClobberMemory();
    }
  });
}

}  // namespace

void orvbenchRegister() {
  for (int n : {1024, 16384, 262144, 1 << 20}) registerSize(n);
}

ORVBENCH_MAIN()
