// The functions that do not evaluate all of their arguments: IF, IFS, SWITCH, CHOOSE, IFERROR, IFNA
// and LET. All but LET choose one of their arguments by the values of others.

#include <optional>
#include <utility>

#include "host/formula/coercion.h"
#include "host/formula/evaluator.h"

namespace zavhost {
namespace {

/// What a form chooses: an argument, or a value of its own.
struct Choice {
  std::size_t argument = 0;
  std::optional<Value> instead;

  static Choice Error(ErrorCode error) { return {0, Value(error)}; }
};

// The choices. `at(i)` is the single value of argument i, `count` the number of arguments.

template <class At>
Choice ChooseIf(const At& at, std::size_t count) {
  const Converted<bool> condition = ToBoolean(at(0));
  if (condition.error) return Choice::Error(*condition.error);
  if (condition.value) return {1, {}};
  return count > 2 ? Choice{2, {}} : Choice{0, Value(false)};
}

template <class At>
Choice ChooseIfs(const At& at, std::size_t count) {
  for (std::size_t i = 0; i + 1 < count; i += 2) {
    const Converted<bool> condition = ToBoolean(at(i));
    if (condition.error) return Choice::Error(*condition.error);
    if (condition.value) return {i + 1, {}};
  }
  return Choice::Error(ErrorCode::kNA);
}

template <class At>
Choice ChooseSwitch(const At& at, std::size_t count) {
  const Value wanted = at(0);
  if (wanted.error() != nullptr) return {0, wanted};
  for (std::size_t i = 1; i + 1 < count; i += 2) {
    const Value equal = ApplyBinary(Operator::kEqual, wanted, at(i));
    if (equal.error() != nullptr) return {0, equal};
    if (*equal.boolean()) return {i + 1, {}};
  }
  return count % 2 == 0 ? Choice{count - 1, {}} : Choice::Error(ErrorCode::kNA);
}

template <class At>
Choice ChooseByNumber(const At& at, std::size_t count) {
  const Converted<double> number = ToNumber(at(0));
  if (number.error) return Choice::Error(*number.error);
  if (number.value < 1.0 || number.value >= static_cast<double>(count))
    return Choice::Error(ErrorCode::kValue);
  return {static_cast<std::size_t>(number.value), {}};
}

template <class At>
Choice ChooseUnlessError(const At& at, bool only_na) {
  const Value tried = at(0);
  const bool is_caught = tried.error() != nullptr && (!only_na || *tried.error() == ErrorCode::kNA);
  return {is_caught ? std::size_t{1} : 0, {}};
}

template <class At>
Choice Choose(LazyForm form, const At& at, std::size_t count) {
  switch (form) {
    case LazyForm::kIf:
      return ChooseIf(at, count);
    case LazyForm::kIfs:
      return ChooseIfs(at, count);
    case LazyForm::kSwitch:
      return ChooseSwitch(at, count);
    case LazyForm::kChoose:
      return ChooseByNumber(at, count);
    default:
      return ChooseUnlessError(at, form == LazyForm::kIfNA);
  }
}

}  // namespace

/// The arguments of a lazy form, each evaluated when it is asked for, and once.
class Evaluator::LazyArguments {
 public:
  LazyArguments(Evaluator& evaluator, const CallStep& step, const Shift& shift, bool as_array)
      : evaluator_(evaluator),
        step_(step),
        shift_(shift),
        as_array_(as_array),
        read_(step.arguments.size()) {}

  std::size_t count() const { return read_.size(); }
  bool has_arrays() const { return has_arrays_; }

  /// As one value or an array. An argument that is left empty is 0.
  const Operand& Read(std::size_t index) {
    std::optional<Operand>& read = read_[index];
    if (!read) {
      read = evaluator_.Scalar(Evaluated(index), as_array_);
      has_arrays_ = has_arrays_ || std::holds_alternative<ArrayPtr>(*read);
    }
    return *read;
  }

  /// Unread, so possibly a reference, unless it was read before.
  Operand Chosen(std::size_t index) { return read_[index] ? *read_[index] : Evaluated(index); }

 private:
  Operand Evaluated(std::size_t index) {
    const Expression& argument = step_.arguments[index];
    if (argument.steps.empty()) return Value(0.0);
    return evaluator_.Evaluate(argument, shift_, as_array_);
  }

  Evaluator& evaluator_;
  const CallStep& step_;
  const Shift& shift_;
  bool as_array_;
  std::vector<std::optional<Operand>> read_;
  bool has_arrays_ = false;
};

Operand Evaluator::CallLazyForm(const CallStep& step, const Shift& shift, bool as_array) {
  const LazyForm form = step.built_in->lazy;
  LazyArguments arguments(*this, step, shift, as_array);
  const Choice choice = Choose(
      form, [&](std::size_t index) { return ElementAt(arguments.Read(index), 0, 0); },
      arguments.count());
  if (!arguments.has_arrays())
    return choice.instead ? Operand(*choice.instead) : arguments.Chosen(choice.argument);
  // An array among the values that decide: every element is chosen by itself.
  Spread spread;
  for (std::size_t i = 0; i < arguments.count(); ++i) spread.Include(arguments.Read(i));
  return Fill(spread, [&](std::int32_t row, std::int32_t column) {
    const auto at = [&](std::size_t index) {
      return ElementAt(arguments.Read(index), row, column);
    };
    const Choice own = Choose(form, at, arguments.count());
    return own.instead ? *own.instead : at(own.argument);
  });
}

Operand Evaluator::CallLet(const CallStep& step, const Shift& shift, bool as_array) {
  const std::vector<Expression>& arguments = step.arguments;
  if (arguments.size() % 2 == 0) return Value(ErrorCode::kValue);
  const std::size_t outer = variables_.size();
  for (std::size_t i = 0; i + 1 < arguments.size(); i += 2) {
    const std::vector<Step>& steps = arguments[i].steps;
    const NameStep* name = steps.size() == 1 ? std::get_if<NameStep>(&steps[0]) : nullptr;
    if (name == nullptr) return Value(ErrorCode::kName);
    Operand value = Evaluate(arguments[i + 1], shift, as_array);
    variables_.push_back({name->name, std::move(value)});
  }
  Operand result = Evaluate(arguments.back(), shift, as_array);
  variables_.resize(outer);
  return result;
}

}  // namespace zavhost
