// Allocation-failure injection for the test build (see test_hooks.hpp).
#include "core/test_hooks.hpp"

#if defined(ORVSPX_TEST_HOOKS)
#include <atomic>

namespace orv {
namespace testing {
namespace {
std::atomic<long> gFailAt{0};
std::atomic<long> gCount{0};
std::atomic<std::uint64_t> gLastRequest{0};
}  // namespace

void failNthAllocation(long n) { gFailAt = n > 0 ? gCount.load() + n : 0; }
long allocationCount() { return gCount.load(); }
void resetAllocationCount() {
  gCount = 0;
  gFailAt = 0;
}
std::uint64_t lastRequestBytes() { return gLastRequest.load(); }

bool allocationShouldFail(std::uint64_t request) {
  gLastRequest = request;
  const long n = ++gCount;
  return gFailAt != 0 && n == gFailAt;
}

}  // namespace testing
}  // namespace orv
#endif
