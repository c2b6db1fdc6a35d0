#include "data/category_table.h"

#include <doctest/doctest.h>

#include <string>

#include "data/data_argument.h"
#include "platform/utf.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

std::shared_ptr<ExcelData> DataOf(const XLOPER12* piece) { return *ReadDataArgument({&piece, 1}); }

/// The sorted names, each followed by its positions: "North 0 3;South 2;".
std::string Shown(const CategoryTable* table) {
  REQUIRE(table != nullptr);
  std::string shown;
  for (const std::u16string_view name : table->SortedNames()) {
    const Category* category = table->Find(name);
    REQUIRE(category != nullptr);
    CHECK(category->name == name);
    shown += Utf8FromUtf16(name);
    for (const std::int32_t position : category->positions) shown += ' ' + std::to_string(position);
    shown += ';';
  }
  return shown;
}

std::string CategoriesOf(const std::vector<Cell>& cells) {
  const Argument array(static_cast<std::int32_t>(cells.size()), 1, cells);
  return Shown(DataOf(array)->Categories());
}

}  // namespace

TEST_CASE("cells with the same cleaned name but for letter case are one category") {
  const FakeExcel excel;
  const ErrorCell na{xlerrNA};
  CHECK(CategoriesOf({u"North", u"north ", Cell(), na, u"South", u"\u00A0NORTH\r\n"}) ==
        "North 0 1 5;South 4;");
  CHECK(CategoriesOf({u"a\nb", u"A b", u"a\r\nb", u"a  B"}) == "a  b 2 3;a b 0 1;");
  CHECK(CategoriesOf({u"été", u"ÉTÉ", u"Straße", u"STRASSE", u"straße", u"\U00010400x",
                      u"\U00010428X"}) == "STRASSE 3;Straße 2 4;été 0 1;\U00010400x 5 6;");
  CHECK(CategoriesOf({u"", u" \t", Cell(), na}).empty());
  // By code units: capitals first, and a surrogate before the last ones of the basic plane.
  CHECK(CategoriesOf({u"\uFF21", u"\U0001F600", u"alpha", u"Zeta", u"alp"}) ==
        "Zeta 3;alp 4;alpha 2;\U0001F600 1;\uFF21 0;");
}

TEST_CASE("numbers and booleans are categories by the host's text for them") {
  FakeExcel excel;
  excel.texts_of_numbers = {{10, u"10"}, {9, u"9"}, {0.5, u"0,5"}};
  CHECK(CategoriesOf({10.0, 9.0, 0.5, 10.0, u"10", u" 9", true, u"wahr", false}) ==
        "0,5 2;10 0 3 4;9 1 5;FALSCH 8;WAHR 6 7;");
  CHECK(CategoriesOf({7.0, 10.0}) == "10 1;");  // the host has no text for 7
  // Each number is asked for once, and the table is built once.
  excel.conversions = 0;
  const Argument many(400, 1, std::vector<Cell>(400, Cell(9.0)));
  CHECK(DataOf(many)->Categories()->size() == 1);
  CHECK(DataOf(many)->Categories()->categories()[0].positions.size() == 400);
  CHECK(excel.conversions == 1);
}

TEST_CASE("while the host wants the call to end there is no table, and then there is") {
  FakeExcel excel;
  excel.texts_of_numbers = {{1, u"1"}};
  excel.SetColumn(0, 0, {u"a", 1.0, true});
  const Reference range(Area(0, 2, 0, 0));
  for (const int code : {xlretUncalced, xlretAbort}) {
    excel.text_code = code;
    CHECK(DataOf(range)->Categories() == nullptr);
  }
  excel.text_code = xlretSuccess;
  CHECK(Shown(DataOf(range)->Categories()) == "1 1;WAHR 2;a 0;");
  excel.Set(1, 0, u"A");
  CHECK(Shown(DataOf(range)->Categories()) == "WAHR 2;a 0 1;");
}

TEST_CASE("whatever is asked for, a name is found by what it stands for") {
  const FakeExcel excel;
  const Argument array(1, 3, {u"Île de\nFrance", u"x", u"île de France"});
  const std::shared_ptr<ExcelData> data = DataOf(array);
  const CategoryTable& table = *data->Categories();
  REQUIRE(table.Find(u"\tÎLE DE\rFRANCE ") != nullptr);
  CHECK(table.Find(u"\tÎLE DE\rFRANCE ")->name == u"Île de France");
  CHECK(table.Find(u"île  de France") == nullptr);
  CHECK(table.Find(u"") == nullptr);
  CHECK(table.Find(std::u16string(100'000, u'x')) == nullptr);
}

TEST_CASE("the cache counts what was worked out from the latest data sets") {
  FakeExcel excel;
  std::vector<Cell> cells(5000);
  for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = Utf16FromUtf8(std::to_string(i));
  excel.SetColumn(0, 0, cells);
  const Reference range(Area(0, 4999, 0, 0));
  const ExcelDataCache& cache = *SessionExcelDataCache();
  const std::shared_ptr<ExcelData> data = DataOf(range);
  const std::size_t before = cache.bytes();
  CHECK(data->Categories()->size() == 5000);
  CHECK(cache.bytes() == before);
  const Argument other(Cell(1.0));
  DataOf(other);
  CHECK(cache.bytes() >= before + 5000 * 80);
}

}  // namespace zavrel::tests
