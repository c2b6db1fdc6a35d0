#include "host/calc/recalculation.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/calc/formula_text.h"

namespace zavhost {
namespace {

constexpr std::size_t kErrorLimit = 1000;
constexpr std::size_t kCircleCellsNamed = 10;
constexpr std::int64_t kArrayCellLimit = 1 << 21;  // two whole columns; 300 MB in all
constexpr std::size_t kProgressStep = 256;
// Of parsed formulas that are kept, each of which takes many times its text. Most are needed once.
constexpr std::size_t kParsedCharacters = 1 << 20;
// How often everything is calculated anew because dynamic arrays fill other cells than before. Each
// array that depends on another one's shape costs one more; arrays that never settle exist.
constexpr int kMostPasses = 20;

CellRange RangeFrom(const CellAddress& cell, std::int32_t rows, std::int32_t columns) {
  return {cell.row, cell.column, cell.row + rows - 1, cell.column + columns - 1};
}

/// The value of an array formula in a cell of its range: single rows and columns of a result
/// repeat, and cells beyond the result show #N/A.
Value ShownInRange(const Operand& result, std::int32_t row, std::int32_t column) {
  if (const Value* value = std::get_if<Value>(&result)) return *value;
  const ArrayPtr* held = std::get_if<ArrayPtr>(&result);
  if (held == nullptr) return ErrorCode::kValue;
  const Array& array = **held;
  if (array.rows == 1) row = 0;
  if (array.columns == 1) column = 0;
  if (row >= array.rows || column >= array.columns) return ErrorCode::kNA;
  return array.At(row, column);
}

/// Whether two numbers differ by no more than the last bits, in which the same function of two
/// programs may differ.
bool DifferInLastBitsOnly(const Value& a, const Value& b) {
  constexpr double kLastBits = 1e-15;
  const double* x = a.number();
  const double* y = b.number();
  return x != nullptr && y != nullptr && std::fabs(*x - *y) <= kLastBits * std::fabs(*x);
}

}  // namespace

Recalculation::Recalculation(Calculation& calculation, Judge& judge, const EngineOptions& options)
    : calculation_(calculation),
      workbook_(calculation.cells_workbook()),
      judge_(judge),
      options_(options),
      uses_(workbook_, calculation.api().registry()),
      parsed_(workbook_.formula_texts.size()) {}

Recalculation::~Recalculation() {
  calculation_.formulas().Clear();
  judge_.SetPlace({}, {});
}

RecalculationReport Recalculation::Run() {
  Select();
  for (int pass = 1;; ++pass) {
    BeginPass();
    for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) {
      if (CellOf(entry).is_dynamic) CalculateFrom(entry);
    }
    if (!respilled_) break;
    if (pass == kMostPasses)
      throw WorkbookError("the cells that dynamic array formulas fill change without end");
  }
  for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) CalculateFrom(entry);
  if (options_.progress) options_.progress(done_, entries_.size());
  Report();
  return std::move(report_);
}

CellRange Recalculation::RangeOf(std::uint32_t entry) const {
  const FormulaCell& formula = CellOf(entry);
  return formula.array.value_or(RangeFrom(formula.address, 1, 1));
}

std::string Recalculation::Name(std::uint32_t entry) const {
  return CellText(workbook_, CellOf(entry).address);
}

const FormulaPtr& Recalculation::Parsed(std::uint32_t text) {
  FormulaPtr& parsed = parsed_[text];
  if (parsed) return parsed;
  const std::u16string& formula = workbook_.formula_texts[text];
  parsed_characters_ += formula.size();
  if (parsed_characters_ > kParsedCharacters) {
    std::ranges::fill(parsed_, nullptr);
    parsed_characters_ = formula.size();
  }
  return parsed = ParseFormula(formula);
}

void Recalculation::Select() {
  if (workbook_.formulas.size() > options_.formula_limit) {
    throw WorkbookError(
        fmt::format("the workbook has more than {} formulas; the option --max-formulas allows more",
                    options_.formula_limit));
  }
  entries_.resize(workbook_.formulas.size());
  for (std::uint32_t i = 0; i < entries_.size(); ++i) {
    const FormulaCell& formula = CellOf(i);
    const FormulaUse& use = uses_.Of(formula.text);
    Entry& entry = entries_[i];
    entry.uses_add_in = use.uses_add_in;
    entry.is_volatile = use.is_volatile;
    entry.is_kept = !use.foreign.empty();
    entry.before =
        workbook_.sheets[formula.address.sheet].At(formula.address.row, formula.address.column);
  }
}

void Recalculation::BeginPass() {
  respilled_ = false;
  done_ = 0;
  problems_.clear();
  doubts_.clear();
  stale_.clear();
  report_.errors.clear();
  FormulaIndex& index = calculation_.formulas();
  index.Clear();
  array_cells_ = 0;
  for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) {
    entries_[entry].state = State::kUncalculated;
    const CellRange range = RangeOf(entry);
    if (CellOf(entry).array) CountArrayCells(range);
    index.Add(entry, CellOf(entry).address.sheet, range);
  }
  for (const std::uint32_t entry : index.Finish()) {
    KeepWithProblem(entry, "two formulas fill the same cell");
    entries_[entry].state = State::kDone;
    ++done_;
  }
  MakeRoom();
}

void Recalculation::CountArrayCells(const CellRange& range) {
  array_cells_ += std::int64_t{range.rows()} * range.columns();
  if (array_cells_ > kArrayCellLimit)
    throw WorkbookError("the array formulas of the workbook fill more than 2 million cells");
}

// Creates all result cells now, column by column. Results arrive in the order of dependencies, and
// inserting them one by one would move the cells below each time.
void Recalculation::MakeRoom() {
  std::vector<CellAddress> empty;
  for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) {
    const std::uint32_t sheet = CellOf(entry).address.sheet;
    const CellRange range = RangeOf(entry);
    for (std::int32_t column = range.first_column; column <= range.last_column; ++column) {
      for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
        if (workbook_.sheets[sheet].At(row, column).IsBlank())
          empty.push_back({sheet, row, column});
      }
    }
  }
  for (const CellAddress& cell : empty)
    workbook_.sheets[cell.sheet].Append(cell.row, cell.column, Value());
  for (Sheet& sheet : workbook_.sheets) sheet.SortColumns();
}

// The list of formulas that were begun; the one on top is tried next.

void Recalculation::PutOnTop(std::uint32_t entry) {
  if (top_ == entry) return;
  if (entries_[entry].is_listed) TakeOut(entry);
  entries_[entry].is_listed = true;
  entries_[entry].below = top_;
  entries_[entry].above = kNone;
  if (top_ != kNone) entries_[top_].above = entry;
  top_ = entry;
}

void Recalculation::TakeOut(std::uint32_t entry) {
  Entry& taken = entries_[entry];
  if (taken.above != kNone) {
    entries_[taken.above].below = taken.below;
  } else {
    top_ = taken.below;
  }
  if (taken.below != kNone) entries_[taken.below].above = taken.above;
  taken.is_listed = false;
  taken.below = taken.above = kNone;
}

void Recalculation::CalculateFrom(std::uint32_t entry) {
  if (entries_[entry].state == State::kDone) return;
  PutOnTop(entry);
  while (top_ != kNone) {
    const std::uint32_t next = top_;
    if (entries_[next].state == State::kDone) {
      TakeOut(next);
    } else {
      Calculate(next);
    }
  }
}

void Recalculation::Calculate(std::uint32_t entry) {
  const FormulaCell& formula = CellOf(entry);
  if (entries_[entry].uses_add_in) {
    judge_.SetPlace(Name(entry),
                    "=" + Utf8FromUtf16(ShownFormulaText(workbook_.formula_texts[formula.text],
                                                         formula.origin, formula.address)));
  }
  try {
    if (entries_[entry].is_kept) {
      Keep(entry);
      return;
    }
    // Excel hands a function in a dynamic array formula its own cell as the caller.
    const std::optional<CellRange> calling = formula.is_dynamic ? std::nullopt : formula.array;
    const Operand result = calculation_.Evaluate(
        *Parsed(formula.text), formula.origin, formula.address, calling, formula.array.has_value());
    const FormulaMarks met = calculation_.met_marks();
    if ((met & kDoubtful) != 0) {
      const auto root = doubts_.find(calculation_.met_doubtful());
      doubts_[entry] = root == doubts_.end() ? calculation_.met_doubtful() : root->second;
    }
    entries_[entry].is_volatile = entries_[entry].is_volatile || (met & kVolatile) != 0;
    Store(entry, result);
    Finish(entry, static_cast<FormulaMarks>((met & kDoubtful) |
                                            (entries_[entry].is_volatile ? kVolatile : 0) |
                                            (entries_[entry].changed ? kChanged : 0)));
  } catch (const Uncalculated&) {
    entries_[entry].state = State::kWaiting;
    WaitForMet(entry);
  } catch (const FormulaError& error) {
    KeepWithProblem(entry, error.what());
    Finish(entry, kDoubtful);
  }
}

// Each waiting formula in the list, from bottom to top, is needed by the one before it. A formula
// that is met again therefore closes a cycle.
void Recalculation::WaitForMet(std::uint32_t entry) {
  const std::vector<std::uint32_t>& met = calculation_.met();
  for (const std::uint32_t other : met) {
    if (entries_[other].state == State::kWaiting) {
      ReportCircle(other);
      return;
    }
  }
  for (const std::uint32_t other : met) PutOnTop(other);
  if (met.empty()) Finish(entry, 0);  // should not happen; the formula would be tried forever
}

void Recalculation::ReportCircle(std::uint32_t first) {
  std::vector<std::uint32_t> members;
  for (std::uint32_t entry = first; entry != kNone; entry = entries_[entry].above) {
    if (entries_[entry].state == State::kWaiting) members.push_back(entry);
  }
  std::string line = Name(members[0]) + ": circular reference";
  if (members.size() > 1) {
    line += " through ";
    for (std::size_t i = 1; i < std::min(members.size(), kCircleCellsNamed); ++i)
      line += (i > 1 ? ", " : "") + Name(members[i]);
    if (members.size() > kCircleCellsNamed)
      line += fmt::format(" and {} more", members.size() - kCircleCellsNamed);
  }
  line += members.size() > 1 ? "; the stored values are kept" : "; the stored value is kept";
  if (report_.errors.size() < kErrorLimit) report_.errors.push_back(std::move(line));
  for (const std::uint32_t member : members) {
    problems_[member] = "circular reference";
    Finish(member, kDoubtful);
  }
}

void Recalculation::Finish(std::uint32_t entry, FormulaMarks marks) {
  entries_[entry].state = State::kDone;
  calculation_.formulas().Mark(entry, CellOf(entry).address.sheet, RangeOf(entry), marks);
  ++done_;
  if (options_.progress && done_ % kProgressStep == 0) options_.progress(done_, entries_.size());
}

// Results.

void Recalculation::Store(std::uint32_t entry, const Operand& result) {
  if (CellOf(entry).is_dynamic) {
    const CellRange range = SpillRangeFor(entry, result);
    if (range != RangeOf(entry)) Respill(entry, range);
    const ArrayPtr* array = std::get_if<ArrayPtr>(&result);
    const bool is_blocked = array != nullptr && range.IsSingleCell() && (*array)->values.size() > 1;
    if (is_blocked) {
      SetCell(entry, {range.first_row, range.first_column}, ErrorCode::kSpill);
      return;
    }
  }
  const CellRange range = RangeOf(entry);
  for (std::int32_t column = range.first_column; column <= range.last_column; ++column) {
    for (std::int32_t row = range.first_row; row <= range.last_row; ++row)
      SetCell(entry, {row, column},
              ShownInRange(result, row - range.first_row, column - range.first_column));
  }
}

void Recalculation::SetCell(std::uint32_t entry, const CellPosition& cell, Value value) {
  const std::uint32_t number = CellOf(entry).address.sheet;
  Sheet& sheet = workbook_.sheets[number];
  const Value& stored = sheet.At(cell.row, cell.column);
  if (stored == value) return;
  // A stored result of Excel's own functions stands for the same value. What depends on it then
  // has the bits that it has in Excel.
  if (!entries_[entry].uses_add_in && DifferInLastBitsOnly(stored, value)) return;
  entries_[entry].changed = true;
  report_.written.push_back({number, cell.row, cell.column});
  sheet.Set(cell.row, cell.column, std::move(value));
}

CellRange Recalculation::SpillRangeFor(std::uint32_t entry, const Operand& result) const {
  const CellAddress& cell = CellOf(entry).address;
  const ArrayPtr* array = std::get_if<ArrayPtr>(&result);
  const CellRange alone = RangeFrom(cell, 1, 1);
  if (array == nullptr) return alone;
  const std::int32_t rows = (*array)->rows;
  const std::int32_t columns = (*array)->columns;
  if (rows > kSheetRows - cell.row || columns > kSheetColumns - cell.column) return alone;
  const CellRange wanted = RangeFrom(cell, rows, columns);
  bool is_free = true;
  calculation_.formulas().VisitRange(cell.sheet, wanted, kAnyMarks,
                                     [&](std::uint32_t other, FormulaMarks) {
                                       is_free = other == entry;
                                       return is_free;
                                     });
  const CellRange now = RangeOf(entry);
  const Sheet& sheet = workbook_.sheets[cell.sheet];
  for (std::int32_t column = wanted.first_column; column <= wanted.last_column && is_free;
       ++column) {
    const Sheet::Column& cells = sheet.column(column);
    auto other =
        std::lower_bound(cells.begin(), cells.end(), wanted.first_row,
                         [](const Sheet::Entry& held, std::int32_t row) { return held.row < row; });
    for (; other != cells.end() && other->row <= wanted.last_row && is_free; ++other)
      is_free = other->value.IsBlank() || now.Contains(other->row, column);
  }
  return is_free ? wanted : alone;
}

void Recalculation::Respill(std::uint32_t entry, const CellRange& range) {
  respilled_ = true;
  CountArrayCells(range);
  FormulaCell& formula = workbook_.formulas[entry];
  const CellRange before = RangeOf(entry);
  for (std::int32_t column = before.first_column; column <= before.last_column; ++column) {
    for (std::int32_t row = before.first_row; row <= before.last_row; ++row) {
      if (!range.Contains(row, column)) SetCell(entry, {row, column}, Value());
    }
  }
  // The formula itself is written anew, with its range.
  report_.written.push_back(formula.address);
  formula.array = range;
  workbook_.sheets[formula.address.sheet].Cover(range);
}

// Formulas that keep their stored values.

void Recalculation::Keep(std::uint32_t entry) {
  const FormulaCell& formula = CellOf(entry);
  bool is_doubtful = entries_[entry].before.IsBlank();
  std::vector<Reference> references;
  try {
    references = ReferencesOf(*Parsed(formula.text), formula.origin, formula.address, workbook_);
  } catch (const FormulaError&) {  // it uses more than the host can read
  }
  calculation_.ForgetMet();
  bool must_wait = false;
  for (const Reference& reference : references) {
    for (const CellRange& area : reference.areas)
      must_wait = calculation_.MeetsUncalculated(reference.sheet, area) || must_wait;
  }
  if (must_wait) throw Uncalculated{};
  for (const Reference& reference : references) {
    for (const CellRange& area : reference.areas) {
      calculation_.formulas().VisitRange(reference.sheet, area, kChanged | kDoubtful,
                                         [&](std::uint32_t other, FormulaMarks) {
                                           stale_.emplace(entry, other);
                                           is_doubtful = true;
                                           return false;
                                         });
    }
  }
  Finish(entry, is_doubtful ? kDoubtful : 0);
}

void Recalculation::KeepWithProblem(std::uint32_t entry, const std::string& problem) {
  problems_[entry] = problem;
  if (report_.errors.size() < kErrorLimit)
    report_.errors.push_back(Name(entry) + ": " + problem + "; the stored value is kept");
}

}  // namespace zavhost
