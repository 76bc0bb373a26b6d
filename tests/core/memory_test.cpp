// The allocator, the version record and the floating-point mode entries.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "core/test_hooks.hpp"
#include "orvspx.h"

namespace {

using orv::testing::allocationCount;
using orv::testing::failNthAllocation;
using orv::testing::lastRequestBytes;
using orv::testing::resetAllocationCount;

struct MallocName {
  const char* name;
  std::size_t elementSize;
  void* (*call)(int);
};

template <typename T, T* (*F)(int)>
void* callMalloc(int len) {
  return F(len);
}

#define ORV_MALLOC_ROW(tag, type) {"orvsMalloc_" #tag, sizeof(type), callMalloc<type, orvsMalloc_##tag>}
const MallocName kMallocs[] = {
    ORV_MALLOC_ROW(8u, orv8u),     ORV_MALLOC_ROW(8s, orv8s),     ORV_MALLOC_ROW(16u, orv16u),
    ORV_MALLOC_ROW(16s, orv16s),   ORV_MALLOC_ROW(8sc, orv8sc),   ORV_MALLOC_ROW(32u, orv32u),
    ORV_MALLOC_ROW(32s, orv32s),   ORV_MALLOC_ROW(32f, orv32f),   ORV_MALLOC_ROW(16sc, orv16sc),
    ORV_MALLOC_ROW(64s, orv64s),   ORV_MALLOC_ROW(64f, orv64f),   ORV_MALLOC_ROW(32sc, orv32sc),
    ORV_MALLOC_ROW(32fc, orv32fc), ORV_MALLOC_ROW(64sc, orv64sc), ORV_MALLOC_ROW(64fc, orv64fc),
};
#undef ORV_MALLOC_ROW

TEST(Malloc, ElementSizesMatchTheNames) {
  const std::size_t expected[] = {1, 1, 2, 2, 2, 4, 4, 4, 4, 8, 8, 8, 8, 16, 16};
  for (std::size_t i = 0; i < sizeof kMallocs / sizeof kMallocs[0]; ++i)
    EXPECT_EQ(kMallocs[i].elementSize, expected[i]) << kMallocs[i].name;
}

TEST(Malloc, BlocksAreAlignedAndKeepTheirRawAddressBelow) {
  for (const MallocName& m : kMallocs) {
    for (int len : {1, 2, 3, 7, 31, 32, 33, 1000}) {
      resetAllocationCount();
      auto* p = static_cast<unsigned char*>(m.call(len));
      ASSERT_NE(p, nullptr) << m.name << " len " << len;
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % 32, 0u) << m.name;
      EXPECT_EQ(lastRequestBytes(), len * m.elementSize + 32 + sizeof(void*)) << m.name;
      void* raw;
      std::memcpy(&raw, p - sizeof(void*), sizeof raw);
      const std::ptrdiff_t gap = p - static_cast<unsigned char*>(raw);
      EXPECT_GE(gap, static_cast<std::ptrdiff_t>(sizeof(void*))) << m.name;
      EXPECT_LE(gap, static_cast<std::ptrdiff_t>(31 + sizeof(void*))) << m.name;
      std::memset(p, 0x5A, len * m.elementSize);  // the whole area is usable
      orvsFree(p);
    }
  }
}

TEST(Malloc, NonPositiveLengthsGiveNullWithoutAskingTheSystem) {
  for (const MallocName& m : kMallocs) {
    for (int len : {0, -1, INT_MIN}) {
      resetAllocationCount();
      EXPECT_EQ(m.call(len), nullptr) << m.name << " len " << len;
      EXPECT_EQ(allocationCount(), 0) << m.name;
    }
  }
}

TEST(Malloc, RequestsAboveTheLimitGiveNullWithoutAskingTheSystem) {
  // 268435452 elements of 16 bytes plus the overhead pass 4,294,967,264.
  resetAllocationCount();
  EXPECT_EQ(orvsMalloc_64fc(268435452), nullptr);
  EXPECT_EQ(orvsMalloc_64fc(INT_MAX), nullptr);
  EXPECT_EQ(orvsMalloc_32fc(INT_MAX), nullptr);
  EXPECT_EQ(allocationCount(), 0);
  // One element fewer is within the limit; the hook refuses it so that no
  // gigabytes are taken, after recording the size of the request.
  failNthAllocation(1);
  EXPECT_EQ(orvsMalloc_64fc(268435451), nullptr);
  EXPECT_EQ(lastRequestBytes(), 268435451ull * 16 + 32 + sizeof(void*));
  EXPECT_LE(lastRequestBytes(), 4294967264ull);
  resetAllocationCount();
}

TEST(Malloc, AFailedSystemAllocationGivesNull) {
  resetAllocationCount();
  failNthAllocation(2);
  void* first = orvsMalloc_8u(10);
  void* second = orvsMalloc_8u(10);
  void* third = orvsMalloc_8u(10);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(second, nullptr);
  EXPECT_NE(third, nullptr);
  orvsFree(first);
  orvsFree(third);
  resetAllocationCount();
}

TEST(Malloc, FreeOfNullDoesNothing) { orvsFree(nullptr); }

TEST(Version, RecordIsConstantAndComplete) {
  const orvLibraryVersion* v = orvsGetLibVersion();
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v, orvsGetLibVersion());
  EXPECT_EQ(v->major, 1);
  EXPECT_EQ(v->minor, 1);
  EXPECT_EQ(v->majorBuild, 11);
  EXPECT_EQ(v->build, 31);
  EXPECT_EQ(std::memcmp(v->targetCpu, "px\0\0", 4), 0);
  EXPECT_STREQ(v->name, "orvspx");
  EXPECT_STREQ(v->version, "v1.1");
  EXPECT_STREQ(v->buildDate, "Aug  7 2001");
}

TEST(FloatingPointModes, AreRefusedWhateverTheArguments) {
  orv32u mask = 0x12345678u;
  for (int value : {0, 1, -1, INT_MAX}) {
    EXPECT_EQ(orvsSetFlushToZero(value, &mask), orvErrCpuNotSupported);
    EXPECT_EQ(orvsSetFlushToZero(value, nullptr), orvErrCpuNotSupported);
    EXPECT_EQ(orvsSetDenormAreZeros(value), orvErrCpuNotSupported);
  }
  EXPECT_EQ(mask, 0x12345678u);
  EXPECT_STREQ(orvGetStatusString(orvsSetDenormAreZeros(0)), "The target cpu is not supported");
}

}  // namespace
