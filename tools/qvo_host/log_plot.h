// The stitching time of every frame over the log's time, as a picture: a slow stretch, a stall or
// a slow library shows at a glance.
#pragma once

#include <string>

#include "qvo_host/log_summary.h"

namespace host_sim {

// Writes the plot as a PNG at `path`: time from left to right across the log, milliseconds from
// the bottom up to the slowest frame, one dot a frame. False when there is no frame to plot or the
// file cannot be written.
bool WriteStitchingPlot(const LogSummary& summary, const std::string& path);

}  // namespace host_sim
