#pragma once
// Calls machine code whose signature is known only at run time.

#include <array>
#include <cstddef>
#include <cstdint>

namespace zavhost {

/// The arguments of a call in the platform's 64-bit calling convention, in the order of the
/// signature.
class MachineArguments {
 public:
  static constexpr std::size_t kLimit = 60;

  /// An integer of any width or a pointer, extended to a machine word. As AddDouble throws
  /// std::out_of_range for more arguments than the stack has room for, which no type text allows.
  void AddInteger(std::uint64_t word);
  void AddPointer(const void* pointer) { AddInteger(reinterpret_cast<std::uintptr_t>(pointer)); }
  void AddDouble(double number);

  /// Calls `function`. In both conventions the caller removes the arguments from the stack, so more
  /// words than the function declares do no harm.
  std::uint64_t CallForInteger(void* function) const;
  double CallForDouble(void* function) const;

 private:
  template <class Result>
  Result Call(void* function) const;

  static constexpr std::size_t kIntegerRegisters = 6;
  static constexpr std::size_t kDoubleRegisters = 8;

  std::size_t integers_ = 0;  // in integer registers; not counted on Windows
  std::size_t doubles_ = 0;   // in floating-point registers; on Windows, 1 if the first argument is
  std::size_t words_ = 0;     // on the stack; on Windows, all
  std::array<std::uint64_t, kIntegerRegisters> integer_registers_{};
  std::array<double, kDoubleRegisters> double_registers_{};
  std::array<std::uint64_t, kLimit> stack_{};
};

}  // namespace zavhost
