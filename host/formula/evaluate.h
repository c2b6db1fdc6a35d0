#pragma once
// Evaluation of a parsed formula. The evaluator knows the grammar, the operators and the coercions;
// cells, names and functions come from the context, which the calculation engine implements.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/workbook/value.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// A formula that cannot be parsed; what() says why, position() where (code units, zero-based).
class FormulaError : public std::runtime_error {
 public:
  FormulaError(const std::string& message, std::size_t position)
      : std::runtime_error(message), position_(position) {}
  std::size_t position() const { return position_; }

 private:
  std::size_t position_;
};

/// Thrown by a context out of an evaluation that met cells which are not calculated yet. The engine
/// calculates them and evaluates again; the context itself remembers which cells they were.
struct Uncalculated {};

/// A function that a formula can call.
class CallableFunction {
 public:
  virtual ~CallableFunction() = default;
  /// True when argument `index` (zero-based) takes references as they are.
  virtual bool TakesReference(std::size_t index) const = 0;
  /// True when argument `index` takes an array as it is: an expression there is evaluated element
  /// by element even in a normal cell. An argument that takes neither a reference nor an array gets
  /// one value: a range is taken by implicit intersection in a normal cell, and over an array the
  /// function is called element by element.
  virtual bool TakesArray(std::size_t /*index*/) const { return true; }
  /// Calls it. Arguments that take no reference arrive as Value, ArrayPtr or MissingArgument; one
  /// that takes a reference arrives as a Reference or, where the formula has none, as those.
  virtual Operand Call(std::span<const Operand> arguments) = 0;
};

/// A parsed formula; immutable, shared by the cells of a shared formula.
class Formula;
using FormulaPtr = std::shared_ptr<const Formula>;

/// Parses a formula text without its leading "=". Nesting is limited to 64 levels as in Excel,
/// length to 8,192 characters and a call to 255 arguments: beyond, FormulaError. External, 3-D and
/// structured references are read and stand for #REF!, since the host holds nothing that they could
/// refer to; so does the spill operator, as no formula spills here.
FormulaPtr ParseFormula(std::u16string_view text);

/// How much of a range is read.
enum class RangeExtent {
  kWhole,
  /// Whole columns and rows only as far as the sheet is used: for readers to whom the blanks behind
  /// make no difference.
  kUsed,
};

class EvaluationContext {
 public:
  virtual ~EvaluationContext() = default;
  /// The value of one cell. Throws Uncalculated.
  virtual Value ReadCell(const CellAddress& cell) = 0;
  /// The values of a range; with kUsed, a whole column that holds nothing gives one blank. A range
  /// too large to be held gives one #VALUE!. Throws Uncalculated.
  virtual ArrayPtr ReadRange(std::uint32_t sheet, const CellRange& range, RangeExtent extent) = 0;
  /// The function by its visible name in any letter case, or null: #NAME?.
  virtual CallableFunction* FindFunction(std::u16string_view name) = 0;
  virtual const Workbook& workbook() const = 0;
  /// The parsed text of a defined name; a context that evaluates many formulas keeps them.
  virtual FormulaPtr ParsedName(const DefinedName& name) { return ParseFormula(name.text); }
  /// The cell whose formula is evaluated.
  virtual CellAddress caller() const = 0;
};

/// Names of all functions called, each once in any letter case: as first written, without what
/// files put in front ("_xll.", "_xlfn.", a workbook and "!").
std::vector<std::u16string> FunctionsCalled(const Formula& formula);

/// References that the formula reads directly (as seen from `caller` for a text written for
/// `origin`), names resolved; used to warn of cells that depend on recalculated ones.
std::vector<Reference> ReferencesOf(const Formula& formula, const CellAddress& origin,
                                    const CellAddress& caller, const Workbook& workbook);

/// Evaluates for `context.caller()`; the text was written for `origin`. In a normal cell a range in
/// the place of a single value is taken by implicit intersection; with `as_array` it is an array.
/// A reference as the result is dereferenced, so the operand is a Value or an ArrayPtr, and a blank
/// cell counts 0. A relative reference that leaves the sheet is #REF!; in a defined name it goes
/// round, which is how files store a name such as "the cell above". Throws FormulaError for a name
/// that refers to itself, that cannot be parsed, or that unfolds to more than can be evaluated.
Operand EvaluateFormula(const Formula& formula, const CellAddress& origin, bool as_array,
                        EvaluationContext& context);

}  // namespace zavhost
