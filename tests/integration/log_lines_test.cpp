// The lines the plug-in writes to Plugin.log for each frame, and for each frame or sound it cannot
// deliver, exactly as support reads them.
#include <gtest/gtest.h>

#include "integration/plugin_fixture.h"

namespace {

using host_sim::HostFile;

using LogLinesTest = PluginTest;

TEST_F(LogLinesTest, TimesEachFrameAndItsRetryAndSaysWhyAFrameOrSoundCannotBeHad) {
  // Opening uses the one Create the project allows; a failed read then releases the older file.
  HostFile* once =
      DescribedClip(R"({"width": 64, "height": 32, "faults": {"create_ok_times": 1}})");
  HostFile* failing =
      DescribedClip(R"({"width": 64, "height": 32, "faults": {"video_fail_once": [0]}})");
  PPixHand frame = nullptr;
  ASSERT_EQ(failing->RequestFrame(0, {0, 0, kPlanar}, &frame), imNoErr);
  // Each frame and its retry are timed.
  EXPECT_TRUE(Logged("INFO  get buffer:\\d+ SDK_File_Import:2201"));
  EXPECT_TRUE(
      Logged("INFO  get source video:" + Literal(PathOf(*failing)) + " SDK_File_Import:2269"));
  EXPECT_TRUE(Logged("INFO  read frame consume:\\d+ SDK_File_Import:2284"));
  EXPECT_TRUE(Logged("INFO  result:1 SDK_File_Import:2285"));
  EXPECT_TRUE(Logged("INFO  second try result:0 SDK_File_Import:2293"));
  EXPECT_TRUE(Logged("INFO  allocate buffer:\\d+ SDK_File_Import:2212"));

  EXPECT_EQ(once->RequestFrame(0, {0, 0, kPlanar}, &frame), imNoContent);
  EXPECT_TRUE(Logged("ERROR create pr source failed on socket request! SDK_File_Import:2276"));
  constexpr float kUntouched = -7.0f;
  float sample = kUntouched;
  float* buffers[1] = {&sample};
  EXPECT_EQ(once->ReadAudio(0, 1, buffers), imNoContent);
  EXPECT_TRUE(Logged("ERROR create pr source failed on socket request! SDK_File_Import:1418"));

  // A file whose open failed has no context: no frame is made for it, no sound written.
  HostFile* broken = Clip(R"({"faults": {"create": true}})");
  ASSERT_EQ(broken->Open(), malUnknownError);
  const size_t frames_before = host().frames().live_count();
  EXPECT_EQ(broken->RequestFrame(0, {0, 0, kPlanar}, &frame), imNoContent);
  EXPECT_EQ(host().frames().live_count(), frames_before);
  EXPECT_TRUE(Logged("ERROR FileContext pointer is null\\. SDK_File_Import:2265"));
  EXPECT_EQ(broken->ReadAudio(0, 1, buffers), imNoContent);
  EXPECT_EQ(sample, kUntouched);
  EXPECT_TRUE(Logged("ERROR FileContext pointer is null\\. SDK_File_Import:1411"));
}

}  // namespace
