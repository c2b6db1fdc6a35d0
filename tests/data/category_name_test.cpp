#include "data/category_name.h"

#include <doctest/doctest.h>

#include "data/category_table.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

OrFailure<std::u16string> NameOf(const XLOPER12* record) {
  return CategoryNameOf(SingleValueOf(*record));
}
OrFailure<std::u16string> NameOf(const Cell& cell) { return NameOf(Argument(cell)); }

}  // namespace

TEST_CASE("a category has the cell's text, or the host's text for it") {
  FakeExcel excel;
  excel.texts_of_numbers = {{2.5, u"2,5"}, {0, u"0"}};
  CHECK(*NameOf(Cell(u" North\n")) == u" North\n");
  CHECK(excel.conversions == 0);
  CHECK(*NameOf(Cell(2.5)) == u"2,5");
  CHECK(*NameOf(Cell(true)) == u"WAHR");
  CHECK(*NameOf(Argument(xltypeInt)) == u"0");
  for (const Cell& nothing : {Cell(), Cell(ErrorCell{xlerrNA})}) CHECK(NameOf(nothing)->empty());
  CHECK(NameOf(Argument(xltypeMissing))->empty());
}

TEST_CASE("a host that does not name a cell leaves it without a name, now or for good") {
  FakeExcel excel;
  const auto failure = [&] { return NameOf(Cell(2.5)).failure(); };
  CHECK(failure().value().record().val.err == xlerrValue);
  excel.text_code = xlretUncalced;
  CHECK(failure().uncalculated());
  excel.On(xlCoerce, [](FakeExcel::Arguments, XLOPER12& result) {
    result = XXloper::Boolean(true).record();
    return xlretSuccess;
  });
  CHECK(failure().value().record().val.err == xlerrValue);
}

TEST_CASE("a name is the same without white space around it, with spaces for line breaks") {
  CHECK(CleanedCategoryName(u"\t North\r\nWest ") == u"North  West");
  CHECK(CategoryKey(u"NORTH\nWEST") == CategoryKey(u" north west"));
  CHECK(CategoryKey(u"NORTH") != CategoryKey(u"NORTH WEST"));
}

}  // namespace zavrel::tests
