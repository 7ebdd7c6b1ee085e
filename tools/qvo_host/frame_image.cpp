#include "qvo_host/frame_image.h"

#include <algorithm>
#include <cmath>

#include "host_sdk/premiere_constants.h"

namespace host_sim {
namespace {

uint8_t ClampToByte(double value) {
  return static_cast<uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

void Put(const Rgb& colour, uint8_t* pixel) {
  pixel[0] = colour.r;
  pixel[1] = colour.g;
  pixel[2] = colour.b;
}

void PlanarToRgb(const HostFrame& frame, RgbImage* image) {
  const FramePlane& y_plane = frame.planes[0];
  const FramePlane& u_plane = frame.planes[1];
  const FramePlane& v_plane = frame.planes[2];
  for (int32_t row = 0; row < frame.height; ++row) {
    const uint8_t* y = y_plane.bytes + static_cast<size_t>(row) * y_plane.row_bytes;
    const uint8_t* u = u_plane.bytes + static_cast<size_t>(row / 2) * u_plane.row_bytes;
    const uint8_t* v = v_plane.bytes + static_cast<size_t>(row / 2) * v_plane.row_bytes;
    uint8_t* out = image->pixels.data() + static_cast<size_t>(row) * frame.width * 3;
    for (int32_t column = 0; column < frame.width; ++column) {
      Put(YuvToRgb(y[column], u[column / 2], v[column / 2]), out + column * 3);
    }
  }
}

void BgraToRgb(const HostFrame& frame, RgbImage* image) {
  const FramePlane& plane = frame.planes[0];
  for (int32_t row = 0; row < frame.height; ++row) {
    const uint8_t* in = plane.bytes + static_cast<size_t>(row) * plane.row_bytes;
    uint8_t* out = image->pixels.data() + static_cast<size_t>(row) * frame.width * 3;
    for (int32_t column = 0; column < frame.width; ++column) {
      Put({in[column * 4 + 2], in[column * 4 + 1], in[column * 4]}, out + column * 3);
    }
  }
}

}  // namespace

// Full range: Y, Cb and Cr span 0..255 with chroma centred on 128, and
//   R = Y + 1.5748 (Cr - 128)
//   G = Y - 0.1873 (Cb - 128) - 0.4681 (Cr - 128)
//   B = Y + 1.8556 (Cb - 128)
// from Kr = 0.2126 and Kb = 0.0722, rounded and clamped to 0..255.
Rgb YuvToRgb(uint8_t y, uint8_t cb, uint8_t cr) {
  const double luma = y;
  const double blue_difference = cb - 128.0;
  const double red_difference = cr - 128.0;
  return {ClampToByte(luma + 1.5748 * red_difference),
          ClampToByte(luma - 0.1873 * blue_difference - 0.4681 * red_difference),
          ClampToByte(luma + 1.8556 * blue_difference)};
}

bool FrameToRgb(const HostFrame& frame, RgbImage* image) {
  if (frame.format == PrPixelFormat_VUYA_4444_32f) return false;
  image->width = frame.width;
  image->height = frame.height;
  image->pixels.assign(static_cast<size_t>(frame.width) * frame.height * 3, 0);
  if (frame.planar) {
    PlanarToRgb(frame, image);
  } else {
    BgraToRgb(frame, image);
  }
  return true;
}

}  // namespace host_sim
