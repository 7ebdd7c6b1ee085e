// The program's command line as UTF-8, the program's name first. Windows hands a narrow main its
// arguments in the system code page, which cannot spell every path a user can name, so there they
// come from the wide command line; POSIX hands them over as they are.
#pragma once

#include <string>
#include <vector>

namespace platform {

std::vector<std::string> Utf8CommandLine(int argc, char** argv);

}  // namespace platform
