#include "platform/local_time.h"

namespace platform {

std::tm LocalTimeNow() {
  std::time_t now = std::time(nullptr);
  return *std::localtime(&now);
}

}  // namespace platform
