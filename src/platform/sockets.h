// The operating system's sockets layer (Winsock on Windows; nothing to do on POSIX). Loading the
// plug-in starts nothing: the layer is started by the host's start-up and by whoever holds it.
#pragma once

namespace platform {

// Starts the sockets layer asking for version 2.2; true on success.
bool StartSockets();

// Stops the sockets layer once for every successful or failed start.
void StopSockets();

// Holds the sockets layer while it lives: started on construction, stopped on destruction when
// the start succeeded. Asio users declare it before their io_context.
class ScopedSockets {
 public:
  ScopedSockets() : started_(StartSockets()) {}
  ~ScopedSockets() {
    if (started_) StopSockets();
  }
  ScopedSockets(const ScopedSockets&) = delete;
  ScopedSockets& operator=(const ScopedSockets&) = delete;

 private:
  const bool started_;
};

}  // namespace platform
