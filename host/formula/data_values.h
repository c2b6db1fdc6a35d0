#pragma once
// The numbers of arguments that hold data: cells, arrays and single values.

#include <initializer_list>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "host/formula/argument_reader.h"
#include "host/formula/coercion.h"
#include "host/formula/elementwise.h"
#include "host/formula/reference_algebra.h"

namespace zavhost {

/// What text and booleans in cells and arrays are. Blanks there never count; an argument that is a
/// single value must always be convertible to a number.
enum class NonNumbers {
  kSkipped,
  kCounted,  // text as 0, booleans as 1 and 0, as for AVERAGEA
};

/// Numbers, or the first error among the values.
struct DataValues {
  std::vector<double> numbers;
  std::optional<ErrorCode> error;
};

/// The numbers of all arguments, or of one.
DataValues NumbersOf(const BuiltInCall& call, NonNumbers others = NonNumbers::kSkipped);
DataValues NumbersOfArgument(const BuiltInCall& call, std::size_t index);

/// Two variables, of the same number of values.
struct DataPairs {
  std::vector<double> x;
  std::vector<double> y;
  std::optional<ErrorCode> error;
};

/// The pairs of two arguments of which both values are numbers; #N/A if the arguments do not have
/// the same number of values.
DataPairs PairsOf(const BuiltInCall& call, std::size_t x_index, std::size_t y_index);

/// A function of all the numbers of its arguments, in any order: kFunction(std::span<double>) is a
/// Value or a double.
template <auto kFunction, NonNumbers kOthers = NonNumbers::kSkipped>
Operand OfData(const BuiltInCall& call) {
  DataValues data = NumbersOf(call, kOthers);
  if (data.error) return Value(*data.error);
  auto result = kFunction(std::span<double>(data.numbers));
  if constexpr (std::is_same_v<decltype(result), double>) {
    return NumberValue(result);
  } else {
    return result;
  }
}

/// A function of the pairs of two arguments.
template <Value (*kFunction)(const DataPairs&), std::size_t kX = 0, std::size_t kY = 1>
Operand OfPairs(const BuiltInCall& call) {
  const DataPairs pairs = PairsOf(call, kX, kY);
  return pairs.error ? Value(*pairs.error) : kFunction(pairs);
}

/// Lifts a function over some of its arguments, as the evaluator does over single values, so that
/// it reads its data only once. f(reader) gives the Value for one element of each of these
/// arguments, the only ones that the reader has; a failure of the reader takes precedence.
template <typename Function>
Operand ForEachElement(const BuiltInCall& call, std::initializer_list<std::size_t> lifted,
                       const Function& f) {
  std::vector<Operand> arguments(call.arguments.size(), MissingArgument());
  Spread spread;
  for (const std::size_t index : lifted) {
    if (index >= arguments.size()) continue;
    const Operand& argument = call.arguments[index];
    if (std::holds_alternative<MissingArgument>(argument)) continue;
    arguments[index] = Dereference(argument, call.as_array, call.context);
    spread.Include(arguments[index]);
  }
  std::vector<Operand> element = arguments;
  return FillSpread(spread, [&](std::int32_t row, std::int32_t column) {
    for (std::size_t i = 0; i < element.size(); ++i) {
      if (std::holds_alternative<ArrayPtr>(arguments[i]))
        element[i] = ElementAt(arguments[i], row, column);
    }
    const BuiltInCall element_call{element, call.context, call.as_array};
    ArgumentReader read(element_call);
    const Value result = f(read);
    return read.failed() ? std::get<Value>(read.failure()) : result;
  });
}

}  // namespace zavhost
