#pragma once
// Built-in functions of single numbers, made from plain C++ functions by their signatures.

#include <limits>
#include <tuple>
#include <type_traits>
#include <utility>

#include "host/formula/argument_reader.h"

namespace zavhost {

/// What a function of numbers returns outside its domain: #NUM!.
inline constexpr double kNum = std::numeric_limits<double>::quiet_NaN();

/// A parameter that takes a number without its decimal places.
struct Whole {
  double value = 0.0;
  // NOLINTNEXTLINE(google-explicit-constructor): it computes like any number.
  operator double() const { return value; }
};

/// A parameter of the functions that once were an add-in of Excel's: a boolean is #VALUE!.
struct StrictNumber {
  double value = 0.0;
  // NOLINTNEXTLINE(google-explicit-constructor): it computes like any number.
  operator double() const { return value; }
};

namespace detail {

template <typename Parameter>
Parameter ReadParameter(ArgumentReader& read, std::size_t index, int absent) {
  if constexpr (std::is_same_v<Parameter, bool>) {
    return read.Boolean(index, absent != 0);
  } else if constexpr (std::is_same_v<Parameter, Whole>) {
    return {read.Whole(index, absent)};
  } else if constexpr (std::is_same_v<Parameter, StrictNumber>) {
    if (read.IsGiven(index)) read.Require(!read.Any(index).boolean(), ErrorCode::kValue);
    return {read.Number(index, absent)};
  } else {
    return read.Number(index, absent);
  }
}

inline Value ResultOf(double number) { return NumberValue(number); }
inline Value ResultOf(Value value) { return value; }

template <typename Result, typename... Parameters, int... kAbsent, std::size_t... kIndex>
Operand CallBySignature(Result (*function)(Parameters...), const BuiltInCall& call,
                        std::integer_sequence<int, kAbsent...>, std::index_sequence<kIndex...>) {
  constexpr std::size_t kRequired = sizeof...(Parameters) - sizeof...(kAbsent);
  static constexpr int kDefaults[] = {kAbsent..., 0};
  [[maybe_unused]] const auto absent = [](std::size_t index) {
    return index < kRequired ? 0 : kDefaults[index - kRequired];
  };
  ArgumentReader read(call);  // NOLINT(misc-const-correctness): a function without parameters
  // Braces read the arguments from the first to the last.
  const std::tuple<Parameters...> arguments{
      ReadParameter<Parameters>(read, kIndex, absent(kIndex))...};
  if (read.failed()) return read.failure();
  return ResultOf(std::apply(function, arguments));
}

template <typename Result, typename... Parameters>
constexpr auto IndicesOf(Result (*)(Parameters...)) {
  return std::index_sequence_for<Parameters...>();
}

}  // namespace detail

/// The built-in function that passes its arguments to `kFunction`, whose last parameters have these
/// values where arguments are absent. The function returns a Value or a double.
template <auto kFunction, int... kAbsent>
Operand Of(const BuiltInCall& call) {
  return detail::CallBySignature(kFunction, call, std::integer_sequence<int, kAbsent...>(),
                                 detail::IndicesOf(kFunction));
}

}  // namespace zavhost
