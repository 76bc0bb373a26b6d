// Addition and subtraction next to plain -O3 loops doing the same
// arithmetic: a float sum, and saturating (rounded, for scale 1) integer
// sums and differences.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench_common.hpp"
#include "orvspx.h"

namespace {

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

// ---- Cases ------------------------------------------------------------------

void registerSize(int n) {
  using orvbench::add;
  auto fa = std::make_shared<std::vector<float>>(orvbench::randomVector<float>(n, -1000.f, 1000.f, 1));
  auto fb = std::make_shared<std::vector<float>>(orvbench::randomVector<float>(n, -1000.f, 1000.f, 2));
  auto fd = std::make_shared<std::vector<float>>(n);
  auto sa = std::make_shared<std::vector<orv16s>>(orvbench::randomVector<orv16s>(n, -32768, 32767, 3));
  auto sb = std::make_shared<std::vector<orv16s>>(orvbench::randomVector<orv16s>(n, -32768, 32767, 4));
  auto sd = std::make_shared<std::vector<orv16s>>(n);
  auto bytes = std::make_shared<std::vector<orv8u>>(orvbench::randomVector<orv8u>(n, 0, 255, 5));
  auto ia = std::make_shared<std::vector<orv32s>>(orvbench::randomVector<orv32s>(2 * n, INT32_MIN, INT32_MAX, 6));
  auto ib = std::make_shared<std::vector<orv32s>>(orvbench::randomVector<orv32s>(2 * n, INT32_MIN, INT32_MAX, 7));
  auto id = std::make_shared<std::vector<orv32s>>(2 * n);

  add("elementwise", "add_32f", "orvspx", n, [=](benchmark::State& st) {
    for (auto _ : st) {
      orvsAdd_32f(fa->data(), fb->data(), fd->data(), n);
      benchmark::ClobberMemory();
    }
  });
  add("elementwise", "add_32f", "plain", n, [=](benchmark::State& st) {
    for (auto _ : st) {
      plainAdd32f(fa->data(), fb->data(), fd->data(), n);
      benchmark::ClobberMemory();
    }
  });
  for (int s : {0, 1}) {
    const std::string sfs = std::to_string(s);
    add("elementwise", "add_16s_sfs" + sfs, "orvspx", n, [=](benchmark::State& st) {
      for (auto _ : st) {
        orvsAdd_16s_Sfs(sa->data(), sb->data(), sd->data(), n, s);
        benchmark::ClobberMemory();
      }
    });
    add("elementwise", "add_16s_sfs" + sfs, "plain", n, [=](benchmark::State& st) {
      for (auto _ : st) {
        plainAdd16sSat(sa->data(), sb->data(), sd->data(), n, s);
        benchmark::ClobberMemory();
      }
    });
    add("elementwise", "addc_8u_isfs" + sfs, "orvspx", n, [=](benchmark::State& st) {
      for (auto _ : st) {
        orvsAddC_8u_ISfs(3, bytes->data(), n, s);
        benchmark::ClobberMemory();
      }
    });
    add("elementwise", "addc_8u_isfs" + sfs, "plain", n, [=](benchmark::State& st) {
      for (auto _ : st) {
        plainAddC8uSatI(3, bytes->data(), n, s);
        benchmark::ClobberMemory();
      }
    });
    add("elementwise", "sub_32sc_sfs" + sfs, "orvspx", n, [=](benchmark::State& st) {
      for (auto _ : st) {
        orvsSub_32sc_Sfs(reinterpret_cast<const orv32sc*>(ia->data()), reinterpret_cast<const orv32sc*>(ib->data()),
                         reinterpret_cast<orv32sc*>(id->data()), n, s);
        benchmark::ClobberMemory();
      }
    });
    add("elementwise", "sub_32sc_sfs" + sfs, "plain", n, [=](benchmark::State& st) {
      for (auto _ : st) {
        plainSub32scSat(ia->data(), ib->data(), id->data(), n, s);
        benchmark::ClobberMemory();
      }
    });
  }
}

}  // namespace

void orvbenchRegister() {
  for (int n : {1024, 1 << 20}) registerSize(n);
}

ORVBENCH_MAIN()
