// The operating system's sockets layer (Winsock on Windows; nothing to do on POSIX).
#pragma once

namespace platform {

// Starts the sockets layer asking for version 2.2; true on success.
bool StartSockets();

// Stops the sockets layer once for every successful or failed start.
void StopSockets();

}  // namespace platform
