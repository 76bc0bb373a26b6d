// What the processor running the library offers, asked once per feature.
// Kernels written for newer instruction sets are compiled per function
// (target attributes) and chosen at run time through these answers only.
// On x86 the answers include the operating system's support for the wider
// registers, so a kernel chosen by them always runs; elsewhere they are all
// false and the plain kernels run.
#pragma once

namespace orv {
namespace cpu {

#if defined(__x86_64__) || defined(__i386__)
inline bool hasAvx() {
  static const bool has = __builtin_cpu_supports("avx");
  return has;
}

inline bool hasAvx2() {
  static const bool has = __builtin_cpu_supports("avx2");
  return has;
}

// AVX with the fused multiply-add instructions.
inline bool hasAvxFma() {
  static const bool has = __builtin_cpu_supports("avx") && __builtin_cpu_supports("fma");
  return has;
}

inline bool hasAvx512f() {
  static const bool has = __builtin_cpu_supports("avx512f");
  return has;
}
#else
inline bool hasAvx() { return false; }
inline bool hasAvx2() { return false; }
inline bool hasAvxFma() { return false; }
inline bool hasAvx512f() { return false; }
#endif

}  // namespace cpu
}  // namespace orv
