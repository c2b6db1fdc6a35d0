#include "host/calc/calculation.h"

#include <algorithm>

namespace zavhost {
namespace {

// The number of formulas for which a formula waits at a time; it meets the others when it is tried
// again. A long range therefore costs a few tries, and many long ranges do not cost the square of
// their length.
constexpr std::size_t kMetAtOnce = 256;
// The largest range that is read as an array; for a larger one, the result is #VALUE! (8 million
// values take 200 MB).
constexpr std::int64_t kArrayLimit = 1 << 23;

}  // namespace

Calculation::Calculation(Workbook& workbook, Judge& judge, const ExcelBehaviour& behaviour)
    : workbook_(workbook), api_(*this, judge, behaviour) {}

Operand Calculation::Evaluate(const Formula& formula, const CellAddress& origin,
                              const CellAddress& cell, const std::optional<CellRange>& array,
                              bool as_array) {
  struct Leave {
    std::optional<CallingCells>& calling;
    ~Leave() { calling.reset(); }
  } const leave{calling_};
  met_.clear();
  cell_ = cell;
  calling_ = CallingCells{cell.sheet,
                          array.value_or(CellRange{cell.row, cell.column, cell.row, cell.column})};
  return EvaluateFormula(formula, origin, as_array, *this);
}

bool Calculation::MeetsUncalculated(std::uint32_t sheet, const CellRange& range) {
  bool met = false;
  uncalculated_.VisitRange(sheet, range, [&](std::uint32_t formula) {
    met = true;
    if (met_.size() >= kMetAtOnce) return false;
    if (met_.empty() || met_.back() != formula) met_.push_back(formula);
    return true;
  });
  return met;
}

Value Calculation::ReadCell(const CellAddress& cell) {
  if (MeetsUncalculated(cell.sheet, {cell.row, cell.column, cell.row, cell.column}))
    throw Uncalculated{};
  return workbook_.sheets[cell.sheet].At(cell.row, cell.column);
}

ArrayPtr Calculation::ReadRange(std::uint32_t sheet_index, const CellRange& whole,
                                RangeExtent extent) {
  if (MeetsUncalculated(sheet_index, whole)) throw Uncalculated{};
  const Sheet& sheet = workbook_.sheets[sheet_index];
  const CellRange range = extent == RangeExtent::kUsed ? sheet.Clipped(whole) : whole;
  auto array = std::make_shared<Array>();
  if (static_cast<std::int64_t>(range.rows()) * range.columns() > kArrayLimit) {
    array->values.emplace_back(ErrorCode::kValue);
    return array;
  }
  array->rows = range.rows();
  array->columns = range.columns();
  const auto columns = static_cast<std::size_t>(range.columns());
  array->values.resize(static_cast<std::size_t>(range.rows()) * columns);
  for (std::int32_t column = range.first_column; column <= range.last_column; ++column) {
    const Sheet::Column& cells = sheet.column(column);
    auto cell = std::lower_bound(
        cells.begin(), cells.end(), range.first_row,
        [](const Sheet::Entry& entry, std::int32_t row) { return entry.row < row; });
    for (; cell != cells.end() && cell->row <= range.last_row; ++cell) {
      array->values[static_cast<std::size_t>(cell->row - range.first_row) * columns +
                    static_cast<std::size_t>(column - range.first_column)] = cell->value;
    }
  }
  return array;
}

CallableFunction* Calculation::FindFunction(std::u16string_view name) {
  const FunctionRegistry& registry = api_.registry();
  if (registry.generation() != functions_generation_) {
    functions_.clear();
    functions_generation_ = registry.generation();
  }
  const std::size_t index = registry.Find(name);
  if (index == FunctionRegistry::npos) return nullptr;
  functions_.resize(registry.functions().size());
  std::unique_ptr<AddInFunction>& function = functions_[index];
  if (!function) {
    const RegistryEntry& entry = registry.entry(index);
    function = std::make_unique<AddInFunction>(api_, block_, entry.type, entry.address);
  }
  return function.get();
}

FormulaPtr Calculation::ParsedName(const DefinedName& name) {
  FormulaPtr& parsed = parsed_names_[&name];
  if (!parsed) parsed = ParseFormula(name.text);
  return parsed;
}

}  // namespace zavhost
