// Tables of the FFT: the quarter sine table, the bit-reversal swap list, the
// leaf, pass, column and step twiddles, all derived from one sine table.
#include <cmath>
#include <cstring>
#include <initializer_list>

#include "transform/fft_internal.hpp"

namespace orv {
namespace fft {
namespace {

// 2*pi as the double it is held in; the argument of entry i is i times
// (2*pi/N), formed in extended precision.
constexpr double kTwoPi = 6.283185307179586476925286766559;

// True if a block of `count` elements of `size` bytes passes the allocator's
// limit. Counts are 32-bit signed at the interface, so a count above that
// range can't be had either.
bool fits(std::int64_t count, std::uint64_t size) {
  if (count < 1 || count > 0x7fffffff) return false;
  return std::uint64_t(count) * size <= core::kMaxRequestBytes - core::kBlockOverhead;
}

// Element counts of the blocks.
std::int64_t sineCount(int order) { return (std::int64_t(1) << order) / 4 + 1; }
// The swap list is requested as four floats per entry it uses.
std::int64_t bitReversalCount(int order) { return 4 * ((std::int64_t(1) << order) / 4 + 1); }
std::int64_t leafCount(int order) { return 6 * ((std::int64_t(1) << order) / 4 + 1); }
std::int64_t passCount(int order) {
  const std::int64_t quarter = (std::int64_t(1) << order) / 4;
  return 2 * (quarter > 0 ? quarter : 1);
}
std::int64_t stepCount(int order) { return 2 * (std::int64_t(1) << order); }

// Leaf table of length 2^order: entries k = 0..L/4 of W^k, W^2k, W^3k.
template <typename T>
T* makeLeafTable(int order, const T* sine, int sineOrder) {
  T* tab = allocateArray<T>(leafCount(order));
  if (tab == nullptr) return nullptr;
  const std::int64_t len = std::int64_t(1) << order, sineLen = std::int64_t(1) << sineOrder;
  for (std::int64_t k = 0; k <= len / 4; ++k) {
    T* e = tab + 6 * k;
    twiddleFromSine(sine, sineLen, len, k, e[0], e[1]);
    twiddleFromSine(sine, sineLen, len, 2 * k, e[2], e[3]);
    twiddleFromSine(sine, sineLen, len, 3 * k, e[4], e[5]);
  }
  return tab;
}

// The general butterflies (j >= 2) of the leaf's last radix-4 stage, whose
// span is the leaf length, read their own three twiddles each. For the
// vector kernel, which does j and j+1 together, each pair of butterflies
// gets, for the twiddles of b, c and d in turn (W^2j, W^j, W^3j), the real
// parts as [wr(j) wr(j) wr(j+1) wr(j+1)] and then the imaginary parts
// likewise, in double. The values are the leaf table's, widened exactly.
// Leaves of length 16 have no such butterflies (their last stage is the
// special span 16), nor do shorter ones.
std::int64_t lastStageCount(int order) { return 6 * ((std::int64_t(1) << order) / 4 - 2) * 2; }

template <typename T>
double* makeLastStageTable(int order, const T* leaf) {
  if (order < 5) return nullptr;
  double* tab = allocateArray<double>(lastStageCount(order));
  if (tab == nullptr) return nullptr;
  const std::int64_t quarter = (std::int64_t(1) << order) / 4;
  double* out = tab;
  for (std::int64_t j = 2; j < quarter; j += 2) {
    const T* e = leaf + 6 * j;
    const T* n = e + 6;
    for (int w : {2, 0, 4}) {
      const double re[4] = {double(e[w]), double(e[w]), double(n[w]), double(n[w])};
      const double im[4] = {double(e[w + 1]), double(e[w + 1]), double(n[w + 1]), double(n[w + 1])};
      std::memcpy(out, re, sizeof re);
      std::memcpy(out + 4, im, sizeof im);
      out += 8;
    }
  }
  return tab;
}

// The leaf table of the transform's leaf length and its widened last stage.
template <typename T>
bool buildLeafTables(orvsFFTContext* ctx, int order, const T* sine, int sineOrder) {
  T* leaf = makeLeafTable(order, sine, sineOrder);
  ctx->leafTwiddles = leaf;
  if (leaf == nullptr) return false;
  ctx->lastStageTwiddles = makeLastStageTable(order, leaf);
  return order < 5 || ctx->lastStageTwiddles != nullptr;
}

// Pass table of length 2^order: W^k for k = 0..N/4-1.
template <typename T>
T* makePassTable(int order, const T* sine, int sineOrder) {
  T* tab = allocateArray<T>(passCount(order));
  if (tab == nullptr) return nullptr;
  const std::int64_t len = std::int64_t(1) << order, sineLen = std::int64_t(1) << sineOrder;
  for (std::int64_t k = 0; k < len / 4; ++k) twiddleFromSine(sine, sineLen, len, k, tab[2 * k], tab[2 * k + 1]);
  if (len < 4) {
    tab[0] = T(1);
    tab[1] = T(0);
  }
  return tab;
}

// Step twiddles of a four-step level of `order` with `s` row bits, laid out
// per group of four columns c, per row p, per column c+q as
// W^(rev(p)*(c+q)). Each column vector is filled in natural row order and
// then put in bit-reversed order with the swap list of s.
template <typename T>
T* makeStepTable(int order, int s, const T* sine, int sineOrder) {
  T* tab = allocateArray<T>(stepCount(order));
  if (tab == nullptr) return nullptr;
  orv32s* list = makeBitReversal(s);
  const std::int64_t rows = std::int64_t(1) << s;
  T* column = allocateArray<T>(2 * rows);
  if (list == nullptr || column == nullptr) {
    orvsFree(column);
    orvsFree(list);
    orvsFree(tab);
    return nullptr;
  }
  const std::int64_t len = std::int64_t(1) << order, sineLen = std::int64_t(1) << sineOrder;
  const std::int64_t cols = std::int64_t(1) << (order - s);
  struct Pair {
    T re, im;
  };
  Pair* col = reinterpret_cast<Pair*>(column);
  for (std::int64_t c = 0; c < cols; c += 4) {
    T* group = tab + 2 * c * rows;
    for (std::int64_t q = 0; q < 4; ++q) {
      for (std::int64_t p = 0; p < rows; ++p) {
        const std::int64_t m = (p * (c + q)) & (len - 1);
        twiddleFromSine(sine, sineLen, len, m, col[p].re, col[p].im);
      }
      reorderInPlace(list, s, col);
      for (std::int64_t p = 0; p < rows; ++p) {
        group[8 * p + 2 * q] = col[p].re;
        group[8 * p + 2 * q + 1] = col[p].im;
      }
    }
  }
  orvsFree(column);
  orvsFree(list);
  return tab;
}

template <typename T>
bool buildLevel(orvsFFTContext* ctx, int order, int level, const T* sine, int sineOrder);

// Tables of the rows of a four-step level, or of a whole transform of that
// order at level 0.
template <typename T>
bool buildPath(orvsFFTContext* ctx, int order, int level, const T* sine, int sineOrder) {
  switch (pathOf<T>(order)) {
    case Path::Leaf:
      return buildLeafTables(ctx, order, sine, sineOrder);
    case Path::Blocked:
      ctx->passTwiddles = makePassTable(order, sine, sineOrder);
      if (ctx->passTwiddles == nullptr) return false;
      if (!buildLeafTables(ctx, Precision<T>::kBlockedLeafOrder, sine, sineOrder)) return false;
      if (ctx->workBytes < 16) ctx->workBytes = 16;
      return true;
    case Path::FourStep:
      return buildLevel(ctx, order, level, sine, sineOrder);
    case Path::Small:
      break;
  }
  return true;
}

template <typename T>
bool buildLevel(orvsFFTContext* ctx, int order, int level, const T* sine, int sineOrder) {
  const int s = Precision<T>::kSplit[order];
  if (!buildPath(ctx, order - s, level + 1, sine, sineOrder)) return false;
  ctx->columnTwiddles[level] = makeLeafTable(s, sine, sineOrder);
  if (ctx->columnTwiddles[level] == nullptr) return false;
  ctx->stepTwiddles[level] = makeStepTable(order, s, sine, sineOrder);
  if (ctx->stepTwiddles[level] == nullptr) return false;
  const int bytes = 16 + (1 << s) * Precision<T>::kRowWorkBytes;
  if (ctx->workBytes < bytes) ctx->workBytes = bytes;
  return true;
}

}  // namespace

template <typename T>
T* makeSineTable(int order) {
  T* tab = allocateArray<T>(sineCount(order));
  if (tab == nullptr) return nullptr;
  const std::int64_t n = std::int64_t(1) << order;
  const long double step = static_cast<long double>(kTwoPi) / static_cast<long double>(n);
  for (std::int64_t i = 0; i <= n / 4; ++i) {
    if (i <= n / 8) {
      tab[i] = static_cast<T>(std::sin(static_cast<long double>(i) * step));
    } else {
      tab[i] = static_cast<T>(std::cos(static_cast<long double>(n / 4 - i) * step));
    }
  }
  return tab;
}

orv32s* makeBitReversal(int order) {
  orv32s* list = reinterpret_cast<orv32s*>(allocateArray<orv32f>(bitReversalCount(order)));
  if (list == nullptr) return nullptr;
  const std::int64_t m = (std::int64_t(1) << order) / 4;
  std::int64_t front = 0, back = m - 1;
  std::int64_t j = 0;
  for (std::int64_t i = 1; i < m; ++i) {
    // j steps as i reversed over order-2 bits: reversed-carry addition
    std::int64_t bit = m / 2;
    while (j & bit) {
      j ^= bit;
      bit >>= 1;
    }
    j |= bit;
    if (i < j) {
      list[front++] = orv32s(4 * i);
      list[front++] = orv32s(4 * j);
    } else if (i == j) {
      list[back--] = orv32s(4 * i);
    }
  }
  list[front] = 0;
  list[m] = 0;
  return list;
}

template <typename T>
bool complexTablesFit(int order, int sineOrder) {
  if (!fits(sineCount(sineOrder), sizeof(T))) return false;
  if (order < 2) return true;
  if (!fits(bitReversalCount(order), sizeof(orv32f))) return false;
  switch (pathOf<T>(order)) {
    case Path::Leaf:
      return fits(leafCount(order), sizeof(T));
    case Path::Blocked:
      return fits(passCount(order), sizeof(T)) &&
             fits(leafCount(Precision<T>::kBlockedLeafOrder), sizeof(T));
    case Path::FourStep:
      // The outermost step table is the largest block of the chain.
      return fits(stepCount(order), sizeof(T));
    case Path::Small:
      break;
  }
  return true;
}

template <typename T>
bool buildComplexTables(orvsFFTContext* ctx, int order, const T* sine, int sineOrder) {
  ctx->bitReversal = makeBitReversal(order);
  if (ctx->bitReversal == nullptr) return false;
  return buildPath(ctx, order, 0, sine, sineOrder);
}

void releaseTables(orvsFFTContext* ctx) {
  void** tables[] = {reinterpret_cast<void**>(&ctx->bitReversal),
                     &ctx->leafTwiddles,
                     &ctx->passTwiddles,
                     &ctx->outerPassTwiddles,
                     &ctx->realForwardTwiddles,
                     &ctx->realInverseTwiddles,
                     &ctx->columnTwiddles[0],
                     &ctx->columnTwiddles[1],
                     &ctx->columnTwiddles[2],
                     &ctx->stepTwiddles[0],
                     &ctx->stepTwiddles[1],
                     &ctx->stepTwiddles[2],
                     reinterpret_cast<void**>(&ctx->lastStageTwiddles)};
  for (void** t : tables) {
    orvsFree(*t);
    *t = nullptr;
  }
}

template orv32f* makeSineTable<orv32f>(int);
template orv64f* makeSineTable<orv64f>(int);
template bool complexTablesFit<orv32f>(int, int);
template bool complexTablesFit<orv64f>(int, int);
template bool buildComplexTables<orv32f>(orvsFFTContext*, int, const orv32f*, int);
template bool buildComplexTables<orv64f>(orvsFFTContext*, int, const orv64f*, int);

}  // namespace fft
}  // namespace orv
