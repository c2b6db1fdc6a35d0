// Tables and pivot tables.
#include "automation/windows/late_bound.h"

namespace zavhost::tests {

TEST_CASE("a table takes its headings and has its parts") {
  const TestSession excel;
  excel.range(u"B2:D4").Put(
      u"Value2", Block({{u"Dose", Variant(), u"Dose"}, {1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}}));
  const LateBound tables = excel.sheet().At(u"ListObjects");
  const LateBound table =
      tables.At(u"Add", {1, Variant(excel.range(u"B2:D4")), Variant::Missing(), 1});
  CHECK(table(u"Name") == "\"Table1\"");
  CHECK(excel.range(u"B2:D2")(u"Value2") == "\"Dose\",\"Column1\",\"Dose2\";");
  CHECK(table.At(u"Range")(u"Address") == "\"$B$2:$D$4\"");
  CHECK(table.At(u"HeaderRowRange")(u"Address") == "\"$B$2:$D$2\"");
  CHECK(table.At(u"DataBodyRange")(u"Address") == "\"$B$3:$D$4\"");
  const LateBound columns = table.At(u"ListColumns");
  CHECK(columns(u"Count") == "3");
  CHECK(columns.At(u"Item", {u"DOSE2"})(u"Index") == "3");
  CHECK(columns.At(u"Item", {3}).At(u"DataBodyRange")(u"Address") == "\"$D$3:$D$4\"");
  CHECK(columns.Fails(u"Item", {4}) == "8002000B Invalid index.");
  excel.range(u"F1").Put(u"Formula", u"=SUM(Table1[Dose2])");
  CHECK(excel.range(u"F1")(u"Value2") == "9");
  table.Put(u"Name", u"Doses");
  CHECK(excel.sheet().At(u"ListObjects", {u"doses"})(u"Name") == "\"Doses\"");
  CHECK(table.PutFails(u"Name", u"two words") ==
        "800A03EC Unable to set the Name property of the ListObject class");
  CHECK(tables.Fails(u"Add", {1, Variant(excel.range(u"A1:B2"))}) ==
        "800A03EC Add method of ListObjects class failed");
}

TEST_CASE("a planted pivot table has its ranges") {
  TestSession excel;
  excel.session.PlantPivotTable(u"Sheet1", u"PivotTable1", "A3:C6", "B4:C6");
  const LateBound table = excel.sheet().At(u"PivotTables").At(u"Item", {1});
  CHECK(table(u"Name") == "\"PivotTable1\"");
  CHECK(table.At(u"TableRange1")(u"Address") == "\"$A$3:$C$6\"");
  CHECK(table.At(u"DataBodyRange")(u"Address") == "\"$B$4:$C$6\"");
  CHECK(table(u"RefreshTable") == "TRUE");
  CHECK(excel.sheet().Fails(u"PivotTables", {u"none"}) ==
        "800A03EC PivotTables method of Worksheet class failed");
}

TEST_CASE("pages are set up") {
  const TestSession excel;
  const LateBound page = excel.sheet().At(u"PageSetup");
  page.Put(u"PrintArea", u"$A$1:$C$9");
  CHECK(page(u"PrintArea") == "\"$A$1:$C$9\"");
  CHECK(page.PutFails(u"PrintArea", u"nowhere").starts_with("800A03EC"));
  page.Put(u"Zoom", false);
  page.Put(u"FitToPagesTall", false);
  CHECK(page(u"Zoom") == "FALSE");
  CHECK(page(u"FitToPagesTall") == "FALSE");
  CHECK(page(u"FitToPagesWide") == "1");
  CHECK(page.PutFails(u"Zoom", 5) ==
        "800A03EC Unable to set the Zoom property of the PageSetup class");
}

}  // namespace zavhost::tests
