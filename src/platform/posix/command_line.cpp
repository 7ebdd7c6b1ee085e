#include "platform/command_line.h"

namespace platform {

std::vector<std::string> Utf8CommandLine(int argc, char** argv) {
  return std::vector<std::string>(argv, argv + argc);
}

}  // namespace platform
