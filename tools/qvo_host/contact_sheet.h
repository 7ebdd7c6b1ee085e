// Thumbnails of exported frames and the contact sheet that shows them side by side.
#pragma once

#include <cstdint>
#include <vector>

#include "qvo_host/frame_image.h"

namespace host_sim {

// `image` shrunk to `width` pixels across (never enlarged), its height keeping the aspect ratio;
// each pixel is the mean of the source pixels it covers.
RgbImage Thumbnail(const RgbImage& image, int32_t width);

// Dark grey pixels between and around the cells of a contact sheet.
constexpr int32_t kContactSheetGap = 4;

// The thumbnails in reading order, `per_row` to a row, each in a cell as large as the largest. An
// empty list gives an empty image.
RgbImage ContactSheet(const std::vector<RgbImage>& thumbnails, int32_t per_row);

}  // namespace host_sim
