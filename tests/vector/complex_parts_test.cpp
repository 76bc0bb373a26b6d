// Complex parts and conjugates on every element type: bit-exact moves (NaN
// payloads and signalling NaNs included), the saturating 16-bit negation
// over every value, the write order of CplxToReal, in-place ConjFlip, and
// the argument checks with RealToCplx's own order.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <vector>

#include "support/test_support.hpp"

namespace {

using orvtest::Guarded;

template <typename To, typename From>
To bits(From v) {
  static_assert(sizeof(To) == sizeof(From), "same size");
  To t;
  std::memcpy(&t, &v, sizeof t);
  return t;
}

// The functions of one element type and an independent statement of the
// negation each applies to `im`, on the raw word.
template <typename C>
struct Family;

template <>
struct Family<orv16sc> {
  using R = orv16s;
  using Word = std::uint16_t;
  static Word negate(Word w) {
    const int v = -static_cast<int>(static_cast<orv16s>(w));
    return static_cast<Word>(static_cast<orv16s>(v > 32767 ? 32767 : v));
  }
  static constexpr auto real = orvsReal_16sc;
  static constexpr auto imag = orvsImag_16sc;
  static constexpr auto cplxToReal = orvsCplxToReal_16sc;
  static constexpr auto realToCplx = orvsRealToCplx_16s;
  static constexpr auto conj = orvsConj_16sc;
  static constexpr auto conjI = orvsConj_16sc_I;
  static constexpr auto conjFlip = orvsConjFlip_16sc;
};

template <>
struct Family<orv32fc> {
  using R = orv32f;
  using Word = std::uint32_t;
  static Word negate(Word w) { return w ^ (Word{1} << 31); }
  static constexpr auto real = orvsReal_32fc;
  static constexpr auto imag = orvsImag_32fc;
  static constexpr auto cplxToReal = orvsCplxToReal_32fc;
  static constexpr auto realToCplx = orvsRealToCplx_32f;
  static constexpr auto conj = orvsConj_32fc;
  static constexpr auto conjI = orvsConj_32fc_I;
  static constexpr auto conjFlip = orvsConjFlip_32fc;
};

template <>
struct Family<orv64fc> {
  using R = orv64f;
  using Word = std::uint64_t;
  static Word negate(Word w) { return w ^ (Word{1} << 63); }
  static constexpr auto real = orvsReal_64fc;
  static constexpr auto imag = orvsImag_64fc;
  static constexpr auto cplxToReal = orvsCplxToReal_64fc;
  static constexpr auto realToCplx = orvsRealToCplx_64f;
  static constexpr auto conj = orvsConj_64fc;
  static constexpr auto conjI = orvsConj_64fc_I;
  static constexpr auto conjFlip = orvsConjFlip_64fc;
};

template <typename C>
class ComplexParts : public ::testing::Test {
 protected:
  using F = Family<C>;
  using R = typename F::R;
  using Word = typename F::Word;

  // Random words, with the special patterns of the type among them: for
  // floats signalling and quiet NaNs with payloads, infinities, signed zeros
  // and subnormals; for 16-bit integers the extremes.
  static std::vector<Word> words(std::size_t n, unsigned seed) {
    std::vector<Word> w(n);
    orvtest::fillRandomBytes(w.data(), n * sizeof(Word), seed);
    const std::vector<Word> special =
        sizeof(Word) == 2 ? std::vector<Word>{Word(0x8000), Word(0x7fff), 0, Word(0xffff)}
        : sizeof(Word) == 4
            ? std::vector<Word>{Word(0x7fa00001u), Word(0xffa00001u), Word(0x7fc00005u), Word(0x80000000u), 0,
                                Word(0x7f800000u), Word(0x00000001u)}
            : std::vector<Word>{Word(0x7ff4000000000001ull), Word(0xfff4000000000001ull),
                                Word(0x7ff8000000000123ull), Word(0x8000000000000000ull), 0,
                                Word(0x7ff0000000000000ull), Word(1)};
    for (std::size_t i = 0; i < special.size() && i * 3 < n; ++i) w[i * 3] = special[i];
    return w;
  }
  static C element(Word re, Word im) {
    C c;
    std::memcpy(&c, &re, sizeof re);
    std::memcpy(reinterpret_cast<unsigned char*>(&c) + sizeof re, &im, sizeof im);
    return c;
  }
  static Word reOf(const C& c) {
    Word w;
    std::memcpy(&w, &c, sizeof w);
    return w;
  }
  static Word imOf(const C& c) {
    Word w;
    std::memcpy(&w, reinterpret_cast<const unsigned char*>(&c) + sizeof w, sizeof w);
    return w;
  }
  static Word word(R r) { return bits<Word>(r); }
  static R part(Word w) { return bits<R>(w); }
};

using ComplexTypes = ::testing::Types<orv16sc, orv32fc, orv64fc>;
TYPED_TEST_SUITE(ComplexParts, ComplexTypes);

// Every function on lengths 1 to 19 (all remainders of the blocks) and
// element offsets 0 to 2: results bit for bit, nothing written outside.
TYPED_TEST(ComplexParts, BitExactOnEveryLength) {
  using T = TestFixture;
  using C = TypeParam;
  using R = typename T::R;
  using Word = typename T::Word;
  using F = typename T::F;
  for (int len = 1; len <= 19; ++len) {
    for (int off = 0; off < 3; ++off) {
      SCOPED_TRACE("len " + std::to_string(len) + " offset " + std::to_string(off));
      const auto re = T::words(len, 100 + len), im = T::words(len, 200 + len);
      Guarded<C> src(len, off);
      Guarded<R> srcRe(len, off), srcIm(len, off);
      for (int n = 0; n < len; ++n) {
        src[n] = T::element(re[n], im[n]);
        srcRe[n] = T::part(re[n]);
        srcIm[n] = T::part(im[n]);
      }

      Guarded<R> a(len, off), b(len, off);
      ASSERT_EQ(F::real(src.data(), a.data(), len), orvOk);
      ASSERT_EQ(F::imag(src.data(), b.data(), len), orvOk);
      for (int n = 0; n < len; ++n) {
        EXPECT_EQ(T::word(a[n]), re[n]);
        EXPECT_EQ(T::word(b[n]), im[n]);
      }
      EXPECT_TRUE(a.intactOutside() && b.intactOutside());

      Guarded<R> c(len, off), d(len, off);
      ASSERT_EQ(F::cplxToReal(src.data(), c.data(), d.data(), len), orvOk);
      for (int n = 0; n < len; ++n) {
        EXPECT_EQ(T::word(c[n]), re[n]);
        EXPECT_EQ(T::word(d[n]), im[n]);
      }
      EXPECT_TRUE(c.intactOutside() && d.intactOutside());

      // Both sources, then each alone (the other part is 0).
      for (int which = 0; which < 3; ++which) {
        Guarded<C> dst(len, off);
        const R* pr = which == 1 ? nullptr : srcRe.data();
        const R* pi = which == 2 ? nullptr : srcIm.data();
        ASSERT_EQ(F::realToCplx(pr, pi, dst.data(), len), orvOk);
        for (int n = 0; n < len; ++n) {
          EXPECT_EQ(T::reOf(dst[n]), which == 1 ? Word{0} : re[n]);
          EXPECT_EQ(T::imOf(dst[n]), which == 2 ? Word{0} : im[n]);
        }
        EXPECT_TRUE(dst.intactOutside());
      }

      Guarded<C> conj(len, off), flip(len, off), inPlace(len, off);
      ASSERT_EQ(F::conj(src.data(), conj.data(), len), orvOk);
      ASSERT_EQ(F::conjFlip(src.data(), flip.data(), len), orvOk);
      for (int n = 0; n < len; ++n) inPlace[n] = src[n];
      ASSERT_EQ(F::conjI(inPlace.data(), len), orvOk);
      for (int n = 0; n < len; ++n) {
        EXPECT_EQ(T::reOf(conj[n]), re[n]);
        EXPECT_EQ(T::imOf(conj[n]), F::negate(im[n]));
        EXPECT_EQ(T::reOf(inPlace[n]), re[n]);
        EXPECT_EQ(T::imOf(inPlace[n]), F::negate(im[n]));
        EXPECT_EQ(T::reOf(flip[len - 1 - n]), re[n]);
        EXPECT_EQ(T::imOf(flip[len - 1 - n]), F::negate(im[n]));
      }
      EXPECT_TRUE(conj.intactOutside() && flip.intactOutside() && inPlace.intactOutside());
      EXPECT_TRUE(src.intactOutside());
    }
  }
}

// CplxToReal writes dstRe for the first multiple of four, then dstIm for
// it, then the rest of each. With dstIm two elements into dstRe the final
// contents show that order: (1..6, 11..16) over a shared buffer.
TYPED_TEST(ComplexParts, CplxToRealWriteOrderShowsWhenOutputsOverlap) {
  using T = TestFixture;
  using C = TypeParam;
  using R = typename T::R;
  using F = typename T::F;
  std::vector<C> src;
  for (int n = 0; n < 6; ++n) src.push_back(C{static_cast<R>(1 + n), static_cast<R>(11 + n)});
  std::vector<R> buf(10, R(-1));
  ASSERT_EQ(F::cplxToReal(src.data(), buf.data(), buf.data() + 2, 6), orvOk);
  const std::vector<R> want = {1, 2, 11, 12, 5, 6, 15, 16, -1, -1};
  EXPECT_EQ(buf, want);
}

// With src equal to dst the walk meets elements it has already written.
TYPED_TEST(ComplexParts, ConjFlipInPlaceReadsWhatItWrote) {
  using C = TypeParam;
  using R = typename TestFixture::R;
  using F = typename TestFixture::F;
  std::vector<C> v = {{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}};
  ASSERT_EQ(F::conjFlip(v.data(), v.data(), 5), orvOk);
  const R want[5][2] = {{1, 2}, {3, 4}, {5, -6}, {3, -4}, {1, -2}};
  for (int n = 0; n < 5; ++n) {
    EXPECT_EQ(v[n].re, want[n][0]) << n;
    EXPECT_EQ(v[n].im, want[n][1]) << n;
  }
}

TYPED_TEST(ComplexParts, ArgumentChecks) {
  using C = TypeParam;
  using R = typename TestFixture::R;
  using F = typename TestFixture::F;
  Guarded<C> cv(2);
  Guarded<R> r1(2), r2(2);
  C* c = cv.data();
  R* a = r1.data();
  R* b = r2.data();
  for (int len : {1, 0}) {
    const orvStatus nullStatus = orvErrNullPointer;
    EXPECT_EQ(F::real(nullptr, a, len), nullStatus);
    EXPECT_EQ(F::real(c, nullptr, len), nullStatus);
    EXPECT_EQ(F::imag(nullptr, a, len), nullStatus);
    EXPECT_EQ(F::imag(c, nullptr, len), nullStatus);
    EXPECT_EQ(F::cplxToReal(nullptr, a, b, len), nullStatus);
    EXPECT_EQ(F::cplxToReal(c, nullptr, b, len), nullStatus);
    EXPECT_EQ(F::cplxToReal(c, a, nullptr, len), nullStatus);
    EXPECT_EQ(F::conj(nullptr, c, len), nullStatus);
    EXPECT_EQ(F::conj(c, nullptr, len), nullStatus);
    EXPECT_EQ(F::conjI(nullptr, len), nullStatus);
    EXPECT_EQ(F::conjFlip(nullptr, c, len), nullStatus);
    EXPECT_EQ(F::conjFlip(c, nullptr, len), nullStatus);
    EXPECT_EQ(F::realToCplx(a, b, nullptr, len), nullStatus);
  }
  for (int len : {0, -1, INT_MIN}) {
    EXPECT_EQ(F::real(c, a, len), orvErrSize);
    EXPECT_EQ(F::imag(c, a, len), orvErrSize);
    EXPECT_EQ(F::cplxToReal(c, a, b, len), orvErrSize);
    EXPECT_EQ(F::conj(c, c, len), orvErrSize);
    EXPECT_EQ(F::conjI(c, len), orvErrSize);
    EXPECT_EQ(F::conjFlip(c, c, len), orvErrSize);
    // RealToCplx looks at its sources only after the length.
    EXPECT_EQ(F::realToCplx(nullptr, nullptr, c, len), orvErrSize);
    EXPECT_EQ(F::realToCplx(a, b, c, len), orvErrSize);
  }
  EXPECT_EQ(F::realToCplx(nullptr, nullptr, c, 1), orvErrNullPointer);
  EXPECT_TRUE(cv.untouched() && r1.untouched() && r2.untouched());
}

// The 16-bit negation over every value of `im`, and `re` never changes.
TEST(ComplexParts16sc, ConjSaturatesOnlyTheMostNegativeImaginaryPart) {
  std::vector<orv16sc> src(65536);
  for (int v = -32768; v <= 32767; ++v) src[v + 32768] = {static_cast<orv16s>(v), static_cast<orv16s>(v)};
  std::vector<orv16sc> dst(src.size()), flip(src.size()), inPlace = src;
  const int len = static_cast<int>(src.size());
  ASSERT_EQ(orvsConj_16sc(src.data(), dst.data(), len), orvOk);
  ASSERT_EQ(orvsConjFlip_16sc(src.data(), flip.data(), len), orvOk);
  ASSERT_EQ(orvsConj_16sc_I(inPlace.data(), len), orvOk);
  for (int v = -32768; v <= 32767; ++v) {
    const int i = v + 32768;
    const orv16s want = static_cast<orv16s>(v == -32768 ? 32767 : -v);
    ASSERT_EQ(dst[i].re, v);
    ASSERT_EQ(dst[i].im, want);
    ASSERT_EQ(inPlace[i].re, v);
    ASSERT_EQ(inPlace[i].im, want);
    ASSERT_EQ(flip[len - 1 - i].re, v);
    ASSERT_EQ(flip[len - 1 - i].im, want);
  }
}

TEST(ComplexPartsKnownValues, Examples) {
  const orv16sc a[2] = {{3, -32768}, {-32768, 5}};
  orv16sc out[2];
  ASSERT_EQ(orvsConj_16sc(a, out, 2), orvOk);
  EXPECT_EQ(out[0].re, 3);
  EXPECT_EQ(out[0].im, 32767);
  EXPECT_EQ(out[1].re, -32768);
  EXPECT_EQ(out[1].im, -5);

  orv32fc z = {1.0f, 0.0f};
  ASSERT_EQ(orvsConj_32fc_I(&z, 1), orvOk);
  EXPECT_EQ(bits<std::uint32_t>(z.re), 0x3f800000u);
  EXPECT_EQ(bits<std::uint32_t>(z.im), 0x80000000u);

  const orv32f seven = 7.0f;
  orv32fc c = {-1.0f, -1.0f};
  ASSERT_EQ(orvsRealToCplx_32f(nullptr, &seven, &c, 1), orvOk);
  EXPECT_EQ(bits<std::uint32_t>(c.re), 0u);
  EXPECT_EQ(c.im, 7.0f);

  const orv16sc f[2] = {{1, 2}, {3, 4}};
  orv16sc g[2];
  ASSERT_EQ(orvsConjFlip_16sc(f, g, 2), orvOk);
  EXPECT_EQ(g[0].re, 3);
  EXPECT_EQ(g[0].im, -4);
  EXPECT_EQ(g[1].re, 1);
  EXPECT_EQ(g[1].im, -2);
}

}  // namespace
