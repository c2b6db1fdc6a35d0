#include "host/report/report_writer.h"

#include <array>

#include "host/report/new_workbook.h"
#include "host/report/stored_formula.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

using zavrel::analyses::Area;
using zavrel::analyses::Chart;
using zavrel::analyses::Formula;
using zavrel::analyses::ReportCell;
using zavrel::analyses::ReportSheet;
using zavrel::analyses::Series;
using zavrel::analyses::Style;

constexpr lxw_color_t kBlue = 0x1F4E79, kRed = 0xC00000, kGrey = 0x595959;
constexpr lxw_color_t kColours[] = {kBlue, kRed, 0x7F7F7F, 0x548235, 0xBF8F00, 0x7030A0};

/// The formats of the styles, by their numbers.
class Formats {
 public:
  explicit Formats(lxw_workbook* book) {
    for (lxw_format*& format : formats_) format = workbook_add_format(book);
    const auto at = [&](Style style) { return formats_[static_cast<std::size_t>(style)]; };
    format_set_bold(at(Style::kTitle));
    format_set_font_size(at(Style::kTitle), 14);
    format_set_italic(at(Style::kNote));
    format_set_font_color(at(Style::kNote), kGrey);
    format_set_bold(at(Style::kHeading));
    format_set_font_color(at(Style::kHeading), LXW_COLOR_WHITE);
    format_set_bg_color(at(Style::kHeading), kBlue);
    format_set_num_format(at(Style::kNumber), "0.0000");
    format_set_num_format(at(Style::kCount), "0");
    format_set_num_format(at(Style::kProbability), "[=0]0;[<0.0001]0.0E+00;0.0000");
  }
  lxw_format* operator[](Style style) const { return formats_[static_cast<std::size_t>(style)]; }

 private:
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
  const lxw_color_t colour = kColours[number % std::size(kColours)];
  lxw_chart_line line{};
  lxw_chart_fill fill{};
  line.color = fill.color = colour;
  switch (series.look) {
    case Series::Look::kColumns:
      return chart_series_set_fill(added, &fill);
    case Series::Look::kLine:
      line.width = 1.5F;
      chart_series_set_marker_type(added, LXW_CHART_MARKER_NONE);
      return chart_series_set_line(added, &line);
    case Series::Look::kMarkers:
      line.none = 1;
      chart_series_set_line(added, &line);
      line.none = 0;
      chart_series_set_marker_type(added, LXW_CHART_MARKER_CIRCLE);
      chart_series_set_marker_size(added, 5);
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
  options.x_scale = described.wide ? 1.3 : 0.65;
  options.y_scale = described.wide ? 1.1 : 0.85;
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
