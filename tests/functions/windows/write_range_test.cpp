// What Excel's answers mean for a macro that has a block written.
#include <doctest/doctest.h>

#include "platform/export.h"
#include "support/fake_range.h"
#include "support/macro_array.h"
#include "support/open_add_in.h"

namespace zavrel {
ZAV_EXPORT std::uint32_t ZavrelWriteRangeVB(const VARIANT*, SAFEARRAY**);
}

namespace zavrel::tests {

TEST_CASE("only TRUE and success mean that a block was written") {
  OpenAddIn add_in;  // failures have numbers while it is open
  add_in.excel.On(xlSheetId, [](FakeExcel::Arguments, XLOPER12& result) {
    result.xltype = xltypeRef;
    result.val.mref = {nullptr, FakeExcel::kCallingSheet};
    return xlretSuccess;
  });
  const FakeRange range(2, 2, 1, 2);
  MacroArray values{0, 0};
  const struct {
    XXloper answer;
    int code;
    bool written;
  } cases[] = {{XXloper::Boolean(true), xlretSuccess, true},
               {XXloper::Boolean(false), xlretSuccess, false},
               {XXloper::ErrorByCode(xlerrValue), xlretSuccess, false},
               {XXloper::Boolean(true), xlretInvXlfn, false}};
  for (const auto& given : cases) {
    add_in.excel.calls.clear();
    add_in.excel.On(xlSet, [&](FakeExcel::Arguments, XLOPER12& result) {
      result = given.answer.record();
      return given.code;
    });
    CHECK((ZavrelWriteRangeVB(&range.variant, values) == 0) == given.written);
    CHECK(add_in.excel.CountOf(xlSet) == 1);
  }
}

}  // namespace zavrel::tests
