// References from texts, and the texts of formulas, in a workbook with names, a table and formulas.

#include <doctest/doctest.h>

#include <optional>
#include <string>

#include "formula/sample_context.h"
#include "host/formula/wildcards.h"

namespace {

using zavhost::CellAddress;

class WithFormulas : public sample::Context {
 public:
  std::optional<std::u16string> FormulaText(const CellAddress& cell) const override {
    if (cell.column == 1) return u"A1+" + std::u16string(1, static_cast<char16_t>(u'1' + cell.row));
    if (cell.column == 2) return std::u16string(8192, u'1');
    return std::nullopt;
  }
};

TEST_CASE("texts of formulas") {
  WithFormulas context;
  CHECK(context.Evaluate(u"FORMULATEXT(B1:B2)") == "\"=A1+1\"");
  CHECK(context.Evaluate(u"FORMULATEXT(A1:B2)", true) == "{#N/A,\"=A1+1\";#N/A,\"=A1+2\"}");
  CHECK(context.Evaluate(u"FORMULATEXT(C1)") == "#N/A");
  CHECK(context.Evaluate(u"ISFORMULA(A1:B1)", true) == "{FALSE,TRUE}");
}

TEST_CASE("INDIRECT takes names and tables") {
  sample::Context context;
  context.DefineName(u"Total", u"Sheet1!$B$2:$C$2");
  context.DefineName(u"Left", u"Sheet1!XFD1");  // relative to A1: the cell on the left
  context.DefineName(u"Computed", u"OFFSET(Sheet1!$A$1,0,0)");
  context.DefineName(u"Other", u"Total");
  context.DefineName(u"Broken", u"1+");
  context.DefineTable({u"Costs", 0, {0, 0, 3, 2}, 1, 0, {u"Item", u"Price", u"Tax"}});
  CHECK(context.Evaluate(u"SUM(INDIRECT(\"total\"))") == "11");
  CHECK(context.Evaluate(u"SUM(INDIRECT(\"total\",FALSE))") == "11");
  CHECK(context.Evaluate(u"COLUMN(INDIRECT(\"Left\"))") == "9");
  CHECK(context.Evaluate(u"SUM(INDIRECT(\"Costs\"))") == "72");
  CHECK(context.Evaluate(u"SUM(INDIRECT(\"Costs[Price]\"))") == "24");
  CHECK(context.Evaluate(u"SUM(INDIRECT(\"Costs[[#All],[Price]:[Tax]]\",FALSE))") == "56");
  for (const char16_t* name : {u"Computed", u"Other", u"Broken", u"Nothing", u"Costs[Nothing]"}) {
    CAPTURE(zavhost::Utf8FromUtf16(name));
    CHECK(context.Evaluate(u"INDIRECT(\"" + std::u16string(name) + u"\")") == "#REF!");
  }
}

TEST_CASE("patterns end at Excel's limit, and many stars take no time") {
  sample::Context context;
  const auto wildcard = [&context](const std::u16string& pattern, const std::u16string& function) {
    return context.Evaluate(function + u"(\"" + pattern + u"\",E1:E4,0)");
  };
  CHECK(wildcard(std::u16string(254, u'*') + u"x", u"MATCH") == "1");
  CHECK(wildcard(std::u16string(256, u'*'), u"MATCH") == "#VALUE!");
  CHECK(context.Evaluate(u"COUNTIF(E1:E4,\"" + std::u16string(256, u'*') + u"\")") == "#VALUE!");

  std::u16string stars;
  while (stars.size() < 254) stars += u"a*";
  const zavhost::WildcardPattern pattern(stars + u"b");
  CHECK_FALSE(pattern.Matches(std::u16string(32'767, u'A')));
  CHECK(pattern.Matches(std::u16string(32'767, u'A') + u"B"));
  CHECK(zavhost::WildcardPattern(std::u16string(255, u'?')).Matches(std::u16string(255, u'x')));
  CHECK(zavhost::WildcardPattern(u"É~?").Matches(u"é?"));
  CHECK_FALSE(zavhost::WildcardPattern(u"É~?").Matches(u"éx"));
}

}  // namespace
