// Tests that compare groups or pairs: Mann-Whitney, Kruskal-Wallis and Wilcoxon's signed ranks.
#include "analyses/builders.h"
#include "analyses/sheet_builder.h"

namespace zavrel::analyses {
namespace {

/// The names of the groups in a row, by a live formula.
Area AddGroupNames(SheetBuilder& sheet, const Grouping& grouping) {
  const auto groups = static_cast<std::uint16_t>(grouping.categories.size());
  sheet.Text(sheet.At(sheet.row(), 0), grouping.name, Style::kHeading);
  for (std::uint16_t i = 1; i <= groups; ++i) sheet.Width(i, 16);
  const Area names =
      sheet.Array(sheet.At(sheet.row(), 1, 1, groups),
                  Call("ZavCategoryNames", {grouping.values.Text()}), Style::kHeading);
  sheet.Skip(1);
  return names;
}

struct GroupTable {
  std::vector<std::string> samples;  // expressions
  Area counts;
  Area medians;
};

/// A variable's size, median and mean in each group.
GroupTable AddGroups(SheetBuilder& sheet, const Variable& variable, const Grouping& grouping,
                     const Area& names) {
  GroupTable table;
  for (std::uint16_t i = 0; i < names.columns; ++i)
    table.samples.push_back(InGroup(variable, grouping, names.Part(0, i)));
  const auto row = [&](const std::string& label, const char* function, const char* further,
                       Style style) {
    return sheet.Row(label, CallForEach(function, table.samples, further), style);
  };
  sheet.Text(sheet.At(sheet.row(), 0), variable.name, Style::kHeading);
  sheet.Skip(1);
  table.counts = row("Count", "ZavCount", "", Style::kCount);
  table.medians = row("Median", "ZavMedian", ",0", Style::kNumber);
  row("Mean", "ZavMean", "", Style::kNumber);
  return table;
}

void AddMediansChart(SheetBuilder& sheet, const std::string& title, const std::string& across,
                     const Area& names, const Area& medians) {
  sheet.Add({.title = title,
             .x_title = across,
             .y_title = sheet.Say("Median"),
             .series = {{sheet.Say("Median"), names, medians, Series::Look::kColumns}},
             .place = {}});
}

/// "=" and the expression.
std::string Equals(const std::string& expression) { return "=" + expression; }

void AddMannWhitney(SheetBuilder& sheet, const GroupTable& table) {
  const std::string both = table.samples[0] + "," + table.samples[1];
  const std::string n1 = table.counts.Part(0, 0).TextInSheet();
  const std::string n2 = table.counts.Part(0, 1).TextInSheet();
  const auto one = [&](const char* label, const std::string& formula, Style style) {
    return sheet.Row(label, {formula}, style).TextInSheet();
  };
  const std::string ranks =
      one("Rank sum of the first group", Call("ZavMWRankSum1", {both}), Style::kNumber);
  one("U of the first group", Equals(ranks + "-" + n1 + "*(" + n1 + "+1)/2"), Style::kNumber);
  one("Groups of ties", Call("ZavMWTies", {both}), Style::kCount);
  const std::string ties =
      one("Tie correction term", Call("ZavMWTieCorrectionTerm", {both}), Style::kNumber);
  one("p-value, two-sided", Call("ZavMWpValue", {n1, n2, ranks, "0"}), Style::kProbability);
  one("by normal approximation", Call("ZavMWUsingNormalApproximation", {n1, n2}), Style::kPlain);
  const std::string n = "(" + n1 + "+" + n2 + ")";
  const std::string deviation = one(
      "Standard deviation, with ties",
      Equals("SQRT(" + n1 + "*" + n2 + "/12*(" + n + "+1-" + ties + "/(" + n + "*(" + n + "-1))))"),
      Style::kNumber);
  const std::string z =
      one("z, with ties and continuity",
          Equals("MAX(ABS(" + ranks + "-" + n1 + "*(" + n + "+1)/2)-0.5,0)/" + deviation),
          Style::kNumber);
  one("p-value, corrected for ties", Equals("2*ZavNormal(0,1,\"xtoq\"," + z + ")"),
      Style::kProbability);
}

void AddKruskalWallis(SheetBuilder& sheet, const GroupTable& table) {
  std::string samples;
  for (const std::string& sample : table.samples) samples += "," + sample;
  const auto item = [&](const char* number) { return Call("ZavKWData", {number + samples}); };
  const std::string statistic =
      sheet.Row("H, corrected for ties", {item("0")}, Style::kNumber).TextInSheet();
  const std::string df = sheet.Row("Degrees of freedom", {item("2")}, Style::kCount).TextInSheet();
  sheet.Row("Groups of ties", {item("4")}, Style::kCount);
  sheet.Row("p-value", {Call("ZavChisq", {df, "\"xtoq\"", statistic})}, Style::kProbability);
}

/// A table of the groups, a test and a chart for each variable.
void AddComparisons(SheetBuilder& sheet, const Data& data,
                    void (*add_test)(SheetBuilder&, const GroupTable&)) {
  sheet.Width(0, 32);
  const Grouping& grouping = *data.grouping;
  const Area names = AddGroupNames(sheet, grouping);
  for (const Variable& variable : data.variables) {
    const GroupTable table = AddGroups(sheet, variable, grouping, names);
    add_test(sheet, table);
    AddMediansChart(sheet, sheet.Say("Medians of") + " " + variable.name, grouping.name, names,
                    table.medians);
  }
}

}  // namespace

ReportSheet BuildTwoGroups(const Data& data) {
  SheetBuilder sheet(data, "Two groups", "Comparison of two groups",
                     "Mann-Whitney test of whether values of one group tend to be greater. The "
                     "first p-value is exact for small samples and takes no account of ties.");
  AddComparisons(sheet, data, AddMannWhitney);
  return std::move(sheet).Finish();
}

ReportSheet BuildSeveralGroups(const Data& data) {
  SheetBuilder sheet(data, "Several groups", "Comparison of several groups",
                     "Kruskal-Wallis test of whether values of some group tend to be greater, "
                     "corrected for ties, with the chi-square approximation of its p-value.");
  AddComparisons(sheet, data, AddKruskalWallis);
  return std::move(sheet).Finish();
}

ReportSheet BuildSignedRanks(const Data& data) {
  SheetBuilder sheet(data, "Pairs", "Comparison of pairs",
                     "Wilcoxon's signed-rank test of whether the differences lie about 0. "
                     "Differences of 0 and rows with a gap are left out.");
  sheet.Width(0, 34);
  const Variable &first = data.variables[0], &second = data.variables[1];
  const std::string both = first.values.Text() + "," + second.values.Text();
  const auto one = [&](const char* label, const std::string& formula, Style style) {
    return sheet.Row(label, {formula}, style).TextInSheet();
  };
  sheet.Headings({first.name + " - " + second.name, ""});
  one("Pairs", Call("ZavPairCount", {both}), Style::kCount);
  one("Median difference", Call("ZavPairMedian", {both + ",0"}), Style::kNumber);
  one("Mean difference", Call("ZavPairMean", {both}), Style::kNumber);
  const std::string positive = one("Rank sum of positive differences",
                                   Call("ZavWSRPairPositive", {both + ",0"}), Style::kNumber);
  const std::string negative = one("Rank sum of negative differences",
                                   Call("ZavWSRPairNegative", {both + ",0"}), Style::kNumber);
  // All ranks sum to n (n + 1) / 2.
  const std::string n =
      one("Differences other than 0",
          "=ROUND((SQRT(1+8*(" + positive + "+" + negative + "))-1)/2,0)", Style::kCount);
  one("Groups of ties", Call("ZavWSRPairTies", {both + ",0"}), Style::kCount);
  const std::string ties = one("Tie correction term",
                               Call("ZavWSRPairTieCorrectionTerm", {both + ",0"}), Style::kNumber);
  one("p-value, two-sided", Call("ZavWSRpValue", {n, positive, "0"}), Style::kProbability);
  const std::string deviation =
      one("Standard deviation, with ties",
          "=SQRT(" + n + "*(" + n + "+1)*(2*" + n + "+1)/24-" + ties + "/48)", Style::kNumber);
  const std::string z = one(
      "z, with ties and continuity",
      "=MAX(ABS(" + positive + "-" + n + "*(" + n + "+1)/4)-0.5,0)/" + deviation, Style::kNumber);
  one("p-value, corrected for ties", "=2*ZavNormal(0,1,\"xtoq\"," + z + ")", Style::kProbability);
  sheet.Add({.title = first.name + " and " + second.name,
             .x_title = first.name,
             .y_title = second.name,
             .series = {{sheet.Say("pairs"), first.values, second.values, Series::Look::kMarkers}},
             .place = {}});
  return std::move(sheet).Finish();
}

}  // namespace zavrel::analyses
