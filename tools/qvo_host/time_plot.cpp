#include "qvo_host/time_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "qvo_host/image_drawing.h"
#include "qvo_host/plot_axis.h"
#include "qvo_host/png_export.h"

namespace host_sim {
namespace {

constexpr int32_t kWidth = 1100;
constexpr int32_t kPlotHeight = 400;
constexpr int32_t kScale = 2;  // text 14 pixels high, readable without zooming in
constexpr int32_t kPad = 12;
constexpr int32_t kTickLength = 5;
constexpr int32_t kDot = 5;
constexpr int32_t kSwatch = 14;
constexpr int32_t kDash = 8;
constexpr Rgb kBackground = {255, 255, 255};
constexpr Rgb kGrid = {228, 228, 228};
constexpr char kYLabel[] = "milliseconds";

constexpr Rgb kSeriesPalette[] = {{31, 100, 200}, {240, 130, 0}, {140, 80, 190},  {0, 170, 200},
                                  {200, 60, 150}, {130, 90, 50}, {120, 120, 120}, {170, 170, 0}};
constexpr size_t kPaletteSize = sizeof(kSeriesPalette) / sizeof(kSeriesPalette[0]);

struct Point {
  double x;
  double ms;
  size_t series;
};

std::vector<Point> PointsOf(const TimePlot& plot) {
  std::vector<Point> points;
  for (size_t s = 0; s < plot.series.size(); ++s) {
    const PlotSeries& series = plot.series[s];
    for (size_t i = 0; i < std::min(series.x.size(), series.milliseconds.size()); ++i) {
      if (std::isfinite(series.x[i]) && std::isfinite(series.milliseconds[i])) {
        points.push_back({series.x[i], series.milliseconds[i], s});
      }
    }
  }
  return points;
}

// Nearest rank, as the log report's percentiles are taken.
double Percentile(const std::vector<Point>& points, int32_t p) {
  std::vector<double> values;
  for (const Point& point : points) values.push_back(point.ms);
  std::sort(values.begin(), values.end());
  const size_t rank = (static_cast<size_t>(p) * values.size() + 99) / 100;
  return values[rank == 0 ? 0 : rank - 1];
}

std::string Milliseconds(const char* name, double value) {
  char text[64];
  std::snprintf(text, sizeof(text), "%s %.*f ms", name,
                value >= 10  ? 0
                : value >= 1 ? 1
                             : 2,
                value);
  return text;
}

struct LegendEntry {
  int32_t left;
  int32_t top;
};

// Where everything goes: the plot area between the axis numbers on the left and the percentile
// values on the right, the legend flowing in rows below the x axis' label.
struct Layout {
  PlotAxis x_axis;
  PlotAxis y_axis;
  double median = 0;
  double percentile95 = 0;
  int32_t left = 0;
  int32_t right = 0;
  int32_t top = 0;
  int32_t bottom = 0;
  std::vector<LegendEntry> legend;
  int32_t height = 0;

  int32_t X(double x) const {
    return left + static_cast<int32_t>(
                      std::lround((x - x_axis.low) / (x_axis.high - x_axis.low) * (right - left)));
  }
  int32_t Y(double ms) const {
    return bottom - static_cast<int32_t>(
                        std::lround((ms - y_axis.low) / (y_axis.high - y_axis.low) * kPlotHeight));
  }
};

int32_t WidestTickLabel(const PlotAxis& axis) {
  int32_t widest = 0;
  for (const double tick : AxisTicks(axis)) {
    widest = std::max(widest, TextWidth(TickLabel(axis, tick), kScale));
  }
  return widest;
}

void FlowLegend(const TimePlot& plot, int32_t top, Layout* layout) {
  const int32_t row_height = kSwatch + 8;
  int32_t left = kPad;
  for (const PlotSeries& series : plot.series) {
    const int32_t width = kSwatch + 6 + TextWidth(series.label, kScale) + 24;
    if (left > kPad && left + width > kWidth - kPad) {
      left = kPad;
      top += row_height;
    }
    layout->legend.push_back({left, top});
    left += width;
  }
  layout->height = top + row_height + kPad;
}

Layout LayOut(const TimePlot& plot, const std::vector<Point>& points) {
  Layout layout;
  double x_low = points.front().x;
  double x_high = x_low;
  double ms_low = 0;
  double ms_high = 0;
  for (const Point& point : points) {
    x_low = std::min(x_low, point.x);
    x_high = std::max(x_high, point.x);
    ms_low = std::min(ms_low, point.ms);
    ms_high = std::max(ms_high, point.ms);
  }
  layout.x_axis = RoundAxis(x_low, x_high);
  layout.y_axis = RoundAxis(ms_low, ms_high);
  layout.median = Percentile(points, 50);
  layout.percentile95 = Percentile(points, 95);
  const int32_t text = TextHeight(kScale);
  layout.left = kPad + WidestTickLabel(layout.y_axis) + kTickLength + 6;
  layout.right = kWidth - kPad - 8 -
                 std::max(TextWidth(Milliseconds("median", layout.median), kScale),
                          TextWidth(Milliseconds("95th percentile", layout.percentile95), kScale));
  layout.top = kPad + text + kPad + text + 10;  // the title, then the y axis' label
  layout.bottom = layout.top + kPlotHeight;
  FlowLegend(plot, layout.bottom + kTickLength + 4 + text + 10 + text + 16, &layout);
  return layout;
}

void DrawAxes(const TimePlot& plot, const Layout& layout, RgbImage* image) {
  const int32_t text = TextHeight(kScale);
  for (const double tick : AxisTicks(layout.y_axis)) {
    const int32_t y = layout.Y(tick);
    FillRect(layout.left, y, layout.right, y + 1, kGrid, image);
    FillRect(layout.left - kTickLength, y, layout.left, y + 1, kPlotInk, image);
    const std::string label = TickLabel(layout.y_axis, tick);
    DrawText(label, layout.left - kTickLength - 4 - TextWidth(label, kScale), y - text / 2, kScale,
             kPlotInk, image);
  }
  for (const double tick : AxisTicks(layout.x_axis)) {
    const int32_t x = layout.X(tick);
    FillRect(x, layout.top, x + 1, layout.bottom, kGrid, image);
    FillRect(x, layout.bottom, x + 1, layout.bottom + kTickLength, kPlotInk, image);
    const std::string label = TickLabel(layout.x_axis, tick);
    DrawText(label, x - TextWidth(label, kScale) / 2, layout.bottom + kTickLength + 4, kScale,
             kPlotInk, image);
  }
  FillRect(layout.left - 1, layout.top, layout.left + 1, layout.bottom + 1, kPlotInk, image);
  FillRect(layout.left - 1, layout.bottom, layout.right, layout.bottom + 2, kPlotInk, image);
  DrawText(kYLabel, kPad, layout.top - text - 10, kScale, kPlotInk, image);
  DrawText(plot.x_label, (layout.left + layout.right - TextWidth(plot.x_label, kScale)) / 2,
           layout.bottom + kTickLength + 4 + text + 10, kScale, kPlotInk, image);
}

void DrawPoints(const std::vector<Point>& points, const Layout& layout, RgbImage* image) {
  for (const Point& point : points) {
    const int32_t x = layout.X(point.x);
    const int32_t y = layout.Y(point.ms);
    FillRect(x - kDot / 2, y - kDot / 2, x + kDot - kDot / 2, y + kDot - kDot / 2,
             PlotSeriesColour(point.series), image);
  }
}

// A dashed line across the plot, drawn over the points so that it stays visible, with its value
// in the margin on the right: above the line for the 95th percentile and below it for the median,
// so that the two never overlap.
void DrawPercentileLine(const Layout& layout, double ms, const std::string& label, bool above,
                        Rgb colour, RgbImage* image) {
  const int32_t y = layout.Y(ms);
  for (int32_t x = layout.left + 1; x < layout.right; x += 2 * kDash) {
    FillRect(x, y - 1, std::min(x + kDash, layout.right), y + 1, colour, image);
  }
  const int32_t text = TextHeight(kScale);
  DrawText(label, layout.right + 8, above ? y - 3 - text : y + 3, kScale, colour, image);
}

void DrawLegend(const TimePlot& plot, const Layout& layout, RgbImage* image) {
  for (size_t s = 0; s < plot.series.size(); ++s) {
    const LegendEntry& entry = layout.legend[s];
    FillRect(entry.left, entry.top, entry.left + kSwatch, entry.top + kSwatch, PlotSeriesColour(s),
             image);
    DrawText(plot.series[s].label, entry.left + kSwatch + 6, entry.top, kScale, kPlotInk, image);
  }
}

// Hue, saturation and value (0 to 1 each) as RGB.
Rgb FromHsv(double hue, double saturation, double value) {
  const double sector = hue * 6;
  const auto whole = static_cast<int>(sector) % 6;
  const double fraction = sector - std::floor(sector);
  const double p = value * (1 - saturation);
  const double q = value * (1 - saturation * fraction);
  const double t = value * (1 - saturation * (1 - fraction));
  const double rgb[6][3] = {{value, t, p}, {q, value, p}, {p, value, t},
                            {p, q, value}, {t, p, value}, {value, p, q}};
  return {static_cast<uint8_t>(std::lround(rgb[whole][0] * 255)),
          static_cast<uint8_t>(std::lround(rgb[whole][1] * 255)),
          static_cast<uint8_t>(std::lround(rgb[whole][2] * 255))};
}

}  // namespace

// The palette's colours first; beyond them hues a golden angle apart, which stay apart however
// many series there are.
Rgb PlotSeriesColour(size_t index) {
  if (index < kPaletteSize) return kSeriesPalette[index];
  const double golden_turn = 0.381966;
  const double hue = static_cast<double>(index - kPaletteSize) * golden_turn;
  return FromHsv(hue - std::floor(hue), 0.7, 0.75);
}

RgbImage DrawTimePlot(const TimePlot& plot) {
  const std::vector<Point> points = PointsOf(plot);
  if (points.empty()) return RgbImage();
  const Layout layout = LayOut(plot, points);
  RgbImage image;
  image.width = kWidth;
  image.height = layout.height;
  image.pixels.resize(static_cast<size_t>(image.width) * image.height * 3);
  FillRect(0, 0, image.width, image.height, kBackground, &image);
  // Centred, or from the left edge when too long to centre.
  DrawText(plot.title, std::max(kPad, (kWidth - TextWidth(plot.title, kScale)) / 2), kPad, kScale,
           kPlotInk, &image);
  DrawAxes(plot, layout, &image);
  DrawPoints(points, layout, &image);
  DrawPercentileLine(layout, layout.median, Milliseconds("median", layout.median), false,
                     kPlotMedian, &image);
  DrawPercentileLine(layout, layout.percentile95,
                     Milliseconds("95th percentile", layout.percentile95), true, kPlotPercentile95,
                     &image);
  DrawLegend(plot, layout, &image);
  return image;
}

bool WriteTimePlot(const TimePlot& plot, const std::string& path) {
  const RgbImage image = DrawTimePlot(plot);
  return image.width > 0 && WritePng(path, image);
}

}  // namespace host_sim
