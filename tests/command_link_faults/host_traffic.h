// A host thread that keeps asking one open clip for frames and sound, as Premiere Pro's threads
// go on playing a clip while the command link is in trouble.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "host_sim/host_file.h"
#include "host_sim/host_session.h"

class HostTraffic {
 public:
  // Starts the thread. `clip` must be open and described, is driven by this thread alone until
  // Stop, and must outlive it, as must `session`.
  HostTraffic(host_sim::HostSession& session, host_sim::HostFile& clip);
  // Stops the thread.
  ~HostTraffic();
  HostTraffic(const HostTraffic&) = delete;
  HostTraffic& operator=(const HostTraffic&) = delete;

  // True when the thread has been served `count` more requests, each successfully, within
  // `timeout` from now.
  bool ServedMore(int64_t count, std::chrono::milliseconds timeout);

  // Requests that did not succeed so far.
  int64_t failures() const;

  // Ends the thread after its current request and joins it; later calls do nothing.
  void Stop();

 private:
  void Run();
  int32_t RequestFrame(int32_t index);
  int32_t RequestSound(int32_t index);

  host_sim::HostSession& session_;
  host_sim::HostFile& clip_;
  std::atomic<bool> stopping_{false};

  mutable std::mutex mutex_;
  std::condition_variable served_changed_;
  int64_t served_ = 0;    // guarded by mutex_
  int64_t failures_ = 0;  // guarded by mutex_

  std::thread thread_;  // last: it runs on everything above
};
