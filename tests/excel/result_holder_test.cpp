#include "excel/result_holder.h"

#include <doctest/doctest.h>

#include <list>

#include "diagnostics/vek_exception.h"
#include "platform/thread_slot.h"
#include "support/counted_allocations.h"

namespace zavrel::tests {
namespace {

struct OpenHolder {
  OpenHolder() { OpenResultHolder(); }
  ~OpenHolder() { CloseResultHolder(); }
};

bool IsNA(const XLOPER12* record) { return record == &XXloper::Error(ExcelError::kNA).record(); }

}  // namespace

TEST_CASE("without memory to hold it a result becomes #N/A, and the next one is whole") {
  const Argument argument(2, 2, {u"a", 1.0, u"b", true});
  const XXloper result = XXloper::FromArgument(argument);
  int failures = 0;
  for (bool failed = true; failed; ++failures) {
    const OpenHolder holder;
    until_failure = failures;
    const XLOPER12* const returned = ReturnToExcel(result);
    failed = until_failure < 0;
    until_failure = -1;
    CHECK(IsNA(returned) == failed);
    CHECK(Shown(*ReturnToExcel(result)) == "a,1;b,TRUE;");
  }
  CHECK(failures > 5);  // the holder, its place in the thread's slot, the array and its texts
}

TEST_CASE("opened twice it keeps what it holds") {
  const OpenHolder holder;
  const XLOPER12* const returned = ReturnToExcel(XXloper::Text(u"kept"));
  OpenResultHolder();
  CHECK(TextIn(*returned) == u"kept");
}

TEST_CASE("where the process has no slot left, opening says so, and results become #N/A") {
  std::list<ThreadSlot> slots;
  do slots.emplace_back([](void*) {});
  while (slots.back().ok());
  CHECK_THROWS_AS(OpenResultHolder(), VekKernelObjectError);
  CHECK(IsNA(ReturnToExcel(XXloper::Number(1))));
  slots.clear();
  const OpenHolder holder;
  CHECK(ReturnToExcel(XXloper::Number(1))->val.num == 1);
}

}  // namespace zavrel::tests
