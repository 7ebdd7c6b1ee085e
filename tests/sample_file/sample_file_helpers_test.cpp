#include "sample_file/sample_file_helpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "sample_file/sample_file_header.h"
#include "support/temp_folder.h"

namespace {

// A byte of packed row `row` at column `column`; rows differ at every column.
uint8_t PackedByte(uint32_t row, uint32_t column) {
  return static_cast<uint8_t>(row + 1 + column * 3);
}

std::vector<uint8_t> PackedPicture(uint32_t row_bytes, uint32_t height, size_t buffer_size) {
  std::vector<uint8_t> buffer(buffer_size, 0xEE);
  for (uint32_t row = 0; row < height; ++row) {
    for (uint32_t column = 0; column < row_bytes; ++column) {
      buffer[row * row_bytes + column] = PackedByte(row, column);
    }
  }
  return buffer;
}

TEST(SpreadRowsToPitchTest, RowsOfExactlyThePitchCopyNothing) {
  std::vector<uint8_t> source = PackedPicture(7680, 3, 7680 * 3);
  std::vector<uint8_t> destination(source.size(), 0);
  SpreadRowsToPitch(source.data(), destination.data(), 7680, 4, 1920, 3);
  EXPECT_EQ(destination, std::vector<uint8_t>(source.size(), 0))
      << "nothing is copied even between different buffers";
}

TEST(SpreadRowsToPitchTest, RowsLongerThanThePitchCopyNothing) {
  std::vector<uint8_t> buffer = PackedPicture(7680, 2, 7680 * 2);
  const std::vector<uint8_t> before = buffer;
  SpreadRowsToPitch(buffer.data(), buffer.data(), 7000, 4, 1920, 2);
  EXPECT_EQ(buffer, before);
}

TEST(SpreadRowsToPitchTest, SpreadsPackedRowsInPlaceLastRowFirst) {
  const uint32_t pitch = 7696, row_bytes = 7680, height = 4;
  std::vector<uint8_t> buffer = PackedPicture(row_bytes, height, pitch * height);
  const std::vector<uint8_t> before = buffer;
  SpreadRowsToPitch(buffer.data(), buffer.data(), pitch, 4, 1920, height);
  for (uint32_t row = 0; row < height; ++row) {
    for (uint32_t column = 0; column < row_bytes; ++column) {
      ASSERT_EQ(buffer[row * pitch + column], PackedByte(row, column))
          << "row " << row << ", column " << column;
    }
  }
  // The rest of each row keeps whatever was there: for the first row, the start of the packed
  // second row; for the last, the buffer's original fill.
  for (uint32_t row = 0; row < height; ++row) {
    for (uint32_t i = row_bytes; i < pitch; ++i) {
      ASSERT_EQ(buffer[row * pitch + i], before[row * pitch + i]) << "row " << row;
    }
  }
  EXPECT_EQ(buffer[row_bytes], PackedByte(1, 0));
  EXPECT_EQ(buffer[(height - 1) * pitch + row_bytes], 0xEE);
}

TEST(SpreadRowsToPitchTest, SpreadsIntoAnotherBufferLeavingThePaddingUntouched) {
  const uint32_t pitch = 12, row_bytes = 8, height = 3;
  std::vector<uint8_t> source = PackedPicture(row_bytes, height, row_bytes * height);
  std::vector<uint8_t> destination(pitch * height, 0x55);
  SpreadRowsToPitch(source.data(), destination.data(), pitch, 4, 2, height);
  for (uint32_t row = 0; row < height; ++row) {
    for (uint32_t i = 0; i < pitch; ++i) {
      uint8_t expected = i < row_bytes ? PackedByte(row, i) : 0x55;
      ASSERT_EQ(destination[row * pitch + i], expected) << "row " << row << ", byte " << i;
    }
  }
}

TEST(SpreadRowsToPitchTest, AHeightOfZeroCopiesNothing) {
  std::vector<uint8_t> source = PackedPicture(8, 2, 16);
  std::vector<uint8_t> destination(24, 0x55);
  SpreadRowsToPitch(source.data(), destination.data(), 12, 4, 2, 0);
  EXPECT_EQ(destination, std::vector<uint8_t>(24, 0x55));
}

TEST(BytesPerPixelTest, OnlyTheFloatVuyaFormatTakesSixteenBytes) {
  EXPECT_EQ(BytesPerPixelForFormat(0x61795556), 16u);
  EXPECT_EQ(BytesPerPixelForFormat(0x61726762), 4u);
  EXPECT_EQ(BytesPerPixelForFormat(0x46317659), 4u);
  EXPECT_EQ(BytesPerPixelForFormat(0), 4u);
}

TEST(BytesPerPixelTest, EveryCodecTakesFourBytes) {
  EXPECT_EQ(BytesPerPixelForCodec(0x524C455F), 4u);
  EXPECT_EQ(BytesPerPixelForCodec(0x61795556), 4u);
}

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
