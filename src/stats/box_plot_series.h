#pragma once
// A box plot as the series of a scatter chart with straight lines.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "stats/box_plot.h"

namespace zavrel {

/// The parts of a box plot, as users number them. The chart draws a line through the points of a
/// part in their order; the mean and the outliers are markers.
enum class BoxPlotSeries {
  kBox = 1,           // 5 points: around the box, back to its first corner
  kLowerWhisker = 2,  // 4 points: from the box to the whisker's end, then along its cap
  kUpperWhisker = 3,
  kMedian = 4,  // 2 points: across the box
  kMean = 5,    // 1 point
  kLowerExtreme = 6,
  kLowerMild = 7,
  kUpperMild = 8,
  kUpperExtreme = 9,
};

std::optional<BoxPlotSeries> BoxPlotSeriesOf(std::int32_t code);

/// The number of points of the largest part that is not a group of outliers.
inline constexpr std::size_t kMostBoxPlotPoints = 5;

/// The coordinates of a part's points along the data axis, stored in `room` or in the plot's
/// values. A whisker whose end lies inside the box, which can happen with an interpolated quartile,
/// has no length.
std::span<const double> CoordinatesAlong(const BoxPlot& plot, BoxPlotSeries series,
                                         std::array<double, kMostBoxPlotPoints>& room);

/// The coordinates of a part's points across the data axis, relative to the plot's place. Plots
/// whose places differ by 1 do not touch. Empty for a group of outliers, which all lie at the place
/// itself.
std::span<const double> CoordinatesAcross(BoxPlotSeries series);

}  // namespace zavrel
