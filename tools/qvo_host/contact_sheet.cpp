#include "qvo_host/contact_sheet.h"

#include <algorithm>
#include <cstring>

#include "qvo_host/image_drawing.h"

namespace host_sim {
namespace {

constexpr uint8_t kBackground = 40;
constexpr Rgb kLabelColour = {235, 235, 235};
constexpr int32_t kLabelScale = 2;
constexpr int32_t kLabelWidth = 200;  // longer names go on to further lines
constexpr int32_t kLabelLineGap = 4;

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

int32_t LabelLineHeight() { return TextHeight(kLabelScale) + kLabelLineGap; }

struct SheetLayout {
  int32_t cell_width = 0;
  int32_t cell_height = 0;
  int32_t columns = 0;
  int32_t rows = 0;
  int32_t margin = 0;       // the labels' column, left of the first cell's gap
  int32_t label_lines = 0;  // as many as fit beside one row
};

SheetLayout LayOutSheet(const std::vector<LabelledThumbnails>& clips, int32_t per_row) {
  SheetLayout layout;
  int32_t widest_label = 0;
  for (const LabelledThumbnails& clip : clips) {
    if (clip.thumbnails.empty()) continue;
    for (const RgbImage& thumbnail : clip.thumbnails) {
      layout.cell_width = std::max(layout.cell_width, thumbnail.width);
      layout.cell_height = std::max(layout.cell_height, thumbnail.height);
    }
    const auto count = static_cast<int32_t>(clip.thumbnails.size());
    layout.columns = std::max(layout.columns, std::min(per_row, count));
    layout.rows += (count + per_row - 1) / per_row;
    widest_label = std::max(widest_label, TextWidth(clip.label, kLabelScale));
  }
  if (widest_label > 0) {
    layout.margin = kContactSheetGap + std::min(widest_label, kLabelWidth) + kContactSheetGap;
  }
  layout.label_lines = std::max(1, layout.cell_height / LabelLineHeight());
  return layout;
}

// The label in lines of at most kLabelWidth pixels, broken between characters (file names seldom
// have spaces), cut to the lines the row has room for.
void DrawLabel(const std::string& label, int32_t top, const SheetLayout& layout, RgbImage* sheet) {
  std::string line;
  int32_t lines = 0;
  for (size_t i = 0; i <= label.size() && lines < layout.label_lines; ++i) {
    const bool starts_character = i < label.size() && (label[i] & 0xC0) != 0x80;
    if (i == label.size() || (starts_character && !line.empty() &&
                              TextWidth(line + label[i], kLabelScale) > kLabelWidth)) {
      DrawText(line, kContactSheetGap, top + lines * LabelLineHeight(), kLabelScale, kLabelColour,
               sheet);
      ++lines;
      line.clear();
    }
    if (i < label.size()) line += label[i];
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

RgbImage ContactSheet(const std::vector<LabelledThumbnails>& clips, int32_t per_row) {
  RgbImage sheet;
  if (per_row <= 0) return sheet;
  const SheetLayout layout = LayOutSheet(clips, per_row);
  if (layout.rows == 0) return sheet;
  sheet.width =
      layout.margin + layout.columns * (layout.cell_width + kContactSheetGap) + kContactSheetGap;
  sheet.height = layout.rows * (layout.cell_height + kContactSheetGap) + kContactSheetGap;
  sheet.pixels.assign(static_cast<size_t>(sheet.width) * sheet.height * 3, kBackground);
  int32_t row = 0;
  for (const LabelledThumbnails& clip : clips) {
    if (clip.thumbnails.empty()) continue;
    const int32_t top = kContactSheetGap + row * (layout.cell_height + kContactSheetGap);
    DrawLabel(clip.label, top, layout, &sheet);
    const auto count = static_cast<int32_t>(clip.thumbnails.size());
    for (int32_t i = 0; i < count; ++i) {
      Paste(
          clip.thumbnails[static_cast<size_t>(i)],
          layout.margin + kContactSheetGap + (i % per_row) * (layout.cell_width + kContactSheetGap),
          top + (i / per_row) * (layout.cell_height + kContactSheetGap), &sheet);
    }
    row += (count + per_row - 1) / per_row;
  }
  return sheet;
}

}  // namespace host_sim
