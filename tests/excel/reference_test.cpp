#include "excel/reference.h"

#include <doctest/doctest.h>

#include "support/fake_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

auto ViewOf(const XLOPER12* record) { return ReferenceView::Of(*record); }

}  // namespace

TEST_CASE("A reference is viewed with its areas and its sheet") {
  const Reference two(77, {{6, 6, 1, 1}, {0, kExcelRows - 1, 0, kExcelColumns - 1}});
  const auto view = ViewOf(two);
  REQUIRE(view);
  REQUIRE(view->areas().size() == 2);
  CHECK(view->sheet_id() == 77u);
  CHECK(RowsOf(view->areas()[1]) == kExcelRows);
  CHECK(ReferenceText(*view, u"[Book]It's") == u"'[Book]It''s'!B7,'[Book]It''s'!A1:XFD1048576");

  const Reference single({0, 2, 26, 701});
  REQUIRE(ViewOf(single));
  CHECK_FALSE(ViewOf(single)->sheet_id());
  CHECK(ReferenceText(*ViewOf(single), {}) == u"AA1:ZZ3");
}

TEST_CASE("Absurd references are none") {
  for (const XLREF12& area :
       {Area(-1, 0, 0, 0), Area(0, kExcelRows, 0, 0), Area(5, 4, 0, 0), Area(0, 0, 3, 2),
        Area(0, 0, 0, kExcelColumns), Area(0, 0, INT32_MIN, INT32_MAX)}) {
    CHECK_FALSE(ViewOf(Reference(area)));
    CHECK_FALSE(ViewOf(Reference(1, {{0, 0, 0, 0}, area})));
  }
  CHECK_FALSE(ViewOf(Reference(1, {})));
  CHECK_FALSE(ViewOf(Argument(xltypeRef)));
  CHECK_FALSE(ViewOf(Argument(Cell(1.0))));
}

TEST_CASE("The caller is a range or whatever else Excel says") {
  FakeExcel excel;
  const auto answer = [&](const XLOPER12* value) {
    excel.On(xlfCaller, [value = *value](FakeExcel::Arguments, XLOPER12& result) {
      result = value;
      return xlretSuccess;
    });
    return CallingRange::Ask();
  };
  const auto range = answer(Reference({2, 11, 3, 5}));
  REQUIRE(range.ok());
  CHECK((range->is_range() && range->rows() == 10 && range->columns() == 3));
  for (const Cell& other : {Cell(3.0), Cell(ErrorCell{xlerrRef})}) {
    const Argument value(other);
    const auto none = answer(value);
    REQUIRE(none.ok());
    CHECK((!none->is_range() && none->rows() == 0 && none->columns() == 0));
    CHECK(Shown(none->value().record()) == Shown(*static_cast<const XLOPER12*>(value)));
  }
  CHECK_FALSE(answer(Argument(Cell(true))).ok());
  for (const int code : {xlretFailed, xlretUncalced}) {
    excel.On(xlfCaller, [code](FakeExcel::Arguments, XLOPER12&) { return code; });
    const auto failed = CallingRange::Ask();
    REQUIRE_FALSE(failed.ok());
    CHECK(failed.failure().uncalculated() == (code == xlretUncalced));
  }
}

TEST_CASE("Sheets have names and ids, if the host tells") {
  FakeExcel excel;
  const Reference cell({0, 0, 0, 0});
  CHECK(SheetNameOf(XXloper::FromArgument(cell))->empty());
  CHECK_FALSE(*SheetIdOf(u"none"));
  excel.On(xlSheetNm, [&](FakeExcel::Arguments, XLOPER12& result) {
    excel.GiveText(u"[Book]Data", result);
    return xlretSuccess;
  });
  excel.On(xlSheetId, [&](FakeExcel::Arguments arguments, XLOPER12& result) {
    CHECK(TextIn(*arguments[0]) == u"[Book]Data");
    result.xltype = xltypeRef;
    result.val.mref = {nullptr, 0xFFFFFFFFFFu};
    return xlretSuccess;
  });
  CHECK(*SheetIdOf(*SheetNameOf(XXloper::FromArgument(cell))) == 0xFFFFFFFFFFu);
}
