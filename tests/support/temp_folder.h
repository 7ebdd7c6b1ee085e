// A fresh folder under the system's temporary folder, removed with everything in it at the end.
#pragma once

#include <filesystem>
#include <string>

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  // `relative` below the folder, as a native path string.
  std::string Join(const std::string& relative) const;

  // Writes `text` to `relative` and returns its full path.
  std::string WriteFile(const std::string& relative, const std::string& text) const;

 private:
  std::filesystem::path path_;
};

// The whole content of a file, bytes as they are on disk.
std::string ReadWholeFile(const std::filesystem::path& path);

// The wide form of `native_path` as the host hands it to the plug-in: with the "\\?\" prefix.
std::u16string HostPath(const std::string& native_path);

// Sets HOMEDRIVE and HOMEPATH so that together they name `folder`, as Windows splits a profile
// folder between them.
void SetHomeDriveAndPath(const std::string& folder);
