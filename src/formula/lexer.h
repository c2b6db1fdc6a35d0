#pragma once
// The lexer of worksheet formulas, in their stored (English, A1) form or as a language shows them.

#include <cstddef>
#include <string_view>
#include <vector>

#include "formula/notation.h"

namespace formula {

enum class TokenKind {
  kNumber,               // 1, .5, 1E+20; never with a sign
  kText,                 // "..." with doubled quotes; the token's text includes the quotes
  kBoolean,              // TRUE, FALSE
  kError,                // #DIV/0! and so on; also Sheet1!#REF! and #REF!A1, left by deletions
  kReference,            // A1, $B$2:C9, A:A, 3:7, Sheet1!A1, 'My sheet'!A1:B2, S1:S3!A1, [1]S!A1;
                         // in R1C1 style RC[-1], R1C1:R2C2, R3, Sheet1!C
  kStructuredReference,  // Table1[Column], [@Column]
  kName,                 // a defined name, with its sheet prefix if any
  kFunction,             // a name followed by "(", which is part of the token; also with blanks
                         // before it after a plain word: "SUM (A1)"
  kOpen,                 // "("
  kClose,                // ")" of a function or of a group
  kSeparator,     // "," between arguments, between the elements of an array row, or the union:
                  // the context decides
  kOperator,      // + - * / ^ & = <> < <= > >= % : @ # and the intersection, whose text is the
                  // run of blanks between two operands that may be references
  kArrayOpen,     // "{"
  kArrayClose,    // "}"
  kRowSeparator,  // ";" inside an array constant, and elsewhere unless it is the language's
                  // separator of arguments
  kWhiteSpace,    // blanks, tabs and line ends that mean nothing
  kInvalid,       // characters that begin no token, or an unclosed token; lexing continues after it
};

struct Token {
  TokenKind kind;
  std::u16string_view text;  // a view of the formula
  std::size_t position;      // from the start, in code units
};

/// The tokens of a formula without its leading "=". Their texts together are the whole formula:
/// unreadable parts become kInvalid tokens and never throw. Takes linear time.
///
/// A plain word (no prefix, no "\" or "?"), blanks and "(" are a function, because some programs
/// write functions so; a defined name in an intersection with a group looks the same but is far
/// rarer. A word that is also a cell remains a reference: "A1 (", "LOG10 (".
std::vector<Token> Tokenize(std::u16string_view formula,
                            const Notation& notation = EnglishNotation(),
                            ReferenceStyle style = ReferenceStyle::kA1);

}  // namespace formula
