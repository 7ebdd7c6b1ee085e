#include "qvo_host/check/profile_log.h"

#include <fstream>
#include <sstream>

namespace host_sim {

std::filesystem::path ProfileLog::path() const {
  return profile_folder_ / "AppData" / "Local" / "quorvel" / "Adobe" / "Plugin.log";
}

std::string ProfileLog::Text() const {
  std::ifstream file(path(), std::ios::binary);
  std::ostringstream text;
  if (file) text << file.rdbuf();
  return text.str();
}

ParsedLog ProfileLog::ParsedSoFar() const {
  ParsedLog log;
  ParsePluginLog(Text(), &log);
  return log;
}

int64_t ProfileLog::CountLogged(const std::string& start) const {
  int64_t count = 0;
  for (const LogEntry& entry : ParsedSoFar().entries) {
    if (entry.message.compare(0, start.size(), start) == 0) ++count;
  }
  return count;
}

}  // namespace host_sim
