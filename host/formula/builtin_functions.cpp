#include "host/formula/builtin_functions.h"

#include <string>
#include <unordered_map>

#include "host/formula/builtin_groups.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

std::span<const std::span<const BuiltInFunction>> Groups() {
  static const std::span<const BuiltInFunction> groups[] = {
      LogicalFunctions(),        InformationFunctions(), NumberFunctions(),
      TrigonometryFunctions(),   IntegerFunctions(),     AggregateFunctions(),
      SubtotalFunctions(),       ConditionalFunctions(), StatisticsFunctions(),
      RankFunctions(),           RegressionFunctions(),  DistributionFunctions(),
      MatrixFunctions(),         FinancialFunctions(),   TextFunctions(),
      DateFunctions(),           ReferenceFunctions(),   LookupFunctions(),
      ArrayFunctions(),          SortingFunctions(),     TextSearchFunctions(),
      CharacterFunctions(),      NumberTextFunctions(),  BaseFunctions(),
      PeriodFunctions(),         WorkdayFunctions(),     DiscreteDistributionFunctions(),
      HypothesisTestFunctions(), CashFlowFunctions()};
  return groups;
}

/// By name in lower case.
using Table = std::unordered_map<std::u16string, const BuiltInFunction*>;

const Table& Functions() {
  static const Table table = [] {
    Table made;
    for (const auto group : Groups()) {
      for (const BuiltInFunction& function : group)
        made.emplace(LowerCase(function.name), &function);
    }
    return made;
  }();
  return table;
}

}  // namespace

const BuiltInFunction* FindBuiltIn(std::u16string_view name) {
  const auto found = Functions().find(LowerCase(name));
  return found == Functions().end() ? nullptr : found->second;
}

bool IsBuiltIn(std::u16string_view name) { return FindBuiltIn(name) != nullptr; }

}  // namespace zavhost
