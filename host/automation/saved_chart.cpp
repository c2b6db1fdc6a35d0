#include "host/automation/saved_chart.h"

#include <algorithm>
#include <new>
#include <string>

#include "host/report/new_workbook.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

constexpr std::int32_t kNone = -4142;

/// Excel's constants beside the library's.
struct Pair {
  std::int32_t excel;
  int library;
};

constexpr Pair kTypes[] = {{1, LXW_CHART_AREA},
                           {4, LXW_CHART_LINE},
                           {65, LXW_CHART_LINE},
                           {63, LXW_CHART_LINE_STACKED},
                           {66, LXW_CHART_LINE_STACKED},
                           {64, LXW_CHART_LINE_STACKED_PERCENT},
                           {67, LXW_CHART_LINE_STACKED_PERCENT},
                           {5, LXW_CHART_PIE},
                           {-4120, LXW_CHART_DOUGHNUT},
                           {51, LXW_CHART_COLUMN},
                           {52, LXW_CHART_COLUMN_STACKED},
                           {53, LXW_CHART_COLUMN_STACKED_PERCENT},
                           {57, LXW_CHART_BAR},
                           {58, LXW_CHART_BAR_STACKED},
                           {59, LXW_CHART_BAR_STACKED_PERCENT},
                           {-4169, LXW_CHART_SCATTER},
                           {72, LXW_CHART_SCATTER_SMOOTH_WITH_MARKERS},
                           {73, LXW_CHART_SCATTER_SMOOTH},
                           {74, LXW_CHART_SCATTER_STRAIGHT_WITH_MARKERS},
                           {75, LXW_CHART_SCATTER_STRAIGHT}};
constexpr Pair kMarkers[] = {{kAutomatic, LXW_CHART_MARKER_AUTOMATIC},
                             {kNone, LXW_CHART_MARKER_NONE},
                             {1, LXW_CHART_MARKER_SQUARE},
                             {2, LXW_CHART_MARKER_DIAMOND},
                             {3, LXW_CHART_MARKER_TRIANGLE},
                             {-4168, LXW_CHART_MARKER_X},
                             {5, LXW_CHART_MARKER_STAR},
                             {-4118, LXW_CHART_MARKER_SHORT_DASH},
                             {-4115, LXW_CHART_MARKER_LONG_DASH},
                             {8, LXW_CHART_MARKER_CIRCLE},
                             {9, LXW_CHART_MARKER_PLUS}};
constexpr Pair kLegends[] = {{-4107, LXW_CHART_LEGEND_BOTTOM},
                             {2, LXW_CHART_LEGEND_TOP_RIGHT},
                             {-4131, LXW_CHART_LEGEND_LEFT},
                             {-4152, LXW_CHART_LEGEND_RIGHT},
                             {-4160, LXW_CHART_LEGEND_TOP}};

template <std::size_t kSize>
std::uint8_t Translated(const Pair (&pairs)[kSize], std::int32_t excel) {
  const auto found = std::find_if(std::begin(pairs), std::end(pairs),
                                  [&](const Pair& pair) { return pair.excel == excel; });
  return static_cast<std::uint8_t>((found == std::end(pairs) ? pairs : found)->library);
}

lxw_color_t ColourOr(const std::optional<std::int32_t>& colour, const ChartSeries& series) {
  return ColourOf(colour.value_or(series.line_colour.value_or(series.fill_colour.value_or(0))));
}

void SaveMarkers(lxw_chart_series* saved, const ChartSeries& series) {
  chart_series_set_marker_type(saved, Translated(kMarkers, series.marker_style));
  if (series.marker_style == kNone || series.marker_style == kAutomatic) return;
  chart_series_set_marker_size(saved, static_cast<std::uint8_t>(series.marker_size));
  if (series.marker_foreground) {
    lxw_chart_line line{};
    line.color = ColourOr(series.marker_foreground, series);
    chart_series_set_marker_line(saved, &line);
  }
  if (series.marker_background || !series.is_marker_filled) {
    lxw_chart_fill fill{};
    fill.none = series.is_marker_filled ? 0 : 1;
    fill.color = ColourOr(series.marker_background, series);
    chart_series_set_marker_fill(saved, &fill);
  }
}

void SaveSeries(lxw_chart* chart, const ChartSeries& series, bool needs_x_values) {
  if (series.values.reference.empty() || (needs_x_values && series.x_values.reference.empty()))
    return;
  const auto formula = [](const std::u16string& reference) {
    return "=" + Utf8FromUtf16(reference);
  };
  const std::string values = formula(series.values.reference);
  const std::string x_values = formula(series.x_values.reference);
  lxw_chart_series* const saved = chart_add_series(
      chart, series.x_values.reference.empty() ? nullptr : x_values.c_str(), values.c_str());
  if (saved == nullptr) throw std::bad_alloc();
  if (!series.name.empty()) chart_series_set_name(saved, Utf8FromUtf16(series.name).c_str());
  SaveMarkers(saved, series);
  if (!series.has_line || series.line_colour) {
    lxw_chart_line line{};
    line.none = series.has_line ? 0 : 1;
    line.color = ColourOr(series.line_colour, series);
    line.width = static_cast<float>(series.line_weight);
    chart_series_set_line(saved, &line);
  }
  if (series.fill_colour) {
    lxw_chart_fill fill{};
    fill.color = ColourOr(series.fill_colour, series);
    chart_series_set_fill(saved, &fill);
  }
}

void SaveAxis(lxw_chart_axis* saved, const ChartAxis& axis) {
  if (axis.title) chart_axis_set_name(saved, Utf8FromUtf16(*axis.title).c_str());
  chart_axis_major_gridlines_set_visible(saved, axis.has_major_gridlines ? LXW_TRUE : LXW_FALSE);
  if (axis.minimum) chart_axis_set_min(saved, *axis.minimum);
  if (axis.maximum) chart_axis_set_max(saved, *axis.maximum);
  if (axis.number_format != u"General")
    chart_axis_set_num_format(saved, Utf8FromUtf16(axis.number_format).c_str());
}

}  // namespace

lxw_color_t ColourOf(std::int32_t colour) {
  const auto bits = static_cast<std::uint32_t>(colour);
  const std::uint32_t turned = (bits & 0xFF) << 16 | (bits & 0xFF00) | (bits >> 16 & 0xFF);
  return turned == 0 ? static_cast<lxw_color_t>(LXW_COLOR_BLACK) : turned;
}

void SaveChart(lxw_workbook* book, lxw_worksheet* sheet, const Chart& chart,
               const CellPosition& cell, double left, double top) {
  lxw_chart* const saved = workbook_add_chart(book, Translated(kTypes, chart.type));
  if (saved == nullptr) throw std::bad_alloc();
  for (const auto& series : chart.series) SaveSeries(saved, *series, IsScatter(chart.type));
  // A file with a chart without series cannot be opened.
  if (saved->series_list == nullptr || STAILQ_EMPTY(saved->series_list)) return;
  if (chart.title) {
    chart_title_set_name(saved, Utf8FromUtf16(*chart.title).c_str());
  } else {
    chart_title_off(saved);
  }
  chart_legend_set_position(saved, chart.legend_position
                                       ? Translated(kLegends, *chart.legend_position)
                                       : static_cast<std::uint8_t>(LXW_CHART_LEGEND_NONE));
  SaveAxis(saved->x_axis, chart.axes[0]);
  SaveAxis(saved->y_axis, chart.axes[1]);
  if (chart.type >= 51 && chart.type <= 59) {
    chart_set_series_gap(saved, static_cast<std::uint16_t>(chart.gap_width));
    if (chart.overlap != 0)
      chart_set_series_overlap(saved, static_cast<std::int8_t>(chart.overlap));
  }
  // In pixels, of which there are four to three points; the library's own size is 480 by 288.
  constexpr double kPixels = 4.0 / 3.0;
  lxw_chart_options options{};
  options.x_offset = static_cast<std::int32_t>(left * kPixels);
  options.y_offset = static_cast<std::int32_t>(top * kPixels);
  options.x_scale = chart.width * kPixels / 480;
  options.y_scale = chart.height * kPixels / 288;
  Check(worksheet_insert_chart_opt(sheet, static_cast<lxw_row_t>(cell.row),
                                   static_cast<lxw_col_t>(cell.column), saved, &options));
}

}  // namespace zavhost
