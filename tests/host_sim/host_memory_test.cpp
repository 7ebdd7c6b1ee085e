// The host's memory functions as the plug-in reaches them: through the standard parameters.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "host_sim/host.h"

namespace {

using host_sim::Host;
using host_sim::HostReport;

class HostMemoryTest : public ::testing::Test {
 protected:
  PlugMemoryFuncs& memory() { return *host_.std_parms()->piSuites->memFuncs; }
  int32_t LockCount(PrMemoryHandle handle) { return host_.memory().LockCount(handle); }

  Host host_;
};

TEST_F(HostMemoryTest, AllocatesTheAskedSizeZeroFilledWhenClearingAndResizesKeepingTheBytes) {
  PrMemoryHandle handle = memory().newHandle(4);
  ASSERT_NE(handle, nullptr);
  ASSERT_NE(*handle, nullptr);
  EXPECT_EQ(memory().getHandleSize(handle), 4);
  std::memcpy(*handle, "qvo", 4);
  ASSERT_EQ(memory().setHandleSize(handle, 4096), 0);
  EXPECT_EQ(memory().getHandleSize(handle), 4096);
  EXPECT_STREQ(*handle, "qvo");
  std::memset(*handle, 0x5A, 4096);

  PrMemoryPtr ptr = memory().newPtr(4);
  std::memcpy(ptr, "abc", 4);
  memory().setPtrSize(&ptr, 2048);
  EXPECT_EQ(memory().getPtrSize(ptr), 2048);
  EXPECT_STREQ(ptr, "abc");

  PrMemoryHandle cleared = memory().newHandleClear(64);
  PrMemoryPtr cleared_ptr = memory().newPtrClear(64);
  std::vector<char> zeros(64, 0);
  EXPECT_EQ(std::memcmp(*cleared, zeros.data(), 64), 0);
  EXPECT_EQ(std::memcmp(cleared_ptr, zeros.data(), 64), 0);
  for (PrMemoryHandle h : {handle, cleared}) memory().disposeHandle(h);
  for (PrMemoryPtr p : {ptr, cleared_ptr}) memory().disposePtr(p);
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();
}

TEST_F(HostMemoryTest, CountsLocksRefusesToResizeALockedHandleAndReportsMisuse) {
  PrMemoryHandle handle = memory().newHandle(16);
  char* block = *handle;
  memory().lockHandle(handle);
  EXPECT_EQ(LockCount(handle), 1);
  EXPECT_NE(memory().setHandleSize(handle, 1 << 20), 0);
  EXPECT_EQ(*handle, block);
  EXPECT_EQ(memory().getHandleSize(handle), 16);
  memory().lockHandle(handle);
  EXPECT_EQ(LockCount(handle), 2);
  memory().unlockHandle(handle);
  EXPECT_EQ(LockCount(handle), 1);
  memory().unlockHandle(handle);
  EXPECT_EQ(LockCount(handle), 0);
  EXPECT_TRUE(host_.Report().memory_faults.empty()) << host_.Report().ToString();

  memory().unlockHandle(handle);
  EXPECT_EQ(LockCount(handle), 0) << "an unlock too many";
  memory().disposeHandle(handle);
  EXPECT_EQ(LockCount(handle), -1);
  memory().disposeHandle(handle);
  char* stray_block = nullptr;
  memory().lockHandle(&stray_block);
  HostReport report = host_.Report();
  ASSERT_EQ(report.memory_faults.size(), 3u) << report.ToString();
  EXPECT_NE(report.memory_faults[0].find("not locked"), std::string::npos);
}

TEST_F(HostMemoryTest, ReportListsHandlesLeftLockedAndNeverDisposedInAllocationOrder) {
  PrMemoryHandle disposed = memory().newHandle(10);
  PrMemoryHandle locked = memory().newHandle(1200);
  PrMemoryHandle leaked = memory().newHandle(30);
  memory().lockHandle(locked);
  memory().lockHandle(locked);
  memory().disposeHandle(disposed);
  memory().lockHandle(leaked);
  memory().unlockHandle(leaked);
  PrMemoryPtr leaked_ptr = memory().newPtr(100);

  HostReport report = host_.Report();
  ASSERT_EQ(report.handles_still_locked.size(), 1u);
  EXPECT_EQ(report.handles_still_locked[0].serial, 2u);
  EXPECT_EQ(report.handles_still_locked[0].size, 1200u);
  EXPECT_EQ(report.handles_still_locked[0].lock_count, 2);
  ASSERT_EQ(report.handles_never_disposed.size(), 2u);
  EXPECT_EQ(report.handles_never_disposed[0].serial, 2u);
  EXPECT_EQ(report.handles_never_disposed[1].serial, 3u);
  EXPECT_FALSE(report.clean());
  EXPECT_NE(report.ToString().find("handle #2 (1200 bytes), lock count 2"), std::string::npos)
      << report.ToString();
  ASSERT_EQ(report.pointers_never_disposed.size(), 1u);
  EXPECT_EQ(report.pointers_never_disposed[0].size, 100u);

  memory().disposeHandle(locked);
  memory().disposeHandle(leaked);
  memory().disposePtr(leaked_ptr);
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();
}

TEST_F(HostMemoryTest, ConcurrentLocksAndUnlocksOnOneHandleBalance) {
  PrMemoryHandle handle = memory().newHandle(1200);
  PlugMemoryFuncs* functions = &memory();
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([functions, handle] {
      for (int i = 0; i < 2000; ++i) {
        functions->lockHandle(handle);
        functions->unlockHandle(handle);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(LockCount(handle), 0);
  memory().disposeHandle(handle);
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();
}

TEST(HostLifetimeTest, OneHostIsCurrentAtATimeAndTablesKeptFromAnEndedOneAllocateNothing) {
  PlugMemoryFuncs* kept = nullptr;
  {
    Host first;
    EXPECT_EQ(host_sim::CurrentHost(), &first);
    EXPECT_THROW(Host second, std::logic_error);
    kept = first.std_parms()->piSuites->memFuncs;
  }
  EXPECT_EQ(host_sim::CurrentHost(), nullptr);
  EXPECT_EQ(kept->newHandle(8), nullptr);
  Host next(6);
  EXPECT_EQ(next.std_parms()->imInterfaceVer, 6);
  PrMemoryHandle handle = kept->newHandle(8);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(next.memory().LockCount(handle), 0);
  kept->disposeHandle(handle);
}

}  // namespace
