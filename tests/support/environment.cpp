#include "support/environment.h"

#include "platform/environment.h"

SavedEnvironment::SavedEnvironment(std::vector<std::string> names, bool unset) {
  for (std::string& name : names) {
    saved_.emplace_back(name, platform::GetEnvironment(name));
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
