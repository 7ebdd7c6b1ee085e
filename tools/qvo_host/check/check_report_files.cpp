#include "qvo_host/check/check_report_files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "qvo_host/contact_sheet.h"
#include "qvo_host/png_export.h"
#include "qvo_host/time_plot.h"

namespace host_sim {
namespace {

constexpr int32_t kThumbnailsPerRow = 6;

bool WriteText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  return static_cast<bool>(file);
}

bool Written(bool written, const std::filesystem::path& path) {
  if (!written) std::fprintf(stderr, "qvo-host: cannot write %s\n", path.u8string().c_str());
  return written;
}

// A clip is named by its file name: the folders would crowd the pictures.
std::string ClipLabel(const std::string& clip) {
  return std::filesystem::u8path(clip).filename().u8string();
}

// One row of the sheet per clip, in the order the clips were checked.
std::vector<LabelledThumbnails> ThumbnailsByClip(const std::vector<ClipThumbnail>& thumbnails) {
  std::vector<LabelledThumbnails> clips;
  for (const ClipThumbnail& thumbnail : thumbnails) {
    const std::string label = ClipLabel(thumbnail.clip);
    if (clips.empty() || clips.back().label != label) clips.push_back({label, {}});
    clips.back().thumbnails.push_back(thumbnail.image);
  }
  return clips;
}

// The host's time of every stitched frame over the frame's index, one series per clip.
TimePlot StitchingTimeByClip(const std::vector<ClipFrameTime>& times) {
  TimePlot plot;
  plot.x_label = "frame";
  for (const ClipFrameTime& time : times) {
    const std::string label = ClipLabel(time.clip);
    auto series = std::find_if(plot.series.begin(), plot.series.end(),
                               [&label](const PlotSeries& each) { return each.label == label; });
    if (series == plot.series.end()) {
      series = plot.series.insert(plot.series.end(), PlotSeries{label, {}, {}});
    }
    series->x.push_back(static_cast<double>(time.frame));
    series->milliseconds.push_back(time.ms);
  }
  plot.title = "Stitching time per frame as the host waited for it, " +
               std::to_string(plot.series.size()) +
               (plot.series.size() == 1 ? " clip: " + plot.series[0].label : " clips");
  return plot;
}

}  // namespace

bool WriteCheckReport(const CheckReport& report, const CheckProfile& profile,
                      const std::string& worker_output, const std::string& folder) {
  const std::filesystem::path base = std::filesystem::u8path(folder);
  std::error_code error;
  std::filesystem::create_directories(base, error);
  bool written =
      Written(WriteText(base / "report.json", CheckReportJson(report)), base / "report.json");
  written =
      Written(WriteText(base / "report.md", CheckReportMarkdown(report)), base / "report.md") &&
      written;
  written =
      Written(WriteText(base / "Plugin.log", profile.log().Text()), base / "Plugin.log") && written;
  written =
      Written(WriteText(base / "worker_output.txt", worker_output), base / "worker_output.txt") &&
      written;
  if (!report.thumbnails.empty()) {
    const auto sheet = base / "contact_sheet.png";
    written = Written(WritePng(sheet.u8string(), ContactSheet(ThumbnailsByClip(report.thumbnails),
                                                              kThumbnailsPerRow)),
                      sheet) &&
              written;
  }
  const TimePlot plot = StitchingTimeByClip(report.times().host_frames);
  if (!plot.series.empty()) {
    const auto path = base / "stitching_time.png";
    written = Written(WriteTimePlot(plot, path.u8string()), path) && written;
  }
  return written;
}

}  // namespace host_sim
