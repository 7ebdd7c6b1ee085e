// The plug-in's text log, Plugin.log, under <profile>\AppData\Local\quorvel\Adobe. Every Write
// appends one time-stamped line; at 5 MiB the file is moved aside under a time-stamped name.
// Logging never fails towards the caller: without a folder or file, lines are dropped, and the
// log's own complaints go to standard output only.
#pragma once

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>

#include "platform/compiler.h"
#include "platform/os_mutex.h"

using PluginLogLevel = uint8_t;
constexpr PluginLogLevel kLogError = 0;
constexpr PluginLogLevel kLogInfo = 1;
constexpr PluginLogLevel kLogDebug = 2;  // filtered out: never written

// The source file name that every call site passes.
constexpr char kLogSource[] = "SDK_File_Import";

class PluginLog {
 public:
  using LocalClock = std::tm (*)();

  // The process's log, made on first use and never destroyed (the file stays open until exit).
  static PluginLog* Get();

  // Finds the folder from USERPROFILE (else HOMEDRIVE + HOMEPATH), creates quorvel\Adobe below
  // an existing AppData\Local, and opens Plugin.log. `clock` gives the local time of each line.
  explicit PluginLog(LocalClock clock);
  ~PluginLog();
  PluginLog(const PluginLog&) = delete;
  PluginLog& operator=(const PluginLog&) = delete;

  // Writes "YYYY-MM-DD hh:mm:ss LEVEL <message> <file>:<line>". Thread-safe: one lock per line.
  void Write(PluginLogLevel level, const char* file, int32_t line, const char* format, ...)
      QUORVEL_PRINTF_FORMAT(5, 6);

  // The folder that holds Plugin.log, without a trailing separator; empty when none was found.
  const std::string& folder() const { return folder_; }

 private:
  bool FindFolder();
  void RotateWhenFull();  // REQUIRES: lock_ held

  // The size at which Plugin.log is moved aside: 5 MiB.
  static constexpr int32_t kMaxFileSize = 0x500000;
  // Lines of a level above this are dropped.
  static constexpr PluginLogLevel kMaxLevel = kLogInfo;

  // Held for one whole line and the rotation check after it.
  platform::OsMutex lock_;
  std::FILE* stream_ = nullptr;  // guarded by lock_
  std::string folder_;           // set by the constructor, read-only after
  const LocalClock clock_;
};
