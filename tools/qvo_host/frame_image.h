// What a person sees of a host frame: its picture as 8-bit RGB, for the frames the host simulator
// writes out.
#pragma once

#include <cstdint>
#include <vector>

#include "host_sim/host_frames.h"

namespace host_sim {

// Rows top first, 3 bytes per pixel (R, G, B), no padding.
struct RgbImage {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> pixels;
};

struct Rgb {
  uint8_t r = 0;
  uint8_t g = 0;
  uint8_t b = 0;
};

// BT.709 full-range YCbCr, the colours of the host's planar 4:2:0 format, to RGB.
Rgb YuvToRgb(uint8_t y, uint8_t cb, uint8_t cr);

// The picture of a planar YUV 4:2:0 frame, each chroma sample serving a 2 x 2 block of pixels, or
// of a packed 4-byte frame read as B, G, R, A; each plane read through its own row bytes, rows in
// memory order with the first at the top. False, leaving `image` alone, for the 16-byte float
// format.
bool FrameToRgb(const HostFrame& frame, RgbImage* image);

}  // namespace host_sim
