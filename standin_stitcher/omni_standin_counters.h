// Counters that the stand-in stitching library keeps for tests, benchmarks and the host
// simulator. Every function may be called from any thread at any time.
#pragma once

#include <cstdint>

#include "platform/export.h"

#if defined(OMNISTITCHER_BUILD)
#define OMNI_STANDIN_API QUORVEL_DLL_EXPORT
#else
#define OMNI_STANDIN_API QUORVEL_DLL_IMPORT
#endif

// The library calls that are counted, as the `call` argument of OmniStandin_CallCount.
enum OmniStandinCall : int32_t {
  kOmniStandinCreate = 0,
  kOmniStandinDestroy = 1,
  kOmniStandinGetVideoFrame = 2,
  kOmniStandinGetAudioFrame = 3,
  kOmniStandinUpdate = 4,
};
constexpr int32_t kOmniStandinCallKinds = 5;

extern "C" {

// Sources that exist now: created and not yet freed, whether or not a copy of the reference
// outlived its Destroy.
OMNI_STANDIN_API int64_t OmniStandin_LiveSources();

// Calls of `call` since the last reset: for `path`, byte for byte as it was passed to Create, or
// in total over every path when `path` is null. A path never seen counts 0; an unknown `call`
// gives -1. A Destroy of an empty reference is not counted.
OMNI_STANDIN_API int64_t OmniStandin_CallCount(int32_t call, const char* path);

// Sets every call counter to zero. Live sources, update generations, the Create calls that count
// toward `create_ok_times` and the faults that fired once are left as they are.
OMNI_STANDIN_API void OmniStandin_ResetCounters();

}  // extern "C"
