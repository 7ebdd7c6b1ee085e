// The host's frame cache behind the PPix Cache suite: frames kept under (importer ID, stream
// index, frame number), where the frame number is whatever the plug-in passes. The cache holds
// one reference to each frame it keeps (see host_frames.h) and hands a new one out with every
// hit. Like the host's, it has a memory budget: past it, the least recently used frames leave.
// Thread-safe: host threads and the plug-in's command-link thread call it concurrently.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <tuple>

#include "host_sdk/premiere_media_records.h"
#include "host_sim/host_frames.h"

namespace host_sim {

class FrameCache {
 public:
  static constexpr size_t kDefaultCapacityBytes = size_t{1} << 30;

  // `frames` must outlive the cache. Lock order: the cache's mutex, then the frames'.
  explicit FrameCache(HostFrames& frames) : frames_(frames) {}
  FrameCache(const FrameCache&) = delete;
  FrameCache& operator=(const FrameCache&) = delete;

  // AddFrameToCache: keeps a reference to `frame` under the key, releasing any frame kept there
  // before. False, with nothing kept, for a frame that is not live.
  bool Add(uint32_t importer_id, int32_t stream, int32_t frame_number, PPixHand frame);

  // GetFrameFromCache: on a hit, a new reference to the kept frame, which the caller disposes;
  // null on a miss. A kept frame is a hit when it fits one of `formats` (a 0 member fits
  // anything); with no formats any kept frame fits.
  PPixHand Get(uint32_t importer_id, int32_t stream, int32_t frame_number,
               const imFrameFormat* formats, int32_t format_count);

  // ExpireAllPPixesFromCache: releases every kept frame, of every importer.
  void ExpireAll();

  // Bytes of kept frames past which the least recently used ones are released. Applies at once.
  void set_capacity_bytes(size_t bytes);

  int64_t hits() const;
  int64_t misses() const;
  int64_t expire_all_calls() const;
  int64_t evictions() const;  // frames released to stay within the budget
  size_t size() const;        // frames kept

 private:
  using Key = std::tuple<uint32_t, int32_t, int32_t>;
  struct Kept {
    PPixHand frame;
    size_t bytes;
    std::list<Key>::iterator use;  // its place in uses_
  };

  // REQUIRES: mutex_ held.
  void Release(std::map<Key, Kept>::iterator kept);
  void EvictBeyondCapacity();

  HostFrames& frames_;
  mutable std::mutex mutex_;
  std::map<Key, Kept> kept_;                       // guarded by mutex_
  std::list<Key> uses_;                            // guarded by mutex_; least recently used first
  size_t kept_bytes_ = 0;                          // guarded by mutex_
  size_t capacity_bytes_ = kDefaultCapacityBytes;  // guarded by mutex_
  int64_t hits_ = 0;                               // guarded by mutex_
  int64_t misses_ = 0;                             // guarded by mutex_
  int64_t expire_all_calls_ = 0;                   // guarded by mutex_
  int64_t evictions_ = 0;                          // guarded by mutex_
};

}  // namespace host_sim
