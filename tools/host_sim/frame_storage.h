// The memory of one host frame: the picture's bytes, aligned, with room for guard bytes before and
// after them. With a guard page, an inaccessible page follows the picture so closely that a write
// past its end faults at once; the few bytes of slack before that page stay guard bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace host_sim {

class FrameStorage {
 public:
  FrameStorage() = default;
  // `picture_size` bytes aligned to `alignment`, with `guard_bytes` before them and, without a
  // guard page, after them too. picture() is null when the memory cannot be had.
  FrameStorage(size_t picture_size, size_t alignment, size_t guard_bytes, bool guard_page);
  ~FrameStorage();
  FrameStorage(FrameStorage&& other) noexcept;
  FrameStorage& operator=(FrameStorage&& other) noexcept;
  FrameStorage(const FrameStorage&) = delete;
  FrameStorage& operator=(const FrameStorage&) = delete;

  unsigned char* picture() const { return picture_; }
  // The guard bytes after the picture: all of them, or the slack before the guard page.
  size_t guard_after() const { return guard_after_; }

 private:
  void Free();

  std::unique_ptr<unsigned char[]> heap_;
  uint8_t* guarded_ = nullptr;  // from platform::AllocateGuarded
  unsigned char* picture_ = nullptr;
  size_t guard_after_ = 0;
};

}  // namespace host_sim
