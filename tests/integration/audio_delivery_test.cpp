// Sound read through the built plug-in file, straight into the host's channel buffers.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "integration/plugin_fixture.h"

namespace {

constexpr float kUntouched = -7.0f;

// 10 frames at 10 fps and 100 Hz: a second of sound, 100 sample frames.
constexpr char kShortClip[] =
    R"({"width": 64, "height": 32, "frames": 10, "fps": 10, "audio": {"rate": 100, "channels": 2}})";

// Sample n of channel c as the stand-in writes it.
float Expected(int channel, int64_t n) {
  const double pi = std::acos(-1.0);
  return static_cast<float>(0.25 * std::sin(2.0 * pi * 220.0 * (channel + 1) * n / 100.0));
}

size_t Written(const std::vector<float>& buffer) {
  size_t count = 0;
  while (count < buffer.size() && buffer[count] != kUntouched) ++count;
  return count;
}

using AudioDeliveryTest = PluginTest;

// Each read follows the one before it: a negative position goes on from where that one ended.
TEST_F(AudioDeliveryTest, ReadsTheAskedRunCutAtTheEndIntoEveryChannel) {
  host_sim::HostFile* clip = DescribedClip(kShortClip);
  const struct {
    PrAudioSample position;
    uint32_t size;
    size_t written;
    int64_t first_sample;
  } reads[] = {{10, 20, 20, 10}, {90, 30, 10, 90}, {100, 30, 0, 100},
               {40, 5, 5, 40},   {-1, 5, 5, 45},   {-1, 5, 5, 50}};
  for (const auto& read : reads) {
    SCOPED_TRACE("from " + std::to_string(read.position) + ", " + std::to_string(read.size));
    std::vector<std::vector<float>> channels(2, std::vector<float>(64, kUntouched));
    float* buffers[2] = {channels[0].data(), channels[1].data()};
    ASSERT_EQ(clip->ReadAudio(read.position, read.size, buffers), imNoErr);
    for (int c = 0; c < 2; ++c) {
      ASSERT_EQ(Written(channels[c]), read.written) << "channel " << c;
      for (size_t i = 0; i < read.written; ++i) {
        EXPECT_NEAR(channels[c][i], Expected(c, read.first_sample + static_cast<int64_t>(i)), 1e-6)
            << "sample " << i;
      }
    }
  }
}

}  // namespace
