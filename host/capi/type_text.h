#pragma once
// The type text of a registration: the types of a function's arguments and result.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/variant_copies.h"

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
  /// The argument (from 1) that the function changes in place as its result; 0 if it returns its
  /// result.
  std::size_t result_argument = 0;
  std::vector<TypeLetter> arguments;
  bool is_volatile = false;    // !
  bool is_macro_type = false;  // #
};

/// Reads a type text. If the host cannot call such a function, returns the reason: old value
/// records (P, R), three-word arrays (O), asynchronous handles (X), unknown letters, too many
/// arguments.
std::variant<TypeText, std::string> ParseTypeText(std::u16string_view text);

/// True for letters of single values, that is, neither arrays nor references.
bool IsScalar(TypeLetter letter);

}  // namespace zavhost
