// The callback, called as an add-in calls it: from commands here, where everything is allowed.
#include <doctest/doctest.h>

#include <deque>
#include <filesystem>
#include <vector>

#include "host/capi/callback.h"
#include "host/capi/excel_record.h"
#include "host/planted_add_in.h"
#include "support/counted_allocations.h"

namespace zavhost::tests {
namespace {

using zavrel::tests::Area;
using zavrel::tests::Argument;
using zavrel::tests::Cell;
using zavrel::tests::Reference;
using zavrel::tests::WholeColumns;
using zavrel::tests::WholeRows;

struct Answer {
  int code = 0;
  XLOPER12 value{};
};

class Caller {
 public:
  using Arguments = std::vector<const XLOPER12*>;

  explicit Caller(Workbook workbook = SmallWorkbook(), EngineOptions options = {})
      : engine_(PlantedEngine(std::move(workbook), std::move(options))) {}
  ~Caller() {
    for (const XLOPER12& value : to_free_) Call(xlFree, {&value});
    engine_->CloseAddIns();
    std::vector<std::string> found;
    for (const Violation& violation : engine_->judge().violations())
      found.push_back(DescribeViolation(violation));
    CHECK(found == expected);
  }

  std::vector<std::string> expected;  // violations

  Engine& engine() { return *engine_; }

  Answer Call(int function, const Arguments& arguments) {
    std::vector<XLOPER12*> pointers;
    for (const XLOPER12* argument : arguments) pointers.push_back(const_cast<XLOPER12*>(argument));
    Answer answer;
    MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
    answer.code =
        MdCallBack12(function, static_cast<int>(pointers.size()), pointers.data(), &answer.value);
    MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
    if (function != xlFree) to_free_.push_back(answer.value);
    return answer;
  }

  std::string Shown(int function, const Arguments& arguments) {
    const Answer answer = Call(function, arguments);
    const std::string code = answer.code == 0 ? "" : std::to_string(answer.code) + ": ";
    if (answer.value.xltype == xltypeInt) return code + "int " + std::to_string(answer.value.val.w);
    if (answer.value.xltype == xltypeMulti)
      return code + tests::Shown(std::make_shared<const Array>(ToArray(answer.value)));
    return code + tests::Shown(ToValue(answer.value));
  }

  /// Registers with these arguments; a blank one is missing.
  Answer Register(const std::vector<Cell>& cells) {
    std::deque<Argument> records;
    Arguments arguments;
    for (const Cell& cell : cells) {
      if (cell.index() == 0) {
        arguments.push_back(records.emplace_back(xltypeMissing));
      } else {
        arguments.push_back(records.emplace_back(cell));
      }
    }
    return Call(xlfRegister, arguments);
  }

 private:
  std::unique_ptr<Engine> engine_;
  std::deque<XLOPER12> to_free_;
};

Argument Number(double number) { return Argument(Cell(number)); }
Argument Text(const char16_t* text) { return Argument(Cell(text)); }

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

TEST_CASE("registration: what it takes, and where it ends") {
  Caller caller;
  const Cell module(u"PLANTED_FAULTS.xll"), sum(u"GoodSum"), type(u"BU"), missing;
  const std::size_t before = caller.engine().functions().size();
  const XLOPER12 id = caller
                          .Register({module, sum, u"BU!", u"AllOfIt", u"cells", 0.0, u"Tests", u"",
                                     missing, u"Sums cells.", u"the cells", u"", missing, missing})
                          .value;
  REQUIRE(id.xltype == xltypeNum);
  REQUIRE(caller.engine().functions().size() == before + 1);
  const RegisteredFunction function = caller.engine().functions().back();
  CHECK(function.name == u"AllOfIt");
  CHECK(function.procedure == u"GoodSum");
  CHECK(function.macro_type == 0);
  CHECK(function.category == u"Tests");
  CHECK(function.help_topic.empty());
  CHECK(function.function_help == u"Sums cells.");
  CHECK(function.argument_helps == std::vector<std::u16string>{u"the cells", u""});
  CHECK(function.is_volatile);
  CHECK(Shown(caller.engine(), "ALLOFIT(A1:A3)") == "6");

  // Twice the same is one function used twice.
  CHECK(caller.Register({module, sum, u"BU!", u"AllOfIt"}).value.val.num == id.val.num);
  CHECK(caller.engine().functions().size() == before + 1);
  CHECK(caller.Shown(xlfUnregister, {&id}) == "TRUE");
  CHECK(Shown(caller.engine(), "AllOfIt(A1:A3)") == "6");
  CHECK(caller.Shown(xlfUnregister, {&id}) == "TRUE");
  CHECK(Shown(caller.engine(), "AllOfIt(A1:A3)") == "#NAME?");
  CHECK(caller.Shown(xlfUnregister, {&id}) == "FALSE");
  caller.expected = {"the name AllOfIt was left behind by its function (name not deleted)"};

  // Letters of any language, digits and four signs make a name.
  CHECK(caller.Register({module, sum, type, u"\\Größe_1.a?"}).value.xltype == xltypeNum);
  const std::u16string longest(255, u'x');
  CHECK(caller.Register({module, sum, type, longest, longest}).value.xltype == xltypeNum);
  const std::vector<Cell> refused[] = {{module, u"NoSuchExport", type},
                                       {module, 60000.0, type},
                                       {module, 70000.0, type},
                                       {u"C:\\other.xll", sum, type},
                                       {module, sum, u"PR"},
                                       {module, sum, missing},
                                       {module, sum, type, u"no name"},
                                       {module, sum, type, u"1st"},
                                       {module, sum, type, longest + u"x"},
                                       {module, sum, type, u"N", longest + u"x"},
                                       {module, sum, type, u"N", u"", 5.0}};
  std::size_t count = 0;
  for (const std::vector<Cell>& arguments : refused) {
    CAPTURE(count);
    const Answer answer = caller.Register(arguments);
    CHECK((answer.code == 0 && answer.value.xltype == xltypeErr));
    CHECK(answer.value.val.err == xlerrValue);
    CHECK(caller.engine().refused_registrations().size() == ++count);
  }
  CHECK(caller.Register({module, sum}).code == xlretInvCount);
}

TEST_CASE("of functions with one name the latest is called, and commands are not") {
  Caller caller;
  const Cell module(u"PLANTED_FAULTS.xll"), missing;
  const auto register_as = [&](const char16_t* procedure, const char16_t* type, double macro_type) {
    return caller.Register({module, procedure, type, u"Same", missing, macro_type});
  };
  const Answer sum = register_as(u"GoodSum", u"BU", 1);
  const Answer integer = register_as(u"GoodInteger", u"JJ", 1);
  const Answer as_volatile = register_as(u"GoodInteger", u"JJ!", 1);
  CHECK(as_volatile.value.val.num != integer.value.val.num);
  register_as(u"GoodBoolean", u"AA", 2);
  CHECK(Shown(caller.engine(), "Same(A3)") == "-3");
  for (const Answer& id : {integer, as_volatile})
    CHECK(caller.Shown(xlfUnregister, {&id.value}) == "TRUE");
  CHECK(Shown(caller.engine(), "Same(A1:A3)") == "6");
  CHECK(caller.Shown(xlfUnregister, {&sum.value}) == "TRUE");
  CHECK(Shown(caller.engine(), "Same(A1:A3)") == "#NAME?");
}

TEST_CASE("a name outlives its function, until it is deleted as that of a hidden one") {
  Caller caller;
  const auto unregister = [&](const Answer& id) {
    CHECK(caller.Shown(xlfUnregister, {&id.value}) == "TRUE");
  };
  const Cell module(u"PLANTED_FAULTS.xll"), sum(u"GoodSum"), type(u"BU"), missing;
  const auto register_as = [&](const char16_t* name, double macro_type) {
    return caller.Register({module, sum, type, name, missing, macro_type});
  };
  for (const char16_t* name : {u"Deleted", u"Left"}) unregister(register_as(name, 1));
  unregister(register_as(u"BackAgain", 1));
  register_as(u"BackAgain", 1);
  for (const char16_t* name : {u"Deleted", u"Left"})
    CHECK(caller.Shown(xlfSetName, {Text(name)}) == "TRUE");  // to no effect
  const Answer hidden = register_as(u"Deleted", 0);
  CHECK(caller.Shown(xlfSetName, {Text(u"deleted")}) == "TRUE");
  CHECK(Shown(caller.engine(), "Deleted(A1:A3)") == "#NAME?");
  unregister(hidden);
  CHECK(caller.Call(xlfSetName, {Text(u"Left"), Number(1)}).code == xlretFailed);
  CHECK(caller.Call(xlfSetName, {Number(1)}).code == xlretInvXloper);
  caller.expected = {"the name Left was left behind by its function (name not deleted)"};
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
    CHECK((failed || failures > 2));
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
