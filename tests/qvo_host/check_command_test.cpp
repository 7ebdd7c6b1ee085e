// qvo-host check, run as the command it is, against the stand-in: clean clips pass every check and
// leave a report; each of the stand-in's faults, from a picture written wrong to a crash or a hang
// inside the library, fails exactly the checks it breaks with a line that names the call, while
// every other check of the run is still reported.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <rapidjson/document.h>

#include "host_sim/plugin_module.h"
#include "platform/child_process.h"
#include "platform/dynamic_library.h"
#include "support/temp_folder.h"

namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAreArray;

// How a verdict names a crash inside the library, before where it was.
#if defined(_WIN32)
constexpr char kAccessFault[] = "(EXCEPTION_ACCESS_VIOLATION at ";
#else
constexpr char kAccessFault[] = "(SIGSEGV at ";
#endif
constexpr char kClipStart[] = R"({"width": 96, "height": 48, "frames": 40, "fps": 29.97)";
// Far beyond a run's few seconds; only a check that itself hangs comes near it.
constexpr std::chrono::minutes kRunBound{5};

std::string Clip(const std::string& faults) {
  return std::string(kClipStart) + (faults.empty() ? "" : R"(, "faults": {)" + faults + "}") + "}";
}

struct ReportedCheck {
  std::string result;  // pass, fail or not run
  std::string figure;
};

struct CommandRun {
  uint32_t exit_code = 0;
  std::string output;                           // standard output and error together
  std::map<std::string, ReportedCheck> checks;  // by what they check; empty without a report
};

// Runs `qvo-host check FILES ARGUMENTS --report FOLDER` and reads its report.json.
CommandRun RunCheckCommand(const std::vector<std::string>& files,
                           std::vector<std::string> arguments, const TempFolder& folder) {
  arguments.insert(arguments.begin(), files.begin(), files.end());
  arguments.insert(arguments.begin(), "check");
  arguments.insert(arguments.end(), {"--report", folder.Join("report")});
  platform::ChildProcess command(
      platform::ExecutableFolder() + "/" + platform::ProgramFileName("qvo-host"), arguments,
      folder.Join("output.txt"));
  CommandRun run;
  platform::ChildEnd end;
  EXPECT_TRUE(command.WaitForEnd(kRunBound, &end)) << "the check did not end";
  run.exit_code = end.code;
  run.output = ReadWholeFile(folder.path() / "output.txt");
  rapidjson::Document report;
  report.Parse(ReadWholeFile(folder.path() / "report" / "report.json").c_str());
  if (!report.IsObject()) return run;
  for (const auto& check : report["checks"].GetArray()) {
    run.checks[check["what"].GetString()] = {check["result"].GetString(),
                                             check["figure"].GetString()};
  }
  return run;
}

TEST(CheckCommandTest, AFileThatIsNotThereIsACommandLineErrorBeforeAnythingRuns) {
  TempFolder folder;
  const CommandRun run = RunCheckCommand({folder.Join("missing.qvo")}, {}, folder);
  EXPECT_EQ(run.exit_code, 2u);
  EXPECT_THAT(run.output, HasSubstr("missing.qvo: no such file"));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "report"));
}

TEST(CheckCommandTest, CleanClipsPassEveryCheckAndLeaveAReport) {
  TempFolder folder;
  const std::vector<std::string> files = {
      folder.WriteFile("mono.qvo", Clip("")),
      folder.WriteFile("stereo_silent.qvo",
                       std::string(kClipStart) + R"(, "stereo": true, "audio": null})"),
  };

  const CommandRun run = RunCheckCommand(files, {"--frames", "2"}, folder);

  EXPECT_EQ(run.exit_code, 0u);
  EXPECT_GT(run.checks.size(), 40u) << run.output;
  for (const auto& [what, check] : run.checks) EXPECT_EQ(check.result, "pass") << what;
  for (const char* name : {"report.json", "report.md", "contact_sheet.png", "stitching_time.png",
                           "Plugin.log", "worker_output.txt"}) {
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "report" / name)) << name;
  }
  EXPECT_THAT(ReadWholeFile(folder.path() / "report" / "report.md"), HasSubstr("**Passed**"));
}

struct FaultCase {
  const char* faults;
  std::set<std::string> failed;  // the checks of the clip that fail or do not run, without its path
  std::vector<std::string> first_figure;  // found in the figure of the clip's first failed check
};

// The check of both frame formats.
std::set<std::string> Both(const std::string& check) {
  return {" YUV 4:2:0 frames: " + check, " BGRA frames: " + check};
}

TEST(CheckCommandTest, EachFaultFailsExactlyTheChecksItBreaksAndTheRunGoesOn) {
  const std::string call_on_frame_0 = " GetVideoFrame frame 0, YUV 4:2:0 96x48";
  const std::string call_on_frame_20 = " GetVideoFrame frame 20, YUV 4:2:0 96x48";
  const std::string not_run = ": the checks after that call";
  const std::string landed = "wrote past the end of the host's frame: the write landed ";
  const std::vector<FaultCase> cases = {
      {R"("rows_unwritten": 2)", Both("every row written"), {"rows unwritten"}},
      {R"("write_before_start": true)",
       Both("nothing written outside the buffer"),
       {"frames written outside"}},
      {R"("write_past_end": true)", {call_on_frame_0, not_run}, {landed + "1 byte past its end"}},
      {R"("write_far_past_end": true)",
       {call_on_frame_0, not_run},
       {landed + "49 bytes past its end"}},
      {R"("unstable_picture": true)", Both("same bytes on a second fetch"), {}},
      {R"("sound_short": true)", {" sound: the asked count written"}, {"reads short"}},
      {R"("sound_long": true)", {" sound: nothing written past the count"}, {"reads too long"}},
      {R"("crash_frames": [20])",
       {call_on_frame_20, not_run},
       {"crashed, touching 0x40", "OmniStitcher", kAccessFault}},
      {R"("hang_frames": [20])",
       {call_on_frame_20, not_run},
       {"did not return within 2 s (--call-timeout); the worker was ended"}},
      {R"("throw_frames": [20])", Both("delivered"), {"frame 20: the plug-in answered 99"}},
      // Last, so that the run's last worker holds the record its failed open keeps by design.
      {R"("create": true)", {": opened and described"}, {"open failed with result 99"}},
  };
  TempFolder folder;
  std::vector<std::string> files;
  for (const FaultCase& fault : cases) {
    files.push_back(
        folder.WriteFile("fault" + std::to_string(files.size()) + ".qvo", Clip(fault.faults)));
  }

  const CommandRun run = RunCheckCommand(files, {"--frames", "1", "--call-timeout", "2"}, folder);

  EXPECT_EQ(run.exit_code, 1u);
  ASSERT_FALSE(run.checks.empty()) << run.output;
  EXPECT_THAT(ReadWholeFile(folder.path() / "report" / "report.md"), HasSubstr("**FAIL**"));
  for (size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(cases[i].faults);
    std::set<std::string> failed;
    std::string first_figure;
    for (const auto& [what, check] : run.checks) {
      if (check.result == "pass" || what.rfind(files[i], 0) != 0) continue;
      failed.insert(what.substr(files[i].size()));
      if (first_figure.empty()) first_figure = check.figure;
    }
    EXPECT_THAT(failed, UnorderedElementsAreArray(cases[i].failed));
    for (const std::string& part : cases[i].first_figure)
      EXPECT_THAT(first_figure, HasSubstr(part));
  }
  for (const auto& [what, check] : run.checks) {
    const bool of_a_clip = what.find(folder.path().filename().string()) != std::string::npos;
    if (!of_a_clip) {
      EXPECT_EQ(check.result, "pass") << what << ": " << check.figure;
    }
  }
  for (const char* what : {"command link: request_update_param", "shut-down", "plug-in unloaded"}) {
    EXPECT_EQ(run.checks.count(what), 1u) << what << " was not reported";
  }
}

}  // namespace
