// The line number that each log call site shows after "SDK_File_Import:". They are fixed, not
// __LINE__, so that lines read the same from release to release and support can find a message
// by its number.
#pragma once

#include <cstdint>

namespace log_site {

constexpr int32_t kWsaStartupFailure = 118;
constexpr int32_t kShuttingDown = 163;
constexpr int32_t kCommandThreadStartFailure = 131;
constexpr int32_t kCommandThreadStart = 2410;

}  // namespace log_site
