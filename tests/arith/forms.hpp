// Every add, subtract and multiply function, erased to one calling shape so
// that the tests run whole families from tables.
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvspx.h"
#include "support/exact_ref.hpp"

namespace arithtest {

using orvtest::Wide;

// kPlus: x + y. kMinus: x - y. kRevMinus: y - x (SubCRev). kMul: x * y.
enum class Op { kPlus, kMinus, kRevMinus, kMul };

// One function on arrays of part type P (the type, or re/im of a complex
// type); `run(x, y, dst, len, s)` takes len * lanes parts. Vector forms pair
// x[j] with y[j], scalar forms with y[j % lanes]. Sub receives x as its src2
// (it delivers src2 - src1). In-place forms find x in dst and ignore x.
template <typename P>
struct Form {
  std::string name;
  Op op;
  bool scalar, inPlace, scaled;
  int lanes;
  std::function<orvStatus(const P* x, const P* y, P* dst, int len, int s)> run;
};

template <typename C, typename P>
C scalarOf(const P* y) {
  if constexpr (sizeof(C) == sizeof(P)) {
    return static_cast<C>(y[0]);
  } else {
    return C{y[0], y[1]};
  }
}

// The shape is read off the prototype: a leading non-pointer or a second
// non-pointer is the scalar; one pointer fewer means in place; two trailing
// ints mean a scale factor.
template <typename P, typename... A>
Form<P> make(const char* name, Op op, orvStatus (*f)(A...)) {
  using T = std::tuple<A...>;
  constexpr bool scalar = !std::is_pointer_v<std::tuple_element_t<0, T>> || !std::is_pointer_v<std::tuple_element_t<1, T>>;
  constexpr int pointers = (int(std::is_pointer_v<A>) + ...);
  constexpr bool inPlace = pointers == (scalar ? 1 : 2);
  constexpr bool scaled = int(sizeof...(A)) - pointers - int(scalar) == 2;
  using C = std::remove_pointer_t<std::tuple_element_t<inPlace ? 1 : 2, T>>;
  Form<P> form{name, op, scalar, inPlace, scaled, int(sizeof(C) / sizeof(P)), nullptr};
  form.run = [f, op](const P* x, const P* y, P* d, int n, int s) {
    const auto call = [&](auto... a) {
      if constexpr (scaled) {
        return f(a..., n, s);
      } else {
        return f(a..., n);
      }
    };
    const C* cx = reinterpret_cast<const C*>(x);
    const C* cy = reinterpret_cast<const C*>(y);
    C* cd = reinterpret_cast<C*>(d);
    if constexpr (scalar && inPlace) {
      return call(scalarOf<C>(y), cd);
    } else if constexpr (scalar) {
      return call(cx, scalarOf<C>(y), cd);
    } else if constexpr (inPlace) {
      return call(cy, cd);
    } else {
      return op == Op::kMinus ? call(cy, cx, cd) : call(cx, cy, cd);
    }
  };
  return form;
}

#define ARITH_FORM(P, op, fn) arithtest::make<P>(#fn, arithtest::Op::op, fn)
#define ARITH_PAIR(P, op, fn) ARITH_FORM(P, op, fn##_Sfs), ARITH_FORM(P, op, fn##_ISfs)
#define ARITH_PAIR0(P, op, fn) ARITH_FORM(P, op, fn), ARITH_FORM(P, op, fn##_I)

inline std::vector<Form<orv8u>> forms8u() {
  return {ARITH_PAIR(orv8u, kPlus, orvsAdd_8u),      ARITH_PAIR(orv8u, kMinus, orvsSub_8u),
          ARITH_PAIR(orv8u, kPlus, orvsAddC_8u),     ARITH_PAIR(orv8u, kMinus, orvsSubC_8u),
          ARITH_PAIR(orv8u, kRevMinus, orvsSubCRev_8u), ARITH_PAIR(orv8u, kMul, orvsMul_8u),
          ARITH_PAIR(orv8u, kMul, orvsMulC_8u)};
}

// The scaled forms of 16s/16sc or 32s/32sc, as both share them.
#define ARITH_SCALED(P, T, TC)                                                                              \
  ARITH_PAIR(P, kPlus, orvsAdd_##T), ARITH_PAIR(P, kMinus, orvsSub_##T), ARITH_PAIR(P, kPlus, orvsAdd_##TC), \
      ARITH_PAIR(P, kMinus, orvsSub_##TC), ARITH_PAIR(P, kPlus, orvsAddC_##T),                                \
      ARITH_PAIR(P, kMinus, orvsSubC_##T), ARITH_PAIR(P, kRevMinus, orvsSubCRev_##T),                         \
      ARITH_PAIR(P, kPlus, orvsAddC_##TC), ARITH_PAIR(P, kMinus, orvsSubC_##TC),                              \
      ARITH_PAIR(P, kRevMinus, orvsSubCRev_##TC), ARITH_PAIR(P, kMul, orvsMul_##T),                           \
      ARITH_PAIR(P, kMul, orvsMulC_##T), ARITH_PAIR(P, kMul, orvsMul_##TC), ARITH_PAIR(P, kMul, orvsMulC_##TC)

inline std::vector<Form<orv16s>> forms16s() {
  return {ARITH_SCALED(orv16s, 16s, 16sc),
          ARITH_PAIR0(orv16s, kPlus, orvsAdd_16s),
          ARITH_PAIR0(orv16s, kMinus, orvsSub_16s),
          ARITH_PAIR0(orv16s, kMul, orvsMul_16s),
          ARITH_FORM(orv16s, kPlus, orvsAddC_16s_I),
          ARITH_FORM(orv16s, kMinus, orvsSubC_16s_I),
          ARITH_FORM(orv16s, kMul, orvsMulC_16s_I)};
}

inline std::vector<Form<orv32s>> forms32s() { return {ARITH_SCALED(orv32s, 32s, 32sc)}; }

// The floating forms of part type P (32f or 64f) and complex forms C.
#define ARITH_FLOAT(P, T, TC)                                                                           \
  {                                                                                                     \
    ARITH_PAIR0(P, kPlus, orvsAdd_##T), ARITH_PAIR0(P, kMinus, orvsSub_##T),                            \
        ARITH_PAIR0(P, kPlus, orvsAdd_##TC), ARITH_PAIR0(P, kMinus, orvsSub_##TC),                      \
        ARITH_PAIR0(P, kPlus, orvsAddC_##T), ARITH_PAIR0(P, kMinus, orvsSubC_##T),                      \
        ARITH_PAIR0(P, kRevMinus, orvsSubCRev_##T), ARITH_PAIR0(P, kPlus, orvsAddC_##TC),               \
        ARITH_PAIR0(P, kMinus, orvsSubC_##TC), ARITH_PAIR0(P, kRevMinus, orvsSubCRev_##TC),             \
        ARITH_PAIR0(P, kMul, orvsMul_##T), ARITH_PAIR0(P, kMul, orvsMulC_##T),                          \
        ARITH_PAIR0(P, kMul, orvsMul_##TC), ARITH_PAIR0(P, kMul, orvsMulC_##TC)                         \
  }

inline std::vector<Form<orv32f>> forms32f() { return ARITH_FLOAT(orv32f, 32f, 32fc); }
inline std::vector<Form<orv64f>> forms64f() { return ARITH_FLOAT(orv64f, 64f, 64fc); }

// The exact integer result of part j; an unsigned difference below 0 is 0.
template <typename P>
Wide exactPart(const Form<P>& f, const P* x, const P* y, std::size_t j) {
  const auto yAt = [&](std::size_t k) { return Wide(f.scalar ? y[k % f.lanes] : y[k]); };
  if (f.op == Op::kMul) {
    if (f.lanes == 1) return Wide(x[j]) * yAt(j);
    const std::size_t e = j & ~std::size_t(1);
    const Wide a = x[e], b = x[e + 1], c = yAt(e), d = yAt(e + 1);
    return (j & 1) ? a * d + b * c : a * c - b * d;
  }
  const Wide a = x[j], b = yAt(j);
  const Wide t = f.op == Op::kPlus ? a + b : (f.op == Op::kMinus ? a - b : b - a);
  return (!std::is_signed<P>::value && t < 0) ? 0 : t;
}

// The floating result of part j: the operation in double, rounded once. Real
// AddC and SubC pass the vector on at a scalar of +-0 or NaN; real MulC
// passes it on at 1 or NaN and clears it to +0 at +-0.
template <typename P>
P floatPart(const Form<P>& f, const P* x, const P* y, std::size_t j, bool* copied) {
  const auto yAt = [&](std::size_t k) -> double { return f.scalar ? y[k % f.lanes] : y[k]; };
  *copied = false;
  if (f.scalar && f.lanes == 1 && f.op != Op::kRevMinus) {
    const P v = y[0];
    if (std::isnan(v) || (f.op == Op::kMul ? v == P(1) : v == P(0))) {
      *copied = true;
      return x[j];
    }
    if (f.op == Op::kMul && v == P(0)) return P(0);
  }
  if (f.op == Op::kMul && f.lanes == 2) {
    const std::size_t e = j & ~std::size_t(1);
    const double a = x[e], b = x[e + 1], c = yAt(e), d = yAt(e + 1);
    return static_cast<P>((j & 1) ? a * d + b * c : a * c - b * d);
  }
  const double a = x[j], b = yAt(j);
  switch (f.op) {
    case Op::kPlus: return static_cast<P>(a + b);
    case Op::kMinus: return static_cast<P>(a - b);
    case Op::kRevMinus: return static_cast<P>(b - a);
    default: return static_cast<P>(a * b);
  }
}

}  // namespace arithtest
