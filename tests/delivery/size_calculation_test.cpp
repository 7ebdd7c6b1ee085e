#include "delivery/size_calculation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "delivery/sample_file_writer.h"
#include "platform/file_handles.h"
#include "support/temp_folder.h"

namespace {

class SizeCalculationTest : public ::testing::Test {
 protected:
  // Selector imCalcSize8 for the clip, with `file` passed beside the request, which must answer
  // `result`.
  int64_t Size(int32_t duration, int32_t scale, int32_t sample_size, imFileRef file = nullptr,
               int32_t result = imNoErr) {
    char* block = reinterpret_cast<char*>(&record_);
    imCalcSizeRec request{};
    request.privatedata = &block;
    request.duration = duration;
    request.scale = scale;
    request.sampleSize = sample_size;
    imFileAccessRec8 access{};
    access.fileref = file;
    EXPECT_EQ(CalculateSize(&request, &access), result);
    return request.sizeInBytes;
  }

  PrivateFileRecord record_ = RecordFor(SampleClip{});
};

TEST_F(SizeCalculationTest, CountsHeaderFramesWithSeparatorsAndAudioOrSamplesWithoutVideo) {
  // Frames: (4 x 2 x 4 + 4) x 10 / 2; audio: 10 Hz x 10 / 5 samples x 2 channels x 4 bytes.
  EXPECT_EQ(Size(10, 2, 5), 602 + 36 * 10 / 2 + 20 * 2 * 4);
  record_.header.channel_type = 4;
  EXPECT_EQ(Size(10, 2, 5), 602 + 180 - 20 * 4) << "four or more channels count as -1";
  record_.header.channel_type = 2;
  record_.header.has_video = 0;
  EXPECT_EQ(Size(7, 2, 5), 602 + 7 * 2 * 4) << "without video, the duration counts sample frames";
}

TEST_F(SizeCalculationTest, HoldsASizeBeyond64BitsAtTheLargestAndCountsNoSamplesForNoRate) {
  record_.header.width = std::numeric_limits<int32_t>::max();
  record_.header.height = std::numeric_limits<int32_t>::max();
  EXPECT_EQ(Size(10, 1, 5), std::numeric_limits<int64_t>::max());
  record_.header.width = 4;
  record_.header.height = 2;
  record_.header.sample_rate = 1e300;
  EXPECT_EQ(Size(10, 2, 5), std::numeric_limits<int64_t>::max());
  record_.header.sample_rate = std::nan("");
  EXPECT_EQ(Size(10, 2, 5), 602 + 36 * 10 / 2);
}

TEST_F(SizeCalculationTest, WithoutADurationGivesTheOpenFilesSizeOr4) {
  TempFolder folder;
  std::string path = folder.WriteFile("clip.qvo", std::string(1234, 'x'));
  platform::FileHandle file = platform::OpenFileForReading(HostPath(path).c_str());
  EXPECT_EQ(Size(0, 2, 5, file), 1234);
  platform::CloseFileHandle(file);
  Size(0, 2, 5, platform::InvalidFileHandle(), imMemErr);
}

}  // namespace
