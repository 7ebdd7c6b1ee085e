// Two ways of doing the same work, the plug-in's and the least it needs done directly, taken in
// turns within one benchmark and each side timed on its own. Both sides then meet the same moments
// of the machine (its disk, its memory bus, other programs on the processors), so their ratio holds
// steady where that of two benchmarks run seconds apart does not. The order alternates, so that
// neither side always runs just after the other.
#pragma once

#include <benchmark/benchmark.h>
#include <time.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>

// Nanoseconds on the wall clock, or of the calling thread's processor time, from some start.
inline int64_t WallNanoseconds() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

inline int64_t ThreadProcessorNanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return int64_t{now.tv_sec} * 1000000000 + now.tv_nsec;
}

// Runs `plugin` and `direct` once each per iteration. Sets the counters "direct_share", the direct
// side's time over the plug-in's, and "plugin_us" and "direct_us", each side's microseconds per
// iteration.
template <typename Plugin, typename Direct>
void RunInTurns(benchmark::State& state, int64_t (*now)(), Plugin plugin, Direct direct) {
  int64_t plugin_time = 0;
  int64_t direct_time = 0;
  bool plugin_first = true;
  for (auto _ : state) {
    for (const bool plugin_side : {plugin_first, !plugin_first}) {
      const int64_t start = now();
      if (plugin_side) {
        plugin();
      } else {
        direct();
      }
      (plugin_side ? plugin_time : direct_time) += now() - start;
    }
    plugin_first = !plugin_first;
  }
  state.counters["direct_share"] =
      plugin_time > 0 ? static_cast<double>(direct_time) / plugin_time : 0.0;
  state.counters["plugin_us"] =
      benchmark::Counter(plugin_time / 1000.0, benchmark::Counter::kAvgIterations);
  state.counters["direct_us"] =
      benchmark::Counter(direct_time / 1000.0, benchmark::Counter::kAvgIterations);
}
