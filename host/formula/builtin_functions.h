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
  // The same, but an expression is evaluated element by element even in a normal cell.
  kReferenceOrArray,
};

/// The kinds of a function's arguments as text, one letter each: s scalar, a array, r reference,
/// x reference or array.
/// The last letter stands for all further arguments; a last group in parentheses repeats as a
/// whole: "r(rs)" is a reference, then pairs of a reference and a scalar.
class ArgumentKinds {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a row of a table has the text itself.
  consteval ArgumentKinds(const char* text) : letters_(text), group_(letters_.size()) {
    if (letters_.empty()) return;
    const std::size_t open = letters_.find('(');
    if (open == std::string_view::npos) {
      group_ = letters_.size() - 1;
    } else {
      if (letters_.back() != ')' || letters_.size() < open + 3) throw "an unclosed or empty group";
      group_ = open;
    }
    for (const char letter : letters_) {
      if (std::string_view("sarx()").find(letter) == std::string_view::npos) throw "no kind";
    }
  }

  constexpr ArgumentKind operator[](std::size_t index) const {
    if (letters_.empty()) return ArgumentKind::kScalar;
    char letter = letters_[group_];
    if (index < group_) {
      letter = letters_[index];
    } else if (letter == '(') {
      const std::size_t length = letters_.size() - group_ - 2;
      letter = letters_[group_ + 1 + (index - group_) % length];
    }
    return letter == 's'   ? ArgumentKind::kScalar
           : letter == 'a' ? ArgumentKind::kArray
           : letter == 'x' ? ArgumentKind::kReferenceOrArray
                           : ArgumentKind::kReference;
  }

 private:
  std::string_view letters_;
  std::size_t group_;  // where the part that repeats begins
};

struct BuiltInCall {
  std::span<const Operand> arguments;
  EvaluationContext& context;
  bool as_array;
};

/// Functions that do not evaluate all of their arguments.
enum class LazyForm { kNone, kIf, kIfError, kIfNA, kIfs, kSwitch, kChoose, kLet };

struct BuiltInFunction {
  std::u16string_view name;
  std::size_t minimum_arguments;
  std::size_t maximum_arguments;
  ArgumentKinds kinds;
  Operand (*call)(const BuiltInCall& call);  // null for a lazy form
  LazyForm lazy = LazyForm::kNone;
};

/// The function with that name in any letter case, or null. A function that an add-in registers
/// under the same name takes precedence.
const BuiltInFunction* FindBuiltIn(std::u16string_view name);
bool IsBuiltIn(std::u16string_view name);

}  // namespace zavhost
