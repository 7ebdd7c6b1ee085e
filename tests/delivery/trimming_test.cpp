#include "delivery/trimming.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <vector>

#include "delivery/sample_file_writer.h"
#include "support/temp_folder.h"

namespace {

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

  // The clip's file as a trim of `frames` frames from `first_frame` and of `samples` sample
  // frames from `first_sample` writes it.
  std::string Part(uint32_t first_frame, uint32_t frames, uint64_t first_sample,
                   uint64_t samples) const {
    SampleClip part = clip_;
    part.first_frame = first_frame;
    part.frames = frames;
    part.first_sample = first_sample;
    part.sample_frames = samples;
    return SampleFileContent(part);
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
  EXPECT_EQ(TakeTarget(), Part(1, 2, 10, 20));
  // Two frames, then two one-second blocks of each of two channels.
  EXPECT_EQ(progress_, (std::vector<int32_t>{25, 50, 62, 75, 87, 100}));

  ASSERT_EQ(Trim(1, 0), imNoErr) << "to the end, from past the start: trimmed, not copied whole";
  EXPECT_EQ(TakeTarget(), Part(1, 4, 10, 40));
}

TEST_F(TrimmingTest, LeavingThePictureOutWritesTheSoundAloneUnderAHeaderWithoutVideo) {
  ASSERT_EQ(Trim(1, 2, true, false), imNoErr);
  clip_.has_video = false;
  EXPECT_EQ(TakeTarget(), Part(0, 0, 10, 20));
}

// The header is written again to describe the frames copied; sound begun after them may follow.
TEST_F(TrimmingTest, KeepsTheFramesCopiedWithoutSoundWhenTheHostStops) {
  clip_.has_audio = false;
  for (size_t stop_after : {1, 3}) {
    SCOPED_TRACE(stop_after);
    progress_.clear();
    continue_for_ = stop_after;
    EXPECT_EQ(Trim(1, 2), imNoErr);
    EXPECT_EQ(progress_.size(), stop_after);
    const std::string kept = Part(1, stop_after == 1 ? 1 : 2, 0, 0);
    EXPECT_EQ(TakeTarget().substr(0, kept.size()), kept);
  }
}

// A sample rate out of all proportion puts the range's sound beyond any 64-bit position: the
// frames are trimmed without sound.
TEST_F(TrimmingTest, KeepsTheFramesWithoutSoundWhenTheSampleRateIsOutOfRange) {
  for (double rate : {1e300, std::nan("")}) {
    SCOPED_TRACE(rate);
    record_.header.sample_rate = clip_.sample_rate = rate;
    ASSERT_EQ(Trim(1, 2), imNoErr);
    EXPECT_EQ(TakeTarget(), Part(1, 2, 0, 0));
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
