#include "logging/stream_logger.h"

#include <cstdio>
#include <ctime>

#include "platform/local_time.h"
#include "platform/thread_id.h"

namespace {

constexpr const char* kLevelWords[] = {"VERBOSE", "INFO", "WARNING", "ERROR"};

std::string FileNameOf(const std::string& file) {
  const size_t separator = file.find_last_of('\\');
  return separator == std::string::npos ? file : file.substr(separator + 1);
}

}  // namespace

LogOptions& LogOptions::Get() {
  static LogOptions options;
  return options;
}

LogSink& LogSink::Get() {
  static LogSink sink;
  return sink;
}

void LogSink::Write(const std::string& line) {
  std::lock_guard<std::mutex> lock(mutex_);
  std::fwrite(line.data(), 1, line.size(), stdout);
}

std::string StreamLogHead(StreamLogLevel level, uint64_t thread_id,
                          std::chrono::system_clock::time_point when, const std::string& file,
                          int32_t line) {
  const auto since_epoch =
      std::chrono::duration_cast<std::chrono::milliseconds>(when.time_since_epoch());
  const std::time_t seconds = std::chrono::system_clock::to_time_t(when);
  char clock_text[64];
  const std::tm local = platform::LocalTimeOf(seconds);
  std::strftime(clock_text, sizeof(clock_text), "%m-%d %H:%M:%S", &local);

  std::ostringstream head;
  head << '[' << kLevelWords[level] << "][0x" << std::hex << thread_id << std::dec << "]["
       << clock_text << '.' << since_epoch.count() % 1000 << "][" << FileNameOf(file) << ':' << line
       << ']';
  return head.str();
}

LogMessage::LogMessage(const std::string& file, const std::string&, int32_t line,
                       StreamLogLevel level) {
  stream_ << StreamLogHead(level, platform::CurrentThreadId(), std::chrono::system_clock::now(),
                           file, line);
}

LogMessage::~LogMessage() {
  stream_ << '\n';
  LogSink::Get().Write(stream_.str());
}
