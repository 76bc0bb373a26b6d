// Test helpers for spectra of real signals: a long-double DFT and the three
// packed layouts written out from their definition, bin by bin.
#pragma once

#include <cmath>
#include <complex>
#include <cstddef>
#include <vector>

namespace spectest {

using Cl = std::complex<long double>;

enum class Layout { Ccs, Pack, Perm };

inline const char* layoutName(Layout l) {
  return l == Layout::Ccs ? "CCS" : (l == Layout::Pack ? "Pack" : "Perm");
}

// exp(-2 pi i m / n) for m = 0..n-1, in long double.
inline std::vector<Cl> unitRoots(std::size_t n) {
  const long double w = -2.0L * 3.14159265358979323846264338327950288L / (long double)n;
  std::vector<Cl> r(n);
  for (std::size_t m = 0; m < n; ++m) r[m] = Cl(std::cos(w * m), std::sin(w * m));
  return r;
}

// X[k] = sum x[n] exp(-2 pi i n k / N), k = 0..N-1, in long double.
template <typename T>
std::vector<Cl> naiveDft(const std::vector<T>& x) {
  const std::size_t n = x.size();
  const auto roots = unitRoots(n);
  std::vector<Cl> out(n);
  for (std::size_t k = 0; k < n; ++k) {
    Cl acc = 0;
    for (std::size_t j = 0; j < n; ++j) acc += (long double)x[j] * roots[(j * k) % n];
    out[k] = acc;
  }
  return out;
}

// Number of reals of a layout for a real signal of length n.
inline std::size_t layoutSize(Layout l, std::size_t n) {
  if (l != Layout::Ccs) return n;
  return n % 2 == 0 ? n + 2 : n + 1;
}

// The layout of bins X[0..n/2] of a length-n real signal, written from the
// definitions: the values in the real-only slots are the real parts as they
// are; `ccsJunk` goes into CCS's imaginary slots of bin 0 and of the middle
// bin (0 by definition).
template <typename T, typename C>
std::vector<T> packLayout(Layout l, const std::vector<C>& X, std::size_t n, T ccsJunk = T(0)) {
  std::vector<T> out(layoutSize(l, n), T(0));
  const std::size_t half = n / 2;
  const bool even = n % 2 == 0;
  auto re = [&](std::size_t k) { return T(X[k].real()); };
  auto im = [&](std::size_t k) { return T(X[k].imag()); };
  switch (l) {
    case Layout::Ccs:
      for (std::size_t k = 0; k <= half; ++k) {
        out[2 * k] = re(k);
        out[2 * k + 1] = im(k);
      }
      out[1] = ccsJunk;
      if (even) out[n + 1] = ccsJunk;
      break;
    case Layout::Pack:
      out[0] = re(0);
      for (std::size_t k = 1; k < (even ? half : half + 1); ++k) {
        out[2 * k - 1] = re(k);
        out[2 * k] = im(k);
      }
      if (even && n >= 2) out[n - 1] = re(half);
      break;
    case Layout::Perm:
      if (!even) return packLayout<T>(Layout::Pack, X, n);
      out[0] = re(0);
      if (n >= 2) out[1] = re(half);
      for (std::size_t k = 1; k < half; ++k) {
        out[2 * k] = re(k);
        out[2 * k + 1] = im(k);
      }
      break;
  }
  return out;
}

}  // namespace spectest
