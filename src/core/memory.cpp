// The library's allocator: 32-byte aligned blocks whose raw address is kept
// in the pointer-sized word just below the address handed out.
#include <cstdlib>

#include "core/internal.hpp"
#include "core/test_hooks.hpp"

namespace orv {
namespace core {

void* allocateBytes(std::uint64_t bytes) {
  // Sizes are 64-bit here, so a request can't wrap into a short block; the
  // largest request the allocator grants stays what it is on 32-bit targets.
  if (bytes > kMaxRequestBytes - kBlockOverhead) return nullptr;
  const std::uint64_t request = bytes + kBlockOverhead;
#if defined(ORVSPX_TEST_HOOKS)
  if (testing::allocationShouldFail(request)) return nullptr;
#endif
  void* raw = std::malloc(static_cast<std::size_t>(request));
  if (raw == nullptr) return nullptr;
  const std::uintptr_t base = reinterpret_cast<std::uintptr_t>(raw);
  const std::uintptr_t user = (base + kBlockOverhead - 1) & ~(kBlockAlignment - 1);
  reinterpret_cast<void**>(user)[-1] = raw;
  return reinterpret_cast<void*>(user);
}

}  // namespace core
}  // namespace orv

namespace {

template <typename T>
T* mallocElements(int len) {
  return orv::allocateArray<T>(len);
}

}  // namespace

extern "C" {

orv8u* orvsMalloc_8u(int len) { return mallocElements<orv8u>(len); }
orv8s* orvsMalloc_8s(int len) { return mallocElements<orv8s>(len); }
orv16u* orvsMalloc_16u(int len) { return mallocElements<orv16u>(len); }
orv16s* orvsMalloc_16s(int len) { return mallocElements<orv16s>(len); }
orv8sc* orvsMalloc_8sc(int len) { return mallocElements<orv8sc>(len); }
orv32u* orvsMalloc_32u(int len) { return mallocElements<orv32u>(len); }
orv32s* orvsMalloc_32s(int len) { return mallocElements<orv32s>(len); }
orv32f* orvsMalloc_32f(int len) { return mallocElements<orv32f>(len); }
orv16sc* orvsMalloc_16sc(int len) { return mallocElements<orv16sc>(len); }
orv64s* orvsMalloc_64s(int len) { return mallocElements<orv64s>(len); }
orv64f* orvsMalloc_64f(int len) { return mallocElements<orv64f>(len); }
orv32sc* orvsMalloc_32sc(int len) { return mallocElements<orv32sc>(len); }
orv32fc* orvsMalloc_32fc(int len) { return mallocElements<orv32fc>(len); }
orv64sc* orvsMalloc_64sc(int len) { return mallocElements<orv64sc>(len); }
orv64fc* orvsMalloc_64fc(int len) { return mallocElements<orv64fc>(len); }

void orvsFree(void* ptr) {
  if (ptr == nullptr) return;
#if defined(ORVSPX_TEST_HOOKS)
  orv::testing::noteRelease(ptr);
#endif
  std::free(static_cast<void**>(ptr)[-1]);
}

}  // extern "C"
