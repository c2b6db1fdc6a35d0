// Analyses that are charts: box plots, normal Q-Q plots and the matrix of scatter plots.
#include <algorithm>

#include "analyses/builders.h"
#include "analyses/sheet_builder.h"

namespace zavrel::analyses {
namespace {

constexpr std::uint32_t kOutlierRows = 20;
constexpr std::uint32_t kRowsBetweenCharts = 20;

struct Part {
  const char* name;
  std::uint32_t rows;
  Series::Look look;
};
// By the numbers of ZavBoxPlotX and ZavBoxPlotY, from 1.
constexpr Part kParts[] = {
    {"Box", 5, Series::Look::kLine},
    {"Lower whisker", 4, Series::Look::kLine},
    {"Upper whisker", 4, Series::Look::kLine},
    {"Median", 2, Series::Look::kLine},
    {"Mean", 1, Series::Look::kMarkers},
    {"Lower extreme outliers", kOutlierRows, Series::Look::kMarkers},
    {"Lower mild outliers", kOutlierRows, Series::Look::kMarkers},
    {"Upper mild outliers", kOutlierRows, Series::Look::kMarkers},
    {"Upper extreme outliers", kOutlierRows, Series::Look::kMarkers},
};
// An empty row between the boxes ends a line.
constexpr std::uint32_t kRowsOfBox = kOutlierRows + 1;

/// The columns of a chart of box plots, with a label and an expression for each.
void AddBoxPlots(SheetBuilder& sheet, const std::string& title,
                 const std::vector<std::pair<std::string, std::string>>& boxes) {
  const std::uint32_t chart_row = sheet.row();
  constexpr std::uint16_t kFirstColumn = 12;  // right of the chart
  sheet.PrintUpTo(kFirstColumn);
  Chart chart{.title = title, .x_title = "", .y_title = "", .series = {}, .place = {}};
  const auto rows = static_cast<std::uint32_t>(boxes.size()) * kRowsOfBox;
  for (std::size_t i = 0; i < std::size(kParts); ++i) {
    const auto column = static_cast<std::uint16_t>(kFirstColumn + 2 * i);
    sheet.Text(sheet.At(chart_row, column), sheet.Say(kParts[i].name), Style::kHeading);
    sheet.Text(sheet.At(chart_row, static_cast<std::uint16_t>(column + 1)), "", Style::kHeading);
    const std::string number = std::to_string(i + 1);
    for (std::size_t box = 0; box < boxes.size(); ++box) {
      const std::uint32_t row = chart_row + 1 + static_cast<std::uint32_t>(box) * kRowsOfBox;
      sheet.Array(sheet.At(row, column, kParts[i].rows),
                  Call("ZavBoxPlotY", {std::to_string(box + 1), number}));
      sheet.Array(sheet.At(row, static_cast<std::uint16_t>(column + 1), kParts[i].rows),
                  Call("ZavBoxPlotX", {boxes[box].second, "0", number}));
    }
    chart.series.push_back({sheet.Say(kParts[i].name), sheet.At(chart_row + 1, column, rows),
                            sheet.At(chart_row + 1, static_cast<std::uint16_t>(column + 1), rows),
                            kParts[i].look});
  }
  for (std::size_t box = 0; box < boxes.size(); ++box)
    chart.x_title += (box == 0 ? "" : ", ") + std::to_string(box + 1) + " " + boxes[box].first;
  sheet.AddBeside(std::move(chart), chart_row, 0);
  sheet.Skip(std::max(rows + 2, kRowsBetweenCharts));
}

}  // namespace

ReportSheet BuildBoxPlots(const Data& data) {
  SheetBuilder sheet(data, "Box plots", "Box plots",
                     "Quartiles are linear between values. At most 20 outliers of a kind are "
                     "drawn.");
  std::vector<std::pair<std::string, std::string>> boxes;
  if (!data.grouping) {
    for (const Variable& variable : data.variables)
      boxes.emplace_back(variable.name, variable.values.Text());
    AddBoxPlots(sheet, sheet.Say("Box plots"), boxes);
    return std::move(sheet).Finish();
  }
  const Grouping& grouping = *data.grouping;
  const auto groups = static_cast<std::uint16_t>(grouping.categories.size());
  sheet.Text(sheet.At(sheet.row(), 0), grouping.name, Style::kHeading);
  const Area names =
      sheet.Array(sheet.At(sheet.row(), 1, 1, groups),
                  Call("ZavCategoryNames", {grouping.values.Text()}), Style::kHeading);
  sheet.Skip(2);
  for (const Variable& variable : data.variables) {
    boxes.clear();
    for (std::uint16_t i = 0; i < groups; ++i)
      boxes.emplace_back(grouping.categories[i], InGroup(variable, grouping, names.Part(0, i)));
    AddBoxPlots(sheet, variable.name + " " + sheet.Say("by") + " " + grouping.name, boxes);
  }
  return std::move(sheet).Finish();
}

ReportSheet BuildQuantilePlots(const Data& data) {
  SheetBuilder sheet(data, "Q-Q plots", "Normal Q-Q plots",
                     "Quantiles of the normal distribution with the data's mean and standard "
                     "deviation. Points on the line fit.");
  const std::uint32_t heading = sheet.row();
  const auto chart_column = static_cast<std::uint16_t>(2 * data.variables.size() + 1);
  for (std::size_t i = 0; i < data.variables.size(); ++i) {
    const Variable& variable = data.variables[i];
    const auto column = static_cast<std::uint16_t>(2 * i);
    const auto count = static_cast<std::uint32_t>(variable.numbers);
    sheet.Text(sheet.At(heading, column), sheet.Say("Quantile"), Style::kHeading);
    sheet.Width(column, 12);
    sheet.Width(static_cast<std::uint16_t>(column + 1), 16);
    sheet.Text(sheet.At(heading, static_cast<std::uint16_t>(column + 1)), variable.name,
               Style::kHeading);
    const Area x = sheet.Array(sheet.At(heading + 1, column, count),
                               Call("ZavQQPlotZValue", {variable.values.Text(), "0"}));
    const Area y = sheet.Array(sheet.At(heading + 1, static_cast<std::uint16_t>(column + 1), count),
                               Call("ZavQQPlotSort", {variable.values.Text()}));
    sheet.AddBeside({.title = sheet.Say("Normal Q-Q plot of") + " " + variable.name,
                     .x_title = sheet.Say("Normal quantile"),
                     .y_title = variable.name,
                     .series = {{variable.name, x, y, Series::Look::kMarkers},
                                {sheet.Say("normal distribution"), x, x, Series::Look::kLine}},
                     .place = {}},
                    heading + static_cast<std::uint32_t>(i) * kRowsBetweenCharts, chart_column);
  }
  return std::move(sheet).Finish();
}

ReportSheet BuildScatterPlots(const Data& data) {
  constexpr std::uint32_t kRowsOfSmallChart = 13;
  constexpr std::uint16_t kColumnsOfSmallChart = 5;
  SheetBuilder sheet(data, "Scatter plots", "Scatter plot matrix",
                     "Each variable across against the ones after it. A row with a gap has no "
                     "point.");
  for (std::size_t i = 0; i < data.variables.size(); ++i) {
    for (std::size_t j = i + 1; j < data.variables.size(); ++j) {
      const Variable &x = data.variables[i], &y = data.variables[j];
      sheet.AddBeside({.title = "",
                       .x_title = x.name,
                       .y_title = y.name,
                       .series = {{y.name, x.values, y.values, Series::Look::kMarkers}},
                       .place = {},
                       .wide = false},
                      sheet.row() + static_cast<std::uint32_t>(i) * kRowsOfSmallChart,
                      static_cast<std::uint16_t>((j - 1) * kColumnsOfSmallChart));
    }
  }
  sheet.Width(0, 9);
  return std::move(sheet).Finish();
}

}  // namespace zavrel::analyses
