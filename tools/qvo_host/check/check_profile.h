// A user profile of the check's own: a fresh folder with AppData/Local, where the plug-in writes
// the run's Plugin.log and finds the port file of the check's command server. USERPROFILE,
// HOMEDRIVE and HOMEPATH point at it while the profile lives and are put back afterwards.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "qvo_host/check/profile_log.h"

namespace host_sim {

class CheckProfile {
 public:
  // Makes the folder under the system's temporary folder and points the environment at it.
  CheckProfile();
  // Puts the environment back and removes the folder.
  ~CheckProfile();
  CheckProfile(const CheckProfile&) = delete;
  CheckProfile& operator=(const CheckProfile&) = delete;

  // The profile folder, as HOMEDRIVE followed by HOMEPATH names it.
  std::string home() const { return folder_.u8string(); }
  ProfileLog log() const { return ProfileLog(folder_); }

 private:
  std::filesystem::path folder_;
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_environment_;
};

}  // namespace host_sim
