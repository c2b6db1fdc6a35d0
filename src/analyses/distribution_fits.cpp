// Fitting a distribution: what the second add-in knows of the variables.
#include "analyses/builders.h"
#include "analyses/sheet_builder.h"

namespace zavrel::analyses {
namespace {

constexpr std::uint32_t kRanked = 8;
constexpr std::uint32_t kRowsOfFit = 9;  // at most five parameters, and four criteria

/// A result whose size is known only when it is calculated, cell by cell; what it lacks is empty.
void AddCells(SheetBuilder& sheet, const std::string& result, std::uint32_t rows,
              std::uint16_t columns) {
  for (std::uint32_t row = 0; row < rows; ++row) {
    for (std::uint16_t column = 0; column < columns; ++column) {
      const std::string element =
          Call("INDEX", {result, std::to_string(row + 1), std::to_string(column + 1)});
      sheet.Formula(sheet.At(sheet.row() + row, column),
                    Call("IFERROR", {element.substr(1), "\"\""}));
    }
  }
}

void AddFit(SheetBuilder& sheet, const Variable& variable) {
  const std::string values = variable.values.Text();
  sheet.Headings(
      {variable.name, "AIC", "BIC", sheet.Say("Log-likelihood"), sheet.Say("Parameters")});
  const Area ranking = sheet.Array(sheet.At(sheet.row(), 0, kRanked, 5),
                                   Call("ZavDistRank", {values, std::to_string(kRanked)}));
  sheet.Skip(kRanked + 1);
  const std::string best = ranking.Part(0, 0).TextInSheet();
  sheet.Headings({sheet.Say("Best"), sheet.Say("Estimate"), sheet.Say("Standard error")});
  AddCells(sheet, Call("ZavDistFit", {best, values}).substr(1), kRowsOfFit, 3);
  sheet.Skip(kRowsOfFit);
  AddCells(sheet, Call("ZavDistFitTest", {best, values}).substr(1), 2, 2);
  sheet.Text(sheet.At(sheet.row(), 2), sheet.Say("test of fit, by 199 samples"), Style::kNote);
  sheet.Skip(3);

  constexpr std::uint16_t kQuantileColumn = 12;  // right of the chart
  sheet.PrintUpTo(kQuantileColumn);
  const std::uint32_t row = sheet.row();
  const auto count = static_cast<std::uint32_t>(variable.numbers);
  sheet.Text(sheet.At(row, kQuantileColumn), sheet.Say("Quantile"), Style::kHeading);
  sheet.Text(sheet.At(row, kQuantileColumn + 1), variable.name, Style::kHeading);
  const Area points =
      sheet.Array(sheet.At(row + 1, kQuantileColumn, count, 2), Call("ZavDistQQ", {best, values}));
  const Area x = points.Part(0, 0, count), y = points.Part(0, 1, count);
  sheet.Add({.title = sheet.Say("Q-Q plot of") + " " + variable.name,
             .x_title = sheet.Say("Quantile of the best distribution"),
             .y_title = variable.name,
             .series = {{variable.name, x, y, Series::Look::kMarkers},
                        {sheet.Say("perfect fit"), x, x, Series::Look::kLine}},
             .place = {}});
  const std::uint32_t end = row + 1 + count;
  if (end > sheet.row()) sheet.Skip(end - sheet.row());
}

}  // namespace

ReportSheet BuildDistributionFits(const Data& data) {
  SheetBuilder sheet(data, "Distributions", "Fitting a distribution",
                     "By maximum likelihood, the least AIC first. A small p-value speaks against "
                     "the best one too.");
  for (const Variable& variable : data.variables) AddFit(sheet, variable);
  return std::move(sheet).Finish();
}

}  // namespace zavrel::analyses
