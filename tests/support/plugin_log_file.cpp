#include "support/plugin_log_file.h"

#include <cstdlib>

#include "support/temp_folder.h"

std::filesystem::path PluginLogFolder(const std::filesystem::path& profile) {
  return profile / "AppData" / "Local" / "quorvel" / "Adobe";
}

std::string PluginLogText(const std::filesystem::path& profile) {
  return ReadWholeFile(PluginLogFolder(profile) / "Plugin.log");
}

std::filesystem::path CurrentProfile() {
  const char* profile = std::getenv("USERPROFILE");
  return std::filesystem::u8path(profile != nullptr ? profile : "");
}
