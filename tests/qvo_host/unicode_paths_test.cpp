// qvo-host started the way Explorer or cmd.exe start it: a UTF-16 command line through
// CreateProcessW. Every command that takes a path reads and writes in a folder with accents and in
// one whose script the system code page may lack; a clip in a folder the code page cannot spell is
// opened by the host but refused with that reason, since the stitching library gets its path in
// that code page.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/child_process.h"
#include "platform/dynamic_library.h"
#include "platform/environment.h"
#include "platform/text_encoding.h"
#include "support/environment.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

constexpr char kClip[] = R"({"width": 96, "height": 48, "frames": 4, "fps": 25})";
// Two frames stitched, as the plug-in logs them, for log-report's plot.
constexpr char kLog[] =
    "2026-11-16 10:00:01 INFO  read frame consume:10 SDK_File_Import:2284\r\n"
    "2026-11-16 10:00:02 INFO  read frame consume:20 SDK_File_Import:2284\r\n";

// `argument` with {D} at its start standing for `folder` and {P} for `plain_clip`.
std::string Expanded(const std::string& argument, const fs::path& folder,
                     const fs::path& plain_clip) {
  if (argument == "{P}") return plain_clip.u8string();
  return argument.rfind("{D}", 0) == 0 ? folder.u8string() + argument.substr(3) : argument;
}

struct Case {
  std::vector<std::string> arguments;  // {D}: the folder; {P}: a clip in a plain folder
  bool clip_in_folder;                 // succeeds only when the code page spells the folder
  const char* written;                 // below the folder, when the command succeeds; "" for none
};

const Case kCases[] = {
    {{"info", "{D}\\clip.qvo"}, true, ""},
    {{"frames", "{P}", "--range", "0:2", "--out", "{D}\\frames"}, false, "frames\\frame_00001.png"},
    {{"audio", "{D}\\clip.qvo", "--out", "{D}\\sound.wav"}, true, "sound.wav"},
    {{"serve", "{D}\\clip.qvo", "--seconds", "1"}, true, ""},
    {{"check", "{D}\\clip.qvo", "--frames", "0", "--report", "{D}\\report"},
     true,
     "report\\report.json"},
    {{"log-report", "{D}\\Plugin.log", "--png", "{D}\\plot.png"}, false, "plot.png"},
};

TEST(UnicodePathsTest, EveryCommandTakesThePathAsTypedAndSaysWhenTheLibraryCannotBeGivenIt) {
  TempFolder temp;
  const fs::path plain_clip = temp.path() / "plain.qvo";
  std::ofstream(plain_clip, std::ios::binary) << kClip;
  const fs::path output = temp.path() / "output.txt";
  SCOPED_TRACE("system code page " + std::to_string(GetACP()));
  for (const std::wstring folder_name : {L"Caf\u00E9 360", L"\u65E5\u672C\u8A9E"}) {
    const fs::path folder = temp.path() / folder_name;
    fs::create_directory(folder);
    std::ofstream(folder / "clip.qvo", std::ios::binary) << kClip;
    std::ofstream(folder / "Plugin.log", std::ios::binary) << kLog;
    const bool spelled = platform::SystemAnsiCanSpell(folder.u8string());
    // The check's own profile goes there too, as under a user's profile folder with accents.
    SavedEnvironment temp_folders({"TEMP", "TMP"}, false);
    platform::SetEnvironment("TEMP", folder.u8string());
    platform::SetEnvironment("TMP", folder.u8string());
    for (const Case& one : kCases) {
      std::vector<std::string> arguments;
      for (const std::string& argument : one.arguments) {
        arguments.push_back(Expanded(argument, folder, plain_clip));
      }
      SCOPED_TRACE(arguments[0] + " " + arguments[1]);
      // A UTF-16 command line through CreateProcessW, as Explorer and cmd.exe start a program.
      platform::ChildProcess qvo_host(platform::ExecutableFolder() + "\\qvo-host.exe", arguments,
                                      output.u8string());
      platform::ChildEnd end;
      // INFINITE: for as long as the command takes.
      ASSERT_TRUE(qvo_host.WaitForEnd(std::chrono::milliseconds(INFINITE), &end))
          << qvo_host.error();
      const std::string said = ReadWholeFile(output);
      const bool succeeds = spelled || !one.clip_in_folder;
      EXPECT_EQ(end.code, succeeds ? 0u : 1u) << said;
      if (!succeeds) {
        EXPECT_NE(said.find(") cannot spell this path"), std::string::npos) << said;
        continue;
      }
      // The audio suite that closing a file releases twice is the design's, not a leftover.
      EXPECT_EQ(said.find("left this behind"), std::string::npos) << said;
      if (*one.written != '\0') {
        EXPECT_TRUE(fs::exists(folder / fs::u8path(one.written))) << said;
      }
    }
  }
}

}  // namespace
