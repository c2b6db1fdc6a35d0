// One call into the host after another fails, in every way that a call can fail. The function then
// gives an error or the right value, keeps nothing of the failure, and frees what it was given.
#include <doctest/doctest.h>

#include "faults/host_faults.h"
#include "faults/open_functions.h"

namespace zavrel::tests {

TEST_CASE("whichever call into the host fails, a function gives an error or the right value") {
  OpenFunctions add_in;
  int failures = 0;
  for (const RegisteredFunction& function : FunctionsOf(add_in.excel)) {
    for (std::size_t shape = 0; shape < RegisteredFunction::kShapes; shape += 2)
      failures += FailEachCallback(add_in.excel,
                                   {.name = function.name() + ", shape " + std::to_string(shape),
                                    .call = [&] { return function.Call(shape); },
                                    .forget = [&] { add_in.ClearCaches(); },
                                    .is_volatile = function.is_volatile()});
    CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  }
  CHECK(failures > 10'000);
}

TEST_CASE("a host that tells the calling sheet only by its name fails, too") {
  OpenFunctions add_in;
  FakeExcel& excel = add_in.excel;
  excel.conversion_code = xlretFailed;
  excel.On(xlSheetNm, [&](FakeExcel::Arguments, XLOPER12& result) {
    excel.GiveText(u"[Book]Data", result);
    return xlretSuccess;
  });
  excel.On(xlSheetId, [](FakeExcel::Arguments, XLOPER12& result) {
    result.xltype = xltypeRef;
    result.val.mref = {nullptr, FakeExcel::kCallingSheet};
    return xlretSuccess;
  });
  int failures = 0;
  for (const RegisteredFunction& function : FunctionsOf(excel)) {
    if (function.name() != "ZavrelMean" && function.name() != "ZavrelDestack") continue;
    failures += FailEachCallback(excel, {.name = function.name(),
                                         .call = [&] { return function.Call(0); },
                                         .forget = [&] { add_in.ClearCaches(); }});
  }
  CHECK(failures > 200);
}

}  // namespace zavrel::tests
