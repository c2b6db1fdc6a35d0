#pragma once
// The evaluator of parsed formulas. evaluate.cpp has operands, operators and calls; lazy_forms.cpp
// the functions that do not evaluate all of their arguments.

#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/formula/elementwise.h"
#include "host/formula/evaluate.h"
#include "host/formula/expression.h"
#include "host/formula/reference_algebra.h"

namespace zavhost {

/// Evaluates one formula for the context's caller. Throws what EvaluateFormula throws; an evaluator
/// that was left by an exception is not used again.
class Evaluator {
 public:
  Evaluator(EvaluationContext& context, const Formula& formula);

  Operand Evaluate(const Expression& expression, const Shift& shift, bool as_array);

 private:
  class Nesting;
  /// What a lazy form has evaluated of its arguments.
  class LazyArguments;
  /// A name that LET gives to a value.
  struct Variable {
    std::u16string_view name;
    Operand value;
  };

  /// Any step except an operator.
  Operand EvaluateOperand(const Step& step, const Shift& shift, bool as_array);
  Operand Resolve(const ReferenceStep& step, const Shift& shift) const;
  Operand EvaluateName(const NameStep& step);
  Operand EvaluateDefinedName(const DefinedName& name, std::size_t position);

  void Apply(Operator op, std::vector<Operand>& stack, bool as_array,
             Value (*apply)(Operator, const Value&, const Value&));
  /// "@": the implicit intersection of a range (still a reference), or the top left element of an
  /// array.
  Operand Single(const Operand& operand) const;
  /// "#": the cells that the formula of a cell fills.
  Operand Spilled(const Operand& operand) const;

  Operand Call(const CallStep& step, const Shift& shift, bool as_array);
  double CellsIn(const Operand& operand) const;
  Operand CallLazyForm(const CallStep& step, const Shift& shift, bool as_array);
  Operand CallLet(const CallStep& step, const Shift& shift, bool as_array);

  /// The operand as one value or an array.
  Operand Scalar(const Operand& operand, bool as_array, RangeExtent extent = RangeExtent::kWhole);
  /// The operand, or #VALUE! if it is an array and the evaluation has used too many elements.
  Operand Counted(Operand operand);
  template <typename Function>
  Operand Fill(const Spread& spread, const Function& f) {
    return Counted(FillSpread(spread, f));
  }

  EvaluationContext& context_;
  CellAddress caller_;
  const Step* last_step_ = nullptr;  // of the formula, if it adds or subtracts
  std::size_t depth_ = 0;
  std::size_t name_text_ = 0;
  std::size_t elements_ = 0;
  double work_ = 0.0;
  std::vector<const DefinedName*> open_names_;
  /// The names that were evaluated, since names that each use the next one twice would otherwise
  /// take exponential time.
  std::unordered_map<const DefinedName*, Operand> known_names_;
  std::size_t chances_ = 0;          // calls that may give another result the next time
  std::vector<Variable> variables_;  // the innermost ones last
};

}  // namespace zavhost
