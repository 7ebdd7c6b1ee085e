// Sound read through the built plug-in file, straight into the host's channel buffers.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "integration/plugin_fixture.h"

namespace {

using host_sim::HostFile;

constexpr float kUntouched = -7.0f;

// 10 frames at 10 fps and 100 Hz: a second of sound, 100 sample frames.
constexpr char kShortClip[] =
    R"({"width": 64, "height": 32, "frames": 10, "fps": 10, "audio": {"rate": 100, "channels": 2}})";

class AudioDeliveryTest : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    clip_ = DescribedClip(kShortClip);
  }

  // Reads into two fresh buffers of `capacity` samples.
  int32_t Read(PrAudioSample position, uint32_t size, size_t capacity = 64) {
    left_.assign(capacity, kUntouched);
    right_.assign(capacity, kUntouched);
    float* buffers[2] = {left_.data(), right_.data()};
    return clip_->ReadAudio(position, size, buffers);
  }

  // Sample n of channel c as the stand-in writes it.
  static float Expected(int channel, int64_t n) {
    const double pi = std::acos(-1.0);
    return static_cast<float>(0.25 * std::sin(2.0 * pi * 220.0 * (channel + 1) * n / 100.0));
  }

  size_t Written(const std::vector<float>& buffer) const {
    size_t count = 0;
    while (count < buffer.size() && buffer[count] != kUntouched) ++count;
    return count;
  }

  HostFile* clip_ = nullptr;
  std::vector<float> left_;
  std::vector<float> right_;
};

TEST_F(AudioDeliveryTest, ReadsTheAskedRunIntoEveryChannel) {
  ASSERT_EQ(Read(10, 20), imNoErr);
  EXPECT_EQ(Written(left_), 20u);
  EXPECT_EQ(Written(right_), 20u);
  EXPECT_NEAR(left_[3], Expected(0, 13), 1e-6);
  EXPECT_NEAR(right_[3], Expected(1, 13), 1e-6);
}

TEST_F(AudioDeliveryTest, CutsARunThatPassesTheEnd) {
  ASSERT_EQ(Read(90, 30), imNoErr);
  EXPECT_EQ(Written(left_), 10u);
  EXPECT_NEAR(left_[9], Expected(0, 99), 1e-6);
}

TEST_F(AudioDeliveryTest, WritesNothingForARunThatStartsAtTheEnd) {
  ASSERT_EQ(Read(100, 30), imNoErr);
  EXPECT_EQ(Written(left_), 0u);
}

TEST_F(AudioDeliveryTest, GoesOnFromTheLastReadForNegativePositions) {
  ASSERT_EQ(Read(40, 5), imNoErr);
  ASSERT_EQ(Read(-1, 5), imNoErr);
  EXPECT_NEAR(left_[0], Expected(0, 45), 1e-6);
  ASSERT_EQ(Read(-1, 5), imNoErr);
  EXPECT_NEAR(left_[0], Expected(0, 50), 1e-6);
}

TEST_F(AudioDeliveryTest, AnswersNoContentForAFileWithoutAContext) {
  HostFile* broken = Clip(R"({"faults": {"create": true}})");
  ASSERT_EQ(broken->Open(), malUnknownError);
  float sample = kUntouched;
  float* buffers[1] = {&sample};
  EXPECT_EQ(broken->ReadAudio(0, 1, buffers), imNoContent);
  EXPECT_EQ(sample, kUntouched);
}

}  // namespace
