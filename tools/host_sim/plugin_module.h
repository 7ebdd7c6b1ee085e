// The plug-in file, loaded the way the host loads it: the library, then its xImportEntry.
#pragma once

#include <cstdint>
#include <string>

#include "host_sdk/premiere_importer.h"
#include "platform/dynamic_library.h"

namespace host_sim {

class PluginModule {
 public:
  // Loads the file at `path` (UTF-8) and resolves xImportEntry; check loaded() and error().
  explicit PluginModule(const std::string& path);

  bool loaded() const { return entry_ != nullptr; }
  const std::string& error() const { return error_; }

  // Calls xImportEntry. REQUIRES: loaded().
  int32_t Call(int32_t selector, imStdParms* std_parms, void* param1, void* param2) const;

  // An exported symbol of the file, or null.
  void* Symbol(const char* name) const { return library_.Symbol(name); }

  // Unloads the file; true when the system reported success.
  bool Unload();

 private:
  platform::DynamicLibrary library_;
  xImportEntryFunc entry_ = nullptr;
  std::string error_;
};

// The plug-in file that the build places beside the running executable.
std::string DefaultPluginPath();

}  // namespace host_sim
