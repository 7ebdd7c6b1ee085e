// The plug-in's one exported entry point. Host threads call it concurrently; it holds no lock and
// lets no exception out: each handler reports failure through its result code, and anything that
// still escapes a handler (an allocation that fails, say) is logged and answered as a failure
// instead of unwinding into the host.
#include <exception>

#include "host_sdk/premiere_importer.h"
#include "importer/selector_table.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "platform/export.h"

extern "C" QUORVEL_DLL_EXPORT int32_t xImportEntry(int32_t selector, imStdParms* std_parms,
                                                   void* param1, void* param2) {
  SelectorHandler handler = HandlerOf(selector);
  if (handler == nullptr) return imUnsupported;
  try {
    return handler(std_parms, param1, param2);
  } catch (const std::exception& error) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kSelectorException,
                            "Selector %d failed: %s", selector, error.what());
  } catch (...) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kSelectorException,
                            "Selector %d failed: %s", selector, "unknown exception");
  }
  return malUnknownError;
}
