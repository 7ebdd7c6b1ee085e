// The imbalance the plug-in keeps on purpose: closing a file releases the audio suite twice, once
// for the file and once for its context. Neither the check nor the other commands call it a fault.
#pragma once

#include "host_sim/host_report.h"

namespace host_sim {

bool KeptByDesign(const SuiteBalance& suite);

// `report` without the imbalances the design keeps.
HostReport WithoutKeptByDesign(HostReport report);

}  // namespace host_sim
