#include "qvo_host/log_plot.h"

#include <map>

namespace host_sim {
namespace {

// The log names clips by their path on the user's system, whichever its separator.
std::string FileName(const std::string& path) {
  const size_t separator = path.find_last_of("/\\");
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

}  // namespace

TimePlot StitchingTimePlot(const LogSummary& summary, const std::string& title) {
  TimePlot plot;
  plot.title = title;
  plot.x_label = "seconds since the log's first entry";
  std::map<std::string, size_t> series_of_clip;
  for (const StitchingSample& sample : summary.stitching) {
    const auto [found, added] = series_of_clip.emplace(sample.clip, plot.series.size());
    if (added) plot.series.push_back({sample.clip.empty() ? title : FileName(sample.clip), {}, {}});
    PlotSeries& series = plot.series[found->second];
    series.x.push_back(static_cast<double>(sample.seconds - summary.first_seconds));
    series.milliseconds.push_back(static_cast<double>(sample.milliseconds));
  }
  return plot;
}

}  // namespace host_sim
