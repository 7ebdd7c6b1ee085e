#include "fuzz_profile.h"

#include "platform/environment.h"

FuzzProfile::FuzzProfile() {
  std::filesystem::create_directories(adobe_folder());
  std::filesystem::create_symlink("/dev/null", adobe_folder() / "Plugin.log");
  platform::SetEnvironment("USERPROFILE", home_.path().string());
  SetHomeDriveAndPath(home_.path().string());
}

std::filesystem::path FuzzProfile::adobe_folder() const {
  return home_.path() / "AppData" / "Local" / "quorvel" / "Adobe";
}
