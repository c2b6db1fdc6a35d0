#pragma once
// The criteria of COUNTIF, SUMIFS and their relatives.

#include <optional>

#include "host/formula/expression.h"
#include "host/formula/wildcards.h"
#include "host/workbook/value.h"

namespace zavhost {

/// A value that cells must equal, or a text such as "<5", "<>abc", "=", "a*".
///
/// The rest of the text after the operator counts as what a cell would make of it: a number, a
/// date, a boolean, an error or a text with wildcards. Equality holds for a number and a text that
/// spells it; an order holds only among values of one kind. "<>" is exactly what "=" is not, so it
/// includes blanks and errors.
class Criterion {
 public:
  /// Nothing for a text above WildcardPattern::kLongest. A blank is 0, as in Excel.
  static std::optional<Criterion> Of(const Value& value);

  bool Holds(const Value& value) const;

 private:
  Criterion() = default;

  bool Equals(const Value& value) const;

  Operator op_ = Operator::kEqual;
  Value operand_;             // blank for "=" and "<>" alone
  bool takes_empty_ = false;  // blanks and empty texts are equal
  std::optional<WildcardPattern> pattern_;
};

}  // namespace zavhost
