#include "host/calc/recalculation.h"

#include <fmt/format.h>

#include <algorithm>

#include "host/calc/formula_text.h"
#include "host/calc/kept_formulas.h"

namespace zavhost {
namespace {

constexpr std::size_t kWarningLimit = 20;
constexpr std::size_t kErrorLimit = 1000;
constexpr std::size_t kCircleCellsNamed = 10;
constexpr std::int64_t kArrayCellLimit = 8'000'000;
constexpr std::size_t kProgressStep = 256;

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

}  // namespace

Recalculation::Recalculation(Calculation& calculation, Judge& judge, const EngineOptions& options)
    : calculation_(calculation),
      workbook_(calculation.cells_workbook()),
      judge_(judge),
      options_(options),
      parsed_(workbook_.formula_texts.size()) {}

Recalculation::~Recalculation() {
  calculation_.uncalculated().Clear();
  judge_.SetPlace({}, {});
}

RecalculationReport Recalculation::Run() {
  Select();
  MakeRoom();
  for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) CalculateFrom(entry);
  if (options_.progress) options_.progress(done_, entries_.size());
  return std::move(report_);
}

CellRange Recalculation::RangeOf(const FormulaCell& formula) const {
  const CellAddress& cell = formula.address;
  return formula.array.value_or(CellRange{cell.row, cell.column, cell.row, cell.column});
}

std::string Recalculation::Name(std::uint32_t entry) const {
  return CellText(workbook_, workbook_.formulas[entries_[entry].formula].address);
}

// The selection of formulas, and the warnings about the others.

void Recalculation::Select() {
  FormulaUses uses(workbook_, calculation_.api().registry());
  FormulaIndex& index = calculation_.uncalculated();
  KeptFormulas kept(workbook_);
  index.Clear();
  std::int64_t array_cells = 0;
  for (std::uint32_t i = 0; i < workbook_.formulas.size(); ++i) {
    const FormulaCell& formula = workbook_.formulas[i];
    const FormulaUse& use = uses.Of(formula.text);
    const bool is_wanted = use.uses_add_in || options_.every_formula;
    if (!is_wanted || !use.foreign.empty()) {
      if (is_wanted) WarnOfKept(formula, use.foreign);
      kept.Add(formula);
      continue;
    }
    if (entries_.size() == options_.formula_limit) {
      throw WorkbookError(fmt::format("the workbook has more than {} formulas to recalculate",
                                      options_.formula_limit));
    }
    const CellRange range = RangeOf(formula);
    array_cells += static_cast<std::int64_t>(range.rows()) * range.columns();
    if (array_cells > kArrayCellLimit)
      throw WorkbookError("the array formulas of the workbook fill more than 8 million cells");
    index.Add(static_cast<std::uint32_t>(entries_.size()), formula.address.sheet, range);
    entries_.push_back({i});
  }
  const std::vector<std::uint32_t> overlapping = index.Finish();
  kept.Warn(index, kWarningLimit, report_.warnings);
  report_.cells.reserve(entries_.size());
  for (const Entry& entry : entries_) {
    const FormulaCell& formula = workbook_.formulas[entry.formula];
    const CellAddress& cell = formula.address;
    const Value& before = workbook_.sheets[cell.sheet].At(cell.row, cell.column);
    report_.cells.push_back(
        {cell,
         formula.array,
         u"=" + ShownFormulaText(workbook_.formula_texts[formula.text], formula.origin, cell),
         before,
         before,
         false,
         {}});
  }
  for (const std::uint32_t entry : overlapping) {
    entries_[entry].state = State::kDone;
    KeepStored(entry, "two formulas fill the same cell");
  }
  WarnOfUnreadable();
}

void Recalculation::KeepStored(std::uint32_t entry, const std::string& problem) {
  report_.cells[entry].problem = problem;
  if (report_.errors.size() < kErrorLimit)
    report_.errors.push_back(Name(entry) + ": " + problem + "; the stored value is kept");
}

void Recalculation::WarnOfUnreadable() {
  const std::vector<CellAddress>& cells = workbook_.unreadable_formulas;
  for (std::size_t i = 0; i < std::min(cells.size(), kWarningLimit); ++i) {
    report_.warnings.push_back(
        CellText(workbook_, cells[i]) +
        " shares a formula that is not in the workbook: its stored value is kept");
  }
  if (cells.size() > kWarningLimit) {
    report_.warnings.push_back(fmt::format(
        "{} more cells share formulas that are not in the workbook", cells.size() - kWarningLimit));
  }
}

void Recalculation::WarnOfKept(const FormulaCell& formula, const std::u16string& foreign) {
  if (++kept_warnings_ > kWarningLimit) {
    const std::string more = fmt::format(
        "{} more formulas use something that this host does not compute: their "
        "stored values are kept",
        kept_warnings_ - kWarningLimit);
    if (kept_warnings_ == kWarningLimit + 1) {
      report_.warnings.push_back(more);
    } else {
      report_.warnings.back() = more;
    }
    return;
  }
  report_.warnings.push_back(CellText(workbook_, formula.address) + " uses " +
                             Utf8FromUtf16(foreign) +
                             ", which this host does not compute: its stored value is kept");
}

// Creates all result cells now, column by column. Results arrive in the order of dependencies, and
// inserting them one by one would move the cells below each time.
void Recalculation::MakeRoom() {
  std::vector<CellAddress> empty;
  for (const Entry& entry : entries_) {
    const FormulaCell& formula = workbook_.formulas[entry.formula];
    const std::uint32_t sheet = formula.address.sheet;
    const CellRange range = RangeOf(formula);
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
  const FormulaCell& formula = workbook_.formulas[entries_[entry].formula];
  RecalculatedCell& cell = report_.cells[entry];
  judge_.SetPlace(Name(entry), Utf8FromUtf16(cell.formula));
  try {
    const Operand result =
        calculation_.Evaluate(*Parsed(formula.text), formula.origin, formula.address, formula.array,
                              formula.array.has_value());
    cell.changed = Store(formula, result);
    cell.after = workbook_.sheets[cell.address.sheet].At(cell.address.row, cell.address.column);
    Finish(entry);
  } catch (const Uncalculated&) {
    entries_[entry].state = State::kWaiting;
    WaitForMet(entry);
  } catch (const FormulaError& error) {
    KeepStored(entry, error.what());
    Finish(entry);
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
  if (met.empty()) Finish(entry);  // should not happen; the formula would be tried forever
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
    report_.cells[member].problem = "circular reference";
    Finish(member);
  }
}

void Recalculation::Finish(std::uint32_t entry) {
  entries_[entry].state = State::kDone;
  const FormulaCell& formula = workbook_.formulas[entries_[entry].formula];
  calculation_.uncalculated().Strike(entry, formula.address.sheet, RangeOf(formula));
  ++done_;
  if (options_.progress && done_ % kProgressStep == 0) options_.progress(done_, entries_.size());
}

bool Recalculation::Store(const FormulaCell& formula, const Operand& result) {
  Sheet& sheet = workbook_.sheets[formula.address.sheet];
  const CellRange range = RangeOf(formula);
  bool changed = false;
  for (std::int32_t column = range.first_column; column <= range.last_column; ++column) {
    for (std::int32_t row = range.first_row; row <= range.last_row; ++row) {
      Value value = ShownInRange(result, row - range.first_row, column - range.first_column);
      const Value& stored = sheet.At(row, column);
      changed = changed || (!stored.IsBlank() && !(stored == value));
      sheet.Set(row, column, std::move(value));
    }
  }
  return changed;
}

const FormulaPtr& Recalculation::Parsed(std::uint32_t text) {
  FormulaPtr& parsed = parsed_[text];
  if (!parsed) parsed = ParseFormula(workbook_.formula_texts[text]);
  return parsed;
}

}  // namespace zavhost
