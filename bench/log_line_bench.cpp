// One Plugin.log line beside the least that the log's design needs for one line done directly:
// three fprintf, fflush, one file-status query, under a lock so that lines stay whole; the two in
// turns. And the instructions of one line, counted under callgrind, the unit of a frame's counted
// overhead.
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "bench_host.h"
#include "counted_stretch.h"
#include "in_turns.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "platform/c_runtime_files.h"

namespace {

// Local time that moves on one second every thousand lines. A benchmark writes more than 5 MiB a
// second, and with the real clock every rotation but the first of a second would find its target
// taken and be tried again on every line (as the log does on purpose): that measures a flood no
// host makes, not a line.
std::tm SteadyRotationClock() {
  static const std::time_t start = std::time(nullptr);
  static std::atomic<int64_t> lines{0};
  const std::time_t now = start + static_cast<std::time_t>(lines++ / 1000);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

PluginLog* BenchLog() {
  static PluginLog* log = new PluginLog(SteadyRotationClock);
  return log;
}

void WriteLine(PluginLog* log) {
  log->Write(kLogInfo, kLogSource, log_site::kReadFrameConsume, "read frame consume:%d", 3);
}

// A line as the frame path pays for it: written after a frame of the argument's width has gone
// through the caches. Only the line is timed.
void BM_LogLineBetweenFrames(benchmark::State& state) {
  PluginLog* log = BenchLog();
  const auto width = static_cast<int32_t>(state.range(0));
  DirectSource source(*FlatClipOfWidth(width), width);
  int64_t index = 0;
  for (auto _ : state) {
    source.WriteFrame(index++);
    const auto start = std::chrono::steady_clock::now();
    WriteLine(log);
    state.SetIterationTime(Seconds(std::chrono::steady_clock::now() - start));
  }
}

// Lines after the first, so that the log file's opening is not a line's.
constexpr int kWarmUpLines = 100;

void BM_LogLineInstructions(benchmark::State& state) {
  PluginLog* log = BenchLog();
  for (int i = 0; i < kWarmUpLines; ++i) WriteLine(log);
  CountedStretch counted("log_line", state);
  for (auto _ : state) WriteLine(log);
}

struct DirectLog {
  DirectLog() : path(BenchLog()->folder() + "/Direct.log") {
    file = platform::OpenTextFile(path, "a+");
  }
  std::string path;
  std::FILE* file;
  std::mutex mutex;
};

void WriteDirectLine(DirectLog* direct) {
  int32_t size = 0;
  std::lock_guard<std::mutex> lock(direct->mutex);
  std::fprintf(direct->file, "%04d-%02d-%02d %02d:%02d:%02d %s ", 2026, 11, 16, 4, 33, 19, "INFO ");
  std::fprintf(direct->file, "read frame consume:%d", 3);
  std::fprintf(direct->file, " %s:%d\n", kLogSource, log_site::kReadFrameConsume);
  std::fflush(direct->file);
  platform::FileSize32(direct->path, &size);
}

// Lines a block at a time on the argument's number of threads, all writing the same log at once,
// so that each block's time is the log's throughput on that many threads. A block's time includes
// starting and joining its threads, a small share beside 500 lines, and the same on both sides.
constexpr int kBlockLines = 500;

template <typename WriteOne>
void WriteBlocks(int threads, WriteOne write_one) {
  std::vector<std::thread> writers;
  for (int t = 0; t < threads; ++t) {
    writers.emplace_back([write_one] {
      for (int i = 0; i < kBlockLines; ++i) write_one();
    });
  }
  for (std::thread& writer : writers) writer.join();
}

void BM_LogLineTurns(benchmark::State& state) {
  static DirectLog* direct = new DirectLog;
  PluginLog* log = BenchLog();
  const auto threads = static_cast<int>(state.range(0));
  RunInTurns(
      state, WallNanoseconds, [log, threads] { WriteBlocks(threads, [log] { WriteLine(log); }); },
      [threads] { WriteBlocks(threads, [] { WriteDirectLine(direct); }); });
}

}  // namespace

BENCHMARK(BM_LogLineTurns)->ArgName("threads")->Arg(1)->Arg(2)->UseRealTime();
BENCHMARK(BM_LogLineBetweenFrames)->Arg(3840)->Arg(7680)->UseManualTime();
BENCHMARK(BM_LogLineInstructions)->Iterations(1000);
