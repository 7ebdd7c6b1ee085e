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

#include "qvo_host/log_parsing.h"

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
  std::filesystem::path log_path() const;

  // Everything the plug-in has logged in this profile so far; empty when nothing.
  std::string LogText() const;
  ParsedLog ParsedLogSoFar() const;
  // Entries logged so far whose message begins with `start`.
  int64_t CountLogged(const std::string& start) const;

 private:
  std::filesystem::path folder_;
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_environment_;
};

}  // namespace host_sim
