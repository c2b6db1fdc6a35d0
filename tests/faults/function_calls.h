#pragma once
// Calls every function that an add-in registers, with arguments of several shapes, by its type
// text.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/capi/type_text.h"
#include "platform/module.h"
#include "support/fake_excel.h"

namespace zavrel::tests {

/// What a cell shows of a call.
struct Outcome {
  std::string shown;
  bool is_failure = false;  // an error, or what a function shows in the place of one
};

/// Data for the functions' arguments, and the place of the formulas.
void FillSheet(FakeExcel& excel);
/// Selects anew, and enters, what a handle in the sheet names, if the add-in has such functions.
void EnterHandle(FakeExcel& excel, const LoadedModule& add_in = LoadedModule::HostExecutable());

class RegisteredFunction {
 public:
  RegisteredFunction(const Registered& registered, const LoadedModule& add_in);

  const std::string& name() const { return name_; }
  /// Gives another result at each call.
  bool is_volatile() const { return type_.is_volatile; }
  /// Calls with the arguments of a shape, below kShapes; `around` is told when the function itself
  /// begins and ends.
  Outcome Call(std::size_t shape, const std::function<void(bool begins)>& around = {}) const;

  static constexpr std::size_t kShapes = 24;

 private:
  std::string name_;
  zavhost::TypeText type_;
  void* address_;
};

std::vector<RegisteredFunction> FunctionsOf(
    const FakeExcel& excel, const LoadedModule& add_in = LoadedModule::HostExecutable());

}  // namespace zavrel::tests
