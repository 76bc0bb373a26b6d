// Products of packed spectra (the Perm layout an FFT filter multiplies by the
// kept transform of its taps) next to the plain loop over the same layout.
#include "bench_common.hpp"

#include <cmath>
#include <cstdint>
#include <random>

#include "orvspx.h"

namespace {

using orvbench::Buffer;

// A Perm spectrum of n reals (n even) whose bins all lie on the unit circle,
// so that multiplying into it over and over keeps the magnitudes near 1
// (no overflow, no subnormals to slow a loop down).
template <typename T>
void fillUnitSpectrum(T* v, int n, unsigned seed) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> angle(0.0, 6.283185307179586);
  v[0] = 1;
  v[1] = -1;
  for (int i = 2; i + 1 < n; i += 2) {
    const double t = angle(gen);
    v[i] = static_cast<T>(std::cos(t));
    v[i + 1] = static_cast<T>(std::sin(t));
  }
}

template <typename T>
void BM_orvsMulPerm_I(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<T> src(n), srcDst(n);
  fillUnitSpectrum(src.p, n, 1);
  fillUnitSpectrum(srcDst.p, n, 2);
  for (auto _ : state) {
    if constexpr (sizeof(T) == 4) {
      orvsMulPerm_32f_I(src.p, srcDst.p, n);
    } else {
      orvsMulPerm_64f_I(src.p, srcDst.p, n);
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * n);
}

// The same product as a plain loop over an even-length Perm layout: the two
// real bins first, then the pairs, each part in double rounded once.
template <typename T>
void BM_loopMulPerm_I(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<T> src(n), srcDst(n);
  fillUnitSpectrum(src.p, n, 1);
  fillUnitSpectrum(srcDst.p, n, 2);
  for (auto _ : state) {
    const T* a = src.p;
    T* b = srcDst.p;
    b[0] = static_cast<T>(double(a[0]) * double(b[0]));
    b[1] = static_cast<T>(double(a[1]) * double(b[1]));
    for (int i = 2; i + 1 < n; i += 2) {
      const double ar = a[i], ai = a[i + 1], br = b[i], bi = b[i + 1];
      b[i] = static_cast<T>(ar * br - ai * bi);
      b[i + 1] = static_cast<T>(ai * br + ar * bi);
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * n);
}

}  // namespace

void orvbenchRegister() {
  using orvbench::addSized;
  const auto sizes = {std::int64_t{256}, std::int64_t{512}, std::int64_t{1024}};
  addSized("spectrum", "mulperm_32f_i", "orvspx", BM_orvsMulPerm_I<orv32f>, sizes);
  addSized("spectrum", "mulperm_32f_i", "plain", BM_loopMulPerm_I<orv32f>, sizes);
  addSized("spectrum", "mulperm_64f_i", "orvspx", BM_orvsMulPerm_I<orv64f>, sizes);
  addSized("spectrum", "mulperm_64f_i", "plain", BM_loopMulPerm_I<orv64f>, sizes);
}

ORVBENCH_MAIN()
