// Protection that is lifted and put back, in an emulated Excel.
#include "services/windows/lifted_protection.h"

#include "services/windows/excel_books.h"

namespace zavrel::services::tests {
TEST_CASE("exactly what was protected and allowed is put back, also after a failure") {
  const OpenExcel excel;
  const MsExcel::Worksheet sheet = excel.sheet();
  // Each option alone, and some together.
  for (unsigned set :
       {0x7FFFu, 0x0001u, 0x0002u, 0x0004u, 0x0009u, 0x0011u, 0x0021u, 0x0041u, 0x0081u, 0x0101u,
        0x0201u, 0x0401u, 0x0801u, 0x1001u, 0x2001u, 0x4001u, 0x2A55u}) {
    CAPTURE(set);
    const auto is_set = [set](unsigned option) { return (set >> option & 1) != 0; };
    MsExcel::SheetProtection protection{is_set(1), is_set(0), is_set(2), is_set(3)};
    for (unsigned i = 0; i < protection.allowed.size(); ++i) protection.allowed[i] = is_set(4 + i);
    sheet.Protect(u"secret", protection);
    REQUIRE(sheet.CurrentProtection() == protection);
    try {
      const LiftedProtection lifted(sheet, u"secret");
      sheet.Range(u"A1").SetFormula(u"=1");
      throw 1;
    } catch (int) {
    }
    CHECK(sheet.CurrentProtection() == protection);
    CHECK_THROWS_AS(LiftedProtection(sheet, u"wrong"), VekExcelWorksheetProtected);
    CHECK(sheet.CurrentProtection() == protection);
    sheet.Unprotect(u"secret");
  }
  { const LiftedProtection nothing(sheet, u"any"); }
  CHECK_FALSE(sheet.CurrentProtection().is_protected());
}

}  // namespace zavrel::services::tests
