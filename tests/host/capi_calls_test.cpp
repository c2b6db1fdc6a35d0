// The callback, called as an add-in calls it: from commands here, where everything is allowed.
#include <doctest/doctest.h>

#include <deque>
#include <filesystem>
#include <vector>

#include "host/capi/callback.h"
#include "host/capi/excel_record.h"
#include "host/planted_add_in.h"

namespace zavhost::tests {
namespace {

struct Answer {
  int code = 0;
  XLOPER12 value{};
};

/// Records for the arguments of one call.
class Caller {
 public:
  explicit Caller(Workbook workbook = SmallWorkbook(), EngineOptions options = {})
      : engine_(PlantedEngine(std::move(workbook), std::move(options))) {}
  ~Caller() {
    for (XLOPER12& value : to_free_) Call(xlFree, {value});
    engine_->CloseAddIn();
    for (const Violation& violation : engine_->judge().violations())
      FAIL_CHECK(DescribeViolation(violation));
  }

  Engine& engine() { return *engine_; }

  Answer Call(int function, std::vector<XLOPER12> arguments) {
    std::vector<XLOPER12*> pointers;
    for (XLOPER12& argument : arguments) pointers.push_back(&argument);
    Answer answer;
    MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
    answer.code =
        MdCallBack12(function, static_cast<int>(pointers.size()), pointers.data(), &answer.value);
    MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
    if (function != xlFree) to_free_.push_back(answer.value);
    return answer;
  }

  std::string Shown(int function, std::vector<XLOPER12> arguments) {
    const Answer answer = Call(function, std::move(arguments));
    std::string code = answer.code == 0 ? "" : std::to_string(answer.code) + ": ";
    if (answer.value.xltype == xltypeInt) return code + "int " + std::to_string(answer.value.val.w);
    if (answer.value.xltype == xltypeMulti)
      return code + tests::Shown(std::make_shared<const Array>(ToArray(answer.value)));
    return code + tests::Shown(ToValue(answer.value));
  }

  XLOPER12 Text(std::u16string_view text) {
    texts_.push_back(static_cast<char16_t>(text.size()) + std::u16string(text));
    XLOPER12 value{};
    value.xltype = xltypeStr;
    value.val.str = texts_.back().data();
    return value;
  }

 private:
  std::unique_ptr<Engine> engine_;
  std::vector<XLOPER12> to_free_;
  std::deque<std::u16string> texts_;
};

XLOPER12 Number(double number) {
  XLOPER12 value{};
  value.xltype = xltypeNum;
  value.val.num = number;
  return value;
}

XLOPER12 Types(std::uint32_t types) { return Number(types); }

XLOPER12 Cells(std::int32_t first_row, std::int32_t first_column, std::int32_t last_row,
               std::int32_t last_column) {
  XLOPER12 value{};
  value.xltype = xltypeSRef;
  value.val.sref.count = 1;
  value.val.sref.ref = {first_row, last_row, first_column, last_column};
  return value;
}

XLOPER12 Cell(std::int32_t row, std::int32_t column) { return Cells(row, column, row, column); }

}  // namespace

TEST_CASE("xlCoerce reads cells and converts values") {
  Caller caller;
  const auto coerce = [&](XLOPER12 value, std::uint32_t types) {
    return caller.Shown(xlCoerce, {value, Types(types)});
  };
  CHECK(caller.Shown(xlCoerce, {Cell(1, 0)}) == "2");
  CHECK(caller.Shown(xlCoerce, {Cells(0, 0, 1, 1)}) == "1,five;2,TRUE;");
  CHECK(caller.Call(xlCoerce, {Cell(9, 9)}).value.xltype == xltypeNil);
  CHECK(coerce(Cells(0, 0, 1, 1), xltypeNum) == "1");
  CHECK(coerce(Cell(0, 0), xltypeMulti) == "1;");
  CHECK(coerce(Cells(0, 0, 1, 1), xltypeMulti | xltypeNum) == "1,five;2,TRUE;");
  CHECK(coerce(Number(1.5), xltypeStr) == "1.5");
  CHECK(coerce(Number(1e21), xltypeStr) == "1E+21");
  CHECK(coerce(Number(-2.7), xltypeInt) == "int -2");
  CHECK(coerce(Number(3e9), xltypeInt) == "32: #VALUE!");
  CHECK(coerce(Number(2), xltypeBool) == "TRUE");
  CHECK(coerce(caller.Text(u"1,250.5"), xltypeNum) == "1250.5");
  CHECK(coerce(caller.Text(u"12"), xltypeInt) == "int 12");
  CHECK(coerce(caller.Text(u"many"), xltypeNum) == "32: #VALUE!");
  CHECK(coerce(caller.Text(u"false"), xltypeBool) == "FALSE");
  CHECK(coerce(Cell(1, 1), xltypeStr) == "TRUE");
  CHECK(coerce(Cell(2, 1), xltypeNum) == "32: #VALUE!");
  CHECK(coerce(Cell(2, 1), xltypeErr) == "#DIV/0!");
  CHECK(coerce(Cell(9, 9), xltypeNum | xltypeStr) == "0");
  CHECK(caller.Call(xlCoerce, {Cell(0, 0), Types(xltypeSRef)}).value.xltype == xltypeSRef);
  CHECK(caller.Shown(xlCoerce, {Cells(0, 0, 1048575, 16383)}) == "32: #VALUE!");
  CHECK(caller.Call(xlCoerce, {Cells(0, 0, 1048575, 0)}).value.val.array.rows == 1048576);
}

TEST_CASE("references off the sheet, of several areas and of sheets that are not there") {
  Caller caller;
  XLOPER12 id = caller.Call(xlSheetId, {}).value;
  struct {
    XLMREF12 first;
    XLREF12 second;
  } areas{{2, {{0, 0, 0, 0}}}, {1, 1, 1, 1}};
  id.val.mref.lpmref = &areas.first;
  CHECK(caller.Call(xlCoerce, {id}).code == xlretFailed);
  areas.first.count = 1;
  CHECK(caller.Shown(xlCoerce, {id}) == "1");
  id.val.mref.idSheet += 16;
  CHECK(caller.Call(xlCoerce, {id}).code == xlretInvXloper);
  id.val.mref.idSheet = 0;  // the current sheet
  CHECK(caller.Shown(xlCoerce, {id}) == "1");
}

TEST_CASE("whole columns are clipped when told so") {
  EngineOptions options;
  options.behaviour.clip_whole_columns = true;
  Caller caller(SmallWorkbook(), options);
  CHECK(caller.Call(xlCoerce, {Cells(0, 0, 1048575, 0)}).value.val.array.rows == 5);
  CHECK(caller.Call(xlCoerce, {Cells(0, 0, 0, 16383)}).value.val.array.columns == 2);
  CHECK(caller.Shown(xlCoerce, {Cells(2, 0, 7, 0)}) == "3;4;5;;;;");
}

TEST_CASE("xlSet writes one area of a sheet that is not protected") {
  Workbook workbook = SmallWorkbook();
  workbook.sheets.emplace_back(u"Locked").set_protected(true);
  Caller caller(std::move(workbook));
  Sheet& sheet = caller.engine().workbook().sheets[0];
  CHECK(caller.Shown(xlSet, {Cells(0, 3, 1, 4), Number(7)}) == "TRUE");
  CHECK(Shown(sheet.At(1, 4)) == "7");
  XLOPER12 elements[] = {Number(1), Number(2)};
  XLOPER12 array{};
  array.xltype = xltypeMulti;
  array.val.array = {elements, 1, 2};
  CHECK(caller.Shown(xlSet, {Cells(0, 3, 1, 4), array}) == "TRUE");
  CHECK(Shown(sheet.At(0, 4)) == "2");
  CHECK(Shown(sheet.At(1, 4)) == "#N/A");
  CHECK(caller.Shown(xlSet, {Cells(0, 3, 1, 4)}) == "TRUE");
  CHECK(sheet.At(0, 4).IsBlank());
  CHECK(caller.Call(xlSet, {Number(1), Number(2)}).code == xlretInvXloper);
  XLOPER12 locked = caller.Call(xlSheetId, {caller.Text(u"locked")}).value;
  XLMREF12 area{1, {{0, 0, 0, 0}}};
  locked.val.mref.lpmref = &area;
  CHECK(caller.Call(xlSet, {locked, Number(1)}).code == xlretFailed);
}

TEST_CASE("sheets by name and by id") {
  Workbook workbook = SmallWorkbook();
  workbook.sheets.emplace_back(u"Other");
  Caller caller(std::move(workbook));
  const auto name_of = [&](std::u16string_view name) {
    const Answer id = caller.Call(xlSheetId, {caller.Text(name)});
    return id.code != 0 ? std::string("none") : caller.Shown(xlSheetNm, {id.value});
  };
  CHECK(name_of(u"[book.xlsx]OTHER") == "[Book.xlsx]Other");
  CHECK(name_of(u"other") == "[Book.xlsx]Other");
  CHECK(name_of(u"[Else.xlsx]Other") == "none");
  CHECK(name_of(u"third") == "none");
  CHECK(caller.Shown(xlSheetNm, {Cell(0, 0)}) == "[Book.xlsx]Sheet1");
  CHECK(caller.Call(xlSheetNm, {Number(1)}).code == xlretInvXloper);
}

TEST_CASE("the caller of a function, and of a command") {
  const auto caller_text = [](CallerForm form) {
    EngineOptions options;
    options.behaviour.caller = form;
    return Shown(*PlantedEngine(SmallWorkbook(), options), u"GoodCaller()");
  };
  CHECK(caller_text(CallerForm::kSheetReference) == "sref 1,7:1,7");
  CHECK(caller_text(CallerForm::kExternalReference) == "ref 1,7:1,7");
  CHECK(caller_text(CallerForm::kError) == "error 23");
  CHECK(caller_text(CallerForm::kNumber) == "number");
  CHECK(caller_text(CallerForm::kText) == "text of 8");
  CHECK(caller_text(CallerForm::kMenu) == "1x4 of number");
  Caller caller;
  CHECK(caller.Shown(xlfCaller, {}) == "#REF!");
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
  CHECK(caller.Shown(4711, {}) == "2: #VALUE!");
  CHECK(caller.Shown(xlCoerce, {}) == "4: #VALUE!");
  CHECK(caller.Shown(xlAbort, {Number(1), Number(2)}) == "4: #VALUE!");
}

TEST_CASE("registration: what it takes, and where it ends") {
  Caller caller;
  const XLOPER12 module = caller.Text(u"PLANTED_FAULTS.xll");  // the file's name will do
  XLOPER12 missing{};
  missing.xltype = xltypeMissing;
  const auto text = [&](std::u16string_view content) { return caller.Text(content); };
  const auto add = [&](std::vector<XLOPER12> arguments) {
    return caller.Call(xlfRegister, std::move(arguments)).value;
  };
  const std::size_t before = caller.engine().functions().size();

  const XLOPER12 id = add({module, text(u"GoodSum"), text(u"BU!"), text(u"AllOfIt"), text(u"cells"),
                           Number(0), text(u"Tests"), text(u""), missing, text(u"Sums cells."),
                           text(u"the cells"), text(u""), missing, missing});
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
  CHECK(Shown(caller.engine(), u"ALLOFIT(A1:A3)") == "6");

  // Twice the same is one function used twice.
  CHECK(add({module, text(u"GoodSum"), text(u"BU!"), text(u"AllOfIt")}).val.num == id.val.num);
  CHECK(caller.engine().functions().size() == before + 1);
  CHECK(caller.Shown(xlfUnregister, {id}) == "TRUE");
  CHECK(Shown(caller.engine(), u"AllOfIt(A1:A3)") == "6");
  CHECK(caller.Shown(xlfUnregister, {id}) == "TRUE");
  CHECK(Shown(caller.engine(), u"AllOfIt(A1:A3)") == "#NAME?");
  CHECK(caller.Shown(xlfUnregister, {id}) == "FALSE");

  const std::u16string longest(255, u'x');
  CHECK(add({module, text(u"GoodSum"), text(u"BU"), text(longest), text(longest)}).xltype ==
        xltypeNum);
  const auto refused = [&](std::vector<XLOPER12> arguments) {
    const std::size_t known = caller.engine().refused_registrations().size();
    const Answer answer = caller.Call(xlfRegister, std::move(arguments));
    return answer.code == 0 && answer.value.xltype == xltypeErr &&
           answer.value.val.err == xlerrValue &&
           caller.engine().refused_registrations().size() == known + 1;
  };
  const XLOPER12 sum = text(u"GoodSum");
  const XLOPER12 type = text(u"BU");
  CHECK(refused({module, text(u"NoSuchExport"), type}));
  CHECK(refused({module, Number(60000), type}));
  CHECK(refused({text(u"C:\\other.xll"), sum, type}));
  CHECK(refused({module, sum, text(u"PR")}));
  CHECK(refused({module, sum, missing}));
  CHECK(refused({module, sum, type, text(u"no name")}));
  CHECK(refused({module, sum, type, text(longest + u"x")}));
  CHECK(refused({module, sum, type, text(u"N"), text(longest + u"x")}));
  CHECK(refused({module, sum, type, text(u"N"), text(u""), Number(5)}));
  CHECK(caller.Call(xlfRegister, {module, sum}).code == xlretInvCount);
}

TEST_CASE("without a host the callback fails") {
  XLOPER12 answer{};
  CHECK(ActiveApi() == nullptr);
  CHECK(MdCallBack12(xlAbort, 0, nullptr, &answer) == xlretFailed);
  CHECK(answer.val.err == xlerrValue);
}

}  // namespace zavhost::tests
