// One allocation after another fails. The functions of distributions then give an error or the
// right value, and the next call the right one.
#include <doctest/doctest.h>

#include "distribution_functions/examples.h"
#include "support/counted_allocations.h"
#include "support/open_add_in.h"

namespace zavrel::tests {

TEST_CASE("whichever allocation fails, no wrong number of a distribution is shown") {
  OpenAddIn add_in;
  add_in.excel.caller = Area(20, 25, 0, 1);
  const auto forget = [] { Session::Current()->KeepUpCaches(UpkeepMode::kClearAll); };
  int failures = 0;
  for (const Example& example : ExamplesOf(Example::Sample::kArray)) {
    forget();
    const Outcome right = example.Call();
    INFO(example.name(), ": ", right.shown);
    CHECK_FALSE(right.is_failure);
    // A fit makes thousands of distributions; of its later allocations only some fail.
    for (int k = 0;; k += 1 + k / 200) {
      forget();
      bool failed = false;
      const Outcome outcome = example.Call([&](bool begins) {
        if (!begins) failed = until_failure < 0;
        until_failure = begins ? k : -1;
      });
      if (!failed) break;
      ++failures;
      if (!outcome.is_failure && outcome.shown != right.shown)
        FAIL_CHECK("allocation ", k, ": ", outcome.shown);
      if (example.Call().shown != right.shown) FAIL_CHECK("after allocation ", k);
    }
    CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  }
  CHECK(failures > 1'000);
}

}  // namespace zavrel::tests
