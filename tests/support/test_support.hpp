// Helpers shared by the test programs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "orvspx.h"

namespace orvtest {

// A vector of T placed at an element offset inside a larger byte area whose
// bytes around the vector hold a known pattern, to show that a function wrote
// nothing outside the range it was given.
template <typename T>
class Guarded {
 public:
  static constexpr std::size_t kPad = 64;
  static constexpr unsigned char kCanary = 0xA5;

  Guarded(std::size_t len, std::size_t offset = 0)
      : len_(len), bytes_(kPad + (offset + len) * sizeof(T) + kPad + 64, kCanary) {
    std::uintptr_t base = reinterpret_cast<std::uintptr_t>(bytes_.data()) + kPad;
    base = (base + 31) & ~std::uintptr_t(31);  // offset counts from a 32-byte boundary
    begin_ = base - reinterpret_cast<std::uintptr_t>(bytes_.data()) + offset * sizeof(T);
  }

  T* data() { return reinterpret_cast<T*>(bytes_.data() + begin_); }
  std::size_t size() const { return len_; }
  T& operator[](std::size_t i) { return data()[i]; }

  // True if no byte outside the vector changed.
  bool intactOutside() const {
    const std::size_t end = begin_ + len_ * sizeof(T);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
      if ((i < begin_ || i >= end) && bytes_[i] != kCanary) return false;
    }
    return true;
  }
  // True if no byte of the whole area changed (the vector included).
  bool untouched() const {
    for (unsigned char b : bytes_)
      if (b != kCanary) return false;
    return true;
  }

 private:
  std::size_t len_;
  std::vector<unsigned char> bytes_;
  std::size_t begin_;
};

// Random bytes of a fixed seed, so that failures repeat.
inline void fillRandomBytes(void* dst, std::size_t n, unsigned seed) {
  std::mt19937 gen(seed);
  auto* p = static_cast<unsigned char*>(dst);
  for (std::size_t i = 0; i < n; ++i) p[i] = static_cast<unsigned char>(gen());
}

}  // namespace orvtest
