// FIR filtering of 65,536 samples with 16, 64 and 256 taps: the library's
// block forms (which take the FFT kernel for blocks longer than the
// transform), its direct kernel through the stateless form, a plain direct
// convolution loop, and liquid-dsp's firfilt objects when built with it.
#include "bench_common.hpp"

#include <complex>
#include <string>
#include <vector>

#include "orvspx.h"

#ifdef ORVBENCH_HAVE_LIQUID
#include <liquid/liquid.h>
#endif

namespace {

constexpr int kLen = 65536;
const int kTapCounts[] = {16, 64, 256};

std::string kernelName(const char* family, int taps) {
  return std::string("fir_") + family + "_" + std::to_string(taps) + "taps";
}

// A low-pass of n taps (a windowed sinc), as floats.
std::vector<float> lowPass(int n) {
  std::vector<float> h(n);
  const double pi = 3.14159265358979323846;
  for (int i = 0; i < n; ++i) {
    const double m = i - (n - 1) / 2.0;
    const double sinc = m == 0.0 ? 0.5 : std::sin(0.5 * pi * m) / (pi * m);
    h[i] = static_cast<float>(sinc * (0.54 - 0.46 * std::cos(2.0 * pi * i / (n - 1))));
  }
  return h;
}

std::vector<orv32fc> complexTaps(int n) {
  const auto h = lowPass(n);
  std::vector<orv32fc> c(n);
  for (int i = 0; i < n; ++i) c[i] = {h[i], 0.25f * h[i]};
  return c;
}

template <typename T>
std::vector<T> realSignal(T amp) {
  return orvbench::randomVector<T>(kLen, -amp, amp, 7);
}

std::vector<orv32fc> complexSignal() {
  const auto re = orvbench::randomVector<float>(kLen, -1.0f, 1.0f, 8);
  const auto im = orvbench::randomVector<float>(kLen, -1.0f, 1.0f, 9);
  std::vector<orv32fc> v(kLen);
  for (int i = 0; i < kLen; ++i) v[i] = {re[i], im[i]};
  return v;
}

// ---- The library ------------------------------------------------------------------

void registerLibrary(int n) {
  orvbench::add("fir", kernelName("32f", n), "orvspx", kLen, [n](benchmark::State& state) {
    const auto h = lowPass(n);
    const auto x = realSignal<float>(1.0f);
    std::vector<float> y(kLen);
    orvsFIRState* fir = nullptr;
    orvsFIRInitAlloc_32f(&fir, h.data(), n, nullptr);
    for (auto _ : state) {
      orvsFIR_32f(x.data(), y.data(), kLen, fir);
      benchmark::ClobberMemory();
    }
    orvsFIRFree_32f(fir);
  });
  orvbench::add("fir", kernelName("32f", n), "orvspx_direct", kLen,
                [n](benchmark::State& state) {
                  const auto h = lowPass(n);
                  const auto x = realSignal<float>(1.0f);
                  std::vector<float> y(kLen), d(2 * n);
                  int index = 0;
                  for (auto _ : state) {
                    orvsFIR_Direct_32f(x.data(), y.data(), kLen, h.data(), n, d.data(), &index);
                    benchmark::ClobberMemory();
                  }
                });
  orvbench::add("fir", kernelName("32f16s", n), "orvspx", kLen, [n](benchmark::State& state) {
    const auto h = lowPass(n);
    const auto x = realSignal<orv16s>(8000);
    std::vector<orv16s> y(kLen);
    orvsFIRState* fir = nullptr;
    orvsFIRInitAlloc32f_16s(&fir, h.data(), n, nullptr);
    for (auto _ : state) {
      orvsFIR32f_16s_Sfs(x.data(), y.data(), kLen, fir, 0);
      benchmark::ClobberMemory();
    }
    orvsFIRFree32f_16s(fir);
  });
  orvbench::add("fir", kernelName("32f16s", n), "orvspx_direct", kLen,
                [n](benchmark::State& state) {
                  const auto h = lowPass(n);
                  const auto x = realSignal<orv16s>(8000);
                  std::vector<orv16s> y(kLen), d(2 * n);
                  int index = 0;
                  for (auto _ : state) {
                    orvsFIR32f_Direct_16s_Sfs(x.data(), y.data(), kLen, h.data(), n, d.data(),
                                              &index, 0);
                    benchmark::ClobberMemory();
                  }
                });
  orvbench::add("fir", kernelName("32fc", n), "orvspx", kLen, [n](benchmark::State& state) {
    const auto h = complexTaps(n);
    const auto x = complexSignal();
    std::vector<orv32fc> y(kLen);
    orvsFIRState* fir = nullptr;
    orvsFIRInitAlloc_32fc(&fir, h.data(), n, nullptr);
    for (auto _ : state) {
      orvsFIR_32fc(x.data(), y.data(), kLen, fir);
      benchmark::ClobberMemory();
    }
    orvsFIRFree_32fc(fir);
  });
}

// ---- Plain direct convolution ---------------------------------------------------------

// y[n] = sum_j h[j] x[n-j] with zeros before the start, summed in double.
template <typename S, typename Out>
void plainFir(const std::vector<float>& h, const S* x, int len, Out store) {
  const int n = static_cast<int>(h.size());
  for (int i = 0; i < len; ++i) {
    double acc = 0.0;
    const int jMax = i + 1 < n ? i + 1 : n;
    for (int j = 0; j < jMax; ++j) acc += static_cast<double>(h[j]) * static_cast<double>(x[i - j]);
    store(i, acc);
  }
}

void registerPlain(int n) {
  orvbench::add("fir", kernelName("32f", n), "plain", kLen, [n](benchmark::State& state) {
    const auto h = lowPass(n);
    const auto x = realSignal<float>(1.0f);
    std::vector<float> y(kLen);
    for (auto _ : state) {
      plainFir(h, x.data(), kLen, [&](int i, double v) { y[i] = static_cast<float>(v); });
      benchmark::ClobberMemory();
    }
  });
  orvbench::add("fir", kernelName("32f16s", n), "plain", kLen, [n](benchmark::State& state) {
    const auto h = lowPass(n);
    const auto x = realSignal<orv16s>(8000);
    std::vector<orv16s> y(kLen);
    for (auto _ : state) {
      plainFir(h, x.data(), kLen, [&](int i, double v) {
        v = v > 32767.0 ? 32767.0 : (v < -32768.0 ? -32768.0 : v);
        y[i] = static_cast<orv16s>(v < 0 ? v - 0.5 : v + 0.5);
      });
      benchmark::ClobberMemory();
    }
  });
  orvbench::add("fir", kernelName("32fc", n), "plain", kLen, [n](benchmark::State& state) {
    const auto h = complexTaps(n);
    const auto x = complexSignal();
    std::vector<orv32fc> y(kLen);
    for (auto _ : state) {
      for (int i = 0; i < kLen; ++i) {
        double re = 0.0, im = 0.0;
        const int jMax = i + 1 < n ? i + 1 : n;
        for (int j = 0; j < jMax; ++j) {
          const double hr = h[j].re, hi = h[j].im, xr = x[i - j].re, xi = x[i - j].im;
          re += hr * xr - hi * xi;
          im += hr * xi + hi * xr;
        }
        y[i] = {static_cast<float>(re), static_cast<float>(im)};
      }
      benchmark::ClobberMemory();
    }
  });
}

// ---- liquid-dsp -----------------------------------------------------------------------

#ifdef ORVBENCH_HAVE_LIQUID
void registerLiquid(int n) {
  orvbench::add("fir", kernelName("32f", n), "liquid", kLen, [n](benchmark::State& state) {
    auto h = lowPass(n);
    auto x = realSignal<float>(1.0f);
    std::vector<float> y(kLen);
    firfilt_rrrf q = firfilt_rrrf_create(h.data(), static_cast<unsigned>(n));
    for (auto _ : state) {
      firfilt_rrrf_execute_block(q, x.data(), kLen, y.data());
      benchmark::ClobberMemory();
    }
    firfilt_rrrf_destroy(q);
  });
  // liquid's complex-sample filter with real taps (its crcf kind); the
  // library's filter has complex taps and does the larger product.
  orvbench::add("fir", kernelName("32fc", n), "liquid", kLen, [n](benchmark::State& state) {
    auto h = lowPass(n);
    const auto xs = complexSignal();
    std::vector<liquid_float_complex> x(kLen), y(kLen);
    for (int i = 0; i < kLen; ++i) x[i] = liquid_float_complex(xs[i].re, xs[i].im);
    firfilt_crcf q = firfilt_crcf_create(h.data(), static_cast<unsigned>(n));
    for (auto _ : state) {
      firfilt_crcf_execute_block(q, x.data(), kLen, y.data());
      benchmark::ClobberMemory();
    }
    firfilt_crcf_destroy(q);
  });
}
#endif

}  // namespace

void orvbenchRegister() {
  for (int n : kTapCounts) {
    registerLibrary(n);
    registerPlain(n);
#ifdef ORVBENCH_HAVE_LIQUID
    registerLiquid(n);
#endif
  }
}

ORVBENCH_MAIN()
