#include "excel/excel_call.h"

#include <doctest/doctest.h>

#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include "support/fake_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

using Arguments = FakeExcel::Arguments;

TEST_CASE("Each call and each free stands in a bracket of its own") {
  FakeExcel excel;
  excel.On(xlGetName, [&](Arguments, XLOPER12& result) {
    CHECK(result.xltype == 0);
    excel.GiveText(u"name", result);
    return xlretSuccess;
  });
  const std::vector<int> call = {xlEnableXLMsgs, xlGetName, xlDisableXLMsgs};
  std::vector<int> call_and_free = call;
  call_and_free.insert(call_and_free.end(), {xlEnableXLMsgs, xlFree, xlDisableXLMsgs});
  {
    const ExcelResult result = CallExcel(xlGetName);
    CHECK((result.ok() && result.value.text() == u"name"));
    CHECK(excel.calls == call);
  }
  CHECK(excel.calls == call_and_free);
}

TEST_CASE("Excel's memory is freed once, by the last holder, whatever happens to the others") {
  FakeExcel excel;
  excel.On(xlCoerce, [&](Arguments, XLOPER12& result) {
    excel.GiveArray(2, 3, result);
    return xlretSuccess;
  });
  XXloper kept;
  {
    XXloper first = CallExcel(xlCoerce).value;
    const XXloper copy = first;
    kept = copy;
    const XXloper moved = std::move(first);
    std::vector<XXloper> many(5, moved);
    CHECK(many.back().elements().size() == 6);
  }
  CHECK(excel.CountOf(xlFree) == 0);
  kept = XXloper::Number(1);
  CHECK(excel.CountOf(xlFree) == 1);
  try {
    const XXloper held = CallExcel(xlCoerce).value;
    throw std::runtime_error("a computation fails");
  } catch (const std::runtime_error&) {
  }
  CHECK(excel.CountOf(xlFree) == 2);
}

TEST_CASE(
    "A failed call is #VALUE! with the return code beside it, and nothing else of the result") {
  FakeExcel excel;
  for (const int code : {xlretAbort, xlretFailed, xlretUncalced, 512}) {
    excel.On(xlCoerce, [&](Arguments, XLOPER12& result) {
      result.xltype = xltypeNum;
      result.val.num = 3;
      return code;
    });
    const ExcelResult result = CallExcel(xlCoerce);
    CHECK((!result.ok() && result.return_code == code));
    CHECK(result.value.type() == xltypeErr);
    std::int32_t words[2];
    std::memcpy(words, &result.value.record().val, sizeof words);
    CHECK((words[0] == xlerrValue && words[1] == code));
  }
}

TEST_CASE("Arguments arrive in order; more than a call can have never reach Excel") {
  FakeExcel excel;
  std::vector<XXloper> arguments;
  arguments.reserve(256);
  for (int i = 0; i < 255; ++i) arguments.push_back(XXloper::Integer(i));
  excel.On(xlSet, [&](Arguments given, XLOPER12& result) {
    REQUIRE(given.size() == 255);
    for (std::size_t i = 0; i < given.size(); ++i) CHECK(given[i] == &arguments[i].record());
    result = *given[254];
    return xlretSuccess;
  });
  CHECK(CallExcel(xlSet, arguments).value.record().val.w == 254);
  arguments.push_back(XXloper::Missing());
  CHECK(CallExcel(xlSet, arguments).return_code == xlretInvCount);
  CHECK(excel.CountOf(xlSet) == 1);
}

TEST_CASE("Without a host every call fails, and what a host gave is let go of quietly") {
  auto excel = std::make_unique<FakeExcel>();
  excel->On(xlGetName, [&](Arguments, XLOPER12& result) {
    excel->GiveText(u"x", result);
    return xlretSuccess;
  });
  XXloper survivor = CallExcel(xlGetName).value;
  excel->ForgetGiven();
  excel.reset();
  survivor = XXloper();
  const ExcelResult result = CallExcel(xlfCaller);
  CHECK(result.return_code == xlretFailed);
  CHECK(result.value.record().val.err == xlerrValue);
}
