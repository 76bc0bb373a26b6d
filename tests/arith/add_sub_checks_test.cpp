// Argument checks of every add and subtract function, the hand-over of the
// two-vector complex forms to their real forms (also for counts whose double
// does not fit 32 bits), and in-place forms against out-of-place ones.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <map>
#include <string>
#include <type_traits>
#include <random>
#include <vector>

#include "arith/add_sub_forms.hpp"
#include "support/test_support.hpp"

namespace {

using addsubtest::Form;

// Two-vector complex forms test len first and hand 2 * len parts on.
template <typename P>
bool handsOnToRealForm(const Form<P>& f) {
  return !f.scalar && f.lanes == 2;
}

template <typename P>
void checkArguments(const std::vector<Form<P>>& forms) {
  for (const auto& f : forms) {
    SCOPED_TRACE(f.name);
    std::vector<P> x(4, P(1)), y(4, P(1));
    orvtest::Guarded<P> dst(4);
    for (int i = 0; i < 4; ++i) dst[i] = P(3);
    const auto dstUntouched = [&] {
      bool same = dst.intactOutside();
      for (int i = 0; i < 4; ++i) same = same && dst[i] == P(3);
      return same;
    };
    const orvStatus nullWithNoLength = handsOnToRealForm(f) ? orvErrSize : orvErrNullPointer;
    // Each pointer that the form reads (in place, x lives in dst).
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
    EXPECT_TRUE(dstUntouched());
    // One element of L parts is written and nothing after it.
    EXPECT_EQ(f.run(x.data(), y.data(), dst.data(), 1, 0), orvOk);
    EXPECT_TRUE(dst.intactOutside());
    for (int i = f.lanes; i < 4; ++i) EXPECT_EQ(dst[i], P(3));
  }
}

TEST(AddSubChecks, NullPointersThenLengthInEveryForm) {
  checkArguments(addsubtest::forms8u());
  checkArguments(addsubtest::forms16s());
  checkArguments(addsubtest::forms32s());
  checkArguments(addsubtest::forms32f());
  checkArguments(addsubtest::forms64f());
}

// A count of complex elements whose double passes 2^31 - 1 reaches the real
// form as a negative count: it is refused with orvErrSize (or
// orvErrNullPointer for a null pointer) and no memory is touched. The same
// holds for the constant-zero path of the 32sc scalar forms, which clears
// 2 * len four-byte elements.
template <typename P>
void checkDoubledCount(const std::vector<Form<P>>& forms) {
  for (const auto& f : forms) {
    const bool vectorComplex = handsOnToRealForm(f);
    const bool scalarZero32sc = f.scalar && f.lanes == 2 && sizeof(P) == 4 && std::is_integral<P>::value;
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

TEST(AddSubChecks, ComplexCountsWhoseDoubleOverflows) {
  checkDoubledCount(addsubtest::forms16s());
  checkDoubledCount(addsubtest::forms32s());
  checkDoubledCount(addsubtest::forms32f());
  checkDoubledCount(addsubtest::forms64f());
}

// Each in-place form gives, bit for bit, what its out-of-place form gives.
template <typename P>
void compareInPlace(const std::vector<Form<P>>& forms, unsigned seed) {
  std::map<std::string, const Form<P>*> byName;
  for (const auto& f : forms) byName[f.name] = &f;
  std::mt19937 gen(seed);
  for (const auto& in : forms) {
    if (!in.inPlace) continue;
    std::string outName = in.name;
    const auto at = outName.rfind("_I");
    outName.erase(at, 2);
    if (outName.size() > at && outName[at] == 'S') outName.insert(at, "_");  // _ISfs -> _Sfs
    const auto it = byName.find(outName);
    if (it == byName.end()) continue;  // e.g. orvsAddC_16s_I has no out-of-place form
    SCOPED_TRACE(in.name);
    const Form<P>& out = *it->second;
    const int len = 301;
    std::vector<P> x(2 * len), y(2 * len);
    for (int round = 0; round < 8; ++round) {
      for (std::size_t i = 0; i < x.size(); ++i) {
        if constexpr (std::is_integral<P>::value) {
          x[i] = static_cast<P>(gen());
          y[i] = static_cast<P>(round < 2 ? gen() % 5 : gen());
        } else {
          x[i] = static_cast<P>(static_cast<int>(gen() % 20001) - 10000) / P(64);
          y[i] = static_cast<P>(static_cast<int>(gen() % 201) - 100) / P(8);
        }
      }
      const int s = in.scaled ? static_cast<int>(gen() % 41) - 20 : 0;
      const int n = len * 2 / in.lanes;
      std::vector<P> a(x.size()), b = x;
      ASSERT_EQ(out.run(x.data(), y.data(), a.data(), n, s), orvOk);
      ASSERT_EQ(in.run(nullptr, y.data(), b.data(), n, s), orvOk);
      ASSERT_EQ(0, std::memcmp(a.data(), b.data(), a.size() * sizeof(P))) << "scaleFactor " << s;
    }
  }
}

TEST(AddSubChecks, InPlaceFormsMatchOutOfPlaceForms) {
  compareInPlace(addsubtest::forms8u(), 1);
  compareInPlace(addsubtest::forms16s(), 2);
  compareInPlace(addsubtest::forms32s(), 3);
  compareInPlace(addsubtest::forms32f(), 4);
  compareInPlace(addsubtest::forms64f(), 5);
}

}  // namespace
