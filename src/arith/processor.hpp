// What the processor running the library offers, asked once per feature.
// The answers include the operating system's support for the wider
// registers, so a kernel chosen by them always runs.
#pragma once

namespace orv {
namespace arith {

inline bool processorHasAvx() {
  static const bool has = __builtin_cpu_supports("avx");
  return has;
}

// AVX with the fused multiply-add instructions.
inline bool processorHasAvxFma() {
  static const bool has = __builtin_cpu_supports("avx") && __builtin_cpu_supports("fma");
  return has;
}

}  // namespace arith
}  // namespace orv
