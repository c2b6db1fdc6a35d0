#include "support/workbooks.h"

#include <doctest/doctest.h>

#include <cmath>

#include "host/workbook/cell_names.h"

namespace zavhost::tests {
namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(start, text.find_last_not_of(' ') + 1 - start);
}

Value ValueOf(std::string_view written) {
  written = Trimmed(written);
  if (written.starts_with('"')) return Value(Utf16FromUtf8(written.substr(1, written.size() - 2)));
  const std::u16string text = Utf16FromUtf8(written);
  if (text.empty()) return {};
  if (text == u"TRUE" || text == u"FALSE") return text == u"TRUE";
  if (const auto number = NumberFromText(text)) return *number;
  if (const auto error = ErrorFromText(text)) return *error;
  return Value(text);
}

CellRange RangeNamed(std::string_view name) {
  if (name.starts_with('{')) name = name.substr(1, name.size() - 2);
  const auto range = ParseRangeName(name);
  REQUIRE_MESSAGE(range.has_value(), std::string(name));
  return *range;
}

template <class Show>
std::string CellsOf(const Sheet& sheet, std::string_view name, Show show) {
  const CellRange range = RangeNamed(name);
  std::string text;
  for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
    for (std::int32_t column = range.first_column; column <= range.last_column; ++column)
      text += (column > range.first_column ? "," : "") + show(sheet.At(row, column));
    text += ';';
  }
  return text;
}

}  // namespace

std::vector<std::string> CasesIn(std::string_view table) {
  std::vector<std::string> cases;
  for (std::size_t start = 0, end; start < table.size(); start = end + 1) {
    end = std::min(table.find_first_of("|\n", start), table.size());
    const std::string_view text = Trimmed(table.substr(start, end - start));
    if (!text.empty()) cases.emplace_back(text);
  }
  return cases;
}

std::pair<std::string, std::string> SplitAt(std::string_view text, std::string_view divider) {
  const std::size_t at = text.rfind(divider);
  REQUIRE_MESSAGE(at != std::string_view::npos, std::string(text));
  return {std::string(Trimmed(text.substr(0, at))),
          std::string(Trimmed(text.substr(at + divider.size())))};
}

Workbook BookOf(std::initializer_list<std::string_view> columns) {
  Workbook book;
  for (const std::string_view column : columns) {
    const std::size_t colon = column.find(": ");
    std::string_view name = column.substr(0, colon);
    std::u16string sheet = u"Data";
    if (const std::size_t mark = name.find('!'); mark != std::string_view::npos) {
      sheet = Utf16FromUtf8(name.substr(0, mark));
      name.remove_prefix(mark + 1);
    }
    if (!book.FindSheet(sheet)) book.sheets.emplace_back(sheet);
    CellRange cell = RangeNamed(std::string(name) + "1");
    for (std::size_t start = colon + 2, end; start <= column.size(); start = end + 1) {
      end = std::min(column.find('|', start), column.size());
      book.sheets[*book.FindSheet(sheet)].Set(cell.first_row++, cell.first_column,
                                              ValueOf(column.substr(start, end - start)));
    }
  }
  return book;
}

void AddFormulas(Workbook& book, std::string_view table) {
  for (const std::string& written : CasesIn(table)) {
    const std::size_t divider = written.find(" = ");
    const std::string_view place = std::string_view(written).substr(0, divider);
    const bool is_array = place.find_first_of("{:") != std::string_view::npos;
    const CellRange range = RangeNamed(place);
    const CellAddress cell{0, range.first_row, range.first_column};
    book.formulas.push_back({cell, static_cast<std::uint32_t>(book.formula_texts.size()), cell,
                             is_array ? std::optional(range) : std::nullopt});
    book.formula_texts.push_back(Utf16FromUtf8(written.substr(divider + 3)));
  }
}

void Edit(Engine& engine, std::string_view table) {
  for (const std::string& written : CasesIn(table)) {
    const auto [name, content] = SplitAt(written, " =");
    const CellRange cell = RangeNamed(name);
    engine.workbook().sheets[0].Set(cell.first_row, cell.first_column, ValueOf(content));
  }
}

std::string Shown(const Value& value) {
  if (const double* number = value.number()) return Utf8FromUtf16(GeneralText(*number));
  if (const bool* boolean = value.boolean()) return *boolean ? "TRUE" : "FALSE";
  if (const std::u16string* text = value.text()) return Utf8FromUtf16(*text);
  if (const ErrorCode* error = value.error()) return Utf8FromUtf16(ErrorText(*error));
  return "";
}

std::string Shown(const Operand& operand) {
  if (const Value* value = std::get_if<Value>(&operand)) return Shown(*value);
  const ArrayPtr* array = std::get_if<ArrayPtr>(&operand);
  if (array == nullptr) return "neither a value nor an array";
  std::string text;
  for (std::int32_t row = 0; row < (*array)->rows; ++row) {
    for (std::int32_t column = 0; column < (*array)->columns; ++column)
      text += (column > 0 ? "," : "") + Shown((*array)->At(row, column));
    text += ';';
  }
  return text;
}

std::string Shown(Engine& engine, std::string_view formula) {
  return Shown(engine.Evaluate(Utf16FromUtf8(formula), {0, 1, 20}));
}

std::string ShownCells(Engine& engine, std::string_view range) {
  return CellsOf(engine.workbook().sheets[0], range,
                 [](const Value& value) { return Shown(value); });
}

std::string Quoted(const Value& value) {
  return value.text() != nullptr ? '"' + Shown(value) + '"' : Shown(value);
}

std::string Content(const Sheet& sheet, std::string_view range) {
  return CellsOf(sheet, range, Quoted);
}

double Number(Engine& engine, std::string_view formula) {
  const Operand result = engine.Evaluate(Utf16FromUtf8(formula), {0, 1, 20});
  const Value* value = std::get_if<Value>(&result);
  const bool is_number = value != nullptr && value->number() != nullptr;
  REQUIRE_MESSAGE(is_number, std::string(formula), " shows ", Shown(result));
  return *value->number();
}

void CheckFormulas(Engine& engine, std::string_view table) {
  for (const std::string& text : CasesIn(table)) {
    INFO(text);
    if (text.find(" ~ ") != std::string::npos) {
      const auto [formula, other] = SplitAt(text, " ~ ");
      const double found = Number(engine, formula), expected = Number(engine, other);
      CHECK(std::abs(found - expected) <= (expected == 0 ? 1e-16 : 1e-13 * std::abs(expected)));
    } else {
      const auto [formula, shown] = SplitAt(text, " ->");
      CHECK(Shown(engine, formula) == shown);
    }
  }
}

void CheckFormulas(Engine& engine, std::string_view shown, std::string_view table) {
  for (const std::string& formula : CasesIn(table)) {
    INFO(formula);
    CHECK(Shown(engine, formula) == shown);
  }
}

void CheckCells(Engine& engine, std::string_view table) {
  for (const std::string& text : CasesIn(table)) {
    INFO(text);
    const auto [range, shown] = SplitAt(text, " ->");
    CHECK(ShownCells(engine, range) == shown);
  }
}

}  // namespace zavhost::tests
