#include "sample_file/sample_file_helpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

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

// The plug-in's sound tests make every other kind of read; none starts past the end.
TEST(ClampAudioRequestTest, AStartBeyondTheEndGivesANegativeCountAndSavesTheEnd) {
  int64_t saved = 0, start = 0, count = 0;
  ClampAudioRequest(1300, 500, 1200, &saved, &start, &count);
  EXPECT_EQ(start, 1300);
  EXPECT_EQ(count, -100);
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

TEST_F(SampleFileTest, AFailedWriteGivesTheSystemsErrorAndAFailedReadGivesTwo) {
  platform::FileHandle write_only =
      platform::CreateNewFileForWriting(HostPath(folder_.Join("new.qvo")).c_str());
  ASSERT_NE(write_only, platform::InvalidFileHandle());
  uint8_t result = 99;
  ReadFrame(write_only, 0, &result);
  EXPECT_EQ(result, 2);
  platform::CloseFileHandle(write_only);

  platform::FileHandle read_only = OpenSampleFile();
  ASSERT_NE(read_only, platform::InvalidFileHandle());
  uint32_t count = 4;
  const uint32_t error = WriteFileChecked(read_only, "abcd", &count);
  EXPECT_EQ(error, platform::LastSystemError());
  EXPECT_NE(error, 0u);
  EXPECT_NE(error, 4u);
  EXPECT_EQ(count, 0u);
  platform::CloseFileHandle(read_only);
  EXPECT_EQ(ReadWholeFile(folder_.Join("sample.qvo")), content_);
}

}  // namespace
