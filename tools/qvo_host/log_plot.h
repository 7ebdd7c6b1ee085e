// The stitching time of every frame over the log's time, as the log report draws it: a slow
// stretch, a stall or a slow clip shows at a glance.
#pragma once

#include <string>

#include "qvo_host/log_summary.h"
#include "qvo_host/time_plot.h"

namespace host_sim {

// Titled `title`, seconds since the log's first entry across, one series per clip (named by its
// file name) for the frames whose clip the log names, and one named `title` for any others.
TimePlot StitchingTimePlot(const LogSummary& summary, const std::string& title);

}  // namespace host_sim
