#include "logging/plugin_log.h"

#include <cstdarg>
#include <cstdlib>

#include "platform/c_runtime_files.h"
#include "platform/local_time.h"

namespace {

// Each level word sits in a fixed slot; "INFO " keeps the message column in line with "ERROR".
constexpr char kLevelWords[3][10] = {"ERROR", "INFO ", "DEBUG"};

}  // namespace

PluginLog* PluginLog::Get() {
  static PluginLog* const log = new PluginLog(platform::LocalTimeNow);
  return log;
}

PluginLog::PluginLog(LocalClock clock) : clock_(clock) {
  if (!lock_.valid()) std::printf("CreateMutex fail\r\n");
  if (!FindFolder()) return;
  stream_ = platform::OpenTextFile(folder_ + "\\Plugin.log", "a+");
  if (stream_ == nullptr) std::printf("Open log file fail\r\n");
}

PluginLog::~PluginLog() {
  if (stream_ != nullptr) std::fclose(stream_);
}

bool PluginLog::FindFolder() {
  if (const char* profile = std::getenv("USERPROFILE")) {
    folder_ = profile;
  } else {
    const char* drive = std::getenv("HOMEDRIVE");
    if (drive == nullptr) {
      std::printf("Not able to get HomeDrive");
      return false;
    }
    folder_ = drive;
    const char* path = std::getenv("HOMEPATH");
    // The same text for both variables, on purpose.
    if (path == nullptr) {
      std::printf("Not able to get HomeDrive");
      return false;
    }
    folder_ += path;
  }
  folder_ += "\\AppData\\Local";
  // The local application-data folder belongs to the system; the log never creates it.
  if (!platform::PathExists(folder_)) {
    std::printf("HOME\\AppData\\Local dir not exist\n");
    return false;
  }
  for (const char* level : {"\\quorvel", "\\Adobe"}) {
    folder_ += level;
    if (!platform::PathExists(folder_)) platform::MakeDirectory(folder_);
  }
  return true;
}

void PluginLog::Write(PluginLogLevel level, const char* file, int32_t line, const char* format,
                      ...) {
  if (level > kMaxLevel) return;
  platform::OsMutexLock lock(lock_);
  std::tm now = clock_();
  if (stream_ != nullptr) {
    std::fprintf(stream_, "%04d-%02d-%02d %02d:%02d:%02d %s ", now.tm_year + 1900, now.tm_mon + 1,
                 now.tm_mday, now.tm_hour, now.tm_min, now.tm_sec, kLevelWords[level]);
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stream_, format, arguments);
    va_end(arguments);
    std::fprintf(stream_, " %s:%d\n", file, line);
    std::fflush(stream_);
    RotateWhenFull();
  }
}

void PluginLog::RotateWhenFull() {
  // The file was opened with a backslash; both separators name the same file.
  const std::string current = folder_ + "/Plugin.log";
  int32_t size = 0;
  if (!platform::FileSize32(current, &size) || size < kMaxFileSize) return;
  std::fclose(stream_);
  stream_ = nullptr;

  std::tm now = clock_();
  char name[256];
  std::snprintf(name, sizeof(name), "/Plugin.%04d_%02d_%02d_%02d_%02d_%02d.log", now.tm_year + 1900,
                now.tm_mon + 1, now.tm_mday, now.tm_hour, now.tm_min, now.tm_sec);
  // When the target exists (two rotations within one second) the file goes on growing and the
  // next line tries again.
  platform::RenameFile(current, folder_ + name);

  stream_ = platform::OpenTextFile(current, "a+");
  if (stream_ == nullptr) std::printf("Failed to open log file.\r\n");
}
