#pragma once
// The worksheet functions that the host has of its own: what formulas around an add-in's often use.

#include <cstddef>
#include <span>
#include <string_view>

#include "host/formula/evaluate.h"

namespace zavhost {

/// What a function makes of an argument.
enum class ArgumentKind {
  kScalar,     // one value; over an array the function is called element by element
  kArray,      // a value or an array
  kReference,  // a reference as it is; also a value or an array
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

/// The function of that name in any letter case, or null. A function that an add-in registers under
/// the same name goes before.
const BuiltInFunction* FindBuiltIn(std::u16string_view name);
bool IsBuiltIn(std::u16string_view name);

}  // namespace zavhost
