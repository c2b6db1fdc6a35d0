#pragma once
// Evaluation of a parsed formula. The evaluator implements the grammar, the operators and the
// conversions; the context, which the calculation engine implements, provides cells, names and
// functions.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "formula/notation.h"
#include "host/workbook/value.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// A formula that cannot be parsed; what() gives the reason, position() the place (code units,
/// zero-based).
class FormulaError : public std::runtime_error {
 public:
  FormulaError(const std::string& message, std::size_t position)
      : std::runtime_error(message), position_(position) {}
  std::size_t position() const { return position_; }

 private:
  std::size_t position_;
};

/// Thrown by a context if an evaluation meets cells that are not calculated yet. The context
/// remembers these cells; the engine calculates them and evaluates the formula again.
struct Uncalculated {};

/// A function that a formula can call.
class CallableFunction {
 public:
  virtual ~CallableFunction() = default;
  /// True if argument `index` (zero-based) takes unchanged references.
  virtual bool TakesReference(std::size_t index) const = 0;
  /// True if argument `index` takes whole arrays: its expression is evaluated element by element
  /// even in a normal cell. An argument that takes neither references nor arrays gets one value: in
  /// a normal cell, the implicit intersection of a range; for an array, the function is called for
  /// each element.
  virtual bool TakesArray(std::size_t /*index*/) const { return true; }
  /// Calls the function. Arguments that take no references are a Value, an ArrayPtr or a
  /// MissingArgument. An argument that takes references can also be a Reference.
  virtual Operand Call(std::span<const Operand> arguments) = 0;
};

/// A parsed formula; immutable, shared by the cells of a shared formula.
class Formula;
using FormulaPtr = std::shared_ptr<const Formula>;

using formula::kLongestFormula;

/// Parses a formula text without its leading "=". Throws FormulaError beyond 64 levels of nesting
/// (as in Excel), kLongestFormula and 255 arguments of a call. External and 3-D references are
/// parsed but become #REF!.
FormulaPtr ParseFormula(std::u16string_view text);

/// The part of a range that is read.
enum class RangeExtent {
  kWhole,
  /// Whole columns and rows only up to the end of the sheet's used part, for readers to whom
  /// further blanks make no difference.
  kUsed,
};

class EvaluationContext {
 public:
  virtual ~EvaluationContext() = default;
  /// The value of one cell. Throws Uncalculated.
  virtual Value ReadCell(const CellAddress& cell) = 0;
  /// The values of a range. With kUsed, an empty whole column gives one blank. A range that is too
  /// large gives a single #VALUE!. Throws Uncalculated.
  virtual ArrayPtr ReadRange(std::uint32_t sheet, const CellRange& range, RangeExtent extent) = 0;
  /// The function with this visible name, in any letter case, or null for #NAME?.
  virtual CallableFunction* FindFunction(std::u16string_view name) = 0;
  virtual const Workbook& workbook() const = 0;
  /// The parsed text of a defined name; a context that evaluates many formulas caches it.
  virtual FormulaPtr ParsedName(const DefinedName& name) { return ParseFormula(name.text); }
  /// The cell whose formula is evaluated.
  virtual CellAddress caller() const = 0;

  /// The local date and time as a serial number, the same during a whole recalculation.
  virtual double Now() const = 0;
  /// The next uniform random number in [0, 1) of the caller's cell; a formula that is evaluated
  /// again meets the same numbers.
  virtual double Random() = 0;
  /// The formula of a cell without its leading "=", as Excel shows it there; nothing if the cell
  /// holds none. The other cells of an array formula hold the same one.
  virtual std::optional<std::u16string> FormulaText(const CellAddress& cell) const = 0;
  /// The cells that the dynamic array formula of a cell fills; nothing if there is none. Throws
  /// Uncalculated.
  virtual std::optional<CellRange> SpillRange(const CellAddress& cell) = 0;
};

/// The references that the formula reads directly (as seen from `caller`, for a text written for
/// `origin`), with resolved names; used to warn of cells that depend on recalculated ones.
std::vector<Reference> ReferencesOf(const Formula& formula, const CellAddress& origin,
                                    const CellAddress& caller, const Workbook& workbook);

/// The reference that a formula gives, with its text written for `context.caller()`; nothing if it
/// gives a value. Throws FormulaError.
std::optional<Reference> EvaluateReference(const Formula& formula, EvaluationContext& context);

/// Evaluates for `context.caller()`; the text was written for `origin`. In a normal cell, a range
/// in place of a single value gives its implicit intersection; with `as_array`, it is an array. A
/// resulting reference is dereferenced, so the operand is a Value or an ArrayPtr, and a blank cell
/// counts as 0. A relative reference that leaves the sheet is #REF!; in a defined name it wraps
/// around, which is how files store a name such as "the cell above". Throws FormulaError for a name
/// that refers to itself, cannot be parsed, or expands to too long a formula.
Operand EvaluateFormula(const Formula& formula, const CellAddress& origin, bool as_array,
                        EvaluationContext& context);

}  // namespace zavhost
