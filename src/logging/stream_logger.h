// A small stream-style logger that writes one bracketed diagnostic line to the standard output,
// never to Plugin.log:
//   [INFO][0x1f3c][11-16 04:33:19.7][SDK_File_Import:726]<streamed text>
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <sstream>
#include <string>

enum StreamLogLevel : int32_t {
  kStreamVerbose = 0,
  kStreamInfo = 1,
  kStreamWarning = 2,
  kStreamError = 3,
};

// Process-wide options, made on first use. Nothing changes them: the threshold stays 0, and a
// call site makes its line only while the threshold is below its own cut-off.
struct LogOptions {
  std::string log_file_name;
  int32_t threshold = 0;

  static LogOptions& Get();
};

// Where finished lines go: the standard output, one fwrite per line under the mutex, so lines
// from different threads never interleave.
class LogSink {
 public:
  static LogSink& Get();

  void Write(const std::string& line);

 private:
  std::mutex mutex_;
};

// The head of a line: level, thread id in hexadecimal, local month-day and time with the
// milliseconds of the same clock reading (no leading zeros), and the file name after its last
// backslash with the line number.
std::string StreamLogHead(StreamLogLevel level, uint64_t thread_id,
                          std::chrono::system_clock::time_point when, const std::string& file,
                          int32_t line);

// One line, built on the caller's stack and handed to the sink whole when it ends. `function`
// is accepted and not written.
class LogMessage {
 public:
  LogMessage(const std::string& file, const std::string& function, int32_t line,
             StreamLogLevel level);
  ~LogMessage();
  LogMessage(const LogMessage&) = delete;
  LogMessage& operator=(const LogMessage&) = delete;

  std::ostream& stream() { return stream_; }

 private:
  std::ostringstream stream_;
};
