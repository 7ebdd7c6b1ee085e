// The C runtime's file and folder calls. On POSIX, backslashes in paths act as separators, and
// RenameFile fails when the target exists, as the Windows C runtime's rename does.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace platform {

// What a "\n" written to a text-mode stream becomes on disk.
extern const char kTextModeLineEnd[];

// `path` as the system's own file calls take it (backslashes become slashes on POSIX).
std::string NativePath(const std::string& path);

// _access(path, 0) == 0.
bool PathExists(const std::string& path);

// _mkdir(path), one level; the result is not reported.
void MakeDirectory(const std::string& path);

// fopen in text mode: "\n" becomes "\r\n" on Windows.
std::FILE* OpenTextFile(const std::string& path, const char* mode);

// rename(from, to) == 0.
bool RenameFile(const std::string& from, const std::string& to);

// The signed 32-bit size field of _stat64i32; false when the status cannot be read.
bool FileSize32(const std::string& path, int32_t* size);

}  // namespace platform
