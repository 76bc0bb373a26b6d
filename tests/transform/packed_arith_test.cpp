// Expansion and multiplication of packed spectra: against spectra built from
// their definition, the spectrum of a circular convolution, the product of
// the expanded spectra, and an exact integer model of the 16-bit forms.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/test_support.hpp"
#include "transform/spectrum_support.hpp"

namespace {

using orvtest::Guarded;
using spectest::Layout;

// ---- Expansion ----------------------------------------------------------------

template <typename T>
struct ComplexOf {
  using type = std::conditional_t<sizeof(T) == 2, orv16sc, std::conditional_t<sizeof(T) == 4, orv32fc, orv64fc>>;
};

template <typename T>
struct ConjFns {
  using C = typename ComplexOf<T>::type;
  orvStatus (*ccs)(const C*, C*, int);
  orvStatus (*pack)(const T*, C*, int);
  orvStatus (*perm)(const T*, C*, int);
  orvStatus (*ccsI)(C*, int);
  orvStatus (*packI)(C*, int);
  orvStatus (*permI)(C*, int);
};

const ConjFns<orv16s> kConj16 = {orvsConjCcs_16sc,   orvsConjPack_16sc,   orvsConjPerm_16sc,
                                 orvsConjCcs_16sc_I, orvsConjPack_16sc_I, orvsConjPerm_16sc_I};
const ConjFns<orv32f> kConj32 = {orvsConjCcs_32fc,   orvsConjPack_32fc,   orvsConjPerm_32fc,
                                 orvsConjCcs_32fc_I, orvsConjPack_32fc_I, orvsConjPerm_32fc_I};
const ConjFns<orv64f> kConj64 = {orvsConjCcs_64fc,   orvsConjPack_64fc,   orvsConjPerm_64fc,
                                 orvsConjCcs_64fc_I, orvsConjPack_64fc_I, orvsConjPerm_64fc_I};

template <typename T>
T negated(T v) {
  if constexpr (std::is_integral<T>::value) return v == -32768 ? T(32767) : T(-v);
  else return -v;
}

// Bins with random parts; every 16-bit value range includes -32768.
template <typename T>
std::vector<std::complex<double>> randomBins(std::size_t n, std::mt19937& gen) {
  std::vector<std::complex<double>> X(n / 2 + 1);
  std::uniform_int_distribution<int> d(-32768, 32767);
  for (auto& x : X) {
    double re = d(gen), im = d(gen);
    if (gen() % 5 == 0) im = -32768;
    if (!std::is_integral<T>::value) {
      re /= 7;
      im /= 3;
    }
    x = {re, im};
  }
  return X;
}

// Runs one expansion (out of place or in place) and returns the len complex
// values as (re, im) pairs of T, checking that nothing past them was written.
template <typename T>
std::vector<std::pair<T, T>> expandWith(const ConjFns<T>& f, Layout l, bool inPlace,
                                        const std::vector<T>& lay, int len) {
  using C = typename ComplexOf<T>::type;
  Guarded<C> dst{std::size_t(len), 1};
  orvStatus st;
  if (inPlace) {
    std::memcpy(static_cast<void*>(dst.data()), lay.data(), lay.size() * sizeof(T));
    st = l == Layout::Ccs ? f.ccsI(dst.data(), len)
                          : (l == Layout::Pack ? f.packI(dst.data(), len) : f.permI(dst.data(), len));
  } else {
    std::vector<T> src(lay);
    src.resize(src.size() + 1);  // even count of reals for the complex view of CCS
    st = l == Layout::Ccs ? f.ccs(reinterpret_cast<const C*>(src.data()), dst.data(), len)
                          : (l == Layout::Pack ? f.pack(src.data(), dst.data(), len)
                                               : f.perm(src.data(), dst.data(), len));
  }
  EXPECT_EQ(st, orvOk);
  EXPECT_TRUE(dst.intactOutside());
  std::vector<std::pair<T, T>> out(static_cast<std::size_t>(len));
  for (int i = 0; i < len; ++i) out[i] = {dst[i].re, dst[i].im};
  return out;
}

// The expected values are kept in T throughout: the full vector is the bins
// k = 0..len/2 followed by the conjugates of bins (len-1)/2 down to 1, and
// CCS copies the imaginary slots of its real bins as they stand.
template <typename T>
void checkExpansion(const ConjFns<T>& f, const char* type) {
  std::mt19937 gen(7);
  for (int len = 1; len <= 19; ++len) {
    for (Layout l : {Layout::Ccs, Layout::Pack, Layout::Perm}) {
      const auto X = randomBins<T>(std::size_t(len), gen);
      const T junk = T(-32768);  // CCS's imaginary slots of real bins
      const auto lay = spectest::packLayout<T>(l, X, std::size_t(len), junk);
      const bool even = len % 2 == 0;
      std::vector<std::pair<T, T>> want(static_cast<std::size_t>(len));
      for (int k = 0; k <= len / 2; ++k) {
        const T re = T(X[k].real());
        T im = T(X[k].imag());
        const bool realBin = k == 0 || (even && k == len / 2);
        if (realBin) im = l == Layout::Ccs ? junk : T(0);
        want[k] = {re, im};
        if (k >= 1 && k <= (len - 1) / 2) want[len - k] = {re, negated(im)};
      }
      for (bool inPlace : {false, true}) {
        EXPECT_EQ(expandWith(f, l, inPlace, lay, len), want)
            << type << " " << spectest::layoutName(l) << (inPlace ? "_I" : "") << " len=" << len;
      }
    }
  }
}

TEST(PackedConj, ExpandsEveryLayoutAndType) {
  checkExpansion(kConj16, "16sc");
  checkExpansion(kConj32, "32fc");
  checkExpansion(kConj64, "64fc");
}

// ---- Floating multiplication --------------------------------------------------

template <typename T>
struct MulFns {
  Layout layout;
  const char* name;
  orvStatus (*mul)(const T*, const T*, T*, int);
  orvStatus (*mulI)(const T*, T*, int);
};

template <typename T>
std::vector<MulFns<T>> mulFns();
template <>
std::vector<MulFns<orv32f>> mulFns() {
  return {{Layout::Pack, "MulPack_32f", orvsMulPack_32f, orvsMulPack_32f_I},
          {Layout::Perm, "MulPerm_32f", orvsMulPerm_32f, orvsMulPerm_32f_I}};
}
template <>
std::vector<MulFns<orv64f>> mulFns() {
  return {{Layout::Pack, "MulPack_64f", orvsMulPack_64f, orvsMulPack_64f_I},
          {Layout::Perm, "MulPerm_64f", orvsMulPerm_64f, orvsMulPerm_64f_I}};
}

template <typename T>
std::vector<T> randomReals(std::size_t n, std::mt19937& gen) {
  std::uniform_real_distribution<double> d(-1.0, 1.0);
  std::vector<T> v(n);
  for (auto& x : v) x = T(d(gen));
  return v;
}

// The product of two spectra is the spectrum of the circular convolution.
template <typename T>
void checkConvolutionTheorem(double tol) {
  std::mt19937 gen(11);
  for (const auto& f : mulFns<T>()) {
    for (int len : {1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 31, 64}) {
      const auto x = randomReals<T>(std::size_t(len), gen), y = randomReals<T>(std::size_t(len), gen);
      std::vector<long double> conv(std::size_t(len), 0.0L);
      for (int i = 0; i < len; ++i)
        for (int j = 0; j < len; ++j) conv[(i + j) % len] += (long double)x[i] * y[j];
      const auto a = spectest::packLayout<T>(f.layout, spectest::naiveDft(x), std::size_t(len));
      const auto b = spectest::packLayout<T>(f.layout, spectest::naiveDft(y), std::size_t(len));
      const auto want = spectest::packLayout<double>(f.layout, spectest::naiveDft(conv), std::size_t(len));
      Guarded<T> dst{std::size_t(len)};
      ASSERT_EQ(f.mul(a.data(), b.data(), dst.data(), len), orvOk);
      EXPECT_TRUE(dst.intactOutside());
      for (int i = 0; i < len; ++i)
        EXPECT_NEAR(double(dst[i]), want[i], tol * len) << f.name << " len=" << len << " [" << i << "]";
    }
  }
}

TEST(PackedMul, ProductIsSpectrumOfCircularConvolution) {
  checkConvolutionTheorem<orv32f>(1e-5);
  checkConvolutionTheorem<orv64f>(1e-13);
}

// The product equals the element-wise product of the expanded spectra, bit
// for bit; the in-place form equals the out-of-place one; MulPackConj is
// src times the conjugate of srcDst.
template <typename T>
void checkAgainstExpanded(const ConjFns<T>& conj, orvStatus (*mulPackConj)(const T*, T*, int)) {
  using C = typename ComplexOf<T>::type;
  std::mt19937 gen(3);
  auto expand = [&](Layout l, const std::vector<T>& v, int len) {
    std::vector<C> out(static_cast<std::size_t>(len));
    EXPECT_EQ((l == Layout::Pack ? conj.pack : conj.perm)(v.data(), out.data(), len), orvOk);
    return out;
  };
  for (const auto& f : mulFns<T>()) {
    for (int len = 1; len <= 40; ++len) {
      const auto a = randomReals<T>(std::size_t(len), gen), b = randomReals<T>(std::size_t(len), gen);
      std::vector<T> got(static_cast<std::size_t>(len)), gotI(b);
      ASSERT_EQ(f.mul(a.data(), b.data(), got.data(), len), orvOk);
      ASSERT_EQ(f.mulI(a.data(), gotI.data(), len), orvOk);
      EXPECT_EQ(got, gotI) << f.name << " len=" << len;
      const auto ea = expand(f.layout, a, len), eb = expand(f.layout, b, len), eg = expand(f.layout, got, len);
      for (int k = 0; k < len; ++k) {
        const double ar = ea[k].re, ai = ea[k].im, br = eb[k].re, bi = eb[k].im;
        EXPECT_EQ(eg[k].re, T(ar * br - ai * bi)) << f.name << " len=" << len << " k=" << k;
        EXPECT_EQ(eg[k].im, T(ai * br + ar * bi)) << f.name << " len=" << len << " k=" << k;
      }
      if (f.layout != Layout::Pack) continue;
      std::vector<T> pc(b);
      ASSERT_EQ(mulPackConj(a.data(), pc.data(), len), orvOk);
      const auto ep = expand(Layout::Pack, pc, len);
      for (int k = 0; k < len; ++k) {
        const double sr = ea[k].re, si = ea[k].im, dr = eb[k].re, di = eb[k].im;
        EXPECT_EQ(ep[k].re, T(dr * sr + di * si)) << "MulPackConj len=" << len << " k=" << k;
        EXPECT_EQ(ep[k].im, T(si * dr - sr * di)) << "MulPackConj len=" << len << " k=" << k;
      }
    }
  }
}

TEST(PackedMul, MatchesProductOfExpandedSpectra) {
  checkAgainstExpanded(kConj32, orvsMulPackConj_32f_I);
  checkAgainstExpanded(kConj64, orvsMulPackConj_64f_I);
}

// Parts of every class: zeros, infinities, NaNs, subnormals, the largest
// finite values (whose products overflow float, and double too for 64f),
// raw bit patterns, ordinary values, and pairs whose two products nearly
// cancel so that the low bits of their exact difference decide the result.
template <typename T>
std::vector<T> mixedReals(std::size_t n, std::mt19937_64& gen) {
  using L = std::numeric_limits<T>;
  const T specials[] = {T(0), -T(0), T(1), T(-1.5), L::infinity(), -L::infinity(), L::quiet_NaN(),
                        -L::quiet_NaN(), L::denorm_min(), -L::denorm_min(), L::min(), L::max(), -L::max(),
                        std::sqrt(L::max()), -std::sqrt(L::min())};
  using U = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
  std::vector<T> v(n);
  for (std::size_t i = 0; i < n; ++i) {
    switch (gen() % 6) {
      case 0:
        v[i] = specials[gen() % (sizeof specials / sizeof specials[0])];
        break;
      case 1: {
        const auto u = static_cast<U>(gen());
        std::memcpy(&v[i], &u, sizeof u);
        break;
      }
      case 2:  // a few units in the last place from the previous value
        if (i > 0) {
          U u;
          std::memcpy(&u, &v[i - 1], sizeof u);
          u += static_cast<U>(gen() % 9) - 4;
          std::memcpy(&v[i], &u, sizeof u);
          break;
        }
        [[fallthrough]];
      default:
        v[i] = T(std::ldexp(double(gen() % 0x1000000) / 0x1000000 - 0.5, int(gen() % 80) - 40));
    }
  }
  return v;
}

// The slots of the real bins of a packed layout of n reals; the pairs take
// every other slot from the first one after bin 0 up to the last pair.
bool isRealSlot(Layout l, int n, int i) {
  if (i == 0) return true;
  if (n % 2 != 0) return false;
  return l == Layout::Perm ? i == 1 : i == n - 1;
}

bool sameValue(double got, double want) {
  return (std::isnan(got) && std::isnan(want)) || (got == want && std::signbit(got) == std::signbit(want));
}

// Every slot of the product, out of place and in place, against the formula
// evaluated here on the packed slots themselves: a real bin is the double
// product rounded to T, a pair (re, im) is re = ar*br - ai*bi and
// im = ai*br + ar*bi in double, each rounded once to T. Any NaN matches any
// NaN; everything else must match to the bit, the sign of zero included.
template <typename T>
void checkSpecialValues() {
  std::mt19937_64 gen(sizeof(T));
  for (const auto& f : mulFns<T>()) {
    for (int len : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 17, 34, 63, 64, 255, 256, 1001, 1026}) {
      for (int round = 0; round < 8; ++round) {
        const auto a = mixedReals<T>(std::size_t(len), gen), b = mixedReals<T>(std::size_t(len), gen);
        Guarded<T> got{std::size_t(len), std::size_t(round % 3)};
        Guarded<T> gotI{std::size_t(len), std::size_t(round % 2)};
        std::memcpy(gotI.data(), b.data(), b.size() * sizeof(T));
        ASSERT_EQ(f.mul(a.data(), b.data(), got.data(), len), orvOk);
        ASSERT_EQ(f.mulI(a.data(), gotI.data(), len), orvOk);
        ASSERT_TRUE(got.intactOutside() && gotI.intactOutside()) << f.name << " len=" << len;
        for (int i = 0; i < len; ++i) {
          double want;
          if (isRealSlot(f.layout, len, i)) {
            want = T(double(a[i]) * double(b[i]));
          } else {
            const bool re = (i - (isRealSlot(f.layout, len, 1) ? 2 : 1)) % 2 == 0;
            const int p = re ? i : i - 1;
            const double ar = a[p], ai = a[p + 1], br = b[p], bi = b[p + 1];
            want = re ? T(ar * br - ai * bi) : T(ai * br + ar * bi);
          }
          ASSERT_TRUE(sameValue(got[i], want) && sameValue(gotI[i], want))
              << f.name << " len=" << len << " [" << i << "]: " << got[i] << " / " << gotI[i] << " for " << want;
        }
      }
    }
  }
}

TEST(PackedMul, SpecialValuesBitForBit) {
  checkSpecialValues<orv32f>();
  checkSpecialValues<orv64f>();
}

TEST(PackedArith, ArgumentChecks) {
  orv32f v[4] = {};
  orv32fc c[4] = {};
  orv16s s[4] = {};
  const orvStatus rows[][2] = {
      {orvsConjPack_32fc(nullptr, c, 0), orvErrNullPointer},  // null before size
      {orvsConjPerm_32fc(v, nullptr, 4), orvErrNullPointer},
      {orvsConjCcs_32fc(c, c + 1, 0), orvErrSize},
      {orvsConjCcs_64fc_I(nullptr, 4), orvErrNullPointer},
      {orvsConjPerm_16sc_I(reinterpret_cast<orv16sc*>(v), -1), orvErrSize},
      {orvsMulPack_32f(v, nullptr, v, 0), orvErrNullPointer},
      {orvsMulPerm_32f(v, v, v, 0), orvErrSize},
      {orvsMulPackConj_32f_I(nullptr, v, 4), orvErrNullPointer},
      {orvsMulPerm_16s_ISfs(s, s, -3, 0), orvErrSize},
      {orvsMulPack_16s_Sfs(s, s, nullptr, 4, 0), orvErrNullPointer},
  };
  for (std::size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i) EXPECT_EQ(rows[i][0], rows[i][1]) << "row " << i;
}

// ---- 16-bit multiplication -------------------------------------------------------

// Exact model: t is formed in 64 bits, except that a pair's imaginary sum
// drops a.im*b.re when a.re*b.im is exactly 2^30. The result is
// saturate(floor(t / 2^s)) for s >= 0 and saturate(t * 2^-s) below.
orv16s model16(std::int64_t t, int s) {
  std::int64_t v;
  if (s >= 0) {
    v = s >= 62 ? (t < 0 ? -1 : 0) : (t >= 0 ? t >> s : -((-t + (std::int64_t(1) << s) - 1) >> s));
  } else {
    const int n = s < -24 ? 24 : -s;
    v = t * (std::int64_t(1) << n);
  }
  return orv16s(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
}

std::vector<orv16s> modelMul16(Layout l, const std::vector<orv16s>& a, const std::vector<orv16s>& b, int s) {
  const std::size_t n = a.size();
  std::vector<orv16s> out(n);
  const bool even = n % 2 == 0;
  auto real = [&](std::size_t i) { out[i] = model16(std::int64_t(a[i]) * b[i], s); };
  real(0);
  if (even && n >= 2) real(l == Layout::Pack ? n - 1 : 1);
  const std::size_t first = (l == Layout::Perm && even) ? 2 : 1;
  const std::size_t pairs = even ? n / 2 - 1 : (n - 1) / 2;
  for (std::size_t p = 0; p < pairs; ++p) {
    const std::size_t i = first + 2 * p;
    const std::int64_t ar = a[i], ai = a[i + 1], br = b[i], bi = b[i + 1];
    const std::int64_t re = ar * br - ai * bi;
    const std::int64_t pp = ar * bi, qq = ai * br;
    const std::int64_t im = pp == (std::int64_t(1) << 30) ? pp : pp + qq;
    out[i] = model16(re, s);
    out[i + 1] = model16(im, s);
  }
  return out;
}

struct Mul16Fns {
  Layout layout;
  const char* name;
  orvStatus (*mul)(const orv16s*, const orv16s*, orv16s*, int, int);
  orvStatus (*mulI)(const orv16s*, orv16s*, int, int);
};

const Mul16Fns kMul16[] = {
    {Layout::Pack, "MulPack_16s", orvsMulPack_16s_Sfs, orvsMulPack_16s_ISfs},
    {Layout::Perm, "MulPerm_16s", orvsMulPerm_16s_Sfs, orvsMulPerm_16s_ISfs},
};

// Operand values: the extremes, small values and random ones.
std::vector<orv16s> operands16(std::size_t n, std::mt19937& gen) {
  static const orv16s special[] = {-32768, 32767, -32767, 0, 1, -1, 2, -2, 181, -182, 16384, -16384};
  std::uniform_int_distribution<int> d(-32768, 32767), pick(0, 3);
  std::vector<orv16s> v(n);
  for (auto& x : v) {
    const int p = pick(gen);
    x = p == 0 ? special[gen() % (sizeof special / sizeof special[0])]
               : orv16s(p == 1 ? d(gen) >> (gen() % 16) : d(gen));
  }
  return v;
}

TEST(PackedMul16s, MatchesExactModelAtEveryScale) {
  std::mt19937 gen(5);
  std::vector<int> scales;
  for (int s = -20; s <= 20; ++s) scales.push_back(s);
  for (int s : {-31, -32, -33, 30, 31, 32, 33, 63, 64, INT_MAX, INT_MIN}) scales.push_back(s);
  for (const auto& f : kMul16) {
    for (int len : {1, 2, 3, 4, 5, 8, 9, 33}) {
      for (int rep = 0; rep < 4; ++rep) {
        const auto a = operands16(std::size_t(len), gen), b = operands16(std::size_t(len), gen);
        for (int s : scales) {
          const auto want = modelMul16(f.layout, a, b, s);
          std::vector<orv16s> got(static_cast<std::size_t>(len)), gotI(b);
          ASSERT_EQ(f.mul(a.data(), b.data(), got.data(), len, s), orvOk);
          ASSERT_EQ(f.mulI(a.data(), gotI.data(), len, s), orvOk);
          EXPECT_EQ(got, want) << f.name << " len=" << len << " s=" << s;
          EXPECT_EQ(gotI, want) << f.name << "_I len=" << len << " s=" << s;
        }
      }
    }
  }
}

// Exhaustive over all pairs whose parts are taken from the extremes and
// their neighbours: the guard, the saturation bounds and the wrap-free real
// sum all meet here.
TEST(PackedMul16s, ExtremePairsAtEveryScale) {
  const orv16s v[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
  for (int s = -20; s <= 20; ++s) {
    for (orv16s ar : v)
      for (orv16s ai : v)
        for (orv16s br : v)
          for (orv16s bi : v) {
            const std::vector<orv16s> a = {0, ar, ai}, b = {0, br, bi};  // len 3: one pair at [1]
            std::vector<orv16s> got(3);
            ASSERT_EQ(orvsMulPack_16s_Sfs(a.data(), b.data(), got.data(), 3, s), orvOk);
            ASSERT_EQ(got, modelMul16(Layout::Pack, a, b, s))
                << "s=" << s << " a=(" << ar << "," << ai << ") b=(" << br << "," << bi << ")";
          }
  }
}

}  // namespace
