// The real FFT of length N = 2^order (32f, 64f): a complex transform of the
// N/2 values x[2n] + i*x[2n+1], followed by a pass that unpacks the spectrum
// of the real signal from it (forward), or preceded by the pass that packs
// a real spectrum into such a half-length spectrum (inverse). Results come
// in, or are taken from, the CCS, Pack and Perm layouts.
#include <cmath>

#include "transform/fft_internal.hpp"
#include "transform/packed_layout.hpp"

namespace orv {
namespace fft {
namespace {

using layout::Kind;

template <typename T>
struct RealForm;
template <>
struct RealForm<orv32f> {
  static constexpr orv32s kTag = kTagR_32f;
};
template <>
struct RealForm<orv64f> {
  static constexpr orv32s kTag = kTagR_64f;
};

// ---- Tables ---------------------------------------------------------------

// The two tables of N/4 entries, theta = 2*pi*k/N, read from the quarter sine
// table of length N: sin(theta) is entry k, cos(theta) entry N/4 - k.
//   realForwardTwiddles: (0.5*cos(theta), 0.5*(1 - sin(theta)))
//   realInverseTwiddles: (cos(theta), -sin(theta))
template <typename T>
bool buildRealTables(orvsFFTContext* ctx, int order, const T* sine) {
  const std::int64_t quarter = (std::int64_t(1) << order) / 4;
  T* fwd = allocateArray<T>(2 * quarter);
  ctx->realForwardTwiddles = fwd;
  if (fwd == nullptr) return false;
  for (std::int64_t k = 0; k < quarter; ++k) {
    const double s = sine[k], c = sine[quarter - k];
    fwd[2 * k] = T(0.5 * c);
    fwd[2 * k + 1] = T(0.5 * (1.0 - s));
  }
  T* inv = allocateArray<T>(2 * quarter);
  ctx->realInverseTwiddles = inv;
  if (inv == nullptr) return false;
  for (std::int64_t k = 0; k < quarter; ++k) {
    inv[2 * k] = sine[quarter - k];
    inv[2 * k + 1] = -sine[k];
  }
  return true;
}

// The complex half of order - 1 and the real tables all come from the one
// sine table of length N, the half reading it at stride 2.
template <typename T>
orvStatus initAlloc(orvsFFTContext** context, int order, int flag, int hint) {
  orvsFFTContext* ctx = nullptr;
  ORV_RETURN_IF_ERROR(beginContext<T>(context, order, flag, hint, RealForm<T>::kTag, ctx));
  if (order >= kFirstTableOrder) {
    T* sine = complexTablesFit<T>(order - 1, order) ? makeSineTable<T>(order) : nullptr;
    const bool built = sine != nullptr && buildComplexTables<T>(ctx, order - 1, sine, order) &&
                       buildRealTables<T>(ctx, order, sine);
    orvsFree(sine);
    if (!built) {
      abandonContext(ctx);
      return orvErrNoMemory;
    }
  }
  *context = ctx;
  return orvOk;
}

// ---- Small orders -----------------------------------------------------------
// Orders 0 to 3 without tables. Every input is read before anything is
// stored, so src may equal dst. The scaled kernels multiply the sums and
// differences of the first stage by the scale.

template <typename T>
constexpr double kSqrtTwo = double(T(1.41421356237309504880168872420969808L));

// Forward: N reals to Perm.
template <bool Scaled, typename T>
void smallForward(int order, const T* src, T* dst, T scaleT) {
  const double sc = scaleT;
  auto sv = [sc](double v) { return Scaled ? v * sc : v; };
  switch (order) {
    case 0:
      dst[0] = T(sv(src[0]));
      break;
    case 1: {
      const double x0 = src[0], x1 = src[1];
      dst[0] = T(sv(x0 + x1));
      dst[1] = T(sv(x0 - x1));
      break;
    }
    case 2: {
      const double x0 = src[0], x1 = src[1], x2 = src[2], x3 = src[3];
      const double s02 = sv(x0 + x2), s13 = sv(x1 + x3), d02 = sv(x0 - x2), d31 = sv(x3 - x1);
      dst[0] = T(s02 + s13);
      dst[1] = T(s02 - s13);
      dst[2] = T(d02);
      dst[3] = T(d31);
      break;
    }
    case 3: {
      double x[8];
      for (int i = 0; i < 8; ++i) x[i] = src[i];
      // length-4 transforms of the even samples (a) and the odd samples (b)
      const double a0 = sv(x[0] + x[4]), a1 = sv(x[0] - x[4]), a2 = sv(x[2] + x[6]), a3 = sv(x[2] - x[6]);
      const double b0 = sv(x[1] + x[5]), b1 = sv(x[1] - x[5]), b2 = sv(x[3] + x[7]), b3 = sv(x[3] - x[7]);
      const double e0 = a0 + a2, o0 = b0 + b2;
      // the odd half's bin 1 times the eighth root
      const double r = kSqrtHalf<T>;
      const double t1 = (b1 - b3) * r, t2 = (b1 + b3) * r;
      dst[0] = T(e0 + o0);
      dst[1] = T(e0 - o0);
      dst[2] = T(a1 + t1);
      dst[3] = T(-a3 - t2);
      dst[4] = T(a0 - a2);
      dst[5] = T(b2 - b0);
      dst[6] = T(a1 - t1);
      dst[7] = T(a3 - t2);
      break;
    }
    default:
      break;
  }
}

// Inverse: Perm to N reals, N times the signal when unscaled.
template <bool Scaled, typename T>
void smallInverse(int order, const T* src, T* dst, T scaleT) {
  const double sc = scaleT;
  auto sv = [sc](double v) { return Scaled ? v * sc : v; };
  switch (order) {
    case 0:
    case 1:
      smallForward<Scaled>(order, src, dst, scaleT);
      break;
    case 2: {
      const double X0 = src[0], X2 = src[1], re1 = src[2], im1 = src[3];
      const double p = sv(X0 + X2), q = sv(X0 - X2), r = sv(2.0 * re1), s = sv(2.0 * im1);
      dst[0] = T(p + r);
      dst[1] = T(q - s);
      dst[2] = T(p - r);
      dst[3] = T(q + s);
      break;
    }
    case 3: {
      double X[8];
      for (int i = 0; i < 8; ++i) X[i] = src[i];
      const double X0 = X[0], X4 = X[1], re1 = X[2], im1 = X[3], re2 = X[4], im2 = X[5], re3 = X[6],
                   im3 = X[7];
      // twice the spectra of the even samples (e) and of the odd samples (o)
      const double e0 = sv(X0 + X4), o0 = sv(X0 - X4);
      const double e2 = sv(2.0 * re2), o2 = sv(-2.0 * im2);
      const double e1r = sv(re1 + re3), e1i = sv(im1 - im3);
      const double g = sv(re1 - re3), h = sv(im1 + im3);
      const double ee = e0 + e2, eo = e0 - e2, oe = o0 + o2, oo = o0 - o2;
      const double r2 = kSqrtTwo<T>;
      const double u = (g - h) * r2, v = (g + h) * r2;
      dst[0] = T(ee + 2.0 * e1r);
      dst[1] = T(oe + u);
      dst[2] = T(eo - 2.0 * e1i);
      dst[3] = T(oo - v);
      dst[4] = T(ee - 2.0 * e1r);
      dst[5] = T(oe - u);
      dst[6] = T(eo + 2.0 * e1i);
      dst[7] = T(oo + v);
      break;
    }
    default:
      break;
  }
}

// ---- Unpacking and packing passes ---------------------------------------------

// In place on the half-length spectrum Z of H = N/2 complex values: leaves
// the real signal's spectrum in Perm. Works from both ends towards the
// middle, one pair (k, H - k) at a time.
template <typename T>
void unpackForward(T* x, std::size_t n, const T* tab) {
  const std::size_t h = n / 2;
  const double z0r = x[0], z0i = x[1];
  x[0] = T(z0r + z0i);
  x[1] = T(z0r - z0i);
  for (std::size_t k = fast::unpackForward(x, h, tab); k < h / 2; ++k) {
    const std::size_t m = h - k;
    const double A = tab[2 * k], B = tab[2 * k + 1];
    const double a = x[2 * k], b = x[2 * m], c = x[2 * k + 1], d = x[2 * m + 1];
    const double p = a - b, q = c + d;
    const double u = A * q + B * p, v = B * q - A * p;
    x[2 * k] = T(b + u);
    x[2 * m] = T(a - u);
    x[2 * k + 1] = T(v - d);
    x[2 * m + 1] = T(v - c);
  }
  x[h + 1] = -x[h + 1];
}

// The inverse pass: from a spectrum in Perm positions (`source`, which may
// be dst) to the half-length spectrum in dst. The two real ends a and b are
// passed in, as their place depends on the layout.
template <typename T>
void packInverse(const T* source, T* dst, double a, double b, std::size_t n, const T* tab) {
  const std::size_t h = n / 2;
  dst[0] = T(a + b);
  dst[1] = T(a - b);
  for (std::size_t k = fast::packInverse(source, dst, h, tab); k < h / 2; ++k) {
    const std::size_t m = h - k;
    const double C = tab[2 * k], S = tab[2 * k + 1];
    const double ak = source[2 * k], bk = source[2 * m], c = source[2 * k + 1], d = source[2 * m + 1];
    const double p = ak - bk, q = c + d;
    const double u = S * p - C * q, v = C * p + S * q;
    dst[2 * k] = T((ak + bk) + u);
    dst[2 * k + 1] = T(v + (c - d));
    dst[2 * m] = T((ak + bk) - u);
    dst[2 * m + 1] = T(v - (c - d));
  }
  dst[h] = T(2.0 * double(source[h]));
  dst[h + 1] = T(-2.0 * double(source[h + 1]));
}

// ---- Transforms ----------------------------------------------------------------

template <typename T>
orvStatus checkTransform(const T* src, T* dst, const orvsFFTContext* ctx) {
  if (ctx == nullptr) return orvErrNullPointer;
  if (ctx->tag != RealForm<T>::kTag) return orvErrContextMismatch;
  if (src == nullptr || dst == nullptr) return orvErrNullPointer;
  return orvOk;
}

template <Kind K, typename T>
orvStatus forward(const T* src, T* dst, const orvsFFTContext* ctx, orv8u* workBuffer) {
  ORV_RETURN_IF_ERROR(checkTransform(src, dst, ctx));
  const bool scaled = ctx->scaleForward != 0;
  const T scale = scaleOf<T>(ctx);
  const int order = ctx->order;
  const std::size_t n = std::size_t(1) << order;
  if (order < kFirstTableOrder) {
    if (scaled) smallForward<true>(order, src, dst, scale);
    else smallForward<false>(order, src, dst, scale);
  } else {
    WorkArea work(ctx->workBytes, workBuffer);
    if (work.failed()) return orvErrNoMemory;
    const int half = order - 1;
    reorderComplex(ctx->bitReversal, half, src, dst);
    runComplex<false>(Interleaved<T>{dst}, half, ctx, scaled, scale, work.get());
    unpackForward(dst, n, static_cast<const T*>(ctx->realForwardTwiddles));
  }
  layout::fromPerm(K, dst, std::ptrdiff_t(n));
  return orvOk;
}

template <Kind K, typename T>
orvStatus inverse(const T* src, T* dst, const orvsFFTContext* ctx, orv8u* workBuffer) {
  ORV_RETURN_IF_ERROR(checkTransform(src, dst, ctx));
  const bool scaled = ctx->scaleInverse != 0;
  const T scale = scaleOf<T>(ctx);
  const int order = ctx->order;
  const std::size_t n = std::size_t(1) << order;
  if (order < kFirstTableOrder) {
    // Pack and CCS are first brought into Perm in dst; Perm is read in src.
    const T* perm = src;
    if (K != Kind::Perm) {
      layout::toPerm(K, src, dst, std::ptrdiff_t(n));
      perm = dst;
    }
    if (scaled) smallInverse<true>(order, perm, dst, scale);
    else smallInverse<false>(order, perm, dst, scale);
    return orvOk;
  }
  WorkArea work(ctx->workBytes, workBuffer);
  if (work.failed()) return orvErrNoMemory;
  const T* source = src;
  double a = src[0], b = src[1];
  if (K == Kind::Ccs) {
    b = src[n];
  } else if (K == Kind::Pack) {
    layout::toPerm(K, src, dst, std::ptrdiff_t(n));
    source = dst;
    a = dst[0];
    b = dst[1];
  }
  packInverse(source, dst, a, b, n, static_cast<const T*>(ctx->realInverseTwiddles));
  const int half = order - 1;
  reorderComplex(ctx->bitReversal, half, dst, dst);
  runComplex<true>(Interleaved<T>{dst}, half, ctx, scaled, scale, work.get());
  return orvOk;
}

}  // namespace
}  // namespace fft
}  // namespace orv

using orv::fft::RealForm;
using orv::layout::Kind;

extern "C" {

orvStatus orvsFFTInitAlloc_R_32f(orvsFFTContext** context, int order, int flag, int hint) {
  return orv::fft::initAlloc<orv32f>(context, order, flag, hint);
}
orvStatus orvsFFTInitAlloc_R_64f(orvsFFTContext** context, int order, int flag, int hint) {
  return orv::fft::initAlloc<orv64f>(context, order, flag, hint);
}
orvStatus orvsFFTFree_R_32f(orvsFFTContext* context) {
  return orv::fft::freeContext(context, RealForm<orv32f>::kTag);
}
orvStatus orvsFFTFree_R_64f(orvsFFTContext* context) {
  return orv::fft::freeContext(context, RealForm<orv64f>::kTag);
}
orvStatus orvsFFTGetBufSize_R_32f(const orvsFFTContext* context, int* size) {
  return orv::fft::getBufSize(context, RealForm<orv32f>::kTag, size);
}
orvStatus orvsFFTGetBufSize_R_64f(const orvsFFTContext* context, int* size) {
  return orv::fft::getBufSize(context, RealForm<orv64f>::kTag, size);
}

orvStatus orvsFFTFwd_RToPerm_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::forward<Kind::Perm>(src, dst, context, workBuffer);
}
orvStatus orvsFFTFwd_RToPerm_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::forward<Kind::Perm>(src, dst, context, workBuffer);
}
orvStatus orvsFFTFwd_RToPack_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::forward<Kind::Pack>(src, dst, context, workBuffer);
}
orvStatus orvsFFTFwd_RToPack_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::forward<Kind::Pack>(src, dst, context, workBuffer);
}
orvStatus orvsFFTFwd_RToCCS_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context,
                                orv8u* workBuffer) {
  return orv::fft::forward<Kind::Ccs>(src, dst, context, workBuffer);
}
orvStatus orvsFFTFwd_RToCCS_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context,
                                orv8u* workBuffer) {
  return orv::fft::forward<Kind::Ccs>(src, dst, context, workBuffer);
}

orvStatus orvsFFTInv_PermToR_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::inverse<Kind::Perm>(src, dst, context, workBuffer);
}
orvStatus orvsFFTInv_PermToR_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::inverse<Kind::Perm>(src, dst, context, workBuffer);
}
orvStatus orvsFFTInv_PackToR_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::inverse<Kind::Pack>(src, dst, context, workBuffer);
}
orvStatus orvsFFTInv_PackToR_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context,
                                 orv8u* workBuffer) {
  return orv::fft::inverse<Kind::Pack>(src, dst, context, workBuffer);
}
orvStatus orvsFFTInv_CCSToR_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context,
                                orv8u* workBuffer) {
  return orv::fft::inverse<Kind::Ccs>(src, dst, context, workBuffer);
}
orvStatus orvsFFTInv_CCSToR_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context,
                                orv8u* workBuffer) {
  return orv::fft::inverse<Kind::Ccs>(src, dst, context, workBuffer);
}

}  // extern "C"
