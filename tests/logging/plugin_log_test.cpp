#include "logging/plugin_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>
#include <vector>

#include "platform/c_runtime_files.h"
#include "platform/environment.h"
#include "support/environment.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

std::tm clock_now;

std::tm FixedClock() { return clock_now; }

void SetClock(int hour, int minute, int second) {
  clock_now = std::tm{};
  clock_now.tm_year = 2026 - 1900;
  clock_now.tm_mon = 10;
  clock_now.tm_mday = 16;
  clock_now.tm_hour = hour;
  clock_now.tm_min = minute;
  clock_now.tm_sec = second;
}

constexpr int32_t kThreshold = 5242880;

class PluginLogTest : public ::testing::Test {
 protected:
  void SetUp() override { SetClock(4, 33, 19); }

  // A profile folder that has AppData\Local, as every Windows profile does.
  fs::path MakeProfile() {
    fs::path profile = temp_.path() / "profile";
    fs::create_directories(profile / "AppData" / "Local");
    return profile;
  }

  static void WriteOneLine(PluginLog& log) {
    log.Write(kLogInfo, kLogSource, 856, "Open File: %s", "D:\\clips\\take1");
  }

  // The bytes one WriteOneLine adds, measured in a log of its own.
  static int32_t OneLineBytes() {
    TempFolder elsewhere;
    fs::create_directories(elsewhere.path() / "AppData" / "Local");
    platform::SetEnvironment("USERPROFILE", elsewhere.path().string());
    int32_t bytes = 0;
    {
      PluginLog log(FixedClock);
      WriteOneLine(log);
      bytes = static_cast<int32_t>(fs::file_size(PluginLogFolder(elsewhere.path()) / "Plugin.log"));
    }
    platform::UnsetEnvironment("USERPROFILE");
    return bytes;
  }

  static void Prefill(const fs::path& file, int32_t bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << std::string(static_cast<size_t>(bytes), 'x');
  }

  TempFolder temp_;
  SavedEnvironment saved_{{"USERPROFILE", "HOMEDRIVE", "HOMEPATH"}, true};
};

TEST_F(PluginLogTest, WritesTheDocumentedLinesByteForByte) {
  fs::path profile = MakeProfile();
  platform::SetEnvironment("USERPROFILE", profile.string());
  {
    PluginLog log(FixedClock);
    WriteOneLine(log);
    SetClock(4, 33, 20);
    log.Write(kLogError, kLogSource, 862, " PRSource failed.");
    log.Write(kLogInfo, kLogSource, 7, "two\nparts");
  }
  const std::string eol = platform::kTextModeLineEnd;
  EXPECT_EQ(PluginLogText(profile),
            "2026-11-16 04:33:19 INFO  Open File: D:\\clips\\take1 SDK_File_Import:856" + eol +
                "2026-11-16 04:33:20 ERROR  PRSource failed. SDK_File_Import:862" + eol +
                "2026-11-16 04:33:20 INFO  two" + eol + "parts SDK_File_Import:7" + eol);
}

TEST_F(PluginLogTest, DropsDebugLines) {
  fs::path profile = MakeProfile();
  platform::SetEnvironment("USERPROFILE", profile.string());
  {
    PluginLog log(FixedClock);
    log.Write(kLogDebug, kLogSource, 1, "never written");
  }
  EXPECT_EQ(PluginLogText(profile), "");
}

TEST_F(PluginLogTest, FindsTheFolderFromHomeDriveAndHomePathWithoutUserProfile) {
  fs::path profile = MakeProfile();
  std::string text = profile.string();
  SetHomeDriveAndPath(text);
  PluginLog log(FixedClock);
  EXPECT_EQ(log.folder(), text + "\\AppData\\Local\\quorvel\\Adobe");
  EXPECT_TRUE(fs::exists(PluginLogFolder(profile) / "Plugin.log"));
}

TEST_F(PluginLogTest, PrefersUserProfileAndNeverReadsTheHomeVariables) {
  fs::path profile = MakeProfile();
  platform::SetEnvironment("USERPROFILE", profile.string());
  platform::SetEnvironment("HOMEDRIVE", temp_.Join("no-such-drive"));
  testing::internal::CaptureStdout();
  PluginLog log(FixedClock);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(log.folder(), profile.string() + "\\AppData\\Local\\quorvel\\Adobe");
}

TEST_F(PluginLogTest, CreatesMissingQuorvelAndAdobeFolders) {
  fs::path profile = MakeProfile();
  fs::create_directories(profile / "AppData" / "Local" / "quorvel");
  platform::SetEnvironment("USERPROFILE", profile.string());
  {
    PluginLog log(FixedClock);
    WriteOneLine(log);
  }
  EXPECT_TRUE(fs::is_directory(PluginLogFolder(profile)));
  EXPECT_GT(fs::file_size(PluginLogFolder(profile) / "Plugin.log"), 0u);
}

TEST_F(PluginLogTest, WithoutAppDataLocalCreatesNothingAndWritesNothing) {
  fs::path profile = temp_.path() / "bare";
  fs::create_directories(profile / "AppData");
  platform::SetEnvironment("USERPROFILE", profile.string());
  testing::internal::CaptureStdout();
  {
    PluginLog log(FixedClock);
    WriteOneLine(log);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "HOME\\AppData\\Local dir not exist\n");
  EXPECT_TRUE(fs::is_empty(profile / "AppData"));
}

TEST_F(PluginLogTest, SaysSoOnStandardOutputWhenNoHomeIsKnown) {
  testing::internal::CaptureStdout();
  { PluginLog log(FixedClock); }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Not able to get HomeDrive");

  platform::SetEnvironment("HOMEDRIVE", temp_.path().string());
  testing::internal::CaptureStdout();
  { PluginLog log(FixedClock); }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Not able to get HomeDrive");
}

TEST_F(PluginLogTest, KeepsAFileOneByteBelowTheThreshold) {
  int32_t line = OneLineBytes();
  fs::path profile = MakeProfile();
  fs::path file = PluginLogFolder(profile) / "Plugin.log";
  Prefill(file, kThreshold - line - 1);
  platform::SetEnvironment("USERPROFILE", profile.string());
  PluginLog log(FixedClock);
  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(file), static_cast<uintmax_t>(kThreshold - 1));
  EXPECT_EQ(
      std::distance(fs::directory_iterator(PluginLogFolder(profile)), fs::directory_iterator()), 1);
}

TEST_F(PluginLogTest, RotatesAtExactlyTheThresholdAndGoesOnInAFreshFile) {
  int32_t line = OneLineBytes();
  fs::path profile = MakeProfile();
  fs::path folder = PluginLogFolder(profile);
  Prefill(folder / "Plugin.log", kThreshold - line);
  platform::SetEnvironment("USERPROFILE", profile.string());
  PluginLog log(FixedClock);
  WriteOneLine(log);

  fs::path rotated = folder / "Plugin.2026_11_16_04_33_19.log";
  ASSERT_TRUE(fs::exists(rotated));
  EXPECT_EQ(fs::file_size(rotated), static_cast<uintmax_t>(kThreshold));
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), 0u);

  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), static_cast<uintmax_t>(line));
}

TEST_F(PluginLogTest, KeepsGrowingWhenTheRotatedNameIsTakenAndRotatesInALaterSecond) {
  int32_t line = OneLineBytes();
  fs::path profile = MakeProfile();
  fs::path folder = PluginLogFolder(profile);
  Prefill(folder / "Plugin.2026_11_16_04_33_19.log", 3);
  Prefill(folder / "Plugin.log", kThreshold - line);
  platform::SetEnvironment("USERPROFILE", profile.string());
  PluginLog log(FixedClock);

  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), static_cast<uintmax_t>(kThreshold));
  EXPECT_EQ(fs::file_size(folder / "Plugin.2026_11_16_04_33_19.log"), 3u);

  SetClock(4, 33, 20);
  WriteOneLine(log);
  EXPECT_EQ(fs::file_size(folder / "Plugin.2026_11_16_04_33_20.log"),
            static_cast<uintmax_t>(kThreshold + line));
  EXPECT_EQ(fs::file_size(folder / "Plugin.log"), 0u);
}

TEST_F(PluginLogTest, LinesFromManyThreadsNeverInterleave) {
  fs::path profile = MakeProfile();
  platform::SetEnvironment("USERPROFILE", profile.string());
  constexpr int kThreads = 4;
  constexpr int kLinesEach = 200;
  {
    PluginLog log(FixedClock);
    std::vector<std::thread> writers;
    for (int t = 0; t < kThreads; ++t) {
      writers.emplace_back([&log, t] {
        for (int i = 0; i < kLinesEach; ++i) {
          log.Write(kLogInfo, kLogSource, t, "thread %d line %d", t, i);
        }
      });
    }
    for (auto& writer : writers) writer.join();
  }
  std::ifstream file(PluginLogFolder(profile) / "Plugin.log");
  const std::regex whole_line(
      R"(2026-11-16 04:33:19 INFO  thread (\d) line \d+ SDK_File_Import:(\d)\r?)");
  int lines = 0;
  for (std::string text; std::getline(file, text); ++lines) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(text, match, whole_line)) << text;
    EXPECT_EQ(match[1], match[2]);
  }
  EXPECT_EQ(lines, kThreads * kLinesEach);
}

}  // namespace
