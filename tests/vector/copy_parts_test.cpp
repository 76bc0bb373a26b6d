// Set, Zero, Copy, Flip and the complex parts and conjugates against plain
// reference loops, bit for bit (NaN payloads and signalling NaNs included),
// over every length of a range at several element offsets with canaries
// around the output; the saturating 16-bit negation over every value; the
// write orders that show under overlap; the argument checks.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "support/test_support.hpp"

namespace {

using orvtest::Guarded;

// The value every Set stores, as bytes: distinct and non-zero; as orv32f,
// orv64f and the real part of orv32fc/orv64fc a signalling NaN with a payload
// (a pass through floating-point arithmetic or a wider format quiets it).
const unsigned char kPattern[16] = {0x01, 0x23, 0xA5, 0x7F, 0x45, 0x67, 0xF4, 0x7F,
                                    0x89, 0xAB, 0xCD, 0xEF, 0x11, 0x33, 0x55, 0x77};

enum class Kind { kSet, kZero, kCopy, kFlip, kFlipInPlace };

// One function of the family, erased to bytes: run(src, dst, len); src is
// ignored by Set, Zero and the in-place Flip.
struct Case {
  std::string name;
  std::size_t size;
  Kind kind;
  std::function<orvStatus(const void*, void*, int)> run;
};

template <typename T>
Case make(const char* name, orvStatus (*f)(T, T*, int)) {
  return {name, sizeof(T), Kind::kSet, [f](const void*, void* d, int n) {
            T v;
            std::memcpy(&v, kPattern, sizeof v);
            return f(v, static_cast<T*>(d), n);
          }};
}
template <typename T>
Case make(const char* name, orvStatus (*f)(T*, int), Kind kind) {
  return {name, sizeof(T), kind, [f](const void*, void* d, int n) { return f(static_cast<T*>(d), n); }};
}
template <typename T>
Case make(const char* name, orvStatus (*f)(const T*, T*, int), Kind kind) {
  return {name, sizeof(T), kind,
          [f](const void* s, void* d, int n) { return f(static_cast<const T*>(s), static_cast<T*>(d), n); }};
}

#define SET(t) make("orvsSet_" #t, orvsSet_##t)
#define ZERO(t) make("orvsZero_" #t, orvsZero_##t, Kind::kZero)
#define COPY(t) make("orvsCopy_" #t, orvsCopy_##t, Kind::kCopy)
#define FLIP(t) \
  make("orvsFlip_" #t, orvsFlip_##t, Kind::kFlip), make("orvsFlip_" #t "_I", orvsFlip_##t##_I, Kind::kFlipInPlace)
std::vector<Case> allCases() {
  return {SET(8u),    SET(16s),   SET(32s),   SET(32f),   SET(64s),    SET(64f),   SET(16sc),  SET(32sc),
          SET(32fc),  SET(64sc),  SET(64fc),  ZERO(8u),   ZERO(16s),   ZERO(16sc), ZERO(32f),  ZERO(32fc),
          ZERO(64f),  ZERO(64fc), COPY(8u),   COPY(16s),  COPY(16sc),  COPY(32f),  COPY(32fc), COPY(64f),
          COPY(64fc), FLIP(8u),   FLIP(16u),  FLIP(32f),  FLIP(64f)};
}
#undef SET
#undef ZERO
#undef COPY
#undef FLIP

// The expected destination, from the source and the old destination.
std::vector<unsigned char> reference(const Case& c, const unsigned char* src, const unsigned char* dst, int len) {
  const std::size_t s = c.size, bytes = len * s;
  std::vector<unsigned char> out(dst, dst + bytes);
  const unsigned char* from = c.kind == Kind::kFlipInPlace ? dst : src;
  for (std::size_t i = 0; i < bytes; ++i) {
    const std::size_t mirrored = (len - 1 - i / s) * s + i % s;
    switch (c.kind) {
      case Kind::kSet: out[i] = kPattern[i % s]; break;
      case Kind::kZero: out[i] = 0; break;
      case Kind::kCopy: out[i] = src[i]; break;
      default: out[mirrored] = from[i];
    }
  }
  return out;
}

TEST(InitCopy, MatchesReferenceOverLengthsAndOffsets) {
  for (const Case& c : allCases()) {
    for (int len = 1; len <= 70; ++len) {
      for (std::size_t offset = 0; offset < 8; ++offset) {
        const std::size_t bytes = len * c.size;
        Guarded<unsigned char> src(bytes, offset * c.size), dst(bytes, ((offset + 3) % 8) * c.size);
        orvtest::fillRandomBytes(src.data(), bytes, 17u * len + offset);
        orvtest::fillRandomBytes(dst.data(), bytes, 91u * len + offset);
        const std::vector<unsigned char> want = reference(c, src.data(), dst.data(), len);
        ASSERT_EQ(c.run(src.data(), dst.data(), len), orvOk) << c.name;
        ASSERT_EQ(std::memcmp(dst.data(), want.data(), bytes), 0) << c.name << " len " << len << " offset " << offset;
        ASSERT_TRUE(dst.intactOutside() && src.intactOutside()) << c.name << " len " << len << " offset " << offset;
      }
    }
  }
}

// A null pointer is reported before a bad length; nothing is written.
TEST(InitCopy, ArgumentChecksComeInOrderAndLeaveOutputUntouched) {
  for (const Case& c : allCases()) {
    Guarded<unsigned char> src(64), dst(64);
    for (int len : {0, 4}) {
      EXPECT_EQ(c.run(src.data(), nullptr, len), orvErrNullPointer) << c.name;
      if (c.kind == Kind::kCopy || c.kind == Kind::kFlip) {
        EXPECT_EQ(c.run(nullptr, dst.data(), len), orvErrNullPointer) << c.name;
      }
    }
    for (int len : {0, -1, -2147483647 - 1}) EXPECT_EQ(c.run(src.data(), dst.data(), len), orvErrSize) << c.name;
    EXPECT_TRUE(dst.untouched() && src.untouched()) << c.name;
  }
}

TEST(InitCopy, ByteCountThatWrapsNegativeMovesNothing) {
  // 2^27 elements of 16 bytes is 2^31 bytes: negative as a 32-bit count.
  Guarded<orv64fc> src(4), dst(4);
  EXPECT_EQ(orvsCopy_64fc(src.data(), dst.data(), 1 << 27), orvOk);
  EXPECT_EQ(orvsZero_64fc(dst.data(), 1 << 27), orvOk);
  EXPECT_TRUE(dst.untouched());
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

// ---- Complex parts and conjugates ----------------------------------------------

template <typename To, typename From>
To bits(From v) {  // the same bytes as another type
  static_assert(sizeof(To) == sizeof(From), "same size");
  To t;
  std::memcpy(&t, &v, sizeof t);
  return t;
}

template <typename C>
struct Family;
#define ORV_FAMILY(C, t, rt)                                                                    \
  template <>                                                                                   \
  struct Family<C> {                                                                            \
    static constexpr auto real = orvsReal_##t, imag = orvsImag_##t;                             \
    static constexpr auto cplxToReal = orvsCplxToReal_##t;                                      \
    static constexpr auto realToCplx = orvsRealToCplx_##rt;                                     \
    static constexpr auto conj = orvsConj_##t, conjFlip = orvsConjFlip_##t;                     \
    static constexpr auto conjI = orvsConj_##t##_I;                                             \
  }
ORV_FAMILY(orv16sc, 16sc, 16s);
ORV_FAMILY(orv32fc, 32fc, 32f);
ORV_FAMILY(orv64fc, 64fc, 64f);
#undef ORV_FAMILY

template <typename C>
class ComplexParts : public ::testing::Test {
 protected:
  using F = Family<C>;
  using R = decltype(C::re);
  using Word = std::conditional_t<sizeof(R) == 2, std::uint16_t,
                                  std::conditional_t<sizeof(R) == 4, std::uint32_t, std::uint64_t>>;

  // The negation applied to `im`, on the raw word: saturating for 16-bit
  // integers, a flip of the sign bit for floats.
  static Word negate(Word w) {
    if (sizeof(Word) != 2) return w ^ (Word{1} << (8 * sizeof(Word) - 1));
    const int v = -static_cast<int>(static_cast<orv16s>(w));
    return static_cast<Word>(v > 32767 ? 32767 : v);
  }
  // Random words with the type's special patterns among them: signalling and
  // quiet NaNs with payloads, infinities, signed zeros, subnormals; the
  // 16-bit extremes. 65536 words are every 16-bit value.
  static std::vector<Word> words(int n, unsigned seed) {
    std::vector<Word> w(n);
    if (n == 65536) {
      for (int i = 0; i < n; ++i) w[i] = static_cast<Word>(i);
      return w;
    }
    orvtest::fillRandomBytes(w.data(), n * sizeof(Word), seed);
    const std::vector<std::uint64_t> special =
        sizeof(Word) == 2   ? std::vector<std::uint64_t>{0x8000, 0x7fff, 0, 0xffff}
        : sizeof(Word) == 4 ? std::vector<std::uint64_t>{0x7fa00001, 0xffa00001, 0x7fc00005, 0x80000000, 0,
                                                          0x7f800000, 1}
                            : std::vector<std::uint64_t>{0x7ff4000000000001, 0xfff4000000000001, 0x7ff8000000000123,
                                                         0x8000000000000000, 0, 0x7ff0000000000000, 1};
    for (std::size_t i = 0; i < special.size() && i * 3 < w.size(); ++i) w[i * 3] = static_cast<Word>(special[i]);
    return w;
  }
};

using ComplexTypes = ::testing::Types<orv16sc, orv32fc, orv64fc>;
TYPED_TEST_SUITE(ComplexParts, ComplexTypes);

// Every function on lengths 1 to 19 (all remainders of the blocks), and for
// orv16sc every value, at element offsets 0 to 2: results bit for bit,
// nothing written outside.
TYPED_TEST(ComplexParts, BitExactOnEveryLength) {
  using T = TestFixture;
  using C = TypeParam;
  using R = typename T::R;
  using Word = typename T::Word;
  using F = typename T::F;
  auto w = [](R r) { return bits<Word>(r); };
  std::vector<int> lens;
  for (int len = 1; len <= 19; ++len) lens.push_back(len);
  if (sizeof(Word) == 2) lens.push_back(65536);
  for (int len : lens) {
    for (int off = 0; off < 3; ++off) {
      SCOPED_TRACE("len " + std::to_string(len) + " offset " + std::to_string(off));
      const auto re = T::words(len, 100 + len), im = T::words(len, 200 + len);
      Guarded<C> src(len, off), conj(len, off), flip(len, off), inPlace(len, off);
      Guarded<R> srcRe(len, off), srcIm(len, off), a(len, off), b(len, off), c(len, off), d(len, off);
      for (int n = 0; n < len; ++n) {
        srcRe[n] = bits<R>(re[n]);
        srcIm[n] = bits<R>(im[n]);
        src[n] = inPlace[n] = C{srcRe[n], srcIm[n]};
      }
      ASSERT_EQ(F::real(src.data(), a.data(), len), orvOk);
      ASSERT_EQ(F::imag(src.data(), b.data(), len), orvOk);
      ASSERT_EQ(F::cplxToReal(src.data(), c.data(), d.data(), len), orvOk);
      ASSERT_EQ(F::conj(src.data(), conj.data(), len), orvOk);
      ASSERT_EQ(F::conjFlip(src.data(), flip.data(), len), orvOk);
      ASSERT_EQ(F::conjI(inPlace.data(), len), orvOk);
      for (int n = 0; n < len; ++n) {
        EXPECT_TRUE(w(a[n]) == re[n] && w(c[n]) == re[n] && w(b[n]) == im[n] && w(d[n]) == im[n]) << n;
        const Word neg = T::negate(im[n]);
        EXPECT_TRUE(w(conj[n].re) == re[n] && w(conj[n].im) == neg) << n;
        EXPECT_TRUE(w(inPlace[n].re) == re[n] && w(inPlace[n].im) == neg) << n;
        EXPECT_TRUE(w(flip[len - 1 - n].re) == re[n] && w(flip[len - 1 - n].im) == neg) << n;
      }
      // RealToCplx from both sources, then each alone (the other part is 0).
      for (int which = 0; which < 3; ++which) {
        Guarded<C> dst(len, off);
        ASSERT_EQ(F::realToCplx(which == 1 ? nullptr : srcRe.data(), which == 2 ? nullptr : srcIm.data(),
                                dst.data(), len),
                  orvOk);
        for (int n = 0; n < len; ++n) {
          EXPECT_EQ(w(dst[n].re), which == 1 ? Word{0} : re[n]) << n;
          EXPECT_EQ(w(dst[n].im), which == 2 ? Word{0} : im[n]) << n;
        }
        EXPECT_TRUE(dst.intactOutside());
      }
      for (auto* g : {&a, &b, &c, &d, &srcRe, &srcIm}) EXPECT_TRUE(g->intactOutside());
      for (auto* g : {&src, &conj, &flip, &inPlace}) EXPECT_TRUE(g->intactOutside());
    }
  }
}

// CplxToReal writes dstRe for the first multiple of four, then dstIm for it,
// then the rest of each: with dstIm two elements into dstRe the shared buffer
// shows that order. ConjFlip in place meets elements it has already written.
TYPED_TEST(ComplexParts, OverlappingOutputsShowTheWriteOrder) {
  using C = TypeParam;
  using R = typename TestFixture::R;
  using F = typename TestFixture::F;
  std::vector<C> src;
  for (int n = 0; n < 6; ++n) src.push_back(C{static_cast<R>(1 + n), static_cast<R>(11 + n)});
  std::vector<R> buf(10, R(-1));
  ASSERT_EQ(F::cplxToReal(src.data(), buf.data(), buf.data() + 2, 6), orvOk);
  EXPECT_EQ(buf, (std::vector<R>{1, 2, 11, 12, 5, 6, 15, 16, -1, -1}));

  std::vector<C> v = {{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}};
  ASSERT_EQ(F::conjFlip(v.data(), v.data(), 5), orvOk);
  const R want[5][2] = {{1, 2}, {3, 4}, {5, -6}, {3, -4}, {1, -2}};
  for (int n = 0; n < 5; ++n) EXPECT_TRUE(v[n].re == want[n][0] && v[n].im == want[n][1]) << n;
}

TYPED_TEST(ComplexParts, ArgumentChecks) {
  using C = TypeParam;
  using R = typename TestFixture::R;
  using F = typename TestFixture::F;
  Guarded<C> cv(2);
  Guarded<R> r1(2), r2(2);
  C* c = cv.data();
  R *a = r1.data(), *b = r2.data();
  for (int len : {1, 0}) {
    const orvStatus got[] = {F::real(nullptr, a, len),      F::real(c, nullptr, len),
                             F::imag(nullptr, a, len),      F::imag(c, nullptr, len),
                             F::cplxToReal(nullptr, a, b, len), F::cplxToReal(c, nullptr, b, len),
                             F::cplxToReal(c, a, nullptr, len), F::conj(nullptr, c, len),
                             F::conj(c, nullptr, len),      F::conjI(nullptr, len),
                             F::conjFlip(nullptr, c, len),  F::conjFlip(c, nullptr, len),
                             F::realToCplx(a, b, nullptr, len)};
    for (orvStatus s : got) EXPECT_EQ(s, orvErrNullPointer) << "len " << len;
  }
  for (int len : {0, -1, INT_MIN}) {
    // RealToCplx looks at its sources only after the length.
    const orvStatus got[] = {F::real(c, a, len),      F::imag(c, a, len),     F::cplxToReal(c, a, b, len),
                             F::conj(c, c, len),      F::conjI(c, len),       F::conjFlip(c, c, len),
                             F::realToCplx(nullptr, nullptr, c, len), F::realToCplx(a, b, c, len)};
    for (orvStatus s : got) EXPECT_EQ(s, orvErrSize) << "len " << len;
  }
  EXPECT_EQ(F::realToCplx(nullptr, nullptr, c, 1), orvErrNullPointer);
  EXPECT_TRUE(cv.untouched() && r1.untouched() && r2.untouched());
}

}  // namespace
