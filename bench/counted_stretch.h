// Instructions counted deterministically, where a difference of a few microseconds on top of
// milliseconds is lost in the noise of time. Under `valgrind --tool=callgrind
// --collect-atstart=no` the instructions that one thread executes inside a CountedStretch are
// dumped under its name; outside valgrind both classes do nothing.
#pragma once

#include <valgrind/callgrind.h>

#include <string>

#include <benchmark/benchmark.h>

// Counts from its construction to its end, in a dump named "LABEL/requests:N" (N the benchmark's
// fixed iteration count), so that the reader can tell the count of one request.
class CountedStretch {
 public:
  CountedStretch(const std::string& label, const benchmark::State& state)
      : name_(label + "/requests:" + std::to_string(state.max_iterations)) {
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
  }
  ~CountedStretch() {
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name_.c_str());
  }
  CountedStretch(const CountedStretch&) = delete;
  CountedStretch& operator=(const CountedStretch&) = delete;

 private:
  std::string name_;
};

// Inside a CountedStretch, leaves out the host's own bookkeeping between requests. Outside one,
// what it counts is discarded when the next stretch starts.
class UncountedPause {
 public:
  UncountedPause() { CALLGRIND_TOGGLE_COLLECT; }
  ~UncountedPause() { CALLGRIND_TOGGLE_COLLECT; }
  UncountedPause(const UncountedPause&) = delete;
  UncountedPause& operator=(const UncountedPause&) = delete;
};
