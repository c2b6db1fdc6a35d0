#pragma once
// The host's engine: a workbook, add-ins and the recalculation of its formulas.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/capi/excel_behaviour.h"
#include "host/capi/judge.h"
#include "host/capi/registered_function.h"
#include "host/formula/evaluate.h"
#include "host/workbook/workbook.h"

namespace zavhost {

struct EngineOptions {
  /// The language id in the announcement (9 English, 7 German).
  std::uint32_t language = 9;
  /// The maximum number of formulas; more cause a WorkbookError.
  std::size_t formula_limit = 1'000'000;
  /// Report every formula.
  bool report_every_formula = false;
  /// The maximum number of characters of the formulas in RecalculationReport::cells, each counted
  /// with 64 more for the rest of its line.
  std::size_t report_limit = std::numeric_limits<std::size_t>::max();
  /// Called from time to time with (done, total) during recalculation; may be empty.
  std::function<void(std::size_t, std::size_t)> progress;
  /// What NOW gives, as a serial number; without it the local time when the recalculation begins.
  std::optional<double> now;
  /// For RAND and its kin.
  std::uint64_t random_seed = 0;
  /// Details in which Excel's behaviour varies.
  ExcelBehaviour behaviour;
  /// A library "XLCall32" that is loaded before the add-in and provides the callback through
  /// "GetExcel12EntryPt". If empty, add-ins find the callback "MdCallBack12" in the program.
  std::filesystem::path call_library;
};

/// What became of a formula (an array formula is one entry).
struct RecalculatedCell {
  CellAddress address;
  std::optional<CellRange> array;
  std::u16string formula;    // as Excel shows it in this cell, with a leading "="
  Value before;              // top left, as stored in the file
  Value after;               // top left; the workbook holds the other cells of an array
  bool changed = false;      // a cell that had a value now has another one
  bool is_volatile = false;  // the value depends on the time or on chance
  std::string problem;       // why the stored value is kept; empty if the formula was computed
  std::string doubt;         // why the value may be wrong; empty if it can be trusted
};

struct RecalculationReport {
  /// In the order of Workbook::formulas: the formulas that use the add-in, those that changed, and
  /// those with a problem or a doubt; all with EngineOptions::report_every_formula.
  std::vector<RecalculatedCell> cells;
  std::size_t not_listed = 0;  // formulas beyond EngineOptions::report_limit
  // Numbers of formulas, also of those that are not in `cells`.
  std::size_t computed = 0;
  std::size_t changed = 0;            // of the computed: the file had another value
  std::size_t without_value = 0;      // of the computed: the file had none
  std::size_t kept = 0;               // with their stored values
  std::size_t doubtful = 0;           // their values may be wrong
  std::vector<CellAddress> written;   // cells whose values are not those in the file
  std::vector<std::string> warnings;  // one line each, starting with the cell
  std::vector<std::string> errors;    // circular references and formulas that cannot be read; their
                                      // cells keep the stored values
};

class Engine {
 public:
  explicit Engine(Workbook workbook, EngineOptions options = {});
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  Workbook& workbook();

  /// Loads and opens an add-in (xlAutoOpen), beside those that are open. Throws WorkbookError with
  /// one clear line.
  void LoadAddIn(const std::filesystem::path& file);
  /// Announces companion application `id` to all of them, with wide texts and null automation
  /// objects.
  void Announce(std::uint16_t id);
  /// Withdraws it, as a companion does when it closes.
  void Withdraw(std::uint16_t id);
  /// Closes the add-ins (xlAutoClose) and, with `unload`, unloads their modules. The judge then
  /// reports the values that they still hold.
  void CloseAddIns(bool unload = true);

  const std::vector<RegisteredFunction>& functions() const;
  /// Registrations that failed (#VALUE!) and the reasons; one line each.
  const std::vector<std::string>& refused_registrations() const;

  /// Recalculates every formula in the order of dependencies and stores the results in the
  /// workbook's cells. A formula with something that neither the add-in nor the host computes keeps
  /// its stored value. If it has none, or if a cell that it reads has changed, its value may be
  /// wrong, and so may every value that depends on it: the report says which. Throws WorkbookError
  /// beyond the limits.
  RecalculationReport Recalculate();

  /// The cells to which a formula refers (with or without "=", usually a plain reference or a
  /// name); nothing if it gives a value instead.
  std::optional<Reference> FindReference(std::u16string_view formula);

  /// What neither the add-in nor the host computes in a formula, as written; empty if there is
  /// nothing.
  std::u16string NotComputed(std::u16string_view formula) const;

  /// Evaluates one formula (with or without "=") as an array formula in `cell`. Throws
  /// FormulaError.
  Operand Evaluate(std::u16string_view formula, CellAddress cell = {});

  /// The strict judge with its findings so far; a run with findings has failed.
  const Judge& judge() const;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace zavhost
