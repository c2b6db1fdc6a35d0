// The companions of nonparametric tests in their places, missing, broken, and without their
// functions.
#include <doctest/doctest.h>

#include "integration/host_process.h"
#include "platform/module.h"

namespace zavrel::tests {
namespace {

const std::filesystem::path kTests =
    "ZavrelFuncs Extensions" / LibraryFileName("NonparametricTests", 8);
const std::filesystem::path kUtility = LibraryFileName("EUtilityLibrary", 8);

struct Seen {
  std::string shown, log;
};
Seen Show(const std::filesystem::path& folder, const std::string& formula) {
  Seen seen;
  seen.log = LogOf(folder / "temp", [&] { seen.shown = Evaluated(formula, folder); });
  return seen;
}

/// One function of each library, and one that needs neither.
constexpr const char* kBoth =
    "=IFERROR(ZavWSRExactPValMaxSample(),1)+IFERROR(ZavKWData(2,{1,2},{3,4}),2)+ZavMean(4,4)";

}  // namespace

TEST_CASE("with both companions in their places") {
  const std::filesystem::path folder = CopyOfWhatShips("nonparametric");
  const Seen seen = Show(folder, kBoth);
  CHECK(seen.shown == "1005");
  CHECK(Occurrences(seen.log, "Could not") + Occurrences(seen.log, "could not") == 0);
}

TEST_CASE("without the extension, or with a broken one, its functions are not there") {
  const std::filesystem::path folder = CopyOfWhatShips("without extension");
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  std::string present = "=0", absent = "=0";
  for (const std::string& call : zavhost::tests::CasesIn(R"(
           WSRExactPValMaxSample() | WSRpValue(3,5,1) | WSRTies({1,2},0)
           WSRTieCorrectionTerm({1,2},0) | WSRNegative({1,2},0) | WSRPositive({1,2},0)
           WSRPairTies({1,2},{3,5},0) | WSRPairTieCorrectionTerm({1,2},{3,5},0)
           WSRPairNegative({1,2},{3,5},0) | WSRPairPositive({1,2},{3,5},0)
           MWUsingNormalApproximation(2,2) | MWpValue(2,2,3,0) | MWTies({1,2},{3,4})
           MWTieCorrectionTerm({1,2},{3,4}) | MWRankSum1({1,2},{3,4}) | MWRankSum2({1,2},{3,4})
           KWData(2,{1,2},{3,4}) | KWpValue(0,{1,2},{3,4}) | KWpValueComputationMethod({2,2}))")) {
    present += "+ISNUMBER(Zav" + call + "+0)";
    absent += "+ISERROR(Zav" + call + "+0)";
  }
  CHECK(Show(CopyOfWhatShips("with extension"), present).shown == "19");
  CHECK(Show(folder, absent).shown == "19");
  CHECK(Show(folder, "=ZavMWpValue(2,2,3,0)").shown == "#NAME?");

  std::filesystem::create_directories(folder / "ZavrelFuncs Extensions");
  std::ofstream(folder / kTests) << "no library";
  CHECK(Show(folder, absent).shown == "19");
  CHECK(Show(folder, "=ZavMWpValue(2,2,3,0)").shown == "#NAME?");
  CHECK(Show(folder, "=ZavMean(4,4)").shown == "4");
}

TEST_CASE("a companion without a function is told of once, and released") {
  const std::filesystem::path folder = CopyOfWhatShips("other tests");
  Replace(folder / kTests, SIBLING_LIBRARY);
  const Seen seen = Show(folder, kBoth);
  CHECK(seen.shown == "7");
  CHECK(Occurrences(seen.log,
                    "NonparametricTests: The function WSRExactPValMaxSample could not be "
                    "found in ") == 1);
  CHECK(Occurrences(seen.log, kTests.filename().string()) == 1);
  CHECK(Show(folder, "=ZavMWTies({1,2},{3,4})").shown == "#VALUE!");
}

TEST_CASE("without the second companion none of the functions computes") {
  const std::filesystem::path folder = CopyOfWhatShips("without utility");
  std::filesystem::remove(folder / kUtility);
  const Seen missing = Show(folder, kBoth);
  CHECK(missing.shown == "7");
  CHECK(Occurrences(missing.log, "EUtilityLibraryLoadDll: Could not load ") == 1);
  CHECK(Occurrences(missing.log, kUtility.string() + ".\n") == 1);

  Replace(folder / kUtility, SIBLING_LIBRARY);
  const Seen other = Show(folder, kBoth);
  CHECK(other.shown == "7");
  CHECK(Occurrences(other.log, "NonparametricTests: The function KWData could not be found in ") ==
        1);
}

}  // namespace zavrel::tests
