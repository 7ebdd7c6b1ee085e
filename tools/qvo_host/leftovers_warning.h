// What a command says, after its output, of what the plug-in left with the host. The imbalance
// the design keeps is not a fault and goes unsaid, so that a clean run ends quietly.
#pragma once

#include <string>

#include "host_sim/host_report.h"

namespace host_sim {

// Empty when nothing but the design's own imbalance is left.
std::string LeftoversWarning(const HostReport& report);

}  // namespace host_sim
