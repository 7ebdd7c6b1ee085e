#include "command_link/port_file.h"

#include <cstdlib>
#include <fstream>

#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "platform/c_runtime_files.h"

namespace {

// The first line's characters and its terminator.
constexpr std::streamsize kPortTextLimit = 32;

}  // namespace

bool ReadPortFile(std::string& out) {
  const char* drive = std::getenv("HOMEDRIVE");
  if (drive == nullptr) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kHomeDriveMissing,
                            "Can't get home drive!");
    return false;
  }
  const char* home = std::getenv("HOMEPATH");
  if (home == nullptr) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kHomePathMissing,
                            "Can't get home path!");
    return false;
  }
  const std::string path = std::string(drive) + home + "\\AppData\\Local\\quorvel\\Adobe\\port";
  std::ifstream file(platform::NativePath(path));
  if (!file.is_open()) return false;
  // A longer line leaves the stream failed, but the characters read are kept.
  char line[kPortTextLimit] = {};
  file.getline(line, kPortTextLimit);
  out = line;
  return true;
}
