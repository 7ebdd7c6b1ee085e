// The Plugin.log of a user profile, read as the plug-in writes it: by the check's judge for its
// log checks and report, and by its worker to see what a request made the plug-in do.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "qvo_host/log_parsing.h"

namespace host_sim {

class ProfileLog {
 public:
  explicit ProfileLog(std::filesystem::path profile_folder)
      : profile_folder_(std::move(profile_folder)) {}

  std::filesystem::path path() const;
  // Everything logged so far; empty when nothing.
  std::string Text() const;
  ParsedLog ParsedSoFar() const;
  // Entries logged so far whose message begins with `start`.
  int64_t CountLogged(const std::string& start) const;

 private:
  std::filesystem::path profile_folder_;
};

}  // namespace host_sim
