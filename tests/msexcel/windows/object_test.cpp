// The wrappers over Excel's objects: how calls fail, wait and answer, in an emulated Excel.
#include "msexcel/windows/object.h"

#include <doctest/doctest.h>

#include "diagnostics/vek_exception.h"
#include "host/automation/windows/excel_session.h"
#include "msexcel/windows/application.h"
#include "msexcel/windows/workbook.h"
#include "platform/utf.h"

namespace MsExcel::tests {
namespace {

using zavrel::Utf8FromUtf16;

struct OpenExcel {
  OpenExcel() { session.AddWorkbook(); }
  ~OpenExcel() { CHECK(session.live_objects() == 0); }
  OpenExcel(const OpenExcel&) = delete;
  OpenExcel& operator=(const OpenExcel&) = delete;

  Application application() const { return Application(Object(session.application())); }
  Worksheet sheet() const { return *application().ActiveSheet(); }
  zavhost::Faults& faults() const { return session.faults(); }

  zavhost::ExcelSession session;
};

/// What a failed call says: the member, and Excel's own words.
template <class Call>
std::string FailureOf(Call call) {
  try {
    call();
  } catch (const zavrel::VekExcelCallFailed& failure) {
    return Utf8FromUtf16(std::get<std::u16string>(failure.arguments()[0])) + ": " +
           Utf8FromUtf16(std::get<std::u16string>(failure.arguments()[1]));
  }
  return "none";
}

/// A wrapper of a member that no object has.
class Unknown : public ObjectOf<Unknown> {
 public:
  static constexpr std::string_view kName = "Range";
  using ObjectOf::ObjectOf;
  long Depth() const { return Get<"Depth">().Integer(); }
};

}  // namespace

TEST_CASE("a failed call names the member and gives Excel's words, or its number") {
  const OpenExcel excel;
  const Range cell = excel.sheet().Range(u"B2");
  CHECK(FailureOf([&] { cell.SetFormula(u"=SUM("); }) ==
        "Range.Formula: Unable to set the Formula property of the Range class");
  excel.faults().FailMember(u"Range.Row", 1, {.status = E_ACCESSDENIED, .text = u""});
  CHECK(FailureOf([&] { (void)cell.Row(); }) == "Range.Row: 0x80070005");
  CHECK(FailureOf([] { (void)Range().Row(); }) == "Range.Row: there is no object");
  CHECK_THROWS_AS((void)Unknown(cell).Depth(), zavrel::VekExcelUnsupportedMethodCall);
}

TEST_CASE("an answer of another type than awaited is a failure") {
  const OpenExcel excel;
  const Range cell = excel.sheet().Range(u"B2");
  const auto answers = [&](const char16_t* member, zavhost::Variant value) {
    excel.faults().FailMember(member, 1, {.status = S_OK, .text = u"", .value = std::move(value)});
  };
  answers(u"Range.Row", u"text");
  CHECK(FailureOf([&] { (void)cell.Row(); }) == "Range.Row: the answer has another type");
  answers(u"Range.Address", 7);
  CHECK(FailureOf([&] { (void)cell.Address(); }) == "Range.Address: the answer has another type");
  answers(u"Range.Worksheet", 7);
  CHECK(FailureOf([&] { (void)cell.ParentSheet(); }) ==
        "Range.Worksheet: the answer has another type");
}

TEST_CASE("a busy Excel is asked again for a moment, and no longer") {
  const OpenExcel excel;
  const Range cell = excel.sheet().Range(u"B2");
  for (const HRESULT busy :
       {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER, static_cast<HRESULT>(0x800AC472)}) {
    excel.faults().FailMember(u"Range.Row", 2, {.status = busy, .text = u""});
    CHECK(cell.Row() == 2);
  }
  excel.faults().FailMember(u"Range.Row", 1000, {.status = RPC_E_CALL_REJECTED, .text = u""});
  const std::size_t before = excel.faults().calls();
  CHECK_THROWS_AS((void)cell.Row(), zavrel::VekExcelBusy);
  CHECK(excel.faults().calls() - before < 50);
}

TEST_CASE("values of every kind go into cells and come back") {
  const OpenExcel excel;
  Block block(2, 3);
  block.values = {1.5, true, std::u16string(u"naïve"), std::monostate{}, ErrorValue{42}, 1e300};
  excel.sheet().Range(u"B2:D3").SetValues(block);
  const Block back = excel.sheet().Range(u"B2:D3").Values();
  CHECK((back.rows == 2 && back.columns == 3));
  CHECK(back.values == block.values);
  CHECK(excel.sheet().Range(u"C2").Values().values == std::vector<CellValue>{true});
  CHECK(excel.sheet().UsedRange().Address() == u"$B$2:$D$3");
}

TEST_CASE("the objects of a workbook by their numbers and names") {
  OpenExcel excel;
  const Workbook book = *excel.application().ActiveWorkbook();
  const Worksheets sheets = book.Worksheets();
  const Worksheet added = sheets.AddAfter(sheets.At(1));
  added.Rename(u"Größen");
  CHECK(sheets.Find(u"größen")->Name() == u"Größen");
  CHECK_FALSE(sheets.Find(u"none"));
  CHECK_THROWS_AS(added.Rename(u"a/b"), zavrel::VekCantRenameWorksheet);
  CHECK(added.Range(u"A1").Address(true) == u"[Book1]Größen!$A$1");

  const Name name = book.Names().Add(u"Sizes", u"=Größen!$B$2:$B$9", false);
  CHECK((name.RefersToRange().RowCount() == 8 && !name.Visible()));
  name.SetRefersTo(u"=1+1");
  CHECK(book.Names().Named(u"Sizes").RefersTo() == u"=1+1");
  name.Delete();
  CHECK(book.Names().Count() == 0);

  const Window window = *excel.application().ActiveWindow();
  added.Range(u"C3:D4").Select();
  CHECK(window.RangeSelection().Address() == u"$C$3:$D$4");
  CHECK(excel.application().OpenWindows().Count() == 1);

  added.Range(u"A1:B1").SetValues([] {
    Block headings(1, 2);
    headings.values = {u"x", u"y"};
    return headings;
  }());
  excel.session.PlantPivotTable(u"Größen", u"Pivot", "F3:H9", "G4:H9");
  CHECK(added.PivotTables().Named(u"Pivot").TableRange1().Address() == u"$F$3:$H$9");
  CHECK(added.PivotTables().At(1).DataBodyRange()->RowCount() == 6);
  CHECK(added.ListObjects().Count() == 0);
}

TEST_CASE("areas, arrays and merged cells of a range") {
  const OpenExcel excel;
  const Worksheet sheet = excel.sheet();
  const Range areas = sheet.Range(u"A1:B2,D4");
  CHECK((areas.AreaCount() == 2 && areas.CellCount() == 5));
  CHECK(areas.Areas()[1].Address() == u"$D$4");
  sheet.Range(u"F1:F3").SetArrayFormula(u"={1;2;3}");
  CHECK((sheet.Range(u"E1:F3").HasArray() && !sheet.Range(u"E1:E3").HasArray()));
  CHECK(sheet.Range(u"F2").CurrentArray().Address() == u"$F$1:$F$3");
  sheet.Range(u"H1:H2").Merge();
  CHECK((sheet.Range(u"G1:H3").HasMergedCells() && !sheet.Range(u"G1:G3").HasMergedCells()));
}

}  // namespace MsExcel::tests
