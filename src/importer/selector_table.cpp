#include "importer/selector_table.h"

#include <array>

#include "importer/start_up_and_shut_down.h"
#include "platform/sockets.h"

namespace {

int32_t OnInit(imStdParms* std_parms, void* param1, void*) {
  return StartUp(std_parms, static_cast<imImportInfoRec*>(param1), platform::StartSockets);
}

int32_t OnShutdown(imStdParms*, void*, void*) { return ShutDown(); }

// The importer keeps no metadata of its own: both metadata selectors succeed without effect.
int32_t OnMetaData(imStdParms*, void*, void*) { return imNoErr; }

int32_t OnGetSupports8(imStdParms*, void*, void*) { return malSupports8; }

std::array<SelectorHandler, kSelectorCount> MakeTable() {
  std::array<SelectorHandler, kSelectorCount> table{};
  table[imInit] = OnInit;
  table[imShutdown] = OnShutdown;
  table[imGetMetaData] = OnMetaData;
  table[imSetMetaData] = OnMetaData;
  table[imGetSupports8] = OnGetSupports8;
  return table;
}

}  // namespace

SelectorHandler HandlerOf(int32_t selector) {
  static const std::array<SelectorHandler, kSelectorCount> table = MakeTable();
  if (selector < 0 || selector >= kSelectorCount) return nullptr;
  return table[static_cast<size_t>(selector)];
}
