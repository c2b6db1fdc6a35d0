#pragma once
// The type text of a registration: what a function takes and returns.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zavhost {

enum class TypeLetter : std::uint8_t {
  kBoolean,              // A
  kBooleanPointer,       // L
  kNumber,               // B
  kNumberPointer,        // E
  kUnsignedShort,        // H
  kShort,                // I
  kShortPointer,         // M
  kInteger,              // J
  kIntegerPointer,       // N
  kNarrowText,           // C
  kNarrowBuffer,         // F: the function may write its result into it
  kCountedNarrowText,    // D
  kCountedNarrowBuffer,  // G
  kWideText,             // C%
  kWideBuffer,           // F%
  kCountedWideText,      // D%
  kCountedWideBuffer,    // G%
  kSmallNumberArray,     // K
  kNumberArray,          // K%
  kValue,                // Q
  kValueOrReference,     // U
};

struct TypeText {
  TypeLetter result = TypeLetter::kValue;
  /// The argument (from 1) that the function changes in place as its result; 0: it returns one.
  std::size_t result_argument = 0;
  std::vector<TypeLetter> arguments;
  bool is_volatile = false;    // !
  bool is_macro_type = false;  // #
};

/// Reads a type text. What the host cannot call gives the reason in words: the old value records
/// (P, R), three-word arrays (O), asynchronous handles (X), unknown letters, too many arguments.
std::variant<TypeText, std::string> ParseTypeText(std::u16string_view text);

/// True for letters that stand for one value, neither an array nor a reference.
bool IsScalar(TypeLetter letter);

}  // namespace zavhost
