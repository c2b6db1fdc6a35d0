// Formulas that nobody would write but a file can hold: each ends in a value or a FormulaError.

#include <doctest/doctest.h>

#include <chrono>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "formula/lexer.h"
#include "formula/sample_context.h"
#include "host/formula/evaluate.h"
#include "support/workbooks.h"

namespace {

using sample::Context;

std::u16string Repeated(std::u16string_view part, std::size_t count) {
  std::u16string text;
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

TEST_CASE("limits") {
  Context context;
  const auto nested = [](std::u16string_view open, std::size_t depth) {
    return Repeated(open, depth) + u"1" + Repeated(u")", depth);
  };
  CHECK(context.Evaluate(nested(u"(", 64)) == "1");
  CHECK(context.Evaluate(nested(u"ABS(", 64)) == "1");
  CHECK(context.Evaluate(nested(u"(", 65)) == "error: nested more than 64 levels deep");
  CHECK(context.Evaluate(nested(u"ABS(", 65)) == "error: nested more than 64 levels deep");
  CHECK(context.Evaluate(Repeated(u"(", 8192)) == "error: nested more than 64 levels deep");
  CHECK(context.Evaluate(Repeated(u"-", 8191) + u"1") == "-1");
  CHECK(context.Evaluate(Repeated(u"-", 8192)) == "error: the formula is not complete");
  CHECK(context.Evaluate(Repeated(u"1+", 4095) + u"1") == "4096");
  CHECK(context.Evaluate(u"1" + Repeated(u"%", 8191)) == "0");
  CHECK(context.Evaluate(Repeated(u"1", 8193)) == "error: longer than 8,192 characters");
  CHECK(context.Evaluate(u"SUM(1" + Repeated(u",1", 254) + u")") == "255");
  CHECK(context.Evaluate(u"SUM(1" + Repeated(u",1", 255) + u")") ==
        "error: more than 255 arguments");
  CHECK(context.Evaluate(u"1E999") == "error: the number is too large");
}

TEST_CASE("what is no formula says what is wrong and where") {
  const std::vector<std::tuple<std::u16string, std::string, std::size_t>> cases = {
      {u"", "the formula is not complete", 0},
      {u"1+", "the formula is not complete", 2},
      {u"1 2", "\"2\" is unexpected here", 2},
      {u"SUM(1", "the formula is not complete", 5},
      {u"SUM(1))", "\")\" is unexpected here", 6},
      {u"()", "\")\" is unexpected here", 1},
      {u"1+~", "\"~\" is unexpected here", 2},
      {u"\"open", "\"\"open\" is unexpected here", 0},
      {u"{1,2;3}", "the rows of an array constant differ in length", 0},
      {u"{}", "\"}\" is unexpected here", 1},
      {u"{A1}", "\"A1\" is unexpected here", 1},
      {u"{-TRUE}", "\"TRUE\" is unexpected here", 2},
      {u"{1", "the formula is not complete", 2},
      {u"f(1;2)", "\";\" is unexpected here", 3}};
  for (const auto& [text, message, position] : cases) {
    CAPTURE(zavhost::Utf8FromUtf16(text));
    try {
      zavhost::ParseFormula(text);
      FAIL("parsed");
    } catch (const zavhost::FormulaError& error) {
      CHECK(error.what() == message);
      CHECK(error.position() == position);
    }
  }
}

TEST_CASE("growth is bounded") {
  Context context;
  // Each name uses the next twice: 2^40 evaluations if they were made.
  for (const std::string start : {"n_", "r_"}) {
    for (int i = 0; i < 40; ++i) {
      const std::string next = start + std::to_string(i + 1);
      context.DefineName(zavhost::Utf16FromUtf8(start + std::to_string(i)),
                         zavhost::Utf16FromUtf8(next + "+" + next));
    }
  }
  context.DefineName(u"n_40", u"1");
  CHECK(context.Evaluate(u"n_0") == "1099511627776");
  // What chance is in is drawn each time.
  context.DefineName(u"r_40", u"RAND()");
  CHECK(context.Evaluate(u"r_38+n_0*0") == "1");
  CHECK(context.Evaluate(u"r_0").ends_with("expands to too long a formula"));
  // A chain of names, far longer than anything that nests.
  for (int i = 0; i < 5000; ++i) {
    context.DefineName(zavhost::Utf16FromUtf8("chain_" + std::to_string(i)),
                       zavhost::Utf16FromUtf8("chain_" + std::to_string(i + 1)));
  }
  CHECK(context.Evaluate(u"chain_0") == "error: calls and names are nested too deeply");
  const auto chain = zavhost::ParseFormula(u"chain_0");
  CHECK(zavhost::ReferencesOf(*chain, {}, {}, context.workbook()).empty());
  // Unions whose intersection would have 800^3 areas, and a text that doubles.
  const std::u16string many = u"(A1" + Repeated(u",A1", 800) + u")";
  CHECK(context.Evaluate(u"SUM(" + many + u" " + many + u" " + many + u")") == "#VALUE!");
  context.DefineName(u"long", u"\"" + Repeated(u"x", 8000) + u"\"");
  CHECK(context.Evaluate(u"LEN(long&long&long&long)") == "32000");
  CHECK(context.Evaluate(u"long&long&long&long&long") == "#VALUE!");
  // 20 million new characters in 2,500 elements are too many; the same text 2,500 times is one.
  CHECK(context.Evaluate(u"SUM(LEN(ROW(1:2500)&long))", true) == "#VALUE!");
  CHECK(context.Evaluate(u"SUM(LEN(CONCATENATE(ROW(1:2500),long)))", true) == "#VALUE!");
  CHECK(context.Evaluate(u"SUM(LEN(IF(ROW(1:2500)>0,long)))", true) == "20000000");
}

std::u16string Mutated(std::mt19937& random, std::u16string text) {
  static const std::vector<std::u16string> pieces = [] {
    std::vector<std::u16string> all{u" ", u"\xD800", std::u16string(1, u'\0')};
    for (const std::string& piece : zavhost::tests::CasesIn(R"(
             (|)|,|;|{|}|[|]|"|'|!|:|#|@|%|-|^|$|A1|A:A|1E|3:|.|\|#REF!|IF(|INDEX(|ROW(|EchoA(|EchoS(
             {1,2}|~|Twice|&|'Other sheet'!)"))
      all.push_back(zavhost::Utf16FromUtf8(piece));
    return all;
  }();
  const auto below = [&random](std::size_t n) {
    return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
  };
  for (std::size_t edits = 1 + below(4); edits > 0; --edits) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t kind = below(3);
    if (kind == 0) text.insert(at, pieces[below(std::size(pieces))]);
    if (kind == 1) text.erase(at, 1 + below(3));
    if (kind == 2 && !text.empty()) text += text.substr(below(text.size()), below(12));
  }
  return text;
}

TEST_CASE("mutated formulas neither crash nor lose a token") {
  Context context;
  context.DefineName(u"Twice", u"Sheet1!A1:A3*2");
  const std::u16string seeds[] = {
      u"IF(A1>2,SUM(A1:C4 B:B),\"x\"\"y\")&-2^2%",
      u"INDEX((A1:B2,C3),1,{1,2},1):'Other sheet'!$A$1+[1]S!A1",
      u"EchoR((A1,B1),,Twice,@A1:A3,A1#)*{1,-2;\"a\",#N/A}",
      u"TRANSPOSE(ROW(A1:A9))+EchoS({1;2},A1:C1)<=Table1[[#All],[a]:[b]]"};
  std::mt19937 random(20240517);
  int evaluated = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::u16string text = Mutated(random, seeds[random() % std::size(seeds)]);
    CAPTURE(zavhost::Utf8FromUtf16(text));
    std::u16string whole;
    for (const auto& token : formula::Tokenize(text)) whole += token.text;
    REQUIRE(whole == text);
    const std::string result = context.Evaluate(text, round % 2 == 0);
    if (!result.starts_with("error: ")) ++evaluated;
  }
  CHECK(evaluated > 1000);
}

TEST_CASE("lexing and parsing take linear time") {
  const auto seconds = [](const std::u16string& text) {
    const auto start = std::chrono::steady_clock::now();
    formula::Tokenize(text);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  // Quadratic time would be minutes here.
  for (const std::u16string_view part : {u"[", u"'", u"\"", u"a:", u"a![", u"''!", u"#", u"$",
                                         u"1:", u"A1:", u"T[", u"'a'", u"[a]"}) {
    CAPTURE(zavhost::Utf8FromUtf16(part));
    CHECK(seconds(Repeated(part, 400'000)) < 5.0);
  }
}

}  // namespace
