// Conversion between element types: widening to floating point (exact, or
// rounded by the current mode where the target has fewer bits), the scaled
// integer-to-float forms, the saturating narrowing of double to float, and
// the float-to-integer forms with their rounding mode, scale and limits.
#include <cfloat>
#include <cstdint>

#include "core/float_to_int.hpp"
#include "core/internal.hpp"
#include "vector/convert_kernels.hpp"

namespace orv {
namespace {

// ---- Widening ---------------------------------------------------------------

// 8-bit sources are looked up in one table of the values -128 to 255,
// addressed through its entry for 0 so that signed and unsigned indices land
// on the same entries.
struct SmallIntegerTable {
  orv32f value[384];
  constexpr SmallIntegerTable() : value() {
    for (int i = 0; i < 384; ++i) value[i] = static_cast<orv32f>(i - 128);
  }
};
constexpr SmallIntegerTable kSmallIntegers{};
constexpr const orv32f* kSmallIntegerAtZero = kSmallIntegers.value + 128;

template <typename S>
orvStatus lookUpKernel(const S* src, orv32f* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  for (int i = 0; i < len; ++i) dst[i] = kSmallIntegerAtZero[static_cast<int>(src[i])];
  return orvOk;
}

// A plain conversion of each element. Integer sources to orv32f round by the
// current rounding mode where the value has more than 24 significant bits;
// every other pairing here is exact.
template <typename S, typename D>
orvStatus widenKernel(const S* src, D* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  for (int i = 0; i < len; ++i) dst[i] = static_cast<D>(src[i]);
  return orvOk;
}

// ---- Integer to floating point with a scale ---------------------------------

// The scale range of one scaled integer-to-float form: the factor 2^-s stays
// a normal number and the product stays finite. A scale outside acts like
// the nearest end of the range.
struct ScaleRange {
  int lowest;
  int highest;
};

inline int clampScale(int s, ScaleRange r) { return s < r.lowest ? r.lowest : s > r.highest ? r.highest : s; }

// 2^-s from its exponent bits, for a scale already in range.
inline orv32f factorFromBits32f(int s) {
  return bitCast<orv32f>(static_cast<std::uint32_t>(127 - s) << 23);
}
inline orv64f factorFromBits64f(int s) {
  return bitCast<orv64f>(static_cast<std::uint64_t>(static_cast<std::uint32_t>(1023 - s) << 20) << 32);
}

// Each element times the factor, in double, rounded once when stored. The
// product of an integer of at most 32 bits and a power of two is exact in
// double, so a 64-bit result is exact and a 32-bit one is rounded once by the
// current mode.
template <typename S, typename D>
void scaleLoop(const S* src, D* dst, int len, double factor) {
  for (int i = 0; i < len; ++i) dst[i] = static_cast<D>(static_cast<double>(src[i]) * factor);
}

template <typename S>
orvStatus scaledTo32fKernel(const S* src, orv32f* dst, int len, int scaleFactor, ScaleRange range) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (scaleFactor == 0) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<orv32f>(src[i]);
  } else {
    scaleLoop(src, dst, len, factorFromBits32f(clampScale(scaleFactor, range)));
  }
  return orvOk;
}

template <typename S>
orvStatus scaledTo64fKernel(const S* src, orv64f* dst, int len, int scaleFactor, ScaleRange range) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (scaleFactor == 0) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<orv64f>(src[i]);
  } else {
    scaleLoop(src, dst, len, factorFromBits64f(clampScale(scaleFactor, range)));
  }
  return orvOk;
}

// ---- Double to float --------------------------------------------------------

// Saturates to the finite orv32f range (NaN to the negative end) and rounds
// what is inside by the current mode: no infinity and no NaN comes out.
orvStatus narrow64f32fKernel(const orv64f* src, orv32f* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  const double kLargest = static_cast<double>(FLT_MAX);  // 3.4028234663852886e+38
  for (int i = 0; i < len; ++i) {
    const double x = src[i];
    if (!(x > -kLargest)) {
      dst[i] = -FLT_MAX;
    } else if (!(x < kLargest)) {
      dst[i] = FLT_MAX;
    } else {
      dst[i] = static_cast<orv32f>(x);
    }
  }
  return orvOk;
}

// ---- Floating point to integer ----------------------------------------------

template <typename S, typename T>
orvStatus narrowKernel(const S* src, T* dst, int len, int rndMode, int scaleFactor,
                       const convert::NarrowingLimits<T>& limits) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (rndMode == kRoundNearest) {
    convert::narrow<S, T, true>(src, dst, len, scaleFactor, limits);
  } else {
    convert::narrow<S, T, false>(src, dst, len, scaleFactor, limits);
  }
  return orvOk;
}

constexpr ScaleRange kRange16s32f = {-112, 126};
constexpr ScaleRange kRange32s32f = {-96, 126};
constexpr ScaleRange kRange16s64f = {-1008, 1022};
constexpr ScaleRange kRange32s64f = {-992, 1022};

}  // namespace
}  // namespace orv

using namespace orv;

extern "C" {

orvStatus orvsConvert_8s16s(const orv8s* src, orv16s* dst, int len) { return widenKernel(src, dst, len); }
orvStatus orvsConvert_8s32f(const orv8s* src, orv32f* dst, int len) { return lookUpKernel(src, dst, len); }
orvStatus orvsConvert_8u32f(const orv8u* src, orv32f* dst, int len) { return lookUpKernel(src, dst, len); }
orvStatus orvsConvert_16s32f(const orv16s* src, orv32f* dst, int len) { return widenKernel(src, dst, len); }
orvStatus orvsConvert_16u32f(const orv16u* src, orv32f* dst, int len) { return widenKernel(src, dst, len); }
orvStatus orvsConvert_32s32f(const orv32s* src, orv32f* dst, int len) { return widenKernel(src, dst, len); }
orvStatus orvsConvert_32s64f(const orv32s* src, orv64f* dst, int len) { return widenKernel(src, dst, len); }
orvStatus orvsConvert_32f64f(const orv32f* src, orv64f* dst, int len) { return widenKernel(src, dst, len); }
orvStatus orvsConvert_64f32f(const orv64f* src, orv32f* dst, int len) { return narrow64f32fKernel(src, dst, len); }

orvStatus orvsConvert_16s32f_Sfs(const orv16s* src, orv32f* dst, int len, int scaleFactor) {
  return scaledTo32fKernel(src, dst, len, scaleFactor, kRange16s32f);
}
orvStatus orvsConvert_32s32f_Sfs(const orv32s* src, orv32f* dst, int len, int scaleFactor) {
  return scaledTo32fKernel(src, dst, len, scaleFactor, kRange32s32f);
}
orvStatus orvsConvert_16s64f_Sfs(const orv16s* src, orv64f* dst, int len, int scaleFactor) {
  return scaledTo64fKernel(src, dst, len, scaleFactor, kRange16s64f);
}
orvStatus orvsConvert_32s64f_Sfs(const orv32s* src, orv64f* dst, int len, int scaleFactor) {
  return scaledTo64fKernel(src, dst, len, scaleFactor, kRange32s64f);
}

orvStatus orvsConvert_32f8u_Sfs(const orv32f* src, orv8u* dst, int len, int rndMode, int scaleFactor) {
  return narrowKernel(src, dst, len, rndMode, scaleFactor, convert::kLimits8u);
}
orvStatus orvsConvert_32f8s_Sfs(const orv32f* src, orv8s* dst, int len, int rndMode, int scaleFactor) {
  return narrowKernel(src, dst, len, rndMode, scaleFactor, convert::kLimits8s);
}
orvStatus orvsConvert_32f16u_Sfs(const orv32f* src, orv16u* dst, int len, int rndMode, int scaleFactor) {
  return narrowKernel(src, dst, len, rndMode, scaleFactor, convert::kLimits16u);
}
orvStatus orvsConvert_32f16s_Sfs(const orv32f* src, orv16s* dst, int len, int rndMode, int scaleFactor) {
  return narrowKernel(src, dst, len, rndMode, scaleFactor, convert::kLimits16s);
}
orvStatus orvsConvert_32f32s_Sfs(const orv32f* src, orv32s* dst, int len, int rndMode, int scaleFactor) {
  return narrowKernel(src, dst, len, rndMode, scaleFactor, convert::kLimits32f32s);
}
orvStatus orvsConvert_64f32s_Sfs(const orv64f* src, orv32s* dst, int len, int rndMode, int scaleFactor) {
  return narrowKernel(src, dst, len, rndMode, scaleFactor, convert::kLimits64f32s);
}

}  // extern "C"
