// The distribution companion missing from beside the add-in, and without a function.
#include <utility>

#include "integration/host_process.h"
#include "platform/module.h"

namespace zavrel::tests {
namespace {

/// The log of a process that shows two distributions.
std::string DistributionLog(const std::filesystem::path& folder) {
  return LogOf(folder / "temp", [&] {
    CHECK(Evaluated(R"(=IF(ISERROR(ZavNormal(0,1,"xtop",0)),ZavChisq(3,"Mean")))", folder) ==
          "#NUM!");
  });
}

}  // namespace

TEST_CASE("without the companion there are no distributions, and the log says so once") {
  const std::filesystem::path folder = CopyOfWhatShips("without distributions");
  std::filesystem::remove(folder / LibraryFileName("Pdflib", 8));
  for (const auto& [formula, shown] : {std::pair{R"(=ZavNormal(0,1,"Mean"))", "#NUM!"},
                                       {"=ZavMean(1,2,3)", "2"},
                                       {"=ZavLilliefors({1,2,4})", "#VALUE!"},
                                       {"=ZavQQPlotZValue({1,2,4},1)", "#VALUE!"}})
    CHECK(Evaluated(formula, folder) == shown);
  CHECK(Occurrences(DistributionLog(folder), "Could not load ") == 1);

  // A companion without a function counts as none.
  for (const auto& [file, missing] :
       {std::pair{SIBLING_LIBRARY, "pdfNormal"}, {PARTIAL_PDFLIB, "pdfF"}}) {
    Replace(folder / LibraryFileName("Pdflib", 8), file);
    const std::string line = std::string("The function ") + missing + " could not be found in ";
    CHECK(Occurrences(DistributionLog(folder), line) == 1);
  }
}

}  // namespace zavrel::tests
