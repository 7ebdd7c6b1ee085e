#include "qvo_host/contact_sheet.h"

#include <algorithm>
#include <cstring>

namespace host_sim {
namespace {

constexpr uint8_t kBackground = 40;

// The source span [begin, end) that destination index `i` of `to` covers out of `from`.
void Span(int32_t i, int32_t from, int32_t to, int32_t* begin, int32_t* end) {
  *begin = static_cast<int32_t>(static_cast<int64_t>(i) * from / to);
  *end = std::max(*begin + 1, static_cast<int32_t>(static_cast<int64_t>(i + 1) * from / to));
}

void AverageBox(const RgbImage& image, int32_t left, int32_t right, int32_t top, int32_t bottom,
                uint8_t* out) {
  uint64_t sums[3] = {0, 0, 0};
  for (int32_t y = top; y < bottom; ++y) {
    const uint8_t* row = image.pixels.data() + (static_cast<size_t>(y) * image.width + left) * 3;
    for (int32_t x = 0; x < right - left; ++x) {
      for (int c = 0; c < 3; ++c) sums[c] += row[x * 3 + c];
    }
  }
  const uint64_t count = static_cast<uint64_t>(right - left) * (bottom - top);
  for (int c = 0; c < 3; ++c) out[c] = static_cast<uint8_t>((sums[c] + count / 2) / count);
}

void Paste(const RgbImage& thumbnail, int32_t left, int32_t top, RgbImage* sheet) {
  for (int32_t y = 0; y < thumbnail.height; ++y) {
    std::memcpy(sheet->pixels.data() + (static_cast<size_t>(top + y) * sheet->width + left) * 3,
                thumbnail.pixels.data() + static_cast<size_t>(y) * thumbnail.width * 3,
                static_cast<size_t>(thumbnail.width) * 3);
  }
}

}  // namespace

RgbImage Thumbnail(const RgbImage& image, int32_t width) {
  if (image.width <= 0 || image.height <= 0) return RgbImage();
  RgbImage thumbnail;
  thumbnail.width = std::min(std::max(width, 1), image.width);
  thumbnail.height = std::max(
      1, static_cast<int32_t>(static_cast<int64_t>(image.height) * thumbnail.width / image.width));
  thumbnail.pixels.resize(static_cast<size_t>(thumbnail.width) * thumbnail.height * 3);
  for (int32_t y = 0; y < thumbnail.height; ++y) {
    int32_t top = 0;
    int32_t bottom = 0;
    Span(y, image.height, thumbnail.height, &top, &bottom);
    for (int32_t x = 0; x < thumbnail.width; ++x) {
      int32_t left = 0;
      int32_t right = 0;
      Span(x, image.width, thumbnail.width, &left, &right);
      AverageBox(image, left, right, top, bottom,
                 thumbnail.pixels.data() + (static_cast<size_t>(y) * thumbnail.width + x) * 3);
    }
  }
  return thumbnail;
}

RgbImage ContactSheet(const std::vector<RgbImage>& thumbnails, int32_t per_row) {
  RgbImage sheet;
  if (thumbnails.empty() || per_row <= 0) return sheet;
  int32_t cell_width = 0;
  int32_t cell_height = 0;
  for (const RgbImage& thumbnail : thumbnails) {
    cell_width = std::max(cell_width, thumbnail.width);
    cell_height = std::max(cell_height, thumbnail.height);
  }
  const auto count = static_cast<int32_t>(thumbnails.size());
  const int32_t columns = std::min(per_row, count);
  const int32_t rows = (count + per_row - 1) / per_row;
  sheet.width = columns * (cell_width + kContactSheetGap) + kContactSheetGap;
  sheet.height = rows * (cell_height + kContactSheetGap) + kContactSheetGap;
  sheet.pixels.assign(static_cast<size_t>(sheet.width) * sheet.height * 3, kBackground);
  for (int32_t i = 0; i < count; ++i) {
    Paste(thumbnails[static_cast<size_t>(i)],
          kContactSheetGap + (i % per_row) * (cell_width + kContactSheetGap),
          kContactSheetGap + (i / per_row) * (cell_height + kContactSheetGap), &sheet);
  }
  return sheet;
}

}  // namespace host_sim
