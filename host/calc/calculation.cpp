#include "host/calc/calculation.h"

#include <algorithm>
#include <numeric>

#include "host/calc/formula_text.h"

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
  ForgetMet();
  cell_ = cell;
  random_state_ =
      seed_ ^ (std::uint64_t{cell.sheet} << 40 | static_cast<std::uint64_t>(cell.row) << 20 |
               static_cast<std::uint64_t>(cell.column));
  calling_ = CallingCells{cell.sheet,
                          array.value_or(CellRange{cell.row, cell.column, cell.row, cell.column})};
  return EvaluateFormula(formula, origin, as_array, *this);
}

std::optional<Reference> Calculation::FindReference(const Formula& formula) {
  ForgetMet();
  cell_ = {};
  return EvaluateReference(formula, *this);
}

void Calculation::ForgetMet() {
  met_.clear();
  met_marks_ = 0;
}

bool Calculation::MeetsUncalculated(std::uint32_t sheet, const CellRange& range) {
  bool met = false;
  formulas_.VisitRange(sheet, range, kOpen, [&](std::uint32_t formula, FormulaMarks) {
    met = true;
    if (met_.size() >= kMetAtOnce) return false;
    if (met_.empty() || met_.back() != formula) met_.push_back(formula);
    return true;
  });
  if (met) return true;
  formulas_.VisitRange(sheet, range, kDoubtful | kVolatile,
                       [&](std::uint32_t formula, FormulaMarks marks) {
                         if ((marks & ~met_marks_ & kDoubtful) != 0) met_doubtful_ = formula;
                         met_marks_ |= marks & (kDoubtful | kVolatile);
                         return met_marks_ != (kDoubtful | kVolatile);
                       });
  return false;
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
  if (const ArrayPtr kept = kept_ranges_.Find(sheet_index, sheet, range)) return kept;
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
  kept_ranges_.Keep(sheet_index, sheet, range, array);
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
  if (!function) function = std::make_unique<AddInFunction>(api_, block_, registry.entry(index));
  return function.get();
}

void Calculation::Begin(double now, std::uint64_t seed) {
  parsed_names_.clear();
  kept_ranges_ = {};
  by_cell_.clear();
  now_ = now;
  seed_ = seed;
}

// SplitMix64 (Steele, Lea, Flood, "Fast splittable pseudorandom number generators", OOPSLA 2014).
double Calculation::Random() {
  random_state_ += 0x9E3779B97F4A7C15;
  std::uint64_t mixed = random_state_;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
  mixed ^= mixed >> 31;
  return static_cast<double>(mixed >> 11) * 0x1p-53;
}

std::optional<std::u16string> Calculation::FormulaText(const CellAddress& cell) const {
  const std::vector<FormulaCell>& formulas = workbook_.formulas;
  const auto before = [&](std::uint32_t index, const CellAddress& other) {
    return formulas[index].address < other;
  };
  if (by_cell_.size() != formulas.size()) {
    by_cell_.resize(formulas.size());
    std::iota(by_cell_.begin(), by_cell_.end(), 0u);
    std::sort(by_cell_.begin(), by_cell_.end(), [&](std::uint32_t a, std::uint32_t b) {
      return formulas[a].address < formulas[b].address;
    });
  }
  const auto found = std::lower_bound(by_cell_.begin(), by_cell_.end(), cell, before);
  if (found == by_cell_.end() || formulas[*found].address != cell) return std::nullopt;
  const FormulaCell& formula = formulas[*found];
  return ShownFormulaText(workbook_.formula_texts[formula.text], formula.origin, cell);
}

std::optional<CellRange> Calculation::SpillRange(const CellAddress& cell) {
  const CellRange place{cell.row, cell.column, cell.row, cell.column};
  if (MeetsUncalculated(cell.sheet, place)) throw Uncalculated{};
  std::optional<CellRange> filled;
  formulas_.VisitRange(cell.sheet, place, kAnyMarks, [&](std::uint32_t number, FormulaMarks) {
    const FormulaCell& formula = workbook_.formulas[number];
    if (formula.is_dynamic && formula.address == cell) filled = formula.array;
    return false;
  });
  return filled;
}

FormulaPtr Calculation::ParsedName(const DefinedName& name) {
  FormulaPtr& parsed = parsed_names_[&name];
  if (!parsed) parsed = ParseFormula(name.text);
  return parsed;
}

}  // namespace zavhost
