#pragma once
// The parsed form of a formula: expressions in postfix order, so that neither a long chain of
// operators nor its destruction needs a deep stack. Only the arguments of calls nest, and their
// nesting is limited.

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "formula/a1_reference.h"
#include "host/formula/builtin_functions.h"
#include "host/formula/structured_reference.h"
#include "host/workbook/value.h"

namespace zavhost {

/// The part before the "!" of a reference or a name.
struct SheetPrefix {
  enum class Kind { kNone, kSheet, kThisWorkbook };
  Kind kind = Kind::kNone;
  std::u16string sheet;  // unquoted
};

/// A literal, or #REF! in place of something that the host does not evaluate.
struct ConstantStep {
  Operand value;
};

struct ReferenceStep {
  SheetPrefix prefix;
  formula::A1Reference reference;
};

struct NameStep {
  SheetPrefix prefix;
  std::u16string name;
  std::size_t position;
};

enum class Operator {
  // References
  kRange,
  kIntersection,
  kUnion,
  kSingle,  // "@"
  kSpill,   // "#"
  // One value
  kPlus,
  kMinus,
  kPercent,
  // Two values
  kPower,
  kMultiply,
  kDivide,
  kAdd,
  kSubtract,
  kConcatenate,
  kEqual,
  kNotEqual,
  kLess,
  kLessEqual,
  kGreater,
  kGreaterEqual,
};

struct Expression;

struct CallStep {
  std::u16string name;                // as written, without prefixes
  const BuiltInFunction* built_in;    // of that name, or null
  std::vector<Expression> arguments;  // an omitted argument is empty
};

using Step =
    std::variant<ConstantStep, ReferenceStep, StructuredReference, NameStep, Operator, CallStep>;

struct Expression {
  std::vector<Step> steps;  // postfix; empty for an omitted argument
};

class Formula {
 public:
  Formula(Expression expression, bool is_in_parentheses)
      : expression_(std::move(expression)), is_in_parentheses_(is_in_parentheses) {}
  const Expression& expression() const { return expression_; }
  /// True for "(A1-B1)", the whole of which is in parentheses.
  bool is_in_parentheses() const { return is_in_parentheses_; }

 private:
  Expression expression_;
  bool is_in_parentheses_;
};

}  // namespace zavhost
