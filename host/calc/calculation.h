#pragma once
// The evaluation of one formula: the cells, names and functions that it sees.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/calc/formula_index.h"
#include "host/calc/kept_ranges.h"
#include "host/capi/add_in_function.h"
#include "host/capi/excel_api.h"
#include "host/formula/evaluate.h"

namespace zavhost {

class Calculation : public EvaluationContext, public HostCells {
 public:
  Calculation(Workbook& workbook, Judge& judge, const ExcelBehaviour& behaviour);

  ExcelApi& api() { return api_; }
  /// The workbook's formulas by their numbers in it.
  FormulaIndex& formulas() { return formulas_; }

  /// Evaluates a formula for a cell or for the range of an array formula. Throws FormulaError, and
  /// Uncalculated; `met` then names the first formulas for which it waits.
  Operand Evaluate(const Formula& formula, const CellAddress& origin, const CellAddress& cell,
                   const std::optional<CellRange>& array, bool as_array);
  /// The cells that a formula in A1 of the first sheet refers to.
  std::optional<Reference> FindReference(const Formula& formula);
  const std::vector<std::uint32_t>& met() const { return met_; }
  /// Before cells are read outside of an evaluation.
  void ForgetMet();
  /// Which of kDoubtful and kVolatile the cells had that the last evaluation read, and the first
  /// doubtful formula among them.
  FormulaMarks met_marks() const { return met_marks_; }
  std::uint32_t met_doubtful() const { return met_doubtful_; }

  /// Begins a recalculation at a date and time (as a serial number). Random numbers depend on the
  /// seed and the cell only, so a formula that is evaluated again meets the same ones.
  void Begin(double now, std::uint64_t seed);

  // EvaluationContext
  Value ReadCell(const CellAddress& cell) override;
  ArrayPtr ReadRange(std::uint32_t sheet_index, const CellRange& whole,
                     RangeExtent extent) override;
  CallableFunction* FindFunction(std::u16string_view name) override;
  const Workbook& workbook() const override { return workbook_; }
  FormulaPtr ParsedName(const DefinedName& name) override;
  CellAddress caller() const override { return cell_; }
  double Now() const override { return now_; }
  double Random() override;
  std::optional<std::u16string> FormulaText(const CellAddress& cell) const override;
  std::optional<CellRange> SpillRange(const CellAddress& cell) override;

  // HostCells
  Workbook& cells_workbook() override { return workbook_; }
  bool MeetsUncalculated(std::uint32_t sheet, const CellRange& range) override;
  std::optional<CallingCells> calling_cells() const override { return calling_; }

 private:
  Workbook& workbook_;
  ExcelApi api_;
  ArgumentBlock block_;
  KeptRanges kept_ranges_;
  FormulaIndex formulas_;
  std::vector<std::uint32_t> met_;
  FormulaMarks met_marks_ = 0;
  std::uint32_t met_doubtful_ = 0;
  CellAddress cell_;
  std::optional<CallingCells> calling_;
  double now_ = 0.0;
  std::uint64_t seed_ = 0;
  std::uint64_t random_state_ = 0;
  mutable std::vector<std::uint32_t> by_cell_;  // the workbook's formulas in the order of cells
  std::unordered_map<const DefinedName*, FormulaPtr> parsed_names_;
  /// Rebuilt when functions were added or removed; in the order of the registry.
  std::vector<std::unique_ptr<AddInFunction>> functions_;
  std::uint64_t functions_generation_ = 0;
};

}  // namespace zavhost
