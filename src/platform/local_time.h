// The computer's local time at one-second resolution.
#pragma once

#include <ctime>

namespace platform {

// Uses the C runtime's shared conversion buffer: callers serialise calls.
std::tm LocalTimeNow();

}  // namespace platform
