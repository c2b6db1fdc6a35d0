// With the sibling product's library beside the add-in, percentiles and random numbers come from
// there.
#include <doctest/doctest.h>

#include "integration/host_process.h"
#include "platform/module.h"

namespace zavrel::tests {

TEST_CASE("a sibling library beside the add-in computes the percentiles and the random numbers") {
  const std::filesystem::path folder = CopyOfWhatShips("with sibling");
  Replace(folder / LibraryFileName("QLX", 4), SIBLING_LIBRARY);
  const auto shown = [&](const char* formula) { return Evaluated(formula, folder); };
  // Three values from 2 to 7, the method as given (-1 when not), a tenth of p.
  CHECK(shown("=ZavPercentile({7,2,3},0.25,4)") == "3013.025");
  CHECK(shown("=ZavMedian({7,2,3})") == "3008.05");
  CHECK(shown("=ZavQuartile({7,2,3},4,0)") == "3009.1");
  CHECK(shown("=ZavMedian({7,2,3},5)") == "#VALUE!");  // the library reports a failure
  CHECK(shown("=ZavMedian({7,2,3},6)") == "#VALUE!");  // the library is not asked
  CHECK(shown("=ZavMedian(\"\")") == "#VALUE!");
  CHECK(shown("=IF(INT(ZavRand())=100,1,0)") == "1");
}

}  // namespace zavrel::tests
