#include "platform/sockets.h"

#include <winsock2.h>

namespace platform {

bool StartSockets() {
  WSADATA data;
  return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

void StopSockets() { WSACleanup(); }

}  // namespace platform
