#include "support/temp_folder.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <sstream>

#include "platform/environment.h"

namespace {

std::atomic<int> folder_count{0};

}  // namespace

TempFolder::TempFolder() {
  auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
  path_ = std::filesystem::temp_directory_path() /
          ("quorvel_test_" + std::to_string(stamp) + "_" + std::to_string(folder_count++));
  std::filesystem::create_directories(path_);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::Join(const std::string& relative) const {
  return (path_ / std::filesystem::u8path(relative)).string();
}

std::string TempFolder::WriteFile(const std::string& relative, const std::string& text) const {
  std::string full = Join(relative);
  std::ofstream(std::filesystem::u8path(full), std::ios::binary) << text;
  return full;
}

std::string ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::u16string HostPath(const std::string& native_path) {
  return u"\\\\?\\" + std::filesystem::u8path(native_path).u16string();
}

void SetHomeDriveAndPath(const std::string& folder) {
  const size_t split = folder.find_last_of("\\/");
  platform::SetEnvironment("HOMEDRIVE", folder.substr(0, split));
  platform::SetEnvironment("HOMEPATH", folder.substr(split));
}
