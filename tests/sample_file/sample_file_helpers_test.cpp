#include "sample_file/sample_file_helpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "delivery/sample_file_writer.h"
#include "sample_file/sample_file_header.h"
#include "support/temp_folder.h"

namespace {

// 4 is the header's code for four or more channels.
TEST(ChannelCountOfTypeTest, MapsMonoStereoAndFivePointOneAndNothingElse) {
  for (const auto& [type, channels] : {std::pair{0, -1}, {1, 1}, {2, 2}, {3, 6}, {4, -1}}) {
    EXPECT_EQ(ChannelCountOfType(type), channels) << type;
  }
}

TEST(ClampAudioRequestTest, ClampsToTheTotalAndMovesTheSavedPositionToTheEndOfTheRead) {
  const struct {
    int64_t saved;
    int64_t position;
    int64_t start;
    int64_t count;
    int64_t saved_after;
    const char* why;
  } cases[] = {
      {1000, -1, 1000, 200, 1200, "a negative position goes on from the saved one"},
      {1000, 100, 100, 500, 600, "an explicit position ignores the saved one"},
      {0, 700, 700, 500, 1200, "a read ending at the total is whole"},
      {1200, -5, 1200, 0, 1200, "a read at the end reads nothing"},
      {0, 1300, 1300, -100, 1200, "a start beyond the end gives a negative count"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    int64_t saved = c.saved, start = -7, count = -7;
    ClampAudioRequest(c.position, 500, 1200, &saved, &start, &count);
    EXPECT_EQ(start, c.start);
    EXPECT_EQ(count, c.count);
    EXPECT_EQ(saved, c.saved_after);
  }

  int64_t saved = 0, start = 0, count = 0;
  for (const int64_t expected_start : {0, 480, 960}) {
    ClampAudioRequest(-1, 480, 1200, &saved, &start, &count);
    EXPECT_EQ(start, expected_start) << "consecutive reads follow each other";
  }
  EXPECT_EQ(count, 240);
  EXPECT_EQ(saved, 1200);
}

// Frames of 12 bytes, then 8 bytes of sound.
const SampleClip kClip = {3, 1, 3, 10.0, 1, 2};
constexpr uint32_t kFrameBytes = 12;

std::string FrameContent(uint32_t index) {
  std::string frame;
  for (uint32_t i = 0; i < kFrameBytes; ++i) frame += static_cast<char>(FrameByte(index, i));
  return frame;
}

class SampleFileTest : public ::testing::Test {
 protected:
  platform::FileHandle OpenSampleFile() {
    return platform::OpenFileForReading(
        HostPath(folder_.WriteFile("sample.qvo", content_)).c_str());
  }

  std::string ReadFrame(platform::FileHandle file, uint32_t index, uint8_t* result) {
    std::string frame(kFrameBytes, '#');
    *result = ReadSampleFrame(file, kFrameBytes, index, &frame[0]);
    return frame;
  }

  TempFolder folder_;
  const std::string content_ = SampleFileContent(kClip);
};

TEST_F(SampleFileTest, ReadsFramesAfterTheHeaderAndTheSeparatorsAtA32BitOffset) {
  platform::FileHandle file = OpenSampleFile();
  ASSERT_NE(file, platform::InvalidFileHandle());
  uint8_t result = 99;
  for (uint32_t index : {2u, 0u, 1u}) {
    EXPECT_EQ(ReadFrame(file, index, &result), FrameContent(index));
    EXPECT_EQ(result, 0);
  }
  EXPECT_EQ(ReadFrame(file, kClip.frames, &result),
            content_.substr(kSampleFileHeaderSize + 3 * (kFrameBytes + 4)) + "####");
  EXPECT_EQ(result, 0) << "a short read at the end counts as success";

  // 602 + (2^28 + 1) x 16 wraps at 4 GiB to where frame 1 starts.
  EXPECT_EQ(ReadFrame(file, (1u << 28) + 1, &result), FrameContent(1));
  EXPECT_EQ(result, 0);

  // SetFilePointer without a high part takes the offset as signed, so 602 + 2^27 x 16 is a
  // negative seek that fails unchecked, and the frame is read from where the last read ended.
  ReadFrame(file, 0, &result);
  EXPECT_EQ(ReadFrame(file, 1u << 27, &result),
            content_.substr(kSampleFileHeaderSize + kFrameBytes, kFrameBytes));
  EXPECT_EQ(result, 0);
  platform::CloseFileHandle(file);
}

TEST_F(SampleFileTest, WritesWholeOrGivesTheSystemsErrorAndAFailedReadGivesTwo) {
  std::string path = folder_.Join("header.qvo");
  platform::FileHandle write_only = platform::CreateNewFileForWriting(HostPath(path).c_str());
  ASSERT_NE(write_only, platform::InvalidFileHandle());
  SampleFileHeader header;
  std::memset(&header, 0, sizeof(header));
  header.version = kSampleFileVersion;
  header.sample_rate = 48000.0;
  uint32_t count = sizeof(header);
  EXPECT_EQ(WriteFileChecked(write_only, &header, &count), 0u);
  EXPECT_EQ(count, kSampleFileHeaderSize);
  uint8_t result = 99;
  ReadFrame(write_only, 0, &result);
  EXPECT_EQ(result, 2);
  platform::CloseFileHandle(write_only);
  std::string written = ReadWholeFile(path);
  ASSERT_EQ(written.size(), kSampleFileHeaderSize);
  EXPECT_EQ(std::memcmp(written.data(), &header, sizeof(header)), 0);

  result = 99;
  ReadFrame(platform::InvalidFileHandle(), 0, &result);
  EXPECT_EQ(result, 2);

  platform::FileHandle read_only = OpenSampleFile();
  ASSERT_NE(read_only, platform::InvalidFileHandle());
  count = 4;
  const uint32_t error = WriteFileChecked(read_only, "abcd", &count);
  EXPECT_EQ(error, platform::LastSystemError());
  EXPECT_NE(error, 0u);
  EXPECT_NE(error, 4u);
  EXPECT_EQ(count, 0u);
  platform::CloseFileHandle(read_only);
  EXPECT_EQ(ReadWholeFile(folder_.Join("sample.qvo")), content_);
}

}  // namespace
