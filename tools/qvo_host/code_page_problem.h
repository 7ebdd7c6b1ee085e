// Why a clip the host can open may still not reach the stitching library: the plug-in hands the
// library the path in the system code page, and a character that code page lacks becomes "?".
#pragma once

#include <string>

namespace host_sim {

// Empty when the system code page can spell `utf8_path`; otherwise a sentence saying it cannot.
std::string CodePageProblem(const std::string& utf8_path);

}  // namespace host_sim
