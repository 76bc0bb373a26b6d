// Element-wise products and quotients next to plain -O3 loops and VOLK's
// kernels (which pick their best implementation at run time).
#include <memory>

#include "bench_common.hpp"
#include "orvspx.h"

#ifdef ORVBENCH_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

template <typename T>
using Shared = std::shared_ptr<std::vector<T>>;

template <typename T>
Shared<T> shared(std::vector<T> v) {
  return std::make_shared<std::vector<T>>(std::move(v));
}

// Complex vectors as interleaved float pairs.
Shared<orv32fc> randomComplex(int n, unsigned seed) {
  const auto parts = orvbench::randomVector<float>(2 * std::size_t(n), -1.f, 1.f, seed);
  std::vector<orv32fc> v(n);
  for (int i = 0; i < n; ++i) v[i] = {parts[2 * i], parts[2 * i + 1]};
  return shared(std::move(v));
}

void registerSize(int n) {
  using orvbench::add;
  const auto a = shared(orvbench::randomVector<float>(n, -1.f, 1.f, 1));
  const auto b = shared(orvbench::randomVector<float>(n, 0.5f, 2.f, 2));
  const auto d = shared(std::vector<float>(n));
  const auto ca = randomComplex(n, 3), cb = randomComplex(n, 4);
  const auto cd = shared(std::vector<orv32fc>(n));
  const auto sa = shared(orvbench::randomVector<orv16s>(n, -32768, 32767, 5));
  const auto sb = shared(orvbench::randomVector<orv16s>(n, -32768, 32767, 6));
  const auto sd = shared(std::vector<orv16s>(n));

  // ---- mul_32f
  add("elementwise", "mul_32f", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsMul_32f(a->data(), b->data(), d->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "mul_32f", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      const float* x = a->data();
      const float* y = b->data();
      float* z = d->data();
      for (int i = 0; i < n; ++i) z[i] = x[i] * y[i];
      benchmark::ClobberMemory();
    }
  });
#ifdef ORVBENCH_HAVE_VOLK
  add("elementwise", "mul_32f", "volk", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      volk_32f_x2_multiply_32f(d->data(), a->data(), b->data(), unsigned(n));
      benchmark::ClobberMemory();
    }
  });
#endif

  // ---- mul_32fc
  add("elementwise", "mul_32fc", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsMul_32fc(ca->data(), cb->data(), cd->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "mul_32fc", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      const orv32fc* x = ca->data();
      const orv32fc* y = cb->data();
      orv32fc* z = cd->data();
      for (int i = 0; i < n; ++i) {
        const double p = x[i].re, q = x[i].im, r = y[i].re, t = y[i].im;
        z[i].re = static_cast<float>(p * r - q * t);
        z[i].im = static_cast<float>(p * t + q * r);
      }
      benchmark::ClobberMemory();
    }
  });
#ifdef ORVBENCH_HAVE_VOLK
  add("elementwise", "mul_32fc", "volk", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      volk_32fc_x2_multiply_32fc(reinterpret_cast<lv_32fc_t*>(cd->data()),
                                 reinterpret_cast<const lv_32fc_t*>(ca->data()),
                                 reinterpret_cast<const lv_32fc_t*>(cb->data()), unsigned(n));
      benchmark::ClobberMemory();
    }
  });
#endif

  // ---- mulc_32fc
  const orv32fc cv{0.6f, -0.8f};
  add("elementwise", "mulc_32fc", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsMulC_32fc(ca->data(), cv, cd->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "mulc_32fc", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      const orv32fc* x = ca->data();
      orv32fc* z = cd->data();
      const double r = cv.re, t = cv.im;
      for (int i = 0; i < n; ++i) {
        const double p = x[i].re, q = x[i].im;
        z[i].re = static_cast<float>(p * r - q * t);
        z[i].im = static_cast<float>(p * t + q * r);
      }
      benchmark::ClobberMemory();
    }
  });
#ifdef ORVBENCH_HAVE_VOLK
  add("elementwise", "mulc_32fc", "volk", n, [=](benchmark::State& s) {
    const lv_32fc_t scalar(cv.re, cv.im);
    for (auto _ : s) {
      volk_32fc_s32fc_multiply_32fc(reinterpret_cast<lv_32fc_t*>(cd->data()),
                                    reinterpret_cast<const lv_32fc_t*>(ca->data()), scalar, unsigned(n));
      benchmark::ClobberMemory();
    }
  });
#endif

  // ---- mul_16s_sfs
  add("elementwise", "mul_16s_sfs", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsMul_16s_Sfs(sa->data(), sb->data(), sd->data(), n, 15);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "mul_16s_sfs", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      const orv16s* x = sa->data();
      const orv16s* y = sb->data();
      orv16s* z = sd->data();
      for (int i = 0; i < n; ++i) {
        const int t = x[i] * y[i];
        int u = (t + (1 << 14) - 1 + ((t >> 15) & 1)) >> 15;
        u = u > 32767 ? 32767 : (u < -32768 ? -32768 : u);
        z[i] = static_cast<orv16s>(u);
      }
      benchmark::ClobberMemory();
    }
  });

  // ---- div_32f
  add("elementwise", "div_32f", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsDiv_32f(b->data(), a->data(), d->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "div_32f", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      const float* x = a->data();
      const float* y = b->data();
      float* z = d->data();
      for (int i = 0; i < n; ++i) z[i] = x[i] / y[i];
      benchmark::ClobberMemory();
    }
  });
#ifdef ORVBENCH_HAVE_VOLK
  add("elementwise", "div_32f", "volk", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      volk_32f_x2_divide_32f(d->data(), a->data(), b->data(), unsigned(n));
      benchmark::ClobberMemory();
    }
  });
#endif

  // ---- divc_16s_sfs
  add("elementwise", "divc_16s_sfs", "orvspx", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      orvsDivC_16s_Sfs(sa->data(), 7, sd->data(), n, 1);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "divc_16s_sfs", "plain", n, [=](benchmark::State& s) {
    for (auto _ : s) {
      const orv16s* x = sa->data();
      orv16s* z = sd->data();
      const double r = (1.0 / 7) * 0.5;
      for (int i = 0; i < n; ++i) {
        const double y = x[i] * r;
        z[i] = static_cast<orv16s>(static_cast<int>(y > 0 ? y + 0.5 : y - 0.5));
      }
      benchmark::ClobberMemory();
    }
  });
}

}  // namespace

void orvbenchRegister() {
  for (int n : {1024, 1 << 20}) registerSize(n);
}

ORVBENCH_MAIN()
