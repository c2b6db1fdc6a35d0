#include "host/capi/add_in_function.h"

#include "host/capi/excel_record.h"

namespace zavhost {

AddInFunction::AddInFunction(ExcelApi& api, ArgumentBlock& block, const RegistryEntry& entry)
    : api_(api),
      block_(block),
      type_(entry.type),
      address_(entry.address),
      add_in_(*entry.add_in) {}

bool AddInFunction::TakesReference(std::size_t index) const {
  return index < type_.arguments.size() && type_.arguments[index] == TypeLetter::kValueOrReference;
}

bool AddInFunction::TakesArray(std::size_t index) const {
  return index < type_.arguments.size() && !IsScalar(type_.arguments[index]);
}

Operand AddInFunction::Call(std::span<const Operand> arguments) {
  if (arguments.size() > type_.arguments.size()) return Value(ErrorCode::kValue);
  std::vector<Operand> prepared(arguments.begin(), arguments.end());
  prepared.resize(type_.arguments.size(), MissingArgument{});
  if (const auto error = block_.Prepare(type_, prepared, api_.current_sheet(),
                                        api_.behaviour().external_references_only))
    return Value(*error);
  const CallContext context =
      type_.is_macro_type ? CallContext::kMacroTypeFunction : CallContext::kWorksheetFunction;
  Operand result;
  bool met_uncalculated = false;
  {
    const ExcelApi::Entry entry(api_, context, add_in_);
    result = CallMachineCode(block_.machine_arguments());
    met_uncalculated = api_.met_uncalculated();
  }
  if (block_.WasWritten())
    api_.judge().Report(ViolationKind::kArgumentWritten, "the function wrote to an argument");
  api_.memory().JudgeGrowth();
  if (met_uncalculated) throw Uncalculated{};
  return result;
}

Operand AddInFunction::CallMachineCode(const MachineArguments& arguments) {
  const bool gives_double = type_.result == TypeLetter::kNumber;
  std::uint64_t word = 0;
  double number = 0;
  try {
    if (gives_double) {
      number = arguments.CallForDouble(address_);
    } else {
      word = arguments.CallForInteger(address_);
    }
  } catch (...) {
    api_.judge().Report(ViolationKind::kCrash, "an exception left the function");
    return Value(ErrorCode::kValue);
  }
  if (gives_double) return NumberResult(number);
  if (type_.result_argument != 0)
    return TakePointer(block_.buffer(type_.result_argument - 1), type_.result);
  switch (type_.result) {
    case TypeLetter::kBoolean:
      return Value(static_cast<std::int16_t>(word) != 0);
    case TypeLetter::kUnsignedShort:
      return Value(static_cast<double>(static_cast<std::uint16_t>(word)));
    case TypeLetter::kShort:
      return Value(static_cast<double>(static_cast<std::int16_t>(word)));
    case TypeLetter::kInteger:
      return Value(static_cast<double>(static_cast<std::int32_t>(word)));
    default:
      return TakePointer(reinterpret_cast<const void*>(word), type_.result);
  }
}

}  // namespace zavhost
