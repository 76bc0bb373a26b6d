// Argument checks of every add, subtract and multiply function: null
// pointers, then the length, before any shortcut, and nothing written on
// error; the hand-over of the two-vector complex sums to their real forms,
// also for counts whose double does not fit 32 bits.
#include <gtest/gtest.h>

#include <climits>
#include <type_traits>
#include <vector>

#include "arith/forms.hpp"
#include "support/test_support.hpp"

namespace {

using arithtest::Form;
using arithtest::Op;

// Two-vector complex sums and differences test len first and hand 2 * len
// parts on.
template <typename P>
bool handsOnToRealForm(const Form<P>& f) {
  return !f.scalar && f.lanes == 2 && f.op != Op::kMul;
}

template <typename P>
void checkArguments(const std::vector<Form<P>>& forms) {
  for (const auto& f : forms) {
    SCOPED_TRACE(f.name);
    for (P v : {P(0), P(1)}) {  // the shortcut values of the scalar forms
      std::vector<P> x(4, P(1)), y(4, v);
      orvtest::Guarded<P> dst(4);
      for (int i = 0; i < 4; ++i) dst[i] = P(3);
      const orvStatus nullWithNoLength = handsOnToRealForm(f) ? orvErrSize : orvErrNullPointer;
      if (!f.inPlace) {
        EXPECT_EQ(f.run(nullptr, y.data(), dst.data(), 0, 0), nullWithNoLength);
        EXPECT_EQ(f.run(nullptr, y.data(), dst.data(), 1, 0), orvErrNullPointer);
      }
      if (!f.scalar) {
        EXPECT_EQ(f.run(x.data(), nullptr, dst.data(), 0, 0), nullWithNoLength);
        EXPECT_EQ(f.run(x.data(), nullptr, dst.data(), 1, 0), orvErrNullPointer);
      }
      EXPECT_EQ(f.run(x.data(), y.data(), nullptr, 0, 0), nullWithNoLength);
      EXPECT_EQ(f.run(x.data(), y.data(), nullptr, 1, 0), orvErrNullPointer);
      EXPECT_EQ(f.run(x.data(), y.data(), dst.data(), 0, 0), orvErrSize);
      EXPECT_EQ(f.run(x.data(), y.data(), dst.data(), -1, 0), orvErrSize);
      EXPECT_EQ(f.run(x.data(), y.data(), dst.data(), INT_MIN, 40), orvErrSize);
      EXPECT_TRUE(dst.intactOutside());
      for (int i = 0; i < 4; ++i) EXPECT_EQ(dst[i], P(3));
      // One element of L parts is written and nothing after it.
      EXPECT_EQ(f.run(x.data(), y.data(), dst.data(), 1, 0), orvOk);
      EXPECT_TRUE(dst.intactOutside());
      for (int i = f.lanes; i < 4; ++i) EXPECT_EQ(dst[i], P(3));
    }
  }
}

// A count of complex elements whose double passes 2^31 - 1 reaches the real
// form as a negative count: refused with orvErrSize (orvErrNullPointer for a
// null pointer), no memory touched. Likewise the constant-zero path of the
// 32sc scalar sums, which clears 2 * len four-byte elements.
template <typename P>
void checkDoubledCount(const std::vector<Form<P>>& forms) {
  for (const auto& f : forms) {
    const bool vectorComplex = handsOnToRealForm(f);
    const bool scalarZero32sc =
        f.scalar && f.lanes == 2 && sizeof(P) == 4 && std::is_integral<P>::value && f.op != Op::kMul;
    if (!vectorComplex && !scalarZero32sc) continue;
    SCOPED_TRACE(f.name);
    std::vector<P> x(4, P(1)), y(4, P(1));
    orvtest::Guarded<P> dst(4);
    for (int len : {1 << 30, INT_MAX - 1, INT_MAX}) {
      EXPECT_EQ(f.run(x.data(), y.data(), dst.data(), len, 1000), orvErrSize) << len;
      if (vectorComplex) {
        EXPECT_EQ(f.run(x.data(), y.data(), nullptr, len, 0), orvErrNullPointer) << len;
      }
    }
    EXPECT_TRUE(dst.untouched());
  }
}

TEST(ArithChecks, NullPointersThenLengthInEveryForm) {
  checkArguments(arithtest::forms8u());
  checkArguments(arithtest::forms16s());
  checkArguments(arithtest::forms32s());
  checkArguments(arithtest::forms32f());
  checkArguments(arithtest::forms64f());
  checkDoubledCount(arithtest::forms16s());
  checkDoubledCount(arithtest::forms32s());
  checkDoubledCount(arithtest::forms32f());
  checkDoubledCount(arithtest::forms64f());
  // The mixed and widening forms.
  const orv16s a = 1;
  orv16s d16 = 0;
  orv32s d32 = 0;
  EXPECT_EQ(orvsMul_16u16s_Sfs(nullptr, &a, &d16, 0, 0), orvErrNullPointer);
  EXPECT_EQ(orvsMul_16s32s_Sfs(&a, &a, &d32, 0, 0), orvErrSize);
  EXPECT_EQ(orvsMul_8u16u(nullptr, nullptr, nullptr, 0), orvErrNullPointer);
  EXPECT_EQ(orvsMul_16s32f(&a, &a, nullptr, 1), orvErrNullPointer);
  EXPECT_EQ(d16 | d32, 0);
}

}  // namespace
