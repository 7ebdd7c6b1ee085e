// The host's C function tables: memory functions, utility functions and the basic suite. Their
// functions reach the state of the current Host (see host.h); with none current, they answer
// failure and hand out nothing.
#pragma once

#include "host_sdk/premiere_host_tables.h"

namespace host_sim {

// Tables of static storage duration, the same for every Host.
PlugMemoryFuncs* HostMemoryFunctions();
PlugUtilFuncs* HostUtilityFunctions();  // getSPBasicSuite answers HostBasicSuite()
SPBasicSuite* HostBasicSuite();

}  // namespace host_sim
