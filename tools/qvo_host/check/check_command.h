// qvo-host check: a conformance run of the plug-in and the stitching library beside it, for the
// engineer who asks "does this plug-in work with our library and our files?". This is the judge: it
// makes the run's user profile, hands the calls into the plug-in to a worker process (see
// check_worker.h), keeps the verdicts, and starts a fresh worker for what remains when one crashes
// or hangs, so that every run ends in a verdict. Every check prints one line: "PASS  what  figure",
// "FAIL  what  figure" or "NOT RUN  what  why".
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "qvo_host/check/check_report.h"

namespace host_sim {

// Long enough for an 8K stereo frame on a slow graphics processor.
constexpr std::chrono::seconds kDefaultCallTimeout{30};

struct CheckOptions {
  std::string plugin_path;
  std::vector<std::string> files;
  int32_t random_frames = 4;  // frames checked beyond the first, the middle and the last
  std::string report_folder;  // empty: no report files
  std::chrono::milliseconds call_timeout = kDefaultCallTimeout;
  std::string worker_program;  // qvo-host; empty: the running program
};

// What is wrong with the run's inputs before anything runs (a clip or the plug-in that is not a
// file), as a message; empty when nothing is.
std::string InputProblem(const CheckOptions& options);

// Runs every check and returns what it found; the lines are printed as they come.
CheckReport RunCheck(const CheckOptions& options);

}  // namespace host_sim
