// The lines the plug-in writes to Plugin.log for each step of a file's life, exactly as support
// reads them.
#include <gtest/gtest.h>

#include <regex>

#include "integration/plugin_fixture.h"

namespace {

using host_sim::HostFile;

class LogLinesTest : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    start_ = LogText().size();
  }

  // Whether a whole line written since the test began matches `pattern` (ECMAScript), which
  // stands for what follows the time stamp.
  bool Logged(const std::string& pattern) const {
    const std::string written = LogText().substr(start_);
    const std::regex line("(^|\\n)\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d " + pattern +
                          "\\r?\\n");
    return std::regex_search(written, line);
  }

  static std::string Literal(const std::string& text) {
    return std::regex_replace(text, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
  }

 private:
  size_t start_ = 0;
};

TEST_F(LogLinesTest, TellsTheLifeOfAFile) {
  HostFile* clip = DescribedClip(R"({"width": 64, "height": 32})");
  const std::string path = Literal(PathOf(*clip));
  clip->Quiet();
  clip->Close();
  EXPECT_TRUE(Logged("INFO  Open File: " + path + " SDK_File_Import:856"));
  EXPECT_TRUE(Logged("INFO  Close premiere source file\\. SDK_File_Import:905"));
  EXPECT_TRUE(Logged("INFO  clean up resource:" + path + " SDK_File_Import:1605"));
  EXPECT_TRUE(Logged("INFO  remove context SDK_File_Import:1640"));

  HostFile* broken = Clip(R"({"faults": {"create": true}})");
  broken->Open();
  EXPECT_TRUE(Logged("ERROR  PRSource failed\\. SDK_File_Import:862"));
  Clip("{}")->GetInfo();
  EXPECT_TRUE(Logged("ERROR Error occured while get file info SDK_File_Import:1032"));
}

TEST_F(LogLinesTest, TimesEachFrameAndItsRetry) {
  HostFile* clip =
      DescribedClip(R"({"width": 64, "height": 32, "faults": {"video_fail_once": [0]}})");
  PPixHand frame = nullptr;
  ASSERT_EQ(clip->RequestFrame(0, {0, 0, kPlanar}, &frame), imNoErr);
  EXPECT_TRUE(Logged("INFO  get buffer:\\d+ SDK_File_Import:2201"));
  EXPECT_TRUE(Logged("INFO  get source video:" + Literal(PathOf(*clip)) + " SDK_File_Import:2269"));
  EXPECT_TRUE(Logged("INFO  read frame consume:\\d+ SDK_File_Import:2284"));
  EXPECT_TRUE(Logged("INFO  result:1 SDK_File_Import:2285"));
  EXPECT_TRUE(Logged("INFO  second try result:0 SDK_File_Import:2293"));
  EXPECT_TRUE(Logged("INFO  allocate buffer:\\d+ SDK_File_Import:2212"));
}

TEST_F(LogLinesTest, SaysWhyAFrameOrSoundCannotBeHad) {
  // Opening uses the one Create the project allows; a failed read then releases the older file.
  HostFile* once =
      DescribedClip(R"({"width": 64, "height": 32, "faults": {"create_ok_times": 1}})");
  HostFile* failing =
      DescribedClip(R"({"width": 64, "height": 32, "faults": {"video_fail_once": [0]}})");
  PPixHand frame = nullptr;
  ASSERT_EQ(failing->RequestFrame(0, {0, 0, kPlanar}, &frame), imNoErr);

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
