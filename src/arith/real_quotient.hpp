// Quotients of real floating vectors, dividend / divisor element by element.
// A divisor that is zero (of either sign) or NaN gives a fixed pattern chosen
// by the dividend and makes the call end with orvWarnDivByZero; any other
// divisor gives the double quotient rounded once to the element type.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.hpp"
#include "arith/shortcuts.hpp"
#include "core/internal.hpp"
#include "orvspx.h"

namespace orv {
namespace arith {

template <typename T>
struct FloatBits;

template <>
struct FloatBits<orv32f> {
  static constexpr std::uint32_t kNaN = 0xffc00000u;
  static constexpr std::uint32_t kPlusInf = 0x7f800000u;
  static constexpr std::uint32_t kMinusInf = 0xff800000u;
};

template <>
struct FloatBits<orv64f> {
  static constexpr std::uint64_t kNaN = 0xfff8000000000000u;
  static constexpr std::uint64_t kPlusInf = 0x7ff0000000000000u;
  static constexpr std::uint64_t kMinusInf = 0xfff0000000000000u;
};

// The result for a zero divisor, chosen by the dividend (or the numerator
// of a complex quotient): 0 or NaN gives the NaN constant, a positive value
// +infinity, a negative one -infinity.
template <typename T>
inline T byZeroDivisor(double v) {
  using B = FloatBits<T>;
  if (zeroOrNaN(v)) return bitCast<T>(B::kNaN);
  return bitCast<T>(v > 0 ? B::kPlusInf : B::kMinusInf);
}

// One element a pass. dst may be the divisor or the dividend itself.
template <typename T>
orvStatus quotientsPlain(const T* divisor, const T* dividend, T* dst, std::ptrdiff_t n) {
  orvStatus status = orvOk;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const double b = divisor[i];
    const double a = dividend[i];
    if (zeroOrNaN(b)) {
      status = orvWarnDivByZero;
      dst[i] = byZeroDivisor<T>(a);
    } else {
      dst[i] = static_cast<T>(a / b);
    }
  }
  return status;
}

// 32f quotients on several elements at once, with the results and status of
// quotientsPlain: four a pass in SSE2 registers (every x86-64 processor has
// them), eight a pass in AVX registers (only where the processor has AVX).
orvStatus quotients32fSse2(const orv32f* divisor, const orv32f* dividend, orv32f* dst, std::ptrdiff_t n);
orvStatus quotients32fAvx(const orv32f* divisor, const orv32f* dividend, orv32f* dst, std::ptrdiff_t n);

// The fastest of the above that this processor runs.
inline orvStatus quotients32f(const orv32f* divisor, const orv32f* dividend, orv32f* dst, std::ptrdiff_t n) {
  return cpu::hasAvx() ? quotients32fAvx(divisor, dividend, dst, n)
                           : quotients32fSse2(divisor, dividend, dst, n);
}

}  // namespace arith
}  // namespace orv
