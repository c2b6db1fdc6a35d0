#pragma once
// The lexer of worksheet formulas in their stored (English, A1) form.

#include <cstddef>
#include <string_view>
#include <vector>

namespace formula {

enum class TokenKind {
  kNumber,
  kText,           // "..." with doubled quotes; the token's text includes the quotes
  kBoolean,        // TRUE, FALSE
  kError,          // #DIV/0! and so on
  kReference,      // A1, $B$2:C9, A:A, 3:7, Sheet1!A1, 'My sheet'!A1:B2 (one token, prefix included)
  kName,           // a defined name, with its sheet prefix if any
  kFunction,       // a name followed by "(": the parenthesis is part of the token
  kOpen,           // "("
  kClose,          // ")" of a function or of a group
  kSeparator,      // "," between arguments, or as the union operator: `text` alone does not tell
  kOperator,       // + - * / ^ & = <> < <= > >= % : and the intersection (a significant space)
  kArrayOpen,      // "{"
  kArrayClose,     // "}"
  kRowSeparator,   // ";" inside an array constant
  kWhiteSpace,     // anything else that is blank
  kInvalid,        // a character that begins no token; lexing goes on behind it
};

struct Token {
  TokenKind kind;
  std::u16string_view text;  // into the formula
  std::size_t position;      // code units from the start
};

/// Splits a formula without its leading "=". Never throws for content: what cannot be read becomes
/// kInvalid tokens, and the tokens' texts together are the formula.
std::vector<Token> Tokenize(std::u16string_view formula);

}  // namespace formula
