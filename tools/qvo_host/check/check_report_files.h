// The report folder of a check, what an engineer attaches to a release or sends to support:
// report.json (every check and figure), report.md (the same for a person), contact_sheet.png (the
// checked frames), stitching_time.png (the stitching time of every frame), Plugin.log, and
// worker_output.txt (what the plug-in and the library printed in the check's workers).
#pragma once

#include <string>

#include "qvo_host/check/check_profile.h"
#include "qvo_host/check/check_report.h"

namespace host_sim {

// Makes `folder` as needed and writes the files; false, saying why on standard error, when one
// cannot be written.
bool WriteCheckReport(const CheckReport& report, const CheckProfile& profile,
                      const std::string& worker_output, const std::string& folder);

}  // namespace host_sim
