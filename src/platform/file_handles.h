// The Win32 file calls that the importer's behaviour is written in terms of (CreateFileW,
// ReadFile, WriteFile, SetFilePointer(Ex), GetFileSizeEx, MoveFileW, CopyFileW, DeleteFileW),
// each a thin layer over the real call on Windows. The POSIX side reproduces the same results: a
// handle is a file descriptor held in the pointer-sized value, wide paths are UTF-16 whose
// "\\?\" prefix (as the host hands paths over) is dropped, backslashes act as separators, and a
// move or copy fails when its target exists. Error codes are the system's own: GetLastError on
// Windows, errno on POSIX.
#pragma once

#include <cstdint>

namespace platform {

// A Win32 HANDLE on Windows; a file descriptor on POSIX. The host's imFileRef is one.
using FileHandle = void*;

// INVALID_HANDLE_VALUE (-1): what the open calls return on failure.
FileHandle InvalidFileHandle();

// WriteFile with no overlapped record. `*written` receives the bytes written, also on failure.
bool WriteToFile(FileHandle file, const void* buffer, uint32_t count, uint32_t* written);

// ReadFile with no overlapped record. Reading at or near the end of the file succeeds with
// fewer bytes than asked (`*read` says how many, 0 at the end).
bool ReadFromFile(FileHandle file, void* buffer, uint32_t count, uint32_t* read);

// SetFilePointer(file, offset, no high part, FILE_BEGIN). Without a high part the system takes
// the distance as a signed 32-bit value, so an offset of 2 GiB or more is a negative seek and
// fails, leaving the file pointer where it was.
bool SeekFromStart32(FileHandle file, uint32_t offset);

// SetFilePointerEx(file, offset, no new position, FILE_BEGIN); a negative offset fails.
bool SeekFromStart64(FileHandle file, int64_t offset);

// GetFileSizeEx; `*size` is left alone on failure.
bool FileSize64(FileHandle file, int64_t* size);

// GetLastError on Windows, errno on POSIX: the error of the last call above that failed.
uint32_t LastSystemError();

// CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_NEW, FILE_ATTRIBUTE_NORMAL): fails
// when the file exists. InvalidFileHandle() on failure; the caller closes the handle.
FileHandle CreateNewFileForWriting(const char16_t* path);

// CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL).
// InvalidFileHandle() on failure; the caller closes the handle.
FileHandle OpenFileForReading(const char16_t* path);

// CloseHandle; the invalid handle is ignored.
void CloseFileHandle(FileHandle file);

// MoveFileW: fails when `to` exists.
bool MoveFileTo(const char16_t* from, const char16_t* to);

// CopyFileW(from, to, fail if exists = TRUE): fails, leaving it as it was, when `to` exists.
bool CopyFileNoReplace(const char16_t* from, const char16_t* to);

// DeleteFileW: false when there is no such file.
bool DeleteFileAt(const char16_t* path);

}  // namespace platform
