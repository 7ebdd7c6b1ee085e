#include "qvo_host/log_plot.h"

#include <algorithm>

#include "qvo_host/frame_image.h"
#include "qvo_host/png_export.h"

namespace host_sim {
namespace {

constexpr int32_t kWidth = 800;
constexpr int32_t kHeight = 400;
constexpr int32_t kMargin = 30;
constexpr Rgb kBackground = {255, 255, 255};
constexpr Rgb kAxis = {0, 0, 0};
constexpr Rgb kDot = {30, 90, 200};

void Put(RgbImage* image, int32_t x, int32_t y, Rgb colour) {
  if (x < 0 || y < 0 || x >= image->width || y >= image->height) return;
  uint8_t* pixel = &image->pixels[(static_cast<size_t>(y) * image->width + x) * 3];
  pixel[0] = colour.r;
  pixel[1] = colour.g;
  pixel[2] = colour.b;
}

}  // namespace

bool WriteStitchingPlot(const LogSummary& summary, const std::string& path) {
  if (summary.stitching_ms.empty()) return false;
  RgbImage image;
  image.width = kWidth;
  image.height = kHeight;
  image.pixels.resize(static_cast<size_t>(kWidth) * kHeight * 3);
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) Put(&image, x, y, kBackground);
  }
  const int32_t left = kMargin;
  const int32_t bottom = kHeight - kMargin;
  for (int32_t x = left; x < kWidth - kMargin; ++x) Put(&image, x, bottom, kAxis);
  for (int32_t y = kMargin; y <= bottom; ++y) Put(&image, left, y, kAxis);

  const int64_t span = std::max<int64_t>(1, summary.last_seconds - summary.first_seconds);
  const int64_t slowest = std::max<int64_t>(1, StitchingPercentile(summary, 100));
  const int64_t plot_width = kWidth - 2 * kMargin - 1;
  const int64_t plot_height = bottom - kMargin;
  for (const auto& [seconds, ms] : summary.stitching_ms) {
    const auto x =
        static_cast<int32_t>(left + 1 + (seconds - summary.first_seconds) * plot_width / span);
    const auto y = static_cast<int32_t>(bottom - 1 - ms * (plot_height - 1) / slowest);
    for (int32_t dy = -1; dy <= 1; ++dy) {
      for (int32_t dx = -1; dx <= 1; ++dx) Put(&image, x + dx, y + dy, kDot);
    }
  }
  return WritePng(path, image);
}

}  // namespace host_sim
