#include "excel/reference.h"

#include <doctest/doctest.h>

#include <cstring>
#include <vector>

#include "excel/scripted_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

/// A Ref record with its areas beside it.
class SheetReference {
 public:
  SheetReference(std::uint64_t sheet_id, const std::vector<XLREF12>& areas)
      : memory_(sizeof(XLMREF12) + areas.size() * sizeof(XLREF12)) {
    auto* list = reinterpret_cast<XLMREF12*>(memory_.data());
    list->count = static_cast<std::uint16_t>(areas.size());
    for (std::size_t i = 0; i < areas.size(); ++i)
      std::memcpy(memory_.data() + offsetof(XLMREF12, reftbl) + i * sizeof(XLREF12), &areas[i],
                  sizeof(XLREF12));
    record.xltype = xltypeRef;
    record.val.mref.lpmref = list;
    record.val.mref.idSheet = sheet_id;
  }
  XLOPER12 record{};

 private:
  std::vector<char> memory_;
};

}  // namespace

TEST_CASE("A reference is viewed with its areas and its sheet") {
  const SheetReference two(77, {{6, 6, 1, 1}, {0, kExcelRows - 1, 0, kExcelColumns - 1}});
  const auto view = ReferenceView::Of(two.record);
  REQUIRE(view);
  REQUIRE(view->areas().size() == 2);
  CHECK(view->sheet_id() == 77u);
  CHECK(RowsOf(view->areas()[1]) == kExcelRows);
  CHECK(ReferenceText(*view, u"[Book]It's") == u"'[Book]It''s'!B7,'[Book]It''s'!A1:XFD1048576");

  const XLOPER12 single = ReferenceTo({0, 2, 26, 701});
  const auto local = ReferenceView::Of(single);
  REQUIRE(local);
  CHECK_FALSE(local->sheet_id());
  CHECK(ReferenceText(*local, {}) == u"AA1:ZZ3");
}

TEST_CASE("Absurd references are none") {
  for (const XLREF12& area : std::vector<XLREF12>{{-1, 0, 0, 0},
                                                  {0, kExcelRows, 0, 0},
                                                  {5, 4, 0, 0},
                                                  {0, 0, 3, 2},
                                                  {0, 0, 0, kExcelColumns},
                                                  {0, 0, INT32_MIN, INT32_MAX}}) {
    CHECK_FALSE(ReferenceView::Of(ReferenceTo(area)));
    CHECK_FALSE(ReferenceView::Of(SheetReference(1, {{0, 0, 0, 0}, area}).record));
  }
  CHECK_FALSE(ReferenceView::Of(SheetReference(1, {}).record));
  XLOPER12 without_areas{};
  without_areas.xltype = xltypeRef;
  CHECK_FALSE(ReferenceView::Of(without_areas));
  CHECK_FALSE(ReferenceView::Of(XXloper::Number(1).record()));
}

TEST_CASE("The caller is a range or whatever else Excel says") {
  ScriptedExcel excel;
  const auto answer = [&](const XLOPER12& value) {
    excel.On(xlfCaller, [value](ScriptedExcel::Arguments, XLOPER12& result) {
      result = value;
      return xlretSuccess;
    });
    return CallingRange::Ask();
  };
  const CallingRange range = answer(ReferenceTo({2, 11, 3, 5}));
  CHECK(range.is_range());
  CHECK(range.rows() == 10);
  CHECK(range.columns() == 3);
  for (const XXloper& other :
       {XXloper::Number(3), XXloper::Error(ExcelError::kRef), XXloper::Integer(1)}) {
    const CallingRange none = answer(other.record());
    CHECK_FALSE(none.is_range());
    CHECK(none.rows() == 0);
    CHECK(none.value().type() == other.type());
  }
  excel.On(xlfCaller, [](ScriptedExcel::Arguments, XLOPER12&) { return xlretFailed; });
  CHECK_FALSE(CallingRange::Ask().is_range());
  CHECK(excel.faults.empty());
}

TEST_CASE("Sheets have names and ids, if the host tells") {
  ScriptedExcel excel;
  const XLOPER12 cell = ReferenceTo({0, 0, 0, 0});
  CHECK(SheetNameOf(XXloper::FromArgument(&cell)).empty());
  CHECK_FALSE(SheetIdOf(u"none"));
  excel.On(xlSheetNm, [&](ScriptedExcel::Arguments, XLOPER12& result) {
    excel.GiveText(u"[Book]Data", result);
    return xlretSuccess;
  });
  excel.On(xlSheetId, [&](ScriptedExcel::Arguments arguments, XLOPER12& result) {
    CHECK(TextIn(*arguments[0]) == u"[Book]Data");
    result.xltype = xltypeRef;
    result.val.mref = {nullptr, 0xFFFFFFFFFFu};
    return xlretSuccess;
  });
  CHECK(SheetIdOf(SheetNameOf(XXloper::FromArgument(&cell))) == 0xFFFFFFFFFFu);
  CHECK(excel.unfreed() == 0);
  CHECK(excel.faults.empty());
}
