#include "qvo_host/frame_image.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

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

// The same conversion in whole numbers, for the 7.4 million pixels of a 4K frame: each colour's
// chroma part rounded once per chroma value (or pair, for green) and added to the luma. That gives
// the exact sums' bytes for every colour (all 2^24 compared) but those of the few chroma pairs
// whose green part lies on a half, where the rounding turns with the luma: they keep the exact sum.
class ChromaOffsets {
 public:
  static constexpr int16_t kExact = INT16_MIN;

  ChromaOffsets() {
    for (int c = 0; c < 256; ++c) {
      red_[c] = static_cast<int16_t>(std::lround(1.5748 * (c - 128.0)));
      blue_[c] = static_cast<int16_t>(std::lround(1.8556 * (c - 128.0)));
    }
    for (int cb = 0; cb < 256; ++cb) {
      for (int cr = 0; cr < 256; ++cr) {
        const double green = -0.1873 * (cb - 128.0) - 0.4681 * (cr - 128.0);
        const bool on_a_half = std::abs(std::abs(green - std::trunc(green)) - 0.5) < 1e-6;
        green_[cb * 256 + cr] = on_a_half ? kExact : static_cast<int16_t>(std::lround(green));
      }
    }
  }

  void Convert(uint8_t y, uint8_t cb, uint8_t cr, uint8_t* pixel) const {
    const int16_t green = green_[cb * 256 + cr];
    if (green == kExact) {
      Put(YuvToRgb(y, cb, cr), pixel);
      return;
    }
    pixel[0] = Clamp(y + red_[cr]);
    pixel[1] = Clamp(y + green);
    pixel[2] = Clamp(y + blue_[cb]);
  }

 private:
  static uint8_t Clamp(int value) { return static_cast<uint8_t>(std::clamp(value, 0, 255)); }

  int16_t red_[256];
  int16_t blue_[256];
  std::vector<int16_t> green_ = std::vector<int16_t>(256 * 256);
};

void PlanarToRgb(const HostFrame& frame, RgbImage* image) {
  static const ChromaOffsets offsets;
  const FramePlane& y_plane = frame.planes[0];
  const FramePlane& u_plane = frame.planes[1];
  const FramePlane& v_plane = frame.planes[2];
  for (int32_t row = 0; row < frame.height; ++row) {
    const uint8_t* y = y_plane.bytes + static_cast<size_t>(row) * y_plane.row_bytes;
    const uint8_t* u = u_plane.bytes + static_cast<size_t>(row / 2) * u_plane.row_bytes;
    const uint8_t* v = v_plane.bytes + static_cast<size_t>(row / 2) * v_plane.row_bytes;
    uint8_t* out = image->pixels.data() + static_cast<size_t>(row) * frame.width * 3;
    for (int32_t column = 0; column < frame.width; ++column) {
      offsets.Convert(y[column], u[column / 2], v[column / 2], out + column * 3);
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
  // Every byte is written below: a picture reused for the next frame is not cleared first.
  image->pixels.resize(static_cast<size_t>(frame.width) * frame.height * 3);
  if (frame.planar) {
    PlanarToRgb(frame, image);
  } else {
    BgraToRgb(frame, image);
  }
  return true;
}

}  // namespace host_sim
