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

}  // namespace arith
}  // namespace orv
