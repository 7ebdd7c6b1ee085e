#include "platform/thread_id.h"

#include <windows.h>

namespace platform {

uint64_t CurrentThreadId() { return GetCurrentThreadId(); }

}  // namespace platform
