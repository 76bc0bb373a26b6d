// Type conversion and complex deinterleaving next to plain loops and, when
// built with it, VOLK's conversions on the same buffers.
#include "bench_common.hpp"

#include <cmath>
#include <cstdint>
#include <random>

#include "orvspx.h"

#ifdef ORVBENCH_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

using orvbench::Buffer;

void fillSamples16s(orv16s* v, int n) {
  std::mt19937 gen(1);
  for (int i = 0; i < n; ++i) v[i] = static_cast<orv16s>(gen());
}

// Floats mostly inside the 16-bit range, some beyond it.
void fillSamples32f(orv32f* v, int n) {
  std::mt19937 gen(2);
  std::uniform_real_distribution<float> d(-40000.0f, 40000.0f);
  for (int i = 0; i < n; ++i) v[i] = d(gen);
}

template <typename S, typename D>
void setBytes(benchmark::State& state, int n) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * n * (sizeof(S) + sizeof(D)));
}

// ---- 16s to 32f -------------------------------------------------------------

void BM_orvsConvert_16s32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv16s> src(n);
  Buffer<orv32f> dst(n);
  fillSamples16s(src.p, n);
  for (auto _ : state) {
    orvsConvert_16s32f(src.p, dst.p, n);
    benchmark::ClobberMemory();
  }
  setBytes<orv16s, orv32f>(state, n);
}

void BM_loop_16s32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv16s> src(n);
  Buffer<orv32f> dst(n);
  fillSamples16s(src.p, n);
  for (auto _ : state) {
    benchmark::DoNotOptimize(src.p);
    for (int i = 0; i < n; ++i) dst.p[i] = static_cast<float>(src.p[i]);
    benchmark::ClobberMemory();
  }
  setBytes<orv16s, orv32f>(state, n);
}

// ---- 32f to 16s -------------------------------------------------------------

template <int rndMode>
void BM_orvsConvert_32f16s_Sfs(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32f> src(n);
  Buffer<orv16s> dst(n);
  fillSamples32f(src.p, n);
  for (auto _ : state) {
    orvsConvert_32f16s_Sfs(src.p, dst.p, n, rndMode, 0);
    benchmark::ClobberMemory();
  }
  setBytes<orv32f, orv16s>(state, n);
}

void BM_loop_32f16s_rint(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32f> src(n);
  Buffer<orv16s> dst(n);
  fillSamples32f(src.p, n);
  for (auto _ : state) {
    benchmark::DoNotOptimize(src.p);
    for (int i = 0; i < n; ++i) {
      float v = src.p[i];
      v = v > 32767.0f ? 32767.0f : v < -32768.0f ? -32768.0f : v;
      dst.p[i] = static_cast<orv16s>(std::lrintf(v));
    }
    benchmark::ClobberMemory();
  }
  setBytes<orv32f, orv16s>(state, n);
}

// ---- 32f to 64f -------------------------------------------------------------

void BM_orvsConvert_32f64f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32f> src(n);
  Buffer<orv64f> dst(n);
  fillSamples32f(src.p, n);
  for (auto _ : state) {
    orvsConvert_32f64f(src.p, dst.p, n);
    benchmark::ClobberMemory();
  }
  setBytes<orv32f, orv64f>(state, n);
}

void BM_loop_32f64f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32f> src(n);
  Buffer<orv64f> dst(n);
  fillSamples32f(src.p, n);
  for (auto _ : state) {
    benchmark::DoNotOptimize(src.p);
    for (int i = 0; i < n; ++i) dst.p[i] = src.p[i];
    benchmark::ClobberMemory();
  }
  setBytes<orv32f, orv64f>(state, n);
}

// ---- Complex to real and imaginary parts ------------------------------------

void BM_orvsCplxToReal_32fc(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32fc> src(n);
  Buffer<orv32f> re(n), im(n);
  fillSamples32f(reinterpret_cast<orv32f*>(src.p), 2 * n);
  for (auto _ : state) {
    orvsCplxToReal_32fc(src.p, re.p, im.p, n);
    benchmark::ClobberMemory();
  }
  setBytes<orv32fc, orv32fc>(state, n);
}

void BM_loop_CplxToReal_32fc(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32fc> src(n);
  Buffer<orv32f> re(n), im(n);
  fillSamples32f(reinterpret_cast<orv32f*>(src.p), 2 * n);
  for (auto _ : state) {
    benchmark::DoNotOptimize(src.p);
    for (int i = 0; i < n; ++i) {
      re.p[i] = src.p[i].re;
      im.p[i] = src.p[i].im;
    }
    benchmark::ClobberMemory();
  }
  setBytes<orv32fc, orv32fc>(state, n);
}


#ifdef ORVBENCH_HAVE_VOLK
void BM_volk_16i_s32f_convert_32f(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv16s> src(n);
  Buffer<orv32f> dst(n);
  fillSamples16s(src.p, n);
  for (auto _ : state) {
    volk_16i_s32f_convert_32f(dst.p, src.p, 1.0f, static_cast<unsigned>(n));
    benchmark::ClobberMemory();
  }
  setBytes<orv16s, orv32f>(state, n);
}

void BM_volk_32f_s32f_convert_16i(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<orv32f> src(n);
  Buffer<orv16s> dst(n);
  fillSamples32f(src.p, n);
  for (auto _ : state) {
    volk_32f_s32f_convert_16i(dst.p, src.p, 1.0f, static_cast<unsigned>(n));
    benchmark::ClobberMemory();
  }
  setBytes<orv32f, orv16s>(state, n);
}

void BM_volk_32fc_deinterleave_32f_x2(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Buffer<lv_32fc_t> src(n);
  Buffer<orv32f> re(n), im(n);
  fillSamples32f(reinterpret_cast<orv32f*>(src.p), 2 * n);
  for (auto _ : state) {
    volk_32fc_deinterleave_32f_x2(re.p, im.p, src.p, static_cast<unsigned>(n));
    benchmark::ClobberMemory();
  }
  setBytes<orv32fc, orv32fc>(state, n);
}

#endif

}  // namespace

void orvbenchRegister() {
  using orvbench::addSized;
  const auto sizes = {std::int64_t{1024}, std::int64_t{1} << 20};
  addSized("elementwise", "convert_16s32f", "orvspx", BM_orvsConvert_16s32f, sizes);
  addSized("elementwise", "convert_16s32f", "plain", BM_loop_16s32f, sizes);
  addSized("elementwise", "convert_32f16s_near", "orvspx", BM_orvsConvert_32f16s_Sfs<orvRndNear>, sizes);
  addSized("elementwise", "convert_32f16s_near", "plain", BM_loop_32f16s_rint, sizes);
  addSized("elementwise", "convert_32f16s_zero", "orvspx", BM_orvsConvert_32f16s_Sfs<orvRndZero>, sizes);
  addSized("elementwise", "convert_32f64f", "orvspx", BM_orvsConvert_32f64f, sizes);
  addSized("elementwise", "convert_32f64f", "plain", BM_loop_32f64f, sizes);
  addSized("elementwise", "cplxtoreal_32fc", "orvspx", BM_orvsCplxToReal_32fc, sizes);
  addSized("elementwise", "cplxtoreal_32fc", "plain", BM_loop_CplxToReal_32fc, sizes);
#ifdef ORVBENCH_HAVE_VOLK
  addSized("elementwise", "convert_16s32f", "volk", BM_volk_16i_s32f_convert_32f, sizes);
  addSized("elementwise", "convert_32f16s_near", "volk", BM_volk_32f_s32f_convert_16i, sizes);
  addSized("elementwise", "convert_32f16s_zero", "volk", BM_volk_32f_s32f_convert_16i, sizes);
  addSized("elementwise", "cplxtoreal_32fc", "volk", BM_volk_32fc_deinterleave_32f_x2, sizes);
#endif
}

ORVBENCH_MAIN()
