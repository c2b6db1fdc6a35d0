#include "host/formula/criteria.h"

#include <string_view>
#include <utility>

#include "host/formula/coercion.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

/// Takes the operator at the start; the longest first.
std::optional<Operator> TakeOperator(std::u16string_view& text) {
  constexpr std::pair<std::u16string_view, Operator> kOperators[] = {
      {u"<>", Operator::kNotEqual}, {u"<=", Operator::kLessEqual}, {u">=", Operator::kGreaterEqual},
      {u"=", Operator::kEqual},     {u"<", Operator::kLess},       {u">", Operator::kGreater}};
  for (const auto& [written, op] : kOperators) {
    if (!text.starts_with(written)) continue;
    text.remove_prefix(written.size());
    return op;
  }
  return std::nullopt;
}

/// What a cell would make of a text; blank for none.
Value AsEntered(std::u16string_view text) {
  if (text.empty()) return {};
  if (const auto number = NumberFromText(text)) return *number;
  if (EqualIgnoringCase(text, u"TRUE")) return true;
  if (EqualIgnoringCase(text, u"FALSE")) return false;
  if (const auto error = ErrorFromText(text)) return *error;
  return Value(text);
}

}  // namespace

std::optional<Criterion> Criterion::Of(const Value& value) {
  Criterion criterion;
  criterion.operand_ = value;
  if (value.IsBlank()) criterion.operand_ = 0.0;
  const std::u16string* given = value.text();
  if (given == nullptr) return criterion;
  if (given->size() > WildcardPattern::kLongest) return std::nullopt;
  std::u16string_view text = *given;
  criterion.takes_empty_ = text.empty();
  criterion.op_ = TakeOperator(text).value_or(Operator::kEqual);
  criterion.operand_ = AsEntered(text);
  if (criterion.operand_.text() != nullptr) criterion.pattern_.emplace(text);
  return criterion;
}

bool Criterion::Holds(const Value& value) const {
  if (op_ == Operator::kEqual) return Equals(value);
  if (op_ == Operator::kNotEqual) return !Equals(value);
  const bool has_order = !value.IsBlank() && !value.error() && AreOfOneKind(value, operand_);
  if (!has_order) return false;
  return OrderSatisfies(op_, CompareValues(value, operand_));
}

bool Criterion::Equals(const Value& value) const {
  const std::u16string* text = value.text();
  if (pattern_) return text != nullptr && pattern_->Matches(*text);
  if (takes_empty_ && text != nullptr) return text->empty();
  const double* number = operand_.number();
  if (number != nullptr && text != nullptr) return NumberFromText(*text) == *number;
  return value == operand_;
}

}  // namespace zavhost
