#include "host/formula/evaluator.h"

#include <algorithm>
#include <utility>

#include "host/formula/coercion.h"
#include "host/formula/structured_reference.h"

namespace zavhost {
namespace {

// The maximum number of calls and names that are open at a time; a single formula has at most 64
// calls.
constexpr std::size_t kMaxDepth = 256;
// The maximum number of code units of names' texts in one evaluation: a chain of names that each
// use the next one twice, with chance in them, grows exponentially.
constexpr std::size_t kNameTextLimit = 1'000'000;
// The maximum number of array elements that one evaluation may read and create, 24 bytes each:
// nested parentheses hold up to 64 arrays at a time, and a call 255.
constexpr std::size_t kElementLimit = 50'000'000;

// The maximum number of cells that the calls for the elements of arrays may read: a few of them
// over a whole column each would take hours.
constexpr double kWorkLimit = 4e9;

bool Takes(const BuiltInFunction& function, std::size_t arguments) {
  return arguments >= function.minimum_arguments && arguments <= function.maximum_arguments;
}

/// The argument kinds of a function, from the add-in or the host.
class Callee {
 public:
  Callee(CallableFunction* registered, const BuiltInFunction* built_in)
      : registered_(registered), built_in_(built_in) {}

  ArgumentKind KindOf(std::size_t index) const {
    if (registered_ == nullptr) return built_in_->kinds[index];
    if (registered_->TakesReference(index)) return ArgumentKind::kReference;
    return registered_->TakesArray(index) ? ArgumentKind::kArray : ArgumentKind::kScalar;
  }

  /// Whether the same arguments may give another result the next time.
  bool MayVary() const { return registered_ != nullptr || built_in_->name.starts_with(u"RAND"); }

  Operand Call(std::span<const Operand> arguments, EvaluationContext& context,
               bool as_array) const {
    if (registered_ != nullptr) return registered_->Call(arguments);
    return built_in_->call({arguments, context, as_array});
  }

 private:
  CallableFunction* registered_;
  const BuiltInFunction* built_in_;
};

}  // namespace

/// Bounds the depth of what is open.
class Evaluator::Nesting {
 public:
  explicit Nesting(Evaluator& evaluator) : evaluator_(evaluator) {
    if (evaluator_.depth_ == kMaxDepth) {
      throw FormulaError("calls and names are nested too deeply", 0);
    }
    ++evaluator_.depth_;
  }
  ~Nesting() { --evaluator_.depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  Evaluator& evaluator_;
};

Evaluator::Evaluator(EvaluationContext& context, const Formula& formula)
    : context_(context), caller_(context.caller()) {
  const std::vector<Step>& steps = formula.expression().steps;
  const Operator* op = steps.empty() ? nullptr : std::get_if<Operator>(&steps.back());
  const bool is_sum = op != nullptr && (*op == Operator::kAdd || *op == Operator::kSubtract);
  if (is_sum && !formula.is_in_parentheses()) last_step_ = &steps.back();
}

Operand Evaluator::Evaluate(const Expression& expression, const Shift& shift, bool as_array) {
  if (expression.steps.empty()) return MissingArgument{};
  const Nesting nesting(*this);
  if (expression.steps.size() == 1) return EvaluateOperand(expression.steps[0], shift, as_array);
  std::vector<Operand> stack;
  for (const Step& step : expression.steps) {
    if (const Operator* op = std::get_if<Operator>(&step)) {
      Apply(*op, stack, as_array, &step == last_step_ ? ApplyLast : ApplyBinary);
    } else {
      stack.push_back(EvaluateOperand(step, shift, as_array));
    }
  }
  return std::move(stack.back());
}

Operand Evaluator::EvaluateOperand(const Step& step, const Shift& shift, bool as_array) {
  if (const auto* constant = std::get_if<ConstantStep>(&step)) return constant->value;
  if (const auto* reference = std::get_if<ReferenceStep>(&step)) return Resolve(*reference, shift);
  if (const auto* name = std::get_if<NameStep>(&step)) return EvaluateName(*name);
  if (const auto* structured = std::get_if<StructuredReference>(&step))
    return ResolveStructured(*structured, caller_, context_.workbook());
  return Call(std::get<CallStep>(step), shift, as_array);
}

Operand Evaluator::Scalar(const Operand& operand, bool as_array, RangeExtent extent) {
  Operand read = Dereference(operand, as_array, context_, extent);
  return std::holds_alternative<Reference>(operand) ? Counted(std::move(read)) : read;
}

Operand Evaluator::Counted(Operand operand) {
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand)) {
    elements_ += (*array)->values.size();
    if (elements_ > kElementLimit) return Value(ErrorCode::kValue);
  }
  return operand;
}

Operand Evaluator::Resolve(const ReferenceStep& step, const Shift& shift) const {
  const auto sheet = SheetOf(step.prefix, caller_.sheet, context_.workbook());
  const auto range = ShiftedRange(step.reference, shift);
  if (!sheet || !range) return Value(ErrorCode::kRef);
  return Reference{*sheet, {*range}};
}

Operand Evaluator::EvaluateName(const NameStep& step) {
  if (step.prefix.kind == SheetPrefix::Kind::kNone) {
    const auto variable = std::find_if(
        variables_.rbegin(), variables_.rend(),
        [&](const Variable& candidate) { return EqualIgnoringCase(candidate.name, step.name); });
    if (variable != variables_.rend()) return variable->value;
  }
  const Workbook& workbook = context_.workbook();
  const DefinedName* name = DefinedNameOf(step.prefix, step.name, caller_.sheet, workbook);
  if (name != nullptr) return EvaluateDefinedName(*name, step.position);
  if (workbook.FindTable(step.name) == nullptr) return Value(ErrorCode::kName);
  return ResolveStructured({.table = step.name}, caller_, workbook);
}

Operand Evaluator::EvaluateDefinedName(const DefinedName& name, std::size_t position) {
  if (const auto known = known_names_.find(&name); known != known_names_.end())
    return known->second;
  const std::size_t chances = chances_;
  const std::string shown = "name " + PrintableUtf8(name.name);
  if (std::find(open_names_.begin(), open_names_.end(), &name) != open_names_.end())
    throw FormulaError(shown + " refers to itself", position);
  name_text_ += name.text.size() + 1;
  if (name_text_ > kNameTextLimit)
    throw FormulaError(shown + " expands to too long a formula", position);
  FormulaPtr parsed;
  try {
    parsed = context_.ParsedName(name);
  } catch (const FormulaError& error) {
    throw FormulaError(shown + ": " + error.what(), position);
  }
  open_names_.push_back(&name);
  // The variables of a formula are not those of a name in it.
  std::vector<Variable> variables;
  variables.swap(variables_);
  // A name's text is written for A1 and always evaluated as an array.
  Operand result = Evaluate(parsed->expression(), Shift::Between({}, caller_, true), true);
  variables_.swap(variables);
  open_names_.pop_back();
  if (chances_ == chances) known_names_.emplace(&name, result);
  return result;
}

void Evaluator::Apply(Operator op, std::vector<Operand>& stack, bool as_array,
                      Value (*apply)(Operator, const Value&, const Value&)) {
  const Operand last = std::move(stack.back());
  if (op == Operator::kSingle || op == Operator::kSpill) {
    stack.back() = op == Operator::kSingle ? Single(last) : Spilled(last);
    return;
  }
  if (op == Operator::kPlus || op == Operator::kMinus || op == Operator::kPercent) {
    const Operand operand = Scalar(last, as_array);
    Spread spread;
    spread.Include(operand);
    stack.back() = Fill(spread, [&](std::int32_t row, std::int32_t column) {
      return ApplyUnary(op, ElementAt(operand, row, column));
    });
    return;
  }
  stack.pop_back();
  if (op <= Operator::kUnion) {
    stack.back() = CombineReferences(op, stack.back(), last);
    return;
  }
  const Operand left = Scalar(stack.back(), as_array);
  const Operand right = Scalar(last, as_array);
  Spread spread;
  spread.Include(left);
  spread.Include(right);
  stack.back() = Fill(spread, [&](std::int32_t row, std::int32_t column) {
    return apply(op, ElementAt(left, row, column), ElementAt(right, row, column));
  });
}

Operand Evaluator::Single(const Operand& operand) const {
  if (const Reference* reference = std::get_if<Reference>(&operand)) {
    const auto cell = ImplicitIntersection(*reference, caller_);
    if (!cell) return Value(ErrorCode::kValue);
    return Reference{cell->sheet, {{cell->row, cell->column, cell->row, cell->column}}};
  }
  return ElementAt(operand, 0, 0);
}

Operand Evaluator::Spilled(const Operand& operand) const {
  const Reference* reference = std::get_if<Reference>(&operand);
  if (reference == nullptr) {
    const Value* value = std::get_if<Value>(&operand);
    return value != nullptr && value->error() != nullptr ? *value : Value(ErrorCode::kRef);
  }
  if (reference->areas.size() != 1 || !reference->areas.front().IsSingleCell())
    return Value(ErrorCode::kRef);
  const CellRange& cell = reference->areas.front();
  const auto filled = context_.SpillRange({reference->sheet, cell.first_row, cell.first_column});
  if (!filled) return Value(ErrorCode::kRef);
  return Reference{reference->sheet, {*filled}};
}

double Evaluator::CellsIn(const Operand& operand) const {
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand))
    return static_cast<double>((*array)->values.size());
  const Reference* reference = std::get_if<Reference>(&operand);
  if (reference == nullptr) return 1;
  double cells = 0;
  for (const CellRange& area : reference->areas) {
    const CellRange range = context_.workbook().sheets[reference->sheet].Clipped(area);
    cells += static_cast<double>(range.rows()) * range.columns();
  }
  return cells;
}

Operand Evaluator::Call(const CallStep& step, const Shift& shift, bool as_array) {
  CallableFunction* registered = context_.FindFunction(step.name);
  const BuiltInFunction* built_in = step.built_in;
  if (registered == nullptr) {
    if (built_in == nullptr) return Value(ErrorCode::kName);
    if (!Takes(*built_in, step.arguments.size())) return Value(ErrorCode::kValue);
    if (built_in->lazy == LazyForm::kLet) return CallLet(step, shift, as_array);
    if (built_in->lazy != LazyForm::kNone) return CallLazyForm(step, shift, as_array);
  }
  const Callee callee(registered, built_in);
  chances_ += std::size_t{callee.MayVary()};
  // A range that is itself an argument of an add-in's function ends with the used cells of its
  // sheet, since a million blanks would make no difference. For operators or TRANSPOSE they do
  // make a difference.
  const RangeExtent extent = registered != nullptr ? RangeExtent::kUsed : RangeExtent::kWhole;
  std::vector<Operand> arguments;
  arguments.reserve(step.arguments.size());
  Spread spread;
  double cells = 1;
  for (std::size_t i = 0; i < step.arguments.size(); ++i) {
    const ArgumentKind kind = callee.KindOf(i);
    const bool takes_reference =
        kind == ArgumentKind::kReference || kind == ArgumentKind::kReferenceOrArray;
    const bool argument_as_array =
        as_array || kind == ArgumentKind::kArray || kind == ArgumentKind::kReferenceOrArray;
    Operand argument = Evaluate(step.arguments[i], shift, argument_as_array);
    const bool is_ready = takes_reference || std::holds_alternative<MissingArgument>(argument);
    arguments.push_back(is_ready
                            ? std::move(argument)
                            : Scalar(argument, argument_as_array,
                                     kind == ArgumentKind::kArray ? extent : RangeExtent::kWhole));
    if (kind == ArgumentKind::kScalar) {
      spread.Include(arguments.back());
    } else {
      cells += CellsIn(arguments.back());
    }
  }
  if (!spread.is_array) return callee.Call(arguments, context_, as_array);
  // For arrays in place of single values, the function is called for every element.
  // Each call may read the arrays and ranges beside the single values anew.
  work_ += cells * spread.rows * spread.columns;
  if (work_ > kWorkLimit) return Value(ErrorCode::kValue);
  std::vector<Operand> element = arguments;
  return Fill(spread, [&](std::int32_t row, std::int32_t column) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const bool spreads = callee.KindOf(i) == ArgumentKind::kScalar &&
                           std::holds_alternative<ArrayPtr>(arguments[i]);
      if (spreads) element[i] = ElementAt(arguments[i], row, column);
    }
    return ElementAt(Scalar(callee.Call(element, context_, as_array), true), 0, 0);
  });
}

namespace {

/// Replaces blanks by 0, as cells show them.
Operand WithoutBlanks(Operand operand) {
  if (const Value* value = std::get_if<Value>(&operand)) {
    return value->IsBlank() ? Operand(Value(0.0)) : operand;
  }
  const Array& array = *std::get<ArrayPtr>(operand);
  const auto is_blank = [](const Value& value) { return value.IsBlank(); };
  if (std::none_of(array.values.begin(), array.values.end(), is_blank)) return operand;
  Array filled = array;
  std::replace_if(filled.values.begin(), filled.values.end(), is_blank, Value(0.0));
  return std::make_shared<const Array>(std::move(filled));
}

}  // namespace

Operand EvaluateFormula(const Formula& formula, const CellAddress& origin, bool as_array,
                        EvaluationContext& context) {
  const Shift shift = Shift::Between(origin, context.caller(), false);
  const Operand result =
      Evaluator(context, formula).Evaluate(formula.expression(), shift, as_array);
  return WithoutBlanks(Dereference(result, as_array, context));
}

std::optional<Reference> EvaluateReference(const Formula& formula, EvaluationContext& context) {
  const Operand result = Evaluator(context, formula).Evaluate(formula.expression(), Shift{}, true);
  const Reference* reference = std::get_if<Reference>(&result);
  return reference != nullptr ? std::optional(*reference) : std::nullopt;
}

}  // namespace zavhost
