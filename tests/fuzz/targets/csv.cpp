// Comma-separated text: a sheet, or one line that says why not. A sheet is read back from what is
// written for it.
#include <string>

#include "fuzz/target.h"
#include "host/workbook/text.h"
#include "host/xlsx/csv_text.h"
#include "host/xlsx/sheet_writer.h"

namespace zavrel::tests {
namespace {

using zavhost::Sheet;
using zavhost::Value;

constexpr std::uint64_t kCells = 5000;

std::string Field(const Value& value) {
  std::string plain;
  if (const double* number = value.number()) {
    plain = zavhost::NumberText(*number);
  } else if (const bool* boolean = value.boolean()) {
    plain = *boolean ? "TRUE" : "FALSE";
  } else if (value.text() != nullptr) {
    plain = zavhost::Utf8FromUtf16(*value.text());
  } else if (value.error() != nullptr) {
    plain = zavhost::Utf8FromUtf16(zavhost::ErrorText(*value.error()));
  }
  std::string field = "\"";
  for (const char c : plain) field.append(c == '"' ? 2 : 1, c);
  return field + '"';
}

std::string Written(const Sheet& sheet) {
  std::string text;
  const zavhost::CellRange used = *sheet.used_range();
  for (std::int32_t row = 0; row <= used.last_row; ++row) {
    for (std::int32_t column = 0; column <= used.last_column; ++column) {
      // A comma first, so that no semicolon in the first field is taken for a divider.
      text += Field(sheet.At(row, column)) + ',';
    }
    text += "\r\n";
  }
  return text;
}

void RequireSame(const Sheet& one, const Sheet& other) {
  Require(one.used_range() == other.used_range(), "other cells came back");
  const zavhost::CellRange used = *one.used_range();
  for (std::int32_t column = 0; column <= used.last_column; ++column) {
    for (std::int32_t row = 0; row <= used.last_row; ++row)
      Require(one.At(row, column) == other.At(row, column), "another value came back");
  }
}

void ReadText(std::span<const std::uint8_t> input) {
  const std::string text(input.begin(), input.end());
  try {
    const zavhost::Workbook book = zavhost::ParseCsv(text, kCells);
    const Sheet& sheet = book.sheets.at(0);
    if (!sheet.used_range()) return;
    const zavhost::CellRange used = *sheet.used_range();
    const std::int64_t size = std::int64_t{used.rows()} * used.columns();
    // One far cell in a large text takes a large text to write.
    if (used.first_row + used.first_column + size < 10'000)
      RequireSame(sheet, zavhost::ParseCsv(Written(sheet), kCells).sheets.at(0));
  } catch (const zavhost::WorkbookError& error) {
    const std::string_view line = error.what();
    Require(!line.empty() && line.find('\n') == std::string_view::npos, "no line says why");
  }
}

const FuzzTarget target("csv", ReadText);

}  // namespace
}  // namespace zavrel::tests
