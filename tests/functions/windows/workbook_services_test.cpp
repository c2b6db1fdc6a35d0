// The entry points that work on an open workbook, in an emulated Excel.
#include <doctest/doctest.h>

#include "host/automation/windows/excel_session.h"
#include "msexcel/windows/application.h"
#include "msexcel/windows/workbook.h"
#include "platform/export.h"
#include "support/open_add_in.h"

namespace zavrel {
ZAV_EXPORT std::uint32_t ZavrelStoreInWorkbookVB(IDispatch*, BSTR, const VARIANT*);
ZAV_EXPORT std::uint32_t ZavrelReadFromWorkbookVB(IDispatch*, BSTR, VARIANT*);
ZAV_EXPORT std::uint32_t ZavrelRemoveFromWorkbookVB(IDispatch*, BSTR);
ZAV_EXPORT std::uint32_t ZavrelLiftProtectionVB(IDispatch*, BSTR, VARIANT*);
ZAV_EXPORT std::uint32_t ZavrelPutBackProtectionVB(std::int32_t);
ZAV_EXPORT std::uint32_t ZavrelWriteFormulasVB(const VARIANT*, SAFEARRAY**);
ZAV_EXPORT std::uint32_t ZavrelWriteArrayFormulaVB(const VARIANT*, BSTR);
ZAV_EXPORT std::uint32_t ZavrelRunAnalysisVB(const VARIANT*, BSTR, BSTR);
ZAV_EXPORT std::uint32_t ZavrelAskForAnalysisVB(IDispatch*, BSTR);
ZAV_EXPORT std::uint32_t ZavrelRepeatAnalysisVB(IDispatch*);
ZAV_EXPORT std::uint32_t ZavrelAnalysesMenuVB(BSTR*);
}  // namespace zavrel

namespace zavrel::tests {
namespace {

/// A text as a macro passes it by StrPtr.
class Text {
 public:
  explicit Text(std::u16string_view text) : text_(OwnedBstr::Wide(text).Release()) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

struct OpenBook {
  OpenBook() { session.AddWorkbook(); }
  MsExcel::Application application() const {
    return MsExcel::Application(MsExcel::Object(session.application()));
  }
  MsExcel::Workbook book() const { return *application().ActiveWorkbook(); }
  MsExcel::Worksheet sheet() const { return book().Worksheets().At(1); }
  MsExcel::Variant range(std::u16string_view address) const { return sheet().Range(address); }

  OpenAddIn add_in;  // failures have numbers while it is open
  zavhost::ExcelSession session;
};

std::u16string Held(const MsExcel::Variant& variant) {
  return variant.get().vt == VT_BSTR ? std::u16string(BstrView(variant.get().bstrVal)) : u"?";
}

}  // namespace

TEST_CASE("a macro keeps values of every kind in a workbook") {
  const OpenBook excel;
  const MsExcel::Workbook book = excel.book();
  const Text name(u"name");
  MsExcel::Variant read(1);
  CHECK(ZavrelReadFromWorkbookVB(book.get(), name, read.address()) == 0);
  CHECK(read.get().vt == VT_EMPTY);
  CHECK(ZavrelStoreInWorkbookVB(book.get(), name, MsExcel::Variant(u"text").address()) == 0);
  CHECK(ZavrelReadFromWorkbookVB(book.get(), name, read.address()) == 0);
  CHECK(Held(read) == u"text");

  MsExcel::Variant matrix;
  SAFEARRAYBOUND bounds[2] = {{2, 1}, {3, 1}};
  matrix.address()->parray = SafeArrayCreate(VT_R8, 2, bounds);
  matrix.address()->vt = VT_ARRAY | VT_R8;
  static_cast<double*>(matrix.get().parray->pvData)[5] = 2.5;
  MsExcel::Variant bytes;
  bytes.address()->parray = SafeArrayCreateVector(VT_UI1, 0, 3);
  bytes.address()->vt = VT_ARRAY | VT_UI1;
  static_cast<BYTE*>(bytes.get().parray->pvData)[2] = 7;
  for (const MsExcel::Variant* value : {&matrix, &bytes}) {
    CHECK(ZavrelStoreInWorkbookVB(book.get(), name, &value->get()) == 0);
    CHECK(ZavrelReadFromWorkbookVB(book.get(), name, read.address()) == 0);
    CHECK(read.get().vt == value->get().vt);
  }
  CHECK(static_cast<BYTE*>(read.get().parray->pvData)[2] == 7);

  CHECK(ZavrelRemoveFromWorkbookVB(book.get(), name) == 0);
  CHECK(ZavrelReadFromWorkbookVB(book.get(), name, read.address()) == 0);
  CHECK(read.get().vt == VT_EMPTY);
  CHECK(ZavrelStoreInWorkbookVB(book.get(), name, MsExcel::Variant(true).address()) != 0);
  CHECK(ZavrelStoreInWorkbookVB(book.get(), nullptr, MsExcel::Variant(1).address()) != 0);
  CHECK(ZavrelStoreInWorkbookVB(nullptr, name, MsExcel::Variant(1).address()) != 0);
  CHECK(ZavrelReadFromWorkbookVB(book.get(), name, nullptr) != 0);
}

TEST_CASE("a macro lifts a sheet's protection and puts it back") {
  const OpenBook excel;
  const MsExcel::Worksheet sheet = excel.sheet();
  sheet.Protect(u"secret");
  MsExcel::Variant number;
  CHECK(ZavrelLiftProtectionVB(sheet.get(), Text(u"wrong"), number.address()) != 0);
  CHECK(ZavrelLiftProtectionVB(sheet.get(), Text(u"secret"), nullptr) != 0);
  CHECK(sheet.CurrentProtection().is_protected());
  CHECK(ZavrelLiftProtectionVB(sheet.get(), Text(u"secret"), number.address()) == 0);
  CHECK_FALSE(sheet.CurrentProtection().is_protected());
  const auto lifted = static_cast<std::int32_t>(number.get().dblVal);
  CHECK(ZavrelPutBackProtectionVB(lifted) == 0);
  CHECK(sheet.CurrentProtection().is_protected());
  CHECK(ZavrelPutBackProtectionVB(lifted) != 0);
}

TEST_CASE("a macro writes blocks of formulas and long array formulas") {
  const OpenBook excel;
  const MsExcel::Variant range = excel.range(u"B2");
  MsExcel::Block block(2, 2);
  block.At(0, 0) = u"=1+1";
  block.At(1, 1) = u"text";
  MsExcel::Variant formulas(block);
  CHECK(ZavrelWriteFormulasVB(&range.get(), &formulas.address()->parray) == 0);
  CHECK(excel.sheet().Range(u"B2").Formula() == u"=1+1");
  CHECK(excel.sheet().Range(u"C3").Formula() == u"text");
  SAFEARRAY* nothing = nullptr;
  CHECK(ZavrelWriteFormulasVB(&range.get(), &nothing) != 0);
  CHECK(ZavrelWriteFormulasVB(nullptr, &formulas.address()->parray) != 0);
  std::u16string longest = u"=SUM(1";
  for (int i = 0; i < 30; ++i) longest += u",ROW($A$1)*1000";
  const MsExcel::Variant cells = excel.range(u"E1:E2");
  CHECK(ZavrelWriteArrayFormulaVB(&cells.get(), Text(longest + u")")) == 0);
  CHECK(excel.sheet().Range(u"E2").ArrayFormula() == longest + u")");
  CHECK(ZavrelWriteArrayFormulaVB(&cells.get(), Text(u"=SUM(")) != 0);
  CHECK(excel.sheet().Range(u"E2").ArrayFormula() == longest + u")");
}

TEST_CASE("a macro and the ribbon run analyses") {
  OpenBook excel;
  excel.sheet().Range(u"A1").SetFormula(u"x");
  excel.sheet().Range(u"A2:A9").SetFormula(u"=ROW()");
  const MsExcel::Variant data = excel.range(u"A1:A9");
  CHECK(ZavrelRunAnalysisVB(&data.get(), Text(u"percentiles"), nullptr) == 0);
  CHECK(ZavrelRepeatAnalysisVB(excel.book().get()) == 0);
  CHECK(ZavrelAskForAnalysisVB(excel.session.application(), Text(u"percentiles")) == 0);  // Cancel
  CHECK(excel.book().Worksheets().Count() == 4);  // with the hidden one
  CHECK(ZavrelRunAnalysisVB(&data.get(), Text(u"two-groups"), nullptr) != 0);
  CHECK(ZavrelRunAnalysisVB(&data.get(), nullptr, nullptr) != 0);
  BSTR menu = nullptr;
  CHECK(ZavrelAnalysesMenuVB(&menu) == 0);
  CHECK(BstrView(menu).find(u"tag=\"percentiles\" onAction=\"ZavrelAnalysisChosen\"") !=
        std::u16string_view::npos);
  SysFreeString(menu);
}

}  // namespace zavrel::tests
