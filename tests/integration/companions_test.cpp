// The companions and the sibling product's library in their places, missing, broken, and without
// their functions.
#include <doctest/doctest.h>

#include "integration/host_process.h"
#include "platform/module.h"

namespace zavrel::tests {
namespace {

const std::filesystem::path kDistributions = LibraryFileName("Pdflib", 8);
const std::filesystem::path kTests =
    "ZavrelFuncs Extensions" / LibraryFileName("NonparametricTests", 8);
const std::filesystem::path kUtility = LibraryFileName("EUtilityLibrary", 8);
const std::filesystem::path kSibling = LibraryFileName("QLX", 4);

struct Seen {
  std::string shown, log;
};
Seen Show(const std::filesystem::path& folder, const std::string& formula) {
  Seen seen;
  seen.log = LogOf(folder / "temp", [&] { seen.shown = Evaluated(formula, folder); });
  return seen;
}

/// One function of each library of tests, and one that needs neither.
constexpr const char* kBoth =
    "=IFERROR(ZavWSRExactPValMaxSample(),1)+IFERROR(ZavKWData(2,{1,2},{3,4}),2)+ZavMean(4,4)";
constexpr const char* kTwoDistributions =
    "=IF(ISERROR(ZavNormal(0,1,\"xtop\",0)),ZavChisq(3,\"Mean\"))";

}  // namespace

TEST_CASE(
    "without a companion, or one of its functions, the rest works, and the log says so once") {
  const struct {
    std::filesystem::path file;
    const char *in_its_place, *formula, *shown, *logged;
  } cases[] = {
      {kDistributions, nullptr, kTwoDistributions, "#NUM!", "Could not load "},
      {kDistributions, nullptr, "=ZavNormal(0,1,\"Mean\")", "#NUM!", nullptr},
      {kDistributions, nullptr, "=ZavMean(1,2,3)", "2", nullptr},
      {kDistributions, nullptr, "=ZavLilliefors({1,2,4})", "#VALUE!", nullptr},
      {kDistributions, nullptr, "=ZavQQPlotZValue({1,2,4},1)", "#VALUE!", nullptr},
      {kDistributions, SIBLING_LIBRARY, kTwoDistributions, "#NUM!",
       "The function pdfNormal could not be found in "},
      {kDistributions, PARTIAL_PDFLIB, kTwoDistributions, "#NUM!",
       "The function pdfF could not be found in "},
      {kTests, SIBLING_LIBRARY, kBoth, "7",
       "NonparametricTests: The function WSRExactPValMaxSample could not be found in "},
      {kTests, SIBLING_LIBRARY, "=ZavMWTies({1,2},{3,4})", "#VALUE!", nullptr},
      {kUtility, nullptr, kBoth, "7", "EUtilityLibraryLoadDll: Could not load "},
      {kUtility, SIBLING_LIBRARY, kBoth, "7",
       "NonparametricTests: The function KWData could not be found in "},
      // Three values from 2 to 7, the method as given (-1 when not), a tenth of p.
      {kSibling, SIBLING_LIBRARY, "=ZavPercentile({7,2,3},0.25,4)", "3013.025", nullptr},
      {kSibling, SIBLING_LIBRARY, "=ZavMedian({7,2,3})", "3008.05", nullptr},
      {kSibling, SIBLING_LIBRARY, "=ZavQuartile({7,2,3},4,0)", "3009.1", nullptr},
      // The library reports a failure; it is not asked.
      {kSibling, SIBLING_LIBRARY, "=ZavMedian({7,2,3},5)", "#VALUE!", nullptr},
      {kSibling, SIBLING_LIBRARY, "=ZavMedian({7,2,3},6)", "#VALUE!", nullptr},
      {kSibling, SIBLING_LIBRARY, "=ZavMedian(\"\")", "#VALUE!", nullptr},
      {kSibling, SIBLING_LIBRARY, "=IF(INT(ZavRand())=100,1,0)", "1", nullptr},
  };
  for (const auto& given : cases) {
    const std::filesystem::path folder = CopyOfWhatShips("companions");
    std::filesystem::remove(folder / given.file);
    if (given.in_its_place != nullptr) Replace(folder / given.file, given.in_its_place);
    const Seen seen = Show(folder, given.formula);
    INFO(given.file.string(), ", case ", (&given - cases), ":\n", seen.log);
    CHECK(seen.shown == given.shown);
    if (given.logged == nullptr) continue;
    CHECK(Occurrences(seen.log, given.logged) == 1);
    CHECK(Occurrences(seen.log, (folder / given.file).make_preferred().string()) == 1);
  }
  const Seen sound = Show(CopyOfWhatShips("companions"), kBoth);
  CHECK(sound.shown == "1005");
  CHECK(Occurrences(sound.log, "Could not") + Occurrences(sound.log, "could not") == 0);
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
  const std::string all = std::to_string(FunctionsDeclared("extension"));
  CHECK(Show(CopyOfWhatShips("with extension"), present).shown == all);
  CHECK(Show(folder, absent).shown == all);
  CHECK(Show(folder, "=ZavMWpValue(2,2,3,0)").shown == "#NAME?");

  std::filesystem::create_directories(folder / "ZavrelFuncs Extensions");
  std::ofstream(folder / kTests) << "no library";
  CHECK(Show(folder, absent).shown == all);
  CHECK(Show(folder, "=ZavMWpValue(2,2,3,0)").shown == "#NAME?");
  CHECK(Show(folder, "=ZavMean(4,4)").shown == "4");
}

}  // namespace zavrel::tests
