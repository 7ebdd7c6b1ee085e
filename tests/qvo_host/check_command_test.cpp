// qvo-host check against the stand-in: clean clips pass every check, and each of the stand-in's
// faults of what it writes fails exactly the checks it breaks. Each run ends with a shut-down of
// the plug-in, so the faulty clips share one run.
#include "qvo_host/check_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "host_sim/plugin_module.h"
#include "support/temp_folder.h"

namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAreArray;

constexpr char kClipStart[] = R"({"width": 96, "height": 48, "frames": 40, "fps": 29.97)";

std::string Clip(const std::string& rest) { return std::string(kClipStart) + rest + "}"; }

// The checks of `file` that failed, without the file's name.
std::set<std::string> FailedChecksOf(const host_sim::CheckReport& report, const std::string& file) {
  std::set<std::string> failed;
  for (const host_sim::CheckLine& line : report.lines()) {
    if (!line.passed && line.what.rfind(file, 0) == 0) failed.insert(line.what.substr(file.size()));
  }
  return failed;
}

std::set<std::string> FailedChecksOfNoFile(const host_sim::CheckReport& report,
                                           const std::vector<std::string>& files) {
  std::set<std::string> failed;
  for (const host_sim::CheckLine& line : report.lines()) {
    bool of_a_file = false;
    for (const std::string& file : files) of_a_file = of_a_file || line.what.rfind(file, 0) == 0;
    if (!line.passed && !of_a_file) failed.insert(line.what);
  }
  return failed;
}

TEST(CheckCommandTest, CleanClipsPassEveryCheckAndLeaveAReport) {
  TempFolder folder;
  const std::vector<std::string> files = {
      folder.WriteFile("mono.qvo", Clip("")),
      folder.WriteFile("stereo_silent.qvo", Clip(R"(, "stereo": true, "audio": null)")),
  };
  const std::string report_folder = folder.Join("report");

  const host_sim::CheckReport report =
      host_sim::RunCheck({host_sim::DefaultPluginPath(), files, 2, report_folder});

  for (const host_sim::CheckLine& line : report.lines())
    EXPECT_TRUE(line.passed) << host_sim::FormatCheckLine(line);
  EXPECT_TRUE(report.AllPassed());
  EXPECT_GT(report.lines().size(), 40u);
  for (const char* name :
       {"report.json", "report.md", "contact_sheet.png", "stitching_time.png", "Plugin.log"}) {
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(report_folder) / name)) << name;
  }
  EXPECT_THAT(ReadWholeFile(std::filesystem::path(report_folder) / "report.json"),
              HasSubstr("\"passed\": true"));
  EXPECT_THAT(ReadWholeFile(std::filesystem::path(report_folder) / "report.md"),
              HasSubstr("**Passed**"));
}

TEST(CheckCommandTest, EachFaultFailsExactlyTheChecksItBreaks) {
  TempFolder folder;
  const std::map<std::string, std::set<std::string>> expected = {
      {"clean", {}},
      {"rows_unwritten",
       {" YUV 4:2:0 frames: every row written", " BGRA frames: every row written"}},
      {"write_past_end",
       {" YUV 4:2:0 frames: nothing written outside the buffer",
        " BGRA frames: nothing written outside the buffer"}},
      {"unstable_picture",
       {" YUV 4:2:0 frames: same bytes on a second fetch",
        " BGRA frames: same bytes on a second fetch"}},
      {"sound_short", {" sound: the asked count written"}},
      {"sound_long", {" sound: nothing written past the count"}},
  };
  const std::map<std::string, std::string> faults = {
      {"clean", ""},
      {"rows_unwritten", R"("rows_unwritten": 2)"},
      {"write_past_end", R"("write_past_end": true)"},
      {"unstable_picture", R"("unstable_picture": true)"},
      {"sound_short", R"("sound_short": true)"},
      {"sound_long", R"("sound_long": true)"},
  };
  std::map<std::string, std::string> paths;
  std::vector<std::string> files;
  for (const auto& [name, fault] : faults) {
    paths[name] = folder.WriteFile(
        name + ".qvo", fault.empty() ? Clip("") : Clip(R"(, "faults": {)" + fault + "}"));
    files.push_back(paths[name]);
  }

  const host_sim::CheckReport report =
      host_sim::RunCheck({host_sim::DefaultPluginPath(), files, 1, ""});

  EXPECT_FALSE(report.AllPassed());
  for (const auto& [name, checks] : expected) {
    EXPECT_THAT(FailedChecksOf(report, paths[name]), UnorderedElementsAreArray(checks)) << name;
  }
  EXPECT_THAT(FailedChecksOfNoFile(report, files), ::testing::IsEmpty());
}

}  // namespace
