// The plug-in's one exported entry point. Host threads call it concurrently; it holds no lock and
// lets no exception out: each handler reports failure through its result code.
#include "host_sdk/premiere_importer.h"
#include "importer/selector_table.h"
#include "platform/export.h"

extern "C" QUORVEL_DLL_EXPORT int32_t xImportEntry(int32_t selector, imStdParms* std_parms,
                                                   void* param1, void* param2) {
  SelectorHandler handler = HandlerOf(selector);
  if (handler == nullptr) return imUnsupported;
  return CallHandler(selector, handler, std_parms, param1, param2);
}
