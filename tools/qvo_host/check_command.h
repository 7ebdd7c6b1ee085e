// qvo-host check: a conformance run of the plug-in and the stitching library beside it, for the
// engineer who asks "does this plug-in work with our library and our files?". It loads the plug-in
// as the host does, in a user profile of its own with a command server of its own, and checks what
// a host relies on without knowing what the pictures should look like. Every check prints one
// line: "PASS  what  figure" or "FAIL  what  figure".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qvo_host/check_report.h"

namespace host_sim {

struct CheckOptions {
  std::string plugin_path;
  std::vector<std::string> files;
  int32_t random_frames = 4;  // frames checked beyond the first, the middle and the last
  std::string report_folder;  // empty: no report files
};

// Runs every check and returns what it found; the lines are printed as they come.
CheckReport RunCheck(const CheckOptions& options);

}  // namespace host_sim
