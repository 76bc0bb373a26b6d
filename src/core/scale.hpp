// Integer scaling with rounding and saturation: the steps that every family
// with a `scaleFactor` argument shares.
//
// A scaled integer function forms the exact result t of its operation in a
// signed integer W wide enough to hold it, and stores
//
//     saturate_T(round(t * 2^-s))
//
// for its scaleFactor s, rounding to nearest with ties to the even neighbour.
// A positive s divides, a negative one multiplies exactly, and every value of
// s is legal. The work splits into cases that are chosen once per call, each
// with a loop of its own:
//
//   ScaleCase      scaleFactor s              element result
//   kKeep          s == 0                     t, saturated
//   kShiftUp       signOnlyBelow <= s < 0     t shifted left by -s, saturated
//   kHalve         s == 1                     t rounded at bit 1 (its own loop)
//   kRound         2 <= s <= zeroAbove        t rounded at bit s
//   kZero          s > zeroAbove              0 everywhere
//   kSignOnly      s < signOnlyBelow          upper bound if t > 0, lower bound
//                                             if t < 0, 0 if t == 0
//
// `zeroAbove` and `signOnlyBelow` (ScaleLimits) are per family and element
// type; classifyScale() applies them. Families reach their kZero case through
// their own orvsZero_* name, so storeScaled() is normally not called with it.
//
// Rounding at bit s works on integers without a branch on the sign:
//     u = t + (2^(s-1) - 1) + ((t >> s) & 1);   result = u >> s
// (arithmetic shifts). RoundStep prepares 2^(s-1) - 1 once; HalveStep is the
// s == 1 form, (t + ((t >> 1) & 1)) >> 1. Both need W to hold
// |t| + 2^(s-1): a family picks W and its zeroAbove limit so that it does.
//
// Saturation: `Bound` names the bounds a loop tests (none, upper, lower or
// both); limitTo<T, B>(w) applies them to a wide value and narrows to T.
// A loop tests only the bounds its case can reach: e.g. an addition rounded
// at s >= 1 cannot leave the range, so its plan says Bound::kNone there.
//
// Steps are small functors W -> W built once per call:
//   KeepStep<W>                 t
//   ShiftUpStep<W>{d}           t * 2^d, for a t that cannot overflow W at d
//   SaturateShiftUpStep<T,W>{d} saturate_T(t) * 2^d: for products that can
//                               fill W; followed by the loop's saturation
//                               this equals the exact rule (saturate, shift,
//                               saturate) and never wraps
//   HalveStep<W>, RoundStep<W>(s)
//   SignOnlyStep<T,W>           bound or 0 by the sign of t
//
// Loops:
//   storeParts<T, L, B>(dst, len, step, term)
//       dst[j] = limitTo<T, B>(step(term(j, k))) for j = L*i + k, i < len,
//       k < L, ascending: L = 1 for real vectors, 2 for complex ones treated
//       part by part (k tells the part, e.g. to pick a scalar's re or im).
//       term(j, k) returns the exact t as W; it may read dst[j] (in place).
//   storeScaled<T, L, Plan>(scaleCase, s, dst, len, term)
//       one call for all computing cases; Plan (a BoundPlan) gives the bounds
//       each case tests and whether a negative scale saturates before it
//       shifts. kSignOnly and kZero store without further bounds.
//
// A family thus writes: its checks, its shortcuts (orvsZero_*, orvsSet_*,
// orvsCopy_*), the ScaleLimits of its types, the BoundPlan of each form and
// a term lambda; everything else comes from here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace orv {

// The two limits of a family: results are constant 0 for s above zeroAbove
// and depend only on the sign of t for s below signOnlyBelow.
struct ScaleLimits {
  int zeroAbove;
  int signOnlyBelow;
};

enum class ScaleCase { kKeep, kShiftUp, kHalve, kRound, kZero, kSignOnly };

constexpr ScaleCase classifyScale(int s, ScaleLimits limits) {
  if (s == 0) return ScaleCase::kKeep;
  if (s > limits.zeroAbove) return ScaleCase::kZero;
  if (s < limits.signOnlyBelow) return ScaleCase::kSignOnly;
  if (s < 0) return ScaleCase::kShiftUp;
  if (s == 1) return ScaleCase::kHalve;
  return ScaleCase::kRound;
}

// ---- Saturation ----------------------------------------------------------

enum class Bound { kNone, kUpper, kLower, kBoth };

// `w` limited by the bounds B of T, still in W.
template <typename T, Bound B, typename W>
constexpr W clampTo(W w) {
  static_assert(std::is_integral<T>::value && std::is_integral<W>::value, "integers only");
  if constexpr (B == Bound::kUpper || B == Bound::kBoth) {
    constexpr W hi = static_cast<W>(std::numeric_limits<T>::max());
    if (w > hi) w = hi;
  }
  if constexpr (B == Bound::kLower || B == Bound::kBoth) {
    constexpr W lo = static_cast<W>(std::numeric_limits<T>::min());
    if (w < lo) w = lo;
  }
  return w;
}

// `w` limited by the bounds B of T and stored as T. Where B leaves a bound
// out, the value must already be inside it.
template <typename T, Bound B, typename W>
constexpr T limitTo(W w) {
  return static_cast<T>(clampTo<T, B>(w));
}

// ---- Steps ----------------------------------------------------------------

// t * 2^d for 0 <= d, done on the unsigned image so that a negative t is
// shifted without undefined behaviour. The caller guarantees the product
// fits W.
template <typename W>
constexpr W shiftUp(W t, int d) {
  using U = std::make_unsigned_t<W>;
  return static_cast<W>(static_cast<U>(t) << d);
}

template <typename W>
struct KeepStep {
  constexpr W operator()(W t) const { return t; }
};

template <typename W>
struct ShiftUpStep {
  int distance;  // -s, 1 or more
  constexpr W operator()(W t) const { return shiftUp(t, distance); }
};

template <typename T, typename W>
struct SaturateShiftUpStep {
  int distance;  // -s; a value of T shifted by it must fit W
  constexpr W operator()(W t) const { return shiftUp(clampTo<T, Bound::kBoth>(t), distance); }
};

template <typename W>
struct HalveStep {
  constexpr W operator()(W t) const { return (t + ((t >> 1) & 1)) >> 1; }
};

template <typename W>
struct RoundStep {
  explicit constexpr RoundStep(int s) : shift(s), bias((W(1) << (s - 1)) - 1) {}
  constexpr W operator()(W t) const { return (t + bias + ((t >> shift) & 1)) >> shift; }
  int shift;  // s, 2 or more
  W bias;     // 2^(s-1) - 1
};

template <typename T, typename W>
struct SignOnlyStep {
  constexpr W operator()(W t) const {
    return t > 0 ? static_cast<W>(std::numeric_limits<T>::max())
                 : (t < 0 ? static_cast<W>(std::numeric_limits<T>::min()) : W(0));
  }
};

template <typename W>
struct ZeroStep {
  constexpr W operator()(W) const { return 0; }
};

// ---- Loops -----------------------------------------------------------------

// The bounds that each computing case of a form tests, and the order of
// saturation and shift at a negative scale.
template <Bound AtKeep, Bound AtShiftUp, Bound AtHalve, Bound AtRound,
          bool SaturateBeforeShift = false>
struct BoundPlan {
  static constexpr Bound atKeep = AtKeep;
  static constexpr Bound atShiftUp = AtShiftUp;
  static constexpr Bound atHalve = AtHalve;
  static constexpr Bound atRound = AtRound;
  static constexpr bool saturateBeforeShift = SaturateBeforeShift;
};

template <typename T, int L, Bound B, typename Step, typename Term>
inline void storeParts(T* dst, int len, const Step& step, const Term& term) {
  const std::ptrdiff_t n = len;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    for (int k = 0; k < L; ++k) {
      const std::ptrdiff_t j = i * L + k;
      dst[j] = limitTo<T, B>(step(term(j, k)));
    }
  }
}

template <typename T, int L, typename Plan, typename Term>
inline void storeScaled(ScaleCase scaleCase, int s, T* dst, int len, const Term& term) {
  using W = decltype(term(std::ptrdiff_t{0}, 0));
  switch (scaleCase) {
    case ScaleCase::kKeep:
      storeParts<T, L, Plan::atKeep>(dst, len, KeepStep<W>{}, term);
      break;
    case ScaleCase::kShiftUp:
      if constexpr (Plan::saturateBeforeShift) {
        storeParts<T, L, Plan::atShiftUp>(dst, len, SaturateShiftUpStep<T, W>{-s}, term);
      } else {
        storeParts<T, L, Plan::atShiftUp>(dst, len, ShiftUpStep<W>{-s}, term);
      }
      break;
    case ScaleCase::kHalve:
      storeParts<T, L, Plan::atHalve>(dst, len, HalveStep<W>{}, term);
      break;
    case ScaleCase::kRound:
      storeParts<T, L, Plan::atRound>(dst, len, RoundStep<W>(s), term);
      break;
    case ScaleCase::kSignOnly:
      storeParts<T, L, Bound::kNone>(dst, len, SignOnlyStep<T, W>{}, term);
      break;
    case ScaleCase::kZero:
      storeParts<T, L, Bound::kNone>(dst, len, ZeroStep<W>{}, term);
      break;
  }
}

}  // namespace orv
