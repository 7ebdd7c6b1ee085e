// The host's memory functions that the plug-in calls, as it reaches them: through the standard
// parameters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host_sim/frame_cache_suite.h"
#include "host_sim/host.h"
#include "host_sim/ppix_suites.h"

namespace {

using host_sim::Host;
using host_sim::HostReport;
using ::testing::ElementsAre;
using ::testing::FieldsAre;
using ::testing::HasSubstr;

class HostMemoryTest : public ::testing::Test {
 protected:
  PlugMemoryFuncs& memory() { return *host_.std_parms()->piSuites->memFuncs; }
  int32_t LockCount(PrMemoryHandle handle) { return host_.memory().LockCount(handle); }

  // The lock count after one more lock, or one more unlock.
  int32_t Lock(PrMemoryHandle handle) { return memory().lockHandle(handle), LockCount(handle); }
  int32_t Unlock(PrMemoryHandle handle) { return memory().unlockHandle(handle), LockCount(handle); }

  Host host_;
};

TEST_F(HostMemoryTest, CountsLocksAndReportsMisuse) {
  PrMemoryHandle handle = memory().newHandle(16);
  EXPECT_EQ(Lock(handle), 1);
  EXPECT_EQ(Lock(handle), 2);
  EXPECT_EQ(Unlock(handle), 1);
  EXPECT_EQ(Unlock(handle), 0);
  EXPECT_TRUE(host_.Report().memory_faults.empty()) << host_.Report().ToString();

  EXPECT_EQ(Unlock(handle), 0) << "an unlock too many";
  memory().disposeHandle(handle);
  EXPECT_EQ(LockCount(handle), -1);
  memory().disposeHandle(handle);
  char* stray_block = nullptr;
  memory().lockHandle(&stray_block);
  HostReport report = host_.Report();
  ASSERT_EQ(report.memory_faults.size(), 3u) << report.ToString();
  EXPECT_THAT(report.memory_faults[0], HasSubstr("not locked"));
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

  HostReport report = host_.Report();
  // Serial, size and lock count.
  EXPECT_THAT(report.handles_still_locked, ElementsAre(FieldsAre(2u, 1200u, 2)));
  EXPECT_THAT(report.handles_never_disposed,
              ElementsAre(FieldsAre(2u, 1200u, 2), FieldsAre(3u, 30u, 0)));
  EXPECT_FALSE(report.clean());
  EXPECT_THAT(report.ToString(), HasSubstr("handle #2 (1200 bytes), lock count 2"));

  memory().disposeHandle(locked);
  memory().disposeHandle(leaked);
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();
}

// The host's tables reach whichever host is current; with none, they answer failure.
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
  EXPECT_NE(host_sim::FrameCacheSuite()->ExpireAllPPixesFromCache(), suiteError_NoError);
  PPixHand frame = nullptr;
  const prRect bounds = {0, 0, 8, 8};
  EXPECT_NE(host_sim::PPixCreatorSuite()->CreatePPix(&frame, PrPPixBufferAccess_ReadWrite,
                                                     PrPixelFormat_BGRA_4444_8u, &bounds),
            suiteError_NoError);
  EXPECT_EQ(frame, nullptr);
  Host next(6);
  EXPECT_EQ(next.std_parms()->imInterfaceVer, 6);
  PrMemoryHandle handle = kept->newHandle(8);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(next.memory().LockCount(handle), 0);
  kept->disposeHandle(handle);
}

}  // namespace
