#include "formula/lexer.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "host/workbook/value.h"

namespace {

using formula::Token;
using formula::Tokenize;
using formula::TokenKind;

struct Piece {
  std::string kind;
  std::u16string text;
};

std::vector<std::string> Shown(const std::vector<Piece>& pieces) {
  std::vector<std::string> shown;
  shown.reserve(pieces.size());
  for (const Piece& piece : pieces)
    shown.push_back(piece.kind + " " + zavhost::Utf8FromUtf16(piece.text));
  return shown;
}

bool IsBlankRun(std::u16string_view text) { return text[0] == u' ' || text[0] == u'\n'; }

std::string OracleKind(const Token& token) {
  static const char* const kinds[] = {
      "OPERAND-NUMBER", "OPERAND-TEXT",  "OPERAND-LOGICAL", "OPERAND-ERROR", "OPERAND-RANGE",
      "OPERAND-RANGE",  "OPERAND-RANGE", "FUNC-OPEN",       "PAREN-OPEN",    "CLOSE",
      "COMMA",          "OPERATOR",      "ARRAY-OPEN",      "ARRAY-CLOSE",   "SEP-ROW",
      "WHITE-SPACE",    "INVALID"};
  if (token.kind == TokenKind::kOperator && IsBlankRun(token.text)) return "WHITE-SPACE";
  return kinds[static_cast<std::size_t>(token.kind)];
}

// Our tokens as the oracle cuts them: it keeps only the first blank of a run, takes the
// intersection for plain white space, and holds ":" and "@" for parts of the operand next to them.
std::vector<Piece> AsOracle(std::u16string_view text) {
  std::vector<Piece> pieces;
  bool glue = false;
  for (const Token& token : Tokenize(text)) {
    std::string kind = OracleKind(token);
    std::u16string piece(token.text);
    const bool is_glue = kind == "OPERATOR" && (piece == u":" || piece == u"@");
    if (kind == "WHITE-SPACE") piece.resize(1);
    if (is_glue) kind = "OPERAND-RANGE";
    const bool joins_left =
        glue || (piece == u":" && !pieces.empty() && pieces.back().kind == kind);
    if (joins_left) {
      pieces.back().kind = kind;
      pieces.back().text += piece;
    } else {
      pieces.push_back({kind, piece});
    }
    glue = is_glue;
  }
  return pieces;
}

// The oracle tells prefix from infix, and closings and commas by what they belong to; we do not.
std::string OurKind(const std::string& kind, std::u16string_view text) {
  if (text == u",") return "COMMA";
  if (kind == "FUNC-CLOSE" || kind == "PAREN-CLOSE") return "CLOSE";
  if (kind.starts_with("OPERATOR-")) return "OPERATOR";
  return kind;
}

std::u16string Unescaped(std::string_view line) {
  std::u16string text = zavhost::Utf16FromUtf8(line);
  std::replace(text.begin(), text.end(), u'\u2424', u'\n');
  return text;
}

std::vector<TokenKind> Kinds(std::u16string_view text) {
  std::vector<TokenKind> kinds;
  for (const Token& token : Tokenize(text)) kinds.push_back(token.kind);
  return kinds;
}

TEST_CASE("tokens are the oracle's") {
  std::ifstream file(ZAVREL_TEST_DATA "/tokens.txt", std::ios::binary);
  REQUIRE(file);
  std::u16string formula;
  std::vector<Piece> expected;
  int formulas = 0;
  const auto compare = [&] {
    if (formula.empty()) return;
    ++formulas;
    CAPTURE(zavhost::Utf8FromUtf16(formula));
    CHECK(Shown(AsOracle(formula)) == Shown(expected));
    expected.clear();
  };
  for (std::string line; std::getline(file, line);) {
    if (line[0] == '=') {
      compare();
      formula = Unescaped(std::string_view(line).substr(1));
    } else {
      const std::size_t tab = line.find('\t');
      const std::u16string text = Unescaped(std::string_view(line).substr(tab + 1));
      expected.push_back({OurKind(line.substr(0, tab), text), text});
    }
  }
  compare();
  CHECK(formulas > 150);
}

TEST_CASE("tokens that the oracle cuts otherwise or refuses") {
  using enum TokenKind;
  const std::vector<std::pair<std::u16string, std::vector<TokenKind>>> cases = {
      {u"A1#", {kReference, kOperator}},
      {u"SUM(A1#)", {kFunction, kReference, kOperator, kClose}},
      {u"true", {kBoolean}},
      {u"#n/a", {kError}},
      {u"#SPILL!", {kError}},
      {u"Sheet1!#REF!", {kError}},
      {u"#REF!A1:B2+1", {kError, kOperator, kNumber}},
      {u"A1 : B2", {kReference, kWhiteSpace, kOperator, kWhiteSpace, kReference}},
      {u"A1  B2", {kReference, kOperator, kReference}},
      // Blanks between a function's name and its parenthesis.
      {u"SUM  (A1)", {kFunction, kReference, kClose}},
      {u"1+_xll.ZavMean\n(A1)", {kNumber, kOperator, kFunction, kReference, kClose}},
      {u"TRUE ()", {kFunction, kClose}},
      {u"A1:B2 sum (A1)", {kReference, kOperator, kFunction, kReference, kClose}},
      {u"A1 (A2)", {kReference, kOperator, kOpen, kReference, kClose}},
      {u"S!n (A2)", {kName, kOperator, kOpen, kReference, kClose}},
      {u"n\\ (A2)", {kName, kOperator, kOpen, kReference, kClose}},
      {u"n A2", {kName, kOperator, kReference}},
      {u"n ", {kName, kWhiteSpace}},
      {u"A1 1", {kReference, kWhiteSpace, kNumber}},
      {u"A1:Sheet2!B2", {kReference, kOperator, kReference}},
      {u"A1:B2!C3", {kReference, kOperator, kReference}},
      {u"[@Sales]*2", {kStructuredReference, kOperator, kNumber}},
      {u"T[a']b]+1", {kStructuredReference, kOperator, kNumber}},
      {u"1:2E5", {kNumber, kOperator, kNumber}},
      // Not readable: one invalid token, the rest goes on.
      {u"1!2", {kNumber, kInvalid, kNumber}},
      {u"\"open", {kInvalid}},
      {u"'Sheet'A1", {kInvalid, kReference}},
      {u"'open!A1", {kInvalid}},
      {u"T[open", {kInvalid}},
      {u"Sheet1!+1", {kInvalid, kOperator, kNumber}},
      {u"$+$A$1x", {kInvalid, kOperator, kInvalid, kName, kInvalid, kNumber, kName}},
      {u".", {kInvalid}},
      {u"\u00A0~", {kInvalid, kInvalid}},
  };
  for (const auto& [text, kinds] : cases) {
    CAPTURE(zavhost::Utf8FromUtf16(text));
    CHECK(Kinds(text) == kinds);
    std::u16string whole;
    for (const Token& token : Tokenize(text)) {
      CHECK(token.position == whole.size());
      whole += token.text;
    }
    CHECK(whole == text);
  }
}

}  // namespace
