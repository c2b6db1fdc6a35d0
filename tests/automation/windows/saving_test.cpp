// Workbooks written as files and opened again.
#include "automation/windows/late_bound.h"

#include <filesystem>

#include "host/xlsx/file_io.h"
#include "host/xlsx/package.h"

namespace zavhost::tests {
namespace {

/// A folder that goes in the end.
class Folder {
 public:
  Folder() : path_(std::filesystem::temp_directory_path() / "zavrel-automation-test") {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::u16string operator/(const char* name) const { return zavrel::Utf16FromPath(path_ / name); }

 private:
  std::filesystem::path path_;
};

Variant TextOf(const std::u16string& text) { return std::u16string_view(text); }

std::string PartOf(const std::u16string& file, std::string_view part) {
  ZipArchive archive(ReadFile(file, 1 << 24), {});
  return archive.Read(part);
}

bool Contains(const std::string& text, std::string_view wanted) {
  return text.find(wanted) != std::string::npos;
}

void FillBook(const TestSession& excel) {
  excel.range(u"A1:A3").Put(u"Value2", Block({{1.0}, {2.0}, {u"<text>"}}));
  excel.range(u"B1").Put(u"Formula", u"=STDEV.S(A1:A2)+Limit");
  excel.book().At(u"Names").Get(u"Add", {u"Limit", u"=10", false});
  excel.range(u"C1:C2").Put(u"FormulaArray", u"=A1:A2*2");
  excel.range(u"D1").Put(u"Formula2", u"=A1:A2+5");
  excel.range(u"A1").Put(u"NumberFormat", u"0.00");
  excel.range(u"A1:B1").At(u"Font").Put(u"Bold", true);
  excel.range(u"B:B").Put(u"ColumnWidth", 30.0);
  excel.range(u"E1:F2").Get(u"Merge");
  const LateBound chart =
      excel.sheet().At(u"ChartObjects").At(u"Add", {60.0, 80.0, 300.0, 200.0}).At(u"Chart");
  chart.Put(u"ChartType", -4169);
  chart.Put(u"HasTitle", true);
  chart.At(u"ChartTitle").Put(u"Text", u"Title & more");
  const LateBound series = chart.At(u"SeriesCollection").At(u"NewSeries");
  series.Put(u"XValues", Variant(excel.range(u"C1:C2")));
  series.Put(u"Values", Variant(excel.range(u"A1:A2")));
  series.Put(u"MarkerStyle", 8);
}

}  // namespace

TEST_CASE("a saved workbook opens with what it had") {
  const Folder folder;
  const std::u16string file = folder / "book.xlsx";
  {
    const TestSession excel;
    FillBook(excel);
    CHECK(excel.book().Fails(u"Save") == "800A03EC Save method of Workbook class failed");
    excel.book().Get(u"SaveAs", {TextOf(file)});
    CHECK(excel.book()(u"Name") == "\"book.xlsx\"");
    CHECK(excel.book()(u"Saved") == "TRUE");
    excel.range(u"A2").Put(u"Value2", 4.0);
    CHECK(excel.book()(u"Saved") == "FALSE");
    excel.book().Get(u"Save");
    // Nobody says that the file may be replaced.
    CHECK(excel.book().Fails(u"SaveAs", {TextOf(file)}).starts_with("800A03EC"));
    excel.application().Put(u"DisplayAlerts", false);
    excel.book().Get(u"SaveAs", {TextOf(file), 51});
    CHECK(excel.book()
              .Fails(u"SaveCopyAs", {TextOf(folder / "no such folder/book.xlsx")})
              .starts_with("800A03EC"));
  }
  TestSession excel;
  const LateBound book = excel.application().At(u"Workbooks").At(u"Open", {TextOf(file)});
  CHECK(book(u"FullName") == "\"" + Utf8FromUtf16(file) + "\"");
  CHECK(excel.range(u"A1:A3")(u"Value2") == "1;4;\"<text>\";");
  CHECK(excel.range(u"B1")(u"Formula") == "\"=STDEV.S(A1:A2)+Limit\"");
  CHECK(excel.range(u"B1")(u"Value2").starts_with("12.1213203435596"));
  CHECK(excel.range(u"C1").At(u"CurrentArray")(u"Address") == "\"$C$1:$C$2\"");
  CHECK(excel.range(u"D1:D2")(u"Value2") == "6;9;");
  CHECK(book.At(u"Names").At(u"Item", {u"Limit"})(u"Visible") == "FALSE");
  const std::string chart = PartOf(file, "xl/charts/chart1.xml");
  CHECK(Contains(chart, "Title &amp; more"));
  CHECK(Contains(chart, "<c:f>Sheet1!$A$1:$A$2</c:f>"));
  CHECK(Contains(chart, "scatterChart"));
  const std::string sheet = PartOf(file, "xl/worksheets/sheet1.xml");
  CHECK(Contains(sheet, "_xlfn.STDEV.S("));
  CHECK(Contains(sheet, "<mergeCell ref=\"E1:F2\"/>"));
  CHECK(Contains(sheet, "customWidth=\"1\""));
  CHECK(Contains(PartOf(file, "xl/styles.xml"), "<b/>"));
}

TEST_CASE("hidden sheets and protection survive in files") {
  const Folder folder;
  const std::u16string file = folder / "protected.xlsx";
  {
    const TestSession excel;
    const LateBound sheets = excel.book().At(u"Worksheets"), first = excel.sheet();
    const LateBound store = sheets.At(u"Add"), hidden = sheets.At(u"Add");
    store.Put(u"Name", u"Store & more");
    store.Put(u"Visible", 2);
    hidden.Put(u"Visible", 0);
    store.Get(u"Protect", {u"secret", true, true, false});
    first.Get(u"Protect", {Variant::Missing(), true, true, true, false, true});
    first.At(u"Range", {u"A1"});
    excel.book().Get(u"Protect", {u"key"});
    excel.book().Get(u"SaveCopyAs", {TextOf(file)});
    CHECK(excel.book()(u"Path") == "\"\"");
  }
  const TestSession excel;
  const LateBound book = excel.application().At(u"Workbooks").At(u"Open", {TextOf(file)});
  const LateBound sheets = book.At(u"Worksheets"), store = sheets.At(u"Item", {u"Store & more"});
  CHECK(store(u"Visible") == "2");
  CHECK(sheets.At(u"Item", {u"Sheet3"})(u"Visible") == "0");
  CHECK(excel.sheet()(u"Name") == "\"Sheet1\"");
  CHECK(excel.sheet()(u"ProtectContents") == "TRUE");
  CHECK(excel.sheet().At(u"Protection")(u"AllowFormattingCells") == "TRUE");
  CHECK(excel.sheet().At(u"Protection")(u"AllowSorting") == "FALSE");
  CHECK(store(u"ProtectScenarios") == "FALSE");
  CHECK(book.Fails(u"Unprotect", {u"kez"}).starts_with("800A03EC"));
  CHECK(store.Fails(u"Unprotect").starts_with("800A03EC"));
  book.Get(u"Unprotect", {u"key"});
  store.Get(u"Unprotect", {u"secret"});
  excel.sheet().Get(u"Unprotect");
  store.Put(u"Visible", -1);
}

TEST_CASE("what is no workbook is refused in words") {
  const Folder folder;
  const std::u16string file = folder / "none.xlsx";
  WriteFile(file, "no workbook");
  const TestSession excel;
  const LateBound books = excel.application().At(u"Workbooks");
  CHECK(books.Fails(u"Open", {TextOf(file)}).starts_with("800A03EC "));
  CHECK(books.Fails(u"Open", {TextOf(folder / "missing.xlsx")}).starts_with("800A03EC "));
  CHECK(books(u"Count") == "1");
}

}  // namespace zavhost::tests
