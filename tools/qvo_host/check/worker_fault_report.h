// The check worker's last words: when a call into the plug-in brings the worker down, one journal
// record tells the judge what killed it, where (inside the stitching library or the plug-in, as an
// offset from its load address), what address was touched and, for a write into the page after a
// host buffer, how far past the buffer's end it landed.
#pragma once

#include <string>

#include "qvo_host/check/check_journal.h"

namespace host_sim {

// Installs the handler; `journal` must live until the process ends.
void ReportFaultsTo(const CheckJournal& journal);

// Remembers where the loaded module `file_name` lies, so that a fault in it is named by the module
// and an offset. Call once it is loaded; false when it is not.
bool NameFaultsIn(const std::string& file_name);

}  // namespace host_sim
