// Windows-style paths on POSIX: backslashes act as separators.
#pragma once

#include <algorithm>
#include <string>

namespace platform {

inline std::string PosixPath(std::string path) {
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

}  // namespace platform
