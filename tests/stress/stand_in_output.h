// What the stand-in stitcher writes, worked out here from its own scene and tone, so that every
// frame and sample that reaches the host can be checked byte for byte.
#pragma once

#include <cstdint>
#include <vector>

#include "host_sim/host_frames.h"

// The picture of one stand-in project.
struct ClipShape {
  int32_t width = 0;
  int32_t height = 0;
  int64_t frames = 0;
  bool stereo = false;
};

// Every picture of a clip, planar and packed, in every palette: an update may come between the
// stitching of a frame and its delivery, so any palette is a right answer, any other byte is not.
class StandInPictures {
 public:
  explicit StandInPictures(const ClipShape& shape);

  // True when every visible row of every plane of `frame` is frame `index` as the stand-in draws
  // it, in one palette. Padding is not looked at: the host's guard bytes watch the buffer's edges.
  bool Matches(const host_sim::HostFrame& frame, int64_t index) const;

 private:
  // The planes of one picture, rows tightly packed; the packed layout has one.
  using Picture = std::vector<std::vector<uint8_t>>;

  static bool SameRows(const host_sim::FramePlane& plane, const std::vector<uint8_t>& rows);

  ClipShape shape_;
  std::vector<Picture> planar_;  // [index * kScenePalettes + palette]
  std::vector<Picture> packed_;
};

// The stand-in's tone: channel c at 220 x (c + 1) Hz, amplitude 0.25, phase-continuous.
class StandInTone {
 public:
  StandInTone(int32_t rate, int32_t channels);

  float Sample(int32_t channel, int64_t n) const;

  // The first sample frame, modulo the tone's period, of a run of `count` sample frames that
  // `buffers` hold; -1 when no start gives exactly these samples.
  int64_t StartOf(float* const* buffers, int64_t count) const;

  // Sample frames after which every channel repeats itself.
  int64_t period() const { return period_; }

 private:
  int32_t rate_;
  int32_t channels_;
  int64_t period_;
};
