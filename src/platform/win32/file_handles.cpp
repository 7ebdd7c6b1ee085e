#include "platform/file_handles.h"

#include <windows.h>

namespace platform {
namespace {

LPCWSTR Wide(const char16_t* path) { return reinterpret_cast<LPCWSTR>(path); }

}  // namespace

FileHandle InvalidFileHandle() { return INVALID_HANDLE_VALUE; }

bool WriteToFile(FileHandle file, const void* buffer, uint32_t count, uint32_t* written) {
  DWORD done = 0;
  BOOL ok = WriteFile(file, buffer, count, &done, nullptr);
  *written = done;
  return ok != FALSE;
}

bool ReadFromFile(FileHandle file, void* buffer, uint32_t count, uint32_t* read) {
  DWORD done = 0;
  BOOL ok = ReadFile(file, buffer, count, &done, nullptr);
  *read = done;
  return ok != FALSE;
}

bool SeekFromStart32(FileHandle file, uint32_t offset) {
  // With no high part no position beyond 0x7FFFFFFF can be reached, so the failure value is
  // never a real position.
  return SetFilePointer(file, static_cast<LONG>(offset), nullptr, FILE_BEGIN) !=
         INVALID_SET_FILE_POINTER;
}

bool SeekFromStart64(FileHandle file, int64_t offset) {
  LARGE_INTEGER distance;
  distance.QuadPart = offset;
  return SetFilePointerEx(file, distance, nullptr, FILE_BEGIN) != FALSE;
}

bool FileSize64(FileHandle file, int64_t* size) {
  LARGE_INTEGER result;
  if (!GetFileSizeEx(file, &result)) return false;
  *size = result.QuadPart;
  return true;
}

uint32_t LastSystemError() { return GetLastError(); }

FileHandle CreateNewFileForWriting(const char16_t* path) {
  return CreateFileW(Wide(path), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

FileHandle OpenFileForReading(const char16_t* path) {
  return CreateFileW(Wide(path), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

void CloseFileHandle(FileHandle file) {
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
}

bool MoveFileTo(const char16_t* from, const char16_t* to) {
  return MoveFileW(Wide(from), Wide(to)) != FALSE;
}

bool CopyFileNoReplace(const char16_t* from, const char16_t* to) {
  return CopyFileW(Wide(from), Wide(to), TRUE) != FALSE;
}

bool DeleteFileAt(const char16_t* path) { return DeleteFileW(Wide(path)) != FALSE; }

}  // namespace platform
