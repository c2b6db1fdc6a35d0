#include "frame/formula_inspection.h"

#include <doctest/doctest.h>

#include "excel/wide_text.h"

namespace zavrel::tests {

TEST_CASE("the literal 16384 among the arguments of the library's functions") {
  for (const char16_t* formula :
       {u"=ZavMean(16384)", u"ZavMean(16384)", u"=zAvMeAn(A1, 16384)", u"=ZavMean((2+16384)*3)",
        u"=ZavMean(SUM(1,16384))", u"=SUM(1,ZavLn(-16384))", u"=ZavMean({1,16384})",
        u"=_xll.ZavMean(16384)", u"=ZavMean(\"a)\",16384)", u"=ZavMean(16384"}) {
    CHECK_MESSAGE(CorrectedXloper::Is16384InFormula(formula), Utf8FromUtf16(formula));
  }
  for (const char16_t* formula :
       {u"", u"=", u"=16384", u"=SUM(16384)", u"=ZavMean(1)+16384", u"=ZavMean(SUM(1))*16384",
        u"=ZavMean(\"16384\")", u"=ZavMean(A16384)", u"=ZavMean(16384:16384)", u"=ZavMean(116384)",
        u"=ZavMean(163840)", u"=ZavMean(16384.5)", u"=ZavMean(0.16384)", u"=SUM(ZavLn(2),16384)",
        u"=)))16384", u"=MyZav(16384)", u"=ZavMean('16384'!A1)"}) {
    CHECK_MESSAGE(!CorrectedXloper::Is16384InFormula(formula), Utf8FromUtf16(formula));
  }
}

}  // namespace zavrel::tests
