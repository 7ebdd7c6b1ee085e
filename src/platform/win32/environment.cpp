#include "platform/environment.h"

#include <cstdlib>

namespace platform {

void SetEnvironment(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

// An empty value removes the variable from the C runtime's environment.
void UnsetEnvironment(const std::string& name) { _putenv_s(name.c_str(), ""); }

}  // namespace platform
