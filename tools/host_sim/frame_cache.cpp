#include "host_sim/frame_cache.h"

#include <iterator>

namespace host_sim {
namespace {

bool Fits(const HostFrame& frame, const imFrameFormat& format) {
  const int32_t width = format.inFrameWidth;
  const int32_t height = format.inFrameHeight;
  const PrPixelFormat pixel_format = format.inPixelFormat;
  return (width == 0 || width == frame.width) && (height == 0 || height == frame.height) &&
         (pixel_format == 0 || pixel_format == frame.format);
}

bool FitsAny(const HostFrame& frame, const imFrameFormat* formats, int32_t format_count) {
  if (formats == nullptr || format_count <= 0) return true;
  for (int32_t i = 0; i < format_count; ++i) {
    if (Fits(frame, formats[i])) return true;
  }
  return false;
}

}  // namespace

bool FrameCache::Add(uint32_t importer_id, int32_t stream, int32_t frame_number, PPixHand frame) {
  std::lock_guard<std::mutex> lock(mutex_);
  const HostFrame* live = frames_.AddReference(frame);
  if (live == nullptr) return false;
  const Key key{importer_id, stream, frame_number};
  auto previous = kept_.find(key);
  if (previous != kept_.end()) Release(previous);
  uses_.push_back(key);
  kept_.emplace(key, Kept{frame, live->size, std::prev(uses_.end())});
  kept_bytes_ += live->size;
  EvictBeyondCapacity();
  return true;
}

PPixHand FrameCache::Get(uint32_t importer_id, int32_t stream, int32_t frame_number,
                         const imFrameFormat* formats, int32_t format_count) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto kept = kept_.find(Key{importer_id, stream, frame_number});
  const HostFrame* frame = kept == kept_.end() ? nullptr : frames_.Find(kept->second.frame);
  if (frame == nullptr || !FitsAny(*frame, formats, format_count)) {
    ++misses_;
    return nullptr;
  }
  frames_.AddReference(kept->second.frame);
  ++hits_;
  uses_.splice(uses_.end(), uses_, kept->second.use);
  return kept->second.frame;
}

void FrameCache::ExpireAll() {
  std::lock_guard<std::mutex> lock(mutex_);
  ++expire_all_calls_;
  while (!kept_.empty()) Release(kept_.begin());
}

void FrameCache::set_capacity_bytes(size_t bytes) {
  std::lock_guard<std::mutex> lock(mutex_);
  capacity_bytes_ = bytes;
  EvictBeyondCapacity();
}

void FrameCache::Release(std::map<Key, Kept>::iterator kept) {
  frames_.Dispose(kept->second.frame);
  kept_bytes_ -= kept->second.bytes;
  uses_.erase(kept->second.use);
  kept_.erase(kept);
}

void FrameCache::EvictBeyondCapacity() {
  while (kept_bytes_ > capacity_bytes_ && !uses_.empty()) {
    Release(kept_.find(uses_.front()));
    ++evictions_;
  }
}

int64_t FrameCache::hits() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return hits_;
}

int64_t FrameCache::misses() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return misses_;
}

int64_t FrameCache::expire_all_calls() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return expire_all_calls_;
}

int64_t FrameCache::evictions() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return evictions_;
}

size_t FrameCache::size() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return kept_.size();
}

}  // namespace host_sim
