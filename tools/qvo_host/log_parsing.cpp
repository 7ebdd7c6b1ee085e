#include "qvo_host/log_parsing.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace host_sim {
namespace {

constexpr char kSiteMark[] = " SDK_File_Import:";
constexpr size_t kStampLength = 19;  // "YYYY-MM-DD hh:mm:ss"
constexpr size_t kLevelLength = 5;   // "ERROR" or "INFO "

bool DigitsAt(const std::string& line, size_t first, size_t count) {
  for (size_t i = first; i < first + count; ++i) {
    if (i >= line.size() || !std::isdigit(static_cast<unsigned char>(line[i]))) return false;
  }
  return true;
}

int64_t NumberAt(const std::string& line, size_t first, size_t count) {
  return std::strtoll(line.substr(first, count).c_str(), nullptr, 10);
}

// Days from 1970-01-01 to the given civil date (proleptic Gregorian).
int64_t DaysFromCivil(int64_t year, int64_t month, int64_t day) {
  year -= month <= 2 ? 1 : 0;
  const int64_t era = (year >= 0 ? year : year - 399) / 400;
  const int64_t year_of_era = year - era * 400;
  const int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

// The time stamp and level of a line that begins an entry; false for any other line.
bool ParseStart(const std::string& line, LogEntry* entry) {
  if (line.size() < kStampLength + kLevelLength + 2 || !DigitsAt(line, 0, 4) || line[4] != '-' ||
      !DigitsAt(line, 5, 2) || line[7] != '-' || !DigitsAt(line, 8, 2) || line[10] != ' ' ||
      !DigitsAt(line, 11, 2) || line[13] != ':' || !DigitsAt(line, 14, 2) || line[16] != ':' ||
      !DigitsAt(line, 17, 2) || line[kStampLength] != ' ') {
    return false;
  }
  const std::string level = line.substr(kStampLength + 1, kLevelLength);
  if (level != "ERROR" && level != "INFO ") return false;
  entry->error = level == "ERROR";
  entry->seconds =
      DaysFromCivil(NumberAt(line, 0, 4), NumberAt(line, 5, 2), NumberAt(line, 8, 2)) * 86400 +
      NumberAt(line, 11, 2) * 3600 + NumberAt(line, 14, 2) * 60 + NumberAt(line, 17, 2);
  entry->message = line.substr(kStampLength + kLevelLength + 2);
  return true;
}

// Takes the call site off the end of `entry`'s message; false when it does not end with one.
bool TakeSite(LogEntry* entry) {
  const size_t mark = entry->message.rfind(kSiteMark);
  const size_t digits = mark + sizeof(kSiteMark) - 1;
  if (mark == std::string::npos || digits == entry->message.size() ||
      !DigitsAt(entry->message, digits, entry->message.size() - digits)) {
    return false;
  }
  entry->site = static_cast<int32_t>(NumberAt(entry->message, digits, std::string::npos));
  entry->message.resize(mark);
  return true;
}

}  // namespace

void ParsePluginLog(const std::string& text, ParsedLog* log) {
  LogEntry open;  // an entry whose message has not reached its call site yet
  int64_t open_lines = 0;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    start = end + 1;

    LogEntry entry;
    if (ParseStart(line, &entry)) {
      log->malformed_lines += open_lines;
      open_lines = 0;
      open = entry;
    } else if (open_lines > 0) {
      open.message += "\n" + line;
    } else {
      ++log->malformed_lines;
      continue;
    }
    ++open_lines;
    if (TakeSite(&open)) {
      log->entries.push_back(open);
      open_lines = 0;
    }
  }
  log->malformed_lines += open_lines;
}

ParsedLog CombineInWrittenOrder(std::vector<ParsedLog> logs) {
  std::stable_sort(logs.begin(), logs.end(), [](const ParsedLog& a, const ParsedLog& b) {
    if (a.entries.empty() || b.entries.empty()) return !a.entries.empty() && b.entries.empty();
    return a.entries.front().seconds < b.entries.front().seconds;
  });
  ParsedLog all;
  for (ParsedLog& log : logs) {
    all.entries.insert(all.entries.end(), log.entries.begin(), log.entries.end());
    all.malformed_lines += log.malformed_lines;
  }
  return all;
}

}  // namespace host_sim
