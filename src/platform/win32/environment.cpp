#include "platform/environment.h"

#include <windows.h>

#include <stdlib.h>

#include "platform/win32/wide_text.h"

namespace platform {

// The system's copy, which _wputenv_s keeps in step with the C runtime's; its size counts the
// terminator, so 0 means no such variable.
std::optional<std::string> GetEnvironment(const std::string& name) {
  const std::wstring wide_name = Widen(name);
  const DWORD needed = GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0);
  if (needed == 0) return std::nullopt;
  std::wstring value(needed, L'\0');
  const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), &value[0], needed);
  value.resize(length);
  return Utf8(value);
}

void SetEnvironment(const std::string& name, const std::string& value) {
  _wputenv_s(Widen(name).c_str(), Widen(value).c_str());
}

// An empty value removes the variable from the C runtime's environment.
void UnsetEnvironment(const std::string& name) { _wputenv_s(Widen(name).c_str(), L""); }

}  // namespace platform
