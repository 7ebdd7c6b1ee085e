#include "sample_file/sample_file_helpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "sample_file/sample_file_header.h"
#include "support/temp_folder.h"

namespace {

TEST(ChannelCountOfTypeTest, MapsMonoStereoAndFivePointOneAndNothingElse) {
  EXPECT_EQ(ChannelCountOfType(0), -1);
  EXPECT_EQ(ChannelCountOfType(1), 1);
  EXPECT_EQ(ChannelCountOfType(2), 2);
  EXPECT_EQ(ChannelCountOfType(3), 6);
  EXPECT_EQ(ChannelCountOfType(4), -1) << "the header's code for four or more channels";
}

struct AudioRead {
  int64_t start;
  int64_t count;
  int64_t saved;
};

// Clamps one request against `*saved` and returns what came out.
AudioRead Clamp(int64_t position, uint32_t size, int64_t total, int64_t* saved) {
  AudioRead read{-7, -7, 0};
  ClampAudioRequest(position, size, total, saved, &read.start, &read.count);
  read.saved = *saved;
  return read;
}

TEST(ClampAudioRequestTest, ANegativePositionGoesOnFromTheSavedPositionUpToTheTotal) {
  int64_t saved = 1000;
  AudioRead read = Clamp(-1, 500, 1200, &saved);
  EXPECT_EQ(read.start, 1000);
  EXPECT_EQ(read.count, 200);
  EXPECT_EQ(read.saved, 1200);
}

TEST(ClampAudioRequestTest, AnExplicitPositionIgnoresTheSavedOne) {
  int64_t saved = 1000;
  AudioRead read = Clamp(100, 500, 1200, &saved);
  EXPECT_EQ(read.start, 100);
  EXPECT_EQ(read.count, 500);
  EXPECT_EQ(read.saved, 600);
}

TEST(ClampAudioRequestTest, ARequestEndingAtTheTotalIsReadWhole) {
  int64_t saved = 0;
  AudioRead read = Clamp(700, 500, 1200, &saved);
  EXPECT_EQ(read.count, 500);
  EXPECT_EQ(read.saved, 1200);
}

TEST(ClampAudioRequestTest, ARequestAtTheEndReadsNothing) {
  int64_t saved = 1200;
  AudioRead read = Clamp(-1, 500, 1200, &saved);
  EXPECT_EQ(read.start, 1200);
  EXPECT_EQ(read.count, 0);
  EXPECT_EQ(read.saved, 1200);
}

TEST(ClampAudioRequestTest, ARequestBeyondTheEndGivesANegativeCount) {
  int64_t saved = 0;
  AudioRead read = Clamp(1300, 500, 1200, &saved);
  EXPECT_EQ(read.start, 1300);
  EXPECT_EQ(read.count, -100);
  EXPECT_EQ(read.saved, 1200);
}

TEST(ClampAudioRequestTest, ConsecutiveNegativePositionsReadConsecutiveRanges) {
  int64_t saved = 0;
  AudioRead first = Clamp(-1, 480, 1200, &saved);
  AudioRead second = Clamp(-1, 480, 1200, &saved);
  AudioRead third = Clamp(-5, 480, 1200, &saved);
  AudioRead fourth = Clamp(-1, 480, 1200, &saved);
  EXPECT_EQ(first.start, 0);
  EXPECT_EQ(first.count, 480);
  EXPECT_EQ(second.start, 480);
  EXPECT_EQ(second.count, 480);
  EXPECT_EQ(third.start, 960);
  EXPECT_EQ(third.count, 240);
  EXPECT_EQ(fourth.start, 1200);
  EXPECT_EQ(fourth.count, 0);
  EXPECT_EQ(saved, 1200);
}

constexpr uint32_t kFrameBytes = 12;
constexpr uint32_t kFrames = 3;

// The bytes of frame `index` of the test's sample file.
std::string FrameContent(uint32_t index) {
  std::string frame(kFrameBytes, '\0');
  for (uint32_t i = 0; i < kFrameBytes; ++i) frame[i] = static_cast<char>('a' + index * 8 + i);
  return frame;
}

class SampleFileTest : public ::testing::Test {
 protected:
  // A sample file: the header, then kFrames frames each followed by "++++", then some audio.
  std::string WriteSampleFile() {
    SampleFileHeader header;
    std::memset(&header, 0, sizeof(header));
    header.version = kSampleFileVersion;
    header.has_video = 1;
    header.frame_count = kFrames;
    std::string content(reinterpret_cast<const char*>(&header), sizeof(header));
    for (uint32_t i = 0; i < kFrames; ++i) content += FrameContent(i) + kFrameSeparator;
    content += std::string(8, 'z');
    content_ = content;
    return folder_.WriteFile("sample.qvo", content);
  }

  platform::FileHandle OpenSampleFile() {
    return platform::OpenFileForReading(HostPath(WriteSampleFile()).c_str());
  }

  std::string ReadFrame(platform::FileHandle file, uint32_t index, uint8_t* result) {
    std::string frame(kFrameBytes, '#');
    *result = ReadSampleFrame(file, kFrameBytes, index, &frame[0]);
    return frame;
  }

  TempFolder folder_;
  std::string content_;
};

TEST_F(SampleFileTest, ReadsFramesAfterTheHeaderAndTheSeparators) {
  platform::FileHandle file = OpenSampleFile();
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint8_t result = 99;
  EXPECT_EQ(ReadFrame(file, 2, &result), FrameContent(2));
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFrame(file, 0, &result), FrameContent(0));
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFrame(file, 1, &result), FrameContent(1));
  EXPECT_EQ(result, 0);
  platform::CloseFileHandle(file);
}

TEST_F(SampleFileTest, AShortReadAtTheEndCountsAsSuccess) {
  platform::FileHandle file = OpenSampleFile();
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint8_t result = 99;
  std::string frame = ReadFrame(file, kFrames, &result);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(frame, std::string(8, 'z') + "####");
  platform::CloseFileHandle(file);
}

TEST_F(SampleFileTest, AFailedReadGivesTwo) {
  uint8_t result = 99;
  ReadFrame(platform::InvalidFileHandle(), 0, &result);
  EXPECT_EQ(result, 2);

  platform::FileHandle write_only =
      platform::CreateNewFileForWriting(HostPath(folder_.Join("write_only.qvo")).c_str());
  ASSERT_NE(write_only, platform::InvalidFileHandle());
  ReadFrame(write_only, 0, &result);
  EXPECT_EQ(result, 2);
  platform::CloseFileHandle(write_only);
}

TEST_F(SampleFileTest, TheOffsetWrapsAt4GiB) {
  const uint32_t index = (1u << 28) + 1;
  const uint64_t true_offset = kSampleFileHeaderSize + uint64_t{index} * (kFrameBytes + 4);
  const uint64_t wrapped = true_offset % (uint64_t{1} << 32);
  ASSERT_GT(true_offset, uint64_t{1} << 32);
  ASSERT_EQ(wrapped, kSampleFileHeaderSize + kFrameBytes + 4) << "where frame 1 starts";

  platform::FileHandle file = OpenSampleFile();
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint8_t result = 99;
  EXPECT_EQ(ReadFrame(file, index, &result), FrameContent(1));
  EXPECT_EQ(result, 0);
  platform::CloseFileHandle(file);
}

// SetFilePointer without a high part takes the offset as signed, so an offset from 2 GiB on is a
// negative seek that fails unchecked, and the frame is read from wherever the pointer stood.
TEST_F(SampleFileTest, AnOffsetBeyond2GiBReadsFromWhereTheLastReadEnded) {
  const uint32_t index = 1u << 27;
  const uint64_t offset = kSampleFileHeaderSize + uint64_t{index} * (kFrameBytes + 4);
  ASSERT_GE(offset, uint64_t{1} << 31);
  ASSERT_LT(offset, uint64_t{1} << 32);

  platform::FileHandle file = OpenSampleFile();
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint8_t result = 99;
  ReadFrame(file, 0, &result);
  EXPECT_EQ(ReadFrame(file, index, &result),
            content_.substr(kSampleFileHeaderSize + kFrameBytes, kFrameBytes));
  EXPECT_EQ(result, 0);
  platform::CloseFileHandle(file);
}

TEST_F(SampleFileTest, WriteFileCheckedWritesTheWholeHeader) {
  std::string path = folder_.Join("header.qvo");
  platform::FileHandle file = platform::CreateNewFileForWriting(HostPath(path).c_str());
  ASSERT_NE(file, platform::InvalidFileHandle());
  SampleFileHeader header;
  std::memset(&header, 0, sizeof(header));
  header.version = kSampleFileVersion;
  header.sample_rate = 48000.0;
  uint32_t count = sizeof(header);
  EXPECT_EQ(WriteFileChecked(file, &header, &count), 0u);
  EXPECT_EQ(count, kSampleFileHeaderSize);
  platform::CloseFileHandle(file);

  std::string written = ReadWholeFile(path);
  ASSERT_EQ(written.size(), kSampleFileHeaderSize);
  EXPECT_EQ(std::memcmp(written.data(), &header, sizeof(header)), 0);
  EXPECT_EQ(written[18], 5) << "version at byte 18";
}

TEST_F(SampleFileTest, WriteFileCheckedReturnsTheSystemsErrorWhenTheWriteFails) {
  platform::FileHandle file = OpenSampleFile();
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint32_t count = 4;
  uint32_t result = WriteFileChecked(file, "abcd", &count);
  EXPECT_EQ(result, platform::LastSystemError());
  EXPECT_NE(result, 0u);
  EXPECT_NE(result, 4u);
  EXPECT_EQ(count, 0u);
  platform::CloseFileHandle(file);
  EXPECT_EQ(ReadWholeFile(folder_.Join("sample.qvo")), content_);
}

}  // namespace
