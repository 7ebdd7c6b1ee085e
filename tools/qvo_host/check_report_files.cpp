#include "qvo_host/check_report_files.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "qvo_host/contact_sheet.h"
#include "qvo_host/log_plot.h"
#include "qvo_host/log_summary.h"
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

}  // namespace

bool WriteCheckReport(const CheckReport& report, const CheckProfile& profile,
                      const std::string& folder) {
  const std::filesystem::path base = std::filesystem::u8path(folder);
  std::error_code error;
  std::filesystem::create_directories(base, error);
  bool written =
      Written(WriteText(base / "report.json", CheckReportJson(report)), base / "report.json");
  written =
      Written(WriteText(base / "report.md", CheckReportMarkdown(report)), base / "report.md") &&
      written;
  written =
      Written(WriteText(base / "Plugin.log", profile.LogText()), base / "Plugin.log") && written;
  if (!report.thumbnails.empty()) {
    const auto sheet = base / "contact_sheet.png";
    written = Written(WritePng(sheet.u8string(),
                               ContactSheet({{"frames", report.thumbnails}}, kThumbnailsPerRow)),
                      sheet) &&
              written;
  }
  const LogSummary summary = Summarize(profile.ParsedLogSoFar());
  if (!summary.stitching.empty()) {
    const auto plot = base / "stitching_time.png";
    written =
        Written(WriteTimePlot(StitchingTimePlot(summary, "Plugin.log"), plot.u8string()), plot) &&
        written;
  }
  return written;
}

}  // namespace host_sim
