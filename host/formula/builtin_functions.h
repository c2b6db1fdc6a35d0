#pragma once
// The host's own worksheet functions, which formulas often combine with those of an add-in.

#include <cstddef>
#include <span>
#include <string_view>

#include "host/formula/evaluate.h"

namespace zavhost {

/// How a function treats an argument.
enum class ArgumentKind {
  kScalar,     // one value; for an array, the function is called for each element
  kArray,      // a value or an array
  kReference,  // an unchanged reference; also a value or an array
};

struct BuiltInCall {
  std::span<const Operand> arguments;
  EvaluationContext& context;
  bool as_array;
};

/// Functions that do not evaluate all of their arguments.
enum class LazyForm { kNone, kIf, kIfError, kIfNA };

struct BuiltInFunction {
  std::u16string_view name;
  std::size_t minimum_arguments;
  std::size_t maximum_arguments;
  ArgumentKind first;                        // of argument 0
  ArgumentKind rest;                         // of the others
  Operand (*call)(const BuiltInCall& call);  // null for a lazy form
  LazyForm lazy = LazyForm::kNone;
};

/// The function with that name in any letter case, or null. A function that an add-in registers
/// under the same name takes precedence.
const BuiltInFunction* FindBuiltIn(std::u16string_view name);
bool IsBuiltIn(std::u16string_view name);

}  // namespace zavhost
