#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"
#include "host/formula/expression.h"

namespace zavhost {
namespace {

Operand Concatenate(const BuiltInCall& call) {
  Value joined(u"");
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    joined = ApplyBinary(Operator::kConcatenate, joined, ScalarArgument(call, i));
    if (joined.error() != nullptr) break;
  }
  return joined;
}

Operand Len(const BuiltInCall& call) {
  const Converted<std::u16string> text = ToText(ScalarArgument(call, 0));
  return text.error ? Value(*text.error) : Value(static_cast<double>(text.value.size()));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"CONCATENATE", 1, kAnyNumberOfArguments, "s", Concatenate},
    {u"LEN", 1, 1, "s", Len},
};

}  // namespace

std::span<const BuiltInFunction> TextFunctions() { return kFunctions; }

}  // namespace zavhost
