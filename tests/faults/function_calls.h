#pragma once
// Calls every function that an add-in registers, with arguments of several shapes, by its type
// text.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/capi/type_text.h"
#include "support/fake_excel.h"

namespace zavrel::tests {

/// What a cell shows of a call.
struct Outcome {
  std::string shown;
  bool is_failure = false;  // an error, or what a function shows in the place of one
};

/// The add-in open in a host of the tests', with a sheet of data; everything is registered.
class OpenFunctions {
 public:
  OpenFunctions();
  ~OpenFunctions();
  OpenFunctions(const OpenFunctions&) = delete;
  OpenFunctions& operator=(const OpenFunctions&) = delete;

  /// Forgets what earlier calls left behind.
  void ClearCaches();

  FakeExcel excel;

 private:
  void FillSheet();
};

class RegisteredFunction {
 public:
  explicit RegisteredFunction(const Registered& registered);

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

std::vector<RegisteredFunction> FunctionsOf(const FakeExcel& excel);

}  // namespace zavrel::tests
