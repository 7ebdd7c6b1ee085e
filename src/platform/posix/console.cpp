#include "platform/console.h"

#include <unistd.h>

namespace platform {

bool IsTerminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

}  // namespace platform
