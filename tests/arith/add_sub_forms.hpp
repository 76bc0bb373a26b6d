// Every integer add and subtract function, erased to one calling shape so
// that the tests can run the whole family from tables.
#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "orvspx.h"
#include "support/exact_ref.hpp"

namespace addsubtest {

using orvtest::Wide;

// kPlus: x + y. kMinus: x - y. kRevMinus: y - x (SubCRev).
enum class Op { kPlus, kMinus, kRevMinus };

// The exact result of one part. An unsigned difference below 0 counts as 0.
template <typename P>
Wide exactTerm(Op op, P x, P y) {
  Wide t = op == Op::kPlus ? Wide(x) + Wide(y) : (op == Op::kMinus ? Wide(x) - Wide(y) : Wide(y) - Wide(x));
  if (!std::is_signed<P>::value && t < 0) t = 0;
  return t;
}

// One function on vectors of part type P (the type itself, or the type of
// re and im of a complex type). `run(x, y, dst, len, s)` takes part arrays
// of len * lanes parts. Vector forms combine x[j] with y[j]; scalar forms
// combine x[j] with y[j % lanes] (y holds the scalar's parts). The function's
// own argument order is handled here: Sub receives x as its src2 (it
// delivers src2 - src1). In-place forms find x in dst and ignore the x
// argument.
template <typename P>
struct Form {
  std::string name;
  Op op;
  bool scalar;
  int lanes;
  bool inPlace;
  bool scaled;
  std::function<orvStatus(const P* x, const P* y, P* dst, int len, int s)> run;
  // Floating AddC and SubC on real vectors: a scalar of +-0 or NaN leaves
  // the vector as it is (or copies it).
  bool skipsZeroOrNaN = false;
};

template <typename C, typename P>
const C* as(const P* p) {
  return reinterpret_cast<const C*>(p);
}
template <typename C, typename P>
C* as(P* p) {
  return reinterpret_cast<C*>(p);
}
template <typename C, typename P>
C scalarOf(const P* y) {
  if constexpr (sizeof(C) == sizeof(P)) {
    return static_cast<C>(y[0]);
  } else {
    return C{y[0], y[1]};
  }
}

template <typename P, typename C>
Form<P> vecOut(const char* name, Op op, orvStatus (*f)(const C*, const C*, C*, int, int)) {
  return {name, op, false, int(sizeof(C) / sizeof(P)), false, true,
          [f, op](const P* x, const P* y, P* d, int n, int s) {
            return op == Op::kPlus ? f(as<C>(x), as<C>(y), as<C>(d), n, s)
                                   : f(as<C>(y), as<C>(x), as<C>(d), n, s);
          }};
}
template <typename P, typename C>
Form<P> vecIn(const char* name, Op op, orvStatus (*f)(const C*, C*, int, int)) {
  return {name, op, false, int(sizeof(C) / sizeof(P)), true, true,
          [f](const P*, const P* y, P* d, int n, int s) { return f(as<C>(y), as<C>(d), n, s); }};
}
template <typename P, typename C>
Form<P> vecOut0(const char* name, Op op, orvStatus (*f)(const C*, const C*, C*, int)) {
  return {name, op, false, int(sizeof(C) / sizeof(P)), false, false,
          [f, op](const P* x, const P* y, P* d, int n, int) {
            return op == Op::kPlus ? f(as<C>(x), as<C>(y), as<C>(d), n) : f(as<C>(y), as<C>(x), as<C>(d), n);
          }};
}
template <typename P, typename C>
Form<P> vecIn0(const char* name, Op op, orvStatus (*f)(const C*, C*, int)) {
  return {name, op, false, int(sizeof(C) / sizeof(P)), true, false,
          [f](const P*, const P* y, P* d, int n, int) { return f(as<C>(y), as<C>(d), n); }};
}
template <typename P, typename C>
Form<P> scalarOut(const char* name, Op op, orvStatus (*f)(const C*, C, C*, int, int)) {
  return {name, op, true, int(sizeof(C) / sizeof(P)), false, true,
          [f](const P* x, const P* y, P* d, int n, int s) { return f(as<C>(x), scalarOf<C>(y), as<C>(d), n, s); }};
}
template <typename P, typename C>
Form<P> scalarIn(const char* name, Op op, orvStatus (*f)(C, C*, int, int)) {
  return {name, op, true, int(sizeof(C) / sizeof(P)), true, true,
          [f](const P*, const P* y, P* d, int n, int s) { return f(scalarOf<C>(y), as<C>(d), n, s); }};
}
template <typename P, typename C>
Form<P> scalarOut0(const char* name, Op op, orvStatus (*f)(const C*, C, C*, int)) {
  return {name, op, true, int(sizeof(C) / sizeof(P)), false, false,
          [f](const P* x, const P* y, P* d, int n, int) { return f(as<C>(x), scalarOf<C>(y), as<C>(d), n); }};
}
template <typename P, typename C>
Form<P> scalarIn0(const char* name, Op op, orvStatus (*f)(C, C*, int)) {
  return {name, op, true, int(sizeof(C) / sizeof(P)), true, false,
          [f](const P*, const P* y, P* d, int n, int) { return f(scalarOf<C>(y), as<C>(d), n); }};
}

#define ADDSUB_FORM(maker, P, op, fn) addsubtest::maker<P>(#fn, addsubtest::Op::op, fn)

inline std::vector<Form<orv8u>> forms8u() {
  return {
      ADDSUB_FORM(vecOut, orv8u, kPlus, orvsAdd_8u_Sfs),         ADDSUB_FORM(vecIn, orv8u, kPlus, orvsAdd_8u_ISfs),
      ADDSUB_FORM(vecOut, orv8u, kMinus, orvsSub_8u_Sfs),        ADDSUB_FORM(vecIn, orv8u, kMinus, orvsSub_8u_ISfs),
      ADDSUB_FORM(scalarOut, orv8u, kPlus, orvsAddC_8u_Sfs),     ADDSUB_FORM(scalarIn, orv8u, kPlus, orvsAddC_8u_ISfs),
      ADDSUB_FORM(scalarOut, orv8u, kMinus, orvsSubC_8u_Sfs),    ADDSUB_FORM(scalarIn, orv8u, kMinus, orvsSubC_8u_ISfs),
      ADDSUB_FORM(scalarOut, orv8u, kRevMinus, orvsSubCRev_8u_Sfs),
      ADDSUB_FORM(scalarIn, orv8u, kRevMinus, orvsSubCRev_8u_ISfs),
  };
}

inline std::vector<Form<orv16s>> forms16s() {
  return {
      ADDSUB_FORM(vecOut, orv16s, kPlus, orvsAdd_16s_Sfs),
      ADDSUB_FORM(vecIn, orv16s, kPlus, orvsAdd_16s_ISfs),
      ADDSUB_FORM(vecOut, orv16s, kMinus, orvsSub_16s_Sfs),
      ADDSUB_FORM(vecIn, orv16s, kMinus, orvsSub_16s_ISfs),
      ADDSUB_FORM(vecOut, orv16s, kPlus, orvsAdd_16sc_Sfs),
      ADDSUB_FORM(vecIn, orv16s, kPlus, orvsAdd_16sc_ISfs),
      ADDSUB_FORM(vecOut, orv16s, kMinus, orvsSub_16sc_Sfs),
      ADDSUB_FORM(vecIn, orv16s, kMinus, orvsSub_16sc_ISfs),
      ADDSUB_FORM(vecOut0, orv16s, kPlus, orvsAdd_16s),
      ADDSUB_FORM(vecIn0, orv16s, kPlus, orvsAdd_16s_I),
      ADDSUB_FORM(vecOut0, orv16s, kMinus, orvsSub_16s),
      ADDSUB_FORM(vecIn0, orv16s, kMinus, orvsSub_16s_I),
      ADDSUB_FORM(scalarOut, orv16s, kPlus, orvsAddC_16s_Sfs),
      ADDSUB_FORM(scalarIn, orv16s, kPlus, orvsAddC_16s_ISfs),
      ADDSUB_FORM(scalarOut, orv16s, kMinus, orvsSubC_16s_Sfs),
      ADDSUB_FORM(scalarIn, orv16s, kMinus, orvsSubC_16s_ISfs),
      ADDSUB_FORM(scalarOut, orv16s, kRevMinus, orvsSubCRev_16s_Sfs),
      ADDSUB_FORM(scalarIn, orv16s, kRevMinus, orvsSubCRev_16s_ISfs),
      ADDSUB_FORM(scalarIn0, orv16s, kPlus, orvsAddC_16s_I),
      ADDSUB_FORM(scalarIn0, orv16s, kMinus, orvsSubC_16s_I),
      ADDSUB_FORM(scalarOut, orv16s, kPlus, orvsAddC_16sc_Sfs),
      ADDSUB_FORM(scalarIn, orv16s, kPlus, orvsAddC_16sc_ISfs),
      ADDSUB_FORM(scalarOut, orv16s, kMinus, orvsSubC_16sc_Sfs),
      ADDSUB_FORM(scalarIn, orv16s, kMinus, orvsSubC_16sc_ISfs),
      ADDSUB_FORM(scalarOut, orv16s, kRevMinus, orvsSubCRev_16sc_Sfs),
      ADDSUB_FORM(scalarIn, orv16s, kRevMinus, orvsSubCRev_16sc_ISfs),
  };
}

inline std::vector<Form<orv32s>> forms32s() {
  return {
      ADDSUB_FORM(vecOut, orv32s, kPlus, orvsAdd_32s_Sfs),
      ADDSUB_FORM(vecIn, orv32s, kPlus, orvsAdd_32s_ISfs),
      ADDSUB_FORM(vecOut, orv32s, kMinus, orvsSub_32s_Sfs),
      ADDSUB_FORM(vecIn, orv32s, kMinus, orvsSub_32s_ISfs),
      ADDSUB_FORM(vecOut, orv32s, kPlus, orvsAdd_32sc_Sfs),
      ADDSUB_FORM(vecIn, orv32s, kPlus, orvsAdd_32sc_ISfs),
      ADDSUB_FORM(vecOut, orv32s, kMinus, orvsSub_32sc_Sfs),
      ADDSUB_FORM(vecIn, orv32s, kMinus, orvsSub_32sc_ISfs),
      ADDSUB_FORM(scalarOut, orv32s, kPlus, orvsAddC_32s_Sfs),
      ADDSUB_FORM(scalarIn, orv32s, kPlus, orvsAddC_32s_ISfs),
      ADDSUB_FORM(scalarOut, orv32s, kMinus, orvsSubC_32s_Sfs),
      ADDSUB_FORM(scalarIn, orv32s, kMinus, orvsSubC_32s_ISfs),
      ADDSUB_FORM(scalarOut, orv32s, kRevMinus, orvsSubCRev_32s_Sfs),
      ADDSUB_FORM(scalarIn, orv32s, kRevMinus, orvsSubCRev_32s_ISfs),
      ADDSUB_FORM(scalarOut, orv32s, kPlus, orvsAddC_32sc_Sfs),
      ADDSUB_FORM(scalarIn, orv32s, kPlus, orvsAddC_32sc_ISfs),
      ADDSUB_FORM(scalarOut, orv32s, kMinus, orvsSubC_32sc_Sfs),
      ADDSUB_FORM(scalarIn, orv32s, kMinus, orvsSubC_32sc_ISfs),
      ADDSUB_FORM(scalarOut, orv32s, kRevMinus, orvsSubCRev_32sc_Sfs),
      ADDSUB_FORM(scalarIn, orv32s, kRevMinus, orvsSubCRev_32sc_ISfs),
  };
}

template <typename P>
Form<P> skipping(Form<P> f) {
  f.skipsZeroOrNaN = true;
  return f;
}

// The floating forms of part type P (32f or 64f) and their complex forms C.
#define ADDSUB_FLOAT_FORMS(P, C, T, TC)                                                              \
  {                                                                                                  \
    ADDSUB_FORM(vecOut0, P, kPlus, orvsAdd_##T), ADDSUB_FORM(vecIn0, P, kPlus, orvsAdd_##T##_I),    \
        ADDSUB_FORM(vecOut0, P, kMinus, orvsSub_##T), ADDSUB_FORM(vecIn0, P, kMinus, orvsSub_##T##_I), \
        ADDSUB_FORM(vecOut0, P, kPlus, orvsAdd_##TC), ADDSUB_FORM(vecIn0, P, kPlus, orvsAdd_##TC##_I), \
        ADDSUB_FORM(vecOut0, P, kMinus, orvsSub_##TC), ADDSUB_FORM(vecIn0, P, kMinus, orvsSub_##TC##_I), \
        skipping(ADDSUB_FORM(scalarOut0, P, kPlus, orvsAddC_##T)),                                   \
        skipping(ADDSUB_FORM(scalarIn0, P, kPlus, orvsAddC_##T##_I)),                                \
        skipping(ADDSUB_FORM(scalarOut0, P, kMinus, orvsSubC_##T)),                                  \
        skipping(ADDSUB_FORM(scalarIn0, P, kMinus, orvsSubC_##T##_I)),                               \
        ADDSUB_FORM(scalarOut0, P, kRevMinus, orvsSubCRev_##T),                                      \
        ADDSUB_FORM(scalarIn0, P, kRevMinus, orvsSubCRev_##T##_I),                                   \
        ADDSUB_FORM(scalarOut0, P, kPlus, orvsAddC_##TC), ADDSUB_FORM(scalarIn0, P, kPlus, orvsAddC_##TC##_I), \
        ADDSUB_FORM(scalarOut0, P, kMinus, orvsSubC_##TC),                                           \
        ADDSUB_FORM(scalarIn0, P, kMinus, orvsSubC_##TC##_I),                                        \
        ADDSUB_FORM(scalarOut0, P, kRevMinus, orvsSubCRev_##TC),                                     \
        ADDSUB_FORM(scalarIn0, P, kRevMinus, orvsSubCRev_##TC##_I),                                  \
  }

inline std::vector<Form<orv32f>> forms32f() { return ADDSUB_FLOAT_FORMS(orv32f, orv32fc, 32f, 32fc); }
inline std::vector<Form<orv64f>> forms64f() { return ADDSUB_FLOAT_FORMS(orv64f, orv64fc, 64f, 64fc); }

}  // namespace addsubtest
