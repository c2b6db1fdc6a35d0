// Tables of single variables: summary statistics, frequencies, percentiles and outliers.
#include <algorithm>
#include <cmath>

#include "analyses/builders.h"
#include "analyses/sheet_builder.h"

namespace zavrel::analyses {
namespace {

std::vector<std::string> NamesAfter(const std::string& first, const Data& data) {
  std::vector<std::string> names = {first};
  for (const Variable& variable : data.variables) names.push_back(variable.name);
  return names;
}

struct Statistic {
  const char* label;
  const char* function;
  const char* further;  // arguments behind the data
  Style style = Style::kNumber;
};

constexpr Statistic kStatistics[] = {
    {"Count", "ZavCount", "", Style::kCount},  {"Mean", "ZavMean", ""},
    {"Standard deviation", "ZavStdDev", ""},   {"Minimum", "ZavMin", ""},
    {"Lower quartile", "ZavQuartile", ",1,0"}, {"Median", "ZavMedian", ",0"},
    {"Upper quartile", "ZavQuartile", ",3,0"}, {"Maximum", "ZavMax", ""},
    {"Skewness", "ZavSkewness", ""},           {"Kurtosis", "ZavKurtosis", ""},
};

/// The statistics of these data, a column for each; the cells of the means.
Area AddStatistics(SheetBuilder& sheet, const std::vector<std::string>& data) {
  Area means;
  for (const Statistic& statistic : kStatistics) {
    const Area row = sheet.Row(
        statistic.label, CallForEach(statistic.function, data, statistic.further), statistic.style);
    if (statistic.function == std::string("ZavMean")) means = row;
  }
  return means;
}

void AddMeansChart(SheetBuilder& sheet, const std::string& title, const std::string& across,
                   const Area& names, const Area& means) {
  sheet.Add({.title = title,
             .x_title = across,
             .y_title = sheet.Say("Mean"),
             .series = {{sheet.Say("Mean"), names, means, Series::Look::kColumns}},
             .place = {}});
}

void AddGroupedStatistics(SheetBuilder& sheet, const Variable& variable, const Grouping& grouping) {
  const auto groups = static_cast<std::uint16_t>(grouping.categories.size());
  sheet.Text(sheet.At(sheet.row(), 0), variable.name + " " + sheet.Say("by") + " " + grouping.name,
             Style::kHeading);
  const Area names =
      sheet.Array(sheet.At(sheet.row(), 1, 1, groups),
                  Call("ZavCategoryNames", {grouping.values.Text()}), Style::kHeading);
  sheet.Skip(1);
  std::vector<std::string> data;
  for (std::uint16_t i = 0; i < groups; ++i) {
    data.push_back(InGroup(variable, grouping, names.Part(0, i)));
    sheet.Width(static_cast<std::uint16_t>(i + 1),
                std::max(12.0, static_cast<double>(grouping.categories[i].size()) + 2));
  }
  const Area means = AddStatistics(sheet, data);
  AddMeansChart(sheet, variable.name + " " + sheet.Say("by") + " " + grouping.name, grouping.name,
                names, means);
}

/// Sturges 1926, Journal of the American Statistical Association 21, 65-66.
std::uint32_t ClassesFor(std::size_t count) {
  return static_cast<std::uint32_t>(
      std::clamp(std::ceil(std::log2(static_cast<double>(count))) + 1, 5.0, 20.0));
}

void AddFrequencies(SheetBuilder& sheet, const Variable& variable) {
  const std::string values = variable.values.Text();
  const std::uint32_t classes = ClassesFor(variable.numbers);
  sheet.Headings({variable.name, ""});
  const Area low = sheet.Row("Minimum", {Call("ZavMin", {values})}, Style::kNumber);
  const Area high = sheet.Row("Maximum", {Call("ZavMax", {values})}, Style::kNumber);
  const Area width = sheet.Row(
      "Class width",
      {"=(" + high.TextInSheet() + "-" + low.TextInSheet() + ")/" + std::to_string(classes)},
      Style::kNumber);
  sheet.Skip(1);
  sheet.Headings({sheet.Say("Class"), sheet.Say("From"), sheet.Say("To"), sheet.Say("Middle"),
                  sheet.Say("Count"), sheet.Say("Share"), sheet.Say("Cumulative")});
  const std::uint32_t first = sheet.row();
  const Area counts = sheet.At(first, 4, classes);
  std::string from = low.TextInSheet();
  for (std::uint32_t i = 0; i < classes; ++i) {
    const std::uint32_t row = sheet.row();
    const bool last = i + 1 == classes;
    sheet.Number(sheet.At(row, 0), i + 1, Style::kCount);
    // A class begins in the very cell that ends the one before, so that no value is in both.
    from = sheet.Formula(sheet.At(row, 1), Joined({"=", from})).TextInSheet();
    const std::string end = last ? Joined({"=", high.TextInSheet()})
                                 : Joined({"=", low.TextInSheet(), "+", std::to_string(i + 1), "*",
                                           width.TextInSheet()});
    const std::string to = sheet.Formula(sheet.At(row, 2), end).TextInSheet();
    sheet.Formula(sheet.At(row, 3), Joined({"=(", from, "+", to, ")/2"}));
    sheet.Formula(sheet.At(row, 4),
                  Call("ZavCountRange", {values, from, to, "TRUE", last ? "TRUE" : "FALSE"}),
                  Style::kCount);
    sheet.Formula(sheet.At(row, 5),
                  Joined({"=", sheet.At(row, 4).TextInSheet(), "/ZavCount(", values, ")"}),
                  Style::kProbability);
    sheet.Formula(sheet.At(row, 6), Call("SUM", {sheet.At(first, 5, i + 1).TextInSheet()}),
                  Style::kProbability);
    sheet.Skip(1);
    from = to;
  }
  sheet.Add({.title = sheet.Say("Histogram of") + " " + variable.name,
             .x_title = variable.name,
             .y_title = sheet.Say("Count"),
             .series = {{sheet.Say("Count"), sheet.At(first, 3, classes), counts,
                         Series::Look::kColumns}},
             .place = {}});
}

}  // namespace

ReportSheet BuildSummary(const Data& data) {
  SheetBuilder sheet(data, "Summary", "Summary statistics",
                     "Cells without a number are left out. Quartiles are linear between values; "
                     "variance, skewness and kurtosis are those of a sample.");
  if (data.grouping) {
    for (const Variable& variable : data.variables)
      AddGroupedStatistics(sheet, variable, *data.grouping);
    return std::move(sheet).Finish();
  }
  const std::uint32_t heading = sheet.row();
  sheet.Headings(NamesAfter(sheet.Say("Statistic"), data));
  std::vector<std::string> values(data.variables.size());
  std::ranges::transform(data.variables, values.begin(),
                         [](const Variable& variable) { return variable.values.Text(); });
  const Area means = AddStatistics(sheet, values);
  AddMeansChart(sheet, sheet.Say("Means"), "",
                sheet.At(heading, 1, 1, static_cast<std::uint16_t>(values.size())), means);
  return std::move(sheet).Finish();
}

ReportSheet BuildFrequencies(const Data& data) {
  SheetBuilder sheet(data, "Frequencies", "Frequencies",
                     "Classes of equal width from the smallest to the greatest value. A value on "
                     "a limit belongs to the class above.");
  for (const Variable& variable : data.variables) AddFrequencies(sheet, variable);
  return std::move(sheet).Finish();
}

ReportSheet BuildPercentiles(const Data& data) {
  constexpr double kProbabilities[] = {0.01, 0.05, 0.1, 0.25, 0.5, 0.75, 0.9, 0.95, 0.99};
  SheetBuilder sheet(data, "Percentiles", "Percentiles",
                     "Linear between values, the definition that is usual in spreadsheets.");
  sheet.Headings(NamesAfter(sheet.Say("Fraction"), data));
  const std::uint32_t first = sheet.row();
  for (const double p : kProbabilities) {
    const Area fraction = sheet.At(sheet.row(), 0);
    sheet.Number(fraction, p, Style::kProbability);
    for (std::size_t i = 0; i < data.variables.size(); ++i) {
      sheet.Formula(
          sheet.At(sheet.row(), static_cast<std::uint16_t>(i + 1)),
          Call("ZavPercentile", {data.variables[i].values.Text(), fraction.TextInSheet(), "0"}));
    }
    sheet.Skip(1);
  }
  const auto rows = static_cast<std::uint32_t>(std::size(kProbabilities));
  Chart chart{.title = sheet.Say("Percentiles"),
              .x_title = sheet.Say("Fraction"),
              .y_title = "",
              .series = {},
              .place = {}};
  for (std::size_t i = 0; i < data.variables.size(); ++i) {
    chart.series.push_back({data.variables[i].name, sheet.At(first, 0, rows),
                            sheet.At(first, static_cast<std::uint16_t>(i + 1), rows),
                            Series::Look::kLine});
  }
  sheet.Add(std::move(chart));
  return std::move(sheet).Finish();
}

ReportSheet BuildOutliers(const Data& data) {
  SheetBuilder sheet(data, "Outliers", "Outliers",
                     "A value is a mild outlier from 1.5 interquartile ranges beyond a quartile, "
                     "an extreme one from 3.");
  sheet.Headings({sheet.Say("Variable"), sheet.Say("Lower quartile"), sheet.Say("Upper quartile"),
                  sheet.Say("Interquartile range"), sheet.Say("Lower limit"),
                  sheet.Say("Upper limit"), sheet.Say("Mild"), sheet.Say("Extreme")});
  const std::uint32_t first = sheet.row();
  for (const Variable& variable : data.variables) {
    const std::string values = variable.values.Text();
    const std::uint32_t row = sheet.row();
    const auto cell = [&](std::uint16_t column) { return sheet.At(row, column).TextInSheet(); };
    const auto beyond = [&](const std::string& ranges) {
      return Call("ZavCountRange", {values, "", cell(1) + "-" + ranges + "*" + cell(3)}).substr(1) +
             "+" +
             Call("ZavCountRange", {values, cell(2) + "+" + ranges + "*" + cell(3)}).substr(1);
    };
    sheet.Text(sheet.At(row, 0), variable.name, Style::kLabel);
    sheet.Formula(sheet.At(row, 1), Call("ZavQuartile", {values, "1", "0"}));
    sheet.Formula(sheet.At(row, 2), Call("ZavQuartile", {values, "3", "0"}));
    sheet.Formula(sheet.At(row, 3), "=" + cell(2) + "-" + cell(1));
    sheet.Formula(sheet.At(row, 4), "=" + cell(1) + "-1.5*" + cell(3));
    sheet.Formula(sheet.At(row, 5), "=" + cell(2) + "+1.5*" + cell(3));
    sheet.Formula(sheet.At(row, 6), "=" + beyond("1.5") + "-" + cell(7), Style::kCount);
    sheet.Formula(sheet.At(row, 7), "=" + beyond("3"), Style::kCount);
    sheet.Skip(1);
  }
  const std::uint32_t rows = sheet.row() - first;
  sheet.Add({.title = sheet.Say("Outliers"),
             .x_title = "",
             .y_title = sheet.Say("Values"),
             .series = {{sheet.Say("Mild"), sheet.At(first, 0, rows), sheet.At(first, 6, rows),
                         Series::Look::kColumns},
                        {sheet.Say("Extreme"), sheet.At(first, 0, rows), sheet.At(first, 7, rows),
                         Series::Look::kColumns}},
             .place = {}});
  return std::move(sheet).Finish();
}

}  // namespace zavrel::analyses
