#include "qvo_host/check/check_profile.h"

#include <chrono>
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

}  // namespace host_sim
