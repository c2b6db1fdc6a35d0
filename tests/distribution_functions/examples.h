#pragma once
// Calls of the functions of distributions, by their exported names.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "faults/function_calls.h"

namespace zavrel::tests {

/// A call with arguments of which the function makes something. Its sample, of `count` values, is
/// an array or a range of the sheet.
class Example {
 public:
  enum class Sample { kArray, kRange };

  /// An empty cell among those that are given stands for the sample.
  Example(const LoadedModule& add_in, const char* function, const std::vector<Cell>& given,
          Sample sample, std::int32_t count);

  const std::string& name() const { return function_; }
  /// `around` is told when the function itself begins and ends.
  Outcome Call(const std::function<void(bool begins)>& around = {}) const;

 private:
  void Give(const Cell& cell, Sample sample, std::int32_t count);

  std::string function_;
  void* address_;
  std::vector<std::unique_ptr<Argument>> values_;
  std::unique_ptr<Reference> range_;
  std::vector<const XLOPER12*> arguments_;
};

/// Examples of all functions.
std::vector<Example> ExamplesOf(Example::Sample sample,
                                const LoadedModule& add_in = LoadedModule::HostExecutable());

}  // namespace zavrel::tests
