// Items in a hidden sheet of a workbook that an emulated Excel has open.
#include "services/windows/hidden_storage.h"

#include <filesystem>

#include "services/windows/excel_books.h"

namespace zavrel::services::tests {

TEST_CASE("items are replaced as a whole, and nobody sees the sheet") {
  const OpenExcel excel;
  excel.range(u"B2").SetFormula(u"=1+1");
  excel.range(u"B2:C3").Select();
  const HiddenStorage storage(excel.book());
  CHECK(storage.ReadAll().empty());
  CHECK(excel.book().Worksheets().Count() == 1);  // reading adds nothing
  StoredItems expected;
  for (int round = 0; round < 12; ++round) {
    const std::u16string name =
        u"item " + std::u16string(1, static_cast<char16_t>(u'a' + round % 5));
    StoredItem item = round % 3 == 0
                          ? StoredItem(std::u16string(std::size_t(1) << (2 * round % 15), u'é'))
                      : round % 3 == 1 ? StoredItem(DoubleMatrix(40, {1.5 * round, -2}))
                                       : StoredItem(1.0 * round);
    expected.insert_or_assign(name, item);
    storage.Store(name, std::move(item));
    REQUIRE(storage.ReadAll() == expected);
  }
  CHECK(storage.Remove(u"item b"));
  CHECK_FALSE(storage.Remove(u"item b"));
  CHECK_FALSE(storage.Read(u"item b"));
  CHECK(storage.Read(u"item c") == expected[u"item c"]);
  CHECK(excel.book().Worksheets().Find(HiddenStorage::kSheetName)->Visible() ==
        MsExcel::Visibility::kVeryHidden);
  CHECK(excel.sheet().Name() == u"Sheet1");
  CHECK(excel.application().SelectedCells()->Address() == u"$B$2:$C$3");
  CHECK(excel.application().CalculationMode() == MsExcel::Calculation::kAutomatic);
  CHECK(excel.application().ScreenUpdating());
  CHECK_THROWS_AS(storage.Store(u"large", Bytes(kMostItemBytes + 1)), VekParameterError);
  storage.Store(u"large", Bytes(kMostItemBytes, std::byte{1}));
  CHECK(storage.Read(u"large") == StoredItem(Bytes(kMostItemBytes, std::byte{1})));
}

TEST_CASE("whatever call into Excel fails, the old items or the new ones are there") {
  const OpenExcel excel;
  const HiddenStorage storage(excel.book());
  const auto add = [&] { storage.Store(u"first", u"text"); };
  SUBCASE("while the sheet is added") {
    const std::size_t calls = FailEveryCall(excel.session.faults(), add, [&](bool failed) {
      const bool stored = storage.ReadAll().size() == 1;
      CHECK(stored == !failed);
      if (stored) {
        excel.application().SetDisplayAlerts(false);
        const auto sheet = excel.book().Worksheets().Find(HiddenStorage::kSheetName);
        sheet->SetVisible(MsExcel::Visibility::kVisible);
        sheet->Delete();
        excel.application().SetDisplayAlerts(true);
      }
      CHECK(excel.book().Worksheets().Count() == 1);
    });
    CHECK(calls > 30);
  }
  SUBCASE("while they are replaced") {
    add();
    storage.Store(u"second", 1.0);
    double next = 2;
    const std::size_t calls = FailEveryCall(
        excel.session.faults(), [&] { storage.Store(u"second", next); },
        [&](bool failed) {
          CHECK(storage.Read(u"first") == StoredItem(u"text"));
          const auto second = storage.Read(u"second");
          CHECK((second == StoredItem(next) || (failed && second == StoredItem(next - 1))));
          storage.Store(u"second", next++);
        });
    CHECK(calls > 30);
  }
}

TEST_CASE("a damaged sheet, and somebody else's, is reported and left alone") {
  const OpenExcel excel;
  const HiddenStorage storage(excel.book());
  const auto refuses = [&] {
    const std::string before = excel.Contents();
    CHECK_THROWS_AS(storage.ReadAll(), VekDataStoredInWorkbookInvalid);
    CHECK_THROWS_AS(storage.Store(u"b", 2.0), VekDataStoredInWorkbookInvalid);
    CHECK_THROWS_AS(storage.Remove(u"a"), VekDataStoredInWorkbookInvalid);
    CHECK(excel.Contents() == before);
  };
  SUBCASE("somebody else's") {
    const MsExcel::Worksheets sheets = excel.book().Worksheets();
    const MsExcel::Worksheet own = sheets.AddAfter(sheets.At(1));
    own.Rename(HiddenStorage::kSheetName);
    own.Range(u"B5").SetFormula(u"mine");
    refuses();
  }
  SUBCASE("damaged") {
    storage.Store(u"a", u"text");
    const auto sheet = excel.book().Worksheets().Find(HiddenStorage::kSheetName);
    for (const char16_t* address : {u"A1", u"A2"}) {
      const MsExcel::Block whole = sheet->Range(address).Values();
      for (const char16_t* damage : {u"", u"0", u"'00ff", u"#N/A", u"ZavrelData 9 2 1 0"}) {
        CAPTURE(Utf8FromUtf16(damage));
        sheet->Range(address).SetFormula(damage);
        refuses();
      }
      sheet->Range(address).SetValues(whole);
      CHECK(storage.Read(u"a") == StoredItem(u"text"));
    }
  }
}

TEST_CASE("items go with the workbook: saved, copied, reopened") {
  OpenExcel excel;
  HiddenStorage(excel.book()).Store(u"a", DoubleMatrix{{1, 2}, {3, 1.01e300}});
  HiddenStorage(excel.book()).Store(u"b", u"Größe, 'quoted' and = signs");
  const StoredItems stored = HiddenStorage(excel.book()).ReadAll();
  const std::filesystem::path copy = std::filesystem::temp_directory_path() / "zavrel-copy.xlsx";
  std::filesystem::remove(copy);
  excel.book().SaveCopyAs(Utf16FromPath(copy));
  excel.session.Open(copy);
  CHECK(excel.book().Name() == u"zavrel-copy.xlsx");
  CHECK(HiddenStorage(excel.book()).ReadAll() == stored);
  CHECK(excel.book().Worksheets().Find(HiddenStorage::kSheetName)->Visible() ==
        MsExcel::Visibility::kVeryHidden);
}

TEST_CASE("a protected structure is said so") {
  const OpenExcel excel;
  const HiddenStorage storage(excel.book());
  excel.book().Protect(u"secret");
  CHECK_THROWS_AS(storage.Store(u"a", 1.0), VekCantAddWorksheet);
  excel.book().Unprotect(u"secret");
  storage.Store(u"a", 1.0);
  excel.book().Protect(u"secret");
  storage.Store(u"a", 2.0);  // only the first item needs a sheet
  CHECK(storage.Read(u"a") == StoredItem(2.0));
}

}  // namespace zavrel::services::tests
