// The WAV files qvo-host audio writes: 32-bit float, interleaved, little-endian.
#include "qvo_host/wav_writer.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace {

using host_sim::FloatWavWriter;

TEST(WavWriterTest, WritesAnIeeeFloatHeaderWithAFactChunkThenInterleavesThePlanarBlocks) {
  TempFolder folder;
  const std::string path = folder.Join("sound.wav");
  FloatWavWriter wav(path, 2, 48000, 3);
  ASSERT_TRUE(wav.ok());
  const float left[] = {0.5f, -0.25f, 1.0f};
  const float right[] = {-1.0f, 0.125f, 0.0f};
  const float* first_block[] = {left, right};
  const float* second_block[] = {left + 2, right + 2};
  EXPECT_TRUE(wav.AppendPlanar(first_block, 2));
  EXPECT_TRUE(wav.AppendPlanar(second_block, 1));
  EXPECT_TRUE(wav.Finish());

  const std::string header(
      "RIFF\x4a\0\0\0WAVE"
      "fmt \x12\0\0\0"
      "\x03\0\x02\0\x80\xbb\0\0\0\xdc\x05\0\x08\0\x20\0\0\0"
      "fact\x04\0\0\0\x03\0\0\0"
      "data\x18\0\0\0",
      58);
  const float interleaved[] = {0.5f, -1.0f, -0.25f, 0.125f, 1.0f, 0.0f};
  EXPECT_EQ(ReadWholeFile(path),
            header + std::string(reinterpret_cast<const char*>(interleaved), sizeof(interleaved)));
}

TEST(WavWriterTest, FailsForMoreFramesThanRiffSizesHoldOrFewerThanAnnounced) {
  EXPECT_EQ(host_sim::MostWavSampleFrames(2), (0xFFFFFFFFu - 50) / 8);
  EXPECT_EQ(host_sim::MostWavSampleFrames(0), 0u);
  TempFolder folder;
  FloatWavWriter too_long(folder.Join("long.wav"), 2, 48000, 0xFFFFFFFFu);
  EXPECT_FALSE(too_long.ok());

  FloatWavWriter wav(folder.Join("short.wav"), 1, 8000, 2);
  const float samples[] = {0.0f};
  const float* block[] = {samples};
  wav.AppendPlanar(block, 1);
  EXPECT_FALSE(wav.Finish());
}

}  // namespace
