#include "logging/plugin_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/c_runtime_files.h"
#include "platform/environment.h"
#include "support/environment.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

std::tm clock_now;

std::tm FixedClock() { return clock_now; }

constexpr uintmax_t kThreshold = 5242880;

class PluginLogTest : public ::testing::Test {
 protected:
  // 2026-11-16 04:33:19; tests move the seconds on.
  void SetUp() override {
    clock_now = std::tm{};
    clock_now.tm_year = 2026 - 1900;
    clock_now.tm_mon = 10;
    clock_now.tm_mday = 16;
    clock_now.tm_hour = 4;
    clock_now.tm_min = 33;
    clock_now.tm_sec = 19;
  }

  // A profile folder that has AppData\Local, as every Windows profile does; made USERPROFILE
  // unless the test finds it otherwise.
  fs::path MakeProfile(const std::string& name = "profile", bool as_user_profile = true) {
    fs::path profile = temp_.path() / name;
    fs::create_directories(profile / "AppData" / "Local");
    if (as_user_profile) platform::SetEnvironment("USERPROFILE", profile.string());
    return profile;
  }

  // The log folder of a new profile whose Plugin.log already holds `bytes`.
  fs::path FolderWithLogOf(const std::string& name, uintmax_t bytes) {
    const fs::path folder = PluginLogFolder(MakeProfile(name));
    fs::create_directories(folder);
    std::ofstream(folder / "Plugin.log", std::ios::binary) << std::string(bytes, 'x');
    return folder;
  }

  static void WriteOneLine(PluginLog& log) {
    log.Write(kLogInfo, kLogSource, 856, "Open File: %s", "D:\\clips\\take1");
  }

  const std::string eol_ = platform::kTextModeLineEnd;
  // What WriteOneLine adds.
  const std::string one_line_ =
      "2026-11-16 04:33:19 INFO  Open File: D:\\clips\\take1 SDK_File_Import:856" + eol_;
  const uintmax_t line_bytes_ = one_line_.size();

  TempFolder temp_;
  SavedEnvironment saved_{{"USERPROFILE", "HOMEDRIVE", "HOMEPATH"}, true};
};

// Without USERPROFILE the folder is made of HOMEDRIVE and HOMEPATH; all going well, the log says
// nothing on standard output.
TEST_F(PluginLogTest, WritesTimeStampedLinesButNoDebugLinesUnderHomeDriveAndHomePath) {
  fs::path profile = MakeProfile("profile", false);
  SetHomeDriveAndPath(profile.string());
  {
    testing::internal::CaptureStdout();
    PluginLog log(FixedClock);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(log.folder(), profile.string() + "\\AppData\\Local\\quorvel\\Adobe");
    WriteOneLine(log);
    log.Write(kLogDebug, kLogSource, 1, "never written");
  }
  EXPECT_EQ(PluginLogText(profile), one_line_);
}

TEST_F(PluginLogTest, SaysOnStandardOutputWhyItHasNoFolderAndCreatesNothing) {
  testing::internal::CaptureStdout();
  { PluginLog log(FixedClock); }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Not able to get HomeDrive");

  platform::SetEnvironment("HOMEDRIVE", temp_.path().string());
  testing::internal::CaptureStdout();
  { PluginLog log(FixedClock); }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Not able to get HomeDrive")
      << "the same words without HOMEPATH";

  fs::path bare = temp_.path() / "bare";
  fs::create_directories(bare / "AppData");
  platform::SetEnvironment("USERPROFILE", bare.string());
  testing::internal::CaptureStdout();
  {
    PluginLog log(FixedClock);
    WriteOneLine(log);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "HOME\\AppData\\Local dir not exist\n");
  EXPECT_TRUE(fs::is_empty(bare / "AppData"));
}

TEST_F(PluginLogTest, RotatesWhenALineBringsTheFileToTheThresholdAndGoesOnInAFreshFile) {
  {
    fs::path below = FolderWithLogOf("below", kThreshold - line_bytes_ - 1);
    PluginLog log(FixedClock);
    WriteOneLine(log);
    EXPECT_EQ(fs::file_size(below / "Plugin.log"), kThreshold - 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(below), fs::directory_iterator()), 1);
  }
  fs::path folder = FolderWithLogOf("at", kThreshold - line_bytes_);
  PluginLog log(FixedClock);
  WriteOneLine(log);
  fs::path rotated = folder / "Plugin.2026_11_16_04_33_19.log";
  ASSERT_TRUE(fs::exists(rotated));
  EXPECT_EQ(fs::file_size(rotated), kThreshold);
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), 0u);

  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), line_bytes_);
}

TEST_F(PluginLogTest, KeepsGrowingWhenTheRotatedNameIsTakenAndRotatesInALaterSecond) {
  fs::path folder = FolderWithLogOf("profile", kThreshold - line_bytes_);
  std::ofstream(folder / "Plugin.2026_11_16_04_33_19.log", std::ios::binary) << "old";
  PluginLog log(FixedClock);

  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), kThreshold);
  EXPECT_EQ(fs::file_size(folder / "Plugin.2026_11_16_04_33_19.log"), 3u);

  clock_now.tm_sec = 20;
  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(folder / "Plugin.2026_11_16_04_33_20.log"), kThreshold + line_bytes_);
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), 0u);
}

}  // namespace
