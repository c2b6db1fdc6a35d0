#pragma once
// The host's engine: a workbook, an add-in and the recalculation of the formulas that use it.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/capi/excel_behaviour.h"
#include "host/capi/judge.h"
#include "host/capi/registered_function.h"
#include "host/formula/evaluate.h"
#include "host/workbook/workbook.h"

namespace zavhost {

struct EngineOptions {
  /// Language id that the announcement passes (9 English, 7 German).
  std::uint32_t language = 9;
  /// Formulas that use the add-in, at the most; more is a WorkbookError.
  std::size_t formula_limit = 500'000;
  /// Recalculate formulas that do not use the add-in too.
  bool every_formula = false;
  /// Called now and then with (done, total) while recalculating; may be empty.
  std::function<void(std::size_t, std::size_t)> progress;
  /// Where Excel's behaviour is not always the same.
  ExcelBehaviour behaviour;
  /// A library "XLCall32" that is loaded before the add-in and hands out the callback by
  /// "GetExcel12EntryPt"; empty: add-ins find the callback in the program, by "MdCallBack12".
  std::filesystem::path call_library;
};

/// One recalculated formula cell (an array formula is one entry).
struct RecalculatedCell {
  CellAddress address;
  std::optional<CellRange> array;
  std::u16string formula;  // as Excel shows it in this cell, with its leading "="
  Value before;            // top left, as stored in the file
  Value after;             // top left; the other cells of an array stand in the workbook
  bool changed = false;    // a cell that had a value has another one now
  std::string problem;     // why the stored value is kept; empty for a formula that was computed
};

struct RecalculationReport {
  std::vector<RecalculatedCell> cells;  // in the order of Workbook::formulas
  std::vector<std::string> warnings;    // one line each, cell named first
  std::vector<std::string> errors;  // circular references and formulas that cannot be read; their
                                    // cells keep the stored values
};

class Engine {
 public:
  explicit Engine(Workbook workbook, EngineOptions options = {});
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  Workbook& workbook();

  /// Loads an add-in and opens it (xlAutoOpen). Throws WorkbookError with one clear line.
  void LoadAddIn(const std::filesystem::path& file);
  /// Announces companion application `id` by the wide form, with null automation objects.
  void Announce(std::uint16_t id);
  void Withdraw(std::uint16_t id);
  /// Runs an exported command (no arguments, a 32-bit result) as a macro would.
  std::int32_t RunCommand(const std::string& procedure);
  /// Closes the add-in (xlAutoClose) and, with `unload`, lets go of the module. The judge then
  /// reports the values that the add-in still holds.
  void CloseAddIn(bool unload = true);

  const std::vector<RegisteredFunction>& functions() const;
  /// Registrations that failed (#VALUE!), and why; one line each.
  const std::vector<std::string>& refused_registrations() const;

  /// Recalculates every formula that calls a registered function or one whose name begins with
  /// "Zav", directly or through a defined name, or all of them (EngineOptions::every_formula), and
  /// stores the results in the workbook's cells. A formula that also calls what neither the add-in
  /// nor the host computes keeps its stored value.
  /// Throws WorkbookError beyond the limits.
  RecalculationReport Recalculate();

  /// Evaluates one formula (with or without "=") as if it stood in `cell`, as an array formula
  /// there. Throws FormulaError.
  Operand Evaluate(std::u16string_view formula, CellAddress cell = {});

  /// What the strict judge found so far; a run with findings has failed.
  const Judge& judge() const;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace zavhost
