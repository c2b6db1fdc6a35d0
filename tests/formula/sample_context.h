#pragma once
// A workbook in memory to evaluate against, and results as texts a table can hold.

#include <map>
#include <string>
#include <string_view>

#include "host/formula/evaluate.h"

namespace sample {

/// "12", "\"abc\"", "TRUE", "#N/A", "{1,2;3,4}", "blank", "Sheet1!A1:B2,C3", "missing".
std::string Shown(const zavhost::Operand& operand);

/// A registered function for tests: answers its arguments as a text, so that a test sees what
/// arrived. `kinds` has a letter per argument: R reference, A array, S single value; the last
/// repeats.
class Echo : public zavhost::CallableFunction {
 public:
  explicit Echo(std::string kinds) : kinds_(std::move(kinds)) {}
  bool TakesReference(std::size_t index) const override { return KindOf(index) == 'R'; }
  bool TakesArray(std::size_t index) const override { return KindOf(index) != 'S'; }
  zavhost::Operand Call(std::span<const zavhost::Operand> arguments) override;
  int calls() const { return calls_; }

 private:
  char KindOf(std::size_t index) const { return kinds_[std::min(index, kinds_.size() - 1)]; }

  std::string kinds_;
  int calls_ = 0;
};

/// Sheet1 A1:C4 = 1 to 12 row by row, E1:E4 = text "x", "5", TRUE, #N/A, F1 blank; "Other sheet"
/// A1:A3 = 100, 200, 300. The functions EchoR, EchoA and EchoS.
zavhost::CellAddress CellNamed(std::string_view name);

class Context : public zavhost::EvaluationContext {
 public:
  Context();
  /// The same functions for another workbook.
  explicit Context(zavhost::Workbook workbook);

  zavhost::Value ReadCell(const zavhost::CellAddress& cell) override;
  zavhost::ArrayPtr ReadRange(std::uint32_t sheet, const zavhost::CellRange& range,
                              zavhost::RangeExtent extent) override;
  zavhost::CallableFunction* FindFunction(std::u16string_view name) override;
  const zavhost::Workbook& workbook() const override { return workbook_; }
  zavhost::CellAddress caller() const override { return caller_; }
  /// Noon of 15 March 2023.
  double Now() const override { return 45000.5; }
  double Random() override { return 0.25; }
  std::optional<std::u16string> FormulaText(const zavhost::CellAddress& cell) const override {
    const auto found = formula_texts_.find(cell);
    return found == formula_texts_.end() ? std::nullopt : std::optional(found->second);
  }
  /// A1:A4 for A1.
  std::optional<zavhost::CellRange> SpillRange(const zavhost::CellAddress& cell) override;

  /// Puts the elements of an array constant into cells of a sheet from this one on; "" is a blank.
  void Fill(std::string_view first_cell, std::string_view constant, std::uint32_t sheet = 0);
  void DefineTable(zavhost::Table table) { workbook_.tables.push_back(std::move(table)); }
  /// The formula that a cell pretends to hold.
  void SetFormulaText(const zavhost::CellAddress& cell, std::u16string text) {
    formula_texts_[cell] = std::move(text);
  }
  zavhost::Sheet& first_sheet() { return workbook_.sheets[0]; }
  void DefineName(std::u16string name, std::u16string text,
                  std::optional<std::uint32_t> sheet = std::nullopt);
  void Register(std::u16string_view name, std::string kinds);
  Echo& function(const std::u16string& name) { return functions_.at(zavhost::LowerCase(name)); }
  void set_caller(zavhost::CellAddress caller) { caller_ = caller; }
  int cells_read() const { return cells_read_; }

  /// Parses and evaluates in the caller's cell; a FormulaError is shown as "error: ...".
  std::string Evaluate(std::u16string_view formula, bool as_array = false);
  /// The same for a text written for `origin`.
  std::string EvaluateFrom(std::u16string_view formula, zavhost::CellAddress origin);

 private:
  zavhost::Workbook workbook_;
  zavhost::CellAddress caller_{0, 9, 9};
  std::map<std::u16string, Echo> functions_;  // by name in lower case
  std::map<zavhost::CellAddress, std::u16string> formula_texts_;
  int cells_read_ = 0;
};

}  // namespace sample
