// Whether a standard stream is a terminal, for tools that rewrite a progress line in place there
// and write plain lines elsewhere.
#pragma once

#include <cstdio>

namespace platform {

bool IsTerminal(std::FILE* stream);

}  // namespace platform
