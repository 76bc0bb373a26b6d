// Set, Zero, Copy and Flip against plain reference loops, with every length
// from 1 to 70 at element offsets 0 to 7, and their argument checks.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace {

using orvtest::Guarded;

// One function of the family, erased to byte vectors of a given element size.
struct Case {
  std::string name;
  std::size_t size;  // element size in bytes
  // Runs the function on (src, dst, len); src is ignored by Set and Zero.
  std::function<orvStatus(const void*, void*, int)> run;
  // Writes the expected dst given src and the old dst.
  std::function<void(const unsigned char*, unsigned char*, int)> reference;
  bool readsSource;
};

// The value every Set test stores: a pattern of distinct, non-zero bytes
// (for floats a NaN with a payload).
template <typename T>
T pattern() {
  T v;
  unsigned char bytes[sizeof(T)];
  for (std::size_t i = 0; i < sizeof(T); ++i) bytes[i] = static_cast<unsigned char>(0xF1 + 3 * i);
  std::memcpy(&v, bytes, sizeof(T));
  return v;
}

template <typename T>
Case setCase(const char* name, orvStatus (*f)(T, T*, int)) {
  return {name, sizeof(T),
          [f](const void*, void* dst, int len) { return f(pattern<T>(), static_cast<T*>(dst), len); },
          [](const unsigned char*, unsigned char* dst, int len) {
            const T v = pattern<T>();
            for (int i = 0; i < len; ++i) std::memcpy(dst + i * sizeof(T), &v, sizeof(T));
          },
          false};
}

template <typename T>
Case zeroCase(const char* name, orvStatus (*f)(T*, int)) {
  return {name, sizeof(T), [f](const void*, void* dst, int len) { return f(static_cast<T*>(dst), len); },
          [](const unsigned char*, unsigned char* dst, int len) { std::memset(dst, 0, len * sizeof(T)); },
          false};
}

template <typename T>
Case copyCase(const char* name, orvStatus (*f)(const T*, T*, int)) {
  return {name, sizeof(T),
          [f](const void* src, void* dst, int len) {
            return f(static_cast<const T*>(src), static_cast<T*>(dst), len);
          },
          [](const unsigned char* src, unsigned char* dst, int len) {
            for (std::size_t i = 0; i < len * sizeof(T); ++i) dst[i] = src[i];
          },
          true};
}

template <typename T>
Case flipCase(const char* name, orvStatus (*f)(const T*, T*, int)) {
  return {name, sizeof(T),
          [f](const void* src, void* dst, int len) {
            return f(static_cast<const T*>(src), static_cast<T*>(dst), len);
          },
          [](const unsigned char* src, unsigned char* dst, int len) {
            for (int i = 0; i < len; ++i)
              std::memcpy(dst + (len - 1 - i) * sizeof(T), src + i * sizeof(T), sizeof(T));
          },
          true};
}

// In-place flip: the "source" is the old content of dst.
template <typename T>
Case flipInPlaceCase(const char* name, orvStatus (*f)(T*, int)) {
  return {name, sizeof(T), [f](const void*, void* dst, int len) { return f(static_cast<T*>(dst), len); },
          [](const unsigned char*, unsigned char* dst, int len) {
            std::vector<unsigned char> old(dst, dst + len * sizeof(T));
            for (int i = 0; i < len; ++i)
              std::memcpy(dst + (len - 1 - i) * sizeof(T), old.data() + i * sizeof(T), sizeof(T));
          },
          false};
}

std::vector<Case> allCases() {
  return {
      setCase("orvsSet_8u", orvsSet_8u),         setCase("orvsSet_16s", orvsSet_16s),
      setCase("orvsSet_32s", orvsSet_32s),       setCase("orvsSet_32f", orvsSet_32f),
      setCase("orvsSet_64s", orvsSet_64s),       setCase("orvsSet_64f", orvsSet_64f),
      setCase("orvsSet_16sc", orvsSet_16sc),     setCase("orvsSet_32sc", orvsSet_32sc),
      setCase("orvsSet_32fc", orvsSet_32fc),     setCase("orvsSet_64sc", orvsSet_64sc),
      setCase("orvsSet_64fc", orvsSet_64fc),     zeroCase("orvsZero_8u", orvsZero_8u),
      zeroCase("orvsZero_16s", orvsZero_16s),    zeroCase("orvsZero_16sc", orvsZero_16sc),
      zeroCase("orvsZero_32f", orvsZero_32f),    zeroCase("orvsZero_32fc", orvsZero_32fc),
      zeroCase("orvsZero_64f", orvsZero_64f),    zeroCase("orvsZero_64fc", orvsZero_64fc),
      copyCase("orvsCopy_8u", orvsCopy_8u),      copyCase("orvsCopy_16s", orvsCopy_16s),
      copyCase("orvsCopy_16sc", orvsCopy_16sc),  copyCase("orvsCopy_32f", orvsCopy_32f),
      copyCase("orvsCopy_32fc", orvsCopy_32fc),  copyCase("orvsCopy_64f", orvsCopy_64f),
      copyCase("orvsCopy_64fc", orvsCopy_64fc),  flipCase("orvsFlip_8u", orvsFlip_8u),
      flipCase("orvsFlip_16u", orvsFlip_16u),    flipCase("orvsFlip_32f", orvsFlip_32f),
      flipCase("orvsFlip_64f", orvsFlip_64f),    flipInPlaceCase("orvsFlip_8u_I", orvsFlip_8u_I),
      flipInPlaceCase("orvsFlip_16u_I", orvsFlip_16u_I),
      flipInPlaceCase("orvsFlip_32f_I", orvsFlip_32f_I),
      flipInPlaceCase("orvsFlip_64f_I", orvsFlip_64f_I),
  };
}

TEST(InitCopy, MatchesReferenceOverLengthsAndOffsets) {
  for (const Case& c : allCases()) {
    for (int len = 1; len <= 70; ++len) {
      for (std::size_t offset = 0; offset < 8; ++offset) {
        const std::size_t bytes = len * c.size;
        Guarded<unsigned char> src(bytes, offset * c.size);
        Guarded<unsigned char> dst(bytes, ((offset + 3) % 8) * c.size);
        orvtest::fillRandomBytes(src.data(), bytes, 17u * len + offset);
        orvtest::fillRandomBytes(dst.data(), bytes, 91u * len + offset);
        std::vector<unsigned char> expected(dst.data(), dst.data() + bytes);
        c.reference(src.data(), expected.data(), len);
        ASSERT_EQ(c.run(src.data(), dst.data(), len), orvOk) << c.name;
        ASSERT_EQ(std::memcmp(dst.data(), expected.data(), bytes), 0)
            << c.name << " len " << len << " offset " << offset;
        ASSERT_TRUE(dst.intactOutside()) << c.name << " len " << len << " offset " << offset;
        ASSERT_TRUE(src.intactOutside()) << c.name;
      }
    }
  }
}

TEST(InitCopy, ArgumentChecksComeInOrderAndLeaveOutputUntouched) {
  for (const Case& c : allCases()) {
    Guarded<unsigned char> src(64), dst(64);
    // A null pointer is reported before a bad length.
    EXPECT_EQ(c.run(src.data(), nullptr, 0), orvErrNullPointer) << c.name;
    EXPECT_EQ(c.run(src.data(), nullptr, 4), orvErrNullPointer) << c.name;
    if (c.readsSource) {
      EXPECT_EQ(c.run(nullptr, dst.data(), 0), orvErrNullPointer) << c.name;
      EXPECT_EQ(c.run(nullptr, dst.data(), 4), orvErrNullPointer) << c.name;
    }
    for (int len : {0, -1, -2147483647 - 1}) {
      EXPECT_EQ(c.run(src.data(), dst.data(), len), orvErrSize) << c.name << " len " << len;
    }
    EXPECT_TRUE(dst.untouched()) << c.name;
    EXPECT_TRUE(src.untouched()) << c.name;
  }
}

TEST(InitCopy, ByteCountThatWrapsNegativeMovesNothing) {
  // 2^27 elements of 16 bytes is 2^31 bytes: negative as a 32-bit count.
  Guarded<orv64fc> src(4), dst(4);
  EXPECT_EQ(orvsCopy_64fc(src.data(), dst.data(), 1 << 27), orvOk);
  EXPECT_EQ(orvsZero_64fc(dst.data(), 1 << 27), orvOk);
  EXPECT_TRUE(dst.untouched());
}

TEST(InitCopy, SetStoresNaNPayloadsAndSignedZerosUnchanged) {
  const orv32u nanBits = 0x7FA00001u;  // a signalling NaN with a payload
  orv32f nan;
  std::memcpy(&nan, &nanBits, 4);
  orv32f v[3];
  ASSERT_EQ(orvsSet_32f(nan, v, 3), orvOk);
  for (orv32f x : v) {
    orv32u bits;
    std::memcpy(&bits, &x, 4);
    EXPECT_EQ(bits, nanBits);
  }
  orv64fc z[2];
  ASSERT_EQ(orvsSet_64fc({-0.0, 0.0}, z, 2), orvOk);
  EXPECT_TRUE(std::signbit(z[1].re));
  EXPECT_FALSE(std::signbit(z[1].im));
}

TEST(InitCopy, OverlappingForwardCopyPropagatesAsTheMoverWalks) {
  // The destination one byte above the source: the walk is byte by byte up to
  // the aligned destination and in the tail, so the first byte runs through.
  Guarded<orv8u> buf(16);
  for (int i = 0; i < 16; ++i) buf[i] = static_cast<orv8u>(i + 1);
  ASSERT_EQ(orvsCopy_8u(buf.data(), buf.data() + 1, 10), orvOk);
  for (int i = 0; i <= 10; ++i) EXPECT_EQ(buf[i], 1) << i;
  EXPECT_EQ(buf[11], 12);
}

TEST(InitCopy, FlipInPlaceKeepsTheMiddleElement) {
  orv8u v[5] = {1, 2, 3, 4, 5};
  ASSERT_EQ(orvsFlip_8u_I(v, 5), orvOk);
  const orv8u expected[5] = {5, 4, 3, 2, 1};
  EXPECT_EQ(std::memcmp(v, expected, 5), 0);
  ASSERT_EQ(orvsFlip_8u_I(v, 1), orvOk);
  EXPECT_EQ(v[0], 5);
}

}  // namespace
