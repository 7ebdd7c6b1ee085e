// Milliseconds on the monotonic clock, for the timing lines of the frame path.
#pragma once

#include <chrono>
#include <cstdint>

class Stopwatch {
 public:
  Stopwatch() : started_(std::chrono::steady_clock::now()) {}

  void Restart() { started_ = std::chrono::steady_clock::now(); }

  int32_t ElapsedMilliseconds() const {
    return static_cast<int32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                    std::chrono::steady_clock::now() - started_)
                                    .count());
  }

 private:
  std::chrono::steady_clock::time_point started_;
};
