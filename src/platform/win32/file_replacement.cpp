#include "platform/file_replacement.h"

#include <windows.h>

namespace platform {
namespace {

constexpr int kAttempts = 50;
constexpr DWORD kPauseMilliseconds = 10;

// A reader that opened the file without sharing its deletion, as the C and C++ runtimes open it.
bool HeldOpenByAnother(DWORD error) {
  return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
}

}  // namespace

bool MoveFileOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  for (int attempt = 1;; ++attempt) {
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      return true;
    }
    if (attempt == kAttempts || !HeldOpenByAnother(GetLastError())) return false;
    Sleep(kPauseMilliseconds);
  }
}

}  // namespace platform
