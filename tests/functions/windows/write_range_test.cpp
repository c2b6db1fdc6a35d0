// What Excel's answers mean for a macro that has a block written.
#include <doctest/doctest.h>

#include "excel/excel_call.h"
#include "functions/open_add_in.h"
#include "platform/export.h"
#include "support/fake_range.h"

namespace zavrel {
ZAV_EXPORT std::uint32_t ZavrelWriteRangeVB(const VARIANT*, SAFEARRAY**);
}

namespace zavrel::tests {
namespace {

/// Knows one sheet, and answers every wish to write in the same way.
struct AnsweringExcel {
  AnsweringExcel(XLOPER12 answer, int code) {
    answer_ = answer;
    code_ = code;
    written_ = 0;
    SetExcelCallback(&Callback);
  }
  ~AnsweringExcel() { SetExcelCallback(nullptr); }
  AnsweringExcel(const AnsweringExcel&) = delete;
  AnsweringExcel& operator=(const AnsweringExcel&) = delete;

  static int Callback(int function, int, XLOPER12**, XLOPER12* result) {
    if (function == xlSheetId) {
      *result = {};
      result->xltype = xltypeRef;
      result->val.mref.idSheet = 11;
    }
    if (function != xlSet) return 0;
    ++written_;
    *result = answer_;
    return code_;
  }
  inline static XLOPER12 answer_{};
  inline static int code_ = 0;
  inline static int written_ = 0;
};

XLOPER12 Answer(DWORD type, int value) {
  XLOPER12 answer{};
  answer.xltype = type;
  if (type == xltypeBool) answer.val.xbool = value;
  if (type == xltypeErr) answer.val.err = value;
  return answer;
}

}  // namespace

TEST_CASE("only TRUE and success mean that a block was written") {
  const OpenAddIn add_in;  // failures have numbers while it is open
  const FakeRange range(2, 2, 1, 2);
  SAFEARRAY* values = SafeArrayCreateVector(VT_R8, 0, 2);
  REQUIRE(values != nullptr);
  const struct {
    XLOPER12 answer;
    int code;
    bool written;
  } cases[] = {{Answer(xltypeBool, 1), 0, true},
               {Answer(xltypeBool, 0), 0, false},
               {Answer(xltypeErr, xlerrValue), 0, false},
               {Answer(xltypeBool, 1), 2, false}};
  for (const auto& given : cases) {
    const AnsweringExcel excel(given.answer, given.code);
    CHECK((ZavrelWriteRangeVB(&range.variant, &values) == 0) == given.written);
    CHECK(AnsweringExcel::written_ == 1);
    CHECK(values->cLocks == 0);
  }
  SafeArrayDestroy(values);
}

}  // namespace zavrel::tests
