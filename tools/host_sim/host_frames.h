// The host's frames (PPix): pixel buffers the host makes when the plug-in asks, handed out as
// handles and reached only through the frame suites. A frame counts references, as the host's
// frames do: creating one gives the creator a reference, the frame cache keeps one of its own and
// hands a new one out with every hit, and Dispose gives one back; the last one frees the frame.
// Whatever is left is freed with the HostFrames. Every buffer sits between guard bytes: a write
// outside it is recorded as a fault when the frame is freed or reported. With guard pages on, an
// inaccessible page follows each buffer, so that a write past its end faults at once. Thread-safe:
// host threads, the plug-in's threads and the frame cache call it concurrently.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "host_sdk/premiere_types.h"
#include "host_sim/frame_storage.h"
#include "host_sim/host_report.h"

namespace host_sim {

// One plane of a frame.
struct FramePlane {
  uint8_t* bytes = nullptr;  // the first row, 16-byte aligned
  int32_t row_length = 0;    // bytes of picture in a row
  int32_t rows = 0;
  int32_t row_bytes = 0;  // from one row to the next: row_length and the padding after it
};

// A frame as the host made it. Planar frames (the YUV 4:2:0 format) have three planes, Y, U and V,
// the chroma ones at half width and half height rounded up; packed frames have one.
struct HostFrame {
  PrPixelFormat format = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool planar = false;
  int32_t plane_count = 0;
  FramePlane planes[3];
  size_t size = 0;  // bytes of the whole buffer, every plane and padding included
};

class HostFrames {
 public:
  // Every byte of a new frame, padding included, so that bytes nobody wrote stand out.
  static constexpr uint8_t kFreshByte = 0xCD;
  // The bytes just before and after every buffer, which nobody may write.
  static constexpr uint8_t kGuardByte = 0xA5;
  static constexpr size_t kGuardBytes = 64;
  // Neither side of a frame may exceed this many pixels.
  static constexpr int32_t kLargestSide = 65536;

  HostFrames() = default;
  HostFrames(const HostFrames&) = delete;
  HostFrames& operator=(const HostFrames&) = delete;

  // Bytes added after each row of the packed frames made from now on (default 0).
  void set_row_padding(int32_t bytes);
  // Bytes added to each plane's row before it is rounded up to 16, for the planar frames made
  // from now on (default 0).
  void set_plane_padding(int32_t bytes);

  // With recycling on, a freed frame's buffer is kept and handed to the next frame of the same
  // size, its bytes left as they were (only its guards are laid again), so that a benchmark
  // measures the plug-in rather than the host's allocation and filling (default off).
  void set_recycling(bool recycle);

  // With guard pages on, each frame made from now on ends within 16 bytes of an inaccessible page
  // (default off): for a host that must turn any write past a frame into a fault at its first byte.
  void set_guard_pages(bool guard_pages);

  // A frame of `format` (not PrPixelFormat_Any) and that size, with one reference; null when the
  // format or size is refused or the memory cannot be had.
  PPixHand Create(PrPixelFormat format, int32_t width, int32_t height);

  // The live frame behind `handle`, or null. The frame stays valid until its last reference is
  // disposed or the HostFrames ends; read it from one thread at a time.
  const HostFrame* Find(PPixHand handle) const;

  // One more reference to a live frame, which it returns; null for an unknown one.
  const HostFrame* AddReference(PPixHand handle);
  // Gives back one reference; the last one frees the frame. False, and a recorded fault, for an
  // unknown frame.
  bool Dispose(PPixHand handle);

  // References held to the frame, or 0 when it is not live.
  int32_t References(PPixHand handle) const;
  size_t live_count() const;

  // Misuse by the plug-in: a suite call with a frame that is not live, and the like.
  void RecordFault(const std::string& fault);

  // Fills the frame list of `report`, with a fault for every live frame written outside.
  void AddToReport(HostReport* report) const;

 private:
  struct Entry {
    FrameStorage storage;
    std::unique_ptr<PPix*> master;  // the handle's target; *master is the buffer
    HostFrame frame;
    int32_t references = 0;
  };

  // The fault of a frame whose guard bytes were written, or empty.
  static std::string GuardFault(const Entry& entry);

  mutable std::mutex mutex_;
  std::unordered_map<PPixHand, Entry> frames_;  // guarded by mutex_
  // Buffers of freed frames by their picture's size, while recycling is on; guarded by mutex_.
  std::unordered_multimap<size_t, FrameStorage> recycled_;
  bool recycling_ = false;           // guarded by mutex_
  bool guard_pages_ = false;         // guarded by mutex_
  std::vector<std::string> faults_;  // guarded by mutex_
  int32_t row_padding_ = 0;          // guarded by mutex_
  int32_t plane_padding_ = 0;        // guarded by mutex_
};

}  // namespace host_sim
