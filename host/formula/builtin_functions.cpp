#include "host/formula/builtin_functions.h"

#include <string>
#include <unordered_map>

#include "host/formula/builtin_groups.h"
#include "host/workbook/letter_case.h"

namespace zavhost {
namespace {

using Table = std::unordered_map<std::u16string_view, const BuiltInFunction*>;

const Table& Functions() {
  static const Table table = [] {
    Table made;
    for (const auto group : {LogicalFunctions(), NumberFunctions(), AggregateFunctions(),
                             ReferenceFunctions(), ValueFunctions()}) {
      for (const BuiltInFunction& function : group) made.emplace(function.name, &function);
    }
    return made;
  }();
  return table;
}

}  // namespace

const BuiltInFunction* FindBuiltIn(std::u16string_view name) {
  const std::u16string folded = FoldCase(name);
  const auto found = Functions().find(folded);
  return found == Functions().end() ? nullptr : found->second;
}

bool IsBuiltIn(std::u16string_view name) { return FindBuiltIn(name) != nullptr; }

}  // namespace zavhost
