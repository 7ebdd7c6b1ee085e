#include "platform/command_line.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/win32/wide_text.h"

namespace platform {

// argc and argv are the same arguments in the system code page, so they are not needed here.
std::vector<std::string> Utf8CommandLine(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) arguments.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

}  // namespace platform
