// Forward complex FFT of 32fc and 64fc data next to FFTW 3 (FFTW_MEASURE
// plans) and KissFFT, on the same data in the same run.
#include "bench_common.hpp"

#include <complex>
#include <random>
#include <vector>

#include "orvspx.h"

#if defined(ORVBENCH_HAVE_FFTW3F) && defined(ORVBENCH_HAVE_FFTW3)
#include <fftw3.h>
#endif
#if defined(ORVBENCH_HAVE_KISSFFT_FLOAT)
#include <kiss_fft.h>
#endif

namespace {

template <typename T>
std::vector<std::complex<T>> testSignal(int n) {
  std::mt19937 gen(2024);
  std::uniform_real_distribution<float> dist(-1.0f, 1.0f);
  std::vector<std::complex<T>> x(n);
  for (auto& v : x) v = std::complex<T>(dist(gen), dist(gen));
  return x;
}

void setCounters(benchmark::State& state, int n) {
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["order"] = double(state.range(0));
}

void BM_orvsFFTFwd_CToC_32fc(benchmark::State& state) {
  const int order = int(state.range(0)), n = 1 << order;
  orvsFFTContext* ctx = nullptr;
  if (orvsFFTInitAlloc_C_32fc(&ctx, order, orvScaleNone, 0) != orvOk) {
    state.SkipWithError("InitAlloc failed");
    return;
  }
  int bytes = 0;
  orvsFFTGetBufSize_C_32fc(ctx, &bytes);
  orv8u* work = bytes > 0 ? orvsMalloc_8u(bytes) : nullptr;
  auto x = testSignal<float>(n);
  std::vector<std::complex<float>> y(n);
  for (auto _ : state) {
    orvsFFTFwd_CToC_32fc(reinterpret_cast<const orv32fc*>(x.data()), reinterpret_cast<orv32fc*>(y.data()),
                         ctx, work);
    benchmark::ClobberMemory();
  }
  setCounters(state, n);
  orvsFree(work);
  orvsFFTFree_C_32fc(ctx);
}

void BM_orvsFFTFwd_CToC_64fc(benchmark::State& state) {
  const int order = int(state.range(0)), n = 1 << order;
  orvsFFTContext* ctx = nullptr;
  if (orvsFFTInitAlloc_C_64fc(&ctx, order, orvScaleNone, 0) != orvOk) {
    state.SkipWithError("InitAlloc failed");
    return;
  }
  int bytes = 0;
  orvsFFTGetBufSize_C_64fc(ctx, &bytes);
  orv8u* work = bytes > 0 ? orvsMalloc_8u(bytes) : nullptr;
  auto x = testSignal<double>(n);
  std::vector<std::complex<double>> y(n);
  for (auto _ : state) {
    orvsFFTFwd_CToC_64fc(reinterpret_cast<const orv64fc*>(x.data()), reinterpret_cast<orv64fc*>(y.data()),
                         ctx, work);
    benchmark::ClobberMemory();
  }
  setCounters(state, n);
  orvsFree(work);
  orvsFFTFree_C_64fc(ctx);
}

#if defined(ORVBENCH_HAVE_FFTW3F) && defined(ORVBENCH_HAVE_FFTW3)
void BM_fftwf_forward(benchmark::State& state) {
  const int n = 1 << state.range(0);
  auto* in = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  auto* out = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  fftwf_plan plan = fftwf_plan_dft_1d(n, in, out, FFTW_FORWARD, FFTW_MEASURE);
  auto x = testSignal<float>(n);
  for (int i = 0; i < n; ++i) {
    in[i][0] = x[i].real();
    in[i][1] = x[i].imag();
  }
  for (auto _ : state) {
    fftwf_execute(plan);
    benchmark::ClobberMemory();
  }
  setCounters(state, n);
  fftwf_destroy_plan(plan);
  fftwf_free(in);
  fftwf_free(out);
}

void BM_fftw_forward(benchmark::State& state) {
  const int n = 1 << state.range(0);
  auto* in = static_cast<fftw_complex*>(fftw_malloc(sizeof(fftw_complex) * n));
  auto* out = static_cast<fftw_complex*>(fftw_malloc(sizeof(fftw_complex) * n));
  fftw_plan plan = fftw_plan_dft_1d(n, in, out, FFTW_FORWARD, FFTW_MEASURE);
  auto x = testSignal<double>(n);
  for (int i = 0; i < n; ++i) {
    in[i][0] = x[i].real();
    in[i][1] = x[i].imag();
  }
  for (auto _ : state) {
    fftw_execute(plan);
    benchmark::ClobberMemory();
  }
  setCounters(state, n);
  fftw_destroy_plan(plan);
  fftw_free(in);
  fftw_free(out);
}
#endif

#if defined(ORVBENCH_HAVE_KISSFFT_FLOAT)
void BM_kissfft_forward(benchmark::State& state) {
  const int n = 1 << state.range(0);
  kiss_fft_cfg cfg = kiss_fft_alloc(n, 0, nullptr, nullptr);
  auto x = testSignal<float>(n);
  std::vector<kiss_fft_cpx> in(n), out(n);
  for (int i = 0; i < n; ++i) {
    in[i].r = x[i].real();
    in[i].i = x[i].imag();
  }
  for (auto _ : state) {
    kiss_fft(cfg, in.data(), out.data());
    benchmark::ClobberMemory();
  }
  setCounters(state, n);
  kiss_fft_free(cfg);
}
#endif

}  // namespace

void orvbenchRegister() {
  using orvbench::addWithArg;
  for (int order : {6, 8, 10, 11, 12, 13, 14, 15, 16, 20}) {
    const std::int64_t n = std::int64_t{1} << order;
    addWithArg("fft", "c2c_32fc", "orvspx", n, BM_orvsFFTFwd_CToC_32fc, order);
    addWithArg("fft", "c2c_64fc", "orvspx", n, BM_orvsFFTFwd_CToC_64fc, order);
#if defined(ORVBENCH_HAVE_FFTW3F) && defined(ORVBENCH_HAVE_FFTW3)
    addWithArg("fft", "c2c_32fc", "fftw", n, BM_fftwf_forward, order);
    addWithArg("fft", "c2c_64fc", "fftw", n, BM_fftw_forward, order);
#endif
#if defined(ORVBENCH_HAVE_KISSFFT_FLOAT)
    addWithArg("fft", "c2c_32fc", "kissfft", n, BM_kissfft_forward, order);
#endif
  }
}

ORVBENCH_MAIN()
