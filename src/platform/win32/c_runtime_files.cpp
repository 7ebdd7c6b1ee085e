#include "platform/c_runtime_files.h"

#include <direct.h>
#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace platform {

const char kTextModeLineEnd[] = "\r\n";

std::string NativePath(const std::string& path) { return path; }

bool PathExists(const std::string& path) { return _access(path.c_str(), 0) == 0; }

void MakeDirectory(const std::string& path) { _mkdir(path.c_str()); }

std::FILE* OpenTextFile(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

bool RenameFile(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

bool FileSize32(const std::string& path, int32_t* size) {
  struct _stat64i32 status;
  if (_stat64i32(path.c_str(), &status) != 0) return false;
  *size = static_cast<int32_t>(status.st_size);
  return true;
}

}  // namespace platform
