// Ranges: values, formulas, places and formats.
#include "automation/windows/late_bound.h"

namespace zavhost::tests {

TEST_CASE("values go in and out as cells have them") {
  const TestSession excel;
  const LateBound block = excel.range(u"B2:D3");
  block.Put(u"Value2", Block({{1.5, u"text", true},
                              {Variant(), u"12", Variant::Error(static_cast<SCODE>(0x800A07FA))}}));
  CHECK(block(u"Value2") == "1.5,\"text\",TRUE;empty,12,#2042;");
  LONG first = 0;
  const Variant read = block.Get(u"Value2");
  REQUIRE(SafeArrayGetLBound(read.get().parray, 2, &first) == S_OK);
  CHECK(first == 1);
  // A single cell gives no array. A block that is too small leaves #N/A, a single row repeats.
  CHECK(excel.range(u"B2")(u"Value2") == "1.5");
  block.Put(u"Value2", Block({{1.0, 2.0}}));
  CHECK(block(u"Value2") == "1,2,#2042;1,2,#2042;");
  block.Put(u"Value2", 7.0);
  CHECK(excel.sheet()(u"UsedRange") == "object");
  CHECK(excel.sheet().At(u"UsedRange")(u"Address") == "\"$B$2:$D$3\"");
  CHECK(block.PutFails(u"Value2", Variant(excel.book())) == "80020005");

  const LateBound date = excel.range(u"A1");
  date.Put(u"Value", Variant::Date(45000));
  CHECK(date(u"Value") == "date 45000");
  CHECK(date(u"Value2") == "45000");
  date.Put(u"NumberFormat", u"@");
  date.Put(u"Value2", u"=1+1");
  CHECK(date(u"Value2") == "\"=1+1\"");
}

TEST_CASE("formulas are checked, moved and calculated") {
  const TestSession excel;
  excel.range(u"A1:A3").Put(u"Value2", Block({{1.0}, {2.0}, {3.0}}));
  const LateBound beside = excel.range(u"B1:B3");
  beside.Put(u"Formula", u"=A1*10+$A$1");
  CHECK(beside(u"Value2") == "11;21;31;");
  CHECK(beside(u"Formula") == "\"=A1*10+$A$1\";\"=A2*10+$A$1\";\"=A3*10+$A$1\";");
  CHECK(excel.range(u"A1:A2")(u"Formula") == "\"1\";\"2\";");
  CHECK(excel.range(u"A1:B1")(u"HasFormula") == "null");
  CHECK(beside(u"HasFormula") == "TRUE");
  const char* const refused = "800A03EC Unable to set the Formula property of the Range class";
  CHECK(beside.PutFails(u"Formula", u"=SUM(") == refused);
  CHECK(beside.PutFails(u"Formula", u"=Nowhere!A1") == refused);
  CHECK(beside(u"Value2") == "11;21;31;");
  // A function that nobody has, one that depends on it, and a value in place of a formula.
  excel.range(u"C1").Put(u"Formula", u"=ZavMean(A1:A3)");
  excel.range(u"C2").Put(u"Formula", u"=C1+1");
  CHECK(excel.range(u"C1:C2")(u"Value2") == "#2029;#2029;");
  excel.range(u"C1").Put(u"Value2", 4.0);
  CHECK(excel.range(u"C1:C2")(u"Value2") == "4;5;");

  excel.application().Put(u"Calculation", -4135);
  excel.range(u"A1").Put(u"Value2", 5.0);
  CHECK(beside(u"Value2") == "11;21;31;");
  excel.application().Get(u"Calculate");
  CHECK(beside(u"Value2") == "55;25;35;");
}

TEST_CASE("arrays are whole") {
  const TestSession excel;
  excel.range(u"A1:A3").Put(u"Value2", Block({{1.0}, {2.0}, {3.0}}));
  const LateBound array = excel.range(u"C1:C3");
  array.Put(u"FormulaArray", u"=A1:A3*2");
  CHECK(array(u"Value2") == "2;4;6;");
  CHECK(array(u"FormulaArray") == "\"=A1:A3*2\"");
  CHECK(excel.range(u"C2")(u"HasArray") == "TRUE");
  CHECK(excel.range(u"C2").At(u"CurrentArray")(u"Address") == "\"$C$1:$C$3\"");
  CHECK(excel.range(u"C1:D1")(u"HasArray") == "null");
  const LateBound part = excel.range(u"C2");
  CHECK(part.PutFails(u"Value2", 1.0) == "800A03EC You can't change part of an array.");
  CHECK(part.Fails(u"ClearContents") == "800A03EC You can't change part of an array.");
  // A text that is too long goes in as a placeholder, which Replace puts right.
  std::u16string longer = u"=A1:A3";
  while (longer.size() <= 255) longer += u"+0*A1:A3";
  CHECK(array.PutFails(u"FormulaArray", std::u16string_view(longer)) ==
        "800A03EC Unable to set the FormulaArray property of the Range class");
  array.Put(u"FormulaArray", u"=99+0");
  CHECK(array(u"Replace", {u"99+0", std::u16string_view(longer).substr(1), 2}) == "TRUE");
  CHECK(array(u"Value2") == "1;2;3;");
  CHECK(array(u"FormulaArray").size() == longer.size() + 2);
  array.Get(u"ClearContents");
  CHECK(array(u"Value2") == "empty;empty;empty;");

  // A dynamic array spills, is blocked, and spills again.
  excel.range(u"E1").Put(u"Formula2", u"=A1:A3+1");
  CHECK(excel.range(u"E1:E3")(u"Value2") == "2;3;4;");
  excel.range(u"E2").Put(u"Value2", u"in the way");
  CHECK(excel.range(u"E1:E3")(u"Value2") == "#2045;\"in the way\";empty;");
  excel.range(u"E2").Get(u"ClearContents");
  CHECK(excel.range(u"E1:E3")(u"Value2") == "2;3;4;");
}

TEST_CASE("places and other ranges") {
  const TestSession excel;
  const LateBound range = excel.range(u"C3:E5");
  CHECK(range(u"Address", {false, true}) == "\"$C3:$E5\"");
  CHECK(range(u"Address", {Variant::Missing(), Variant::Missing(), -4150}) == "\"R3C3:R5C5\"");
  CHECK(range.Named(u"Address", {{u"External", true}}) == "\"[Book1]Sheet1!$C$3:$E$5\"");
  CHECK(range(u"Count") == "9");
  CHECK(range.At(u"Rows")(u"Count") == "3");
  CHECK(range.At(u"Columns", {2})(u"Address") == "\"$D$3:$D$5\"");
  CHECK(range.At(u"Item", {4})(u"Address") == "\"$C$4\"");
  CHECK(range.At(u"Cells", {2, 2})(u"Address") == "\"$D$4\"");
  CHECK(range.At(u"Offset", {-2, 1})(u"Address") == "\"$D$1:$F$3\"");
  CHECK(range.Fails(u"Offset", {-3}) ==
        "800A03EC Unable to get the Offset property of the Range class");
  CHECK(range.Fails(u"Offset", {2147483647, -2147483647 - 1}).starts_with("800A03EC"));
  CHECK(range.At(u"Resize", {1, 2})(u"Address") == "\"$C$3:$D$3\"");
  CHECK(range.At(u"EntireColumn")(u"Address") == "\"$C:$E\"");
  CHECK(range.At(u"EntireRow")(u"Address") == "\"$3:$5\"");
  const LateBound two = excel.range(u"A1:A2,C5");
  CHECK(two.At(u"Areas")(u"Count") == "2");
  CHECK(two.At(u"Areas", {2})(u"Address") == "\"$C$5\"");
  CHECK(two(u"Count") == "3");
  CHECK(excel.sheet().At(u"Range", {Variant(range), Variant(excel.range(u"A1"))})(u"Address") ==
        "\"$A$1:$E$5\"");
  CHECK(excel.sheet()(u"Rows") == "object");
  CHECK(excel.sheet().At(u"Cells")(u"CountLarge") == "17179869184");
  CHECK(excel.sheet().At(u"Cells").Fails(u"Count").starts_with("800A03EC"));
  CHECK(excel.sheet().Fails(u"Range", {u"A0"}) ==
        "800A03EC Unable to get the Range property of the Worksheet class");
  range.Put(u"Value2", 1.0);
  CHECK(excel.range(u"D4").At(u"CurrentRegion")(u"Address") == "\"$C$3:$E$5\"");
}

TEST_CASE("formats are those of all cells, or null") {
  const TestSession excel;
  const LateBound range = excel.range(u"A1:B2");
  range.Put(u"NumberFormat", u"0.00");
  CHECK(range(u"NumberFormat") == "\"0.00\"");
  excel.range(u"A1").Put(u"Value2", 2.0);
  CHECK(excel.range(u"A1")(u"Text") == "\"2.00\"");
  CHECK(excel.range(u"A1:C2")(u"NumberFormat") == "null");
  CHECK(range.PutFails(u"NumberFormat", u"[") ==
        "800A03EC Unable to set the NumberFormat property of the Range class");
  range.At(u"Font").Put(u"Bold", true);
  CHECK(range.At(u"Font")(u"Bold") == "TRUE");
  CHECK(excel.range(u"A2:A3").At(u"Font")(u"Bold") == "null");
  const LateBound fill = range.At(u"Interior");
  fill.Put(u"Color", 255);
  CHECK(fill(u"Pattern") == "1");
  fill.Put(u"Pattern", -4142);
  CHECK(fill(u"Color") == "16777215");
  // Whole columns, and cells and rows within them.
  excel.range(u"2:2").At(u"Font").Put(u"Italic", true);
  excel.range(u"B:C").Put(u"HorizontalAlignment", -4108);
  CHECK(excel.range(u"B1:C100")(u"HorizontalAlignment") == "-4108");
  CHECK(excel.range(u"B:C")(u"HorizontalAlignment") == "-4108");
  CHECK(excel.range(u"A:C")(u"HorizontalAlignment") == "null");
  CHECK(excel.range(u"C2").At(u"Font")(u"Italic") == "TRUE");

  CHECK(excel.range(u"A1")(u"Width") == "48");
  excel.range(u"A:A").Put(u"ColumnWidth", 20.0);
  CHECK(excel.range(u"B1")(u"Left") == "108.75");
  CHECK(excel.range(u"A1:B1")(u"ColumnWidth") == "null");
  excel.range(u"A:A").Put(u"Hidden", true);
  CHECK(excel.range(u"B1")(u"Left") == "0");
  CHECK(excel.range(u"A:B")(u"Hidden") == "null");
  CHECK(excel.range(u"A1").PutFails(u"Hidden", true).starts_with("800A03EC"));
  CHECK(excel.range(u"A1").Fails(u"AutoFit") == "800A03EC AutoFit method of Range class failed");
  CHECK(excel.range(u"B1:B2").At(u"Columns")(u"AutoFit") == "TRUE");

  excel.range(u"D1:E2").Get(u"Merge");
  CHECK(excel.range(u"E2")(u"MergeCells") == "TRUE");
  CHECK(excel.range(u"E2:E3")(u"MergeCells") == "null");
  CHECK(excel.range(u"E2").At(u"MergeArea")(u"Address") == "\"$D$1:$E$2\"");
}

}  // namespace zavhost::tests
