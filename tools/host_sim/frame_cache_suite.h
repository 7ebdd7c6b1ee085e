// "Premiere PPix Cache Suite" 6 over the current Host's frame cache (frame_cache.h): adding and
// finding frames by (importer ID, stream, frame number) and expiring them all. The other slots
// are not served. With no Host current every call answers kSuiteFailure. Any thread.
#pragma once

#include "host_sdk/premiere_suites.h"

namespace host_sim {

// A table of static storage duration, the same for every Host.
const PrSDKPPixCacheSuite* FrameCacheSuite();

}  // namespace host_sim
