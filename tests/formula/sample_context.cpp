#include "formula/sample_context.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/workbook/cell_names.h"
#include "support/workbooks.h"

namespace sample {

using namespace zavhost;

namespace {

std::string ShownValue(const Value& value) {
  return value.IsBlank() ? "blank" : zavhost::tests::Quoted(value);
}

std::string ShownArray(const Array& array) {
  std::string shown = "{";
  for (std::int32_t row = 0; row < array.rows; ++row) {
    if (row > 0) shown += ";";
    for (std::int32_t column = 0; column < array.columns; ++column) {
      if (column > 0) shown += ",";
      shown += ShownValue(array.At(row, column));
    }
  }
  return shown + "}";
}

Workbook SampleWorkbook() {
  Workbook book;
  book.sheets.emplace_back(u"Sheet1");
  book.sheets.emplace_back(u"Other sheet");
  Sheet& first = book.sheets[0];
  for (std::int32_t i = 0; i < 12; ++i) first.Set(i / 3, i % 3, i + 1.0);
  first.Set(0, 4, Value(u"x"));
  first.Set(1, 4, Value(u"5"));
  first.Set(2, 4, true);
  first.Set(3, 4, ErrorCode::kNA);
  for (std::int32_t i = 0; i < 3; ++i) book.sheets[1].Set(i, 0, 100.0 * (i + 1));
  return book;
}

}  // namespace

std::string Shown(const Operand& operand) {
  if (const Value* value = std::get_if<Value>(&operand)) return ShownValue(*value);
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand)) return ShownArray(**array);
  if (std::holds_alternative<MissingArgument>(operand)) return "missing";
  const Reference& reference = std::get<Reference>(operand);
  std::string shown = std::to_string(reference.sheet) + "!";
  for (const CellRange& area : reference.areas) {
    if (shown.back() != '!') shown += ",";
    shown += Utf8FromUtf16(A1Text(area));
  }
  return shown;
}

Operand Echo::Call(std::span<const Operand> arguments) {
  ++calls_;
  std::string shown;
  for (const Operand& argument : arguments) {
    if (!shown.empty()) shown += " & ";
    shown += Shown(argument);
  }
  return Value(std::u16string_view(Utf16FromUtf8(shown)));
}

Context::Context() : Context(SampleWorkbook()) {}

Context::Context(Workbook workbook) : workbook_(std::move(workbook)) {
  Register(u"ECHOR", "R");
  Register(u"ECHOA", "A");
  Register(u"ECHOS", "S");
}

Value Context::ReadCell(const CellAddress& cell) {
  ++cells_read_;
  return workbook_.sheets[cell.sheet].At(cell.row, cell.column);
}

// Always short of the whole, so that thousands of mutated formulas take no time.
ArrayPtr Context::ReadRange(std::uint32_t sheet, const CellRange& range, RangeExtent) {
  CellRange clipped = range;
  clipped.last_row = std::max(range.first_row, std::min(range.last_row, 19));
  clipped.last_column = std::max(range.first_column, std::min(range.last_column, 9));
  Array array;
  array.rows = clipped.rows();
  array.columns = clipped.columns();
  for (std::int32_t row = clipped.first_row; row <= clipped.last_row; ++row) {
    for (std::int32_t column = clipped.first_column; column <= clipped.last_column; ++column) {
      array.values.push_back(ReadCell({sheet, row, column}));
    }
  }
  return std::make_shared<const Array>(std::move(array));
}

CallableFunction* Context::FindFunction(std::u16string_view name) {
  const auto found = functions_.find(LowerCase(name));
  return found == functions_.end() ? nullptr : &found->second;
}

CellAddress CellNamed(std::string_view name) {
  const auto cell = ParseCellName(name);
  if (!cell) throw std::invalid_argument(std::string(name));
  return {0, cell->row, cell->column};
}

void Context::Fill(std::string_view first_cell, std::string_view constant, std::uint32_t sheet) {
  const CellAddress first = CellNamed(first_cell);
  const Operand given = EvaluateFormula(*ParseFormula(Utf16FromUtf8(constant)), first, true, *this);
  const ArrayPtr* held = std::get_if<ArrayPtr>(&given);
  const Array array = held != nullptr ? **held : Array{1, 1, {std::get<Value>(given)}};
  for (std::int32_t row = 0; row < array.rows; ++row) {
    for (std::int32_t column = 0; column < array.columns; ++column) {
      const Value& value = array.At(row, column);
      const bool is_blank = value.text() != nullptr && value.text()->empty();
      workbook_.sheets[sheet].Set(first.row + row, first.column + column,
                                  is_blank ? Value() : value);
    }
  }
}

std::optional<CellRange> Context::SpillRange(const CellAddress& cell) {
  if (cell != CellAddress{}) return std::nullopt;
  return CellRange{0, 0, 3, 0};
}

void Context::DefineName(std::u16string name, std::u16string text,
                         std::optional<std::uint32_t> sheet) {
  workbook_.names.push_back({std::move(name), std::move(text), sheet});
}

void Context::Register(std::u16string_view name, std::string kinds) {
  functions_.emplace(LowerCase(name), Echo(std::move(kinds)));
}

std::string Context::Evaluate(std::u16string_view formula, bool as_array) {
  try {
    return Shown(EvaluateFormula(*ParseFormula(formula), caller_, as_array, *this));
  } catch (const FormulaError& error) {
    return std::string("error: ") + error.what();
  }
}

std::string Context::EvaluateFrom(std::u16string_view formula, CellAddress origin) {
  return Shown(EvaluateFormula(*ParseFormula(formula), origin, false, *this));
}

}  // namespace sample
