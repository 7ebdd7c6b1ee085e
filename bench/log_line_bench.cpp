// One Plugin.log line beside the least that the log's design needs for one line done directly:
// three fprintf, fflush, one file-status query, under a lock so that lines stay whole.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <mutex>
#include <string>

#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "platform/c_runtime_files.h"

namespace {

void BM_LogLine(benchmark::State& state) {
  PluginLog* log = PluginLog::Get();
  for (auto _ : state) {
    log->Write(kLogInfo, kLogSource, log_site::kReadFrameConsume, "read frame consume:%d", 3);
  }
}

struct DirectLog {
  DirectLog() : path(PluginLog::Get()->folder() + "/Direct.log") {
    file = platform::OpenTextFile(path, "a+");
  }
  std::string path;
  std::FILE* file;
  std::mutex mutex;
};

void BM_DirectLogLine(benchmark::State& state) {
  static DirectLog* direct = new DirectLog;
  int32_t size = 0;
  for (auto _ : state) {
    std::lock_guard<std::mutex> lock(direct->mutex);
    std::fprintf(direct->file, "%04d-%02d-%02d %02d:%02d:%02d %s ", 2026, 11, 16, 4, 33, 19,
                 "INFO ");
    std::fprintf(direct->file, "read frame consume:%d", 3);
    std::fprintf(direct->file, " %s:%d\n", kLogSource, log_site::kReadFrameConsume);
    std::fflush(direct->file);
    platform::FileSize32(direct->path, &size);
  }
}

}  // namespace

BENCHMARK(BM_LogLine)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(BM_DirectLogLine)->Threads(1)->Threads(2)->UseRealTime();
