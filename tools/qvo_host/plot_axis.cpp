#include "qvo_host/plot_axis.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace host_sim {
namespace {

constexpr double kStepsWanted = 5;
// Keeps a value that lands on a tick, give or take rounding, on that tick.
constexpr double kSlack = 1e-9;

// The smallest of 1, 2 or 5 x 10^n that is at least `least`.
double RoundStep(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double multiple : {1.0, 2.0, 5.0}) {
    if (multiple * power >= least * (1 - kSlack)) return multiple * power;
  }
  return 10 * power;
}

}  // namespace

PlotAxis RoundAxis(double lowest, double highest) {
  PlotAxis axis;
  const double span = highest - lowest;
  axis.step = RoundStep(span > 0 ? span / kStepsWanted : std::max(std::abs(lowest), 1.0) / 10);
  axis.low = std::floor(lowest / axis.step + kSlack) * axis.step;
  axis.high = std::ceil(highest / axis.step - kSlack) * axis.step;
  if (axis.high <= axis.low) axis.high = axis.low + axis.step;
  return axis;
}

std::vector<double> AxisTicks(const PlotAxis& axis) {
  std::vector<double> ticks;
  const long steps = std::lround((axis.high - axis.low) / axis.step);
  for (long i = 0; i <= steps; ++i) ticks.push_back(axis.low + static_cast<double>(i) * axis.step);
  return ticks;
}

std::string TickLabel(const PlotAxis& axis, double value) {
  const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(axis.step) + kSlack)));
  // A tick a rounding error away from zero would read "-0".
  if (std::abs(value) < axis.step * kSlack) value = 0;
  char text[32];
  std::snprintf(text, sizeof(text), "%.*f", decimals, value);
  return text;
}

}  // namespace host_sim
