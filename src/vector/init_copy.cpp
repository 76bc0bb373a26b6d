// Set, Zero, Copy and Flip: the fill and move primitives on which the other
// families take their shortcuts. Data are moved as bit patterns.
#include <algorithm>

#include "core/internal.hpp"

namespace orv {
namespace {

// Byte count of a Copy or Zero, formed as a signed 32-bit product like every
// count of the interface. A product that wraps to zero or below moves nothing.
inline std::int32_t byteCount(int len, std::size_t elementSize) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(len) *
                                   static_cast<std::uint32_t>(elementSize));
}

bool overlapsAhead(const unsigned char* src, const unsigned char* dst, std::size_t n) {
  return dst > src && dst < src + n;
}

// Forward copy of n bytes. Disjoint ranges go through memcpy. A destination
// that starts inside the source range is copied the way the block mover
// walks: single bytes up to a 4-byte aligned destination, 32-byte blocks as
// eight ascending 4-byte words, then the tail byte by byte. Data that the
// copy has already written are read again, as that walk reads them.
void copyBytesForward(const unsigned char* src, unsigned char* dst, std::size_t n) {
  if (!overlapsAhead(src, dst, n)) {
    std::memcpy(dst, src, n);
    return;
  }
  while ((reinterpret_cast<std::uintptr_t>(dst) & 3u) != 0) {
    *dst++ = *src++;
    if (--n == 0) return;
  }
  const std::size_t tail = n % 32;
  for (std::size_t blocks = n / 32; blocks > 0; --blocks) {
    for (int w = 0; w < 8; ++w) {
      std::uint32_t word;
      std::memcpy(&word, src, 4);
      std::memcpy(dst, &word, 4);
      src += 4;
      dst += 4;
    }
  }
  for (std::size_t i = 0; i < tail; ++i) dst[i] = src[i];
}

template <typename T>
orvStatus copyKernel(const T* src, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  const std::int32_t bytes = byteCount(len, sizeof(T));
  if (bytes > 0) {
    copyBytesForward(reinterpret_cast<const unsigned char*>(src),
                     reinterpret_cast<unsigned char*>(dst), static_cast<std::size_t>(bytes));
  }
  return orvOk;
}

template <typename T>
orvStatus zeroKernel(T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, dst));
  const std::int32_t bytes = byteCount(len, sizeof(T));
  if (bytes > 0) std::memset(static_cast<void*>(dst), 0, static_cast<std::size_t>(bytes));
  return orvOk;
}

template <typename T>
orvStatus setKernel(T val, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, dst));
  std::fill(dst, dst + len, val);
  return orvOk;
}

template <typename T>
orvStatus flipKernel(const T* src, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  for (int i = 0; i < len; ++i) dst[len - 1 - i] = src[i];
  return orvOk;
}

template <typename T>
orvStatus flipInPlaceKernel(T* srcDst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, srcDst));
  std::reverse(srcDst, srcDst + len);
  return orvOk;
}

}  // namespace
}  // namespace orv

using orv::copyKernel;
using orv::flipInPlaceKernel;
using orv::flipKernel;
using orv::setKernel;
using orv::zeroKernel;

extern "C" {

orvStatus orvsSet_8u(orv8u val, orv8u* dst, int len) { return setKernel(val, dst, len); }
orvStatus orvsSet_16s(orv16s val, orv16s* dst, int len) { return setKernel(val, dst, len); }
orvStatus orvsSet_32s(orv32s val, orv32s* dst, int len) { return setKernel(val, dst, len); }
orvStatus orvsSet_32f(orv32f val, orv32f* dst, int len) {
  // Stored as the bit pattern, so any NaN payload survives.
  return setKernel(orv::bitCast<orv32s>(val), reinterpret_cast<orv32s*>(dst), len);
}
orvStatus orvsSet_64s(orv64s val, orv64s* dst, int len) { return setKernel(val, dst, len); }
orvStatus orvsSet_64f(orv64f val, orv64f* dst, int len) {
  return setKernel(orv::bitCast<orv64s>(val), reinterpret_cast<orv64s*>(dst), len);
}
orvStatus orvsSet_16sc(orv16sc val, orv16sc* dst, int len) {
  return setKernel(orv::bitCast<orv32u>(val), reinterpret_cast<orv32u*>(dst), len);
}
orvStatus orvsSet_32sc(orv32sc val, orv32sc* dst, int len) {
  return setKernel(orv::bitCast<orv64s>(val), reinterpret_cast<orv64s*>(dst), len);
}
orvStatus orvsSet_32fc(orv32fc val, orv32fc* dst, int len) {
  return setKernel(orv::bitCast<orv64s>(val), reinterpret_cast<orv64s*>(dst), len);
}
orvStatus orvsSet_64sc(orv64sc val, orv64sc* dst, int len) { return setKernel(val, dst, len); }
orvStatus orvsSet_64fc(orv64fc val, orv64fc* dst, int len) {
  return orvsSet_64sc(orv::bitCast<orv64sc>(val), reinterpret_cast<orv64sc*>(dst), len);
}

orvStatus orvsZero_8u(orv8u* dst, int len) { return zeroKernel(dst, len); }
orvStatus orvsZero_16s(orv16s* dst, int len) { return zeroKernel(dst, len); }
orvStatus orvsZero_16sc(orv16sc* dst, int len) { return zeroKernel(dst, len); }
orvStatus orvsZero_32f(orv32f* dst, int len) { return zeroKernel(dst, len); }
orvStatus orvsZero_32fc(orv32fc* dst, int len) { return zeroKernel(dst, len); }
orvStatus orvsZero_64f(orv64f* dst, int len) { return zeroKernel(dst, len); }
orvStatus orvsZero_64fc(orv64fc* dst, int len) { return zeroKernel(dst, len); }

orvStatus orvsCopy_8u(const orv8u* src, orv8u* dst, int len) { return copyKernel(src, dst, len); }
orvStatus orvsCopy_16s(const orv16s* src, orv16s* dst, int len) { return copyKernel(src, dst, len); }
orvStatus orvsCopy_16sc(const orv16sc* src, orv16sc* dst, int len) { return copyKernel(src, dst, len); }
orvStatus orvsCopy_32f(const orv32f* src, orv32f* dst, int len) { return copyKernel(src, dst, len); }
orvStatus orvsCopy_32fc(const orv32fc* src, orv32fc* dst, int len) { return copyKernel(src, dst, len); }
orvStatus orvsCopy_64f(const orv64f* src, orv64f* dst, int len) { return copyKernel(src, dst, len); }
orvStatus orvsCopy_64fc(const orv64fc* src, orv64fc* dst, int len) { return copyKernel(src, dst, len); }

orvStatus orvsFlip_8u(const orv8u* src, orv8u* dst, int len) { return flipKernel(src, dst, len); }
orvStatus orvsFlip_16u(const orv16u* src, orv16u* dst, int len) { return flipKernel(src, dst, len); }
orvStatus orvsFlip_32f(const orv32f* src, orv32f* dst, int len) {
  return flipKernel(reinterpret_cast<const orv32u*>(src), reinterpret_cast<orv32u*>(dst), len);
}
orvStatus orvsFlip_64f(const orv64f* src, orv64f* dst, int len) {
  return flipKernel(reinterpret_cast<const orv64s*>(src), reinterpret_cast<orv64s*>(dst), len);
}
orvStatus orvsFlip_8u_I(orv8u* srcDst, int len) { return flipInPlaceKernel(srcDst, len); }
orvStatus orvsFlip_16u_I(orv16u* srcDst, int len) { return flipInPlaceKernel(srcDst, len); }
orvStatus orvsFlip_32f_I(orv32f* srcDst, int len) {
  return flipInPlaceKernel(reinterpret_cast<orv32u*>(srcDst), len);
}
orvStatus orvsFlip_64f_I(orv64f* srcDst, int len) {
  return flipInPlaceKernel(reinterpret_cast<orv64s*>(srcDst), len);
}

}  // extern "C"
