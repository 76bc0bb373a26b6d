// Add, Sub, AddC, SubC and SubCRev on floating-point vectors (32f, 64f and
// their complex forms), and the 16s sums delivered as 32f. Plain IEEE
// arithmetic: NaN and infinities pass as the processor makes them, no
// saturation, no warning.
#include "arith/add_sub_ops.hpp"
#include "arith/shortcuts.hpp"
#include "core/internal.hpp"
#include "core/lengths.hpp"

namespace orv {
namespace addsub {
namespace {

// dst = x O y, element by element. In place, x is dst itself.
template <typename T, Op O, bool InPlace>
orvStatus floatVector(const T* x, const T* y, T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) dst[i] = floatTerm<O>(InPlace ? dst[i] : x[i], y[i]);
  return orvOk;
}

// dst = src O val for vectors of L parts per element and a scalar of L parts.
// AddC and SubC on real vectors skip the work for a val of zero or NaN: the
// vector stays as it is (in place) or is copied (out of place), so its NaN
// payloads and signed zeros pass unchanged, and a NaN val changes nothing.
template <typename T, int L, Op O, bool InPlace>
orvStatus floatScalar(const T* src, const T (&val)[L], T* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  if constexpr (L == 1 && O != Op::kRevMinus) {
    if (arith::zeroOrNaN(val[0])) return InPlace ? orvOk : arith::copyElements(src, dst, len);
  }
  T v[L];
  for (int k = 0; k < L; ++k) v[k] = val[k];
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    for (int k = 0; k < L; ++k) {
      const std::ptrdiff_t j = i * L + k;
      dst[j] = floatTerm<O>(InPlace ? dst[j] : src[j], v[k]);
    }
  }
  return orvOk;
}

// 16s operands turned to floating point and combined there; the exact sum or
// difference of two 16-bit values needs 17 bits and is exact in 32f.
template <Op O>
orvStatus widenedVector(const orv16s* x, const orv16s* y, orv32f* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    dst[i] = static_cast<orv32f>(exactTerm<O, std::int32_t>(x[i], y[i]));
  }
  return orvOk;
}

}  // namespace
}  // namespace addsub
}  // namespace orv

using orv::addsub::floatScalar;
using orv::addsub::floatVector;
using orv::addsub::Op;
using orv::addsub::partsOf;

extern "C" {

// ---- Two vectors (Sub delivers src2 - src1; in place srcDst - src) -------

#define ORV_FLOAT_VECTOR(T)                                                                  \
  orvStatus orvsAdd_##T(const orv##T* src1, const orv##T* src2, orv##T* dst, int len) {     \
    return floatVector<orv##T, Op::kPlus, false>(src1, src2, dst, len);                      \
  }                                                                                          \
  orvStatus orvsAdd_##T##_I(const orv##T* src, orv##T* srcDst, int len) {                   \
    return floatVector<orv##T, Op::kPlus, true>(srcDst, src, srcDst, len);                   \
  }                                                                                          \
  orvStatus orvsSub_##T(const orv##T* src1, const orv##T* src2, orv##T* dst, int len) {     \
    return floatVector<orv##T, Op::kMinus, false>(src2, src1, dst, len);                     \
  }                                                                                          \
  orvStatus orvsSub_##T##_I(const orv##T* src, orv##T* srcDst, int len) {                   \
    return floatVector<orv##T, Op::kMinus, true>(srcDst, src, srcDst, len);                  \
  }

ORV_FLOAT_VECTOR(32f)
ORV_FLOAT_VECTOR(64f)

// Complex vectors: len is tested first, then the real form of the part type
// runs on 2 * len parts and makes the pointer tests.
#define ORV_FLOAT_COMPLEX_VECTOR(C, P)                                                          \
  orvStatus orvsAdd_##C(const orv##C* src1, const orv##C* src2, orv##C* dst, int len) {        \
    if (len < 1) return orvErrSize;                                                             \
    return orvsAdd_##P(partsOf<orv##P>(src1), partsOf<orv##P>(src2), partsOf<orv##P>(dst),     \
                       orv::doubledCount(len));                                                 \
  }                                                                                             \
  orvStatus orvsAdd_##C##_I(const orv##C* src, orv##C* srcDst, int len) {                      \
    if (len < 1) return orvErrSize;                                                             \
    return orvsAdd_##P##_I(partsOf<orv##P>(src), partsOf<orv##P>(srcDst), orv::doubledCount(len)); \
  }                                                                                             \
  orvStatus orvsSub_##C(const orv##C* src1, const orv##C* src2, orv##C* dst, int len) {        \
    if (len < 1) return orvErrSize;                                                             \
    return orvsSub_##P(partsOf<orv##P>(src1), partsOf<orv##P>(src2), partsOf<orv##P>(dst),     \
                       orv::doubledCount(len));                                                 \
  }                                                                                             \
  orvStatus orvsSub_##C##_I(const orv##C* src, orv##C* srcDst, int len) {                      \
    if (len < 1) return orvErrSize;                                                             \
    return orvsSub_##P##_I(partsOf<orv##P>(src), partsOf<orv##P>(srcDst), orv::doubledCount(len)); \
  }

ORV_FLOAT_COMPLEX_VECTOR(32fc, 32f)
ORV_FLOAT_COMPLEX_VECTOR(64fc, 64f)

orvStatus orvsAdd_16s32f(const orv16s* src1, const orv16s* src2, orv32f* dst, int len) {
  return orv::addsub::widenedVector<Op::kPlus>(src1, src2, dst, len);
}
orvStatus orvsSub_16s32f(const orv16s* src1, const orv16s* src2, orv32f* dst, int len) {
  return orv::addsub::widenedVector<Op::kMinus>(src2, src1, dst, len);
}

// ---- Vector and scalar: AddC src + val, SubC src - val, SubCRev val - src --

#define ORV_FLOAT_SCALAR_REAL(T, OPNAME, OP)                                                \
  orvStatus orvs##OPNAME##_##T(const orv##T* src, orv##T val, orv##T* dst, int len) {      \
    const orv##T v[1] = {val};                                                              \
    return floatScalar<orv##T, 1, OP, false>(src, v, dst, len);                             \
  }                                                                                         \
  orvStatus orvs##OPNAME##_##T##_I(orv##T val, orv##T* srcDst, int len) {                  \
    const orv##T v[1] = {val};                                                              \
    return floatScalar<orv##T, 1, OP, true>(srcDst, v, srcDst, len);                        \
  }

#define ORV_FLOAT_SCALAR_COMPLEX(C, P, OPNAME, OP)                                          \
  orvStatus orvs##OPNAME##_##C(const orv##C* src, orv##C val, orv##C* dst, int len) {      \
    const orv##P v[2] = {val.re, val.im};                                                   \
    return floatScalar<orv##P, 2, OP, false>(partsOf<orv##P>(src), v, partsOf<orv##P>(dst), \
                                             len);                                          \
  }                                                                                         \
  orvStatus orvs##OPNAME##_##C##_I(orv##C val, orv##C* srcDst, int len) {                  \
    const orv##P v[2] = {val.re, val.im};                                                   \
    return floatScalar<orv##P, 2, OP, true>(partsOf<orv##P>(srcDst), v,                     \
                                            partsOf<orv##P>(srcDst), len);                  \
  }

ORV_FLOAT_SCALAR_REAL(32f, AddC, Op::kPlus)
ORV_FLOAT_SCALAR_REAL(32f, SubC, Op::kMinus)
ORV_FLOAT_SCALAR_REAL(32f, SubCRev, Op::kRevMinus)
ORV_FLOAT_SCALAR_REAL(64f, AddC, Op::kPlus)
ORV_FLOAT_SCALAR_REAL(64f, SubC, Op::kMinus)
ORV_FLOAT_SCALAR_REAL(64f, SubCRev, Op::kRevMinus)
ORV_FLOAT_SCALAR_COMPLEX(32fc, 32f, AddC, Op::kPlus)
ORV_FLOAT_SCALAR_COMPLEX(32fc, 32f, SubC, Op::kMinus)
ORV_FLOAT_SCALAR_COMPLEX(32fc, 32f, SubCRev, Op::kRevMinus)
ORV_FLOAT_SCALAR_COMPLEX(64fc, 64f, AddC, Op::kPlus)
ORV_FLOAT_SCALAR_COMPLEX(64fc, 64f, SubC, Op::kMinus)
ORV_FLOAT_SCALAR_COMPLEX(64fc, 64f, SubCRev, Op::kRevMinus)

}  // extern "C"
