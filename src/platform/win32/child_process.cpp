#include "platform/child_process.h"

#include <windows.h>

#include <cstdio>

#include "platform/win32/wide_text.h"

namespace platform {
namespace {

// An argument as the C runtime's command-line parser reads it back: quoted, with the backslashes
// before a quote doubled.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring quoted = L"\"";
  size_t backslashes = 0;
  for (wchar_t c : argument) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    quoted.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
    backslashes = 0;
    quoted += c;
  }
  quoted.append(2 * backslashes, L'\\');
  return quoted + L"\"";
}

// Codes a crashed process ends with: an exception code, or the fast-fail of the runtimes.
bool IsExceptionCode(DWORD code) { return code >= 0xC0000000u || code == 0x80000003u; }

std::string ExceptionDescription(DWORD code) {
  const struct {
    DWORD code;
    const char* text;
  } known[] = {
      {0xC0000005u, "access violation"},
      {0xC00000FDu, "stack overflow"},
      {0xC0000094u, "integer division by zero"},
      {0xC000001Du, "illegal instruction"},
      {0xC0000409u, "stack buffer overrun or fail-fast"},
      {0xC0000374u, "heap corruption"},
      {0x80000003u, "breakpoint"},
      {0xC0000096u, "privileged instruction"},
  };
  char text[96];
  std::snprintf(text, sizeof(text), "exception 0x%08lX", static_cast<unsigned long>(code));
  for (const auto& exception : known) {
    if (exception.code == code) return std::string(text) + " (" + exception.text + ")";
  }
  return text;
}

HANDLE InheritableOutput(const std::string& path) {
  SECURITY_ATTRIBUTES inherit = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return CreateFileW(Widen(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     &inherit, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& output_path) {
  std::wstring command_line = Quoted(Widen(program));
  for (const std::string& argument : arguments) command_line += L" " + Quoted(Widen(argument));
  const HANDLE output = InheritableOutput(output_path);
  if (output == INVALID_HANDLE_VALUE) {
    error_ = "cannot create " + output_path + " (error " + std::to_string(GetLastError()) + ")";
    return;
  }
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output;
  startup.hStdError = output;
  PROCESS_INFORMATION process = {};
  const BOOL created = CreateProcessW(Widen(program).c_str(), &command_line[0], nullptr, nullptr,
                                      TRUE, 0, nullptr, nullptr, &startup, &process);
  const DWORD error = GetLastError();
  CloseHandle(output);
  if (!created) {
    error_ = "cannot start " + program + " (error " + std::to_string(error) + ")";
    return;
  }
  CloseHandle(process.hThread);
  process_ = reinterpret_cast<intptr_t>(process.hProcess);
  started_ = true;
}

ChildProcess::~ChildProcess() {
  if (!started_) return;
  if (!ended_) {
    Kill();
    WaitForSingleObject(reinterpret_cast<HANDLE>(process_), INFINITE);
  }
  CloseHandle(reinterpret_cast<HANDLE>(process_));
}

bool ChildProcess::WaitForEnd(std::chrono::milliseconds timeout, ChildEnd* end) {
  if (!started_) return false;
  if (!ended_) {
    const HANDLE process = reinterpret_cast<HANDLE>(process_);
    if (WaitForSingleObject(process, static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0) {
      return false;
    }
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    ended_ = true;
    end_.code = code;
    end_.faulted = IsExceptionCode(code);
    end_.description =
        end_.faulted ? ExceptionDescription(code) : "exit code " + std::to_string(code);
  }
  *end = end_;
  return true;
}

void ChildProcess::Kill() {
  if (started_ && !ended_) TerminateProcess(reinterpret_cast<HANDLE>(process_), 1);
}

std::string RunningProgram() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, &path[0], static_cast<DWORD>(path.size()));
    if (length < path.size()) return Utf8(path.substr(0, length));
    path.resize(path.size() * 2);
  }
}

}  // namespace platform
