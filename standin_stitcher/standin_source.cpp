#include "standin_source.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "test_scene.h"

namespace omni_standin {
namespace {

constexpr int32_t kFailed = 1;

std::atomic<int64_t> live_sources{0};

int64_t Modulo(int64_t value, int64_t divisor) {
  int64_t remainder = value % divisor;
  return remainder < 0 ? remainder + divisor : remainder;
}

bool StrideFits(const int* strides, int plane, int32_t row_bytes) {
  int64_t stride = strides[plane];
  return (stride < 0 ? -stride : stride) >= row_bytes;
}

bool CanHold(int32_t width, int32_t height, uint8_t** planes, const int* strides) {
  if (width <= 0 || height <= 0 || planes == nullptr || planes[0] == nullptr) return false;
  if (planes[1] == nullptr) return true;
  int32_t chroma_width = (width + 1) / 2;
  return planes[2] != nullptr && strides != nullptr && StrideFits(strides, 0, width) &&
         StrideFits(strides, 1, chroma_width) && StrideFits(strides, 2, chroma_width);
}

// 16 bytes: within the guard bytes a careful host keeps around its buffers.
constexpr size_t kBytesPastEnd = 16;
// Where a crash writes: a field of an object that is not there.
constexpr uintptr_t kFieldOfNoObject = 0x40;
// More than a page: what a wrong stride or a row too many writes.
constexpr size_t kBytesFarPastEnd = 3 * 4096;

// The rows of one plane as the picture is written to it.
struct PictureRows {
  uint8_t* first_row = nullptr;
  int32_t rows = 0;
  int32_t row_length = 0;  // bytes
  int stride = 0;
};

// Packed pictures are written tightly, 4 bytes a pixel.
PictureRows FirstPlaneRows(int32_t width, int32_t height, uint8_t** planes, const int* strides) {
  if (planes[1] == nullptr) return {planes[0], height, width * 4, width * 4};
  return {planes[0], height, width, strides[0]};
}

PictureRows LastPlaneRows(int32_t width, int32_t height, uint8_t** planes, const int* strides) {
  if (planes[1] == nullptr) return FirstPlaneRows(width, height, planes, strides);
  return {planes[2], (height + 1) / 2, (width + 1) / 2, strides[2]};
}

std::vector<uint8_t> CopyLastRows(const PictureRows& plane, int64_t count) {
  std::vector<uint8_t> kept;
  const int32_t rows = static_cast<int32_t>(std::min<int64_t>(count, plane.rows));
  for (int32_t r = plane.rows - rows; r < plane.rows; ++r) {
    const uint8_t* row = plane.first_row + static_cast<ptrdiff_t>(r) * plane.stride;
    kept.insert(kept.end(), row, row + plane.row_length);
  }
  return kept;
}

void RestoreLastRows(const PictureRows& plane, const std::vector<uint8_t>& kept) {
  const int32_t rows = static_cast<int32_t>(kept.size() / static_cast<size_t>(plane.row_length));
  for (int32_t i = 0; i < rows; ++i) {
    uint8_t* row = plane.first_row + static_cast<ptrdiff_t>(plane.rows - rows + i) * plane.stride;
    std::memcpy(row, kept.data() + static_cast<size_t>(i) * plane.row_length, plane.row_length);
  }
}

// Sample n is 0.25 sin(2 pi f n / rate). The phase f n is kept modulo the rate in integers, so it
// stays exact however far into the file n lies.
void WriteTone(int64_t frequency, int64_t rate, int64_t start, int64_t count, float* out) {
  const double kTwoPi = 6.283185307179586;
  int64_t step = frequency % rate;
  int64_t phase = Modulo(start, rate) * step % rate;
  for (int64_t i = 0; i < count; ++i) {
    out[i] = static_cast<float>(
        0.25 * std::sin(kTwoPi * static_cast<double>(phase) / static_cast<double>(rate)));
    phase += step;
    if (phase >= rate) phase -= rate;
  }
}

}  // namespace

StandinSource::StandinSource(std::string path, ProjectFile project, PathState* path_state)
    : path_(std::move(path)), project_(std::move(project)), path_state_(path_state) {
  live_sources.fetch_add(1);
}

StandinSource::~StandinSource() { live_sources.fetch_sub(1); }

int64_t StandinSource::Live() { return live_sources.load(); }

int32_t StandinSource::WriteVideo(int64_t frame_index, int32_t width, int32_t height,
                                  uint8_t** planes, const int* strides) {
  path_state_->Count(kOmniStandinGetVideoFrame);
  const InjectedFaults& faults = project_.faults;
  if (faults.video_delay_ms > 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(faults.video_delay_ms));
  }
  if (!CanHold(width, height, planes, strides)) return kFailed;
  if (frame_index < 0 || frame_index >= project_.frames) return kFailed;
  if (faults.video_fail_always.count(frame_index) != 0) return kFailed;
  FailHard(frame_index);
  if (faults.video_fail_once.count(frame_index) != 0 && path_state_->FirstRequest(frame_index)) {
    return kFailed;
  }
  const PictureRows first = FirstPlaneRows(width, height, planes, strides);
  const std::vector<uint8_t> kept = CopyLastRows(first, faults.rows_unwritten);
  DrawPicture(frame_index, width, height, planes, strides);
  RestoreLastRows(first, kept);
  if (faults.write_before_start) std::memset(first.first_row - kBytesPastEnd, 0x5A, kBytesPastEnd);
  if (faults.write_past_end || faults.write_far_past_end) {
    // Far: from one row further on, as a wrong row index would.
    const PictureRows last = LastPlaneRows(width, height, planes, strides);
    const ptrdiff_t rows = last.rows + (faults.write_far_past_end ? 1 : 0);
    std::memset(last.first_row + rows * last.stride, 0x5A,
                faults.write_far_past_end ? kBytesFarPastEnd : kBytesPastEnd);
  }
  // Every other picture of a frame differs, so that any two fetches in a row do.
  if (faults.unstable_picture && path_state_->PicturesBefore(frame_index) % 2 == 1) {
    planes[0][0] ^= 0xFF;
  }
  return 0;
}

void StandinSource::FailHard(int64_t frame_index) const {
  const InjectedFaults& faults = project_.faults;
  if (faults.crash_frames.count(frame_index) != 0) {
    // A field of an object that is not there: an address in the first page, which nothing maps.
    // Written through a volatile pointer, so that the compiler cannot see it and trap instead.
    int* volatile target = reinterpret_cast<int*>(kFieldOfNoObject);
    *target = 1;
  }
  while (faults.hang_frames.count(frame_index) != 0) {
    std::this_thread::sleep_for(std::chrono::hours(1));
  }
  if (faults.throw_frames.count(frame_index) != 0) {
    throw std::runtime_error("stand-in fault in frame " + std::to_string(frame_index));
  }
}

void StandinSource::DrawPicture(int64_t frame_index, int32_t width, int32_t height,
                                uint8_t** planes, const int* strides) const {
  const bool packed = planes[1] == nullptr;
  if (project_.flat_render) {
    if (packed) {
      FillFlatBgra(width, height, planes[0]);
    } else {
      FillFlatYuv(width, height, planes, strides);
    }
    return;
  }
  SceneFrame frame;
  frame.index = frame_index;
  frame.frame_count = project_.frames;
  frame.stereo = project_.stereo;
  frame.generation = path_state_->generation();
  if (packed) {
    DrawSceneBgra(frame, width, height, planes[0]);
  } else {
    DrawSceneYuv(frame, width, height, planes, strides);
  }
}

int32_t StandinSource::WriteAudio(int64_t start, int64_t count, float** buffers) {
  path_state_->Count(kOmniStandinGetAudioFrame);
  if (count <= 0) return 0;
  for (int32_t c = 0; c < project_.audio_channels; ++c) {
    if (buffers == nullptr || buffers[c] == nullptr) return kFailed;
  }
  const int64_t written =
      count - (project_.faults.sound_short ? 1 : 0) + (project_.faults.sound_long ? 1 : 0);
  for (int32_t c = 0; c < project_.audio_channels; ++c) {
    WriteTone(int64_t{220} * (c + 1), project_.audio_rate, start, written, buffers[c]);
  }
  return 0;
}

bool StandinSource::AdvanceUpdate() {
  path_state_->Count(kOmniStandinUpdate);
  path_state_->AdvanceGeneration();
  return true;
}

void StandinSource::Describe(MediaInfo* info) const {
  info->has_video = 1;
  info->width = project_.width;
  info->height = project_.height;
  info->fps = project_.fps;
  info->frame_count = project_.frames;
  info->bitrate = project_.bitrate;
  info->stereo = project_.stereo ? 1 : 0;
  info->has_audio = project_.has_audio ? 1 : 0;
  info->audio_sample_frames = project_.audio_sample_frames;
  info->audio_sample_rate = project_.audio_rate;
  info->audio_channels = project_.audio_channels;
  info->offset = project_.offset;
}

}  // namespace omni_standin

// Every PRSource the stand-in hands out is a StandinSource.
int32_t PRSource::GetVideoFrame(int64_t frame_index, int32_t width, int32_t height,
                                uint8_t** planes, int* strides) {
  return static_cast<omni_standin::StandinSource*>(this)->WriteVideo(frame_index, width, height,
                                                                     planes, strides);
}

int32_t PRSource::GetAudioFrame(int64_t start, int64_t count, float** buffers) {
  return static_cast<omni_standin::StandinSource*>(this)->WriteAudio(start, count, buffers);
}

bool PRSource::Update() { return static_cast<omni_standin::StandinSource*>(this)->AdvanceUpdate(); }
