// The imbalances the plug-in keeps on purpose: closing a file releases the audio suite twice, once
// for the file and once for its context; and an open whose Create failed leaves the file's private
// record allocated and locked. Neither the check nor the other commands call them faults.
#pragma once

#include <cstddef>

#include "host_sim/host_report.h"

namespace host_sim {

bool KeptByDesign(const SuiteBalance& suite);

// How many of the handles `report` lists as still locked are private records that failed opens
// kept (see RecordsKeptByFailedOpens).
size_t RecordsKeptByDesign(const HostReport& report);

// `report` without the imbalances the design keeps.
HostReport WithoutKeptByDesign(HostReport report);

}  // namespace host_sim
