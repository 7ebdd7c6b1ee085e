#include "platform/thread_id.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

uint64_t CurrentThreadId() { return static_cast<uint64_t>(syscall(SYS_gettid)); }

}  // namespace platform
