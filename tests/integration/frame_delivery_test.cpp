// Frames requested through the built plug-in file: written by the stitched source straight into
// the host's frames, cached by the host, retried once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "integration/plugin_fixture.h"
#include "standin_stitcher/omni_standin_counters.h"
#include "stitcher_api/pr_source.h"

namespace {

using host_sim::FramePlane;
using host_sim::HostFile;
using host_sim::HostFrame;
using ::testing::_;
using ::testing::Contains;
using ::testing::FieldsAre;

constexpr PrPixelFormat kBgra = 0x61726762;
constexpr char kSmallScene[] = R"({"width": 64, "height": 32, "frames": 10})";

class FrameDeliveryTest : public PluginTest {
 protected:
  // Frame `index` of the clip, asked at a time inside it.
  const HostFrame* Frame(HostFile* clip, int32_t index, imFrameFormat format, int32_t* result) {
    PPixHand handle = nullptr;
    *result = clip->RequestFrame(index * clip->TicksPerFrame() + clip->TicksPerFrame() / 3, format,
                                 &handle);
    return handle == nullptr ? nullptr : host().frames().Find(handle);
  }

  int64_t StitchedFrames(const HostFile* clip) const {
    return OmniStandin_CallCount(kOmniStandinGetVideoFrame, PathOf(*clip).c_str());
  }

  // What the stitching library writes for frame `index`, asked directly, planes tightly packed.
  std::vector<std::vector<uint8_t>> Reference(const HostFile* clip, int32_t index, bool planar) {
    MediaInfo info;
    std::shared_ptr<PRSource> source = PrSourceFactory::Create(PathOf(*clip), &info);
    const int w = info.width;
    const int h = info.height;
    std::vector<std::vector<uint8_t>> planes(planar ? 3 : 1);
    planes[0].resize(planar ? w * h : w * h * 4);
    for (size_t p = 1; p < planes.size(); ++p) planes[p].resize((w + 1) / 2 * ((h + 1) / 2));
    uint8_t* pointers[3] = {nullptr, nullptr, nullptr};
    for (size_t p = 0; p < planes.size(); ++p) pointers[p] = planes[p].data();
    int strides[3] = {w, (w + 1) / 2, (w + 1) / 2};
    EXPECT_EQ(source->GetVideoFrame(index, w, h, pointers, strides), 0);
    PrSourceFactory::Destroy(source);
    return planes;
  }

  // The rows of a host plane without their padding.
  static std::vector<uint8_t> Rows(const FramePlane& plane) {
    std::vector<uint8_t> rows;
    for (int32_t r = 0; r < plane.rows; ++r) {
      const uint8_t* row = plane.bytes + r * plane.row_bytes;
      rows.insert(rows.end(), row, row + plane.row_length);
    }
    return rows;
  }
};

// Rows padded or not, the stitcher writes the clip's own size, and the host learns it from its
// format entry, as it does when it asks for 0 x 0.
TEST_F(FrameDeliveryTest, WritesTheStitchersFrameAtTheFilesSizeIntoTheHostsRows) {
  HostFile* clip = DescribedClip(kSmallScene);
  for (int32_t padding : {0, 20}) {
    host().frames().set_row_padding(padding);
    host().frames().set_plane_padding(padding);
    for (bool planar : {true, false}) {
      const std::vector<std::vector<uint8_t>> reference = Reference(clip, 3, planar);
      for (const auto& [width, height] :
           {std::pair{0, 0}, {64, 32}, {32, 16}, {128, 64}, {64, 8}, {16, 32}}) {
        SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height) + (planar ? " YUV" : "") +
                     ", padding " + std::to_string(padding));
        int32_t result = -1;
        const HostFrame* frame = Frame(clip, 3, {width, height, planar ? kPlanar : kBgra}, &result);
        host().frame_cache().ExpireAll();
        ASSERT_EQ(result, imNoErr);
        ASSERT_NE(frame, nullptr);
        ASSERT_EQ(frame->planar, planar);
        EXPECT_EQ(std::make_pair(frame->width, frame->height), std::make_pair(64, 32));
        EXPECT_EQ(std::make_pair(clip->last_frame_format().inFrameWidth,
                                 clip->last_frame_format().inFrameHeight),
                  std::make_pair(64, 32));
        if (!planar) {
          EXPECT_EQ(frame->planes[0].row_bytes, 64 * 4 + padding);
        }
        for (int p = 0; p < frame->plane_count; ++p)
          EXPECT_EQ(Rows(frame->planes[p]), reference[p]);
      }
    }
  }
}

TEST_F(FrameDeliveryTest, AnswersTwoTimesInsideOneFrameFromOneCacheEntry) {
  HostFile* clip = DescribedClip(kSmallScene);
  PPixHand first = nullptr;
  PPixHand second = nullptr;
  const PrTime frame_start = 4 * clip->TicksPerFrame();
  ASSERT_EQ(clip->RequestFrame(frame_start, {0, 0, kPlanar}, &first), imNoErr);
  ASSERT_EQ(clip->RequestFrame(frame_start + clip->TicksPerFrame() - 1, {0, 0, kPlanar}, &second),
            imNoErr);
  EXPECT_EQ(first, second);
  EXPECT_EQ(StitchedFrames(clip), 1) << "a cached frame never reaches the stitcher";
  EXPECT_EQ(host().frame_cache().size(), 1u);
  EXPECT_EQ(host().frame_cache().hits(), 1);
}

// A frame that fails twice leaves the new frame in the host's slot, uncached.
TEST_F(FrameDeliveryTest, RetriesOnceAndCachesOnlyWhatTheRetryDelivers) {
  const struct {
    const char* fault;
    int32_t result;
    size_t cached;
  } cases[] = {{"video_fail_once", imNoErr, 1u}, {"video_fail_always", malUnknownError, 0u}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    HostFile* clip = DescribedClip(std::string(R"({"width": 64, "height": 32, "faults": {")") +
                                   c.fault + R"(": [5]}})");
    int32_t result = -1;
    EXPECT_NE(Frame(clip, 5, {0, 0, kPlanar}, &result), nullptr);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(StitchedFrames(clip), 2) << "exactly one retry";
    EXPECT_EQ(OmniStandin_CallCount(kOmniStandinUpdate, PathOf(*clip).c_str()), 1);
    EXPECT_EQ(host().frame_cache().size(), c.cached);
    host().frame_cache().ExpireAll();
  }
}

// A frame the host will not make in the wanted format is never stitched.
TEST_F(FrameDeliveryTest, OffersTheFilesOwnSizeOnlyAndAnswersUnknownErrorForAFrameNotMade) {
  HostFile* clip = DescribedClip(kSmallScene);
  int32_t width = 0;
  int32_t height = 0;
  EXPECT_EQ(clip->PreferredFrameSize(0, &width, &height), imNoErr);
  EXPECT_EQ(std::make_pair(width, height), std::make_pair(64, 32));
  EXPECT_EQ(clip->PreferredFrameSize(1, &width, &height), imOtherErr);
  EXPECT_EQ(clip->CheckTrim(), imNoErr);

  PPixHand frame = nullptr;
  EXPECT_EQ(clip->RequestFrame(0, {0, 0, PrPixelFormat_Any}, &frame), malUnknownError);
  EXPECT_EQ(frame, nullptr);
  EXPECT_EQ(StitchedFrames(clip), 0);
}

// The host's render threads ask for the first frames of several files at once; each file acquires
// the PPix 2 suite once.
TEST_F(FrameDeliveryTest, AcquiresThePPix2SuiteOncePerFileWhenFirstFramesRace) {
  constexpr int kFiles = 8;
  std::vector<HostFile*> clips;
  for (int f = 0; f < kFiles; ++f) clips.push_back(DescribedClip(kSmallScene));
  std::vector<int32_t> results(kFiles * 8, -1);
  std::vector<std::thread> threads;
  for (size_t slot = 0; slot < results.size(); ++slot) {
    threads.emplace_back([&results, slot, clip = clips[slot % kFiles]] {
      imFrameFormat format = {0, 0, kPlanar};
      PPixHand frame = nullptr;
      const PrTime time = static_cast<PrTime>(slot / kFiles) * clip->TicksPerFrame();
      results[slot] = clip->RequestFrame(time, &format, &frame);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::count(results.begin(), results.end(), imNoErr), kFiles * 8);
  for (HostFile* clip : clips) clip->Close();
  EXPECT_THAT(host().suites().Balances(), Contains(FieldsAre(kPrSDKPPix2Suite, _, kFiles, kFiles)));
}

}  // namespace
