// A macro's strings and the translation of its formulas.
#include <doctest/doctest.h>

#include "platform/export.h"
#include "platform/windows/ole_owners.h"
#include "support/open_add_in.h"

namespace zavrel {
ZAV_EXPORT std::uint32_t ZavrelTranslateFormulaVB(BSTR, BSTR, BSTR, std::int32_t, BSTR*);
}

namespace zavrel::tests {

TEST_CASE("the translation replaces the macro's string, and a failure leaves it") {
  const OpenAddIn add_in;  // failures have numbers while it is open
  const auto text = [](const wchar_t* own) { return SysAllocString(own); };
  BSTR good = text(L"=SUM(\u0416,1.5)"), bad = text(L"=(1"), en = text(L"en"), de = text(L"de");
  BSTR translated = text(L"before");
  CHECK(ZavrelTranslateFormulaVB(good, en, de, 1, &translated) == 0);
  CHECK(BstrView(translated) == u"=SUMME(\u0416;1,5)");
  CHECK(ZavrelTranslateFormulaVB(bad, en, de, 1, &translated) != 0);
  CHECK(ZavrelTranslateFormulaVB(good, en, nullptr, 1, &translated) != 0);
  CHECK(ZavrelTranslateFormulaVB(good, en, de, 3, &translated) != 0);
  CHECK(ZavrelTranslateFormulaVB(good, en, de, 1, nullptr) != 0);
  CHECK(BstrView(translated) == u"=SUMME(\u0416;1,5)");
  CHECK(ZavrelTranslateFormulaVB(nullptr, en, de, 1, &translated) == 0);
  CHECK(SysStringLen(translated) == 0);
  for (const BSTR own : {good, bad, en, de, translated}) SysFreeString(own);
}

}  // namespace zavrel::tests
