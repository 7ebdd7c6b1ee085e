// The host's "Premiere Time Suite", version 1: 254,016,000,000 ticks per second, a rate every
// common video frame rate and audio sample rate divides.
#pragma once

#include "host_sdk/premiere_suites.h"

namespace host_sim {

// A table of static storage duration; its functions keep no state.
const PrSDKTimeSuite* TimeSuite();

}  // namespace host_sim
