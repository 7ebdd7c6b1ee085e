#include "test_scene.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "bitmap_font/bitmap_font.h"

namespace omni_standin {
namespace {

// Every pixel is one of a few inks; rows are classified first and then coloured through a
// per-row table, which keeps a 4K frame to a few table look-ups per pixel.
enum Ink : uint8_t { kBackground, kGrid, kMajorGrid, kMarker, kText, kInkCount };

struct Rgb {
  double r, g, b;
};

struct Palette {
  Rgb sky, ground, grid, major_grid, marker, text;  // background fades from sky to ground
};

constexpr Palette kPalettes[] = {
    {{40, 90, 170}, {50, 110, 40}, {225, 225, 225}, {255, 215, 0}, {230, 30, 30}, {255, 255, 255}},
    {{150, 50, 120}, {60, 30, 90}, {240, 240, 190}, {0, 230, 230}, {255, 140, 0}, {255, 255, 255}},
    {{30, 140, 140}, {120, 80, 40}, {215, 215, 255}, {255, 80, 160}, {40, 40, 255}, {255, 255, 0}},
    {{110, 110, 110}, {35, 35, 35}, {190, 255, 190}, {255, 60, 60}, {0, 210, 0}, {255, 255, 255}},
};
static_assert(std::size(kPalettes) == kScenePalettes);

uint8_t ToByte(double value) {
  return static_cast<uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

// The colour of each ink on one row, in both layouts.
struct RowColors {
  uint8_t y[kInkCount], u[kInkCount], v[kInkCount];
  uint8_t bgra[kInkCount][4];
};

RowColors ColorsFor(const Palette& palette, double depth) {
  Rgb background = {palette.sky.r + (palette.ground.r - palette.sky.r) * depth,
                    palette.sky.g + (palette.ground.g - palette.sky.g) * depth,
                    palette.sky.b + (palette.ground.b - palette.sky.b) * depth};
  const Rgb inks[kInkCount] = {background, palette.grid, palette.major_grid, palette.marker,
                               palette.text};
  RowColors colors;
  for (int i = 0; i < kInkCount; ++i) {
    const Rgb& c = inks[i];
    double luma = 0.2126 * c.r + 0.7152 * c.g + 0.0722 * c.b;
    colors.y[i] = ToByte(luma);
    colors.u[i] = ToByte((c.b - luma) / 1.8556 + 128.0);
    colors.v[i] = ToByte((c.r - luma) / 1.5748 + 128.0);
    colors.bgra[i][0] = ToByte(c.b);
    colors.bgra[i][1] = ToByte(c.g);
    colors.bgra[i][2] = ToByte(c.r);
    colors.bgra[i][3] = 255;
  }
  return colors;
}

// One eye's picture: a complete 360 x 180 degree scene on rows [top, top + height).
struct Eye {
  int32_t top = 0;
  int32_t height = 0;
  std::vector<uint8_t> row_inks;  // kBackground, or the latitude line that covers the row
  double marker_x = 0.0;
  double marker_radius = 0.0;
  std::string label;
  int32_t text_scale = 1;
  int64_t text_left = 0;
  int32_t text_top = 0;
};

class Scene {
 public:
  Scene(const SceneFrame& frame, int32_t width, int32_t height)
      : width_(width), palette_(kPalettes[frame.generation % kScenePalettes]) {
    column_inks_.assign(width, kBackground);
    int32_t thickness = std::max(1, width / 1280);
    for (int k = 0; k < 24; ++k) {
      bool major = k == 12;  // the zero meridian, in the middle of the picture
      int32_t line = major ? 2 * thickness : thickness;
      int64_t start = static_cast<int64_t>(k) * width / 24 - line / 2;
      for (int64_t x = start; x < start + line; ++x) {
        column_inks_[Wrap(x)] = major ? kMajorGrid : kGrid;
      }
    }
    int32_t top_height = frame.stereo ? height / 2 : height;
    eyes_[0] = MakeEye(frame, 0, top_height, false);
    eye_count_ = 1;
    if (frame.stereo) eyes_[eye_count_++] = MakeEye(frame, top_height, height - top_height, true);
  }

  // Fills inks[0..width) with the inks of picture row y.
  void Classify(int32_t y, uint8_t* inks) const {
    const Eye& eye = EyeOf(y);
    int32_t row = y - eye.top;
    if (eye.row_inks[row] != kBackground) {
      std::memset(inks, eye.row_inks[row], width_);
    } else {
      std::memcpy(inks, column_inks_.data(), width_);
    }
    DrawMarkerRow(eye, row, inks);
    DrawTextRow(eye, row, inks);
  }

  RowColors Colors(int32_t y) const {
    const Eye& eye = EyeOf(y);
    return ColorsFor(palette_, (y - eye.top + 0.5) / eye.height);
  }

 private:
  Eye MakeEye(const SceneFrame& frame, int32_t top, int32_t height, bool right) const {
    Eye eye;
    eye.top = top;
    eye.height = height;
    eye.row_inks.assign(height, kBackground);
    int32_t thickness = std::max(1, height / 640);
    for (int j = 1; j < 12; ++j) {
      bool major = j == 6;  // the equator
      int32_t line = major ? 2 * thickness : thickness;
      int32_t start = static_cast<int32_t>(static_cast<int64_t>(j) * height / 12) - line / 2;
      for (int32_t y = std::max(start, 0); y < std::min(start + line, height); ++y) {
        eye.row_inks[y] = major ? kMajorGrid : kGrid;
      }
    }
    // Once around over the clip, starting at -180 degrees; the right eye sees it 2 degrees east.
    eye.marker_x =
        width_ * static_cast<double>(frame.index) / static_cast<double>(frame.frame_count) +
        (right ? width_ / 180.0 : 0.0);
    eye.marker_radius = std::max(2.0, height / 30.0);
    eye.label = std::to_string(frame.index);
    if (frame.stereo) eye.label += right ? " R" : " L";
    eye.text_scale = std::max(1, height / 36);
    int64_t text_width =
        static_cast<int64_t>(eye.label.size()) * bitmap_font::kAdvance * eye.text_scale -
        eye.text_scale;
    eye.text_left = (width_ - text_width) / 2;
    eye.text_top = std::max(0, height / 4 - bitmap_font::kGlyphHeight * eye.text_scale / 2);
    return eye;
  }

  const Eye& EyeOf(int32_t y) const {
    return eye_count_ == 2 && y >= eyes_[1].top ? eyes_[1] : eyes_[0];
  }

  // The picture wraps around at -180/180 degrees, and so does anything drawn across the seam.
  int32_t Wrap(int64_t x) const {
    int64_t wrapped = x % width_;
    return static_cast<int32_t>(wrapped < 0 ? wrapped + width_ : wrapped);
  }

  void DrawMarkerRow(const Eye& eye, int32_t row, uint8_t* inks) const {
    double dy = row + 0.5 - eye.height / 2.0;
    double r = eye.marker_radius;
    if (std::abs(dy) >= r) return;
    double half = std::sqrt(r * r - dy * dy);
    auto first = static_cast<int64_t>(std::ceil(eye.marker_x - half - 0.5));
    auto last = static_cast<int64_t>(std::floor(eye.marker_x + half - 0.5));
    last = std::min(last, first + width_ - 1);
    for (int64_t x = first; x <= last; ++x) inks[Wrap(x)] = kMarker;
  }

  void DrawTextRow(const Eye& eye, int32_t row, uint8_t* inks) const {
    int32_t scale = eye.text_scale;
    if (row < eye.text_top || row >= eye.text_top + bitmap_font::kGlyphHeight * scale) return;
    int32_t glyph_row = (row - eye.text_top) / scale;
    for (size_t i = 0; i < eye.label.size(); ++i) {
      uint8_t bits = bitmap_font::Glyph(eye.label[i])[glyph_row];
      for (int col = 0; col < bitmap_font::kGlyphWidth; ++col) {
        if ((bits & (0x10 >> col)) == 0) continue;
        int64_t left =
            eye.text_left + (static_cast<int64_t>(i) * bitmap_font::kAdvance + col) * scale;
        int64_t begin = std::max<int64_t>(left, 0);
        int64_t end = std::min<int64_t>(left + scale, width_);
        if (begin < end) std::memset(inks + begin, kText, static_cast<size_t>(end - begin));
      }
    }
  }

  int32_t width_;
  Palette palette_;
  std::vector<uint8_t> column_inks_;  // kBackground, or the meridian that covers the column
  Eye eyes_[2];
  int eye_count_ = 1;
};

uint8_t* Row(uint8_t* plane, int stride, int32_t row) {
  return plane + static_cast<std::ptrdiff_t>(stride) * row;
}

}  // namespace

void DrawSceneYuv(const SceneFrame& frame, int32_t width, int32_t height, uint8_t* const planes[3],
                  const int strides[3]) {
  Scene scene(frame, width, height);
  std::vector<uint8_t> inks(width);
  int32_t chroma_width = (width + 1) / 2;
  for (int32_t y = 0; y < height; ++y) {
    scene.Classify(y, inks.data());
    RowColors colors = scene.Colors(y);
    uint8_t* luma = Row(planes[0], strides[0], y);
    for (int32_t x = 0; x < width; ++x) luma[x] = colors.y[inks[x]];
    if (y % 2 != 0) continue;
    // Each chroma sample takes the colour of the top-left pixel of its 2 x 2 block.
    uint8_t* u = Row(planes[1], strides[1], y / 2);
    uint8_t* v = Row(planes[2], strides[2], y / 2);
    for (int32_t x = 0; x < chroma_width; ++x) {
      u[x] = colors.u[inks[2 * x]];
      v[x] = colors.v[inks[2 * x]];
    }
  }
}

void DrawSceneBgra(const SceneFrame& frame, int32_t width, int32_t height, uint8_t* pixels) {
  Scene scene(frame, width, height);
  std::vector<uint8_t> inks(width);
  for (int32_t y = 0; y < height; ++y) {
    scene.Classify(y, inks.data());
    RowColors colors = scene.Colors(y);
    uint8_t* row = pixels + static_cast<size_t>(y) * width * 4;
    for (int32_t x = 0; x < width; ++x) std::memcpy(row + 4 * x, colors.bgra[inks[x]], 4);
  }
}

void FillFlatYuv(int32_t width, int32_t height, uint8_t* const planes[3], const int strides[3]) {
  const uint8_t values[3] = {255, 128, 128};
  for (int p = 0; p < 3; ++p) {
    int32_t plane_width = p == 0 ? width : (width + 1) / 2;
    int32_t plane_height = p == 0 ? height : (height + 1) / 2;
    for (int32_t y = 0; y < plane_height; ++y) {
      std::memset(Row(planes[p], strides[p], y), values[p], plane_width);
    }
  }
}

void FillFlatBgra(int32_t width, int32_t height, uint8_t* pixels) {
  std::memset(pixels, 255, static_cast<size_t>(width) * height * 4);
}

}  // namespace omni_standin
