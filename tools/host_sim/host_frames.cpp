#include "host_sim/host_frames.h"

#include <cstring>
#include <limits>

#include "host_sdk/premiere_constants.h"

namespace host_sim {
namespace {

constexpr size_t kAlignment = 16;

size_t RoundUpToAlignment(size_t bytes) {
  return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

int32_t BytesPerPackedPixel(PrPixelFormat format) {
  return format == PrPixelFormat_VUYA_4444_32f ? 16 : 4;
}

// Where each plane starts, as offsets into the buffer, and how it is laid out.
struct Layout {
  size_t offsets[3] = {0, 0, 0};
  FramePlane planes[3];
  int32_t plane_count = 0;
  size_t size = 0;
};

void AddPlane(int32_t row_length, int32_t rows, size_t row_bytes, Layout* layout) {
  FramePlane& plane = layout->planes[layout->plane_count];
  plane.row_length = row_length;
  plane.rows = rows;
  plane.row_bytes = static_cast<int32_t>(row_bytes);
  layout->offsets[layout->plane_count] = layout->size;
  layout->size += row_bytes * static_cast<size_t>(rows);
  ++layout->plane_count;
}

// Each plane's stride is a multiple of 16, so every plane after the first starts aligned too.
Layout PlanarLayout(int32_t width, int32_t height, int32_t plane_padding) {
  Layout layout;
  const int32_t chroma_width = (width + 1) / 2;
  const int32_t chroma_height = (height + 1) / 2;
  const size_t padding = static_cast<size_t>(plane_padding);
  AddPlane(width, height, RoundUpToAlignment(static_cast<size_t>(width) + padding), &layout);
  for (int chroma = 0; chroma < 2; ++chroma) {
    AddPlane(chroma_width, chroma_height,
             RoundUpToAlignment(static_cast<size_t>(chroma_width) + padding), &layout);
  }
  return layout;
}

Layout PackedLayout(PrPixelFormat format, int32_t width, int32_t height, int32_t row_padding) {
  Layout layout;
  const int32_t row_length = width * BytesPerPackedPixel(format);
  AddPlane(row_length, height, static_cast<size_t>(row_length) + static_cast<size_t>(row_padding),
           &layout);
  return layout;
}

// Keeps the row bytes of every plane within what GetRowBytes can answer.
bool FitsRowBytes(int32_t width, int32_t padding) {
  return static_cast<int64_t>(width) * 16 + padding + static_cast<int64_t>(kAlignment) <=
         std::numeric_limits<int32_t>::max();
}

}  // namespace

void HostFrames::set_row_padding(int32_t bytes) {
  std::lock_guard<std::mutex> lock(mutex_);
  row_padding_ = bytes < 0 ? 0 : bytes;
}

void HostFrames::set_plane_padding(int32_t bytes) {
  std::lock_guard<std::mutex> lock(mutex_);
  plane_padding_ = bytes < 0 ? 0 : bytes;
}

void HostFrames::set_recycling(bool recycle) {
  std::lock_guard<std::mutex> lock(mutex_);
  recycling_ = recycle;
  if (!recycle) recycled_.clear();
}

void HostFrames::set_guard_pages(bool guard_pages) {
  std::lock_guard<std::mutex> lock(mutex_);
  guard_pages_ = guard_pages;
  recycled_.clear();
}

PPixHand HostFrames::Create(PrPixelFormat format, int32_t width, int32_t height) {
  if (format == PrPixelFormat_Any || width <= 0 || height <= 0 || width > kLargestSide ||
      height > kLargestSide) {
    return nullptr;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  const bool planar = format == PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;
  if (!FitsRowBytes(width, planar ? plane_padding_ : row_padding_)) return nullptr;
  const Layout layout = planar ? PlanarLayout(width, height, plane_padding_)
                               : PackedLayout(format, width, height, row_padding_);
  Entry entry;
  auto kept = recycled_.find(layout.size);
  const bool recycled = kept != recycled_.end();
  if (recycled) {
    entry.storage = std::move(kept->second);
    recycled_.erase(kept);
  } else {
    entry.storage = FrameStorage(layout.size, kAlignment, kGuardBytes, guard_pages_);
    if (entry.storage.picture() == nullptr) return nullptr;
  }
  unsigned char* base = entry.storage.picture();
  std::memset(base - kGuardBytes, kGuardByte, kGuardBytes);
  std::memset(base + layout.size, kGuardByte, entry.storage.guard_after());
  if (!recycled) std::memset(base, kFreshByte, layout.size);

  entry.frame = {format, width, height, planar, layout.plane_count, {}, layout.size};
  for (int32_t p = 0; p < layout.plane_count; ++p) {
    entry.frame.planes[p] = layout.planes[p];
    entry.frame.planes[p].bytes = base + layout.offsets[p];
  }
  entry.master = std::make_unique<PPix*>(reinterpret_cast<PPix*>(base));
  entry.references = 1;
  PPixHand handle = entry.master.get();
  frames_.emplace(handle, std::move(entry));
  return handle;
}

const HostFrame* HostFrames::Find(PPixHand handle) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = frames_.find(handle);
  return found == frames_.end() ? nullptr : &found->second.frame;
}

const HostFrame* HostFrames::AddReference(PPixHand handle) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = frames_.find(handle);
  if (found == frames_.end()) return nullptr;
  ++found->second.references;
  return &found->second.frame;
}

bool HostFrames::Dispose(PPixHand handle) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = frames_.find(handle);
  if (found == frames_.end()) {
    faults_.push_back("Dispose of a frame that is not live");
    return false;
  }
  if (--found->second.references == 0) {
    std::string fault = GuardFault(found->second);
    if (!fault.empty()) faults_.push_back(fault);
    if (recycling_) {
      recycled_.emplace(found->second.frame.size, std::move(found->second.storage));
    }
    frames_.erase(found);
  }
  return true;
}

int32_t HostFrames::References(PPixHand handle) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = frames_.find(handle);
  return found == frames_.end() ? 0 : found->second.references;
}

size_t HostFrames::live_count() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return frames_.size();
}

void HostFrames::RecordFault(const std::string& fault) {
  std::lock_guard<std::mutex> lock(mutex_);
  faults_.push_back(fault);
}

void HostFrames::AddToReport(HostReport* report) const {
  std::lock_guard<std::mutex> lock(mutex_);
  report->frame_faults.insert(report->frame_faults.end(), faults_.begin(), faults_.end());
  for (const auto& frame : frames_) {
    std::string fault = GuardFault(frame.second);
    if (!fault.empty()) report->frame_faults.push_back(fault);
  }
}

std::string HostFrames::GuardFault(const Entry& entry) {
  const unsigned char* base = entry.storage.picture();
  const unsigned char* guards[2] = {base - kGuardBytes, base + entry.frame.size};
  const size_t lengths[2] = {kGuardBytes, entry.storage.guard_after()};
  for (int side = 0; side < 2; ++side) {
    const unsigned char* guard = guards[side];
    for (size_t i = 0; i < lengths[side]; ++i) {
      if (guard[i] != kGuardByte) {
        return "write outside the " + std::to_string(entry.frame.width) + "x" +
               std::to_string(entry.frame.height) + " frame of format " +
               std::to_string(entry.frame.format) + (side == 0 ? ", before it" : ", after it");
      }
    }
  }
  return std::string();
}

}  // namespace host_sim
