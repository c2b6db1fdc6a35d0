// The example workbooks, recalculated, beside the values that R gave for their cells.
#include <doctest/doctest.h>

#include <cmath>
#include <fstream>
#include <string>

#include "host/xlsx/xlsx_file.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

using zavhost::Value;

/// A cell in the columns A to Z.
Value At(const zavhost::Workbook& book, const std::string& sheet, const std::string& cell) {
  return book.sheets[*book.FindSheet(zavhost::Utf16FromUtf8(sheet))].At(
      std::stoi(cell.substr(1)) - 1, cell[0] - 'A');
}

/// Compares the numbers of a book with each line "sheet,cell,expected" of a file. A fourth field
/// other than 0 marks a column whose sign is arbitrary: there it begins with a positive value. The
/// error is relative for numbers beyond the scale.
int CompareWith(const zavhost::Workbook& book, const char* file_name, double error, double scale) {
  std::ifstream file(std::filesystem::path(ZAVREL_TEST_DATA) / file_name);
  int compared = 0;
  double sign = 1;
  std::string column;
  for (std::string sheet, cell, line;
       std::getline(file, sheet, ',') && std::getline(file, cell, ',') && std::getline(file, line);
       ++compared) {
    INFO("sheet = ", sheet, ", cell = ", cell);
    const Value value = At(book, sheet, cell);
    REQUIRE(value.number() != nullptr);
    const std::size_t comma = line.find(',');
    const bool arbitrary = comma != std::string::npos && line[comma + 1] != '0';
    if (!arbitrary) sign = 1;
    if (arbitrary && column != sheet + cell[0]) sign = std::copysign(1.0, *value.number());
    column = arbitrary ? sheet + cell[0] : std::string();
    const double expected = std::stod(line);
    CHECK(std::abs(sign * *value.number() - expected) <= error * (scale + std::abs(expected)));
  }
  return compared;
}

}  // namespace

TEST_CASE("the example workbooks give what R gives") {
  const struct {
    const char *book, *reference;
    double error, scale;
    int numbers;
    const char* others;
  } examples[] = {
      {"air-quality.xlsx", "air_quality_reference.csv", 1e-13, 1, 124,
       "Summary!B35 -> no data | Summary!E47 -> n/a"},
      {"floods.xlsx", "floods_reference.csv", 1e-6, 0, 47,
       "Ranking!A2 -> generalised Pareto | Fits!A2 -> location"},
      {"iris.xlsx", "iris_reference.csv", 1e-12, 1, 678, ""},
      {"nonparametric.xlsx", "nonparametric_reference.csv", 1e-12, 0, 50,
       "Mann-Whitney!B11 -> FALSE | Kruskal-Wallis!B16 -> too many arrangements |"
       "Kruskal-Wallis!B17 -> 1 | Kruskal-Wallis!C17 -> 2"},
      {"sleep-and-looms.xlsx", "sleep_and_looms_reference.csv", 1e-13, 1, 377,
       "Paired!B14 -> a patient gained nothing | Categories!A7 -> H | Categories!A9 -> M |"
       "Categories!A10 -> #N/A | Categories!B16 -> TRUE"}};
  for (const auto& example : examples) {
    CAPTURE(example.book);
    auto engine = ServingAddIn(
        zavhost::ReadXlsx(std::filesystem::path(ZAVREL_SOURCE_DIR) / "examples" / example.book));
    engine->LoadAddIn(DistributionsFile());
    const zavhost::RecalculationReport report = engine->Recalculate();
    CHECK((report.warnings.empty() && report.errors.empty()));
    CHECK(CompareWith(engine->workbook(), example.reference, example.error, example.scale) ==
          example.numbers);
    for (const std::string& other : zavhost::tests::CasesIn(example.others)) {
      INFO(other);
      const auto [place, shown] = zavhost::tests::SplitAt(other, " -> ");
      const auto [sheet, cell] = zavhost::tests::SplitAt(place, "!");
      CHECK(Shown(At(engine->workbook(), sheet, cell)) == shown);
    }
    CloseClean(*engine);
  }
}

}  // namespace zavrel::tests
