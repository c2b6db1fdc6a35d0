// Long formulas cut into pieces, and put together as Excel does it.
#include "services/formula_pieces.h"

#include <doctest/doctest.h>

#include "formula/lexer.h"
#include "platform/utf.h"

namespace zavrel::services {
namespace {

std::u16string PutTogether(const FormulaPieces& cut) {
  std::u16string formula = cut.first;
  for (const auto& [name, text] : cut.pieces) {
    const std::size_t place = formula.find(name);
    REQUIRE(place != std::u16string::npos);
    formula.replace(place, name.size(), text);
  }
  return formula;
}

bool IsBalanced(std::u16string_view formula) {
  int open = 0;
  for (const formula::Token& token : formula::Tokenize(formula.substr(1))) {
    open += token.kind == formula::TokenKind::kFunction || token.kind == formula::TokenKind::kOpen;
    open -= token.kind == formula::TokenKind::kClose;
    if (token.kind == formula::TokenKind::kInvalid || open < 0) return false;
  }
  return open == 0;
}

std::u16string Nested(int depth, int width) {
  if (depth == 0) return u"ROW('My data'!$A$1:$B$9)";
  std::u16string text = u"SUM(";
  for (int i = 0; i < width; ++i) text += (i == 0 ? u"" : u",") + Nested(depth - 1, width);
  return text + u")";
}

}  // namespace

TEST_CASE("a long formula comes together from pieces, each step a formula") {
  const std::u16string cases[] = {
      u"=1",
      u"=" + Nested(1, 30),
      u"=" + Nested(5, 3),
      u"=IF(A1>0," + Nested(3, 4) + u",{1,2;3,4})&\"a, (text\"&" + Nested(2, 9),
      u"=z_0_+z__0_+" + Nested(3, 4),
  };
  for (const std::u16string& formula : cases) {
    CAPTURE(Utf8FromUtf16(formula));
    const auto cut = InPieces(formula);
    REQUIRE(cut);
    CHECK(cut->first.size() <= kMostCharactersOfFirst);
    CHECK(IsBalanced(cut->first));
    for (const auto& piece : cut->pieces) {
      CHECK(piece.text.size() <= kMostCharactersOfPiece);
      CHECK(IsBalanced(u"=" + piece.text));
    }
    CHECK(PutTogether(*cut) == formula);
  }
}

TEST_CASE("what cannot be cut is said so") {
  CHECK_FALSE(InPieces(u"=\"" + std::u16string(300, u'x') + u"\""));
  CHECK_FALSE(InPieces(u"=SUM(\"" + std::u16string(300, u'x') + u"\")"));
  std::u16string sum = u"=1";
  for (int i = 0; i < 200; ++i) sum += u"+1";
  CHECK_FALSE(InPieces(sum));
}

}  // namespace zavrel::services
