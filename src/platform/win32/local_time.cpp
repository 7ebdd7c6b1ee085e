#include "platform/local_time.h"

namespace platform {

std::tm LocalTimeOf(std::time_t seconds) {
  std::tm fields{};
  localtime_s(&fields, &seconds);
  return fields;
}

std::tm LocalTimeNow() { return LocalTimeOf(std::time(nullptr)); }

}  // namespace platform
