// Names and windows.
#include "automation/windows/late_bound.h"

namespace zavhost::tests {

TEST_CASE("names refer to cells, formulas and constants") {
  const TestSession excel;
  excel.range(u"A1:A2").Put(u"Value2", Block({{3.0}, {4.0}}));
  const LateBound names = excel.book().At(u"Names");
  const LateBound data = names.At(u"Add", {u"Data", u"=Sheet1!$A$1:$A$2", false});
  CHECK(data(u"Visible") == "FALSE");
  CHECK(data.At(u"RefersToRange")(u"Address") == "\"$A$1:$A$2\"");
  excel.range(u"B1").Put(u"Formula", u"=SUM(data)");
  CHECK(excel.range(u"B1")(u"Value2") == "7");
  CHECK(excel.application().At(u"Range", {u"DATA"})(u"Count") == "2");
  // The same name again refers to something else, and formulas follow.
  names.Get(u"Add", {u"DATA", Variant(excel.range(u"A2"))});
  CHECK(names(u"Count") == "1");
  CHECK(data(u"RefersTo") == "\"=Sheet1!$A$2\"");
  CHECK(excel.range(u"B1")(u"Value2") == "4");
  data.Put(u"RefersTo", u"a \"text\"");
  CHECK(data(u"RefersTo") == "\"=\"a \"\"text\"\"\"\"");
  CHECK(data.Fails(u"RefersToRange") ==
        "800A03EC Unable to get the RefersToRange property of the Name class");
  for (const char16_t* name : {u"A1", u"1x", u"two words", u""})
    CHECK(names.Fails(u"Add", {name, u"=1"}) == "800A03EC Add method of Names class failed");
  CHECK(names.Fails(u"Add", {u"Bad", u"=SUM("}).starts_with("800A03EC"));
  data.Get(u"Delete");
  CHECK(data.Fails(u"RefersTo") == "800401A8");
  CHECK(names.Fails(u"Item", {u"Data"}).starts_with("800A03EC"));
  CHECK(excel.range(u"B1")(u"Value2") == "#2029");
}

TEST_CASE("a sheet's own names go before the workbook's") {
  const TestSession excel;
  const LateBound sheet = excel.sheet(), names = sheet.At(u"Names");
  excel.book().At(u"Names").Get(u"Add", {u"Step", u"=1"});
  CHECK(names.At(u"Add", {u"Step", u"=2"})(u"Name") == "\"Sheet1!Step\"");
  CHECK(excel.book().At(u"Names")(u"Count") == "2");
  CHECK(names(u"Count") == "1");
  excel.range(u"A1").Put(u"Formula", u"=Step");
  CHECK(excel.range(u"A1")(u"Value2") == "2");
  CHECK(excel.book().At(u"Names", {u"Sheet1!Step"})(u"RefersTo") == "\"=2\"");
  const LateBound other = excel.book().At(u"Worksheets").At(u"Add");
  other.At(u"Range", {u"A1"}).Put(u"Formula", u"=Step");
  CHECK(other.At(u"Range", {u"A1"})(u"Value2") == "1");
}

TEST_CASE("a window shows the active sheet") {
  const TestSession excel;
  const LateBound window = excel.application().At(u"ActiveWindow");
  excel.range(u"C5:D6").Get(u"Select");
  CHECK(window.At(u"RangeSelection")(u"Address") == "\"$C$5:$D$6\"");
  window.Put(u"FreezePanes", true);
  CHECK(window(u"SplitRow") == "4");
  CHECK(window(u"SplitColumn") == "2");
  window.Put(u"FreezePanes", false);
  CHECK(window(u"SplitRow") == "0");
  window.Put(u"Zoom", 75);
  CHECK(window.PutFails(u"Zoom", 5) ==
        "800A03EC Unable to set the Zoom property of the Window class");
  CHECK(window.PutFails(u"ScrollRow", 0).starts_with("800A03EC"));
  excel.book().At(u"Worksheets").Get(u"Add");
  CHECK(window(u"Zoom") == "100");
  window.Put(u"Visible", false);
  CHECK(excel.application()(u"ActiveWindow") == "nothing");
  CHECK(excel.book().At(u"Windows", {1})(u"Caption") == "\"Book1\"");
}

}  // namespace zavhost::tests
