// What a conformance check found: one line per check, the figures of stitching time, and the
// pictures it looked at, kept for the report an engineer attaches to a release.
#pragma once

#include <string>
#include <vector>

#include "qvo_host/frame_image.h"

namespace host_sim {

struct CheckLine {
  std::string what;
  std::string figure;
  bool passed = false;
};

// Milliseconds per stitched frame: from the host's clock around each request that was not
// answered from its cache, and from the plug-in's "read frame consume" lines.
struct StitchingTimes {
  std::vector<double> host_ms;
  std::vector<double> library_ms;
};

class CheckReport {
 public:
  // Records a check and prints its line on standard output at once, so that a check that hangs
  // shows how far it got.
  void Add(const std::string& what, const std::string& figure, bool passed);

  const std::vector<CheckLine>& lines() const { return lines_; }
  // True when there is at least one line and every line passed.
  bool AllPassed() const;

  StitchingTimes& times() { return times_; }
  const StitchingTimes& times() const { return times_; }

  // Thumbnails of the checked frames, for the contact sheet; kept only when `keep_thumbnails`.
  bool keep_thumbnails = false;
  std::vector<RgbImage> thumbnails;

 private:
  std::vector<CheckLine> lines_;
  StitchingTimes times_;
};

// "PASS  what  figure" or "FAIL  what  figure".
std::string FormatCheckLine(const CheckLine& line);

// The p-th percentile (0 to 100, nearest rank) of `values`; 0 for none.
double Percentile(std::vector<double> values, int p);

// Every check with its figure and result, and the stitching times with their percentiles.
std::string CheckReportJson(const CheckReport& report);

// The same for a person: a verdict, a table of the checks, the failures named first.
std::string CheckReportMarkdown(const CheckReport& report);

}  // namespace host_sim
