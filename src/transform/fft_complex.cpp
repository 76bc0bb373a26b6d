// The power-of-two complex FFT in its interleaved (32fc, 64fc) and split
// (32f, 64f) forms: context creation and release, work size and the two
// directions.
#include <cmath>
#include <cstring>

#include "transform/fft_internal.hpp"

namespace orv {
namespace fft {
namespace {

// What tells the four forms apart.
template <typename T, bool SplitForm>
struct Form;

template <>
struct Form<orv32f, false> {
  static constexpr orv32s kTag = kTagC_32fc;
};
template <>
struct Form<orv32f, true> {
  static constexpr orv32s kTag = kTagC_32f;
};
template <>
struct Form<orv64f, false> {
  static constexpr orv32s kTag = kTagC_64fc;
};
template <>
struct Form<orv64f, true> {
  static constexpr orv32s kTag = kTagC_64f;
};

template <typename T, bool SplitForm>
orvStatus initAlloc(orvsFFTContext** context, int order, int flag, int hint) {
  orvsFFTContext* ctx = nullptr;
  ORV_RETURN_IF_ERROR(beginContext<T>(context, order, flag, hint, Form<T, SplitForm>::kTag, ctx));
  if (order >= kFirstTableOrder) {
    // Refuse at once an order whose tables can't be had, before touching
    // any memory; the allocator would refuse one of them later anyway.
    T* sine = complexTablesFit<T>(order, order) ? makeSineTable<T>(order) : nullptr;
    const bool built = sine != nullptr && buildComplexTables<T>(ctx, order, sine, order);
    orvsFree(sine);
    if (!built) {
      abandonContext(ctx);
      return orvErrNoMemory;
    }
  }
  *context = ctx;
  return orvOk;
}

template <typename T, bool SplitForm>
orvStatus freeForm(orvsFFTContext* ctx) {
  return freeContext(ctx, Form<T, SplitForm>::kTag);
}

template <typename T, bool SplitForm>
orvStatus bufSizeForm(const orvsFFTContext* ctx, int* size) {
  return getBufSize(ctx, Form<T, SplitForm>::kTag, size);
}

// The small kernels, chosen by direction and by whether it is scaled.
template <bool Inv, typename T, class V>
void runSmall(int order, V src, V dst, bool scaled, T scale) {
  if (scaled) smallKernel<Inv, true, T>(order, src, dst, scale);
  else smallKernel<Inv, false, T>(order, src, dst, scale);
}

template <bool Inv, typename T>
orvStatus transformInterleaved(const T* src, T* dst, const orvsFFTContext* ctx, orv8u* workBuffer) {
  if (ctx == nullptr) return orvErrNullPointer;
  if (ctx->tag != Form<T, false>::kTag) return orvErrContextMismatch;
  if (src == nullptr || dst == nullptr) return orvErrNullPointer;
  const bool scaled = (Inv ? ctx->scaleInverse : ctx->scaleForward) != 0;
  const T scale = scaleOf<T>(ctx);
  const int order = ctx->order;
  if (order < kFirstTableOrder) {
    runSmall<Inv, T>(order, Interleaved<T>{const_cast<T*>(src)}, Interleaved<T>{dst}, scaled, scale);
    return orvOk;
  }
  WorkArea work(ctx->workBytes, workBuffer);
  if (work.failed()) return orvErrNoMemory;
  reorderComplex(ctx->bitReversal, order, src, dst);
  runComplex<Inv>(Interleaved<T>{dst}, order, ctx, scaled, scale, work.get());
  return orvOk;
}

template <typename T>
void reorderArray(const orvsFFTContext* ctx, const T* src, T* dst) {
  if (src == dst) reorderInPlace(ctx->bitReversal, ctx->order, dst);
  else reorderCopy(ctx->bitReversal, ctx->order, src, dst);
}

template <bool Inv, typename T>
orvStatus transformSplit(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, const orvsFFTContext* ctx,
                         orv8u* workBuffer) {
  if (ctx == nullptr) return orvErrNullPointer;
  if (ctx->tag != Form<T, true>::kTag) return orvErrContextMismatch;
  if (anyNull(srcRe, srcIm, dstRe, dstIm)) return orvErrNullPointer;
  const bool scaled = (Inv ? ctx->scaleInverse : ctx->scaleForward) != 0;
  const T scale = scaleOf<T>(ctx);
  const int order = ctx->order;
  if (order < kFirstTableOrder) {
    runSmall<Inv, T>(order, Split<T>{const_cast<T*>(srcRe), const_cast<T*>(srcIm)}, Split<T>{dstRe, dstIm},
                     scaled, scale);
    return orvOk;
  }
  WorkArea work(ctx->workBytes, workBuffer);
  if (work.failed()) return orvErrNoMemory;
  reorderArray(ctx, srcRe, dstRe);
  reorderArray(ctx, srcIm, dstIm);
  runComplex<Inv>(Split<T>{dstRe, dstIm}, order, ctx, scaled, scale, work.get());
  return orvOk;
}

}  // namespace
}  // namespace fft
}  // namespace orv

using orv::fft::bufSizeForm;
using orv::fft::freeForm;
using orv::fft::initAlloc;
using orv::fft::transformInterleaved;
using orv::fft::transformSplit;

extern "C" {

orvStatus orvsFFTInitAlloc_C_32fc(orvsFFTContext** context, int order, int flag, int hint) {
  return initAlloc<orv32f, false>(context, order, flag, hint);
}
orvStatus orvsFFTInitAlloc_C_32f(orvsFFTContext** context, int order, int flag, int hint) {
  return initAlloc<orv32f, true>(context, order, flag, hint);
}
orvStatus orvsFFTInitAlloc_C_64fc(orvsFFTContext** context, int order, int flag, int hint) {
  return initAlloc<orv64f, false>(context, order, flag, hint);
}
orvStatus orvsFFTInitAlloc_C_64f(orvsFFTContext** context, int order, int flag, int hint) {
  return initAlloc<orv64f, true>(context, order, flag, hint);
}

orvStatus orvsFFTFree_C_32fc(orvsFFTContext* context) { return freeForm<orv32f, false>(context); }
orvStatus orvsFFTFree_C_32f(orvsFFTContext* context) { return freeForm<orv32f, true>(context); }
orvStatus orvsFFTFree_C_64fc(orvsFFTContext* context) { return freeForm<orv64f, false>(context); }
orvStatus orvsFFTFree_C_64f(orvsFFTContext* context) { return freeForm<orv64f, true>(context); }

orvStatus orvsFFTGetBufSize_C_32fc(const orvsFFTContext* context, int* size) {
  return bufSizeForm<orv32f, false>(context, size);
}
orvStatus orvsFFTGetBufSize_C_32f(const orvsFFTContext* context, int* size) {
  return bufSizeForm<orv32f, true>(context, size);
}
orvStatus orvsFFTGetBufSize_C_64fc(const orvsFFTContext* context, int* size) {
  return bufSizeForm<orv64f, false>(context, size);
}
orvStatus orvsFFTGetBufSize_C_64f(const orvsFFTContext* context, int* size) {
  return bufSizeForm<orv64f, true>(context, size);
}

orvStatus orvsFFTFwd_CToC_32fc(const orv32fc* src, orv32fc* dst, const orvsFFTContext* context,
                               orv8u* workBuffer) {
  return transformInterleaved<false>(reinterpret_cast<const orv32f*>(src), reinterpret_cast<orv32f*>(dst),
                                     context, workBuffer);
}
orvStatus orvsFFTInv_CToC_32fc(const orv32fc* src, orv32fc* dst, const orvsFFTContext* context,
                               orv8u* workBuffer) {
  return transformInterleaved<true>(reinterpret_cast<const orv32f*>(src), reinterpret_cast<orv32f*>(dst),
                                    context, workBuffer);
}
orvStatus orvsFFTFwd_CToC_64fc(const orv64fc* src, orv64fc* dst, const orvsFFTContext* context,
                               orv8u* workBuffer) {
  return transformInterleaved<false>(reinterpret_cast<const orv64f*>(src), reinterpret_cast<orv64f*>(dst),
                                     context, workBuffer);
}
orvStatus orvsFFTInv_CToC_64fc(const orv64fc* src, orv64fc* dst, const orvsFFTContext* context,
                               orv8u* workBuffer) {
  return transformInterleaved<true>(reinterpret_cast<const orv64f*>(src), reinterpret_cast<orv64f*>(dst),
                                    context, workBuffer);
}

orvStatus orvsFFTFwd_CToC_32f(const orv32f* srcRe, const orv32f* srcIm, orv32f* dstRe, orv32f* dstIm,
                              const orvsFFTContext* context, orv8u* workBuffer) {
  return transformSplit<false>(srcRe, srcIm, dstRe, dstIm, context, workBuffer);
}
orvStatus orvsFFTInv_CToC_32f(const orv32f* srcRe, const orv32f* srcIm, orv32f* dstRe, orv32f* dstIm,
                              const orvsFFTContext* context, orv8u* workBuffer) {
  return transformSplit<true>(srcRe, srcIm, dstRe, dstIm, context, workBuffer);
}
orvStatus orvsFFTFwd_CToC_64f(const orv64f* srcRe, const orv64f* srcIm, orv64f* dstRe, orv64f* dstIm,
                              const orvsFFTContext* context, orv8u* workBuffer) {
  return transformSplit<false>(srcRe, srcIm, dstRe, dstIm, context, workBuffer);
}
orvStatus orvsFFTInv_CToC_64f(const orv64f* srcRe, const orv64f* srcIm, orv64f* dstRe, orv64f* dstIm,
                              const orvsFFTContext* context, orv8u* workBuffer) {
  return transformSplit<true>(srcRe, srcIm, dstRe, dstIm, context, workBuffer);
}

}  // extern "C"
