#include "platform/environment.h"

#include <stdlib.h>

namespace platform {

std::optional<std::string> GetEnvironment(const std::string& name) {
  const char* value = getenv(name.c_str());
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void SetEnvironment(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

void UnsetEnvironment(const std::string& name) { unsetenv(name.c_str()); }

}  // namespace platform
