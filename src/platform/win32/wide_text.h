// UTF-8 to UTF-16 and back, for the Win32 calls that take wide text.
#pragma once

#include <windows.h>

#include <string>

namespace platform {

inline std::wstring Widen(const std::string& utf8) {
  const int needed =
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(needed > 0 ? needed : 0), L'\0');
  if (needed > 0) {
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), &wide[0], needed);
  }
  return wide;
}

inline std::string Utf8(const std::wstring& wide) {
  const int needed = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()),
                                         nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(needed > 0 ? needed : 0), '\0');
  if (needed > 0) {
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), &utf8[0], needed,
                        nullptr, nullptr);
  }
  return utf8;
}

}  // namespace platform
