// Loading a plug-in file the way the host does: LoadLibraryW / GetProcAddress / FreeLibrary on
// Windows, dlopen / dlsym / dlclose on POSIX.
#pragma once

#include <string>

namespace platform {

class DynamicLibrary {
 public:
  // Loads `path` (UTF-8); check loaded() and error().
  explicit DynamicLibrary(const std::string& path);
  ~DynamicLibrary();  // unloads
  DynamicLibrary(const DynamicLibrary&) = delete;
  DynamicLibrary& operator=(const DynamicLibrary&) = delete;

  bool loaded() const { return handle_ != nullptr; }
  const std::string& error() const { return error_; }

  // The exported symbol `name`, or null.
  void* Symbol(const char* name) const;

  // Unloads now; true when the system reported success. Later calls do nothing.
  bool Unload();

 private:
  void* handle_ = nullptr;
  std::string error_;
};

// The folder of the running executable, without a trailing separator.
std::string ExecutableFolder();

// The file name of a plug-in or library built as `stem` on this system (e.g. ".prm" on Windows).
std::string PluginFileName(const std::string& stem);

// The file name of a program built as `stem` on this system (".exe" on Windows).
std::string ProgramFileName(const std::string& stem);

}  // namespace platform
