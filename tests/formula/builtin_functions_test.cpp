// The host's own worksheet functions against cases in files: what Excel's documentation gives, and
// edge cases.

#include <doctest/doctest.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "formula/sample_context.h"
#include "host/workbook/cell_names.h"
#include "support/workbooks.h"

namespace {

using sample::Context;

/// True if the number agrees with what was written to the last digit that was written, give or take
/// one: "~0.1234", "~1.5E-10".
bool Agrees(std::string_view written, const std::string& shown) {
  double expected = 0.0;
  double number = 0.0;
  const auto read = std::from_chars(shown.data(), shown.data() + shown.size(), number);
  std::from_chars(written.data(), written.data() + written.size(), expected);
  if (read.ec != std::errc() || read.ptr != shown.data() + shown.size()) return false;
  const std::size_t mark = std::min(written.find('E'), written.size());
  const std::size_t point = std::min(written.find('.'), mark);
  double unit = point == mark ? 1.0 : std::pow(10.0, -static_cast<double>(mark - point - 1));
  if (mark < written.size())
    unit *= std::pow(10.0, std::stoi(std::string(written.substr(mark + 1))));
  return std::fabs(number - expected) <= unit * 1.000001;
}

/// Carries out a line that changes the workbook; false for any other line.
bool ChangesWorkbook(Context& context, const std::string& line) {
  std::istringstream words(line);
  std::string command;
  std::string where;
  std::string content;
  words >> command >> where >> std::ws;
  std::getline(words, content);
  if (command == "cells") {
    context.Fill(where, content);
  } else if (command == "formula") {
    context.SetFormulaText(sample::CellNamed(where), zavhost::Utf16FromUtf8(content));
  } else if (command == "hide") {
    context.first_sheet().HideRow(std::stoi(where) - 1);
  } else if (command == "filter") {
    context.first_sheet().set_filter(zavhost::ParseRangeName(where).value());
  } else {
    return false;
  }
  return true;
}

/// A file has one case a line: "SUM(A1:A2) -> 3", with "~" before a rounded number. Formulas are
/// dynamic array formulas, after the line "as cells" those of normal cells. "cells A1
/// {1,2;"a",#N/A}" fills cells, "formula A1 SUM(B1)" gives a cell's formula, "hide 3" and "filter
/// A1:B9" hide a row and set the filter, "at B7" sets the cell of the formulas, "#" begins a
/// remark.
void CheckFile(const std::filesystem::path& file) {
  Context context;
  bool as_array = true;
  std::ifstream lines(file);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    INFO(file.filename().string(), ":", number, ": ", line);
    if (line.empty() || line.starts_with("#") || ChangesWorkbook(context, line)) continue;
    if (line == "as cells" || line == "as arrays") {
      as_array = line == "as arrays";
    } else if (line.starts_with("at ")) {
      context.set_caller(sample::CellNamed(line.substr(3)));
    } else {
      const auto [formula, expected] = zavhost::tests::SplitAt(line, " -> ");
      const std::string shown = context.Evaluate(zavhost::Utf16FromUtf8(formula), as_array);
      if (expected.starts_with("~")) {
        INFO("shown: ", shown);
        CHECK(Agrees(expected.substr(1), shown));
      } else {
        CHECK(shown == expected);
      }
    }
  }
}

TEST_CASE("built-in functions give what Excel gives") {
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(ZAVREL_TEST_DATA) / "functions")) {
    CheckFile(entry.path());
    ++files;
  }
  CHECK(files > 0);
}

}  // namespace
