#include "qvo_host/check_profile.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <system_error>

#include "platform/environment.h"

namespace host_sim {
namespace {

const char* const kProfileVariables[] = {"USERPROFILE", "HOMEDRIVE", "HOMEPATH"};

std::filesystem::path FreshFolder() {
  const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
  std::filesystem::path folder;
  std::error_code error;
  for (int attempt = 0;; ++attempt) {
    folder = std::filesystem::temp_directory_path() /
             ("qvo-check-" + std::to_string(stamp) + "-" + std::to_string(attempt));
    if (std::filesystem::create_directory(folder, error)) return folder;
  }
}

}  // namespace

CheckProfile::CheckProfile() : folder_(FreshFolder()) {
  std::filesystem::create_directories(folder_ / "AppData" / "Local");
  for (const char* name : kProfileVariables) {
    saved_environment_.emplace_back(name, platform::GetEnvironment(name));
  }
  const std::string home = this->home();
  const size_t split = home.find_last_of("\\/");
  platform::SetEnvironment("USERPROFILE", home);
  platform::SetEnvironment("HOMEDRIVE", home.substr(0, split));
  platform::SetEnvironment("HOMEPATH", home.substr(split));
}

CheckProfile::~CheckProfile() {
  for (const auto& [name, value] : saved_environment_) {
    if (value) {
      platform::SetEnvironment(name, *value);
    } else {
      platform::UnsetEnvironment(name);
    }
  }
  std::error_code error;
  std::filesystem::remove_all(folder_, error);
}

std::filesystem::path CheckProfile::log_path() const {
  return folder_ / "AppData" / "Local" / "quorvel" / "Adobe" / "Plugin.log";
}

std::string CheckProfile::LogText() const {
  std::ifstream file(log_path(), std::ios::binary);
  std::ostringstream text;
  if (file) text << file.rdbuf();
  return text.str();
}

ParsedLog CheckProfile::ParsedLogSoFar() const {
  ParsedLog log;
  ParsePluginLog(LogText(), &log);
  return log;
}

int64_t CheckProfile::CountLogged(const std::string& start) const {
  int64_t count = 0;
  for (const LogEntry& entry : ParsedLogSoFar().entries) {
    if (entry.message.compare(0, start.size(), start) == 0) ++count;
  }
  return count;
}

}  // namespace host_sim
