#pragma once
// The built-in functions in groups, with one file each. Names are in upper case.

#include <span>

#include "host/formula/builtin_functions.h"

namespace zavhost {

inline constexpr std::size_t kAnyNumberOfArguments = 255;

std::span<const BuiltInFunction> LogicalFunctions();
std::span<const BuiltInFunction> InformationFunctions();
std::span<const BuiltInFunction> NumberFunctions();
std::span<const BuiltInFunction> TrigonometryFunctions();
std::span<const BuiltInFunction> IntegerFunctions();
std::span<const BuiltInFunction> AggregateFunctions();
std::span<const BuiltInFunction> SubtotalFunctions();
std::span<const BuiltInFunction> ConditionalFunctions();
std::span<const BuiltInFunction> StatisticsFunctions();
std::span<const BuiltInFunction> RankFunctions();
std::span<const BuiltInFunction> RegressionFunctions();
std::span<const BuiltInFunction> DistributionFunctions();
std::span<const BuiltInFunction> DiscreteDistributionFunctions();
std::span<const BuiltInFunction> HypothesisTestFunctions();
std::span<const BuiltInFunction> MatrixFunctions();
std::span<const BuiltInFunction> FinancialFunctions();
std::span<const BuiltInFunction> CashFlowFunctions();
std::span<const BuiltInFunction> TextFunctions();
std::span<const BuiltInFunction> TextSearchFunctions();
std::span<const BuiltInFunction> CharacterFunctions();
std::span<const BuiltInFunction> NumberTextFunctions();
std::span<const BuiltInFunction> BaseFunctions();
std::span<const BuiltInFunction> DateFunctions();
std::span<const BuiltInFunction> PeriodFunctions();
std::span<const BuiltInFunction> WorkdayFunctions();
std::span<const BuiltInFunction> ReferenceFunctions();
std::span<const BuiltInFunction> LookupFunctions();
std::span<const BuiltInFunction> ArrayFunctions();
std::span<const BuiltInFunction> SortingFunctions();

/// A scalar argument; blank if it is missing.
Value ScalarArgument(const BuiltInCall& call, std::size_t index);

/// Calls `visit(value, is_direct)` for every value of every argument until it returns an error,
/// which is then the result. A value that is an argument itself is direct; cells and elements of
/// arrays are not. A missing argument is a direct blank.
template <typename Visit>
std::optional<ErrorCode> VisitValues(const BuiltInCall& call, const Visit& visit) {
  const auto visit_array = [&visit](const Array& array) -> std::optional<ErrorCode> {
    for (const Value& value : array.values) {
      if (const auto error = visit(value, false)) return error;
    }
    return std::nullopt;
  };
  for (const Operand& argument : call.arguments) {
    std::optional<ErrorCode> error;
    if (const Value* value = std::get_if<Value>(&argument)) {
      error = visit(*value, true);
    } else if (const ArrayPtr* array = std::get_if<ArrayPtr>(&argument)) {
      error = visit_array(**array);
    } else if (const Reference* reference = std::get_if<Reference>(&argument)) {
      for (const CellRange& area : reference->areas) {
        error = visit_array(*call.context.ReadRange(reference->sheet, area, RangeExtent::kUsed));
        if (error) break;
      }
    } else {
      error = visit(Value(), true);
    }
    if (error) return error;
  }
  return std::nullopt;
}

}  // namespace zavhost
