// Products of 32fc vectors: (a + bi)(c + di) with re = a*c - b*d and
// im = a*d + b*c formed in double from the exact products, each part rounded
// once to float. The plain loop states the computation; the vector loops do
// the same operations on several elements at once and give the same bits
// (re subtracts b*d from a*c, or adds its negation, which is the same IEEE
// operation; im adds the same two products).
#pragma once

#include <cstddef>

#include "orvspx.h"

namespace orv {
namespace arith {

// One element a pass.
void mul32fcPlain(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);
// One element a pass in SSE2 registers (every x86-64 processor has them).
void mul32fcSse2(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);
// Two elements a pass in AVX registers; only where the processor has AVX.
void mul32fcAvx(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n);
bool processorHasAvx();

// The fastest of the above that this processor runs. Each element is read
// before it is written, so dst may be x or y itself.
inline void mul32fc(const orv32fc* x, const orv32fc* y, orv32fc* dst, std::ptrdiff_t n) {
  if (processorHasAvx()) {
    mul32fcAvx(x, y, dst, n);
  } else {
    mul32fcSse2(x, y, dst, n);
  }
}

}  // namespace arith
}  // namespace orv
