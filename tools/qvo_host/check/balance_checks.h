// The checks of what the plug-in leaves with the host once its files are closed and it has shut
// down: handles unlocked and given back, suites released. The imbalances the design keeps are
// listed as such and do not fail.
#pragma once

#include "host_sim/host_report.h"
#include "qvo_host/check/check_journal.h"

namespace host_sim {

// `host_report` is the host's report after the files were closed and the plug-in shut down.
void CheckBalance(const HostReport& host_report, CheckJournal* journal);

}  // namespace host_sim
