#pragma once
// An example workbook beside the values that R gave for its cells.

#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "host/xlsx/xlsx_file.h"
#include "integration/running_add_in.h"

namespace zavrel::tests {

/// Recalculated, without a warning or an error.
class ExampleWorkbook {
 public:
  explicit ExampleWorkbook(const char* name)
      : engine_(ServingAddIn(
            zavhost::ReadXlsx(std::filesystem::path(ZAVREL_SOURCE_DIR) / "examples" / name))) {
    const zavhost::RecalculationReport report = engine_->Recalculate();
    CHECK(report.warnings.empty());
    CHECK(report.errors.empty());
  }
  zavhost::Engine& engine() { return *engine_; }

  /// The value of a cell in the columns A to Z.
  zavhost::Value At(const std::string& sheet, const std::string& cell) const {
    const zavhost::Workbook& book = engine_->workbook();
    return book.sheets[*book.FindSheet(zavhost::Utf16FromUtf8(sheet))].At(
        std::stoi(cell.substr(1)) - 1, cell[0] - 'A');
  }

  /// compare(number, expected) for each line "sheet,cell,expected" of a file; how many there were.
  template <class Compare>
  int CompareWith(const char* file_name, Compare compare) const {
    std::ifstream file(std::filesystem::path(ZAVREL_TEST_DATA) / file_name);
    int compared = 0;
    for (std::string sheet, cell, number;
         std::getline(file, sheet, ',') && std::getline(file, cell, ',') &&
         std::getline(file, number);
         ++compared) {
      CAPTURE(sheet);
      CAPTURE(cell);
      const zavhost::Value value = At(sheet, cell);
      REQUIRE(value.number() != nullptr);
      compare(*value.number(), std::stod(number));
    }
    return compared;
  }

 private:
  std::unique_ptr<zavhost::Engine> engine_;
};

}  // namespace zavrel::tests
