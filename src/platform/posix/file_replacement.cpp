#include "platform/file_replacement.h"

#include <cstdio>

namespace platform {

bool MoveFileOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace platform
