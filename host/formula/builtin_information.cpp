#include <string>
#include <utility>

#include "host/formula/builtin_groups.h"
#include "host/formula/coercion.h"

namespace zavhost {

Value ScalarArgument(const BuiltInCall& call, std::size_t index) {
  if (index >= call.arguments.size()) return {};
  const Value* value = std::get_if<Value>(&call.arguments[index]);
  return value == nullptr ? Value() : *value;
}

namespace {

Operand IsError(const BuiltInCall& call) {
  return Value(ScalarArgument(call, 0).error() != nullptr);
}

Operand IsNA(const BuiltInCall& call) {
  const Value value = ScalarArgument(call, 0);
  return Value(value.error() != nullptr && *value.error() == ErrorCode::kNA);
}

/// The number that Excel gives an error; #N/A for what is none.
Operand ErrorType(const BuiltInCall& call) {
  constexpr std::pair<ErrorCode, double> kTypes[] = {
      {ErrorCode::kNull, 1},     {ErrorCode::kDiv0, 2},        {ErrorCode::kValue, 3},
      {ErrorCode::kRef, 4},      {ErrorCode::kName, 5},        {ErrorCode::kNum, 6},
      {ErrorCode::kNA, 7},       {ErrorCode::kGettingData, 8}, {ErrorCode::kSpill, 9},
      {ErrorCode::kConnect, 10}, {ErrorCode::kBlocked, 11},    {ErrorCode::kUnknown, 12},
  };
  const Value value = ScalarArgument(call, 0);
  for (const auto& [code, type] : kTypes) {
    if (value.error() != nullptr && *value.error() == code) return Value(type);
  }
  return Value(ErrorCode::kNA);
}

Operand IsNumber(const BuiltInCall& call) {
  return Value(ScalarArgument(call, 0).number() != nullptr);
}

Operand IsText(const BuiltInCall& call) { return Value(ScalarArgument(call, 0).text() != nullptr); }

Operand IsBlank(const BuiltInCall& call) {
  const Value* value = std::get_if<Value>(&call.arguments[0]);
  return Value(value != nullptr && value->IsBlank());
}

Operand NA(const BuiltInCall&) { return Value(ErrorCode::kNA); }

constexpr BuiltInFunction kFunctions[] = {
    {u"ISERROR", 1, 1, "s", IsError}, {u"ERROR.TYPE", 1, 1, "s", ErrorType},
    {u"ISNA", 1, 1, "s", IsNA},       {u"ISNUMBER", 1, 1, "s", IsNumber},
    {u"ISTEXT", 1, 1, "s", IsText},   {u"ISBLANK", 1, 1, "s", IsBlank},
    {u"NA", 0, 0, "s", NA},
};

}  // namespace

std::span<const BuiltInFunction> InformationFunctions() { return kFunctions; }

}  // namespace zavhost
