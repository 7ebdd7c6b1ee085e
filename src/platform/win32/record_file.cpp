#include "platform/record_file.h"

#include <windows.h>

#include "platform/win32/wide_text.h"

namespace platform {

RecordFile::RecordFile(const std::string& path) {
  const HANDLE file =
      CreateFileW(Widen(path).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) handle_ = reinterpret_cast<intptr_t>(file);
}

RecordFile::~RecordFile() {
  if (opened()) CloseHandle(reinterpret_cast<HANDLE>(handle_));
}

bool RecordFile::Append(const char* bytes, size_t size) const {
  DWORD written = 0;
  return opened() &&
         WriteFile(reinterpret_cast<HANDLE>(handle_), bytes, static_cast<DWORD>(size), &written,
                   nullptr) != 0 &&
         written == size;
}

}  // namespace platform
