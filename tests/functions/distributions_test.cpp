// How a property of a distribution is selected, and what a macro gets.
#include <doctest/doctest.h>

#include <cmath>
#include <string>

#include "contracts/pdflib.h"
#include "functions/distribution_selector.h"
#include "functions/distributions.h"
#include "numbers/error_double.h"
#include "platform/export.h"
#include "support/open_add_in.h"

namespace zavrel {
ZAV_EXPORT std::int32_t ZavrelNormalVB(double, double, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelStudentVB(std::int32_t, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelChisqVB(std::int32_t, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelFVB(std::int32_t, std::int32_t, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelBinomialVB(std::int32_t, double, std::int32_t, double, double*);
}  // namespace zavrel

namespace zavrel::tests {

TEST_CASE("a selector is a word in any case and with any blanks, or a number") {
  for (const char16_t* text : {u"StDev", u"STDEV", u"stdev", u"  stdev", u"stdev\t\r\n",
                               u"s t D e v", u"2", u" 2", u"02", u"2.9", u"2nd"})
    CHECK(SelectorIndex(text) == 1);
  const std::pair<std::u16string_view, std::u16string_view> words[] = {
      {u"mean", u"1"}, {u"stdev", u"2"}, {u"var", u"3"},          {u"skew", u"4"},
      {u"kurt", u"5"}, {u"mode", u"6"},  {u"discretemean", u"7"}, {u"xtoy", u"8"},
      {u"xtop", u"9"}, {u"ptox", u"10"}, {u"xtoq", u"11"},        {u"qtox", u"12"}};
  for (std::int32_t i = 0; i < 12; ++i) {
    CHECK(SelectorIndex(words[i].first) == i);
    CHECK(SelectorIndex(words[i].second) == i);
  }
  for (const char16_t* text : {u"", u"0", u"abc", u"-1", u"+1", u"meanx", u"std\u00A0ev"})
    CHECK(SelectorIndex(text) == -1);
  for (const char16_t* text : {u"13", u"4294967298", u"99999999999999999999999"})
    CHECK(SelectorIndex(text) >= 12);
}

TEST_CASE("a macro gets a property and a status, and its place keeps what was there otherwise") {
  const OpenAddIn add_in;
  double value = 7;
  const auto near = [&](double expected) {
    return std::fabs(value - expected) <= 4e-16 * std::fabs(expected);
  };
  for (const std::int32_t selector : {-2147483647 - 1, -1, 12, 2147483647})
    CHECK(ZavrelNormalVB(0, 1, selector, 0, &value) == 1);
  CHECK(ZavrelNormalVB(0, 1, 8, kMissingValue, &value) == 1);
  CHECK(ZavrelNormalVB(0, 1, 0, 0, nullptr) == 1);
  CHECK(ZavrelStudentVB(0, 0, 0, &value) == 1);
  CHECK(ZavrelChisqVB(0, 0, 0, &value) == 1);
  CHECK(ZavrelNormalVB(0, -1, 0, 0, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(ZavrelFVB(-1, 3, 0, 0, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(ZavrelBinomialVB(-1, 0.5, 0, 0, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(value == 7);
  CHECK(ZavrelStudentVB(1, 2, 0, &value) == PDFLIB_NO_SUCH_MOMENT);
  CHECK(std::isnan(value));  // stored all the same

  // Parameters reach their distribution in order.
  CHECK(ZavrelFVB(2, 4, 8, 1, &value) == 0);
  CHECK(near(1 - 1 / 2.25));
  CHECK(ZavrelBinomialVB(4, 0.25, 8, 1, &value) == 0);
  CHECK(near(189.0 / 256));
  CHECK(ZavrelChisqVB(2, 10, 2, &value) == 0);
  CHECK(near(std::exp(-1)));
  CHECK(NormalProperty(0, 1, kCumulativeProbability, 0, &value) == 0);
  CHECK(value == 0.5);
  CHECK(NormalProperty(0, 1, kQuantile, 0.5, &value) == 0);
  CHECK(value == 0);
  CHECK(NormalProperty(0, 0, kQuantile, 0.5, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(value == 0);
}

}  // namespace zavrel::tests
