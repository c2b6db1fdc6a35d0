#pragma once
// A registered function that formulas can call: it marshals arguments by the type text, calls the
// function and converts its result.

#include <string>
#include <vector>

#include "host/capi/argument_block.h"
#include "host/capi/excel_api.h"
#include "host/formula/evaluate.h"

namespace zavhost {

class AddInFunction : public CallableFunction {
 public:
  /// Functions may share a `block` unless they are called within each other.
  AddInFunction(ExcelApi& api, ArgumentBlock& block, const RegistryEntry& entry);

  bool TakesReference(std::size_t index) const override;
  bool TakesArray(std::size_t index) const override;
  /// Without a call, returns #VALUE! for too many arguments and for values that cannot be
  /// converted, and #NUM! for an integer out of range. Throws Uncalculated if the function was told
  /// that a cell is not calculated yet; its result is then dropped.
  Operand Call(std::span<const Operand> arguments) override;

 private:
  Operand CallMachineCode(const MachineArguments& arguments);

  Operand TakePointer(const void* pointer, TypeLetter kind);
  Operand TakeText(const void* pointer, TypeLetter kind);
  Operand TakeNumbers(const void* pointer, bool small);
  Operand TakeRecord(XLOPER12* record);
  Operand Malformed(const std::string& what);
  void ReleaseRecord(XLOPER12* record);

  ExcelApi& api_;
  ArgumentBlock& block_;
  TypeText type_;
  void* address_;
  const LoadedAddIn& add_in_;
};

}  // namespace zavhost
