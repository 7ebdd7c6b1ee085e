// Milliseconds over frames or seconds as a picture a person can read on its own: a title, both
// axes with round numbers, the median and the 95th percentile of all points as lines with their
// values, and one colour per series named in a legend. A slow stretch, a stall or a slow clip
// shows at a glance.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "qvo_host/frame_image.h"

namespace host_sim {

struct PlotSeries {
  std::string label;                 // shown in the legend
  std::vector<double> x;             // frame index, or seconds
  std::vector<double> milliseconds;  // one value per x
};

struct TimePlot {
  std::string title;    // what the plot is of: the clip(s) or the log file
  std::string x_label;  // e.g. "frame" or "seconds"
  std::vector<PlotSeries> series;
};

// The picture's colours, for whoever reads it back: text and axes, the two percentile lines, and
// the colour of the series at `index` (distinct from one another and from the lines).
constexpr Rgb kPlotInk = {20, 20, 20};
constexpr Rgb kPlotMedian = {0, 140, 70};
constexpr Rgb kPlotPercentile95 = {210, 30, 30};
Rgb PlotSeriesColour(size_t index);

// The plot as an image; an empty image when there is no point.
RgbImage DrawTimePlot(const TimePlot& plot);

// Writes the plot as a PNG at `path` (UTF-8). False when there is no point or the file cannot be
// written.
bool WriteTimePlot(const TimePlot& plot, const std::string& path);

}  // namespace host_sim
