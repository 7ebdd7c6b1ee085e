// Thumbnails of exported frames and the contact sheet that shows them side by side, each clip's
// name at the start of its rows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qvo_host/frame_image.h"

namespace host_sim {

// `image` shrunk to `width` pixels across (never enlarged), its height keeping the aspect ratio;
// each pixel is the mean of the source pixels it covers.
RgbImage Thumbnail(const RgbImage& image, int32_t width);

// Dark grey pixels between and around the cells of a contact sheet.
constexpr int32_t kContactSheetGap = 4;

struct LabelledThumbnails {
  std::string label;                 // the clip's name, drawn at the start of its row(s)
  std::vector<RgbImage> thumbnails;  // in order
};

// Each clip starts a new row, its label drawn in a margin at the left of its first row (broken
// into lines when long, as many as the row has room for); at most `per_row` thumbnails a row, each
// in a cell as large as the largest. A clip without thumbnails takes no row. No thumbnail at all
// gives an empty image.
RgbImage ContactSheet(const std::vector<LabelledThumbnails>& clips, int32_t per_row);

}  // namespace host_sim
