// What a conformance check found: one line per check, the figures of stitching time, and the
// pictures it looked at, kept for the report an engineer attaches to a release.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qvo_host/frame_image.h"

namespace host_sim {

struct CheckLine {
  std::string what;
  std::string figure;  // for a check that did not run: why
  bool passed = false;
  bool ran = true;
};

struct ClipFrameTime {
  std::string clip;
  int64_t frame = 0;
  double ms = 0;
};

// Milliseconds per stitched frame: from the host's clock around each request that was not
// answered from its cache (all of them, and each with its clip and frame), and from the plug-in's
// "read frame consume" lines.
struct StitchingTimes {
  std::vector<double> host_ms;
  std::vector<ClipFrameTime> host_frames;
  std::vector<double> library_ms;
};

struct ClipThumbnail {
  std::string clip;
  RgbImage image;
};

class CheckReport {
 public:
  // Records a check and prints its line on standard output at once, so that a run shows how far
  // it got. A check that a fresh worker repeats is recorded once: a failure replaces a pass.
  void Add(const std::string& what, const std::string& figure, bool passed);
  // Records a check that could not run, and why.
  void AddNotRun(const std::string& what, const std::string& why);

  const std::vector<CheckLine>& lines() const { return lines_; }
  // True when there is at least one line and every check ran and passed.
  bool AllPassed() const;

  StitchingTimes& times() { return times_; }
  const StitchingTimes& times() const { return times_; }

  // Thumbnails of the checked frames, for the contact sheet, in the order they were checked.
  std::vector<ClipThumbnail> thumbnails;

 private:
  std::vector<CheckLine> lines_;
  StitchingTimes times_;
};

// "PASS  what  figure", "FAIL  what  figure" or "NOT RUN  what  why".
std::string FormatCheckLine(const CheckLine& line);

// The p-th percentile (0 to 100, nearest rank) of `values`; 0 for none.
double Percentile(std::vector<double> values, int p);

// Every check with its figure and result, and the stitching times with their percentiles.
std::string CheckReportJson(const CheckReport& report);

// The same for a person: a verdict, a table of the checks, the failures named first.
std::string CheckReportMarkdown(const CheckReport& report);

}  // namespace host_sim
