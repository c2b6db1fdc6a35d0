#pragma once
// Charts as the automation objects keep them. The numbers are Excel's constants; places and sizes
// are in points.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/workbook/value.h"

namespace zavhost {

inline constexpr std::int32_t kClusteredColumns = 51;
inline constexpr std::int32_t kAutomatic = -4105;
inline constexpr std::int32_t kNoColour = -4142;
inline constexpr std::int32_t kCategoryAxis = 1;
inline constexpr std::int32_t kValueAxis = 2;

/// A scatter chart, whose categories are numbers.
constexpr bool IsScatter(std::int32_t chart_type) {
  return chart_type == -4169 || (chart_type >= 72 && chart_type <= 75);
}

/// The values of a series: the formula of a reference without its "=", or values themselves.
struct SeriesData {
  std::u16string reference;
  std::vector<Value> values;
};

struct ChartSeries {
  std::u16string name;  // a text, or the formula of a reference with its "="
  SeriesData values;
  SeriesData x_values;
  std::optional<std::int32_t> type;  // the chart's without one
  std::int32_t marker_style = kAutomatic;
  std::int32_t marker_size = 5;
  std::optional<std::int32_t> marker_foreground;
  std::optional<std::int32_t> marker_background;
  bool is_marker_filled = true;
  std::optional<std::int32_t> fill_colour;
  bool has_line = true;
  std::optional<std::int32_t> line_colour;
  double line_weight = 1.5;
  bool is_deleted = false;
};

struct ChartAxis {
  std::optional<std::u16string> title;
  bool has_major_gridlines = false;
  std::optional<double> minimum;
  std::optional<double> maximum;
  std::u16string number_format = u"General";
};

struct Chart {
  std::u16string name;
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  std::int32_t type = kClusteredColumns;
  std::optional<std::u16string> title;
  std::optional<std::int32_t> legend_position = -4152;  // to the right; none without a legend
  std::vector<std::shared_ptr<ChartSeries>> series;
  ChartAxis axes[2] = {{},
                       {.title = {}, .has_major_gridlines = true, .minimum = {}, .maximum = {}}};
  std::int32_t gap_width = 150;
  std::int32_t overlap = 0;
  bool is_deleted = false;
};

}  // namespace zavhost
