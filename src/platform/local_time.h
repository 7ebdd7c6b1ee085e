// The computer's local time at one-second resolution.
#pragma once

#include <ctime>

namespace platform {

// `seconds` since the epoch as local calendar fields. Thread-safe.
std::tm LocalTimeOf(std::time_t seconds);

std::tm LocalTimeNow();

}  // namespace platform
