// The host's side of one plug-in session: start-up, the registration questions, shut-down.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/plugin_module.h"

namespace host_sim {

struct RegisteredFileType {
  int32_t file_type = 0;
  std::string name;
  std::string short_name;
  std::string extensions;
};

class HostSession {
 public:
  // `plugin` must outlive the session. `interface_version` is what the host reports in
  // imStdParms.
  HostSession(const PluginModule& plugin, int32_t interface_version);

  // Selector imInit with a record preset the way the host presets it; returns the result.
  int32_t StartUp(imImportInfoRec* capabilities);

  // Asks imGetIndFormat for index 0, 1, ... until the plug-in answers something other than
  // imNoErr; `last_result` receives that answer.
  std::vector<RegisteredFileType> FileTypes(int32_t* last_result);

  int32_t ShutDown();

 private:
  const PluginModule& plugin_;
  imStdParms std_parms_{};
};

}  // namespace host_sim
