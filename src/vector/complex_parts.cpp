// Taking complex vectors apart, putting them together, and conjugating them.
// Floating elements move as raw words (orv32f as 32-bit, orv64f as 64-bit
// integers) and never pass through floating-point arithmetic, so every bit
// pattern, a signalling NaN included, arrives unchanged; a floating
// conjugate flips the sign bit of `im` and nothing else. The 16-bit
// conjugate saturates: -32768 becomes 32767.
#include <cstdint>

#include "core/internal.hpp"

namespace orv {
namespace {

// Integer words that may alias the element types they stand in for.
using Word16 = orv16s;
using Word32 __attribute__((may_alias)) = std::uint32_t;
using Word64 __attribute__((may_alias)) = std::uint64_t;

// The word that carries one part of a complex element of each type.
template <typename C>
struct Parts;
template <>
struct Parts<orv16sc> {
  using Word = Word16;
  // The negative of `im`, saturated.
  static Word negate(Word w) { return w == -32768 ? static_cast<Word>(32767) : static_cast<Word>(-w); }
};
template <>
struct Parts<orv32fc> {
  using Word = Word32;
  static Word negate(Word w) { return w ^ 0x80000000u; }
};
template <>
struct Parts<orv64fc> {
  using Word = Word64;
  static Word negate(Word w) { return w ^ 0x8000000000000000ull; }
};

// A complex element as its two words.
template <typename C>
struct __attribute__((may_alias)) WordPair {
  typename Parts<C>::Word re;
  typename Parts<C>::Word im;
};

template <typename C>
inline const WordPair<C>* asWords(const C* p) {
  static_assert(sizeof(WordPair<C>) == sizeof(C), "a complex element is two words");
  return reinterpret_cast<const WordPair<C>*>(p);
}
template <typename C>
inline WordPair<C>* asWords(C* p) {
  return reinterpret_cast<WordPair<C>*>(p);
}
template <typename C, typename R>
inline typename Parts<C>::Word* asWords(R* p) {
  static_assert(sizeof(typename Parts<C>::Word) == sizeof(R), "a part is one word");
  return reinterpret_cast<typename Parts<C>::Word*>(p);
}
template <typename C, typename R>
inline const typename Parts<C>::Word* asWords(const R* p) {
  return reinterpret_cast<const typename Parts<C>::Word*>(p);
}

template <typename C, typename R>
orvStatus realKernel(const C* src, R* dstRe, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dstRe));
  const auto* s = asWords(src);
  auto* d = asWords<C>(dstRe);
  for (int n = 0; n < len; ++n) d[n] = s[n].re;
  return orvOk;
}

template <typename C, typename R>
orvStatus imagKernel(const C* src, R* dstIm, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dstIm));
  const auto* s = asWords(src);
  auto* d = asWords<C>(dstIm);
  for (int n = 0; n < len; ++n) d[n] = s[n].im;
  return orvOk;
}

// True if the source and the two output vectors share no byte.
template <typename C, typename R>
bool disjoint(const C* src, int len, const R* a, const R* b) {
  const auto begin = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
  const std::uintptr_t s0 = begin(src), s1 = s0 + sizeof(C) * static_cast<std::size_t>(len);
  const std::uintptr_t a0 = begin(a), a1 = a0 + sizeof(R) * static_cast<std::size_t>(len);
  const std::uintptr_t b0 = begin(b), b1 = b0 + sizeof(R) * static_cast<std::size_t>(len);
  const auto apart = [](std::uintptr_t x0, std::uintptr_t x1, std::uintptr_t y0, std::uintptr_t y1) {
    return x1 <= y0 || y1 <= x0;
  };
  return apart(s0, s1, a0, a1) && apart(s0, s1, b0, b1) && apart(a0, a1, b0, b1);
}

// Writes `dstRe` for the largest block whose length is a multiple of four,
// then `dstIm` for that block, then the rest of `dstRe`, then the rest of
// `dstIm`. That order shows only when the outputs overlap.
template <typename C, typename R>
orvStatus cplxToRealKernel(const C* src, R* dstRe, R* dstIm, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dstRe, dstIm));
  const auto* s = asWords(src);
  auto* re = asWords<C>(dstRe);
  auto* im = asWords<C>(dstIm);
  if (disjoint(src, len, dstRe, dstIm)) {
    // No write can be seen by a later read or overwrite another, so one
    // pass gives the same result as the ordered passes below.
    for (int n = 0; n < len; ++n) {
      re[n] = s[n].re;
      im[n] = s[n].im;
    }
    return orvOk;
  }
  const int block = len & ~3;
  for (int n = 0; n < block; ++n) re[n] = s[n].re;
  for (int n = 0; n < block; ++n) im[n] = s[n].im;
  for (int n = block; n < len; ++n) re[n] = s[n].re;
  for (int n = block; n < len; ++n) im[n] = s[n].im;
  return orvOk;
}

// Either source may be null (its part becomes 0), but not both. The checks
// run in their own order: `dst`, then the length, then the sources.
template <typename C, typename R>
orvStatus realToCplxKernel(const R* srcRe, const R* srcIm, C* dst, int len) {
  if (dst == nullptr) return orvErrNullPointer;
  if (len < 1) return orvErrSize;
  if (srcRe == nullptr && srcIm == nullptr) return orvErrNullPointer;
  using Word = typename Parts<C>::Word;
  auto* d = asWords(dst);
  const Word* re = asWords<C>(srcRe);
  const Word* im = asWords<C>(srcIm);
  if (re == nullptr) {
    for (int n = 0; n < len; ++n) d[n] = {Word{0}, im[n]};
  } else if (im == nullptr) {
    for (int n = 0; n < len; ++n) d[n] = {re[n], Word{0}};
  } else {
    for (int n = 0; n < len; ++n) d[n] = {re[n], im[n]};
  }
  return orvOk;
}

template <typename C>
orvStatus conjKernel(const C* src, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  const auto* s = asWords(src);
  auto* d = asWords(dst);
  for (int n = 0; n < len; ++n) d[n] = {s[n].re, Parts<C>::negate(s[n].im)};
  return orvOk;
}

template <typename C>
orvStatus conjInPlaceKernel(C* srcDst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, srcDst));
  auto* d = asWords(srcDst);
  for (int n = 0; n < len; ++n) d[n].im = Parts<C>::negate(d[n].im);
  return orvOk;
}

// Walks `src` forwards and `dst` backwards, one element at a time, so that
// with `src` equal to `dst` the second half reads what the first half wrote.
template <typename C>
orvStatus conjFlipKernel(const C* src, C* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  const auto* s = asWords(src);
  auto* d = asWords(dst);
  for (int n = 0; n < len; ++n) {
    const WordPair<C> v = s[n];
    d[len - 1 - n] = {v.re, Parts<C>::negate(v.im)};
  }
  return orvOk;
}

}  // namespace
}  // namespace orv

using namespace orv;

extern "C" {

orvStatus orvsReal_64fc(const orv64fc* src, orv64f* dstRe, int len) { return realKernel(src, dstRe, len); }
orvStatus orvsReal_32fc(const orv32fc* src, orv32f* dstRe, int len) { return realKernel(src, dstRe, len); }
orvStatus orvsReal_16sc(const orv16sc* src, orv16s* dstRe, int len) { return realKernel(src, dstRe, len); }

orvStatus orvsImag_64fc(const orv64fc* src, orv64f* dstIm, int len) { return imagKernel(src, dstIm, len); }
orvStatus orvsImag_32fc(const orv32fc* src, orv32f* dstIm, int len) { return imagKernel(src, dstIm, len); }
orvStatus orvsImag_16sc(const orv16sc* src, orv16s* dstIm, int len) { return imagKernel(src, dstIm, len); }

orvStatus orvsCplxToReal_64fc(const orv64fc* src, orv64f* dstRe, orv64f* dstIm, int len) {
  return cplxToRealKernel(src, dstRe, dstIm, len);
}
orvStatus orvsCplxToReal_32fc(const orv32fc* src, orv32f* dstRe, orv32f* dstIm, int len) {
  return cplxToRealKernel(src, dstRe, dstIm, len);
}
orvStatus orvsCplxToReal_16sc(const orv16sc* src, orv16s* dstRe, orv16s* dstIm, int len) {
  return cplxToRealKernel(src, dstRe, dstIm, len);
}

orvStatus orvsRealToCplx_64f(const orv64f* srcRe, const orv64f* srcIm, orv64fc* dst, int len) {
  return realToCplxKernel(srcRe, srcIm, dst, len);
}
orvStatus orvsRealToCplx_32f(const orv32f* srcRe, const orv32f* srcIm, orv32fc* dst, int len) {
  return realToCplxKernel(srcRe, srcIm, dst, len);
}
orvStatus orvsRealToCplx_16s(const orv16s* srcRe, const orv16s* srcIm, orv16sc* dst, int len) {
  return realToCplxKernel(srcRe, srcIm, dst, len);
}

orvStatus orvsConj_64fc(const orv64fc* src, orv64fc* dst, int len) { return conjKernel(src, dst, len); }
orvStatus orvsConj_32fc(const orv32fc* src, orv32fc* dst, int len) { return conjKernel(src, dst, len); }
orvStatus orvsConj_16sc(const orv16sc* src, orv16sc* dst, int len) { return conjKernel(src, dst, len); }

orvStatus orvsConj_64fc_I(orv64fc* srcDst, int len) { return conjInPlaceKernel(srcDst, len); }
orvStatus orvsConj_32fc_I(orv32fc* srcDst, int len) { return conjInPlaceKernel(srcDst, len); }
orvStatus orvsConj_16sc_I(orv16sc* srcDst, int len) { return conjInPlaceKernel(srcDst, len); }

orvStatus orvsConjFlip_64fc(const orv64fc* src, orv64fc* dst, int len) { return conjFlipKernel(src, dst, len); }
orvStatus orvsConjFlip_32fc(const orv32fc* src, orv32fc* dst, int len) { return conjFlipKernel(src, dst, len); }
orvStatus orvsConjFlip_16sc(const orv16sc* src, orv16sc* dst, int len) { return conjFlipKernel(src, dst, len); }

}  // extern "C"
