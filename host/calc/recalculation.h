#pragma once
// Recalculation of a workbook: selects the formulas, orders them and stores the results.

#include <cstdint>
#include <string>
#include <vector>

#include "host/calc/calculation.h"
#include "host/calc/engine.h"
#include "host/calc/formula_use.h"

namespace zavhost {

/// There is no dependency graph. A formula that meets uncalculated cells waits until they are
/// calculated and is then tried again, as in Excel. Waiting formulas form a list, so a chain of any
/// length needs no deep stack.
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

  /// A formula to recalculate, and its place in the list of formulas that were begun.
  struct Entry {
    std::uint32_t formula = 0;  // in Workbook::formulas
    State state = State::kUncalculated;
    bool is_listed = false;
    std::uint32_t below = kNone;
    std::uint32_t above = kNone;
  };

  void Select();
  void MakeRoom();
  void WarnOfKept(const FormulaCell& formula, const std::u16string& foreign);
  void CalculateFrom(std::uint32_t entry);
  void Calculate(std::uint32_t entry);
  void WaitForMet(std::uint32_t entry);
  void ReportCircle(std::uint32_t first);
  void Finish(std::uint32_t entry);
  /// True if a cell that had a value now has another one.
  bool Store(const FormulaCell& formula, const Operand& result);
  void KeepStored(std::uint32_t entry, const std::string& problem);
  void WarnOfUnreadable();
  void PutOnTop(std::uint32_t entry);
  void TakeOut(std::uint32_t entry);
  const FormulaPtr& Parsed(std::uint32_t text);
  CellRange RangeOf(const FormulaCell& formula) const;
  std::string Name(std::uint32_t entry) const;

  Calculation& calculation_;
  Workbook& workbook_;
  Judge& judge_;
  const EngineOptions& options_;
  std::vector<Entry> entries_;
  std::vector<FormulaPtr> parsed_;  // by text
  std::uint32_t top_ = kNone;
  std::size_t done_ = 0;
  std::size_t kept_warnings_ = 0;
  RecalculationReport report_;
};

}  // namespace zavhost
