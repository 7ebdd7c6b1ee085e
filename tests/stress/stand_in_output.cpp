#include "stress/stand_in_output.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "standin_stitcher/test_scene.h"

namespace {

constexpr PrPixelFormat kPlanarFormat = 0x46317659;

}  // namespace

StandInPictures::StandInPictures(const ClipShape& shape) : shape_(shape) {
  const int32_t w = shape.width;
  const int32_t h = shape.height;
  const int32_t chroma_w = (w + 1) / 2;
  const size_t chroma_bytes = static_cast<size_t>(chroma_w) * ((h + 1) / 2);
  for (int64_t index = 0; index < shape.frames; ++index) {
    for (uint64_t palette = 0; palette < omni_standin::kScenePalettes; ++palette) {
      const omni_standin::SceneFrame scene{index, shape.frames, shape.stereo, palette};
      Picture planar{std::vector<uint8_t>(static_cast<size_t>(w) * h),
                     std::vector<uint8_t>(chroma_bytes), std::vector<uint8_t>(chroma_bytes)};
      uint8_t* planes[3] = {planar[0].data(), planar[1].data(), planar[2].data()};
      const int strides[3] = {w, chroma_w, chroma_w};
      omni_standin::DrawSceneYuv(scene, w, h, planes, strides);
      planar_.push_back(std::move(planar));
      Picture packed{std::vector<uint8_t>(static_cast<size_t>(w) * h * 4)};
      omni_standin::DrawSceneBgra(scene, w, h, packed[0].data());
      packed_.push_back(std::move(packed));
    }
  }
}

bool StandInPictures::SameRows(const host_sim::FramePlane& plane,
                               const std::vector<uint8_t>& rows) {
  if (static_cast<size_t>(plane.row_length) * plane.rows != rows.size()) return false;
  for (size_t r = 0; r < static_cast<size_t>(plane.rows); ++r) {
    const uint8_t* row = rows.data() + r * plane.row_length;
    if (!std::equal(row, row + plane.row_length, plane.bytes + r * plane.row_bytes)) return false;
  }
  return true;
}

bool StandInPictures::Matches(const host_sim::HostFrame& frame, int64_t index) const {
  const bool planar = frame.format == kPlanarFormat;
  if (index < 0 || index >= shape_.frames || frame.width != shape_.width ||
      frame.height != shape_.height || frame.plane_count != (planar ? 3 : 1)) {
    return false;
  }
  for (uint64_t palette = 0; palette < omni_standin::kScenePalettes; ++palette) {
    const Picture& picture =
        (planar ? planar_ : packed_)[index * omni_standin::kScenePalettes + palette];
    int32_t p = 0;
    while (p < frame.plane_count && SameRows(frame.planes[p], picture[p])) ++p;
    if (p == frame.plane_count) return true;
  }
  return false;
}

StandInTone::StandInTone(int32_t rate, int32_t channels)
    : rate_(rate), channels_(channels), period_(1) {
  for (int32_t c = 0; c < channels; ++c) {
    const int64_t channel_period = rate / std::gcd(int64_t{rate}, int64_t{220} * (c + 1));
    period_ = std::lcm(period_, channel_period);
  }
}

float StandInTone::Sample(int32_t channel, int64_t n) const {
  // The phase is worked out in integers, as the stand-in does, so that the same n gives the same
  // float however far into the file it lies.
  const double kTwoPi = 6.283185307179586;
  const int64_t step = int64_t{220} * (channel + 1) % rate_;
  const int64_t phase = (n % rate_ + rate_) % rate_ * step % rate_;
  return static_cast<float>(
      0.25 * std::sin(kTwoPi * static_cast<double>(phase) / static_cast<double>(rate_)));
}

int64_t StandInTone::StartOf(float* const* buffers, int64_t count) const {
  for (int64_t start = 0; start < period_; ++start) {
    bool same = true;
    for (int64_t i = 0; i < count && same; ++i) {
      for (int32_t c = 0; c < channels_ && same; ++c) same = buffers[c][i] == Sample(c, start + i);
    }
    if (same) return start;
  }
  return -1;
}
