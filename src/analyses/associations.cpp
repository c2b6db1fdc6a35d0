// Several variables together: covariances, correlations and principal components.
#include "analyses/builders.h"
#include "analyses/sheet_builder.h"

namespace zavrel::analyses {
namespace {

std::string AllValues(const Data& data) {
  std::string values;
  for (const Variable& variable : data.variables)
    values += (values.empty() ? "" : ",") + variable.values.Text();
  return values;
}

std::uint16_t CountOf(const Data& data) {
  return static_cast<std::uint16_t>(data.variables.size());
}

std::vector<std::string> NamesAfter(const std::string& first, const Data& data) {
  std::vector<std::string> names = {first};
  for (const Variable& variable : data.variables) names.push_back(variable.name);
  return names;
}

void AddLabels(SheetBuilder& sheet, const Data& data) {
  for (std::uint16_t i = 0; i < CountOf(data); ++i)
    sheet.Text(sheet.At(sheet.row() + i, 0), data.variables[i].name, Style::kLabel);
}

/// A square matrix of the variables with a title; takes its rows and one more.
Area AddMatrix(SheetBuilder& sheet, const std::string& title, const Data& data,
               std::string formula) {
  sheet.Headings(NamesAfter(sheet.Say(title), data));
  AddLabels(sheet, data);
  const Area matrix =
      sheet.Array(sheet.At(sheet.row(), 1, CountOf(data), CountOf(data)), std::move(formula));
  sheet.Skip(CountOf(data) + 1u);
  return matrix;
}

/// Each variable less its mean, divided by its standard deviation: a column for each.
Area AddStandardized(SheetBuilder& sheet, const Data& data, std::uint32_t row,
                     std::uint16_t column) {
  const std::uint32_t rows = data.variables.front().values.rows;
  for (std::uint16_t i = 0; i < CountOf(data); ++i) {
    const std::string values = data.variables[i].values.Text();
    const auto at = static_cast<std::uint16_t>(column + i);
    sheet.Text(sheet.At(row, at), data.variables[i].name, Style::kHeading);
    sheet.Array(sheet.At(row + 1, at, rows),
                Joined({"=(", values, "-ZavMean(", values, "))/ZavStdDev(", values, ")"}));
  }
  return sheet.At(row + 1, column, rows, CountOf(data));
}

/// The scores of the observations as points, and for each variable a line to its loadings, made
/// three times as long so that both can be seen.
Chart Biplot(SheetBuilder& sheet, const Data& data, const Area& scores, const Area& vectors) {
  Chart chart{.title = sheet.Say("Biplot"),
              .x_title = sheet.Say("Component") + " 1",
              .y_title = sheet.Say("Component") + " 2",
              .series = {{sheet.Say("observations"), scores.Part(0, 0, scores.rows),
                          scores.Part(0, 1, scores.rows), Series::Look::kMarkers}},
              .place = {}};
  sheet.Headings({sheet.Say("Lines of the biplot"), "x", "y"});
  for (std::uint16_t i = 0; i < CountOf(data); ++i) {
    const std::uint32_t row = sheet.row();
    sheet.Text(sheet.At(row, 0), data.variables[i].name, Style::kLabel);
    sheet.Number(sheet.At(row, 1), 0, Style::kNumber);
    sheet.Number(sheet.At(row, 2), 0, Style::kNumber);
    for (std::uint16_t axis = 0; axis < 2; ++axis) {
      sheet.Formula(sheet.At(row + 1, static_cast<std::uint16_t>(1 + axis)),
                    "=3*" + vectors.Part(i, axis).TextInSheet());
    }
    chart.series.push_back(
        {data.variables[i].name, sheet.At(row, 1, 2), sheet.At(row, 2, 2), Series::Look::kLine});
    sheet.Skip(2);
  }
  return chart;
}

}  // namespace

ReportSheet BuildCovariances(const Data& data) {
  SheetBuilder sheet(data, "Covariances", "Covariance matrix",
                     "The divisor is n - 1. A row with a gap is left out for the pairs that it "
                     "concerns.");
  AddMatrix(sheet, "Covariance", data,
            Call("ZavCovarianceMatrix", {"0", "1", "0", AllValues(data)}));
  return std::move(sheet).Finish();
}

ReportSheet BuildCorrelations(const Data& data) {
  SheetBuilder sheet(data, "Correlations", "Correlation matrix",
                     "A row with a gap is left out for the pairs that it concerns.");
  AddMatrix(sheet, "Pearson", data, Call("ZavCorrelationMatrix", {"0", "0", "0", AllValues(data)}));
  AddMatrix(sheet, "Spearman", data,
            Call("ZavCorrelationMatrix", {"1", "0", "0", AllValues(data)}));
  return std::move(sheet).Finish();
}

ReportSheet BuildPrincipalComponents(const Data& data) {
  SheetBuilder sheet(data, "Principal components", "Principal components",
                     "Of the correlations: each variable counts with the same weight. The sign of "
                     "a component is arbitrary.");
  const std::uint16_t count = CountOf(data);
  const Area matrix = AddMatrix(sheet, "Correlation", data,
                                Call("ZavCorrelationMatrix", {"0", "0", "1", AllValues(data)}));
  std::vector<std::string> components = {sheet.Say("Loadings")};
  for (std::uint16_t i = 1; i <= count; ++i)
    components.push_back(sheet.Say("Component") + " " + std::to_string(i));
  sheet.Headings(components);
  AddLabels(sheet, data);
  const Area vectors = sheet.Array(sheet.At(sheet.row(), 1, count, count),
                                   Call("ZavEigenvectors", {matrix.TextInSheet()}));
  sheet.Skip(count + 1u);
  sheet.Headings({sheet.Say("Component"), sheet.Say("Eigenvalue"), sheet.Say("Share"),
                  sheet.Say("Cumulative")});
  const Area values =
      sheet.Array(sheet.At(sheet.row(), 1, count), Call("ZavEigenvalues", {matrix.TextInSheet()}));
  for (std::uint16_t i = 0; i < count; ++i) {
    const std::uint32_t row = sheet.row();
    sheet.Number(sheet.At(row, 0), i + 1, Style::kCount);
    sheet.Formula(sheet.At(row, 2),
                  "=" + values.Part(i, 0).TextInSheet() + "/" + std::to_string(count),
                  Style::kProbability);
    sheet.Formula(sheet.At(row, 3), "=SUM(" + sheet.At(row - i, 2, i + 1u).TextInSheet() + ")",
                  Style::kProbability);
    sheet.Skip(1);
  }
  sheet.Add({.title = sheet.Say("Scree plot"),
             .x_title = sheet.Say("Component"),
             .y_title = sheet.Say("Eigenvalue"),
             .series = {{sheet.Say("Eigenvalue"), sheet.At(values.row, 0, count), values,
                         Series::Look::kLine}},
             .place = {}});
  // Right of the tables and charts: the observations, as they are standardized and as scores.
  const auto right = static_cast<std::uint16_t>(count + 12);
  sheet.PrintUpTo(right);
  const Area standardized = AddStandardized(sheet, data, 3, right);
  const auto score_column = static_cast<std::uint16_t>(right + count + 1);
  for (std::uint16_t i = 0; i < count; ++i) {
    sheet.Text(sheet.At(3, static_cast<std::uint16_t>(score_column + i)),
               sheet.Say("Score") + " " + std::to_string(i + 1), Style::kHeading);
  }
  // Standardized variables times eigenvectors: the signs are those of the loadings.
  const Area scores =
      sheet.Array(sheet.At(4, score_column, standardized.rows, count),
                  Call("MMULT", {standardized.TextInSheet(), vectors.TextInSheet()}));
  sheet.Add(Biplot(sheet, data, scores, vectors));
  return std::move(sheet).Finish();
}

}  // namespace zavrel::analyses
