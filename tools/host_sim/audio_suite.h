// "Premiere Audio Suite" 1: the importer acquires and releases it but converts nothing through
// it, so every slot answers kSuiteFailure and records the call with the current Host.
#pragma once

#include "host_sdk/premiere_suites.h"

namespace host_sim {

// A table of static storage duration, the same for every Host.
const PrSDKAudioSuite* AudioSuite();

}  // namespace host_sim
