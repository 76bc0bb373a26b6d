// The filter state records and what the filter families share about them.
//
// orvsFIRState is the one record of every FIR filter, single-rate and
// multi-rate, in all fourteen (tap type, sample type) families. A family is
// described once by a FirFamily traits type below; creation, Get, Set and
// Free are templates over those traits (fir_state.cpp), and the filtering
// kernels read the same record through the same traits.
//
// The records of the adaptive FIR and of the IIR filters belong in this
// header as well, next to this one; they share the tag rule (tagOf) and the
// allocator, but none of the FIR layout.
#pragma once

#include <cstdint>
#include <type_traits>

#include "core/internal.hpp"

// ---- The FIR state record ---------------------------------------------------
//
// One layout for all families; the fields that a family or a rate does not
// use stay zero or null. Every pointer is owned and released by the family's
// Free. Counts are in samples (or taps) of the family's own element types,
// complex families included: a complex sample counts once, nothing is stored
// doubled.
struct orvsFIRState {
  // The family and rate: four ASCII letters, first letter in the top byte.
  // The first field of the record, so that any state can be told by it.
  std::uint32_t tag;

  // Taps in reversed order: revTaps[j] is taps[tapsLen-1-j]. Floating-tap
  // families keep exact copies; integer-tap families keep the taps after the
  // shift that fits them into 16 bits (value = revTaps[j] * 2^tapsFactor).
  // Multi-rate states keep them as well, for GetTaps.
  void* revTaps;

  // Delay buffer d of sample type. Single-rate: 3 * tapsLen + 4 samples. The
  // run d[dlyIndex] .. d[dlyIndex+tapsLen-1] holds the last tapsLen samples,
  // oldest first; a sample written singly lands at d[i] and at d[i+tapsLen];
  // the third part (plus 4) is where a block call stages new samples.
  // Multi-rate: linear, d[0] .. d[dlyLen-1] the past samples, oldest first.
  void* dlyLine;

  int tapsLen;       // at least 1
  int upFactor;      // multi-rate only (0 in single-rate state)
  // Samples that a block call stages into the delay buffer: tapsLen rounded
  // up to a multiple of 4, plus 1 in the families that say so (single-rate).
  int stagingLen;
  int downFactor;     // multi-rate only
  int outputsStaged;  // multi-rate only: outputs computed from the delay buffer

  // Floating-tap families with an FFT path: the transform context (real or
  // complex, of the taps' precision) and the spectrum of the taps, natural
  // order, zero-padded to fftLen and transformed forward unscaled (real taps
  // in Perm layout, fftLen reals; complex taps fftLen complex values).
  orvsFFTContext* fftContext;
  void* fftTaps;
  int fftLen;  // transform length, or -1 when there is no FFT path

  // Single-rate: running position, 0 .. tapsLen-1. Multi-rate: dlyLen, the
  // number of past samples in the linear delay buffer.
  int dlyIndex;

  // Multi-rate tables (null in single-rate state). Integer-tap families keep
  // their 16-bit polyphase taps in shadowTaps instead of polyTaps.
  int* stepTable;
  void* polyTaps;
  int lanesLen;  // multi-rate mode 1 only
  int mrMode;    // multi-rate: 1, 2 or 3; 0 where the family keeps no mode

  // Integer-tap families only. tapsFactor is the stored power of two of the
  // taps (the caller's factor plus the shift of creation). shadowTaps is a
  // 16-bit copy: single-rate real, each reversed tap truncated to 16 bits;
  // single-rate complex, 2 * tapsLen pairs, (re, -im) of each reversed tap
  // and then (im, re) of each, the layout of a pairwise multiply-add; in
  // multi-rate state the 16-bit polyphase taps.
  int tapsFactor;
  void* shadowTaps;
};

namespace orv {
namespace filter {

// ---- Tags ---------------------------------------------------------------------

// The word of a four-letter tag: tagOf("FI01") is 0x46493031.
constexpr std::uint32_t tagOf(const char (&s)[5]) {
  return (static_cast<std::uint32_t>(static_cast<unsigned char>(s[0])) << 24) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(s[1])) << 16) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(s[2])) << 8) |
         static_cast<std::uint32_t>(static_cast<unsigned char>(s[3]));
}

// ---- Element types ------------------------------------------------------------

template <typename T>
struct IsComplex : std::false_type {};
template <>
struct IsComplex<orv16sc> : std::true_type {};
template <>
struct IsComplex<orv32sc> : std::true_type {};
template <>
struct IsComplex<orv32fc> : std::true_type {};
template <>
struct IsComplex<orv64fc> : std::true_type {};

// ---- FIR families ---------------------------------------------------------------

// Where a family's FFT path comes from: the real or the complex transform in
// the taps' precision, or none at all (integer taps).
enum class FirFft { None, Real32, Real64, Complex32, Complex64 };

template <typename TapT, typename SampleT, std::uint32_t SingleTag, std::uint32_t MultiTag,
          FirFft Fft, int StagingExtra>
struct FirFamily {
  using Tap = TapT;
  using Sample = SampleT;
  static constexpr std::uint32_t kSingleTag = SingleTag;
  static constexpr std::uint32_t kMultiTag = MultiTag;
  static constexpr FirFft kFft = Fft;
  // 1 when stagingLen is tapsLen rounded up to 4 plus one, else 0.
  static constexpr int kStagingExtra = StagingExtra;
  static constexpr bool kComplex = IsComplex<Tap>::value;
  static constexpr bool kIntegerTaps = std::is_same<Tap, orv32s>::value ||
                                       std::is_same<Tap, orv32sc>::value;

  // Get, Set and Free take either rate of the family.
  static constexpr bool accepts(std::uint32_t tag) { return tag == kSingleTag || tag == kMultiTag; }
};

using Fir32f = FirFamily<orv32f, orv32f, tagOf("FI01"), tagOf("FI03"), FirFft::Real32, 1>;
using Fir32fc = FirFamily<orv32fc, orv32fc, tagOf("FI02"), tagOf("FI04"), FirFft::Complex32, 0>;
using Fir32f16s = FirFamily<orv32f, orv16s, tagOf("FI05"), tagOf("FI07"), FirFft::Real32, 1>;
using Fir32fc16sc =
    FirFamily<orv32fc, orv16sc, tagOf("FI06"), tagOf("FI08"), FirFft::Complex32, 1>;
using Fir32s16s = FirFamily<orv32s, orv16s, tagOf("FI09"), tagOf("FI11"), FirFft::None, 1>;
using Fir32sc16sc = FirFamily<orv32sc, orv16sc, tagOf("FI10"), tagOf("FI12"), FirFft::None, 1>;
using Fir64f = FirFamily<orv64f, orv64f, tagOf("FI13"), tagOf("FI15"), FirFft::Real64, 1>;
using Fir64fc = FirFamily<orv64fc, orv64fc, tagOf("FI14"), tagOf("FI16"), FirFft::Complex64, 0>;
using Fir64f32f = FirFamily<orv64f, orv32f, tagOf("FI17"), tagOf("FI19"), FirFft::Real64, 1>;
using Fir64fc32fc =
    FirFamily<orv64fc, orv32fc, tagOf("FI18"), tagOf("FI20"), FirFft::Complex64, 0>;
using Fir64f32s = FirFamily<orv64f, orv32s, tagOf("FI21"), tagOf("FI23"), FirFft::Real64, 1>;
using Fir64fc32sc =
    FirFamily<orv64fc, orv32sc, tagOf("FI22"), tagOf("FI24"), FirFft::Complex64, 0>;
using Fir64f16s = FirFamily<orv64f, orv16s, tagOf("FI25"), tagOf("FI27"), FirFft::Real64, 1>;
using Fir64fc16sc =
    FirFamily<orv64fc, orv16sc, tagOf("FI26"), tagOf("FI28"), FirFft::Complex64, 0>;

// The transform of a family's FFT path, in the taps' precision, through the
// library's own names: creation with flag orvScaleInverse (forward unscaled,
// inverse divided by the length) and hint 0, the work size, both directions
// (a null work buffer means the transform takes its own), and the product of
// two spectra in place. Elem is the element of the spectrum, the tap type.
template <FirFft P>
struct FirFftEngine;

#define ORV_FIR_FFT_ENGINE(P, ELEM, KIND, FWD, INV, MUL, SUF)                                  \
  template <>                                                                                 \
  struct FirFftEngine<FirFft::P> {                                                            \
    using Elem = ELEM;                                                                        \
    static orvStatus init(orvsFFTContext** c, int order) {                                    \
      return orvsFFTInitAlloc_##KIND##_##SUF(c, order, orvScaleInverse, 0);                   \
    }                                                                                         \
    static void release(orvsFFTContext* c) { orvsFFTFree_##KIND##_##SUF(c); }                 \
    static orvStatus bufSize(const orvsFFTContext* c, int* n) {                               \
      return orvsFFTGetBufSize_##KIND##_##SUF(c, n);                                          \
    }                                                                                         \
    static orvStatus forward(const Elem* x, Elem* y, const orvsFFTContext* c, orv8u* w) {     \
      return orvsFFTFwd_##FWD##_##SUF(x, y, c, w);                                            \
    }                                                                                         \
    static orvStatus inverse(const Elem* x, Elem* y, const orvsFFTContext* c, orv8u* w) {     \
      return orvsFFTInv_##INV##_##SUF(x, y, c, w);                                            \
    }                                                                                         \
    static orvStatus multiply(const Elem* taps, Elem* b, int n) { return MUL(taps, b, n); }   \
  };
ORV_FIR_FFT_ENGINE(Real32, orv32f, R, RToPerm, PermToR, orvsMulPerm_32f_I, 32f)
ORV_FIR_FFT_ENGINE(Real64, orv64f, R, RToPerm, PermToR, orvsMulPerm_64f_I, 64f)
ORV_FIR_FFT_ENGINE(Complex32, orv32fc, C, CToC, CToC, orvsMul_32fc_I, 32fc)
ORV_FIR_FFT_ENGINE(Complex64, orv64fc, C, CToC, CToC, orvsMul_64fc_I, 64fc)
#undef ORV_FIR_FFT_ENGINE

// Typed views of the record's buffers.
template <typename F>
inline typename F::Tap* firRevTaps(const orvsFIRState* s) {
  return static_cast<typename F::Tap*>(s->revTaps);
}
template <typename F>
inline typename F::Sample* firDelay(const orvsFIRState* s) {
  return static_cast<typename F::Sample*>(s->dlyLine);
}

// Samples of the single-rate delay buffer for tapsLen taps.
inline std::int64_t firDelayBufferLen(int tapsLen) {
  return 3 * static_cast<std::int64_t>(tapsLen) + 4;
}

// stagingLen of a single-rate state of the family.
template <typename F>
constexpr int firStagingLen(int tapsLen) {
  return ((tapsLen + 3) & ~3) + F::kStagingExtra;
}

// The FFT order of a single-rate state with tapsLen taps, or -1 when the
// taps are too few for an FFT path (below 32 real or 16 complex taps). The
// order is the smallest one, at least 2, whose length exceeds tapsLen, one
// higher when that is below 8: 32..63 real taps give 128, 128..255 give 256.
int firFftOrder(int tapsLen, bool complexTaps);

// The 2^shift that brings integer taps into 16 bits: shift is the number of
// arithmetic halvings that take the largest magnitude to 0x7FFE or below.
// The magnitude is a wrapping 32-bit negation, so the most negative value
// stays negative and never forces a shift by itself. `values` holds n
// integers (2 per complex tap).
int firTapsShift(const orv32s* values, int n);
int firTapsShift(const orv32sc* values, int n);

// Quantises n floating taps to integers of at most 16 bits' magnitude and a
// power-of-two factor: out[i] * 2^factor approximates taps[i]. The largest
// tap lands in 16383.5 .. 32767. Taps that are all zero (or NaN) have no
// scale and give orvErrBadArgument; an infinite tap gives orvErrOutOfRange.
orvStatus firQuantizeTaps(const orv32f* taps, int n, orv32s* out, int* factor);
orvStatus firQuantizeTaps(const orv32fc* taps, int n, orv32sc* out, int* factor);

// 2^k as a float made by moving the exponent field of 1.0 by +-(|k| mod 128).
float firPow2ByExponent(int k);

// Releases a FIR state of family F and everything it owns; null is accepted.
template <typename F>
void releaseFirState(orvsFIRState* s);

// A fresh record: allocated, all fields zero or null, fftLen -1. Null when
// the allocation fails.
orvsFIRState* allocateFirRecord();

}  // namespace filter
}  // namespace orv
