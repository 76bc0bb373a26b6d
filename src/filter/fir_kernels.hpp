// The single-rate FIR kernels, generic over the family traits of
// filter_state.hpp: the accumulators and output rules of each family, the
// single-sample step, the direct block kernel with its staging and groups of
// four outputs, the stateless block loop, and the overlap-save FFT kernel.
//
// Every output is y[n] = sum over j of revTaps[j] * w[j], j ascending from 0
// to tapsLen-1, over the span w of tapsLen samples that ends in x[n]. The
// terms are added one after the other in that order, from zero; every kernel
// here, fast or plain, keeps that order for every output, so the direct
// kernels agree bit for bit.
//
// The multi-rate kernels reuse the accumulators and output rules, and take
// over the block forms for a multi-rate state (firMultiRateBlock below).
#pragma once

#include <climits>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "core/float_to_int.hpp"
#include "core/internal.hpp"
#include "filter/filter_state.hpp"

namespace orv {
namespace filter {

// ---- Accumulators ---------------------------------------------------------------

// Floating-tap families accumulate in double: every sample converts exactly,
// every product and every sum is rounded to double once, and the result is
// rounded to the sample type once, when it is stored. Integer-tap families
// accumulate in a wrapping 32-bit integer.
template <bool Complex, bool IntegerTaps>
struct FirAccumulator;

template <>
struct FirAccumulator<false, false> {
  using Acc = double;
  static constexpr Acc zero() { return 0.0; }
  template <typename Tap, typename Sample>
  static void mac(Acc& a, Tap t, Sample s) {
    a += static_cast<double>(t) * static_cast<double>(s);
  }
};

struct FirComplexDouble {
  double re, im;
};

template <>
struct FirAccumulator<true, false> {
  using Acc = FirComplexDouble;
  static constexpr Acc zero() { return {0.0, 0.0}; }
  template <typename Tap, typename Sample>
  static void mac(Acc& a, Tap t, Sample s) {
    const double tr = t.re, ti = t.im, sr = s.re, si = s.im;
    a.re += tr * sr - ti * si;
    a.im += tr * si + ti * sr;
  }
};

// Products and sums modulo 2^32, the sum of a 32-bit integer register.
inline std::uint32_t wrap32(std::int32_t v) { return static_cast<std::uint32_t>(v); }

template <>
struct FirAccumulator<false, true> {
  using Acc = std::uint32_t;
  static constexpr Acc zero() { return 0u; }
  template <typename Tap, typename Sample>
  static void mac(Acc& a, Tap t, Sample s) {
    a += wrap32(t) * wrap32(s);
  }
};

struct FirComplexWrapped {
  std::uint32_t re, im;
};

template <>
struct FirAccumulator<true, true> {
  using Acc = FirComplexWrapped;
  static constexpr Acc zero() { return {0u, 0u}; }
  template <typename Tap, typename Sample>
  static void mac(Acc& a, Tap t, Sample s) {
    const std::uint32_t tr = wrap32(t.re), ti = wrap32(t.im);
    const std::uint32_t sr = wrap32(s.re), si = wrap32(s.im);
    a.re += tr * sr - ti * si;
    a.im += tr * si + ti * sr;
  }
};

template <typename F>
using FirAccOf = FirAccumulator<F::kComplex, F::kIntegerTaps>;

// ---- Output rules ---------------------------------------------------------------

// 2^-scaleFactor of the integer output rule, as a float made by moving the
// exponent field of 1.0 by -+(|scaleFactor| mod 128): 129 acts as 1, and 127
// gives an exponent field of 0, that is the factor 0.
inline double firOutputFactor(int scaleFactor) {
  // |INT_MIN| mod 128 is 0, as is that of 0 itself.
  return static_cast<double>(firPow2ByExponent(scaleFactor == INT_MIN ? 0 : -scaleFactor));
}

// The distance of the shift rule of the integer-tap families: tapsFactor -
// scaleFactor as a 32-bit difference (wrapping like the register it is
// formed in), limited to -31 .. 31.
inline int firShiftDistance(int tapsFactor, int scaleFactor) {
  const std::int32_t d = static_cast<std::int32_t>(static_cast<std::uint32_t>(tapsFactor) -
                                                   static_cast<std::uint32_t>(scaleFactor));
  if (d > 31) return 31;
  if (d < -31) return -31;
  return d;
}

// The shift rule: a left shift loses the bits that leave the 32-bit value, a
// right shift is arithmetic (towards minus infinity); then saturation to 16
// bits. No rounding.
inline orv16s firShiftOutput(std::uint32_t acc, int distance) {
  const std::int32_t v = distance > 0 ? static_cast<std::int32_t>(acc << distance)
                                      : (static_cast<std::int32_t>(acc) >> -distance);
  if (v > 32767) return 32767;
  if (v < -32768) return -32768;
  return static_cast<orv16s>(v);
}

// One real result of a floating accumulator in the sample type.
template <typename S>
inline S firStoreReal(double acc, double factor) {
  if constexpr (std::is_floating_point<S>::value) {
    (void)factor;
    return static_cast<S>(acc);
  } else {
    return saturateRoundHalfAway<S>(acc * factor);
  }
}

// The output rule of family F, made once per call: rounding to a floating
// sample type, the integer output rule (with the factor of scaleFactor), or
// the shift rule (with tapsFactor - scaleFactor).
template <typename F>
class FirOutput {
 public:
  using Sample = typename F::Sample;
  using Acc = typename FirAccOf<F>::Acc;

  FirOutput(int scaleFactor, int tapsFactor)
      : factor_(firOutputFactor(scaleFactor)),
        distance_(firShiftDistance(tapsFactor, scaleFactor)) {}

  Sample operator()(const Acc& a) const {
    if constexpr (F::kIntegerTaps) {
      if constexpr (F::kComplex) {
        return {firShiftOutput(a.re, distance_), firShiftOutput(a.im, distance_)};
      } else {
        return firShiftOutput(a, distance_);
      }
    } else if constexpr (F::kComplex) {
      using Part = decltype(Sample{}.re);
      return {firStoreReal<Part>(a.re, factor_), firStoreReal<Part>(a.im, factor_)};
    } else {
      return firStoreReal<Sample>(a, factor_);
    }
  }

  double factor() const { return factor_; }

 private:
  double factor_;
  int distance_;
};

// ---- Sums -----------------------------------------------------------------------------

// The sum of one output over the span w, taps in ascending j. `Natural`
// taps are in the caller's order and are read from the end (the stateless
// forms); otherwise they are the reversed taps of the state.
template <typename F, bool Natural = false>
inline typename FirAccOf<F>::Acc firDot(const typename F::Tap* taps, int tapsLen,
                                        const typename F::Sample* w) {
  using A = FirAccOf<F>;
  typename A::Acc acc = A::zero();
  for (int j = 0; j < tapsLen; ++j) A::mac(acc, Natural ? taps[tapsLen - 1 - j] : taps[j], w[j]);
  return acc;
}

// `count` outputs from the span that starts at w: output n reads w[n] ..
// w[n + tapsLen - 1]. Groups of four share each tap once across four
// accumulators; the last 0 to 3 outputs are summed singly. Each output gets
// the same terms in the same order either way.
template <typename F, typename Out>
void firSpanOutputs(const typename F::Tap* rev, int tapsLen, const typename F::Sample* w,
                    typename F::Sample* dst, std::int64_t count, const Out& out) {
  using A = FirAccOf<F>;
  std::int64_t n = 0;
  for (; n + 4 <= count; n += 4) {
    typename A::Acc a0 = A::zero(), a1 = A::zero(), a2 = A::zero(), a3 = A::zero();
    const typename F::Sample* p = w + n;
    for (int j = 0; j < tapsLen; ++j) {
      const typename F::Tap t = rev[j];
      A::mac(a0, t, p[j]);
      A::mac(a1, t, p[j + 1]);
      A::mac(a2, t, p[j + 2]);
      A::mac(a3, t, p[j + 3]);
    }
    dst[n] = out(a0);
    dst[n + 1] = out(a1);
    dst[n + 2] = out(a2);
    dst[n + 3] = out(a3);
  }
  for (; n < count; ++n) dst[n] = out(firDot<F>(rev, tapsLen, w + n));
}

// ---- The single-sample step ---------------------------------------------------------

// One sample into the doubled delay buffer d at `index` (written at d[index]
// and d[index + tapsLen]), the index moved on and wrapped, and the output of
// the span d[index] .. d[index + tapsLen - 1].
template <typename F, bool Natural, typename Out>
inline typename F::Sample firStep(const typename F::Tap* taps, int tapsLen,
                                  typename F::Sample* d, int& index, typename F::Sample x,
                                  const Out& out) {
  d[index] = x;
  d[index + static_cast<std::int64_t>(tapsLen)] = x;
  index = index + 1 == tapsLen ? 0 : index + 1;
  return out(firDot<F, Natural>(taps, tapsLen, d + index));
}

// ---- Delay line after a block ---------------------------------------------------------

// Leaves the last tapsLen samples of (history, src) at d[0] .. d[tapsLen-1],
// where the history is the tapsLen-1 samples from d[start + 1] on.
template <typename S>
void firKeepLastSamples(S* d, int start, int tapsLen, const S* src, int len) {
  if (len >= tapsLen) {
    std::memcpy(d, src + (len - tapsLen), sizeof(S) * static_cast<std::size_t>(tapsLen));
    return;
  }
  std::memmove(d, d + start + len, sizeof(S) * static_cast<std::size_t>(tapsLen - len));
  std::memcpy(d + (tapsLen - len), src, sizeof(S) * static_cast<std::size_t>(len));
}

// ---- Direct block kernel, plain -------------------------------------------------------

// The block kernel of a single-rate state with its staging. Arguments are
// checked. The first outputs read the history and the staged samples from
// the delay buffer, all later ones read src directly.
template <typename F>
void firDirectBlockPlain(orvsFIRState* s, const typename F::Sample* src,
                         typename F::Sample* dst, int len, const FirOutput<F>& out) {
  using S = typename F::Sample;
  const int T = s->tapsLen;
  const int staging = s->stagingLen;
  const int i0 = s->dlyIndex;
  const typename F::Tap* rev = firRevTaps<F>(s);
  S* d = firDelay<F>(s);
  s->dlyIndex = 0;
  S* stage = d + i0 + T;
  const S* base = d + i0 + 1;
  if (len < staging) {
    std::memcpy(stage, src, sizeof(S) * static_cast<std::size_t>(len));
    firSpanOutputs<F>(rev, T, base, dst, len, out);
    // The last T samples end at the last staged one; the move runs forwards.
    std::memmove(d, base + (len - 1), sizeof(S) * static_cast<std::size_t>(T));
    return;
  }
  std::memcpy(stage, src, sizeof(S) * static_cast<std::size_t>(staging));
  const int fromStage = (T + 3) & ~3;
  firSpanOutputs<F>(rev, T, base, dst, fromStage, out);
  // Output n now reads src[n - T + 1] .. src[n] in place.
  firSpanOutputs<F>(rev, T, src + (fromStage - (T - 1)), dst + fromStage, len - fromStage, out);
  std::memcpy(d, src + (len - T), sizeof(S) * static_cast<std::size_t>(T));
}

// ---- The fast direct kernel of the real floating families ---------------------------

// y[n] = sum over j of h[j] * x[n + j], j ascending, every product and every
// sum rounded to double, for n below count; x holds count + tapsLen - 1
// values. Vector lanes run across outputs only, so each output has the
// plain sum's terms in the plain sum's order.
void firDotDoubles(const double* h, int tapsLen, const double* x, double* y, int count);
// Its lane paths, chosen by the processor: baseline two-lane vectors, and
// four-lane vectors where the processor has AVX.
void firDotDoublesSse2(const double* h, int tapsLen, const double* x, double* y, int count);
void firDotDoublesAvx(const double* h, int tapsLen, const double* x, double* y, int count);

// True for the families whose direct kernels go through firDotDoubles: real
// floating taps, whose samples and taps all convert to double exactly.
template <typename F>
constexpr bool kFirFastDirect = !F::kComplex && !F::kIntegerTaps;

// Below this many outputs a call takes the plain loops.
constexpr int kFirFastMinLen = 16;

// The double work of one call of the fast kernel: taps, a sliding window of
// tapsLen-1 history values and a chunk of new values, and the chunk's sums.
class FirDoubleWindow {
 public:
  static constexpr int kChunk = 2048;

  explicit FirDoubleWindow(int tapsLen)
      : tapsLen_(tapsLen),
        buffer_(2 * static_cast<std::int64_t>(tapsLen) - 1 + 2 * static_cast<std::int64_t>(kChunk)) {}
  explicit operator bool() const { return static_cast<bool>(buffer_); }

  double* taps() const { return buffer_.get(); }
  // tapsLen-1 history values, then room for kChunk new values.
  double* window() const { return buffer_.get() + tapsLen_; }
  double* fresh() const { return window() + (tapsLen_ - 1); }
  double* sums() const { return fresh() + kChunk; }

  // The sums of the `count` values in fresh(), then the last tapsLen-1
  // values moved to the front as the next history.
  void run(int count) {
    firDotDoubles(taps(), tapsLen_, window(), sums(), count);
    std::memmove(window(), window() + count, sizeof(double) * static_cast<std::size_t>(tapsLen_ - 1));
  }

 private:
  int tapsLen_;
  ScopedBuffer<double> buffer_;
};

// The direct block kernel of a state through FirDoubleWindow. Returns false
// (having changed nothing) when its work memory cannot be had; the caller
// then runs the plain kernel.
template <typename F>
bool firDirectBlockFast(orvsFIRState* s, const typename F::Sample* src, typename F::Sample* dst,
                        int len, const FirOutput<F>& out) {
  using S = typename F::Sample;
  const int T = s->tapsLen;
  FirDoubleWindow win(T);
  if (!win) return false;
  const typename F::Tap* rev = firRevTaps<F>(s);
  for (int j = 0; j < T; ++j) win.taps()[j] = static_cast<double>(rev[j]);
  S* d = firDelay<F>(s);
  const int i0 = s->dlyIndex;
  for (int j = 0; j < T - 1; ++j) win.window()[j] = static_cast<double>(d[i0 + 1 + j]);
  for (int done = 0; done < len;) {
    const int count = len - done < FirDoubleWindow::kChunk ? len - done : FirDoubleWindow::kChunk;
    for (int k = 0; k < count; ++k) win.fresh()[k] = static_cast<double>(src[done + k]);
    win.run(count);
    for (int k = 0; k < count; ++k) dst[done + k] = firStoreReal<S>(win.sums()[k], out.factor());
    done += count;
  }
  firKeepLastSamples(d, i0, T, src, len);
  s->dlyIndex = 0;
  return true;
}

template <typename F>
void firDirectBlock(orvsFIRState* s, const typename F::Sample* src, typename F::Sample* dst,
                    int len, const FirOutput<F>& out) {
  if constexpr (kFirFastDirect<F>) {
    if (len >= kFirFastMinLen && firDirectBlockFast<F>(s, src, dst, len, out)) return;
  }
  firDirectBlockPlain<F>(s, src, dst, len, out);
}

// ---- Stateless block forms --------------------------------------------------------------

// The caller's index as a position of the doubled buffer, 0 .. tapsLen-1.
// An index outside that range would make the step write and read beyond the
// caller's 2 * tapsLen samples; it is taken modulo tapsLen instead.
inline int firDirectIndex(int index, int tapsLen) {
  const std::int64_t r = static_cast<std::int64_t>(index) % tapsLen;
  return static_cast<int>(r < 0 ? r + tapsLen : r);
}

// The stateless block form: the single-sample step once per sample. src
// and dst may be the same vector, since each sample is read before its
// output is written.
template <typename F>
void firDirectStatelessPlain(const typename F::Sample* src, typename F::Sample* dst, int len,
                             const typename F::Tap* taps, int tapsLen, typename F::Sample* d,
                             int& index, const FirOutput<F>& out) {
  for (int n = 0; n < len; ++n) dst[n] = firStep<F, true>(taps, tapsLen, d, index, src[n], out);
}

// The same through FirDoubleWindow, for a caller's buffer whose two copies
// of each sample agree. Each chunk of samples goes into the window before
// any output of the chunk is written, so src and dst may again be the same
// vector. Of the samples' writes to the caller's buffer only those of the
// last tapsLen samples survive the call; only they are made, each at the
// position the step would give it.
template <typename F>
bool firDirectStatelessFast(const typename F::Sample* src, typename F::Sample* dst, int len,
                            const typename F::Tap* taps, int tapsLen, typename F::Sample* d,
                            int& index, const FirOutput<F>& out) {
  using S = typename F::Sample;
  const int T = tapsLen;
  FirDoubleWindow win(T);
  if (!win) return false;
  for (int j = 0; j < T; ++j) win.taps()[j] = static_cast<double>(taps[T - 1 - j]);
  for (int j = 0; j < T - 1; ++j) win.window()[j] = static_cast<double>(d[index + 1 + j]);
  const int start = index;
  const int firstKept = len > T ? len - T : 0;
  for (int done = 0; done < len;) {
    const int count = len - done < FirDoubleWindow::kChunk ? len - done : FirDoubleWindow::kChunk;
    for (int k = 0; k < count; ++k) win.fresh()[k] = static_cast<double>(src[done + k]);
    for (int k = firstKept > done ? firstKept - done : 0; k < count; ++k) {
      const int p = static_cast<int>((static_cast<std::int64_t>(start) + done + k) % T);
      d[p] = src[done + k];
      d[p + static_cast<std::int64_t>(T)] = src[done + k];
    }
    win.run(count);
    for (int k = 0; k < count; ++k) dst[done + k] = firStoreReal<S>(win.sums()[k], out.factor());
    done += count;
  }
  index = static_cast<int>((static_cast<std::int64_t>(start) + len) % T);
  return true;
}

// The first tapsLen steps run plainly: until each position of the caller's
// buffer has been written by this call, a step reads whichever copy of a
// past sample its span covers, and the caller's two copies need not agree.
// From then on both copies are this call's, and the window may take over.
template <typename F>
void firDirectStateless(const typename F::Sample* src, typename F::Sample* dst, int len,
                        const typename F::Tap* taps, int tapsLen, typename F::Sample* d,
                        int& index, const FirOutput<F>& out) {
  if constexpr (kFirFastDirect<F>) {
    if (len - tapsLen >= kFirFastMinLen) {
      firDirectStatelessPlain<F>(src, dst, tapsLen, taps, tapsLen, d, index, out);
      int i = index;
      if (firDirectStatelessFast<F>(src + tapsLen, dst + tapsLen, len - tapsLen, taps, tapsLen,
                                    d, i, out)) {
        index = i;
        return;
      }
      firDirectStatelessPlain<F>(src + tapsLen, dst + tapsLen, len - tapsLen, taps, tapsLen, d,
                                 index, out);
      return;
    }
  }
  firDirectStatelessPlain<F>(src, dst, len, taps, tapsLen, d, index, out);
}

// ---- Overlap-save FFT kernel ------------------------------------------------------------

// Copies through the library's own names, for the families whose samples are
// the transform's elements.
inline orvStatus firCopy(const orv32f* x, orv32f* y, int n) { return orvsCopy_32f(x, y, n); }
inline orvStatus firCopy(const orv64f* x, orv64f* y, int n) { return orvsCopy_64f(x, y, n); }
inline orvStatus firCopy(const orv32fc* x, orv32fc* y, int n) { return orvsCopy_32fc(x, y, n); }
inline orvStatus firCopy(const orv64fc* x, orv64fc* y, int n) { return orvsCopy_64fc(x, y, n); }

// Samples into the transform's elements and results back, by family: the
// library's copies and conversions where it has them (rounding mode 1 and
// scaleFactor on the way out), loops of their own elsewhere.
template <typename F>
class FirFftIo {
 public:
  using Sample = typename F::Sample;
  using Elem = typename FirFftEngine<F::kFft>::Elem;
  static constexpr bool kSame = std::is_same<Sample, Elem>::value;

  explicit FirFftIo(int scaleFactor) : scaleFactor_(scaleFactor), factor_(firOutputFactor(scaleFactor)) {}

  orvStatus load(const Sample* x, Elem* b, int n) const {
    if (n < 1) return orvOk;
    if constexpr (kSame) {
      return firCopy(x, b, n);
    } else if constexpr (std::is_same<Sample, orv16s>::value && std::is_same<Elem, orv32f>::value) {
      return orvsConvert_16s32f(x, b, n);
    } else if constexpr (std::is_same<Sample, orv16sc>::value && std::is_same<Elem, orv32fc>::value) {
      return orvsConvert_16s32f(reinterpret_cast<const orv16s*>(x), reinterpret_cast<orv32f*>(b), 2 * n);
    } else if constexpr (std::is_same<Sample, orv32s>::value) {
      return orvsConvert_32s64f(x, b, n);
    } else if constexpr (std::is_same<Sample, orv32sc>::value) {
      return orvsConvert_32s64f(reinterpret_cast<const orv32s*>(x), reinterpret_cast<orv64f*>(b), 2 * n);
    } else if constexpr (F::kComplex) {
      for (int i = 0; i < n; ++i) b[i] = {static_cast<double>(x[i].re), static_cast<double>(x[i].im)};
      return orvOk;
    } else {
      for (int i = 0; i < n; ++i) b[i] = static_cast<double>(x[i]);
      return orvOk;
    }
  }

  orvStatus store(const Elem* b, Sample* y, int n) const {
    if (n < 1) return orvOk;
    if constexpr (kSame) {
      return firCopy(b, y, n);
    } else if constexpr (std::is_same<Sample, orv16s>::value && std::is_same<Elem, orv32f>::value) {
      return orvsConvert_32f16s_Sfs(b, y, n, kRoundNearest, scaleFactor_);
    } else if constexpr (std::is_same<Sample, orv16sc>::value && std::is_same<Elem, orv32fc>::value) {
      return orvsConvert_32f16s_Sfs(reinterpret_cast<const orv32f*>(b), reinterpret_cast<orv16s*>(y),
                                    2 * n, kRoundNearest, scaleFactor_);
    } else if constexpr (std::is_same<Sample, orv32s>::value) {
      return orvsConvert_64f32s_Sfs(b, y, n, kRoundNearest, scaleFactor_);
    } else if constexpr (std::is_same<Sample, orv32sc>::value) {
      return orvsConvert_64f32s_Sfs(reinterpret_cast<const orv64f*>(b), reinterpret_cast<orv32s*>(y),
                                    2 * n, kRoundNearest, scaleFactor_);
    } else if constexpr (F::kComplex) {
      using Part = decltype(Sample{}.re);
      for (int i = 0; i < n; ++i)
        y[i] = {firStoreReal<Part>(b[i].re, factor_), firStoreReal<Part>(b[i].im, factor_)};
      return orvOk;
    } else {
      for (int i = 0; i < n; ++i) y[i] = firStoreReal<Sample>(b[i], factor_);
      return orvOk;
    }
  }

 private:
  int scaleFactor_;
  double factor_;
};

template <typename E>
inline void firZeroElems(E* b, int n) {
  if (n > 0) std::memset(static_cast<void*>(b), 0, sizeof(E) * static_cast<std::size_t>(n));
}

// The overlap-save kernel. Arguments are checked; the state has an FFT
// path. `src` must be readable for tapsLen samples before its start when the
// call can reach the short-tail branch of a negative position (the in-place
// forms of the real-tap families give it a zeroed margin there).
template <typename F>
orvStatus firFftBlock(orvsFIRState* s, const typename F::Sample* src, typename F::Sample* dst,
                      int len, int scaleFactor) {
  using S = typename F::Sample;
  using Ops = FirFftEngine<F::kFft>;
  using Elem = typename Ops::Elem;
  const int N = s->fftLen;
  const int T = s->tapsLen;
  const int H = N - (T - 1);  // valid outputs per transform
  const int i0 = s->dlyIndex;
  S* d = firDelay<F>(s);
  const S* hist = d + i0 + 1;  // the T-1 samples of history
  const orvsFFTContext* ctx = s->fftContext;
  const Elem* spectrum = static_cast<const Elem*>(s->fftTaps);
  s->dlyIndex = 0;

  ScopedBuffer<Elem> block(N);
  if (!block) return orvErrNoMemory;
  int workBytes = 0;
  const orvStatus sized = Ops::bufSize(ctx, &workBytes);
  if (sized < 0) return sized;
  ScopedBuffer<orv8u> work(workBytes > 0 ? workBytes : 0);
  if (workBytes > 0 && !work) return orvErrNoMemory;
  Elem* B = block.get();
  orv8u* w = work.get();
  const FirFftIo<F> io(scaleFactor);

  // Spectrum product and the way back, on B in place.
  auto filterBlock = [&]() -> orvStatus {
    ORV_RETURN_IF_ERROR(Ops::multiply(spectrum, B, N));
    return Ops::inverse(B, B, ctx, w);
  };

  ORV_RETURN_IF_ERROR(io.load(hist, B, T - 1));
  if (len <= H) {
    // Short case: one transform covers the whole call.
    ORV_RETURN_IF_ERROR(io.load(src, B + (T - 1), len));
    firKeepLastSamples(d, i0, T, src, len);
    firZeroElems(B + (T - 1) + len, N - (T - 1) - len);
    ORV_RETURN_IF_ERROR(Ops::forward(B, B, ctx, w));
    ORV_RETURN_IF_ERROR(filterBlock());
    return io.store(B + (T - 1), dst, len);
  }

  // Long case: the first block behind the history, then blocks that each
  // begin T-1 samples before their first output.
  ORV_RETURN_IF_ERROR(io.load(src, B + (T - 1), H));
  ORV_RETURN_IF_ERROR(Ops::forward(B, B, ctx, w));
  ORV_RETURN_IF_ERROR(filterBlock());
  ORV_RETURN_IF_ERROR(io.store(B + (T - 1), dst, H));
  int pos = H - (T - 1);  // where the next block begins in src; negative: in the history
  for (;;) {
    int rem = len - pos;
    if (pos < 0) {
      // The history part always starts at hist + H: right on the first
      // such pass, a fixed start on the later ones.
      ORV_RETURN_IF_ERROR(io.load(hist + H, B, -pos));
      if (rem > N) {
        ORV_RETURN_IF_ERROR(io.load(src, B - pos, N + pos));
      } else {
        // Reads len samples from src + pos, before the start of src.
        ORV_RETURN_IF_ERROR(io.load(src + pos, B, len));
        firZeroElems(B + rem, N - rem);
      }
      ORV_RETURN_IF_ERROR(Ops::forward(B, B, ctx, w));
    } else if (rem > N) {
      if constexpr (FirFftIo<F>::kSame) {
        ORV_RETURN_IF_ERROR(Ops::forward(src + pos, B, ctx, w));
      } else {
        ORV_RETURN_IF_ERROR(io.load(src + pos, B, N));
        ORV_RETURN_IF_ERROR(Ops::forward(B, B, ctx, w));
      }
    } else {
      ORV_RETURN_IF_ERROR(io.load(src + pos, B, rem));
      firZeroElems(B + rem, N - rem);
      ORV_RETURN_IF_ERROR(Ops::forward(B, B, ctx, w));
    }
    ORV_RETURN_IF_ERROR(filterBlock());
    rem -= T - 1;  // outputs still owed
    if (H < rem) {
      ORV_RETURN_IF_ERROR(io.store(B + (T - 1), dst + (pos + T - 1), H));
      pos += H;
    } else {
      ORV_RETURN_IF_ERROR(io.store(B + (T - 1), dst + (pos + T - 1), rem));
      break;
    }
  }

  // The delay line, read from d[0]: with fewer new samples than taps, the
  // older part is kept from d[len] on whatever the index was on entry.
  firKeepLastSamples(d, 0, T, src, len);
  return orvOk;
}

// ---- Multi-rate hand-over ------------------------------------------------------------

// The block forms on a state with the family's multi-rate tag: `len` counts
// iterations. Defined with the multi-rate kernels (fir_multirate.cpp).
template <typename F>
orvStatus firMultiRateBlock(orvsFIRState* s, const typename F::Sample* src,
                            typename F::Sample* dst, int len, int scaleFactor);
template <typename F>
orvStatus firMultiRateBlockInPlace(orvsFIRState* s, typename F::Sample* srcDst, int len,
                                   int scaleFactor);

}  // namespace filter
}  // namespace orv
