// Forward real FFT into Perm, 32f and 64f, next to FFTW's r2c plans
// (FFTW_MEASURE) and KissFFT's real transform (float) on the same data in
// the same run, orders 8 to 20.
#include <memory>
#include <vector>

#include "bench_common.hpp"
#include "orvspx.h"

#if defined(ORVBENCH_HAVE_FFTW3F) || defined(ORVBENCH_HAVE_FFTW3)
#include <fftw3.h>
#endif
#if defined(ORVBENCH_HAVE_KISSFFT_FLOAT)
#include <kiss_fftr.h>
#endif

namespace {

// A context, its work buffer and the data of one case, kept alive by the
// registered closure.
template <typename T>
struct OrvCase {
  orvsFFTContext* ctx = nullptr;
  orv8u* work = nullptr;
  std::vector<T> src, dst;
  ~OrvCase() {
    orvsFree(work);
    if (ctx == nullptr) return;
    if (sizeof(T) == 4) orvsFFTFree_R_32f(ctx);
    else orvsFFTFree_R_64f(ctx);
  }
};

void registerOrv32(int order) {
  const int n = 1 << order;
  auto c = std::make_shared<OrvCase<orv32f>>();
  if (orvsFFTInitAlloc_R_32f(&c->ctx, order, orvScaleNone, 0) != orvOk) return;
  int bytes = 0;
  orvsFFTGetBufSize_R_32f(c->ctx, &bytes);
  if (bytes > 0) c->work = orvsMalloc_8u(bytes);
  c->src = orvbench::randomVector<orv32f>(n, -1.f, 1.f);
  c->dst.resize(n);
  orvbench::add("fft", "r2c_32f", "orvspx", n, [c, n](benchmark::State& s) {
    for (auto _ : s) {
      orvsFFTFwd_RToPerm_32f(c->src.data(), c->dst.data(), c->ctx, c->work);
      benchmark::ClobberMemory();
    }
  });
}

void registerOrv64(int order) {
  const int n = 1 << order;
  auto c = std::make_shared<OrvCase<orv64f>>();
  if (orvsFFTInitAlloc_R_64f(&c->ctx, order, orvScaleNone, 0) != orvOk) return;
  int bytes = 0;
  orvsFFTGetBufSize_R_64f(c->ctx, &bytes);
  if (bytes > 0) c->work = orvsMalloc_8u(bytes);
  c->src = orvbench::randomVector<orv64f>(n, -1., 1.);
  c->dst.resize(n);
  orvbench::add("fft", "r2c_64f", "orvspx", n, [c, n](benchmark::State& s) {
    for (auto _ : s) {
      orvsFFTFwd_RToPerm_64f(c->src.data(), c->dst.data(), c->ctx, c->work);
      benchmark::ClobberMemory();
    }
  });
}

#if defined(ORVBENCH_HAVE_FFTW3F)
// Plans are made when the case first runs, so that FFTW_MEASURE's trials
// happen only for the cases selected by a filter.
void registerFftw32(int order) {
  const int n = 1 << order;
  orvbench::add("fft", "r2c_32f", "fftw", n, [n](benchmark::State& s) {
    float* in = fftwf_alloc_real(std::size_t(n));
    fftwf_complex* out = fftwf_alloc_complex(std::size_t(n / 2 + 1));
    fftwf_plan plan = fftwf_plan_dft_r2c_1d(n, in, out, FFTW_MEASURE);
    const auto x = orvbench::randomVector<float>(std::size_t(n), -1.f, 1.f);
    for (int i = 0; i < n; ++i) in[i] = x[std::size_t(i)];
    for (auto _ : s) {
      fftwf_execute(plan);
      benchmark::ClobberMemory();
    }
    fftwf_destroy_plan(plan);
    fftwf_free(out);
    fftwf_free(in);
  });
}
#endif

#if defined(ORVBENCH_HAVE_FFTW3)
void registerFftw64(int order) {
  const int n = 1 << order;
  orvbench::add("fft", "r2c_64f", "fftw", n, [n](benchmark::State& s) {
    double* in = fftw_alloc_real(std::size_t(n));
    fftw_complex* out = fftw_alloc_complex(std::size_t(n / 2 + 1));
    fftw_plan plan = fftw_plan_dft_r2c_1d(n, in, out, FFTW_MEASURE);
    const auto x = orvbench::randomVector<double>(std::size_t(n), -1., 1.);
    for (int i = 0; i < n; ++i) in[i] = x[std::size_t(i)];
    for (auto _ : s) {
      fftw_execute(plan);
      benchmark::ClobberMemory();
    }
    fftw_destroy_plan(plan);
    fftw_free(out);
    fftw_free(in);
  });
}
#endif

#if defined(ORVBENCH_HAVE_KISSFFT_FLOAT)
void registerKiss32(int order) {
  const int n = 1 << order;
  orvbench::add("fft", "r2c_32f", "kissfft", n, [n](benchmark::State& s) {
    kiss_fftr_cfg cfg = kiss_fftr_alloc(n, 0, nullptr, nullptr);
    const auto in = orvbench::randomVector<float>(std::size_t(n), -1.f, 1.f);
    std::vector<kiss_fft_cpx> out(std::size_t(n / 2 + 1));
    for (auto _ : s) {
      kiss_fftr(cfg, in.data(), out.data());
      benchmark::ClobberMemory();
    }
    kiss_fftr_free(cfg);
  });
}
#endif

}  // namespace

void orvbenchRegister() {
  for (int order = 8; order <= 20; ++order) {
    registerOrv32(order);
#if defined(ORVBENCH_HAVE_FFTW3F)
    registerFftw32(order);
#endif
#if defined(ORVBENCH_HAVE_KISSFFT_FLOAT)
    registerKiss32(order);
#endif
  }
  for (int order = 8; order <= 20; ++order) {
    registerOrv64(order);
#if defined(ORVBENCH_HAVE_FFTW3)
    registerFftw64(order);
#endif
  }
}

ORVBENCH_MAIN()
