// What the host answers to calls from commands.
#include <doctest/doctest.h>

#include <filesystem>

#include "host/capi_caller.h"
#include "support/counted_allocations.h"

namespace zavhost::tests {
namespace {

using zavrel::tests::Area;
using zavrel::tests::Reference;
using zavrel::tests::WholeColumns;
using zavrel::tests::WholeRows;

}  // namespace

TEST_CASE("xlCoerce reads cells and converts values") {
  Caller caller;
  const Reference block(Area(0, 1, 0, 1)), blank(Area(9, 9, 9, 9)), first(Area(0, 0, 0, 0)),
      boolean(Area(1, 1, 1, 1)), error(Area(2, 2, 1, 1)), whole(WholeColumns(0, 16383));
  CHECK(caller.Shown(xlCoerce, {Reference(Area(1, 1, 0, 0))}) == "2");
  CHECK(caller.Shown(xlCoerce, {block}) == "1,five;2,TRUE;");
  CHECK(caller.Shown(xlCoerce, {Argument(2, 1, {u"a", u"b"})}) == "a;b;");
  CHECK(caller.Call(xlCoerce, {blank}).value.xltype == xltypeNil);
  CHECK(caller.Call(xlCoerce, {first, Number(xltypeSRef)}).value.xltype == xltypeSRef);
  CHECK(caller.Call(xlCoerce, {Reference(WholeColumns(0, 0))}).value.val.array.rows == 1048576);
  const Argument half(Cell(1.5)), large(Cell(1e21)), negative(Cell(-2.7)), beyond(Cell(3e9)),
      two(Cell(2.0)), array(1, 3, {7.0, u"word", true}), grouped(Cell(u"1,250.5")),
      twelve(Cell(u"12")), word(Cell(u"many")), no(Cell(u"false"));
  const struct {
    const XLOPER12* value;
    double types;
    const char* shown;
  } cases[] = {
      {block, xltypeNum, "1"},
      {first, xltypeMulti, "1;"},
      {block, xltypeMulti | xltypeNum, "1,five;2,TRUE;"},
      {half, xltypeStr, "1.5"},
      {large, xltypeStr, "1E+21"},
      {negative, xltypeInt, "int -2"},
      {beyond, xltypeInt, "32: #VALUE!"},
      {two, xltypeBool, "TRUE"},
      {grouped, xltypeNum, "1250.5"},
      {twelve, xltypeInt, "int 12"},
      {word, xltypeNum, "32: #VALUE!"},
      {no, xltypeBool, "FALSE"},
      {boolean, xltypeStr, "TRUE"},
      {error, xltypeNum, "32: #VALUE!"},
      {error, xltypeErr, "#DIV/0!"},
      {error, xltypeStr, "32: #VALUE!"},
      {word, xltypeBool, "32: #VALUE!"},
      {array, xltypeNum, "7"},
      {array, xltypeMulti | xltypeNum, "7,word,TRUE;"},
      {blank, xltypeNum | xltypeStr, "0"},
      {whole, xltypeMulti, "32: #VALUE!"},
  };
  for (const auto& given : cases) {
    CAPTURE(given.shown);
    CHECK(caller.Shown(xlCoerce, {given.value, Number(given.types)}) == given.shown);
  }
}

TEST_CASE("references off the sheet, of several areas and of sheets that are not there") {
  Caller caller;
  const std::uint64_t sheet = caller.Call(xlSheetId, {}).value.val.mref.idSheet;
  const XLREF12 first = Area(0, 0, 0, 0);
  CHECK(caller.Call(xlCoerce, {Reference(sheet, {first, Area(1, 1, 1, 1)})}).code == xlretFailed);
  CHECK(caller.Shown(xlCoerce, {Reference(sheet, {first})}) == "1");
  for (const std::uint64_t no_sheet : {sheet - 16, sheet + 1, sheet + 16}) {
    const Reference nowhere(no_sheet, {first});
    CHECK(caller.Call(xlCoerce, {nowhere}).code == xlretInvXloper);
    CHECK(caller.Call(xlCoerce, {nowhere, Number(xltypeRef)}).code == xlretInvXloper);
    CHECK(caller.Call(xlSet, {nowhere, Number(1)}).code == xlretInvXloper);
    CHECK(caller.Call(xlSheetNm, {nowhere}).code == xlretFailed);
  }
  CHECK(caller.Shown(xlCoerce, {Reference(0, {first})}) == "1");  // the current sheet

  for (const XLREF12& area : {Area(-1, 0, 0, 0), Area(0, 0, 0, kExcelColumns),
                              Area(0, kExcelRows, 0, 0), Area(1, 0, 0, 0)}) {
    CHECK(caller.Call(xlCoerce, {Reference(area)}).code == xlretInvXloper);
    caller.expected.emplace_back(
        "xlCoerce was given a reference off the sheet as argument 1 (malformed call)");
  }

  EngineOptions options;
  options.behaviour.clip_whole_columns = true;
  Caller clipping(SmallWorkbook(), options);
  CHECK(clipping.Call(xlCoerce, {Reference(WholeColumns(0, 0))}).value.val.array.rows == 5);
  CHECK(clipping.Call(xlCoerce, {Reference(WholeRows(0, 0))}).value.val.array.columns == 2);
  CHECK(clipping.Shown(xlCoerce, {Reference(Area(2, 7, 0, 0))}) == "3;4;5;;;;");
}

TEST_CASE("xlfCounta counts cells and values that are not blank") {
  Caller caller;
  const std::uint64_t sheet = caller.Call(xlSheetId, {}).value.val.mref.idSheet;
  CHECK(caller.Shown(xlfCounta, {Reference(WholeColumns(0, 0))}) == "5");
  CHECK(caller.Shown(xlfCounta, {Reference(WholeColumns(0, kExcelColumns - 1))}) == "9");
  CHECK(caller.Shown(xlfCounta, {Reference(sheet, {Area(0, 1, 0, 0), Area(3, 9, 0, 1)})}) == "5");
  CHECK(caller.Shown(xlfCounta, {Argument(1, 3, {7.0, u"", Cell()}), Number(1)}) == "3");
  CHECK(caller.Call(xlfCounta, {Reference(sheet + 16, {Area(0, 0, 0, 0)})}).code == xlretInvXloper);
}

TEST_CASE("xlSet writes one area of a sheet that is not protected") {
  Workbook workbook = SmallWorkbook();
  workbook.sheets.emplace_back(u"Locked").set_protected(true);
  workbook.sheets.emplace_back(u"Chart").set_has_cells(false);
  Caller caller(std::move(workbook));
  const Sheet& sheet = caller.engine().workbook().sheets[0];
  const Reference block(Area(0, 1, 3, 4));
  CHECK(caller.Shown(xlSet, {block, Number(7)}) == "TRUE");
  CHECK(Content(sheet, "D1:E2") == "7,7;7,7;");
  CHECK(caller.Shown(xlSet, {block, Argument(1, 2, {1.0, 2.0})}) == "TRUE");
  CHECK(Content(sheet, "D1:E2") == "1,2;#N/A,#N/A;");
  CHECK(caller.Shown(xlSet, {block, Argument(3, 1, {1.0, 2.0, 3.0})}) == "TRUE");
  CHECK(Content(sheet, "D1:E2") == "1,#N/A;2,#N/A;");
  CHECK(caller.Shown(xlSet, {block}) == "TRUE");
  CHECK(sheet.At(0, 4).IsBlank());
  CHECK(caller.Call(xlSet, {Number(1), Number(2)}).code == xlretInvXloper);
  CHECK(caller.Call(xlSet, {block, block}).code == xlretInvXloper);
  const std::uint64_t own = caller.Call(xlSheetId, {}).value.val.mref.idSheet;
  const Reference two_areas(own, {Area(0, 0, 0, 0), Area(2, 2, 0, 0)});
  CHECK(caller.Call(xlSet, {two_areas, Number(1)}).code == xlretFailed);
  CHECK(caller.Call(xlSet, {Reference(WholeColumns(0, 8)), Number(1)}).code == xlretFailed);
  for (const char16_t* name : {u"locked", u"chart"}) {
    const std::uint64_t id = caller.Call(xlSheetId, {Text(name)}).value.val.mref.idSheet;
    CHECK(caller.Call(xlSet, {Reference(id, {Area(0, 0, 0, 0)}), Number(1)}).code == xlretFailed);
  }
}

TEST_CASE("sheets by name and by id") {
  Workbook workbook = SmallWorkbook();
  workbook.sheets.emplace_back(u"Other");
  Caller caller(std::move(workbook));
  const std::pair<const char16_t*, const char*> names[] = {
      {u"[book.xlsx]OTHER", "[Book.xlsx]Other"},
      {u"other", "[Book.xlsx]Other"},
      {u"[Else.xlsx]Other", "none"},
      {u"[Book.xlsx", "none"},
      {u"third", "none"}};
  for (const auto& [name, found] : names) {
    const Answer id = caller.Call(xlSheetId, {Text(name)});
    CHECK((id.code != 0 ? "none" : caller.Shown(xlSheetNm, {&id.value})) == found);
  }
  CHECK(caller.Shown(xlSheetNm, {Reference(Area(0, 0, 0, 0))}) == "[Book.xlsx]Sheet1");
  CHECK(caller.Call(xlSheetNm, {Number(1)}).code == xlretInvXloper);
}

TEST_CASE("the caller of a function, and of a command") {
  for (const auto& [form, shown] : {std::pair{CallerForm::kSheetReference, "sref 1,20:1,20"},
                                    {CallerForm::kExternalReference, "ref 1,20:1,20"},
                                    {CallerForm::kError, "error 23"},
                                    {CallerForm::kNumber, "number"},
                                    {CallerForm::kText, "text of 8"},
                                    {CallerForm::kMenu, "1x4 of number"}}) {
    EngineOptions options;
    options.behaviour.caller = form;
    CHECK(Shown(*PlantedEngine(SmallWorkbook(), options), "GoodCaller()") == shown);
  }
  CHECK(Caller().Shown(xlfCaller, {}) == "#REF!");
}

TEST_CASE("freeing is safe to repeat, and other calls answer with their codes") {
  Caller caller;
  XLOPER12 name{};
  XLOPER12* pointer = &name;
  MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
  CHECK(MdCallBack12(xlGetName, 0, nullptr, &name) == xlretSuccess);
  MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
  CHECK(std::filesystem::equivalent(Shown(ToValue(name)), PLANTED_FAULTS));
  for (int i = 0; i < 2; ++i) {
    MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
    CHECK(MdCallBack12(xlFree, 1, &pointer, nullptr) == xlretSuccess);
    MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
    CHECK(name.val.str == nullptr);
  }
  CHECK(caller.Shown(xlAbort, {}) == "FALSE");
  CHECK(caller.Shown(xlfGetWorkspace, {Number(2)}) == "16.0");
  CHECK(caller.Shown(xlGetHwnd, {}) == "int 0");
  CHECK(caller.Shown(xlfGetWorkspace, {Text(u"2")}) == "32: #VALUE!");
  CHECK(caller.Shown(4711, {}) == "2: #VALUE!");
  CHECK(caller.Shown(xlCoerce, {}) == "4: #VALUE!");
  CHECK(caller.Shown(xlAbort, {Number(1), Number(2)}) == "4: #VALUE!");
}

TEST_CASE("without memory for its answer a call fails, and the next one is answered") {
  Caller caller;
  const Reference block(Area(0, 3, 0, 1));
  const XLOPER12* const argument = block;
  auto* pointer = const_cast<XLOPER12*>(argument);
  for (int failures = 0, code = xlretFailed; code != xlretSuccess; ++failures) {
    XLOPER12 answer{};
    MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
    zavrel::tests::until_failure = failures;
    code = MdCallBack12(xlCoerce, 1, &pointer, &answer);
    const bool failed = zavrel::tests::until_failure < 0;
    zavrel::tests::until_failure = -1;
    MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
    CHECK(code == (failed ? xlretFailed : xlretSuccess));
    CHECK((failed ? TypeOf(answer) == xltypeErr : ToArray(answer).rows == 4));
    CHECK((failed || failures >= 2));  // the cells, and that they are held
    caller.Call(xlFree, {&answer});
    CHECK(caller.Shown(xlCoerce, {block}) == "1,five;2,TRUE;3,#DIV/0!;4,12;");
  }
}

TEST_CASE("arguments that are no records are refused and found out") {
  Caller caller;
  const auto code_of = [&](const XLOPER12& record) {
    return caller.Call(xlCoerce, {&record}).code;
  };
  XLOPER12 answer{};
  MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
  CHECK(MdCallBack12(xlCoerce, 1, nullptr, &answer) == xlretInvXloper);
  MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
  XLOPER12 record{};
  record.xltype = xltypeSRef;
  record.val.sref = {2, {0, 0, 0, 0}};
  CHECK(code_of(record) == xlretInvXloper);
  record.xltype = xltypeMulti;
  record.val.array = {&answer, kExcelRows, 65};
  CHECK(code_of(record) == xlretInvXloper);
  CHECK(caller.Call(xlCoerce, {Reference(1, {})}).code == xlretInvXloper);
  caller.expected = {
      "xlCoerce was given a null pointer as argument 1 (malformed call)",
      "xlCoerce was given a reference with a count other than 1 as argument 1 (malformed call)",
      "xlCoerce was given an array of 1048576 rows and 65 columns as argument 1 (malformed call)",
      "xlCoerce was given a reference with an empty list of areas as argument 1 (malformed call)"};
}

TEST_CASE("what an unloaded add-in still calls fails") {
  Caller caller;
  caller.engine().CloseAddIns();
  CHECK(caller.Call(xlGetName, {}).code == xlretFailed);
  const Answer refused = caller.Register({u"PLANTED_FAULTS.xll", u"GoodSum", u"BU"});
  CHECK((refused.code == xlretSuccess && refused.value.xltype == xltypeErr));
  CHECK(caller.engine().functions().empty());
}

TEST_CASE("without a host the callback fails") {
  XLOPER12 answer{};
  CHECK(ActiveApi() == nullptr);
  CHECK(MdCallBack12(xlAbort, 0, nullptr, &answer) == xlretFailed);
  CHECK(answer.val.err == xlerrValue);
}

}  // namespace zavhost::tests
