// What the stand-in remembers about one path for the rest of the process. The path's successive
// sources share it, so the update generation and the faults that fired once survive the release
// and re-creation of a source, as the real library's per-path state does.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>

#include "omni_standin_counters.h"

namespace omni_standin {

class PathState {
 public:
  void Count(OmniStandinCall call) { calls_[call].fetch_add(1, std::memory_order_relaxed); }
  int64_t Calls(OmniStandinCall call) const { return calls_[call].load(); }
  void ResetCalls() {
    for (auto& count : calls_) count.store(0);
  }

  uint64_t generation() const { return generation_.load(); }
  void AdvanceGeneration() { generation_.fetch_add(1); }

  // True the first time it is asked about `frame_index`, false ever after.
  bool FirstRequest(int64_t frame_index) {
    std::lock_guard<std::mutex> lock(mutex_);
    return requested_.insert(frame_index).second;
  }

  // How many pictures of `frame_index` were written before this one.
  int64_t PicturesBefore(int64_t frame_index) {
    std::lock_guard<std::mutex> lock(mutex_);
    return pictures_[frame_index]++;
  }

 private:
  std::array<std::atomic<int64_t>, kOmniStandinCallKinds> calls_{};
  std::atomic<uint64_t> generation_{0};
  std::mutex mutex_;
  std::set<int64_t> requested_;          // guarded by mutex_
  std::map<int64_t, int64_t> pictures_;  // guarded by mutex_
};

}  // namespace omni_standin
