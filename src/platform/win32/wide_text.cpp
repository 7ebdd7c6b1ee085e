#include "platform/win32/wide_text.h"

#include <windows.h>

namespace platform {

std::wstring WidenUtf8(const std::string& utf8) {
  if (utf8.empty()) return std::wstring();
  const int length = static_cast<int>(utf8.size());
  const int needed =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), length, nullptr, 0);
  std::wstring wide(static_cast<size_t>(needed), L'\0');
  MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), length, &wide[0], needed);
  return wide;
}

std::string NarrowToUtf8(const std::wstring& wide) {
  if (wide.empty()) return std::string();
  const int length = static_cast<int>(wide.size());
  const int needed =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, &utf8[0], needed, nullptr, nullptr);
  return utf8;
}

}  // namespace platform
