// Add, Sub, AddC, SubC and SubCRev on integer vectors: the scaled and
// saturating forms on 8u, 16s, 16sc, 32s and 32sc, and the unscaled integer
// sums. One kernel serves two vectors, one serves a vector and a scalar; the
// exported names below pick the element type, the operation and the form.
#include <limits>

#include "arith/add_sub_ops.hpp"
#include "arith/shortcuts.hpp"
#include "core/internal.hpp"
#include "core/lengths.hpp"
#include "core/scale.hpp"

namespace orv {
namespace addsub {
namespace {

// Per element type: the wide type that holds t and the scale limits.
template <typename T>
struct IntPart;

template <>
struct IntPart<orv8u> {
  using W = std::int32_t;  // t from 0 to 510
  static constexpr ScaleLimits kAdd{9, -7};
  static constexpr ScaleLimits kSub{8, -7};
};

template <>
struct IntPart<orv16s> {
  using W = std::int32_t;  // t of 17 bits, shifted by at most 15
  static constexpr ScaleLimits kAdd{16, -15};
  static constexpr ScaleLimits kSub{16, -15};
};

template <>
struct IntPart<orv32s> {
  using W = std::int64_t;  // t of 33 bits, shifted by at most 30
  static constexpr ScaleLimits kAdd{32, -30};
  static constexpr ScaleLimits kSub{32, -30};
};

template <typename T, Op O>
constexpr ScaleLimits limitsOf() {
  return O == Op::kPlus ? IntPart<T>::kAdd : IntPart<T>::kSub;
}

// The bounds each case can reach. An unsigned t is never negative (8u
// differences are limited below to 0 before scaling), so only the upper
// bound remains, and a difference of 8u cannot pass 255 at all. A sum rounded
// at any positive scale stays in range; a signed difference can pass the
// upper bound at scale 1 only (65535 / 2 rounds to 32768).
template <typename T, Op O>
struct PlanOf {
  static constexpr bool kSigned = std::is_signed<T>::value;
  using type = BoundPlan<kSigned ? Bound::kBoth : (O == Op::kPlus ? Bound::kUpper : Bound::kNone),
                         kSigned ? Bound::kBoth : Bound::kUpper,
                         (kSigned && O != Op::kPlus) ? Bound::kUpper : Bound::kNone,
                         Bound::kNone>;
};

// The constant-zero shortcut: `len` elements of L parts each. Complex
// vectors are cleared through the orv16sc name: a 16sc vector is len such
// elements, a 32sc vector 2 * len of them.
template <typename T, int L>
orvStatus clearParts(T* dst, int len) {
  if constexpr (L == 1) {
    return arith::clearElements(dst, len);
  } else if constexpr (std::is_same<T, orv16s>::value) {
    return orvsZero_16sc(reinterpret_cast<orv16sc*>(dst), len);
  } else {
    static_assert(std::is_same<T, orv32s>::value, "complex parts are 16s or 32s");
    return orvsZero_16sc(reinterpret_cast<orv16sc*>(dst), doubledCount(len));
  }
}

// dst = scaled (x O y), element by element. In place, x is dst itself.
template <typename T, Op O, bool InPlace>
orvStatus vectorSfs(const T* x, const T* y, T* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, x, y, dst));
  using W = typename IntPart<T>::W;
  const ScaleCase scaleCase = classifyScale(s, limitsOf<T, O>());
  if (scaleCase == ScaleCase::kZero) return clearParts<T, 1>(dst, len);
  const auto term = [x, y, dst](std::ptrdiff_t j, int) {
    return exactTerm<O, W>(InPlace ? dst[j] : x[j], y[j]);
  };
  storeScaled<T, 1, typename PlanOf<T, O>::type>(scaleCase, s, dst, len, term);
  return orvOk;
}

// dst = scaled (src O val), for vectors of L parts per element with a scalar
// of L parts. In place, src is dst itself.
template <typename T, int L, Op O, bool InPlace>
orvStatus scalarSfs(const T* src, const T (&val)[L], T* dst, int len, int s) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src, dst));
  using W = typename IntPart<T>::W;
  constexpr bool kSigned = std::is_signed<T>::value;

  // An unsigned val - src is never above 0, and is limited to 0.
  if constexpr (!kSigned && O == Op::kRevMinus) {
    if (val[0] == 0) return clearParts<T, L>(dst, len);
  }
  const ScaleCase scaleCase = classifyScale(s, limitsOf<T, O>());
  if (scaleCase == ScaleCase::kZero) return clearParts<T, L>(dst, len);

  T v[L];
  for (int k = 0; k < L; ++k) v[k] = val[k];
  const auto term = [src, dst, v](std::ptrdiff_t j, int k) {
    return exactTerm<O, W>(InPlace ? dst[j] : src[j], v[k]);
  };

  if constexpr (L == 1) {
    if (scaleCase == ScaleCase::kKeep) {
      // A real scalar of known sign can reach one bound only.
      if constexpr (O != Op::kRevMinus) {
        if (v[0] == 0) return InPlace ? orvOk : arith::copyElements(src, dst, len);
      }
      if constexpr (kSigned) {
        const bool upper = O == Op::kPlus ? v[0] > 0 : (O == Op::kMinus ? v[0] < 0 : v[0] >= 0);
        if (upper) {
          storeParts<T, 1, Bound::kUpper>(dst, len, KeepStep<W>{}, term);
        } else {
          storeParts<T, 1, Bound::kLower>(dst, len, KeepStep<W>{}, term);
        }
        return orvOk;
      }
    }
    if constexpr (!kSigned && O == Op::kPlus) {
      // Every sum with a non-zero val is positive: all 255.
      if (scaleCase == ScaleCase::kSignOnly && v[0] != 0) return orvsSet_8u(255, dst, len);
    }
  }
  storeScaled<T, L, typename PlanOf<T, O>::type>(scaleCase, s, dst, len, term);
  return orvOk;
}

// Unscaled unsigned sums, limited to the type's maximum; W holds every sum.
template <typename T, typename W, typename R>
orvStatus unsignedSum(const T* src1, const T* src2, R* dst, int len) {
  ORV_RETURN_IF_ERROR(checkVectors(len, src1, src2, dst));
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    dst[i] = limitTo<R, Bound::kUpper>(static_cast<W>(static_cast<W>(src1[i]) + src2[i]));
  }
  return orvOk;
}

}  // namespace
}  // namespace addsub
}  // namespace orv

using orv::addsub::Op;
using orv::addsub::partsOf;
using orv::addsub::scalarSfs;
using orv::addsub::vectorSfs;

extern "C" {

// ---- Two vectors --------------------------------------------------------
// Sub delivers src2 - src1 (in place: srcDst - src).

orvStatus orvsAdd_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor) {
  return vectorSfs<orv8u, Op::kPlus, false>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsAdd_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv8u, Op::kPlus, true>(srcDst, src, srcDst, len, scaleFactor);
}
orvStatus orvsSub_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor) {
  return vectorSfs<orv8u, Op::kMinus, false>(src2, src1, dst, len, scaleFactor);
}
orvStatus orvsSub_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv8u, Op::kMinus, true>(srcDst, src, srcDst, len, scaleFactor);
}

orvStatus orvsAdd_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len,
                          int scaleFactor) {
  return vectorSfs<orv16s, Op::kPlus, false>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsAdd_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv16s, Op::kPlus, true>(srcDst, src, srcDst, len, scaleFactor);
}
orvStatus orvsAdd_16s(const orv16s* src1, const orv16s* src2, orv16s* dst, int len) {
  return vectorSfs<orv16s, Op::kPlus, false>(src1, src2, dst, len, 0);
}
orvStatus orvsAdd_16s_I(const orv16s* src, orv16s* srcDst, int len) {
  return vectorSfs<orv16s, Op::kPlus, true>(srcDst, src, srcDst, len, 0);
}
orvStatus orvsSub_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len,
                          int scaleFactor) {
  return vectorSfs<orv16s, Op::kMinus, false>(src2, src1, dst, len, scaleFactor);
}
orvStatus orvsSub_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv16s, Op::kMinus, true>(srcDst, src, srcDst, len, scaleFactor);
}
orvStatus orvsSub_16s(const orv16s* src1, const orv16s* src2, orv16s* dst, int len) {
  return vectorSfs<orv16s, Op::kMinus, false>(src2, src1, dst, len, 0);
}
orvStatus orvsSub_16s_I(const orv16s* src, orv16s* srcDst, int len) {
  return vectorSfs<orv16s, Op::kMinus, true>(srcDst, src, srcDst, len, 0);
}

orvStatus orvsAdd_32s_Sfs(const orv32s* src1, const orv32s* src2, orv32s* dst, int len,
                          int scaleFactor) {
  return vectorSfs<orv32s, Op::kPlus, false>(src1, src2, dst, len, scaleFactor);
}
orvStatus orvsAdd_32s_ISfs(const orv32s* src, orv32s* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv32s, Op::kPlus, true>(srcDst, src, srcDst, len, scaleFactor);
}
orvStatus orvsSub_32s_Sfs(const orv32s* src1, const orv32s* src2, orv32s* dst, int len,
                          int scaleFactor) {
  return vectorSfs<orv32s, Op::kMinus, false>(src2, src1, dst, len, scaleFactor);
}
orvStatus orvsSub_32s_ISfs(const orv32s* src, orv32s* srcDst, int len, int scaleFactor) {
  return vectorSfs<orv32s, Op::kMinus, true>(srcDst, src, srcDst, len, scaleFactor);
}

// Complex vectors: len is tested first, then the real form of the part type
// runs on 2 * len parts and makes the pointer tests.

orvStatus orvsAdd_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len,
                           int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsAdd_16s_Sfs(partsOf<orv16s>(src1), partsOf<orv16s>(src2), partsOf<orv16s>(dst),
                         orv::doubledCount(len), scaleFactor);
}
orvStatus orvsAdd_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsAdd_16s_ISfs(partsOf<orv16s>(src), partsOf<orv16s>(srcDst), orv::doubledCount(len),
                          scaleFactor);
}
orvStatus orvsSub_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len,
                           int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsSub_16s_Sfs(partsOf<orv16s>(src1), partsOf<orv16s>(src2), partsOf<orv16s>(dst),
                         orv::doubledCount(len), scaleFactor);
}
orvStatus orvsSub_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsSub_16s_ISfs(partsOf<orv16s>(src), partsOf<orv16s>(srcDst), orv::doubledCount(len),
                          scaleFactor);
}
orvStatus orvsAdd_32sc_Sfs(const orv32sc* src1, const orv32sc* src2, orv32sc* dst, int len,
                           int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsAdd_32s_Sfs(partsOf<orv32s>(src1), partsOf<orv32s>(src2), partsOf<orv32s>(dst),
                         orv::doubledCount(len), scaleFactor);
}
orvStatus orvsAdd_32sc_ISfs(const orv32sc* src, orv32sc* srcDst, int len, int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsAdd_32s_ISfs(partsOf<orv32s>(src), partsOf<orv32s>(srcDst), orv::doubledCount(len),
                          scaleFactor);
}
orvStatus orvsSub_32sc_Sfs(const orv32sc* src1, const orv32sc* src2, orv32sc* dst, int len,
                           int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsSub_32s_Sfs(partsOf<orv32s>(src1), partsOf<orv32s>(src2), partsOf<orv32s>(dst),
                         orv::doubledCount(len), scaleFactor);
}
orvStatus orvsSub_32sc_ISfs(const orv32sc* src, orv32sc* srcDst, int len, int scaleFactor) {
  if (len < 1) return orvErrSize;
  return orvsSub_32s_ISfs(partsOf<orv32s>(src), partsOf<orv32s>(srcDst), orv::doubledCount(len),
                          scaleFactor);
}

// Unscaled integer sums.

orvStatus orvsAdd_8u16u(const orv8u* src1, const orv8u* src2, orv16u* dst, int len) {
  // 255 + 255 fits 16 bits, so the bound is never reached.
  return orv::addsub::unsignedSum<orv8u, std::int32_t>(src1, src2, dst, len);
}
orvStatus orvsAdd_16u(const orv16u* src1, const orv16u* src2, orv16u* dst, int len) {
  return orv::addsub::unsignedSum<orv16u, std::uint32_t>(src1, src2, dst, len);
}
orvStatus orvsAdd_32u(const orv32u* src1, const orv32u* src2, orv32u* dst, int len) {
  return orv::addsub::unsignedSum<orv32u, std::uint64_t>(src1, src2, dst, len);
}

// ---- Vector and scalar --------------------------------------------------
// AddC: src + val. SubC: src - val. SubCRev: val - src.

#define ORV_SCALAR_REAL(T, OPNAME, OP)                                                       \
  orvStatus orvs##OPNAME##_##T##_Sfs(const orv##T* src, orv##T val, orv##T* dst, int len,   \
                                     int scaleFactor) {                                      \
    const orv##T v[1] = {val};                                                               \
    return scalarSfs<orv##T, 1, OP, false>(src, v, dst, len, scaleFactor);                   \
  }                                                                                          \
  orvStatus orvs##OPNAME##_##T##_ISfs(orv##T val, orv##T* srcDst, int len, int scaleFactor) { \
    const orv##T v[1] = {val};                                                               \
    return scalarSfs<orv##T, 1, OP, true>(srcDst, v, srcDst, len, scaleFactor);              \
  }

#define ORV_SCALAR_COMPLEX(C, P, OPNAME, OP)                                                    \
  orvStatus orvs##OPNAME##_##C##_Sfs(const orv##C* src, orv##C val, orv##C* dst, int len,      \
                                     int scaleFactor) {                                         \
    const orv##P v[2] = {val.re, val.im};                                                       \
    return scalarSfs<orv##P, 2, OP, false>(partsOf<orv##P>(src), v, partsOf<orv##P>(dst), len, \
                                           scaleFactor);                                        \
  }                                                                                             \
  orvStatus orvs##OPNAME##_##C##_ISfs(orv##C val, orv##C* srcDst, int len, int scaleFactor) {   \
    const orv##P v[2] = {val.re, val.im};                                                       \
    return scalarSfs<orv##P, 2, OP, true>(partsOf<orv##P>(srcDst), v, partsOf<orv##P>(srcDst),  \
                                          len, scaleFactor);                                    \
  }

ORV_SCALAR_REAL(8u, AddC, Op::kPlus)
ORV_SCALAR_REAL(8u, SubC, Op::kMinus)
ORV_SCALAR_REAL(8u, SubCRev, Op::kRevMinus)
ORV_SCALAR_REAL(16s, AddC, Op::kPlus)
ORV_SCALAR_REAL(16s, SubC, Op::kMinus)
ORV_SCALAR_REAL(16s, SubCRev, Op::kRevMinus)
ORV_SCALAR_REAL(32s, AddC, Op::kPlus)
ORV_SCALAR_REAL(32s, SubC, Op::kMinus)
ORV_SCALAR_REAL(32s, SubCRev, Op::kRevMinus)
ORV_SCALAR_COMPLEX(16sc, 16s, AddC, Op::kPlus)
ORV_SCALAR_COMPLEX(16sc, 16s, SubC, Op::kMinus)
ORV_SCALAR_COMPLEX(16sc, 16s, SubCRev, Op::kRevMinus)
ORV_SCALAR_COMPLEX(32sc, 32s, AddC, Op::kPlus)
ORV_SCALAR_COMPLEX(32sc, 32s, SubC, Op::kMinus)
ORV_SCALAR_COMPLEX(32sc, 32s, SubCRev, Op::kRevMinus)

// Unscaled in-place forms: scale 0 of the scaled kernel (val 0 returns at
// once, otherwise the one bound that the sign of val can reach).
orvStatus orvsAddC_16s_I(orv16s val, orv16s* srcDst, int len) {
  const orv16s v[1] = {val};
  return scalarSfs<orv16s, 1, Op::kPlus, true>(srcDst, v, srcDst, len, 0);
}
orvStatus orvsSubC_16s_I(orv16s val, orv16s* srcDst, int len) {
  const orv16s v[1] = {val};
  return scalarSfs<orv16s, 1, Op::kMinus, true>(srcDst, v, srcDst, len, 0);
}

}  // extern "C"
