// Reading Plugin.log back: each line as the plug-in writes it,
// "YYYY-MM-DD hh:mm:ss LEVEL message SDK_File_Import:N", where LEVEL is "ERROR" or "INFO ".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host_sim {

struct LogEntry {
  int64_t seconds = 0;  // the time stamp as seconds since 1970-01-01 00:00:00 of its own clock
  bool error = false;
  std::string message;
  int32_t site = 0;  // the number after "SDK_File_Import:"
};

struct ParsedLog {
  std::vector<LogEntry> entries;  // in the order read
  // Lines that are no whole entry: torn by a crash or a full disk, cut by hand, or not the log's.
  int64_t malformed_lines = 0;
};

// Adds the entries of one file's text to `log`. A message holding line breaks (a received request,
// say) goes on over the following lines up to the one that ends with the call site.
void ParsePluginLog(const std::string& text, ParsedLog* log);

// One log of several files' logs, put in the order they were written: rotated files hold older
// lines than the one still written to, so each file's first time stamp says where it goes; a file
// without any entry goes last.
ParsedLog CombineInWrittenOrder(std::vector<ParsedLog> logs);

}  // namespace host_sim
