// The operating system's id of the calling thread (GetCurrentThreadId on Windows).
#pragma once

#include <cstdint>

namespace platform {

uint64_t CurrentThreadId();

}  // namespace platform
