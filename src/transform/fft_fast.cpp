// AVX versions of the interleaved FFT kernels, of the bit-reversed
// reordering and of the real FFT's unpacking pass. A register holds two
// complex values as [re0 im0 re1 im1] in double (or four reals of one kind);
// float data are widened on loading and rounded on storing, as the plain
// kernels do. Every lane does exactly the double operations of the plain code
// in the same order (a complex product is two rounded products and one
// rounded sum or difference), so the results are bit-identical to the plain
// templates.
#include <immintrin.h>

#include <atomic>

#include "core/cpu.hpp"
#include "transform/fft_internal.hpp"

// Everything that touches vector registers is compiled for AVX (and FMA) and
// reached only through the plain wrappers at the end, after the processor
// check: the level kAvx runs the kernels without FMA instructions, kAvxFma
// the same kernels with them.
#pragma GCC push_options
#pragma GCC target("avx,fma")
#define ORV_AVX
#define ORV_AVX_INLINE __attribute__((always_inline)) inline

namespace orv {
namespace fft {
namespace fast {

namespace avx {
namespace {
constexpr bool kFma = false;
#include "transform/fft_fast_kernels.inc"
}  // namespace
}  // namespace avx

namespace avxfma {
namespace {
constexpr bool kFma = true;
#include "transform/fft_fast_kernels.inc"
}  // namespace
}  // namespace avxfma
#pragma GCC pop_options

namespace {

int processorLevel() {
  if (cpu::hasAvxFma()) return kAvxFma;
  return cpu::hasAvx() ? kAvx : kPlain;
}

bool withFma() { return level() >= kAvxFma; }

std::atomic<int> gLevelCap{kTop};

}  // namespace

int level() {
  static const int has = processorLevel();
  const int cap = gLevelCap.load(std::memory_order_relaxed);
  return has < cap ? has : cap;
}

void limitLevel(int cap) { gLevelCap.store(cap, std::memory_order_relaxed); }

template <typename T>
bool reorder(const T* src, T* dst, int order) {
  if (order < 4 || !available()) return false;
  if (sizeof(T) == 4) avx::reverseAvx<avx::Rows8>(src, dst, order);
  else avx::reverseAvx<avx::Rows16>(src, dst, order);
  return true;
}

template <typename T>
std::size_t unpackForward(T* x, std::size_t h, const T* tab) {
  return available() ? avx::unpackAvx(x, h, tab) : 1;
}

template <bool Inv, typename T>
void leafInterleaved(T* x, int order, const T* tab, const double* last) {
  if (withFma()) avxfma::leafAvx<Inv>(x, order, tab, last);
  else avx::leafAvx<Inv>(x, order, tab, last);
}

template <bool Inv, typename T>
void blockedPass(T* x, std::size_t n, std::size_t span, const T* pass, std::size_t stripe) {
  if (withFma()) avxfma::blockedPassAvx<Inv>(x, n, span, pass, stripe);
  else avx::blockedPassAvx<Inv>(x, n, span, pass, stripe);
}

template <bool Inv, typename T>
void columnGroup(T* x, std::size_t /* rows, 2^s */, std::size_t cols, std::size_t c, const T* step, int s,
                 const T* tab, T* work) {
  if (withFma()) avxfma::columnsAvx<Inv>(x, cols, c, step, s, tab, work);
  else avx::columnsAvx<Inv>(x, cols, c, step, s, tab, work);
}

template void leafInterleaved<false, float>(float*, int, const float*, const double*);
template void leafInterleaved<true, float>(float*, int, const float*, const double*);
template void leafInterleaved<false, double>(double*, int, const double*, const double*);
template void leafInterleaved<true, double>(double*, int, const double*, const double*);
template void blockedPass<false, float>(float*, std::size_t, std::size_t, const float*, std::size_t);
template void blockedPass<true, float>(float*, std::size_t, std::size_t, const float*, std::size_t);
template void blockedPass<false, double>(double*, std::size_t, std::size_t, const double*, std::size_t);
template void blockedPass<true, double>(double*, std::size_t, std::size_t, const double*, std::size_t);
template void columnGroup<false, float>(float*, std::size_t, std::size_t, std::size_t, const float*, int,
                                       const float*, float*);
template void columnGroup<true, float>(float*, std::size_t, std::size_t, std::size_t, const float*, int,
                                      const float*, float*);
template void columnGroup<false, double>(double*, std::size_t, std::size_t, std::size_t, const double*, int,
                                        const double*, double*);
template void columnGroup<true, double>(double*, std::size_t, std::size_t, std::size_t, const double*, int,
                                       const double*, double*);
template <typename T>
std::size_t packInverse(const T* src, T* dst, std::size_t h, const T* tab) {
  return available() ? avx::packAvx(src, dst, h, tab) : 1;
}

template bool reorder<float>(const float*, float*, int);
template bool reorder<double>(const double*, double*, int);
template std::size_t unpackForward<float>(float*, std::size_t, const float*);
template std::size_t unpackForward<double>(double*, std::size_t, const double*);
template std::size_t packInverse<float>(const float*, float*, std::size_t, const float*);
template std::size_t packInverse<double>(const double*, double*, std::size_t, const double*);

}  // namespace fast
}  // namespace fft
}  // namespace orv
