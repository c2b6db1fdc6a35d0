// Functions of dates in workbooks that count from 1904, and hostile texts.

#include <doctest/doctest.h>

#include <random>
#include <string>

#include "formula/sample_context.h"
#include "host/workbook/number_format.h"

namespace {

using namespace zavhost;

class Context1904 : public sample::Context {
 public:
  Context1904() : counted_(Context::workbook()) { counted_.date1904 = true; }
  const Workbook& workbook() const override { return counted_; }

 private:
  Workbook counted_;
};

TEST_CASE("functions of dates count from 1904 in such a workbook") {
  Context1904 context;
  for (const auto& [formula, shown] :
       std::initializer_list<std::pair<const char16_t*, const char*>>{
           {u"DATE(2024,3,5)", "43894"},
           {u"DATE(1904,1,1)", "0"},
           {u"DATE(1904,1,0)", "#NUM!"},
           {u"DATEVALUE(\"2024-03-05\")", "43894"},
           {u"DATEVALUE(\"1903-12-31\")", "#VALUE!"},
           {u"VALUE(\"2024-03-05 12:00\")", "43894.5"},
           {u"YEAR(0)&WEEKDAY(0)&TEXT(0,\" yyyy-mm-dd dddd [h]\")",
            "\"19046 1904-01-01 Friday 0\""},
           {u"YEAR(\"2024-03-05\")", "2024"},
           {u"EOMONTH(0,0)+EDATE(0,1)+DAYS(\"1904-01-11\",0)", "71"},
           {u"NETWORKDAYS(0,6,\"1904-01-04\")", "4"},
           {u"WORKDAY(0,-1)", "#NUM!"},
           {u"YEAR(2957003)&YEAR(2957004)", "#NUM!"}}) {
    CAPTURE(Utf8FromUtf16(formula));
    CHECK(context.Evaluate(formula) == shown);
  }
}

TEST_CASE("no format code and no text as a number does harm") {
  constexpr std::u16string_view kUnits = u"0#?.,%E+-/ymdhs[]<>=;@\"\\_*$:ab gG159(MarAM ";
  std::mt19937 random(1);
  const auto pick = [&random](std::size_t count) { return random() % count; };
  for (int i = 0; i < 5'000; ++i) {
    std::u16string text;
    const std::size_t length = pick(24);
    while (text.size() < length) text += kUnits[pick(kUnits.size())];
    for (const double number : {0.0, -1.5, 45356.98765, 1e308, 5e-324}) {
      const auto shown = FormattedText(number, text, pick(2) == 0);
      CHECK((!shown || shown->size() < 9000U));
    }
    const auto number = NumberFromText(text);
    CHECK((!number || std::isfinite(*number)));
  }
}

}  // namespace
