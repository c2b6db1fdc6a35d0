#include <functional>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"

namespace zavhost {
namespace {

/// AND, OR and XOR: text and blanks in cells and arrays do not count; without any value, the result
/// is #VALUE!.
template <typename Combine>
Operand Fold(const BuiltInCall& call, bool first, const Combine& combine) {
  bool result = first;
  bool any = false;
  const auto error =
      VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
        if (!is_direct && (value.IsBlank() || value.text() != nullptr)) return std::nullopt;
        const Converted<bool> converted = ToBoolean(value);
        if (converted.error) return converted.error;
        any = true;
        result = combine(result, converted.value);
        return std::nullopt;
      });
  if (error) return Value(*error);
  return any ? Value(result) : Value(ErrorCode::kValue);
}

Operand And(const BuiltInCall& call) { return Fold(call, true, std::logical_and<>()); }
Operand Or(const BuiltInCall& call) { return Fold(call, false, std::logical_or<>()); }
Operand Xor(const BuiltInCall& call) { return Fold(call, false, std::not_equal_to<>()); }

Operand Not(const BuiltInCall& call) {
  const Converted<bool> converted = ToBoolean(ScalarArgument(call, 0));
  return converted.error ? Value(*converted.error) : Value(!converted.value);
}

Operand True(const BuiltInCall&) { return Value(true); }
Operand False(const BuiltInCall&) { return Value(false); }

constexpr BuiltInFunction kFunctions[] = {
    {u"IF", 2, 3, "sr", nullptr, LazyForm::kIf},
    {u"IFERROR", 2, 2, "sr", nullptr, LazyForm::kIfError},
    {u"IFNA", 2, 2, "sr", nullptr, LazyForm::kIfNA},
    {u"IFS", 2, 254, "sr", nullptr, LazyForm::kIfs},
    {u"SWITCH", 3, 254, "sr", nullptr, LazyForm::kSwitch},
    {u"CHOOSE", 2, 255, "sr", nullptr, LazyForm::kChoose},
    {u"LET", 3, 253, "r", nullptr, LazyForm::kLet},
    {u"AND", 1, kAnyNumberOfArguments, "r", And},
    {u"OR", 1, kAnyNumberOfArguments, "r", Or},
    {u"XOR", 1, kAnyNumberOfArguments, "r", Xor},
    {u"NOT", 1, 1, "s", Not},
    {u"TRUE", 0, 0, "s", True},
    {u"FALSE", 0, 0, "s", False},
};

}  // namespace

std::span<const BuiltInFunction> LogicalFunctions() { return kFunctions; }

}  // namespace zavhost
