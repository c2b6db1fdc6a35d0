// The lexer: its tokens are the whole formula, whatever that is. In one that could be a formula, an
// operand means the same alone.
#include <algorithm>
#include <string>

#include "formula/lexer.h"
#include "fuzz/target.h"
#include "host/workbook/text.h"

namespace zavrel::tests {
namespace {

using formula::Token;
using formula::TokenKind;

bool IsOperand(TokenKind kind) {
  switch (kind) {
    case TokenKind::kNumber:
    case TokenKind::kText:
    case TokenKind::kBoolean:
    case TokenKind::kError:
    case TokenKind::kReference:
    case TokenKind::kStructuredReference:
    case TokenKind::kName:
    case TokenKind::kFunction:
      return true;
    default:
      return false;
  }
}

/// No part is unreadable, and no operand follows another at once ("B1$C2").
bool CouldBeFormula(const std::vector<Token>& tokens) {
  const auto follows_operand = [](const Token& one, const Token& next) {
    return one.kind != TokenKind::kFunction && IsOperand(one.kind) && IsOperand(next.kind);
  };
  return std::ranges::count(tokens, TokenKind::kInvalid, &Token::kind) == 0 &&
         std::ranges::adjacent_find(tokens, follows_operand) == tokens.end();
}

void Lex(std::span<const std::uint8_t> input) {
  const std::u16string text =
      zavhost::Utf16FromUtf8({reinterpret_cast<const char*>(input.data()), input.size()});
  const std::vector<Token> tokens = formula::Tokenize(text);
  const bool could_be_formula = CouldBeFormula(tokens);
  std::size_t end = 0;
  for (const Token& token : tokens) {
    Require(token.position == end && !token.text.empty(), "a gap between tokens, or an empty one");
    end += token.text.size();
    Require(end <= text.size() && token.text.data() == text.data() + token.position,
            "a token that is not a part of the formula");
    if (!could_be_formula || !IsOperand(token.kind)) continue;
    const auto alone = formula::Tokenize(token.text);
    Require(alone.size() == 1 && alone[0].kind == token.kind,
            "an operand means something else alone");
  }
  Require(end == text.size(), "the tokens are not the whole formula");
}

const FuzzTarget target("formula_lexer", Lex);

}  // namespace
}  // namespace zavrel::tests
