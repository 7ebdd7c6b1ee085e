// The checks read from the run's Plugin.log: every line whole and in the log's format, and the
// stitching time per frame from the host's clock beside the library's own "read frame consume".
#pragma once

#include "qvo_host/check/check_report.h"
#include "qvo_host/check/profile_log.h"

namespace host_sim {

// Reads the log of the finished run, adds the library's times to the report's times and the two
// lines.
void CheckLog(const ProfileLog& log, CheckReport* report);

}  // namespace host_sim
