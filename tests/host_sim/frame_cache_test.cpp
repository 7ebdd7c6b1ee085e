// The host's frame cache as the plug-in reaches it: the PPix Cache suite, keyed by importer ID,
// stream and frame number.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "host_sim/frame_cache_suite.h"
#include "host_sim/host.h"

namespace {

using host_sim::Host;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr PrPixelFormat kPlanar = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;

class FrameCacheTest : public ::testing::Test {
 protected:
  const PrSDKPPixCacheSuite& cache() { return *host_sim::FrameCacheSuite(); }

  PPixHand NewFrame(int32_t side = 32) { return host_.frames().Create(kPlanar, 2 * side, side); }

  prSuiteError Add(uint32_t importer_id, int32_t stream, int32_t frame_number, PPixHand frame) {
    return cache().AddFrameToCache(importer_id, stream, frame, frame_number, nullptr, 0);
  }

  // The frame a lookup hands out, or null on a miss.
  PPixHand Get(uint32_t importer_id, int32_t stream, int32_t frame_number,
               imFrameFormat format = {0, 0, 0}) {
    PPixHand frame = nullptr;
    const prSuiteError result = cache().GetFrameFromCache(importer_id, stream, frame_number, 1,
                                                          &format, &frame, nullptr, 0);
    EXPECT_EQ(result == suiteError_NoError, frame != nullptr);
    return frame;
  }

  const host_sim::FrameCache& counters() { return host_.frame_cache(); }

  std::tuple<int64_t, int64_t, size_t> HitsMissesAndSize() {
    return {counters().hits(), counters().misses(), counters().size()};
  }

  int32_t References(PPixHand frame) { return host_.frames().References(frame); }

  Host host_;
};

TEST_F(FrameCacheTest, FindsAFrameOnlyUnderItsImporterStreamAndFrameNumber) {
  PPixHand frame = NewFrame();
  ASSERT_EQ(Add(7, 0, 12, frame), suiteError_NoError);
  EXPECT_EQ(Get(7, 0, 12), frame);
  EXPECT_EQ(Get(8, 0, 12), nullptr);
  EXPECT_EQ(Get(7, 1, 12), nullptr);
  EXPECT_EQ(Get(7, 0, 13), nullptr);
  EXPECT_EQ(HitsMissesAndSize(), std::make_tuple(1, 3, 1u));

  PPixHand slot = reinterpret_cast<PPixHand>(&slot);
  imFrameFormat format = {0, 0, kPlanar};
  EXPECT_NE(cache().GetFrameFromCache(1, 0, 0, 1, &format, &slot, nullptr, 0), suiteError_NoError);
  EXPECT_EQ(slot, reinterpret_cast<PPixHand>(&slot)) << "a miss leaves the slot alone";
}

TEST_F(FrameCacheTest, ExpiringAllEmptiesTheCacheForEveryImporterButHandedOutFramesLive) {
  const PPixHand frames[3] = {NewFrame(), NewFrame(), NewFrame()};
  Add(1, 0, 0, frames[0]);
  Add(2, 0, 0, frames[1]);
  Add(2, 1, 5, frames[2]);
  host_.frames().Dispose(frames[0]);
  EXPECT_EQ(References(frames[0]), 1) << "the cache's own";
  PPixHand handed_out = Get(1, 0, 0);
  EXPECT_EQ(References(frames[0]), 2);

  EXPECT_EQ(cache().ExpireAllPPixesFromCache(), suiteError_NoError);
  EXPECT_EQ(cache().ExpireAllPPixesFromCache(), suiteError_NoError);
  EXPECT_EQ(counters().size(), 0u);
  EXPECT_EQ(counters().expire_all_calls(), 2);
  EXPECT_EQ(Get(2, 1, 5), nullptr);
  for (PPixHand frame : {frames[1], frames[2], handed_out}) {
    EXPECT_EQ(References(frame), 1) << "the creator's, or the one handed out";
    host_.frames().Dispose(frame);
  }
  EXPECT_EQ(host_.frames().live_count(), 0u);
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();
}

TEST_F(FrameCacheTest, AHitFitsTheWantedFormatWhereItNamesOne) {
  PPixHand frame = NewFrame();
  Add(1, 0, 0, frame);
  EXPECT_EQ(Get(1, 0, 0, {0, 0, 0}), frame);
  EXPECT_EQ(Get(1, 0, 0, {64, 32, kPlanar}), frame);
  EXPECT_EQ(Get(1, 0, 0, {0, 0, PrPixelFormat_BGRA_4444_8u}), nullptr);
  EXPECT_EQ(Get(1, 0, 0, {32, 16, 0}), nullptr);
}

TEST_F(FrameCacheTest, AddingUnderATakenKeyReleasesTheFrameKeptThereAndRefusesADeadFrame) {
  PPixHand first = NewFrame();
  PPixHand second = NewFrame();
  Add(1, 0, 3, first);
  host_.frames().Dispose(first);
  Add(1, 0, 3, second);
  EXPECT_EQ(host_.frames().Find(first), nullptr);
  EXPECT_EQ(Get(1, 0, 3), second);
  EXPECT_EQ(counters().size(), 1u);

  EXPECT_NE(Add(1, 0, 4, first), suiteError_NoError);
  EXPECT_EQ(counters().size(), 1u);
  EXPECT_THAT(host_.Report().frame_faults, ElementsAre(HasSubstr("AddFrameToCache")));
}

TEST_F(FrameCacheTest, BeyondItsBudgetTheLeastRecentlyUsedFramesLeave) {
  const size_t frame_bytes = host_.frames().Find(NewFrame())->size;
  host_.frame_cache().set_capacity_bytes(2 * frame_bytes);
  Add(1, 0, 0, NewFrame());
  Add(1, 0, 1, NewFrame());
  host_.frames().Dispose(Get(1, 0, 0));
  Add(1, 0, 2, NewFrame());
  EXPECT_EQ(counters().evictions(), 1);
  EXPECT_EQ(counters().size(), 2u);
  EXPECT_EQ(Get(1, 0, 1), nullptr) << "the one not asked for since it was added";
  EXPECT_NE(Get(1, 0, 0), nullptr);
}

}  // namespace
