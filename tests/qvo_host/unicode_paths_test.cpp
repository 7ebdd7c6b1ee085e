// qvo-host started the way Explorer or cmd.exe start it: a UTF-16 command line through
// CreateProcessW. Every command that takes a path reads and writes in a folder with accents and in
// one whose script the system code page may lack; a clip in a folder the code page cannot spell is
// opened by the host but refused with that reason, since the stitching library gets its path in
// that code page.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/dynamic_library.h"
#include "platform/environment.h"
#include "support/environment.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

constexpr char kClip[] = R"({"width": 96, "height": 48, "frames": 4, "fps": 25})";
// Two frames stitched, as the plug-in logs them, for log-report's plot.
constexpr char kLog[] =
    "2026-11-16 10:00:01 INFO  read frame consume:10 SDK_File_Import:2284\r\n"
    "2026-11-16 10:00:02 INFO  read frame consume:20 SDK_File_Import:2284\r\n";

struct Finished {
  DWORD exit_code = 0;
  std::string output;  // standard output and error together
};

// Runs qvo-host with `arguments`, its output into `output_file`.
Finished RunQvoHost(const std::wstring& arguments, const fs::path& output_file) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE output = CreateFileW(output_file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output;
  startup.hStdError = output;
  const fs::path program = fs::u8path(platform::ExecutableFolder()) / "qvo-host.exe";
  std::wstring line = L"\"" + program.wstring() + L"\" " + arguments;
  PROCESS_INFORMATION process{};
  Finished finished;
  if (CreateProcessW(nullptr, &line[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                     &process)) {
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &finished.exit_code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  } else {
    finished.exit_code = GetLastError();
    finished.output = "CreateProcessW failed\n";
  }
  CloseHandle(output);
  finished.output += ReadWholeFile(output_file);
  return finished;
}

// Asked of the system, not assumed: the code page the plug-in hands the library its paths in.
bool SystemCodePageSpells(const std::wstring& text) {
  BOOL used_default = FALSE;
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.c_str(), -1, nullptr, 0, nullptr,
                      &used_default);
  return !used_default;
}

std::wstring Replaced(std::wstring text, const std::wstring& name, const std::wstring& value) {
  for (size_t at = text.find(name); at != std::wstring::npos; at = text.find(name, at)) {
    text.replace(at, name.size(), value);
    at += value.size();
  }
  return text;
}

struct Case {
  const wchar_t* arguments;  // {D}: the folder; {P}: a clip in a plain folder
  bool clip_in_folder;       // succeeds only when the code page spells the folder
  const wchar_t* written;    // below the folder, when the command succeeds; empty for nothing
};

const Case kCases[] = {
    {L"info \"{D}\\clip.qvo\"", true, L""},
    {L"frames \"{P}\" --range 0:2 --out \"{D}\\frames\"", false, L"frames\\contact_sheet.png"},
    {L"audio \"{D}\\clip.qvo\" --out \"{D}\\sound.wav\"", true, L"sound.wav"},
    {L"serve \"{D}\\clip.qvo\" --seconds 1", true, L""},
    {L"check \"{D}\\clip.qvo\" --frames 0 --report \"{D}\\report\"", true, L"report\\report.json"},
    {L"log-report \"{D}\\Plugin.log\" --png \"{D}\\plot.png\"", false, L"plot.png"},
};

TEST(UnicodePathsTest, EveryCommandTakesThePathAsTypedAndSaysWhenTheLibraryCannotBeGivenIt) {
  TempFolder temp;
  const fs::path plain_clip = temp.path() / "plain.qvo";
  std::ofstream(plain_clip, std::ios::binary) << kClip;
  SCOPED_TRACE("system code page " + std::to_string(GetACP()));
  for (const std::wstring folder_name : {L"Caf\u00E9 360", L"\u65E5\u672C\u8A9E"}) {
    const fs::path folder = temp.path() / folder_name;
    fs::create_directory(folder);
    std::ofstream(folder / "clip.qvo", std::ios::binary) << kClip;
    std::ofstream(folder / "Plugin.log", std::ios::binary) << kLog;
    const bool spelled = SystemCodePageSpells(folder.wstring());
    // The check's own profile goes there too, as under a user's profile folder with accents.
    SavedEnvironment temp_folders({"TEMP", "TMP"}, false);
    platform::SetEnvironment("TEMP", folder.u8string());
    platform::SetEnvironment("TMP", folder.u8string());
    for (const Case& one : kCases) {
      const std::wstring arguments =
          Replaced(Replaced(one.arguments, L"{D}", folder.wstring()), L"{P}", plain_clip.wstring());
      SCOPED_TRACE(fs::path(arguments).u8string());
      const Finished run = RunQvoHost(arguments, temp.path() / "output.txt");
      const bool succeeds = spelled || !one.clip_in_folder;
      EXPECT_EQ(run.exit_code, succeeds ? 0u : 1u) << run.output;
      if (!succeeds) {
        EXPECT_NE(run.output.find(") cannot spell this path"), std::string::npos) << run.output;
        continue;
      }
      // The audio suite that closing a file releases twice is the design's, not a leftover.
      EXPECT_EQ(run.output.find("left this behind"), std::string::npos) << run.output;
      if (*one.written != L'\0') {
        EXPECT_TRUE(fs::exists(folder / one.written)) << run.output;
      }
    }
  }
}

}  // namespace
