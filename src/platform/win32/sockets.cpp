#include "platform/sockets.h"

#include <winsock2.h>
#include <asio/detail/winsock_init.hpp>

// Asio starts Winsock from a static initialiser in every file that includes it, which in a DLL
// runs under the loader lock, where the system forbids it. This object, constructed before any of
// Asio's, tells Asio that the plug-in starts and stops Winsock itself (StartSockets, at start-up).
#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4073)
#pragma init_seg(lib)
static asio::detail::winsock_init<>::manual manual_winsock_init;
#pragma warning(pop)
#else
static asio::detail::winsock_init<>::manual manual_winsock_init __attribute__((init_priority(101)));
#endif

namespace platform {

bool StartSockets() {
  WSADATA data;
  return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

void StopSockets() { WSACleanup(); }

}  // namespace platform
