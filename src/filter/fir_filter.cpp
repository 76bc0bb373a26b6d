// Single-rate FIR filtering for all fourteen families: the block forms on a
// state, the single-sample forms, and the stateless forms with the caller's
// taps and delay line. One template per form over the family traits; the
// exports at the end are thin wrappers.
#include "filter/fir_kernels.hpp"

namespace orv {
namespace filter {
namespace {

// Whether a block call of `len` samples takes the FFT kernel. The
// out-of-place forms (and the in-place forms of complex-tap families) need a
// block longer than the transform; the in-place forms of real-tap families
// take it for any length once the state has the path.
template <typename F>
bool takesFft(const orvsFIRState* s, int len, bool inPlace) {
  if constexpr (F::kFft == FirFft::None) {
    (void)s;
    (void)len;
    (void)inPlace;
    return false;
  } else {
    if (s->fftLen <= 0) return false;
    if (inPlace && !F::kComplex) return true;
    return len > s->fftLen;
  }
}

// The block on a single-rate state, arguments checked.
template <typename F>
orvStatus runBlock(orvsFIRState* s, const typename F::Sample* src, typename F::Sample* dst,
                   int len, int scaleFactor, bool fft) {
  if constexpr (F::kFft != FirFft::None) {
    if (fft) return firFftBlock<F>(s, src, dst, len, scaleFactor);
  }
  (void)fft;
  firDirectBlock<F>(s, src, dst, len, FirOutput<F>(scaleFactor, s->tapsFactor));
  return orvOk;
}

template <typename F>
orvStatus block(const typename F::Sample* src, typename F::Sample* dst, int len,
                orvsFIRState* s, int scaleFactor) {
  if (s == nullptr) return orvErrNullPointer;
  if (s->tag == F::kMultiTag) return firMultiRateBlock<F>(s, src, dst, len, scaleFactor);
  if (s->tag != F::kSingleTag) return orvErrContextMismatch;
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  return runBlock<F>(s, src, dst, len, scaleFactor, takesFft<F>(s, len, false));
}

// In place: the block is filtered from a temporary copy into srcDst. When
// the FFT kernel runs, the copy has a zeroed margin of tapsLen samples in
// front, since one of its branches reads before the start of its source.
template <typename F>
orvStatus blockInPlace(typename F::Sample* srcDst, int len, orvsFIRState* s, int scaleFactor) {
  using S = typename F::Sample;
  if (s == nullptr) return orvErrNullPointer;
  if (s->tag == F::kMultiTag) return firMultiRateBlockInPlace<F>(s, srcDst, len, scaleFactor);
  if (s->tag != F::kSingleTag) return orvErrContextMismatch;
  ORV_RETURN_IF_ERROR(checkVectors(len, srcDst));
  const bool fft = takesFft<F>(s, len, true);
  const std::int64_t margin = fft ? s->tapsLen : 0;
  ScopedBuffer<S> copy(margin + len);
  if (!copy) return orvErrNoMemory;
  S* src = copy.get() + margin;
  std::memset(static_cast<void*>(copy.get()), 0, sizeof(S) * static_cast<std::size_t>(margin));
  std::memcpy(src, srcDst, sizeof(S) * static_cast<std::size_t>(len));
  return runBlock<F>(s, src, srcDst, len, scaleFactor, fft);
}

template <typename F>
orvStatus one(typename F::Sample x, typename F::Sample* dst, orvsFIRState* s, int scaleFactor) {
  if (s == nullptr) return orvErrNullPointer;
  if (s->tag != F::kSingleTag) return orvErrContextMismatch;
  if (dst == nullptr) return orvErrNullPointer;
  *dst = firStep<F, false>(firRevTaps<F>(s), s->tapsLen, firDelay<F>(s), s->dlyIndex, x,
                           FirOutput<F>(scaleFactor, s->tapsFactor));
  return orvOk;
}

// ---- Stateless forms ---------------------------------------------------------------

template <typename F>
orvStatus direct(const typename F::Sample* src, typename F::Sample* dst, int len,
                 const typename F::Tap* taps, int tapsLen, int tapsFactor,
                 typename F::Sample* dlyLine, int* dlyLineIndex, int scaleFactor) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if (taps == nullptr) return orvErrNullPointer;
  if (tapsLen < 1) return orvErrFirLength;
  if (anyNull(dlyLine, dlyLineIndex)) return orvErrNullPointer;
  int index = firDirectIndex(*dlyLineIndex, tapsLen);
  firDirectStateless<F>(src, dst, len, taps, tapsLen, dlyLine, index,
                        FirOutput<F>(scaleFactor, tapsFactor));
  *dlyLineIndex = index;
  return orvOk;
}

template <typename F>
orvStatus directOne(typename F::Sample x, typename F::Sample* dst, const typename F::Tap* taps,
                    int tapsLen, int tapsFactor, typename F::Sample* dlyLine, int* dlyLineIndex,
                    int scaleFactor) {
  if (anyNull(dst, taps)) return orvErrNullPointer;
  if (tapsLen < 1) return orvErrFirLength;
  if (anyNull(dlyLine, dlyLineIndex)) return orvErrNullPointer;
  int index = firDirectIndex(*dlyLineIndex, tapsLen);
  *dst = firStep<F, true>(taps, tapsLen, dlyLine, index, x, FirOutput<F>(scaleFactor, tapsFactor));
  *dlyLineIndex = index;
  return orvOk;
}

// The in-place single sample: the pointer is tested before it is read.
template <typename F>
orvStatus directOneInPlace(typename F::Sample* srcDst, const typename F::Tap* taps, int tapsLen,
                           int tapsFactor, typename F::Sample* dlyLine, int* dlyLineIndex,
                           int scaleFactor) {
  if (srcDst == nullptr) return orvErrNullPointer;
  return directOne<F>(*srcDst, srcDst, taps, tapsLen, tapsFactor, dlyLine, dlyLineIndex,
                      scaleFactor);
}

}  // namespace
}  // namespace filter
}  // namespace orv

using namespace orv::filter;

// The names of a family whose samples are floating point (no scaleFactor).
// SUFFIX is the state suffix (_32f, 64f_32f), TAPS and SAMPLES the parts
// around _Direct_ in the stateless names.
#define ORV_FIR_FLOAT_SAMPLE_EXPORTS(SUFFIX, TAPS, SAMPLES, F, TAP, SAMPLE)                     \
  orvStatus orvsFIR##SUFFIX(const SAMPLE* src, SAMPLE* dst, int len, orvsFIRState* state) {    \
    return block<F>(src, dst, len, state, 0);                                                    \
  }                                                                                              \
  orvStatus orvsFIR##SUFFIX##_I(SAMPLE* srcDst, int len, orvsFIRState* state) {                \
    return blockInPlace<F>(srcDst, len, state, 0);                                               \
  }                                                                                              \
  orvStatus orvsFIROne##SUFFIX(SAMPLE src, SAMPLE* dst, orvsFIRState* state) {                 \
    return one<F>(src, dst, state, 0);                                                           \
  }                                                                                              \
  orvStatus orvsFIR##TAPS##_Direct_##SAMPLES(const SAMPLE* src, SAMPLE* dst, int len,          \
                                              const TAP* taps, int tapsLen, SAMPLE* dlyLine,    \
                                              int* dlyLineIndex) {                              \
    return direct<F>(src, dst, len, taps, tapsLen, 0, dlyLine, dlyLineIndex, 0);                \
  }                                                                                              \
  orvStatus orvsFIR##TAPS##_Direct_##SAMPLES##_I(SAMPLE* srcDst, int len, const TAP* taps,     \
                                                  int tapsLen, SAMPLE* dlyLine,                 \
                                                  int* dlyLineIndex) {                          \
    return direct<F>(srcDst, srcDst, len, taps, tapsLen, 0, dlyLine, dlyLineIndex, 0);          \
  }                                                                                              \
  orvStatus orvsFIROne##TAPS##_Direct_##SAMPLES(SAMPLE src, SAMPLE* dst, const TAP* taps,      \
                                                 int tapsLen, SAMPLE* dlyLine,                  \
                                                 int* dlyLineIndex) {                           \
    return directOne<F>(src, dst, taps, tapsLen, 0, dlyLine, dlyLineIndex, 0);                  \
  }                                                                                              \
  orvStatus orvsFIROne##TAPS##_Direct_##SAMPLES##_I(SAMPLE* srcDst, const TAP* taps,           \
                                                     int tapsLen, SAMPLE* dlyLine,              \
                                                     int* dlyLineIndex) {                       \
    return directOneInPlace<F>(srcDst, taps, tapsLen, 0, dlyLine, dlyLineIndex, 0);             \
  }

// The state forms of a family with integer samples (scaleFactor).
#define ORV_FIR_INT_STATE_EXPORTS(SUFFIX, F, SAMPLE)                                            \
  orvStatus orvsFIR##SUFFIX##_Sfs(const SAMPLE* src, SAMPLE* dst, int len, orvsFIRState* state, \
                                  int scaleFactor) {                                            \
    return block<F>(src, dst, len, state, scaleFactor);                                         \
  }                                                                                             \
  orvStatus orvsFIR##SUFFIX##_ISfs(SAMPLE* srcDst, int len, orvsFIRState* state,              \
                                   int scaleFactor) {                                           \
    return blockInPlace<F>(srcDst, len, state, scaleFactor);                                    \
  }                                                                                             \
  orvStatus orvsFIROne##SUFFIX##_Sfs(SAMPLE src, SAMPLE* dst, orvsFIRState* state,            \
                                     int scaleFactor) {                                         \
    return one<F>(src, dst, state, scaleFactor);                                                \
  }

// The stateless forms of a family with floating taps and integer samples.
#define ORV_FIR_INT_DIRECT_EXPORTS(TAPS, SAMPLES, F, TAP, SAMPLE)                              \
  orvStatus orvsFIR##TAPS##_Direct_##SAMPLES##_Sfs(const SAMPLE* src, SAMPLE* dst, int len,   \
                                                    const TAP* taps, int tapsLen,             \
                                                    SAMPLE* dlyLine, int* dlyLineIndex,       \
                                                    int scaleFactor) {                        \
    return direct<F>(src, dst, len, taps, tapsLen, 0, dlyLine, dlyLineIndex, scaleFactor);    \
  }                                                                                            \
  orvStatus orvsFIR##TAPS##_Direct_##SAMPLES##_ISfs(SAMPLE* srcDst, int len, const TAP* taps, \
                                                     int tapsLen, SAMPLE* dlyLine,            \
                                                     int* dlyLineIndex, int scaleFactor) {    \
    return direct<F>(srcDst, srcDst, len, taps, tapsLen, 0, dlyLine, dlyLineIndex,            \
                     scaleFactor);                                                             \
  }                                                                                            \
  orvStatus orvsFIROne##TAPS##_Direct_##SAMPLES##_Sfs(SAMPLE src, SAMPLE* dst, const TAP* taps, \
                                                       int tapsLen, SAMPLE* dlyLine,          \
                                                       int* dlyLineIndex, int scaleFactor) {  \
    return directOne<F>(src, dst, taps, tapsLen, 0, dlyLine, dlyLineIndex, scaleFactor);      \
  }                                                                                            \
  orvStatus orvsFIROne##TAPS##_Direct_##SAMPLES##_ISfs(SAMPLE* srcDst, const TAP* taps,      \
                                                        int tapsLen, SAMPLE* dlyLine,         \
                                                        int* dlyLineIndex, int scaleFactor) { \
    return directOneInPlace<F>(srcDst, taps, tapsLen, 0, dlyLine, dlyLineIndex, scaleFactor); \
  }

// The stateless forms of an integer-tap family: tapsFactor follows tapsLen.
#define ORV_FIR_INTTAP_DIRECT_EXPORTS(TAPS, SAMPLES, F, TAP, SAMPLE)                           \
  orvStatus orvsFIR##TAPS##_Direct_##SAMPLES##_Sfs(                                            \
      const SAMPLE* src, SAMPLE* dst, int len, const TAP* taps, int tapsLen, int tapsFactor,  \
      SAMPLE* dlyLine, int* dlyLineIndex, int scaleFactor) {                                   \
    return direct<F>(src, dst, len, taps, tapsLen, tapsFactor, dlyLine, dlyLineIndex,          \
                     scaleFactor);                                                              \
  }                                                                                             \
  orvStatus orvsFIR##TAPS##_Direct_##SAMPLES##_ISfs(SAMPLE* srcDst, int len, const TAP* taps,  \
                                                     int tapsLen, int tapsFactor,              \
                                                     SAMPLE* dlyLine, int* dlyLineIndex,       \
                                                     int scaleFactor) {                        \
    return direct<F>(srcDst, srcDst, len, taps, tapsLen, tapsFactor, dlyLine, dlyLineIndex,    \
                     scaleFactor);                                                              \
  }                                                                                             \
  orvStatus orvsFIROne##TAPS##_Direct_##SAMPLES##_Sfs(                                         \
      SAMPLE src, SAMPLE* dst, const TAP* taps, int tapsLen, int tapsFactor, SAMPLE* dlyLine,  \
      int* dlyLineIndex, int scaleFactor) {                                                    \
    return directOne<F>(src, dst, taps, tapsLen, tapsFactor, dlyLine, dlyLineIndex,            \
                        scaleFactor);                                                           \
  }                                                                                             \
  orvStatus orvsFIROne##TAPS##_Direct_##SAMPLES##_ISfs(SAMPLE* srcDst, const TAP* taps,       \
                                                        int tapsLen, int tapsFactor,           \
                                                        SAMPLE* dlyLine, int* dlyLineIndex,    \
                                                        int scaleFactor) {                     \
    return directOneInPlace<F>(srcDst, taps, tapsLen, tapsFactor, dlyLine, dlyLineIndex,       \
                               scaleFactor);                                                    \
  }

extern "C" {

ORV_FIR_FLOAT_SAMPLE_EXPORTS(_32f, , 32f, Fir32f, orv32f, orv32f)
ORV_FIR_FLOAT_SAMPLE_EXPORTS(_32fc, , 32fc, Fir32fc, orv32fc, orv32fc)
ORV_FIR_FLOAT_SAMPLE_EXPORTS(_64f, , 64f, Fir64f, orv64f, orv64f)
ORV_FIR_FLOAT_SAMPLE_EXPORTS(_64fc, , 64fc, Fir64fc, orv64fc, orv64fc)
ORV_FIR_FLOAT_SAMPLE_EXPORTS(64f_32f, 64f, 32f, Fir64f32f, orv64f, orv32f)
ORV_FIR_FLOAT_SAMPLE_EXPORTS(64fc_32fc, 64fc, 32fc, Fir64fc32fc, orv64fc, orv32fc)

ORV_FIR_INT_STATE_EXPORTS(32f_16s, Fir32f16s, orv16s)
ORV_FIR_INT_STATE_EXPORTS(32fc_16sc, Fir32fc16sc, orv16sc)
ORV_FIR_INT_STATE_EXPORTS(64f_16s, Fir64f16s, orv16s)
ORV_FIR_INT_STATE_EXPORTS(64fc_16sc, Fir64fc16sc, orv16sc)
ORV_FIR_INT_STATE_EXPORTS(64f_32s, Fir64f32s, orv32s)
ORV_FIR_INT_STATE_EXPORTS(64fc_32sc, Fir64fc32sc, orv32sc)
ORV_FIR_INT_STATE_EXPORTS(32s_16s, Fir32s16s, orv16s)
ORV_FIR_INT_STATE_EXPORTS(32sc_16sc, Fir32sc16sc, orv16sc)

ORV_FIR_INT_DIRECT_EXPORTS(32f, 16s, Fir32f16s, orv32f, orv16s)
ORV_FIR_INT_DIRECT_EXPORTS(32fc, 16sc, Fir32fc16sc, orv32fc, orv16sc)
ORV_FIR_INT_DIRECT_EXPORTS(64f, 16s, Fir64f16s, orv64f, orv16s)
ORV_FIR_INT_DIRECT_EXPORTS(64fc, 16sc, Fir64fc16sc, orv64fc, orv16sc)
ORV_FIR_INT_DIRECT_EXPORTS(64f, 32s, Fir64f32s, orv64f, orv32s)
ORV_FIR_INT_DIRECT_EXPORTS(64fc, 32sc, Fir64fc32sc, orv64fc, orv32sc)
ORV_FIR_INTTAP_DIRECT_EXPORTS(32s, 16s, Fir32s16s, orv32s, orv16s)
ORV_FIR_INTTAP_DIRECT_EXPORTS(32sc, 16sc, Fir32sc16sc, orv32sc, orv16sc)

}  // extern "C"
