#include "delivery/trimming.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <vector>

#include "delivery/sample_file_writer.h"
#include "support/temp_folder.h"

namespace {

// A frame of the sample clip, 4 x 2 pixels of 4 bytes, then its "++++" separator.
constexpr size_t kFrameBytes = 4 * 2 * 4;
constexpr size_t kFrameStride = kFrameBytes + 4;

SampleFileHeader HeaderOf(const std::string& bytes) {
  SampleFileHeader header;
  std::memcpy(&header, bytes.data(), sizeof(header));
  return header;
}

class TrimmingTest : public ::testing::Test {
 protected:
  // Selector imTrimFile8 on the clip. One frame lasts one second (scale 2 over sample size 2),
  // so ten samples at 10 Hz.
  int32_t Trim(int32_t trim_in, int32_t duration, bool with_progress = true,
               bool keep_video = true) {
    char* block = reinterpret_cast<char*>(&record_);
    imFileAccessRec8 access{};
    access.filepath = source_.c_str();
    imTrimFileRec8 request{};
    request.privatedata = &block;
    request.trimIn = trim_in;
    request.duration = duration;
    request.keepAudio = 1;
    request.keepVideo = keep_video ? 1 : 0;
    request.destFilePath = target_wide_.c_str();
    request.scale = 2;
    request.sampleSize = 2;
    if (with_progress) {
      request.progressCallback = &TrimmingTest::OnProgress;
      request.progressCallbackID = this;
    }
    return TrimFile(&access, &request);
  }

  static int32_t OnProgress(int32_t part_done, int32_t total, void* id) {
    auto* test = static_cast<TrimmingTest*>(id);
    test->progress_.push_back(part_done);
    EXPECT_EQ(total, 100);
    return test->progress_.size() < test->continue_for_ ? imProgressContinue : imProgressAbort;
  }

  // The trimmed file, removed so that the next trim may write it again.
  std::string TakeTarget() {
    const std::string bytes = ReadWholeFile(target_);
    std::filesystem::remove(target_);
    return bytes;
  }

  SampleClip clip_;
  PrivateFileRecord record_ = RecordFor(clip_);
  TempFolder folder_;
  const std::u16string source_ =
      HostPath(folder_.WriteFile("source.qvo", SampleFileContent(clip_)));
  const std::string target_ = folder_.Join("trimmed.qvo");
  const std::u16string target_wide_ = HostPath(target_);
  std::vector<int32_t> progress_;
  size_t continue_for_ = 1000;
};

TEST_F(TrimmingTest, WritesTheRangesFramesAndSoundInTheSampleFormatReportingEachStep) {
  ASSERT_EQ(Trim(1, 2), imNoErr);
  const std::string bytes = TakeTarget();
  ASSERT_EQ(bytes.size(), 602 + 2 * kFrameStride + 2 * 20 * sizeof(float));
  const SampleFileHeader header = HeaderOf(bytes);
  EXPECT_EQ(header.frame_count, 2u);
  EXPECT_EQ(header.sample_frames, 20u);
  EXPECT_EQ(header.width, 4);
  for (uint32_t k = 0; k < 2; ++k) {
    const size_t start = 602 + k * kFrameStride;
    for (uint32_t i = 0; i < kFrameBytes; ++i) {
      ASSERT_EQ(static_cast<uint8_t>(bytes[start + i]), FrameByte(1 + k, i));
    }
    EXPECT_EQ(bytes.substr(start + kFrameBytes, 4), "++++");
  }
  const size_t audio = 602 + 2 * kFrameStride;
  for (int channel = 0; channel < 2; ++channel) {
    for (uint64_t n = 0; n < 20; ++n) {
      float value;
      std::memcpy(&value, bytes.data() + audio + (channel * 20 + n) * sizeof(float), 4);
      ASSERT_EQ(value, SampleValue(channel, 10 + n)) << channel << " " << n;
    }
  }
  // Two frames, then two one-second blocks of each of two channels.
  EXPECT_EQ(progress_, (std::vector<int32_t>{25, 50, 62, 75, 87, 100}));

  ASSERT_EQ(Trim(1, 0), imNoErr) << "to the end, from past the start: trimmed, not copied whole";
  EXPECT_EQ(HeaderOf(TakeTarget()).frame_count, 4u);
}

TEST_F(TrimmingTest, LeavingThePictureOutWritesTheSoundAloneUnderAHeaderWithoutVideo) {
  ASSERT_EQ(Trim(1, 2, true, false), imNoErr);
  const std::string bytes = TakeTarget();
  ASSERT_EQ(bytes.size(), 602 + 2 * 20 * sizeof(float));
  const SampleFileHeader header = HeaderOf(bytes);
  EXPECT_EQ(header.has_video, 0u);
  EXPECT_EQ(header.frame_count, 0u);
  EXPECT_EQ(header.has_audio, 1u);
  EXPECT_EQ(header.sample_frames, 20u);
  float first;
  std::memcpy(&first, bytes.data() + 602, sizeof(first));
  EXPECT_EQ(first, SampleValue(0, 10));
}

TEST_F(TrimmingTest, KeepsTheFramesCopiedWithoutSoundWhenTheHostStops) {
  for (size_t stop_after : {1, 3}) {
    SCOPED_TRACE(stop_after);
    progress_.clear();
    continue_for_ = stop_after;
    EXPECT_EQ(Trim(1, 2), imNoErr);
    EXPECT_EQ(progress_.size(), stop_after);
    const std::string bytes = TakeTarget();
    const uint32_t frames_kept = stop_after == 1 ? 1 : 2;
    ASSERT_GE(bytes.size(), 602 + frames_kept * kFrameStride);
    const SampleFileHeader header = HeaderOf(bytes);
    EXPECT_EQ(header.frame_count, frames_kept);
    EXPECT_EQ(header.has_video, 1u);
    EXPECT_EQ(header.has_audio, 0u);
    EXPECT_EQ(header.sample_frames, 0u);
    EXPECT_EQ(static_cast<uint8_t>(bytes[602 + frames_kept * kFrameStride - 5]),
              FrameByte(frames_kept, kFrameBytes - 1));
  }
}

// A sample rate out of all proportion puts the range's sound beyond any 64-bit position: the
// frames are trimmed without sound.
TEST_F(TrimmingTest, KeepsTheFramesWithoutSoundWhenTheSampleRateIsOutOfRange) {
  for (double rate : {1e300, std::nan("")}) {
    SCOPED_TRACE(rate);
    record_.header.sample_rate = rate;
    ASSERT_EQ(Trim(1, 2), imNoErr);
    const std::string bytes = TakeTarget();
    ASSERT_EQ(bytes.size(), 602 + 2 * kFrameStride);
    EXPECT_EQ(HeaderOf(bytes).frame_count, 2u);
    EXPECT_EQ(HeaderOf(bytes).sample_frames, 0u);
  }
}

TEST_F(TrimmingTest, RefusesARangeOutsideTheClipCopiesAWholeOneAsItStandsAndNeverOverwrites) {
  EXPECT_EQ(Trim(5, 1), imDiskErr);
  EXPECT_EQ(Trim(-1, 1), imDiskErr);
  EXPECT_FALSE(std::filesystem::exists(target_));
  ASSERT_EQ(Trim(0, 0, false), imNoErr);
  EXPECT_EQ(ReadWholeFile(target_), SampleFileContent(clip_));
  EXPECT_EQ(Trim(0, 5, false), imDiskErr);
  EXPECT_EQ(Trim(1, 1), imDiskErr);
  EXPECT_EQ(ReadWholeFile(target_), SampleFileContent(clip_));
}

}  // namespace
