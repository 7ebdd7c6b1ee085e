#include "qvo_host/log_summary.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

namespace host_sim {
namespace {

// The plug-in's call sites, as its log shows them.
constexpr int32_t kStartUp = 2410;
constexpr int32_t kShutDown = 163;
constexpr int32_t kOpenFile = 856;
constexpr int32_t kOpenFailed = 862;
constexpr int32_t kCloseFile = 905;
constexpr int32_t kCleanUpResource = 1605;
constexpr int32_t kGetSourceVideo = 2269;
constexpr int32_t kReadFrameConsume = 2284;
constexpr int32_t kReadFrameResult = 2285;
constexpr int32_t kSecondTryResult = 2293;
constexpr int32_t kVideoSourceNotMade = 2276;
constexpr int32_t kAudioSourceNotMade = 1418;
constexpr int32_t kReceivedJson = 2527;
constexpr int32_t kRequestType = 737;
constexpr int32_t kResponse = 798;
constexpr int32_t kExpireAllCache = 818;

// The text after "prefix" in `message`, or the whole message.
std::string After(const std::string& message, const std::string& prefix) {
  return message.rfind(prefix, 0) == 0 ? message.substr(prefix.size()) : message;
}

int64_t NumberAfterColon(const std::string& message) {
  const size_t colon = message.rfind(':');
  return colon == std::string::npos ? 0 : std::strtoll(message.c_str() + colon + 1, nullptr, 10);
}

// Follows each file's source: released by "clean up resource", made again by the next frame;
// and the file whose frame is being stitched, named just before its time is logged.
class SourceTracker {
 public:
  void Opened(const std::string& path) { released_.erase(path); }
  void Closing() { closing_ = true; }
  // True when the release made room for a failed frame rather than closing the file.
  bool Released(const std::string& path) {
    released_.insert(path);
    const bool at_close = closing_;
    closing_ = false;
    return !at_close;
  }
  bool Fetching(const std::string& path) {
    last_fetched_ = path;
    return released_.erase(path) > 0;
  }
  const std::string& last_fetched() const { return last_fetched_; }

 private:
  std::set<std::string> released_;
  std::string last_fetched_;
  bool closing_ = false;
};

void Count(const LogEntry& entry, SourceTracker* sources, LogSummary* summary) {
  const std::string& message = entry.message;
  switch (entry.site) {
    case kStartUp:
      ++summary->start_ups;
      break;
    case kShutDown:
      ++summary->shut_downs;
      break;
    case kOpenFile:
      ++summary->files_opened;
      sources->Opened(After(message, "Open File: "));
      break;
    case kOpenFailed:
      ++summary->opens_failed;
      break;
    case kCloseFile:
      ++summary->files_closed;
      sources->Closing();
      break;
    case kCleanUpResource:
      ++summary->sources_released;
      if (sources->Released(After(message, "clean up resource:"))) {
        ++summary->sources_released_to_make_room;
      }
      break;
    case kGetSourceVideo:
      ++summary->frames_stitched;
      if (sources->Fetching(After(message, "get source video:"))) ++summary->sources_made_again;
      break;
    case kReadFrameConsume:
      summary->stitching.push_back(
          {entry.seconds, NumberAfterColon(message), sources->last_fetched()});
      break;
    case kReadFrameResult:
      if (NumberAfterColon(message) != 0) ++summary->first_tries_failed;
      break;
    case kSecondTryResult:
      ++summary->retries;
      if (NumberAfterColon(message) != 0) ++summary->retries_failed;
      break;
    case kVideoSourceNotMade:
    case kAudioSourceNotMade:
      ++summary->sources_not_made_again;
      break;
    case kReceivedJson:
      ++summary->link_requests;
      break;
    case kRequestType:
      ++summary->link_request_types[After(message, "Request Type: ")];
      break;
    case kResponse:
      ++summary->link_responses;
      break;
    case kExpireAllCache:
      ++summary->caches_expired;
      break;
    default:
      break;
  }
  if (entry.error) ++summary->errors[message];
}

std::string Clock(int64_t seconds) {
  char text[16];
  std::snprintf(text, sizeof(text), "%02lld:%02lld:%02lld",
                static_cast<long long>(seconds / 3600 % 24),
                static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
  return text;
}

}  // namespace

LogSummary Summarize(const ParsedLog& log) {
  LogSummary summary;
  summary.entries = static_cast<int64_t>(log.entries.size());
  summary.malformed_lines = log.malformed_lines;
  if (!log.entries.empty()) {
    summary.first_seconds = log.entries.front().seconds;
    summary.last_seconds = log.entries.back().seconds;
  }
  SourceTracker sources;
  for (const LogEntry& entry : log.entries) Count(entry, &sources, &summary);
  return summary;
}

int64_t StitchingPercentile(const LogSummary& summary, int32_t p) {
  if (summary.stitching.empty()) return 0;
  std::vector<int64_t> times;
  for (const StitchingSample& sample : summary.stitching) times.push_back(sample.milliseconds);
  std::sort(times.begin(), times.end());
  const size_t rank = (static_cast<size_t>(p) * times.size() + 99) / 100;
  return times[rank == 0 ? 0 : rank - 1];
}

std::string FormatSummary(const LogSummary& s) {
  std::ostringstream out;
  out << "log            " << s.entries << " lines from " << Clock(s.first_seconds) << " to "
      << Clock(s.last_seconds) << ", " << s.malformed_lines << " unreadable\n"
      << "plug-in        " << s.start_ups << " start-ups, " << s.shut_downs << " shut-downs\n"
      << "files          " << s.files_opened << " opened, " << s.opens_failed << " failed to open, "
      << s.files_closed << " closed\n"
      << "frames         " << s.frames_stitched << " stitched; " << s.first_tries_failed
      << " failed the first try, " << s.retries << " retried, " << s.retries_failed
      << " failed the retry too\n"
      << "stitching      median " << StitchingPercentile(s, 50) << " ms, 95th percentile "
      << StitchingPercentile(s, 95) << " ms, maximum " << StitchingPercentile(s, 100)
      << " ms, over " << s.stitching.size() << " frames\n"
      << "sources        " << s.sources_released << " released (" << s.sources_released_to_make_room
      << " to make room), " << s.sources_made_again << " made again for frames, "
      << s.sources_not_made_again << " could not be made again\n"
      << "command link   " << s.link_requests << " requests, " << s.link_responses << " responses, "
      << s.caches_expired << " host caches expired\n";
  for (const auto& [type, count] : s.link_request_types) {
    out << "                 " << count << " x " << type << "\n";
  }
  int64_t error_lines = 0;
  for (const auto& error : s.errors) error_lines += error.second;
  out << "errors         " << error_lines << " lines\n";
  for (const auto& [message, count] : s.errors) {
    out << "                 " << count << " x " << message << "\n";
  }
  return out.str();
}

}  // namespace host_sim
