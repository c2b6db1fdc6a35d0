#include "host/report/report_writer.h"

#include <array>

#include "analyses/looks.h"
#include "host/report/new_workbook.h"
#include "host/report/stored_formula.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

using zavrel::analyses::Area;
using zavrel::analyses::Chart;
using zavrel::analyses::Formula;
using zavrel::analyses::Look;
using zavrel::analyses::ReportCell;
using zavrel::analyses::ReportSheet;
using zavrel::analyses::Series;
using zavrel::analyses::Style;

/// The library's charts before they are scaled, in points.
constexpr double kChartWidth = 360, kChartHeight = 216;

/// The formats of the styles, by their numbers.
class Formats {
 public:
  explicit Formats(lxw_workbook* book) {
    for (std::size_t i = 0; i < formats_.size(); ++i) {
      formats_[i] = workbook_add_format(book);
      Apply(zavrel::analyses::LookOf(static_cast<Style>(i)), formats_[i]);
    }
  }
  lxw_format* operator[](Style style) const { return formats_[static_cast<std::size_t>(style)]; }

 private:
  static void Apply(const Look& look, lxw_format* format) {
    if (look.bold) format_set_bold(format);
    if (look.italic) format_set_italic(format);
    format_set_font_size(format, look.points);
    format_set_font_color(format, look.color);
    if (look.fill != zavrel::analyses::kWhite) format_set_bg_color(format, look.fill);
    format_set_num_format(format, look.number_format);
  }

  std::array<lxw_format*, static_cast<std::size_t>(Style::kProbability) + 1> formats_{};
};

void WriteCell(lxw_worksheet* sheet, const ReportCell& cell, const Formats& formats) {
  const Area& area = cell.area;
  lxw_format* const format = formats[cell.style];
  if (const auto* text = std::get_if<std::string>(&cell.content)) {
    Check(worksheet_write_string(sheet, area.row, area.column, text->c_str(), format));
  } else if (const auto* number = std::get_if<double>(&cell.content)) {
    Check(worksheet_write_number(sheet, area.row, area.column, *number, format));
  } else {
    const auto& formula = std::get<Formula>(cell.content);
    const std::string stored = StoredFormula(Utf16FromUtf8(formula.text));
    const auto last_column = static_cast<lxw_col_t>(area.column + area.columns - 1);
    Check(formula.is_array
              ? worksheet_write_array_formula(sheet, area.row, area.column,
                                              area.row + area.rows - 1, last_column,
                                              ("{" + stored + "}").c_str(), format)
              : worksheet_write_formula(sheet, area.row, area.column, stored.c_str(), format));
  }
}

std::string Reference(const Area& area) { return "=" + area.Text(); }

void AddSeries(lxw_chart* chart, const Series& series, std::size_t number) {
  const std::string x = Reference(series.x), y = Reference(series.y);
  lxw_chart_series* const added = chart_add_series(chart, x.c_str(), y.c_str());
  if (added == nullptr) throw std::bad_alloc();
  chart_series_set_name(added, series.title.c_str());
  lxw_chart_line line{};
  lxw_chart_fill fill{};
  line.color = fill.color = zavrel::analyses::SeriesColor(number);
  switch (series.look) {
    case Series::Look::kColumns:
      return chart_series_set_fill(added, &fill);
    case Series::Look::kLine:
      line.width = zavrel::analyses::kLinePoints;
      chart_series_set_marker_type(added, LXW_CHART_MARKER_NONE);
      return chart_series_set_line(added, &line);
    case Series::Look::kMarkers:
      line.none = 1;
      chart_series_set_line(added, &line);
      line.none = 0;
      chart_series_set_marker_type(added, LXW_CHART_MARKER_CIRCLE);
      chart_series_set_marker_size(added, zavrel::analyses::kMarkerPoints);
      chart_series_set_marker_line(added, &line);
      fill.none = 1;
      return chart_series_set_marker_fill(added, &fill);
  }
}

void AddChart(lxw_workbook* book, lxw_worksheet* sheet, const Chart& described) {
  const bool columns = described.series.front().look == Series::Look::kColumns;
  lxw_chart* const chart =
      workbook_add_chart(book, columns ? LXW_CHART_COLUMN : LXW_CHART_SCATTER_STRAIGHT);
  if (chart == nullptr) throw std::bad_alloc();
  for (std::size_t i = 0; i < described.series.size(); ++i)
    AddSeries(chart, described.series[i], i);
  if (described.title.empty()) {
    chart_title_off(chart);
  } else {
    chart_title_set_name(chart, described.title.c_str());
  }
  if (!described.x_title.empty()) chart_axis_set_name(chart->x_axis, described.x_title.c_str());
  if (!described.y_title.empty()) chart_axis_set_name(chart->y_axis, described.y_title.c_str());
  if (described.series.size() == 1) chart_legend_set_position(chart, LXW_CHART_LEGEND_NONE);
  lxw_chart_options options{};
  const auto [width, height] = zavrel::analyses::SizeOf(described);
  options.x_scale = width / kChartWidth;
  options.y_scale = height / kChartHeight;
  Check(worksheet_insert_chart_opt(sheet, described.place.row, described.place.column, chart,
                                   &options));
}

void WriteValue(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const Value& value) {
  if (const double* number = value.number()) {
    Check(worksheet_write_number(sheet, row, column, *number, nullptr));
  } else if (!value.IsBlank()) {
    Check(worksheet_write_string(sheet, row, column, Utf8FromUtf16(GeneralText(value)).c_str(),
                                 nullptr));
  }
}

void WriteData(lxw_worksheet* sheet, const DataTable& data, const Formats& formats) {
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    const auto column = static_cast<lxw_col_t>(i);
    const DataColumn& cells = data.columns[i];
    Check(worksheet_write_string(sheet, 0, column, cells.name.c_str(), formats[Style::kHeading]));
    for (std::size_t row = 0; row < cells.cells.size(); ++row)
      WriteValue(sheet, static_cast<lxw_row_t>(row + 1), column, cells.cells[row]);
  }
  worksheet_freeze_panes(sheet, 1, 0);
}

}  // namespace

void WriteReport(const std::filesystem::path& file, const DataTable& data,
                 const ReportSheet& report) {
  NewWorkbook book(file);
  const Formats formats(book.get());
  lxw_worksheet* const sheet = workbook_add_worksheet(book.get(), report.name.c_str());
  lxw_worksheet* const data_sheet = workbook_add_worksheet(book.get(), kDataSheet);
  if (sheet == nullptr || data_sheet == nullptr) throw std::bad_alloc();
  for (const auto& [column, width] : report.widths)
    Check(worksheet_set_column(sheet, column, column, width, nullptr));
  for (const ReportCell& cell : report.cells) WriteCell(sheet, cell, formats);
  WriteData(data_sheet, data, formats);
  for (const Chart& chart : report.charts) AddChart(book.get(), sheet, chart);
  if (report.printed_columns > 0) {
    Check(worksheet_print_area(sheet, 0, 0, LXW_ROW_MAX - 1,
                               static_cast<lxw_col_t>(report.printed_columns - 1)));
  }
  worksheet_set_landscape(sheet);
  worksheet_fit_to_pages(sheet, 1, 0);
  book.Close();
}

}  // namespace zavhost
