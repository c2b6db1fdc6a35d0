#include <algorithm>
#include <iostream>

#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

/// A defined name may hold letters, digits, dots and underscores and must not read as a number or a
/// cell: other characters become underscores, and what then still reads as a cell gets one in
/// front.
std::u16string NameFromHeading(std::u16string heading) {
  for (char16_t& c : heading) {
    const bool allowed = c == u'.' || c == u'_' || (c >= u'0' && c <= u'9') ||
                         (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c >= 0xC0;
    if (!allowed) c = u'_';
  }
  const std::size_t letters =
      static_cast<std::size_t>(std::find_if(heading.begin(), heading.end(),
                                            [](char16_t c) { return c >= u'0' && c <= u'9'; }) -
                               heading.begin());
  const bool only_digits_follow =
      std::all_of(heading.begin() + static_cast<std::ptrdiff_t>(letters), heading.end(),
                  [](char16_t c) { return c >= u'0' && c <= u'9'; });
  const bool like_a_cell =
      letters <= 3 && only_digits_follow && (letters < heading.size() || letters <= 1);
  return like_a_cell || heading[0] == u'.' ? u"_" + heading : heading;
}

/// "$B$2:$B$9": a name's relative references would move with the cell that uses it.
std::u16string AbsoluteText(const CellRange& range) {
  std::u16string text;
  bool digits = true;
  for (const char16_t c : A1Text(range)) {
    const bool digit = c >= u'0' && c <= u'9';
    if (c != u':' && digit != digits) text += u'$';
    digits = c == u':' || digit;
    text += c;
  }
  return text;
}

/// Where every heading of the first row is a text, the column below it can be called by that name.
void NameColumns(Workbook& workbook) {
  const Sheet& sheet = workbook.sheets.at(0);
  const std::optional<CellRange> used = sheet.used_range();
  if (!used || used->last_row < 1) return;
  for (std::int32_t column = 0; column <= used->last_column; ++column) {
    const std::u16string* heading = sheet.At(0, column).text();
    if (heading == nullptr || heading->empty()) return;
  }
  for (std::int32_t column = 0; column <= used->last_column; ++column) {
    const CellRange range{1, column, used->last_row, column};
    workbook.names.push_back(
        {NameFromHeading(*sheet.At(0, column).text()), u"Data!" + AbsoluteText(range), {}});
  }
}

Workbook WorkbookFor(const CommandLine& line) {
  if (!line.data.empty()) {
    Workbook workbook = ReadCsv(line.data);
    NameColumns(workbook);
    return workbook;
  }
  Workbook workbook;
  workbook.sheets.emplace_back(u"Data");
  return workbook;
}

/// The formula stands in a cell that no data reach.
constexpr CellAddress kFormulaCell{0, 1048575, 16383};

Array AsArray(const Operand& result) {
  if (const auto* array = std::get_if<ArrayPtr>(&result)) return **array;
  const auto* value = std::get_if<Value>(&result);
  return {1, 1, {value == nullptr ? Value(ErrorCode::kValue) : *value}};
}

void PrintJson(const Array& array) {
  if (array.values.size() == 1) {
    std::cout << ToJson(array.values[0]).dump(2) << '\n';
    return;
  }
  auto rows = nlohmann::ordered_json::array();
  for (std::int32_t row = 0; row < array.rows; ++row) {
    auto& cells = rows.emplace_back(nlohmann::ordered_json::array());
    for (std::int32_t column = 0; column < array.columns; ++column)
      cells.push_back(ToJson(array.At(row, column)));
  }
  std::cout << rows.dump(2) << '\n';
}

void PrintLines(const Array& array, OutputForm form) {
  for (std::int32_t row = 0; row < array.rows; ++row) {
    for (std::int32_t column = 0; column < array.columns; ++column) {
      if (column > 0) std::cout << (form == OutputForm::kCsv ? "," : "\t");
      const Value& value = array.At(row, column);
      std::cout << (form == OutputForm::kCsv ? CsvField(ExactText(value)) : DisplayText(value));
    }
    std::cout << '\n';
  }
}

}  // namespace

int EvalCommand(const CommandLine& line) {
  std::unique_ptr<Engine> engine = StartEngine(line, WorkbookFor(line));
  const Array result = AsArray(engine->Evaluate(FromUtf8(line.formula), kFormulaCell));
  if (line.form == OutputForm::kJson) {
    PrintJson(result);
  } else {
    PrintLines(result, line.form);
  }
  std::cout.flush();
  return FinishEngine(*engine);
}

}  // namespace zavhost
