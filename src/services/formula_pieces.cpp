#include "services/formula_pieces.h"

#include <algorithm>

#include "formula/lexer.h"
#include "platform/utf.h"

namespace zavrel::services {
namespace {

using formula::Token;
using formula::TokenKind;

/// A part of a text, by places in it.
struct Span {
  std::size_t begin;
  std::size_t end;
  std::size_t size() const { return end - begin; }
};

/// Everything that stands between the parentheses and separators of calls. Separators within an
/// array constant are its own.
std::vector<Span> ArgumentsIn(std::u16string_view text) {
  std::vector<Span> arguments;
  std::vector<std::size_t> begins;  // of the current argument of each open parenthesis
  bool in_array = false;
  for (const Token& token : formula::Tokenize(text)) {
    const std::size_t end = token.position + token.text.size();
    const bool ends_argument =
        token.kind == TokenKind::kClose || (token.kind == TokenKind::kSeparator && !in_array);
    if (token.kind == TokenKind::kArrayOpen) in_array = true;
    if (token.kind == TokenKind::kArrayClose) in_array = false;
    if (token.kind == TokenKind::kOpen || token.kind == TokenKind::kFunction) {
      begins.push_back(end);
    } else if (ends_argument && !begins.empty()) {
      arguments.push_back({begins.back(), token.position});
      begins.back() = end;
      if (token.kind == TokenKind::kClose) begins.pop_back();
    }
  }
  return arguments;
}

/// A short name that the formula does not have.
std::u16string NameOf(std::size_t piece, std::u16string_view formula) {
  std::u16string name = u"z_";
  const std::u16string number = Utf16FromUtf8(std::to_string(piece) + "_");
  while (formula.find(name + number) != std::u16string_view::npos) name += u'_';
  return name + number;
}

}  // namespace

std::optional<FormulaPieces> InPieces(std::u16string_view formula) {
  if (formula.starts_with(u'=')) formula.remove_prefix(1);
  std::u16string rest(formula);
  std::vector<FormulaPieces::Piece> cut;
  // The "=" is a character too.
  while (rest.size() + 1 > kMostCharactersOfFirst) {
    const std::u16string name = NameOf(cut.size(), formula);
    // The longest that fits: with it the fewest pieces.
    std::optional<Span> longest;
    for (const Span& argument : ArgumentsIn(rest)) {
      if (argument.size() <= kMostCharactersOfPiece &&
          (!longest || argument.size() > longest->size()))
        longest = argument;
    }
    if (!longest || longest->size() <= name.size()) return std::nullopt;
    cut.push_back({name, rest.substr(longest->begin, longest->size())});
    rest.replace(longest->begin, longest->size(), name);
  }
  // What was cut last may hold the names of what was cut before.
  std::ranges::reverse(cut);
  return FormulaPieces{u"=" + rest, std::move(cut)};
}

}  // namespace zavrel::services
