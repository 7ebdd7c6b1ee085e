// A user profile of the fuzz process's own in a temporary folder: USERPROFILE, HOMEDRIVE and
// HOMEPATH name it and AppData\Local\quorvel\Adobe exists in it, so that the plug-in finds its log
// folder and its port file there. Plugin.log is a link to /dev/null: every line is formatted and
// written as in use, yet a long run fills no disk and the log never reaches its rotation size.
#pragma once

#include <filesystem>

#include "support/temp_folder.h"

class FuzzProfile {
 public:
  // Sets the environment; the plug-in's log must not have been opened before.
  FuzzProfile();

  // The folder that holds Plugin.log and the port file.
  std::filesystem::path adobe_folder() const;

 private:
  TempFolder home_;
};
