#pragma once
// Recalculation of a workbook: orders the formulas, stores the results, and says which of them may
// be wrong.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/calc/calculation.h"
#include "host/calc/engine.h"
#include "host/calc/formula_use.h"
#include "host/capi/judge.h"
#include "host/workbook/cell_names.h"

namespace zavhost {

/// There is no dependency graph. A formula that meets uncalculated cells waits until they are
/// calculated and is then tried again, as in Excel. Waiting formulas form a list, so a chain of any
/// length needs no deep stack.
///
/// The results of dynamic array formulas decide which cells these fill. They are calculated first.
/// If one fills other cells than before, everything is calculated anew, until they fill the same
/// cells again.
class Recalculation {
 public:
  Recalculation(Calculation& calculation, Judge& judge, const EngineOptions& options);
  ~Recalculation();
  Recalculation(const Recalculation&) = delete;
  Recalculation& operator=(const Recalculation&) = delete;

  /// Throws WorkbookError beyond the limits.
  RecalculationReport Run();

 private:
  enum class State : std::uint8_t { kUncalculated, kWaiting, kDone };
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// What belongs to the formula with the same number in the workbook, and its place in the list of
  /// formulas that were begun.
  struct Entry {
    Value before;  // of its cell, in the file
    State state = State::kUncalculated;
    bool is_listed = false;
    bool is_kept = false;  // it uses something that the host does not compute
    bool uses_add_in = false;
    bool is_volatile = false;
    bool changed = false;
    std::uint32_t below = kNone;
    std::uint32_t above = kNone;
  };

  void Select();
  void BeginPass();
  void CountArrayCells(const CellRange& range);
  void MakeRoom();
  void CalculateFrom(std::uint32_t entry);
  void Calculate(std::uint32_t entry);
  void WaitForMet(std::uint32_t entry);
  void ReportCircle(std::uint32_t first);
  void Finish(std::uint32_t entry, FormulaMarks marks);
  void PutOnTop(std::uint32_t entry);
  void TakeOut(std::uint32_t entry);

  void Store(std::uint32_t entry, const Operand& result);
  /// The cells that a dynamic array formula fills with a result, its own cell if others are in the
  /// way.
  CellRange SpillRangeFor(std::uint32_t entry, const Operand& result) const;
  void Respill(std::uint32_t entry, const CellRange& range);
  void SetCell(std::uint32_t entry, const CellPosition& cell, Value value);

  /// A formula that keeps its stored value: whether that may be wrong.
  void Keep(std::uint32_t entry);
  void KeepWithProblem(std::uint32_t entry, const std::string& problem);
  // In recalculation_report.cpp.
  void Report();
  void WarnOfKept();
  void WarnOfDependent();
  void WarnOfUnreadable();

  const FormulaPtr& Parsed(std::uint32_t text);
  const FormulaCell& CellOf(std::uint32_t entry) const { return workbook_.formulas[entry]; }
  CellRange RangeOf(std::uint32_t entry) const;
  std::string Name(std::uint32_t entry) const;

  Calculation& calculation_;
  Workbook& workbook_;
  Judge& judge_;
  const EngineOptions& options_;
  FormulaUses uses_;
  std::vector<Entry> entries_;
  std::vector<FormulaPtr> parsed_;                 // by text; not all of them
  std::size_t parsed_characters_ = 0;              // of their texts
  std::map<std::uint32_t, std::string> problems_;  // why a formula was not computed, by entry
  std::map<std::uint32_t, std::uint32_t> doubts_;  // by entry: the entry where the doubt begins
  std::map<std::uint32_t, std::uint32_t> stale_;   // by kept entry: the changed one that it reads
  std::uint32_t top_ = kNone;
  std::size_t done_ = 0;
  std::int64_t array_cells_ = 0;  // that array formulas fill, in this pass
  bool respilled_ = false;
  RecalculationReport report_;
};

}  // namespace zavhost
