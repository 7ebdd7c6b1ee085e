#include "platform/c_runtime_files.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/posix_path.h"

namespace platform {

const char kTextModeLineEnd[] = "\n";

std::string NativePath(const std::string& path) { return PosixPath(path); }

bool PathExists(const std::string& path) { return access(PosixPath(path).c_str(), F_OK) == 0; }

void MakeDirectory(const std::string& path) { mkdir(PosixPath(path).c_str(), 0777); }

std::FILE* OpenTextFile(const std::string& path, const char* mode) {
  return std::fopen(PosixPath(path).c_str(), mode);
}

bool RenameFile(const std::string& from, const std::string& to) {
  return renameat2(AT_FDCWD, PosixPath(from).c_str(), AT_FDCWD, PosixPath(to).c_str(),
                   RENAME_NOREPLACE) == 0;
}

bool FileSize32(const std::string& path, int32_t* size) {
  struct stat status;
  if (stat(PosixPath(path).c_str(), &status) != 0) return false;
  *size = static_cast<int32_t>(status.st_size);
  return true;
}

}  // namespace platform
