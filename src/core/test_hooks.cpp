// Allocation-failure injection for the test build (see test_hooks.hpp).
#include "core/test_hooks.hpp"

#if defined(ORVSPX_TEST_HOOKS)
#include <atomic>
#include <cstring>
#include <mutex>

namespace orv {
namespace testing {
namespace {
std::atomic<long> gFailAt{0};
std::atomic<long> gCount{0};
std::atomic<std::uint64_t> gLastRequest{0};

struct Release {
  const void* block;
  std::uint32_t firstWord;
};
constexpr int kReleasesKept = 64;
std::mutex gReleaseLock;
Release gReleases[kReleasesKept];
int gNextRelease = 0;
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

void noteRelease(const void* block) {
  Release r{block, 0};
  std::memcpy(&r.firstWord, block, sizeof r.firstWord);
  std::lock_guard<std::mutex> lock(gReleaseLock);
  gReleases[gNextRelease] = r;
  gNextRelease = (gNextRelease + 1) % kReleasesKept;
}

bool releasedFirstWord(const void* block, std::uint32_t* word) {
  std::lock_guard<std::mutex> lock(gReleaseLock);
  for (int k = 1; k <= kReleasesKept; ++k) {
    const Release& r = gReleases[(gNextRelease - k + kReleasesKept) % kReleasesKept];
    if (r.block == block) {
      *word = r.firstWord;
      return true;
    }
  }
  return false;
}

}  // namespace testing
}  // namespace orv
#endif
