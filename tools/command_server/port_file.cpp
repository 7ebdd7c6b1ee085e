#include "command_server/port_file.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/c_runtime_files.h"
#include "platform/file_replacement.h"

namespace command_server {

namespace {

const char kPortFolder[] = "\\AppData\\Local\\quorvel\\Adobe";
const char kPortFileName[] = "\\port";

bool WriteDecimalLine(const std::filesystem::path& path, uint16_t value) {
  // Binary, so that the file holds the same bytes on every system.
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << value << '\n';
  file.close();
  return !file.fail();
}

}  // namespace

std::string PortFilePath(const std::string& home) { return home + kPortFolder + kPortFileName; }

bool WritePortFile(const std::string& home, uint16_t port) {
  std::error_code error;
  std::filesystem::create_directories(
      std::filesystem::u8path(platform::NativePath(home + kPortFolder)), error);
  if (error) return false;
  // Written beside the file and moved over it: a plug-in reading the file meanwhile must find the
  // old port or the new one, never an empty line, which it would take for the end of the host.
  const std::filesystem::path file =
      std::filesystem::u8path(platform::NativePath(PortFilePath(home)));
  std::filesystem::path written = file;
  written += ".new";
  if (WriteDecimalLine(written, port) && platform::MoveFileOver(written, file)) return true;
  std::filesystem::remove(written, error);
  return false;
}

}  // namespace command_server
