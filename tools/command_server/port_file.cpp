#include "command_server/port_file.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/c_runtime_files.h"

namespace command_server {

namespace {

const char kPortFolder[] = "\\AppData\\Local\\quorvel\\Adobe";
const char kPortFileName[] = "\\port";

}  // namespace

std::string PortFilePath(const std::string& home) { return home + kPortFolder + kPortFileName; }

bool WritePortFile(const std::string& home, uint16_t port) {
  std::error_code error;
  std::filesystem::create_directories(
      std::filesystem::u8path(platform::NativePath(home + kPortFolder)), error);
  if (error) return false;
  // Binary, so that the file holds the same bytes on every system.
  std::ofstream file(std::filesystem::u8path(platform::NativePath(PortFilePath(home))),
                     std::ios::binary | std::ios::trunc);
  file << port << '\n';
  file.close();
  return !file.fail();
}

}  // namespace command_server
