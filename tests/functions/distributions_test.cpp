// The distributions: what a cell shows and what a macro gets.
#include <doctest/doctest.h>

#include <cmath>
#include <string>

#include "contracts/pdflib.h"
#include "functions/distribution_selector.h"
#include "functions/distributions.h"
#include "functions/open_add_in.h"
#include "numbers/error_double.h"
#include "platform/export.h"

namespace zavrel {
ZAV_EXPORT XLOPER12* ZavrelNormal(const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                  const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelStudent(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelChisq(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelF(const XLOPER12*, const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelBinomial(const XLOPER12*, const XLOPER12*, const XLOPER12*,
                                    const XLOPER12*);
ZAV_EXPORT std::int32_t ZavrelNormalVB(double, double, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelStudentVB(std::int32_t, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelChisqVB(std::int32_t, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelFVB(std::int32_t, std::int32_t, std::int32_t, double, double*);
ZAV_EXPORT std::int32_t ZavrelBinomialVB(std::int32_t, double, std::int32_t, double, double*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

const XLOPER12& Normal(const Cell& selector, const Cell& x = {}) {
  return *ZavrelNormal(Argument(Cell(10.0)), Argument(Cell(2.0)), Argument(selector), Argument(x));
}
const XLOPER12& Student(double df, const Cell& selector, const Cell& x = {}) {
  return *ZavrelStudent(Argument(Cell(df)), Argument(selector), Argument(x));
}

bool Near(double value, double expected) {
  return std::fabs(value - expected) <= 4e-16 * std::fabs(expected);
}

}  // namespace

TEST_CASE("a selector is a word in any case and with any blanks, or a number") {
  for (const char16_t* text : {u"StDev", u"STDEV", u"stdev", u"  stdev", u"stdev\t\r\n",
                               u"s t D e v", u"2", u" 2", u"02", u"2.9", u"2nd"}) {
    CHECK(SelectorIndex(text) == 1);
  }
  const std::u16string_view words[] = {u"mean", u"stdev", u"var",          u"skew",
                                       u"kurt", u"mode",  u"discretemean", u"xtoy",
                                       u"xtop", u"ptox",  u"xtoq",         u"qtox"};
  for (std::int32_t i = 0; i < 12; ++i) {
    CHECK(SelectorIndex(words[i]) == i);
    CHECK(SelectorIndex(i < 9
                            ? std::u16string(1, static_cast<char16_t>(u'1' + i))
                            : u"1" + std::u16string(1, static_cast<char16_t>(u'1' + i - 10))) == i);
  }
  for (const char16_t* text : {u"", u"0", u"abc", u"-1", u"+1", u"meanx", u"std\u00A0ev"})
    CHECK(SelectorIndex(text) == -1);
  for (const char16_t* text : {u"13", u"4294967298", u"99999999999999999999999"})
    CHECK(SelectorIndex(text) >= 12);
}

TEST_CASE("arguments that are no parameters, selectors or values") {
  OpenAddIn add_in;
  const Argument one(Cell(1.0)), mean(Cell(u"Mean"));
  CHECK(Error(*ZavrelNormal(nullptr, one, mean, nullptr)) == xlerrValue);
  CHECK(Error(*ZavrelNormal(Argument(Cell(u"x")), one, mean, nullptr)) == xlerrValue);
  CHECK(Error(*ZavrelNormal(one, one, nullptr, nullptr)) == xlerrValue);
  CHECK(Error(*ZavrelStudent(Argument(Cell(1e10)), mean, nullptr)) == xlerrValue);
  CHECK(Error(Normal(u"xtop", u"text")) == xlerrValue);
  for (const char16_t* selector : {u"", u"0", u"abc", u"13"})
    CHECK(Error(Normal(selector, 1.0)) == xlerrNum);
  for (const char16_t* selector : {u"xtoy", u"xtop", u"ptox", u"xtoq", u"qtox"}) {
    CHECK(Error(Normal(selector)) == xlerrNum);
    CHECK(Error(Normal(selector, kMissingValue)) == xlerrNum);
  }
  double value = 7;
  for (const std::int32_t selector : {-2147483647 - 1, -1, 12, 2147483647})
    CHECK(ZavrelNormalVB(0, 1, selector, 0, &value) == 1);
  CHECK(ZavrelNormalVB(0, 1, 8, kMissingValue, &value) == 1);
  CHECK(ZavrelNormalVB(0, 1, 0, 0, nullptr) == 1);
  CHECK(ZavrelStudentVB(0, 0, 0, &value) == 1);
  CHECK(ZavrelChisqVB(0, 0, 0, &value) == 1);
  CHECK(value == 7);
}

TEST_CASE("every property of a normal distribution") {
  OpenAddIn add_in;
  const double moments[] = {10, 2, 4, 0, 3, 10};
  for (int i = 0; i < 6; ++i)
    CHECK(Number(Normal(std::u16string(1, static_cast<char16_t>(u'1' + i)))) == moments[i]);
  CHECK(Error(Normal(u"DiscreteMean")) == xlerrNum);
  CHECK(Number(Normal(u"mean", 5.0)) == 10);
  CHECK(Near(Number(Normal(u"xtoy", 14.0)), 0.02699548325659403));
  CHECK(Near(Number(Normal(u"xtop", 14.0)), 0.9772498680518208));
  CHECK(Near(Number(Normal(u"xtoq", 14.0)), 0.022750131948179207));
  CHECK(Near(Number(Normal(u"ptox", 0.025)), 10 - 2 * 1.959963984540054));
  CHECK(Near(Number(Normal(u"qtox", 0.025)), 10 + 2 * 1.959963984540054));
  CHECK(Number(Normal(u"xtop", true)) == Number(Normal(u"xtop", 1.0)));
  CHECK(Error(Normal(u"ptox", 1.0)) == xlerrNum);
  CHECK(Error(Normal(u"ptox", -0.1)) == xlerrNum);

  double value = 0;
  CHECK(NormalProperty(0, 1, kCumulativeProbability, 0, &value) == 0);
  CHECK(value == 0.5);
  CHECK(NormalProperty(0, 1, kQuantile, 0.5, &value) == 0);
  CHECK(value == 0);
  CHECK(NormalProperty(0, 0, kQuantile, 0.5, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(value == 0);
}

TEST_CASE("parameters reach their distribution in order") {
  OpenAddIn add_in;
  const Argument two(Cell(2.9)), four(Cell(4.0)), xtop(Cell(u"xtop")), one(Cell(1.0));
  CHECK(Near(Number(Student(2, u"xtop", std::sqrt(2))), 0.5 + 0.25 * std::sqrt(2)));
  CHECK(Near(Number(*ZavrelChisq(two, xtop, one)), -std::expm1(-0.5)));  // whole degrees: 2
  CHECK(Near(Number(*ZavrelF(two, four, xtop, one)), 1 - 1 / 2.25));
  CHECK(Near(Number(*ZavrelF(four, two, xtop, one)), 4.0 / 9));
  CHECK(Near(Number(*ZavrelBinomial(four, Argument(Cell(0.25)), xtop, one)), 189.0 / 256));
  CHECK(
      Near(Number(*ZavrelBinomial(four, Argument(Cell(0.25)), Argument(Cell(u"1")), nullptr)), 1));
  double value = 0;
  CHECK(ZavrelFVB(2, 4, 8, 1, &value) == 0);
  CHECK(Near(value, 1 - 1 / 2.25));
  CHECK(ZavrelBinomialVB(4, 0.25, 8, 1, &value) == 0);
  CHECK(Near(value, 189.0 / 256));
  CHECK(ZavrelChisqVB(2, 10, 2, &value) == 0);
  CHECK(Near(value, std::exp(-1)));
}

TEST_CASE("moments that do not exist and refused parameters") {
  OpenAddIn add_in;
  for (const char16_t* selector : {u"Mean", u"StDev", u"Var", u"Skew", u"Kurt", u"DiscreteMean"})
    CHECK(Error(Student(1, selector)) == xlerrNum);
  CHECK(Number(Student(1, u"Mode")) == 0);
  CHECK(Number(Student(4, u"Var")) == 2);
  CHECK(Error(Student(0, u"Mode")) == xlerrNum);
  CHECK(Error(*ZavrelNormal(Argument(Cell(0.0)), Argument(Cell(0.0)), Argument(Cell(u"Mean")),
                            nullptr)) == xlerrNum);
  CHECK(Error(*ZavrelF(Argument(Cell(0.0)), Argument(Cell(3.0)), Argument(Cell(u"Mode")),
                       nullptr)) == xlerrNum);

  double value = 7;
  CHECK(ZavrelStudentVB(1, 2, 0, &value) == PDFLIB_NO_SUCH_MOMENT);
  CHECK(std::isnan(value));  // stored all the same
  value = 7;
  CHECK(ZavrelNormalVB(0, -1, 0, 0, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(ZavrelFVB(-1, 3, 0, 0, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(ZavrelBinomialVB(-1, 0.5, 0, 0, &value) == PDFLIB_OUTSIDE_DOMAIN);
  CHECK(value == 7);
}

}  // namespace zavrel::tests
