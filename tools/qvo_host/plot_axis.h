// The numbers along a plot's axis: round steps (1, 2 or 5 x 10^n) from a tick at or below the
// lowest value to one at or above the highest, so that a reader can tell any value at a glance.
#pragma once

#include <string>
#include <vector>

namespace host_sim {

struct PlotAxis {
  double low = 0;
  double high = 1;
  double step = 1;
};

// About five steps over [lowest, highest]; a range of one value is widened to one step.
PlotAxis RoundAxis(double lowest, double highest);

// low, low + step, ... high.
std::vector<double> AxisTicks(const PlotAxis& axis);

// `value` with as many decimals as the axis step needs ("0.05", "20").
std::string TickLabel(const PlotAxis& axis, double value);

}  // namespace host_sim
