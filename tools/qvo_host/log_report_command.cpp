#include "qvo_host/log_report_command.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "qvo_host/log_parsing.h"
#include "qvo_host/log_plot.h"
#include "qvo_host/log_summary.h"
#include "qvo_host/time_plot.h"

namespace host_sim {
namespace {

bool ReadFile(const std::string& path, std::string* text) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  if (!file) return false;
  std::ostringstream bytes;
  bytes << file.rdbuf();
  *text = bytes.str();
  return true;
}

// The log the user sent, by its file name, and how many more files came with it.
std::string PlotTitle(const std::vector<std::string>& files) {
  std::string title = std::filesystem::u8path(files.front()).filename().u8string();
  if (files.size() > 1) title += " and " + std::to_string(files.size() - 1) + " more";
  return title;
}

}  // namespace

bool ReportLogs(const std::vector<std::string>& files, const std::string& png_path) {
  std::vector<ParsedLog> logs;
  for (const std::string& path : files) {
    std::string text;
    if (!ReadFile(path, &text)) {
      std::fprintf(stderr, "qvo-host: cannot read %s\n", path.c_str());
      return false;
    }
    logs.emplace_back();
    ParsePluginLog(text, &logs.back());
  }
  const LogSummary summary = Summarize(CombineInWrittenOrder(std::move(logs)));
  std::printf("%s", FormatSummary(summary).c_str());
  if (png_path.empty()) return true;
  const TimePlot plot = StitchingTimePlot(summary, PlotTitle(files));
  if (!WriteTimePlot(plot, png_path)) {
    std::fprintf(stderr, "qvo-host: no stitching plot written to %s\n", png_path.c_str());
    return false;
  }
  std::printf("plot           %s: %lld s of log from left to right, %zu series\n", png_path.c_str(),
              static_cast<long long>(summary.last_seconds - summary.first_seconds),
              plot.series.size());
  return true;
}

}  // namespace host_sim
