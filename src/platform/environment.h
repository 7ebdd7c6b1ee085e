// Setting the process environment, for the host simulator and tests (the plug-in only reads it,
// through std::getenv).
#pragma once

#include <string>

namespace platform {

void SetEnvironment(const std::string& name, const std::string& value);
void UnsetEnvironment(const std::string& name);

}  // namespace platform
