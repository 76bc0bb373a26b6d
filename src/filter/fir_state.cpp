// FIR state: creation, taps, delay lines and release, for all fourteen
// families. One template per operation over the family traits of
// filter_state.hpp; the exports at the end are thin wrappers.
#include <cmath>
#include <limits>

#include "filter/filter_state.hpp"

namespace orv {
namespace filter {

namespace {

template <typename T>
T zeroValue() {
  return T{};
}

}  // namespace

// ---- Shared rules ---------------------------------------------------------------------

int firFftOrder(int tapsLen, bool complexTaps) {
  const int threshold = complexTaps ? 16 : 32;
  if (tapsLen < threshold) return -1;
  int order = 2;
  while ((static_cast<std::int64_t>(1) << order) <= tapsLen) ++order;
  if (order < 8) ++order;
  return order;
}

namespace {

// Magnitude as a wrapping 32-bit negation: the most negative value stays
// negative.
inline std::int32_t wrappingMagnitude(std::int32_t v) {
  return v < 0 ? static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(v)) : v;
}

int shiftForMagnitude(std::int32_t m) {
  int shift = 0;
  while (m > 0x7FFE) {
    m >>= 1;
    ++shift;
  }
  return shift;
}

}  // namespace

int firTapsShift(const orv32s* values, int n) {
  std::int32_t m = 0;
  for (int i = 0; i < n; ++i) {
    const std::int32_t a = wrappingMagnitude(values[i]);
    if (a > m) m = a;
  }
  return shiftForMagnitude(m);
}

int firTapsShift(const orv32sc* values, int n) {
  std::int32_t m = 0;
  for (int i = 0; i < n; ++i) {
    const std::int32_t a = wrappingMagnitude(values[i].re);
    if (a > m) m = a;
    const std::int32_t b = wrappingMagnitude(values[i].im);
    if (b > m) m = b;
  }
  return shiftForMagnitude(m);
}

namespace {

// One value of the quantisation: scaled, 0.5 away from zero added, truncated.
// A NaN converts to the integer indefinite of the x87 store, the most
// negative 32-bit value.
inline orv32s quantizeValue(float x, double scale) {
  double v = static_cast<double>(x) * scale;
  v += x >= 0.0f ? 0.5 : -0.5;
  if (std::isnan(v)) return std::numeric_limits<orv32s>::min();
  return static_cast<orv32s>(v);
}

// Finds the factor and the scale of the quantisation from the largest
// magnitude m. The two loops are those of the rule: halve down to 32767, or
// double up until the largest value passes 16383.5.
orvStatus quantizeScale(double m, double* scale, int* factor) {
  // Neither loop would end: zero never grows, infinity never shrinks.
  if (!(m > 0.0)) return orvErrBadArgument;
  if (std::isinf(m)) return orvErrOutOfRange;
  double s = 1.0;
  int f = 0;
  if (m > 32767.0) {
    do {
      m = m * 0.5;
      f = f + 1;
      s = s * 0.5;
    } while (m > 32767.0);
  } else {
    m = m + m;
    while (m < 32767.0) {
      f = f - 1;
      s = s + s;
      m = m + m;
    }
  }
  *scale = s;
  *factor = f;
  return orvOk;
}

inline void raiseMax(double& m, float x) {
  const double a = std::fabs(static_cast<double>(x));
  if (a > m) m = a;
}

}  // namespace

orvStatus firQuantizeTaps(const orv32f* taps, int n, orv32s* out, int* factor) {
  double m = 0.0;
  for (int i = 0; i < n; ++i) raiseMax(m, taps[i]);
  double scale = 1.0;
  ORV_RETURN_IF_ERROR(quantizeScale(m, &scale, factor));
  for (int i = 0; i < n; ++i) out[i] = quantizeValue(taps[i], scale);
  return orvOk;
}

orvStatus firQuantizeTaps(const orv32fc* taps, int n, orv32sc* out, int* factor) {
  double m = 0.0;
  for (int i = 0; i < n; ++i) {
    raiseMax(m, taps[i].re);
    raiseMax(m, taps[i].im);
  }
  double scale = 1.0;
  ORV_RETURN_IF_ERROR(quantizeScale(m, &scale, factor));
  for (int i = 0; i < n; ++i) {
    out[i].re = quantizeValue(taps[i].re, scale);
    out[i].im = quantizeValue(taps[i].im, scale);
  }
  return orvOk;
}

float firPow2ByExponent(int k) {
  const std::uint32_t magnitude =
      (k < 0 ? 0u - static_cast<std::uint32_t>(k) : static_cast<std::uint32_t>(k)) % 128u;
  std::uint32_t bits = bitCast<std::uint32_t>(1.0f);
  bits = k < 0 ? bits - (magnitude << 23) : bits + (magnitude << 23);
  return bitCast<float>(bits);
}

orvsFIRState* allocateFirRecord() {
  orvsFIRState* s = allocateArray<orvsFIRState>(1);
  if (s == nullptr) return nullptr;
  *s = orvsFIRState{};
  s->fftLen = -1;
  return s;
}

template <typename F>
void releaseFirState(orvsFIRState* s) {
  if (s == nullptr) return;
  orvsFree(s->dlyLine);
  orvsFree(s->polyTaps);
  orvsFree(s->stepTable);
  orvsFree(s->shadowTaps);
  orvsFree(s->revTaps);
  orvsFree(s->fftTaps);
  if constexpr (F::kFft != FirFft::None) {
    if (s->fftContext != nullptr) FirFftEngine<F::kFft>::release(s->fftContext);
  }
  orvsFree(s);
}

// ---- Delay line -----------------------------------------------------------------------

namespace {

// Loads the caller's delay line (newest first) into d[0] .. d[count-1]
// (oldest first); null means zeros.
template <typename S>
void loadDelay(S* d, const S* dlyLine, int count) {
  if (dlyLine == nullptr) {
    for (int i = 0; i < count; ++i) d[i] = zeroValue<S>();
  } else {
    for (int i = 0; i < count; ++i) d[i] = dlyLine[count - 1 - i];
  }
}

// Number of past samples a state describes, and where the run starts.
struct DelayRun {
  int start;
  int count;
};

template <typename F>
DelayRun delayRun(const orvsFIRState* s) {
  if (s->tag == F::kSingleTag) return {s->dlyIndex, s->tapsLen};
  return {0, s->dlyIndex};  // multi-rate: dlyLen samples from d[0]
}

// Fills the single-rate delay buffer of a new state: the history from the
// caller, the rest zeroed so that nothing in the record is left undefined.
template <typename F>
void initDelayBuffer(orvsFIRState* s, const typename F::Sample* dlyLine) {
  using S = typename F::Sample;
  S* d = firDelay<F>(s);
  loadDelay(d, dlyLine, s->tapsLen);
  const std::int64_t total = firDelayBufferLen(s->tapsLen);
  for (std::int64_t i = s->tapsLen; i < total; ++i) d[i] = zeroValue<S>();
  s->dlyIndex = 0;
}

// Failure of an allocation (or of the FFT set-up) during creation: nothing
// that was made survives and the caller's handle is left null.
template <typename F>
orvStatus failCreation(orvsFIRState** state, orvsFIRState* s) {
  releaseFirState<F>(s);
  *state = nullptr;
  return orvErrNoMemory;
}

// ---- Creation, floating taps --------------------------------------------------------

// The FFT path of a long filter: the taps in natural order, zero-padded to
// the transform length and transformed forward in place. False when any
// step fails; what was made is then in the record for the release.
template <typename F>
bool makeSpectrum(orvsFIRState* s, const typename F::Tap* taps) {
  using Ops = FirFftEngine<F::kFft>;
  using Elem = typename Ops::Elem;
  static_assert(std::is_same<Elem, typename F::Tap>::value, "spectrum in the tap type");
  const int order = firFftOrder(s->tapsLen, F::kComplex);
  if (order < 0) return true;
  // The FFT layer takes no order above 30; such a length could not be
  // allocated anyway.
  if (order > 30) return false;
  const int fftLen = 1 << order;
  Elem* spectrum = allocateArray<Elem>(fftLen);
  if (spectrum == nullptr) return false;
  s->fftTaps = spectrum;
  s->fftLen = fftLen;
  for (int i = 0; i < s->tapsLen; ++i) spectrum[i] = taps[i];
  for (int i = s->tapsLen; i < fftLen; ++i) spectrum[i] = zeroValue<Elem>();
  // The context is written only on success; a null one fails as well.
  orvsFFTContext* context = nullptr;
  const orvStatus made = Ops::init(&context, order);
  s->fftContext = context;
  if (made != orvOk || context == nullptr) return false;
  return Ops::forward(spectrum, spectrum, context, nullptr) == orvOk;
}

template <typename F>
orvStatus initAllocFloat(orvsFIRState** state, const typename F::Tap* taps, int tapsLen,
                         const typename F::Sample* dlyLine) {
  using Tap = typename F::Tap;
  using Sample = typename F::Sample;
  if (anyNull(state, taps)) return orvErrNullPointer;
  if (tapsLen < 1) return orvErrFirLength;

  orvsFIRState* s = allocateFirRecord();
  if (s == nullptr) return failCreation<F>(state, s);
  Tap* rev = allocateArray<Tap>(tapsLen);
  s->revTaps = rev;
  if (rev == nullptr) return failCreation<F>(state, s);
  s->dlyLine = allocateArray<Sample>(firDelayBufferLen(tapsLen));
  if (s->dlyLine == nullptr) return failCreation<F>(state, s);

  s->tag = F::kSingleTag;
  s->tapsLen = tapsLen;
  for (int j = 0; j < tapsLen; ++j) rev[j] = taps[tapsLen - 1 - j];
  initDelayBuffer<F>(s, dlyLine);
  s->stagingLen = firStagingLen<F>(tapsLen);
  if (!makeSpectrum<F>(s, taps)) return failCreation<F>(state, s);
  *state = s;
  return orvOk;
}

// ---- Creation, integer taps -----------------------------------------------------------

inline void fillShadow(orv16s* shadow, const orv32s* rev, int tapsLen) {
  for (int j = 0; j < tapsLen; ++j) shadow[j] = static_cast<orv16s>(rev[j]);
}

inline orv16s low16(std::int32_t v) { return static_cast<orv16s>(v); }
inline std::int32_t wrappingNegate(std::int32_t v) {
  return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(v));
}

inline void fillShadow(orv16sc* shadow, const orv32sc* rev, int tapsLen) {
  for (int j = 0; j < tapsLen; ++j) {
    shadow[j].re = low16(rev[j].re);
    shadow[j].im = low16(wrappingNegate(rev[j].im));
    shadow[tapsLen + j].re = low16(rev[j].im);
    shadow[tapsLen + j].im = low16(rev[j].re);
  }
}

inline orv32s shiftTap(orv32s v, int shift) { return v >> shift; }
inline orv32sc shiftTap(orv32sc v, int shift) { return {v.re >> shift, v.im >> shift}; }

template <typename F>
orvStatus initAllocInteger(orvsFIRState** state, const typename F::Tap* taps, int tapsLen,
                           int tapsFactor, const typename F::Sample* dlyLine) {
  using Tap = typename F::Tap;
  using Sample = typename F::Sample;
  // A real shadow holds one 16-bit value per tap, a complex one two pairs.
  using Shadow = std::conditional_t<F::kComplex, orv16sc, orv16s>;
  const std::int64_t shadowLen = F::kComplex ? 2 * static_cast<std::int64_t>(tapsLen) : tapsLen;
  if (anyNull(state, taps)) return orvErrNullPointer;
  if (tapsLen < 1) return orvErrFirLength;

  orvsFIRState* s = allocateFirRecord();
  if (s == nullptr) return failCreation<F>(state, s);
  if (F::kComplex) {
    s->shadowTaps = allocateArray<Shadow>(shadowLen);
    if (s->shadowTaps == nullptr) return failCreation<F>(state, s);
  }
  Tap* rev = allocateArray<Tap>(tapsLen);
  s->revTaps = rev;
  if (rev == nullptr) return failCreation<F>(state, s);
  if (!F::kComplex) {
    s->shadowTaps = allocateArray<Shadow>(shadowLen);
    if (s->shadowTaps == nullptr) return failCreation<F>(state, s);
  }
  s->dlyLine = allocateArray<Sample>(firDelayBufferLen(tapsLen));
  if (s->dlyLine == nullptr) return failCreation<F>(state, s);

  s->tag = F::kSingleTag;
  s->tapsLen = tapsLen;
  const int shift = firTapsShift(taps, tapsLen);
  for (int j = 0; j < tapsLen; ++j) rev[j] = shiftTap(taps[tapsLen - 1 - j], shift);
  fillShadow(static_cast<Shadow*>(s->shadowTaps), rev, tapsLen);
  initDelayBuffer<F>(s, dlyLine);
  s->stagingLen = firStagingLen<F>(tapsLen);
  // The factor wraps like the 32-bit sum it is.
  s->tapsFactor = static_cast<int>(static_cast<std::uint32_t>(tapsFactor) +
                                   static_cast<std::uint32_t>(shift));
  *state = s;
  return orvOk;
}

// Floating taps into an integer-tap state: quantised through a temporary of
// integers, then made as with integer taps.
template <typename F, typename FloatTap>
orvStatus initAllocQuantized(orvsFIRState** state, const FloatTap* taps, int tapsLen,
                             const typename F::Sample* dlyLine) {
  if (anyNull(state, taps)) return orvErrNullPointer;
  if (tapsLen < 1) return orvErrFirLength;
  ScopedBuffer<typename F::Tap> quantized(tapsLen);
  if (!quantized) {
    *state = nullptr;
    return orvErrNoMemory;
  }
  int factor = 0;
  ORV_RETURN_IF_ERROR(firQuantizeTaps(taps, tapsLen, quantized.get(), &factor));
  return initAllocInteger<F>(state, quantized.get(), tapsLen, factor, dlyLine);
}

// ---- Taps ---------------------------------------------------------------------------

template <typename F>
orvStatus getTaps(const orvsFIRState* s, typename F::Tap* taps) {
  if (anyNull(s, taps)) return orvErrNullPointer;
  if (!F::accepts(s->tag)) return orvErrContextMismatch;
  const typename F::Tap* rev = firRevTaps<F>(s);
  const int n = s->tapsLen;
  for (int i = 0; i < n; ++i) taps[i] = rev[n - 1 - i];
  return orvOk;
}

template <typename F>
orvStatus getIntegerTaps(const orvsFIRState* s, typename F::Tap* taps, int* tapsFactor) {
  if (anyNull(s, taps, tapsFactor)) return orvErrNullPointer;
  if (!F::accepts(s->tag)) return orvErrContextMismatch;
  const typename F::Tap* rev = firRevTaps<F>(s);
  const int n = s->tapsLen;
  for (int i = 0; i < n; ++i) taps[i] = rev[n - 1 - i];
  *tapsFactor = s->tapsFactor;
  return orvOk;
}

// A stored integer tap as a float times 2^tapsFactor, rounded once.
inline orv32f scaledTap(orv32s v, float p) {
  return static_cast<orv32f>(static_cast<double>(static_cast<orv32f>(v)) *
                             static_cast<double>(p));
}
inline orv32fc scaledTap(orv32sc v, float p) { return {scaledTap(v.re, p), scaledTap(v.im, p)}; }

template <typename F, typename FloatTap>
orvStatus getScaledTaps(const orvsFIRState* s, FloatTap* taps) {
  if (anyNull(s, taps)) return orvErrNullPointer;
  if (!F::accepts(s->tag)) return orvErrContextMismatch;
  const typename F::Tap* rev = firRevTaps<F>(s);
  const float p = firPow2ByExponent(s->tapsFactor);
  const int n = s->tapsLen;
  for (int i = 0; i < n; ++i) taps[i] = scaledTap(rev[n - 1 - i], p);
  return orvOk;
}

// ---- Delay line -------------------------------------------------------------------

template <typename F>
orvStatus getDelayLine(const orvsFIRState* s, typename F::Sample* dlyLine) {
  if (anyNull(s, dlyLine)) return orvErrNullPointer;
  if (!F::accepts(s->tag)) return orvErrContextMismatch;
  const DelayRun run = delayRun<F>(s);
  const typename F::Sample* d = firDelay<F>(s) + run.start;
  for (int i = 0; i < run.count; ++i) dlyLine[i] = d[run.count - 1 - i];
  return orvOk;
}

template <typename F>
orvStatus setDelayLine(orvsFIRState* s, const typename F::Sample* dlyLine) {
  if (s == nullptr) return orvErrNullPointer;
  if (!F::accepts(s->tag)) return orvErrContextMismatch;
  if (s->tag == F::kSingleTag) s->dlyIndex = 0;
  const DelayRun run = delayRun<F>(s);
  loadDelay(firDelay<F>(s), dlyLine, run.count);
  return orvOk;
}

// ---- Release ----------------------------------------------------------------------

template <typename F>
orvStatus freeState(orvsFIRState* s) {
  if (s == nullptr) return orvErrNullPointer;
  if (!F::accepts(s->tag)) return orvErrContextMismatch;
  releaseFirState<F>(s);
  return orvOk;
}

}  // namespace

template void releaseFirState<Fir32f>(orvsFIRState*);
template void releaseFirState<Fir32fc>(orvsFIRState*);
template void releaseFirState<Fir32f16s>(orvsFIRState*);
template void releaseFirState<Fir32fc16sc>(orvsFIRState*);
template void releaseFirState<Fir32s16s>(orvsFIRState*);
template void releaseFirState<Fir32sc16sc>(orvsFIRState*);
template void releaseFirState<Fir64f>(orvsFIRState*);
template void releaseFirState<Fir64fc>(orvsFIRState*);
template void releaseFirState<Fir64f32f>(orvsFIRState*);
template void releaseFirState<Fir64fc32fc>(orvsFIRState*);
template void releaseFirState<Fir64f32s>(orvsFIRState*);
template void releaseFirState<Fir64fc32sc>(orvsFIRState*);
template void releaseFirState<Fir64f16s>(orvsFIRState*);
template void releaseFirState<Fir64fc16sc>(orvsFIRState*);

}  // namespace filter
}  // namespace orv

using namespace orv::filter;

// The four operations every family has, with its own suffix and types.
#define ORV_FIR_COMMON_EXPORTS(SUFFIX, FAMILY, SAMPLE)                                  \
  orvStatus orvsFIRGetDlyLine##SUFFIX(const orvsFIRState* state, SAMPLE* dlyLine) {     \
    return getDelayLine<FAMILY>(state, dlyLine);                                        \
  }                                                                                     \
  orvStatus orvsFIRSetDlyLine##SUFFIX(orvsFIRState* state, const SAMPLE* dlyLine) {     \
    return setDelayLine<FAMILY>(state, dlyLine);                                        \
  }                                                                                     \
  orvStatus orvsFIRFree##SUFFIX(orvsFIRState* state) { return freeState<FAMILY>(state); }

// Creation and taps of a floating-tap family.
#define ORV_FIR_FLOAT_EXPORTS(SUFFIX, FAMILY, TAP, SAMPLE)                               \
  orvStatus orvsFIRInitAlloc##SUFFIX(orvsFIRState** state, const TAP* taps, int tapsLen, \
                                     const SAMPLE* dlyLine) {                            \
    return initAllocFloat<FAMILY>(state, taps, tapsLen, dlyLine);                        \
  }                                                                                      \
  orvStatus orvsFIRGetTaps##SUFFIX(const orvsFIRState* state, TAP* taps) {               \
    return getTaps<FAMILY>(state, taps);                                                 \
  }                                                                                      \
  ORV_FIR_COMMON_EXPORTS(SUFFIX, FAMILY, SAMPLE)

extern "C" {

ORV_FIR_FLOAT_EXPORTS(_32f, Fir32f, orv32f, orv32f)
ORV_FIR_FLOAT_EXPORTS(_32fc, Fir32fc, orv32fc, orv32fc)
ORV_FIR_FLOAT_EXPORTS(32f_16s, Fir32f16s, orv32f, orv16s)
ORV_FIR_FLOAT_EXPORTS(32fc_16sc, Fir32fc16sc, orv32fc, orv16sc)
ORV_FIR_FLOAT_EXPORTS(_64f, Fir64f, orv64f, orv64f)
ORV_FIR_FLOAT_EXPORTS(_64fc, Fir64fc, orv64fc, orv64fc)
ORV_FIR_FLOAT_EXPORTS(64f_32f, Fir64f32f, orv64f, orv32f)
ORV_FIR_FLOAT_EXPORTS(64fc_32fc, Fir64fc32fc, orv64fc, orv32fc)
ORV_FIR_FLOAT_EXPORTS(64f_32s, Fir64f32s, orv64f, orv32s)
ORV_FIR_FLOAT_EXPORTS(64fc_32sc, Fir64fc32sc, orv64fc, orv32sc)
ORV_FIR_FLOAT_EXPORTS(64f_16s, Fir64f16s, orv64f, orv16s)
ORV_FIR_FLOAT_EXPORTS(64fc_16sc, Fir64fc16sc, orv64fc, orv16sc)

ORV_FIR_COMMON_EXPORTS(32s_16s, Fir32s16s, orv16s)
ORV_FIR_COMMON_EXPORTS(32sc_16sc, Fir32sc16sc, orv16sc)

orvStatus orvsFIRInitAlloc32s_16s(orvsFIRState** state, const orv32s* taps, int tapsLen,
                                  int tapsFactor, const orv16s* dlyLine) {
  return initAllocInteger<Fir32s16s>(state, taps, tapsLen, tapsFactor, dlyLine);
}
orvStatus orvsFIRInitAlloc32sc_16sc(orvsFIRState** state, const orv32sc* taps, int tapsLen,
                                    int tapsFactor, const orv16sc* dlyLine) {
  return initAllocInteger<Fir32sc16sc>(state, taps, tapsLen, tapsFactor, dlyLine);
}
orvStatus orvsFIRInitAlloc32s_16s32f(orvsFIRState** state, const orv32f* taps, int tapsLen,
                                     const orv16s* dlyLine) {
  return initAllocQuantized<Fir32s16s>(state, taps, tapsLen, dlyLine);
}
orvStatus orvsFIRInitAlloc32sc_16sc32fc(orvsFIRState** state, const orv32fc* taps,
                                        int tapsLen, const orv16sc* dlyLine) {
  return initAllocQuantized<Fir32sc16sc>(state, taps, tapsLen, dlyLine);
}

orvStatus orvsFIRGetTaps32s_16s(const orvsFIRState* state, orv32s* taps, int* tapsFactor) {
  return getIntegerTaps<Fir32s16s>(state, taps, tapsFactor);
}
orvStatus orvsFIRGetTaps32sc_16sc(const orvsFIRState* state, orv32sc* taps, int* tapsFactor) {
  return getIntegerTaps<Fir32sc16sc>(state, taps, tapsFactor);
}
orvStatus orvsFIRGetTaps32s_16s32f(const orvsFIRState* state, orv32f* taps) {
  return getScaledTaps<Fir32s16s>(state, taps);
}
orvStatus orvsFIRGetTaps32sc_16sc32fc(const orvsFIRState* state, orv32fc* taps) {
  return getScaledTaps<Fir32sc16sc>(state, taps);
}

}  // extern "C"
