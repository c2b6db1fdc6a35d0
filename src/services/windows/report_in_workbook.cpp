#include "services/windows/report_in_workbook.h"

#include <map>
#include <tuple>

#include "analyses/looks.h"
#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/utf.h"
#include "services/windows/calm_excel.h"
#include "services/windows/formula_block.h"
#include "services/windows/try_to.h"

namespace zavrel::services {
namespace {

using analyses::Area;
using analyses::Look;
using analyses::ReportCell;
using analyses::ReportSheet;
using analyses::Style;

/// An address of several areas may have as many characters.
constexpr std::size_t kMostCharactersOfAddress = 255;

constexpr double kShareBeforeCells = 0.4;
constexpr double kShareBeforeCharts = 0.6;

/// Excel has red in the lowest byte.
long ExcelColor(analyses::Color color) {
  return static_cast<long>((color & 0xFF) << 16 | (color & 0xFF00) | color >> 16);
}

FormulaBlock BlockOf(const ReportSheet& report) {
  std::size_t rows = 1, columns = 1;
  for (const ReportCell& cell : report.cells) {
    rows = std::max(rows, std::size_t{cell.area.row} + cell.area.rows);
    columns = std::max(columns, std::size_t{cell.area.column} + cell.area.columns);
  }
  FormulaBlock block{MsExcel::Block(rows, columns), {}};
  for (const ReportCell& cell : report.cells) {
    const Area& area = cell.area;
    MsExcel::CellValue& value = block.cells.At(area.row, area.column);
    if (const auto* text = std::get_if<std::string>(&cell.content)) {
      if (!text->empty()) value = Utf16FromUtf8(*text);
    } else if (const auto* number = std::get_if<double>(&cell.content)) {
      value = *number;
    } else if (const auto& formula = std::get<analyses::Formula>(cell.content); formula.is_array) {
      block.arrays.push_back(
          {area.row, area.column, area.rows, area.columns, Utf16FromUtf8(formula.text)});
    } else {
      value = Utf16FromUtf8(formula.text);
    }
  }
  return block;
}

void Apply(const Look& look, const MsExcel::Range& cells) {
  const Look plain;
  const MsExcel::Font font = cells.CellFont();
  if (look.bold) font.SetBold(true);
  if (look.italic) font.SetItalic(true);
  if (look.points != plain.points) font.SetSize(look.points);
  if (look.color != plain.color) font.SetColor(ExcelColor(look.color));
  if (look.fill != plain.fill) cells.SetFillColor(ExcelColor(look.fill));
  if (std::string_view(look.number_format) != plain.number_format)
    cells.SetNumberFormat(Utf16FromUtf8(look.number_format));
}

/// As many areas at once as an address has room for.
void ApplyStyles(const MsExcel::Worksheet& sheet, const ReportSheet& report) {
  std::map<Style, std::string> addresses;
  const auto apply = [&](Style style, std::string& address) {
    if (!address.empty()) Apply(LookOf(style), sheet.Range(Utf16FromUtf8(address)));
    address.clear();
  };
  for (const ReportCell& cell : report.cells) {
    if (cell.style == Style::kPlain || cell.style == Style::kLabel) continue;
    std::string& address = addresses[cell.style];
    const std::string area = cell.area.TextInSheet();
    if (address.size() + 1 + area.size() > kMostCharactersOfAddress) apply(cell.style, address);
    address += (address.empty() ? "" : ",") + area;
  }
  for (auto& [style, address] : addresses) apply(style, address);
}

void AddSeries(const MsExcel::Chart& chart, const analyses::Series& described, std::size_t number) {
  using Looks = analyses::Series::Look;
  const MsExcel::Series series = chart.SeriesCollection().NewSeries();
  const long color = ExcelColor(analyses::SeriesColor(number));
  series.SetName(Utf16FromUtf8(described.title));
  series.SetXValues(Utf16FromUtf8("=" + described.x.Text()));
  series.SetValues(Utf16FromUtf8("=" + described.y.Text()));
  if (described.look == Looks::kColumns) {
    series.Fill().SetColor(color);
    return;
  }
  const bool has_line = described.look == Looks::kLine;
  const MsExcel::LineFormat line = series.Line();
  line.SetVisible(has_line);
  if (has_line) {
    line.SetWeight(analyses::kLinePoints);
    line.SetColor(color);
    series.SetMarkerStyle(MsExcel::MarkerStyle::kNone);
  } else {
    series.SetMarkerStyle(MsExcel::MarkerStyle::kCircle);
    series.SetMarkerSize(analyses::kMarkerPoints);
    series.SetMarkerColor(color);
    series.SetMarkerHollow();
  }
}

void SetAxisTitle(const MsExcel::Chart& chart, MsExcel::AxisType type, const std::string& title) {
  if (title.empty()) return;
  const MsExcel::Axis axis = chart.AxisOf(type);
  axis.SetHasTitle(true);
  axis.AxisTitle().SetText(Utf16FromUtf8(title));
}

void AddChart(const MsExcel::Worksheet& sheet, const analyses::Chart& described) {
  const MsExcel::Range place =
      sheet.Cells().Cell(static_cast<long>(described.place.row) + 1, described.place.column + 1L);
  const auto [width, height] = SizeOf(described);
  const MsExcel::Chart chart =
      sheet.ChartObjects().Add(place.Left(), place.Top(), width, height).Chart();
  const bool has_columns = described.series.front().look == analyses::Series::Look::kColumns;
  chart.SetType(has_columns ? MsExcel::ChartType::kColumnClustered
                            : MsExcel::ChartType::kScatterLines);
  // Excel may have put the cells around the active one into it.
  while (chart.SeriesCollection().Count() > 0) chart.SeriesCollection().At(1).Delete();
  for (std::size_t i = 0; i < described.series.size(); ++i)
    AddSeries(chart, described.series[i], i);
  // Excel gives a chart of one series its name.
  chart.SetHasTitle(!described.title.empty());
  if (!described.title.empty()) chart.ChartTitle().SetText(Utf16FromUtf8(described.title));
  SetAxisTitle(chart, MsExcel::AxisType::kCategory, described.x_title);
  SetAxisTitle(chart, MsExcel::AxisType::kValue, described.y_title);
  chart.SetHasLegend(described.series.size() > 1);
}

void SetUpPage(const MsExcel::Worksheet& sheet, const ReportSheet& report) {
  const MsExcel::PageSetup page = sheet.PageSetup();
  page.SetLandscape();
  page.FitToWidth();
  if (report.printed_columns == 0) return;
  const Area printed{report.name, 0, 0, static_cast<std::uint32_t>(sheet.Cells().RowCount()),
                     report.printed_columns};
  page.SetPrintArea(Utf16FromUtf8(printed.TextInSheet()));
}

void Fill(const MsExcel::Worksheet& sheet, const ReportSheet& report, Progress& progress) {
  progress.StepUnlessCancelled(Utf16FromUtf8(report.name), kShareBeforeCells);
  sheet.Rename(Utf16FromUtf8(report.name));
  for (const auto& [column, width] : report.widths)
    sheet.Cells().Cell(1, column + 1L).EntireColumn().SetColumnWidth(width);
  WriteFormulas(sheet.Cells().Cell(1, 1), BlockOf(report));
  ApplyStyles(sheet, report);
  double share = kShareBeforeCharts;
  for (const analyses::Chart& chart : report.charts) {
    progress.StepUnlessCancelled(Utf16FromUtf8(chart.title), share);
    AddChart(sheet, chart);
    share += (1 - kShareBeforeCharts) / static_cast<double>(report.charts.size());
  }
  SetUpPage(sheet, report);
}

}  // namespace

MsExcel::Worksheet AddReport(const MsExcel::Worksheet& behind, const ReportSheet& report,
                             Progress& progress) {
  const MsExcel::Workbook book = behind.ParentBook();
  if (book.ProtectStructure())
    throw VekCantAddWorksheet("AddReport", messages::kMessageStructureProtected, {book.Name()});
  CalmExcel calm(book.ExcelApplication());
  const MsExcel::Worksheet sheet = book.Worksheets().AddAfter(behind);
  try {
    Fill(sheet, report, progress);
  } catch (...) {
    TryTo([&] { sheet.Delete(); });
    throw;
  }
  calm.LeaveAt(sheet);
  return sheet;
}

}  // namespace zavrel::services
