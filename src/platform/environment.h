// Reading and setting the process environment, for the host simulator and tests (the plug-in only
// reads it, through std::getenv). Names and values are UTF-8. On Windows they go through the wide
// environment, so that a value holding any path survives; the C runtime keeps the narrow copy
// that std::getenv reads in step, in the system code page, as a real host's environment is.
#pragma once

#include <optional>
#include <string>

namespace platform {

std::optional<std::string> GetEnvironment(const std::string& name);
void SetEnvironment(const std::string& name, const std::string& value);
void UnsetEnvironment(const std::string& name);

}  // namespace platform
