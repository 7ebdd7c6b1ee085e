// The stand-in's picture: an equirectangular test scene that shows at a glance which frame it is
// and that it covers 360 by 180 degrees. A longitude/latitude grid every 15 degrees (the equator
// and the zero meridian drawn heavier), a disc that travels once around the equator over the
// clip, and the frame number in large digits above the middle. Stereo pictures hold the left eye
// in the top half and the right eye in the bottom half; the right eye's disc sits 2 degrees
// further east and each eye's number is followed by "L" or "R". The palette changes with the
// update generation.
#pragma once

#include <cstdint>

namespace omni_standin {

// The palettes the update generation cycles through: a picture depends on the generation modulo
// this.
constexpr uint64_t kScenePalettes = 4;

// Everything a picture depends on besides its size.
struct SceneFrame {
  int64_t index = 0;        // 0 <= index < frame_count
  int64_t frame_count = 1;  // the disc goes once around over this many frames
  bool stereo = false;
  uint64_t generation = 0;
};

// Writes the scene as planar BT.709 full-range YUV 4:2:0: Y at width x height, U and V at half
// width and half height rounded up. Row r of plane p starts at planes[p] + r * strides[p] and
// only its first (plane width) bytes are written. REQUIRES: width, height > 0.
void DrawSceneYuv(const SceneFrame& frame, int32_t width, int32_t height, uint8_t* const planes[3],
                  const int strides[3]);

// Writes the scene as opaque packed BGRA, 4 bytes per pixel, rows tightly packed, top row first.
// REQUIRES: width, height > 0.
void DrawSceneBgra(const SceneFrame& frame, int32_t width, int32_t height, uint8_t* pixels);

// The cheapest picture there is: each plane filled with one value (white in both layouts).
void FillFlatYuv(int32_t width, int32_t height, uint8_t* const planes[3], const int strides[3]);
void FillFlatBgra(int32_t width, int32_t height, uint8_t* pixels);

}  // namespace omni_standin
