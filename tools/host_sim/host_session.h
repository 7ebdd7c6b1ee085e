// The host's side of one plug-in session: start-up, the registration questions, saving and
// deleting files by path, shut-down. The session owns the process's Host (see host.h), so one
// session exists at a time. One thread drives it; the Host beneath it serves every thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host.h"
#include "host_sim/plugin_module.h"

namespace host_sim {

struct RegisteredFileType {
  int32_t file_type = 0;
  std::string name;
  std::string short_name;
  std::vector<std::string> extensions;  // without the dot
};

class HostSession {
 public:
  // `plugin` must be loaded and outlive the session. `interface_version` is what the host
  // reports in imStdParms.
  HostSession(const PluginModule& plugin, int32_t interface_version);

  Host& host() { return host_; }

  // xImportEntry with the host's standard parameters; returns the plug-in's result.
  int32_t Call(int32_t selector, void* param1, void* param2);

  // Selector imInit with a record preset the way the host presets it; returns the result.
  int32_t StartUp(imImportInfoRec* capabilities);

  // Asks imGetIndFormat for index 0, 1, ... until the plug-in answers something other than
  // imNoErr (or kMostListEntries times); `last_result` receives the last answer. The session keeps
  // the list for FileTypeFor.
  std::vector<RegisteredFileType> FileTypes(int32_t* last_result);

  // The registered type whose extensions hold `native_path`'s (letter case aside), as the host
  // picks the importer of a file; null when none does.
  const RegisteredFileType* FileTypeFor(const std::string& native_path) const;

  // imSaveFile8: copies, or moves when `move` is set, `source` to `destination` (UTF-8 paths).
  int32_t Save(const std::string& source, const std::string& destination, bool move);

  // imDeleteFile8 on the UTF-8 `native_path`.
  int32_t Delete(int32_t file_type, const std::string& native_path);

  int32_t ShutDown();

  // A fresh importer ID: the host's key for one file's frames in its cache.
  int32_t NextImporterId() { return next_importer_id_++; }

 private:
  const PluginModule& plugin_;
  Host host_;
  std::vector<RegisteredFileType> file_types_;
  int32_t next_importer_id_ = 1;
};

}  // namespace host_sim
