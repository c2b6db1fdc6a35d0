// One call into the host after another fails, in every way that a call can fail.
#include <doctest/doctest.h>

#include "distribution_functions/examples.h"
#include "faults/host_faults.h"
#include "support/open_add_in.h"

namespace zavrel::tests {

TEST_CASE("whichever call into the host fails, no wrong number of a distribution is shown") {
  OpenAddIn add_in;
  FillSheet(add_in.excel);
  int failures = 0;
  for (const Example& example : ExamplesOf(Example::Sample::kRange)) {
    CHECK_FALSE(example.Call().is_failure);
    failures += FailEachCallback(
        add_in.excel, {.name = example.name(),
                       .call = [&] { return example.Call(); },
                       .forget = [] { Session::Current()->KeepUpCaches(UpkeepMode::kClearAll); }});
    CHECK(add_in.excel.unfreed() <= 1);  // the latest result may hold a value of the host's
  }
  CHECK(failures > 1'000);
}

}  // namespace zavrel::tests
