// Allocation-failure injection, compiled only into the library that the test
// suite links (ORVSPX_TEST_HOOKS). The shipped libraries have none of it.
#pragma once

#include <cstdint>

#if defined(ORVSPX_TEST_HOOKS)
namespace orv {
namespace testing {

// Makes the n-th allocation from now fail (1 is the next one); 0 disarms.
void failNthAllocation(long n);
// Number of allocations attempted since the counter was last reset.
long allocationCount();
void resetAllocationCount();
// Size in bytes of the last request passed to the system allocator.
std::uint64_t lastRequestBytes();

// Called by the allocator for every request; true means "fail this one".
bool allocationShouldFail(std::uint64_t request);

// Called by orvsFree just before a block goes back to the system: records the
// block's address and its first 32-bit word, so that a test can see what a
// release function left in a record without reading freed memory.
void noteRelease(const void* block);
// The first word the block at `block` held when it was last released, if it
// is among the most recent releases; false otherwise.
bool releasedFirstWord(const void* block, std::uint32_t* word);

}  // namespace testing
}  // namespace orv
#endif
