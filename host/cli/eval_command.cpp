#include <algorithm>
#include <iostream>
#include <unordered_set>

#include "host/cli/commands.h"
#include "host/cli/json_value.h"
#include "host/workbook/cell_names.h"
#include "host/workbook/text.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {
namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool IsLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

/// Whether the name reads as a cell (AB12), or as R or C, which Excel reserves for rows and
/// columns.
bool ReadsAsReference(const std::u16string& name) {
  if (name.size() == 1) return name == u"r" || name == u"R" || name == u"c" || name == u"C";
  const auto digits = std::find_if_not(name.begin(), name.end(), IsLetter);
  const auto letters = digits - name.begin();
  return letters >= 1 && letters <= 3 && digits != name.end() &&
         std::all_of(digits, name.end(), IsDigit);
}

/// The name for a column with this heading: characters that are not allowed in names become "_",
/// and a leading "_" protects a name that would read as a number or a cell.
std::u16string NameFromHeading(std::u16string heading) {
  for (char16_t& c : heading) {
    if (!IsDigit(c) && !IsLetter(c) && c != u'.' && c != u'_' && c < 0xC0) c = u'_';
  }
  const bool starts_badly = IsDigit(heading[0]) || heading[0] == u'.';
  return starts_badly || ReadsAsReference(heading) ? u"_" + heading : heading;
}

/// "$B$2:$B$9": relative references in a name would move with the cell that uses it.
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

/// Names the data of each column after its heading. Says on stderr when a heading is not a valid
/// name and becomes another one, and when a column gets no name because an earlier one has it.
void NameColumns(Workbook& workbook) {
  const Sheet& sheet = workbook.sheets.at(0);
  const std::optional<CellRange> used = sheet.used_range();
  if (!used || used->last_row < 1) return;
  std::unordered_set<std::u16string> known;
  for (std::int32_t column = 0; column <= used->last_column; ++column) {
    const std::u16string heading = Utf16FromUtf8(DisplayText(sheet.At(0, column)));
    if (heading.empty()) continue;
    const std::u16string name = NameFromHeading(heading);
    if (!known.insert(LowerCase(name)).second) {
      std::cerr << "note: column " << column + 1 << " gets no name: an earlier column is called "
                << PrintableUtf8(name) << '\n';
      continue;
    }
    if (name != heading) {
      std::cerr << "note: the column \"" << PrintableUtf8(heading) << "\" is called "
                << PrintableUtf8(name) << '\n';
    }
    const CellRange range{1, column, used->last_row, column};
    workbook.names.push_back({name, u"Data!" + AbsoluteText(range), {}});
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

/// The cell of the formula, which no data reach.
constexpr CellAddress kFormulaCell{0, 1048575, 16383};

Array AsArray(const Operand& result) {
  if (const auto* array = std::get_if<ArrayPtr>(&result)) return **array;
  const auto* value = std::get_if<Value>(&result);
  return {1, 1, {value == nullptr ? Value(ErrorCode::kValue) : *value}};
}

void PrintJson(const Array& array) {
  if (array.values.size() == 1) {
    std::cout << JsonText(ToJson(array.values[0]), JsonLayout::kIndented) << '\n';
    return;
  }
  auto rows = nlohmann::ordered_json::array();
  for (std::int32_t row = 0; row < array.rows; ++row) {
    auto& cells = rows.emplace_back(nlohmann::ordered_json::array());
    for (std::int32_t column = 0; column < array.columns; ++column)
      cells.push_back(ToJson(array.At(row, column)));
  }
  std::cout << JsonText(rows, JsonLayout::kIndented) << '\n';
}

void PrintLines(const Array& array, OutputForm form) {
  for (std::int32_t row = 0; row < array.rows; ++row) {
    for (std::int32_t column = 0; column < array.columns; ++column) {
      if (column > 0) std::cout << (form == OutputForm::kCsv ? "," : "\t");
      const Value& value = array.At(row, column);
      std::cout << (form == OutputForm::kCsv ? CsvField(ExactText(value))
                                             : PrintableUtf8(Utf16FromUtf8(DisplayText(value))));
    }
    std::cout << '\n';
  }
}

}  // namespace

int EvalCommand(const CommandLine& line) {
  std::unique_ptr<Engine> engine = StartEngine(line, WorkbookFor(line));
  const std::u16string formula = Utf16FromUtf8(line.formula);
  const Array result = AsArray(engine->Evaluate(formula, kFormulaCell));
  const std::u16string not_computed = engine->NotComputed(formula);
  if (line.form == OutputForm::kJson) {
    PrintJson(result);
  } else {
    PrintLines(result, line.form);
  }
  std::cout.flush();
  const int judged = FinishEngine(*engine);
  if (not_computed.empty()) return judged;
  std::cerr << "warning: the formula uses " << PrintableUtf8(not_computed)
            << ", which neither the add-in nor this program computes\n";
  return judged == kExitSuccess ? kExitDoubtful : judged;
}

}  // namespace zavhost
