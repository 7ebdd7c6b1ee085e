#include "support/plugin_log_file.h"

#include <algorithm>
#include <cstdlib>

#include "support/temp_folder.h"

std::filesystem::path PluginLogFolder(const std::filesystem::path& profile) {
  return profile / "AppData" / "Local" / "quorvel" / "Adobe";
}

std::vector<std::filesystem::path> PluginLogFiles(const std::filesystem::path& profile) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(PluginLogFolder(profile), error)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("Plugin.", 0) == 0 && name.size() > 4 && name.substr(name.size() - 4) == ".log")
      files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string PluginLogText(const std::filesystem::path& profile) {
  return ReadWholeFile(PluginLogFolder(profile) / "Plugin.log");
}

std::filesystem::path CurrentProfile() {
  const char* profile = std::getenv("USERPROFILE");
  return std::filesystem::u8path(profile != nullptr ? profile : "");
}
