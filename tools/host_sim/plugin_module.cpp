#include "host_sim/plugin_module.h"

namespace host_sim {

PluginModule::PluginModule(const std::string& path) : library_(path) {
  if (!library_.loaded()) {
    error_ = "cannot load " + path + ": " + library_.error();
    return;
  }
  entry_ = reinterpret_cast<xImportEntryFunc>(library_.Symbol("xImportEntry"));
  if (entry_ == nullptr) error_ = path + " exports no xImportEntry";
}

int32_t PluginModule::Call(int32_t selector, imStdParms* std_parms, void* param1,
                           void* param2) const {
  return entry_(selector, std_parms, param1, param2);
}

bool PluginModule::Unload() {
  entry_ = nullptr;
  return library_.Unload();
}

std::string DefaultPluginPath() {
  return platform::ExecutableFolder() + "/" + platform::PluginFileName("QuorvelOmniImporter");
}

}  // namespace host_sim
