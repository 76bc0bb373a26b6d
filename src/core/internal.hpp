// Shared internals of the library: argument checks, the allocator's entry
// points for other families, and small helpers used by every kernel file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "orvspx.h"

namespace orv {

// True if any of the given pointers is null.
template <typename... P>
inline bool anyNull(const P*... p) {
  return ((p == nullptr) || ...);
}

// The common check order of a vector function: every pointer first (one
// answer for all of them), then the length.
template <typename... P>
inline orvStatus checkVectors(int len, const P*... p) {
  if (anyNull(p...)) return orvErrNullPointer;
  if (len < 1) return orvErrSize;
  return orvOk;
}

// Returns from the calling function when a status is not orvOk.
#define ORV_RETURN_IF_ERROR(expr)              \
  do {                                         \
    const orvStatus orv_status_ = (expr);      \
    if (orv_status_ != orvOk) return orv_status_; \
  } while (0)

// Bit-exact reinterpretation between trivially copyable types of one size.
template <typename To, typename From>
inline To bitCast(const From& from) {
  static_assert(sizeof(To) == sizeof(From), "bitCast needs equal sizes");
  To to;
  std::memcpy(&to, &from, sizeof(To));
  return to;
}

namespace core {

// Largest block (user area plus slack) the allocator hands out.
constexpr std::uint64_t kMaxRequestBytes = 4294967264ull;
// Alignment of every block handed out.
constexpr std::uintptr_t kBlockAlignment = 32;
// Bytes the allocator asks for on top of the user's area: the alignment
// slack and the word below the user's area that holds the raw address.
constexpr std::uint64_t kBlockOverhead = kBlockAlignment + sizeof(void*);

// Allocates a 32-byte aligned block of `bytes` bytes, or returns null. The
// block is released with orvsFree.
void* allocateBytes(std::uint64_t bytes);

}  // namespace core

// Typed allocation of `count` elements, null for count < 1 or on failure.
template <typename T>
inline T* allocateArray(std::int64_t count) {
  if (count < 1) return nullptr;
  return static_cast<T*>(core::allocateBytes(static_cast<std::uint64_t>(count) * sizeof(T)));
}

// Owns a block from the library's allocator for the length of one call.
template <typename T>
class ScopedBuffer {
 public:
  explicit ScopedBuffer(std::int64_t count) : ptr_(allocateArray<T>(count)) {}
  ~ScopedBuffer() { orvsFree(ptr_); }
  ScopedBuffer(const ScopedBuffer&) = delete;
  ScopedBuffer& operator=(const ScopedBuffer&) = delete;
  T* get() const { return ptr_; }
  explicit operator bool() const { return ptr_ != nullptr; }

 private:
  T* ptr_;
};

}  // namespace orv
