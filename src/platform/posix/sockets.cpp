#include "platform/sockets.h"

namespace platform {

// POSIX sockets need no start-up.
bool StartSockets() { return true; }

void StopSockets() {}

}  // namespace platform
