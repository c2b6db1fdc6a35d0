#include "analyses/sheet_builder.h"

#include <algorithm>

#include "platform/letter_case.h"
#include "platform/utf.h"

namespace zavrel::analyses {
namespace {

constexpr std::uint32_t kRowsOfChart = 18;
constexpr double kWidthOfLabels = 26;

/// The name, with a number behind it if a sheet has it already. All names are short enough for it.
std::string FreeName(const std::string& name, const std::set<std::u16string>& taken) {
  const auto is_taken = [&](const std::string& text) {
    return taken.contains(LowerCase(Utf16FromUtf8(text)));
  };
  std::string free = name;
  for (int number = 2; is_taken(free); ++number) free = name + " (" + std::to_string(number) + ")";
  return free;
}

/// Has nobody take a text out of the data for a formula or a reference.
void MakeText(std::string& text) {
  if (text.starts_with('=')) text = ' ' + text;
}

/// The same for a chart, which can have no control characters.
void MakeTitle(std::string& text) {
  std::ranges::replace_if(
      text, [](char unit) { return static_cast<unsigned char>(unit) < ' '; }, ' ');
  MakeText(text);
}

}  // namespace

SheetBuilder::SheetBuilder(const Data& data, std::string_view name, std::string_view title,
                           std::string_view note)
    : language_(data.language) {
  sheet_.name = FreeName(Say(name), data.taken_names);
  Text(At(0, 0), Say(title), Style::kTitle);
  Text(At(1, 0), Say(note), Style::kNote);
  Width(0, kWidthOfLabels);
  row_ = 3;
}

void SheetBuilder::Text(const Area& cell, std::string text, Style style) {
  MakeText(text);
  sheet_.cells.push_back({cell, std::move(text), style});
}

void SheetBuilder::Number(const Area& cell, double number, Style style) {
  sheet_.cells.push_back({cell, number, style});
}

Area SheetBuilder::Formula(const Area& cell, std::string formula, Style style) {
  sheet_.cells.push_back({cell, analyses::Formula{std::move(formula), false}, style});
  return cell;
}

Area SheetBuilder::Array(const Area& area, std::string formula, Style style) {
  sheet_.cells.push_back({area, analyses::Formula{std::move(formula), true}, style});
  return area;
}

void SheetBuilder::Headings(const std::vector<std::string>& headings) {
  for (std::size_t i = 0; i < headings.size(); ++i) {
    const auto column = static_cast<std::uint16_t>(i);
    Text(At(row_, column), headings[i], Style::kHeading);
    if (column > 0) Width(column, std::max(12.0, static_cast<double>(headings[i].size()) + 2));
  }
  ++row_;
}

Area SheetBuilder::Row(std::string_view label, const std::vector<std::string>& formulas,
                       Style style) {
  Text(At(row_, 0), Say(label), Style::kLabel);
  for (std::size_t i = 0; i < formulas.size(); ++i)
    Formula(At(row_, static_cast<std::uint16_t>(i + 1)), formulas[i], style);
  return At(row_++, 1, 1, static_cast<std::uint16_t>(formulas.size()));
}

void SheetBuilder::Add(Chart chart) {
  AddBeside(std::move(chart), row_ + 1, 0);
  row_ += kRowsOfChart + 2;
}

void SheetBuilder::AddBeside(Chart chart, std::uint32_t row, std::uint16_t column) {
  chart.place = At(row, column);
  for (std::string* const title : {&chart.title, &chart.x_title, &chart.y_title}) MakeTitle(*title);
  for (Series& series : chart.series) MakeTitle(series.title);
  sheet_.charts.push_back(std::move(chart));
}

std::string Call(std::string_view function, std::initializer_list<std::string> arguments) {
  std::string text = "=" + std::string(function) + "(";
  bool first = true;
  for (const std::string& argument : arguments) {
    text += (first ? "" : ",") + argument;
    first = false;
  }
  return text + ")";
}

std::vector<std::string> CallForEach(std::string_view function,
                                     const std::vector<std::string>& data,
                                     std::string_view further) {
  std::vector<std::string> calls(data.size());
  std::ranges::transform(data, calls.begin(), [&](const std::string& values) {
    return Joined({"=", function, "(", values, further, ")"});
  });
  return calls;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

std::string InGroup(const Variable& variable, const Grouping& grouping, const Area& category) {
  return "ZavDestack(" + variable.values.Text() + "," + grouping.values.Text() + "," +
         category.Text() + ")";
}

}  // namespace zavrel::analyses
