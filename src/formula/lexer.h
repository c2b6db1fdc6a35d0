#pragma once
// The lexer of worksheet formulas in their stored (English, A1) form.

#include <cstddef>
#include <string_view>
#include <vector>

namespace formula {

enum class TokenKind {
  kNumber,               // 1, .5, 1E+20; never with a sign
  kText,                 // "..." with doubled quotes; the token's text includes the quotes
  kBoolean,              // TRUE, FALSE
  kError,                // #DIV/0! and so on; also Sheet1!#REF! and #REF!A1, what deletions leave
  kReference,            // A1, $B$2:C9, A:A, 3:7, Sheet1!A1, 'My sheet'!A1:B2, S1:S3!A1, [1]S!A1
  kStructuredReference,  // Table1[Column], [@Column]
  kName,                 // a defined name, with its sheet prefix if any
  kFunction,             // a name followed by "(", which is part of the token; also with blanks in
                         // between behind a plain word: "SUM (A1)"
  kOpen,                 // "("
  kClose,                // ")" of a function or of a group
  kSeparator,     // "," between arguments, between the elements of an array row, or the union:
                  // what it stands in tells
  kOperator,      // + - * / ^ & = <> < <= > >= % : @ # and the intersection, whose text is the
                  // run of blanks between two operands that may be references
  kArrayOpen,     // "{"
  kArrayClose,    // "}"
  kRowSeparator,  // ";" inside an array constant
  kWhiteSpace,    // blanks, tabs and line ends without a meaning
  kInvalid,       // what begins no token or is not closed; lexing goes on behind it
};

struct Token {
  TokenKind kind;
  std::u16string_view text;  // into the formula
  std::size_t position;      // code units from the start
};

/// Splits a formula without its leading "=". Never throws for content: what cannot be read becomes
/// kInvalid tokens, and the tokens' texts together are the formula. Takes linear time.
///
/// A plain word (no prefix, no "\" or "?"), blanks and "(" are a function, as some programs write
/// one; a defined name in an intersection with a group looks the same and is far rarer. What is a
/// cell too stays a reference: "A1 (", "LOG10 (".
std::vector<Token> Tokenize(std::u16string_view formula);

}  // namespace formula
