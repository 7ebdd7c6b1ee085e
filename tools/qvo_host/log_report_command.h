// qvo-host log-report: what a user's Plugin.log and its rotated files say happened.
#pragma once

#include <string>
#include <vector>

namespace host_sim {

// Reads `files` (Plugin.log and any Plugin.<time>.log), puts them in the order they were written,
// prints the summary on standard output and, when `png_path` is not empty, writes the stitching
// plot there. False when a file cannot be read or the plot cannot be written.
bool ReportLogs(const std::vector<std::string>& files, const std::string& png_path);

}  // namespace host_sim
