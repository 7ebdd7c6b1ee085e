#include "qvo_host/check/log_checks.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace host_sim {
namespace {

constexpr char kConsumeLine[] = "read frame consume:";

std::string Percentiles(const std::vector<double>& values) {
  char text[96];
  std::snprintf(text, sizeof(text), "median %.2f, p95 %.2f, max %.2f ms", Percentile(values, 50),
                Percentile(values, 95), Percentile(values, 100));
  return text;
}

// The host's time less the library's, frame by frame. The frame checks stitch first and time
// every stitch, so the first lines of the log pair with the host's times in order.
std::vector<double> PluginShare(const StitchingTimes& times) {
  std::vector<double> share;
  const size_t frames = std::min(times.host_ms.size(), times.library_ms.size());
  for (size_t i = 0; i < frames; ++i) share.push_back(times.host_ms[i] - times.library_ms[i]);
  return share;
}

void CheckStitchingTime(CheckReport* report) {
  const StitchingTimes& times = report->times();
  const std::string figure =
      std::to_string(times.host_ms.size()) + " frames; host " + Percentiles(times.host_ms) +
      "; library (log) " + Percentiles(times.library_ms) +
      "; outside the library (plug-in and host) " + Percentiles(PluginShare(times));
  report->Add("stitching time", figure,
              !times.host_ms.empty() && times.library_ms.size() >= times.host_ms.size());
}

}  // namespace

void CheckLog(const ProfileLog& log, CheckReport* report) {
  const ParsedLog parsed = log.ParsedSoFar();
  for (const LogEntry& entry : parsed.entries) {
    if (entry.message.compare(0, sizeof(kConsumeLine) - 1, kConsumeLine) == 0) {
      report->times().library_ms.push_back(
          std::strtod(entry.message.c_str() + sizeof(kConsumeLine) - 1, nullptr));
    }
  }
  CheckStitchingTime(report);
  report->Add("Plugin.log: every line whole and in the log's format",
              std::to_string(parsed.entries.size()) + " entries, " +
                  std::to_string(parsed.malformed_lines) + " malformed lines",
              !parsed.entries.empty() && parsed.malformed_lines == 0);
}

}  // namespace host_sim
