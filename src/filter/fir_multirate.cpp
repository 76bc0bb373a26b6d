// The block forms on a multi-rate state. The block forms of every family
// hand a state with the family's multi-rate tag over to these two functions;
// `len` counts iterations (downFactor samples in, upFactor samples out).
//
// The multi-rate kernels and the creation that builds their tables are not
// in the library yet, so no state can carry a valid multi-rate mode: after
// the argument checks of the multi-rate block forms, such a state is answered
// like one whose mode is outside 1 to 3, with orvErrContextMismatch. The
// kernels replace the marked step below.
#include "filter/fir_kernels.hpp"

namespace orv {
namespace filter {

template <typename F>
orvStatus firMultiRateBlock(orvsFIRState* s, const typename F::Sample* src,
                            typename F::Sample* dst, int len, int scaleFactor) {
  (void)s;
  (void)scaleFactor;
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  // Multi-rate kernels: not built yet; no valid mode.
  return orvErrContextMismatch;
}

template <typename F>
orvStatus firMultiRateBlockInPlace(orvsFIRState* s, typename F::Sample* srcDst, int len,
                                   int scaleFactor) {
  (void)s;
  (void)scaleFactor;
  ORV_RETURN_IF_ERROR(checkVectors(len, srcDst));
  // Multi-rate kernels: not built yet; no valid mode.
  return orvErrContextMismatch;
}

#define ORV_FIR_MULTIRATE_INSTANCES(F)                                                        \
  template orvStatus firMultiRateBlock<F>(orvsFIRState*, const F::Sample*, F::Sample*, int, \
                                          int);                                              \
  template orvStatus firMultiRateBlockInPlace<F>(orvsFIRState*, F::Sample*, int, int);

ORV_FIR_MULTIRATE_INSTANCES(Fir32f)
ORV_FIR_MULTIRATE_INSTANCES(Fir32fc)
ORV_FIR_MULTIRATE_INSTANCES(Fir32f16s)
ORV_FIR_MULTIRATE_INSTANCES(Fir32fc16sc)
ORV_FIR_MULTIRATE_INSTANCES(Fir32s16s)
ORV_FIR_MULTIRATE_INSTANCES(Fir32sc16sc)
ORV_FIR_MULTIRATE_INSTANCES(Fir64f)
ORV_FIR_MULTIRATE_INSTANCES(Fir64fc)
ORV_FIR_MULTIRATE_INSTANCES(Fir64f32f)
ORV_FIR_MULTIRATE_INSTANCES(Fir64fc32fc)
ORV_FIR_MULTIRATE_INSTANCES(Fir64f32s)
ORV_FIR_MULTIRATE_INSTANCES(Fir64fc32sc)
ORV_FIR_MULTIRATE_INSTANCES(Fir64f16s)
ORV_FIR_MULTIRATE_INSTANCES(Fir64fc16sc)
#undef ORV_FIR_MULTIRATE_INSTANCES

}  // namespace filter
}  // namespace orv
