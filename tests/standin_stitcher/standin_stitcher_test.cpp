#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "standin_stitcher/omni_standin_counters.h"
#include "stitcher_api/pr_source.h"
#include "support/temp_folder.h"

namespace {

constexpr double kTwoPi = 6.283185307179586;

// A planar 4:2:0 picture whose rows are `padding` bytes longer than the picture; every byte
// starts as `fill`.
struct YuvPicture {
  YuvPicture(int width, int height, int padding = 0, uint8_t fill = 0)
      : strides{width + padding, (width + 1) / 2 + padding, (width + 1) / 2 + padding},
        rows{height, (height + 1) / 2, (height + 1) / 2} {
    for (int p = 0; p < 3; ++p) {
      bytes[p].assign(static_cast<size_t>(strides[p]) * rows[p], fill);
      planes[p] = bytes[p].data();
    }
  }
  int strides[3];
  int rows[3];
  std::vector<uint8_t> bytes[3];
  uint8_t* planes[3];
};

// Every field of the packed record as plain values, which gtest compares and prints as one.
auto Fields(const MediaInfo& i) {
  return std::make_tuple(+i.has_video, +i.width, +i.height, +i.fps, +i.frame_count, +i.bitrate,
                         +i.stereo, +i.has_audio, +i.audio_sample_frames, +i.audio_sample_rate,
                         +i.audio_channels, std::string(i.offset));
}

class StandinStitcherTest : public ::testing::Test {
 protected:
  void TearDown() override {
    DestroyAll();
    EXPECT_EQ(OmniStandin_LiveSources(), live_at_start_);
  }

  void DestroyAll() {
    for (auto& source : open_) PrSourceFactory::Destroy(source);
  }

  std::string WriteProject(const std::string& json) {
    return folder_.WriteFile("clip" + std::to_string(++files_) + ".qvo", json);
  }

  // Null when Create fails. The fixture destroys every source it opened.
  PRSource* TryOpen(const std::string& path, MediaInfo* info = nullptr) {
    MediaInfo ignored;
    open_.push_back(PrSourceFactory::Create(path, info != nullptr ? info : &ignored));
    return open_.back().get();
  }

  PRSource& Open(const std::string& path, MediaInfo* info = nullptr) {
    PRSource* source = TryOpen(path, info);
    if (source == nullptr) throw std::runtime_error("no source for " + path);
    return *source;
  }

  // Opens `json` as a new project file.
  PRSource& OpenClip(const std::string& json, MediaInfo* info = nullptr) {
    return Open(WriteProject(json), info);
  }

  static std::vector<uint8_t> Bgra(PRSource& source, int64_t index, int width, int height) {
    std::vector<uint8_t> pixels(static_cast<size_t>(width) * height * 4);
    uint8_t* planes[3] = {pixels.data(), nullptr, nullptr};
    EXPECT_EQ(source.GetVideoFrame(index, width, height, planes, nullptr), 0);
    return pixels;
  }

  static YuvPicture Yuv(PRSource& source, int64_t index, int width, int height) {
    YuvPicture picture(width, height);
    EXPECT_EQ(source.GetVideoFrame(index, width, height, picture.planes, picture.strides), 0);
    return picture;
  }

  static int32_t VideoResult(PRSource& source, int64_t index) {
    YuvPicture picture(16, 8);
    return source.GetVideoFrame(index, 16, 8, picture.planes, picture.strides);
  }

  TempFolder folder_;
  int files_ = 0;
  std::vector<std::shared_ptr<PRSource>> open_;
  int64_t live_at_start_ = OmniStandin_LiveSources();
};

TEST_F(StandinStitcherTest, ReportsTheFilesValuesOrDefaultsAndDerivesTheSampleCount) {
  const struct {
    const char* json;
    MediaInfo expected;
  } cases[] = {
      // 300 / 29.97 * 48000 = 480480.48 sample frames
      {"{}", {1, 3840, 1920, 29.97, 300, 120000000, 0, 1, 480480, 48000, 2, ""}},
      {R"({"width": 640, "height": 640, "fps": 25, "frames": 250, "bitrate": 7, "stereo": true,
          "offset": "1.5,-2,0", "audio": {"rate": 44100, "channels": 6}})",
       {1, 640, 640, 25.0, 250, 7, 1, 1, 441000, 44100, 6, "1.5,-2,0"}},
      {R"({"audio": null})", {1, 3840, 1920, 29.97, 300, 120000000, 0, 0, 0, 0, 0, ""}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.json);
    MediaInfo info;
    OpenClip(one.json, &info);
    EXPECT_EQ(Fields(info), Fields(one.expected));
  }
}

TEST_F(StandinStitcherTest, GivesNoSourceForMissingOrMalformedFiles) {
  EXPECT_FALSE(TryOpen(folder_.Join("absent.qvo")));
  for (const char* text : {"", "not json", "[1, 2]", "{\"width\": 10", "{\"width\": \"wide\"}",
                           "{\"fps\": 0}", "{\"audio\": 5}", "{\"render\": \"fancy\"}",
                           "{\"faults\": {\"video_fail_once\": [\"x\"]}}"}) {
    EXPECT_FALSE(TryOpen(WriteProject(text))) << text;
  }
}

// The plug-in's tests count each path's frames, updates and creates; the rest is counted here.
TEST_F(StandinStitcherTest, SharesOneSourcePerPathUntilTheLastDestroyAndCountsCallsUntilReset) {
  std::string path = WriteProject("{}");
  std::shared_ptr<PRSource> a = PrSourceFactory::Create(path, nullptr);
  std::shared_ptr<PRSource> b = PrSourceFactory::Create(path, nullptr);
  ASSERT_TRUE(a);
  EXPECT_EQ(a.get(), b.get());
  PrSourceFactory::Destroy(a);
  EXPECT_FALSE(a);
  EXPECT_EQ(OmniStandin_LiveSources(), live_at_start_ + 1);
  PrSourceFactory::Destroy(a);  // an empty reference: nothing happens, nothing is counted
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinCreate, path.c_str()), 2);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinDestroy, path.c_str()), 1);

  OmniStandin_ResetCounters();
  std::vector<float> samples(4);
  float* buffers[2] = {samples.data(), samples.data() + 2};
  b->GetAudioFrame(0, 2, buffers);
  VideoResult(*b, 0);
  VideoResult(OpenClip("{}"), 0);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinGetAudioFrame, path.c_str()), 1);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinGetVideoFrame, nullptr), 2);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinUpdate, folder_.Join("never.qvo").c_str()), 0);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinCallKinds, nullptr), -1);
  PrSourceFactory::Destroy(b);
  EXPECT_EQ(OmniStandin_LiveSources(), live_at_start_ + 1) << "only the other path's source";
  OmniStandin_ResetCounters();
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinGetAudioFrame, path.c_str()), 0);
}

TEST_F(StandinStitcherTest, YuvAndBgraShowTheSamePicture) {
  PRSource& source = OpenClip(R"({"frames": 10})");
  const int width = 96, height = 48;
  std::vector<uint8_t> bgra = Bgra(source, 7, width, height);
  YuvPicture yuv = Yuv(source, 7, width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const uint8_t* p = &bgra[(static_cast<size_t>(y) * width + x) * 4];
      double luma = 0.2126 * p[2] + 0.7152 * p[1] + 0.0722 * p[0];
      ASSERT_NEAR(yuv.bytes[0][y * width + x], luma, 1.5) << x << "," << y;
      ASSERT_EQ(p[3], 255);
      // Chroma is compared where the 2 x 2 block has one colour, whatever the subsampling.
      const uint8_t* below = p + width * 4;
      if (x % 2 != 0 || y % 2 != 0 || std::memcmp(p, p + 4, 4) != 0 ||
          std::memcmp(p, below, 4) != 0 || std::memcmp(p, below + 4, 4) != 0) {
        continue;
      }
      int chroma = y / 2 * yuv.strides[1] + x / 2;
      ASSERT_NEAR(yuv.bytes[1][chroma], (p[0] - luma) / 1.8556 + 128, 1.5);
      ASSERT_NEAR(yuv.bytes[2][chroma], (p[2] - luma) / 1.5748 + 128, 1.5);
    }
  }
}

TEST_F(StandinStitcherTest, PictureChangesWithTheFrameAndTheUpdateGenerationOfThePath) {
  std::string path = WriteProject(R"({"frames": 10})");
  PRSource& source = Open(path);
  EXPECT_NE(Bgra(source, 1, 128, 64), Bgra(source, 0, 128, 64));
  EXPECT_TRUE(source.Update());
  std::vector<uint8_t> updated = Bgra(source, 0, 128, 64);
  DestroyAll();
  EXPECT_EQ(Bgra(Open(path), 0, 128, 64), updated);
}

TEST_F(StandinStitcherTest, PlanarWritesFillEveryRowAndKeepToTheStrides) {
  PRSource& source = OpenClip("{}");
  const int width = 37, height = 19;
  YuvPicture tight(width, height, 0, 0x00), padded(width, height, 5, 0xFF);
  ASSERT_EQ(source.GetVideoFrame(3, width, height, tight.planes, tight.strides), 0);
  ASSERT_EQ(source.GetVideoFrame(3, width, height, padded.planes, padded.strides), 0);
  for (int p = 0; p < 3; ++p) {
    int row_bytes = tight.strides[p];
    for (int row = 0; row < padded.rows[p]; ++row) {
      SCOPED_TRACE("plane " + std::to_string(p) + " row " + std::to_string(row));
      // Bytes that match although they started different were written.
      const uint8_t* written = &padded.bytes[p][static_cast<size_t>(row) * padded.strides[p]];
      ASSERT_TRUE(std::equal(written, written + row_bytes, &tight.bytes[p][row * row_bytes]));
      ASSERT_TRUE(std::all_of(written + row_bytes, written + padded.strides[p],
                              [](uint8_t byte) { return byte == 0xFF; }));
    }
  }
}

TEST_F(StandinStitcherTest, FlatRenderFillsEachPlaneWithOneValue) {
  PRSource& source = OpenClip(R"({"render": "flat"})");
  YuvPicture yuv = Yuv(source, 0, 64, 32);
  for (const auto& plane : {yuv.bytes[0], yuv.bytes[1], yuv.bytes[2], Bgra(source, 0, 64, 32)}) {
    EXPECT_EQ(static_cast<size_t>(std::count(plane.begin(), plane.end(), plane[0])), plane.size());
  }
}

TEST_F(StandinStitcherTest, FramesFailOutsideTheClipAndWhereTheFileSaysOnceOrAlways) {
  std::string path = WriteProject(
      R"({"frames": 8, "faults": {"video_fail_once": [2, 3], "video_fail_always": [5]}})");
  PRSource& source = Open(path);
  for (const auto& [index, result] :
       {std::pair{-1, 1}, {8, 1}, {7, 0}, {2, 1}, {2, 0}, {5, 1}, {5, 1}}) {
    EXPECT_EQ(VideoResult(source, index), result) << index;
  }
  DestroyAll();
  PRSource& reopened = Open(path);
  EXPECT_EQ(VideoResult(reopened, 2), 0);  // the path has had its one failure of frame 2
  EXPECT_EQ(VideoResult(reopened, 3), 1);
}

// The plug-in's tests follow the tone from call to call near the start of a file.
TEST_F(StandinStitcherTest, ToneStaysExactFarIntoTheFileAndANegativeCountWritesNothing) {
  PRSource& source = OpenClip(R"({"audio": {"rate": 48000, "channels": 3}})");
  std::vector<float> samples(3 * 300);
  float* buffers[3] = {&samples[0], &samples[300], &samples[600]};
  const int64_t start = 10000000000;  // about 58 hours in
  ASSERT_EQ(source.GetAudioFrame(start, 300, buffers), 0);
  for (int c = 0; c < 3; ++c) {
    for (int n : {0, 1, 77, 299}) {
      double phase = std::fmod(220.0 * (c + 1) * static_cast<double>(start + n), 48000.0);
      EXPECT_NEAR(buffers[c][n], 0.25 * std::sin(kTwoPi * phase / 48000.0), 1e-6);
    }
  }
  const std::vector<float> written = samples;
  EXPECT_EQ(source.GetAudioFrame(0, -3, buffers), 0);
  EXPECT_EQ(samples, written);
}

}  // namespace
