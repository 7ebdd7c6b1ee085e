#include "host_sim/frame_storage.h"

#include <memory>
#include <new>
#include <utility>

#include "platform/guarded_memory.h"
#include "platform/pages.h"

namespace host_sim {

FrameStorage::FrameStorage(size_t picture_size, size_t alignment, size_t guard_bytes,
                           bool guard_page) {
  if (guard_page) {
    guarded_ = platform::AllocateGuarded(picture_size, alignment, guard_bytes);
    if (guarded_ == nullptr) return;
    picture_ = guarded_;
    const uintptr_t end = reinterpret_cast<uintptr_t>(picture_) + picture_size;
    guard_after_ = (platform::PageSize() - end % platform::PageSize()) % platform::PageSize();
    return;
  }
  const size_t guarded_size = guard_bytes + picture_size + guard_bytes;
  size_t room = guarded_size + alignment - 1;
  heap_.reset(new (std::nothrow) unsigned char[room]);
  if (heap_ == nullptr) return;
  void* start = heap_.get() + guard_bytes;
  room -= guard_bytes;
  std::align(alignment, picture_size + guard_bytes, start, room);
  picture_ = static_cast<unsigned char*>(start);
  guard_after_ = guard_bytes;
}

FrameStorage::~FrameStorage() { Free(); }

FrameStorage::FrameStorage(FrameStorage&& other) noexcept { *this = std::move(other); }

FrameStorage& FrameStorage::operator=(FrameStorage&& other) noexcept {
  if (this != &other) {
    Free();
    heap_ = std::move(other.heap_);
    guarded_ = std::exchange(other.guarded_, nullptr);
    picture_ = std::exchange(other.picture_, nullptr);
    guard_after_ = std::exchange(other.guard_after_, 0);
  }
  return *this;
}

void FrameStorage::Free() {
  platform::FreeGuarded(guarded_);
  guarded_ = nullptr;
  heap_.reset();
  picture_ = nullptr;
}

}  // namespace host_sim
