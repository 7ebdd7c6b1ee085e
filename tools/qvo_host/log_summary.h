// What happened, told from Plugin.log and its rotated files: for support, who reads a user's log.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "qvo_host/log_parsing.h"

namespace host_sim {

struct StitchingSample {
  int64_t seconds = 0;  // the entry's time stamp
  int64_t milliseconds = 0;
  // The file of the "get source video" line before it, which the same fetch writes; empty when
  // the log holds none.
  std::string clip;
};

struct LogSummary {
  int64_t entries = 0;
  int64_t malformed_lines = 0;
  int64_t first_seconds = 0;  // time stamps of the first and last entries
  int64_t last_seconds = 0;

  int64_t start_ups = 0;
  int64_t shut_downs = 0;
  int64_t files_opened = 0;
  int64_t opens_failed = 0;
  int64_t files_closed = 0;

  int64_t frames_stitched = 0;
  // Every first try, from "read frame consume".
  std::vector<StitchingSample> stitching;
  int64_t first_tries_failed = 0;
  int64_t retries = 0;
  int64_t retries_failed = 0;

  int64_t sources_released = 0;  // at close or to make room after a failed frame
  int64_t sources_released_to_make_room = 0;
  int64_t sources_made_again = 0;  // seen from the frames that follow a release; sound says nothing
  int64_t sources_not_made_again = 0;

  int64_t link_requests = 0;
  std::map<std::string, int64_t> link_request_types;
  int64_t link_responses = 0;
  int64_t caches_expired = 0;

  // Every error message, with how often it was written.
  std::map<std::string, int64_t> errors;
};

LogSummary Summarize(const ParsedLog& log);

// The p-th percentile (0 to 100, nearest rank) of the stitching times; 0 without any.
int64_t StitchingPercentile(const LogSummary& summary, int32_t p);

// The summary as a person reads it, a few lines per subject.
std::string FormatSummary(const LogSummary& summary);

}  // namespace host_sim
