#include "support/environment.h"

#include <cstdlib>

#include "platform/environment.h"

SavedEnvironment::SavedEnvironment(std::vector<std::string> names, bool unset) {
  for (std::string& name : names) {
    const char* value = std::getenv(name.c_str());
    saved_.emplace_back(name, value != nullptr ? std::optional<std::string>(value) : std::nullopt);
    if (unset) platform::UnsetEnvironment(name);
  }
}

SavedEnvironment::~SavedEnvironment() {
  for (const auto& [name, value] : saved_) {
    if (value) {
      platform::SetEnvironment(name, *value);
    } else {
      platform::UnsetEnvironment(name);
    }
  }
}
