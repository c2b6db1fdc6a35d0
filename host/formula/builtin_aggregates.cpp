#include <algorithm>
#include <cmath>
#include <limits>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"

namespace zavhost {
namespace {

struct Summary {
  double count = 0;
  double sum = 0.0;
  double smallest = std::numeric_limits<double>::infinity();
  double largest = -std::numeric_limits<double>::infinity();
  std::optional<ErrorCode> error;
};

/// The numbers of all arguments. In cells and arrays, only numbers count; a direct value must be
/// convertible to a number.
Summary Summarize(const BuiltInCall& call) {
  Summary summary;
  summary.error =
      VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
        const bool is_skipped = !is_direct && !value.number() && !value.error();
        if (is_skipped) return std::nullopt;
        const Converted<double> number = ToNumber(value);
        if (number.error) return number.error;
        summary.count += 1;
        summary.sum += number.value;
        summary.smallest = std::min(summary.smallest, number.value);
        summary.largest = std::max(summary.largest, number.value);
        return std::nullopt;
      });
  return summary;
}

Operand Sum(const BuiltInCall& call) {
  const Summary summary = Summarize(call);
  return summary.error ? Value(*summary.error) : NumberValue(summary.sum);
}

Operand Average(const BuiltInCall& call) {
  const Summary summary = Summarize(call);
  if (summary.error) return Value(*summary.error);
  if (summary.count == 0) return Value(ErrorCode::kDiv0);
  return NumberValue(summary.sum / summary.count);
}

Operand Min(const BuiltInCall& call) {
  const Summary summary = Summarize(call);
  if (summary.error) return Value(*summary.error);
  return summary.count == 0 ? Value(0.0) : Value(summary.smallest);
}

Operand Max(const BuiltInCall& call) {
  const Summary summary = Summarize(call);
  if (summary.error) return Value(*summary.error);
  return summary.count == 0 ? Value(0.0) : Value(summary.largest);
}

Operand Count(const BuiltInCall& call) {
  double count = 0;
  VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
    const bool counts = is_direct ? !ToNumber(value).error : value.number() != nullptr;
    if (counts) count += 1;
    return std::nullopt;
  });
  return Value(count);
}

Operand CountA(const BuiltInCall& call) {
  double count = 0;
  VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
    if (is_direct || !value.IsBlank()) count += 1;
    return std::nullopt;
  });
  return Value(count);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"SUM", 1, kAnyNumberOfArguments, "r", Sum},
    {u"AVERAGE", 1, kAnyNumberOfArguments, "r", Average},
    {u"MIN", 1, kAnyNumberOfArguments, "r", Min},
    {u"MAX", 1, kAnyNumberOfArguments, "r", Max},
    {u"COUNT", 1, kAnyNumberOfArguments, "r", Count},
    {u"COUNTA", 1, kAnyNumberOfArguments, "r", CountA},
};

}  // namespace

std::span<const BuiltInFunction> AggregateFunctions() { return kFunctions; }

}  // namespace zavhost
