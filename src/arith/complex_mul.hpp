// Products of 32fc vectors: (a + bi)(c + di) with re = a*c - b*d and
// im = a*d + b*c formed in double from the exact products, each part rounded
// once to float. The plain loop states the computation; the vector loops do
// the same operations on several elements at once and give the same bits
// (re subtracts b*d from a*c, or adds its negation, which is the same IEEE
// operation; im adds the same two products; the fused loop rounds a product
// and a sum once where the plain loop rounds them one after the other, which
// complex_mul.cpp shows to be the same for products of floats).
#pragma once

#include <cstddef>

#include "core/cpu.hpp"
#include "orvspx.h"

namespace orv {
namespace arith {

// One element a pass.
void mul32fcPlain(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);
// One element a pass in SSE2 registers (every x86-64 processor has them).
void mul32fcSse2(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);
// Two elements a pass in AVX registers; only where the processor has AVX.
void mul32fcAvx(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);
// Two elements a pass in AVX registers, with one product of each part fused
// into the sum; only where the processor has AVX and FMA. From
// kMul32fcStreamingElements elements on, and for a dst aligned to 8 bytes,
// it writes with streaming stores, which do not first read the destination
// lines into the caches: the three vectors then take 12 MiB or more
// together, more than the caches would keep for the caller anyway.
constexpr std::ptrdiff_t kMul32fcStreamingElements = std::ptrdiff_t(1) << 19;
void mul32fcAvxFma(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);

// The fastest of the above that this processor runs. Each element is read
// before it is written, so dst may be x or y itself.
inline void mul32fc(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n) {
  if (cpu::hasAvxFma()) {
    mul32fcAvxFma(x, y, dst, n);
  } else if (cpu::hasAvx()) {
    mul32fcAvx(x, y, dst, n);
  } else {
    mul32fcSse2(x, y, dst, n);
  }
}

// Products of a 32fc vector and one complex value v = c + di: the same
// parts as above with y[i] = v for every i. The fused loop keeps c and d in
// registers and fuses the product a*c (re) and b*c (im) into the sum, which
// is exact for the reason given in complex_mul.cpp.
void mulC32fcPlain(const orv32fc* x, orv32fc v, orv32fc* dst, std::ptrdiff_t n);
// Two elements a pass; only where the processor has AVX and FMA.
void mulC32fcAvxFma(const orv32fc* x, orv32fc v, orv32fc* dst, std::ptrdiff_t n);

// The fastest of the two that this processor runs; dst may be x.
inline void mulC32fc(const orv32fc* x, orv32fc v, orv32fc* dst, std::ptrdiff_t n) {
  if (cpu::hasAvxFma()) {
    mulC32fcAvxFma(x, v, dst, n);
  } else {
    mulC32fcPlain(x, v, dst, n);
  }
}

// Products of 64fc vectors: re = a*c - b*d and im = b*c + a*d, each product
// rounded to double, then the sum. Both loops round every product and sum
// the same way, so they give the same bits; no multiply-add is fused, since
// a product of two doubles is not exact.
void mul64fcPlain(const orv64fc* x, const orv64fc* y, orv64fc* dst, std::ptrdiff_t n);
// Two elements a pass in AVX registers; only where the processor has AVX.
void mul64fcAvx(const orv64fc* x, const orv64fc* y, orv64fc* dst, std::ptrdiff_t n);

// The fastest of the two that this processor runs; dst may be x or y.
inline void mul64fc(const orv64fc* x, const orv64fc* y, orv64fc* dst, std::ptrdiff_t n) {
  if (cpu::hasAvx()) {
    mul64fcAvx(x, y, dst, n);
  } else {
    mul64fcPlain(x, y, dst, n);
  }
}

}  // namespace arith
}  // namespace orv
