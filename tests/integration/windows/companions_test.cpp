// The companions and the sibling product's library in their places, missing, broken, and without
// their functions.
#include <doctest/doctest.h>

#include "excel/xloper12.h"
#include "integration/entry_point.h"
#include "integration/host_process.h"

namespace zavrel::tests {
namespace {

constexpr const char* kDistributions = "Pdflib8_x64.DLL";
constexpr const char* kTests = "ZavrelFuncs Extensions/NonparametricTests8_x64.DLL";
constexpr const char* kUtility = "EUtilityLibrary8_x64.DLL";
constexpr const char* kSibling = "QLX4_x64.DLL";

struct Seen {
  std::string shown, log;
};
Seen Show(const std::filesystem::path& folder, const wchar_t* formula) {
  Seen seen;
  seen.log = LogOf(folder / "temp", [&] { seen.shown = Evaluated(formula, folder); });
  return seen;
}

/// One function of each library of tests, and one that needs neither.
constexpr const wchar_t* kBoth =
    L"=IFERROR(ZavWSRExactPValMaxSample(),1)+IFERROR(ZavKWData(2,{1,2},{3,4}),2)+ZavMean(4,4)";
constexpr const wchar_t* kTwoDistributions =
    L"=IF(ISERROR(ZavNormal(0,1,\"\"xtop\"\",0)),ZavChisq(3,\"\"Mean\"\"))";

}  // namespace

TEST_CASE(
    "without a companion, or one of its functions, the rest works, and the log says so once") {
  const struct {
    const char *file, *in_its_place;
    const wchar_t* formula;
    const char *shown, *logged;
  } cases[] = {
      {kDistributions, nullptr, kTwoDistributions, "#NUM!", "Could not load "},
      {kDistributions, nullptr, L"=ZavNormal(0,1,\"\"Mean\"\")", "#NUM!", nullptr},
      {kDistributions, nullptr, L"=ZavMean(1,2,3)", "2", nullptr},
      {kDistributions, nullptr, L"=ZavLilliefors({1,2,4})", "#VALUE!", nullptr},
      {kDistributions, nullptr, L"=ZavQQPlotZValue({1,2,4},1)", "#VALUE!", nullptr},
      {kDistributions, SIBLING_LIBRARY, kTwoDistributions, "#NUM!",
       "The function pdfNormal could not be found in "},
      {kDistributions, PARTIAL_PDFLIB, kTwoDistributions, "#NUM!",
       "The function pdfF could not be found in "},
      {kTests, SIBLING_LIBRARY, kBoth, "7",
       "NonparametricTests: The function WSRExactPValMaxSample could not be found in "},
      {kTests, SIBLING_LIBRARY, L"=ZavMWTies({1,2},{3,4})", "#VALUE!", nullptr},
      {kUtility, nullptr, kBoth, "7", "EUtilityLibraryLoadDll: Could not load "},
      {kUtility, SIBLING_LIBRARY, kBoth, "7",
       "NonparametricTests: The function KWData could not be found in "},
      // Three values from 2 to 7, the method as given (-1 when not), a tenth of p.
      {kSibling, SIBLING_LIBRARY, L"=ZavPercentile({7,2,3},0.25,4)", "3013.025", nullptr},
      {kSibling, SIBLING_LIBRARY, L"=ZavMedian({7,2,3})", "3008.05", nullptr},
      {kSibling, SIBLING_LIBRARY, L"=ZavQuartile({7,2,3},4,0)", "3009.1", nullptr},
      // The library reports a failure; it is not asked.
      {kSibling, SIBLING_LIBRARY, L"=ZavMedian({7,2,3},5)", "#VALUE!", nullptr},
      {kSibling, SIBLING_LIBRARY, L"=ZavMedian({7,2,3},6)", "#VALUE!", nullptr},
      {kSibling, SIBLING_LIBRARY, L"=ZavMedian(\"\"\"\")", "#VALUE!", nullptr},
      {kSibling, SIBLING_LIBRARY, L"=IF(INT(ZavRand())=100,1,0)", "1", nullptr},
  };
  for (const auto& given : cases) {
    const std::filesystem::path folder = CopyOfWhatShips("companions");
    std::filesystem::remove(folder / given.file);
    if (given.in_its_place != nullptr) Replace(folder / given.file, given.in_its_place);
    const Seen seen = Show(folder, given.formula);
    INFO(given.file, ", case ", (&given - cases), ":\n", seen.log);
    CHECK(seen.shown == given.shown);
    if (given.logged == nullptr) continue;
    CHECK(Occurrences(seen.log, given.logged) == 1);
    CHECK(Occurrences(seen.log,
                      '\\' + std::filesystem::path(given.file).make_preferred().string()) == 1);
  }
  const Seen sound = Show(CopyOfWhatShips("companions"), kBoth);
  CHECK(sound.shown == "1005");
  CHECK(Occurrences(sound.log, "Could not") + Occurrences(sound.log, "could not") == 0);
}

TEST_CASE("without the extension, or with a broken one, its functions are not there") {
  const std::filesystem::path folder = CopyOfWhatShips("without extension");
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  std::wstring present = L"=0", absent = L"=0";
  for (const std::string& call : zavhost::tests::CasesIn(R"(
           WSRExactPValMaxSample() | WSRpValue(3,5,1) | WSRTies({1,2},0)
           WSRTieCorrectionTerm({1,2},0) | WSRNegative({1,2},0) | WSRPositive({1,2},0)
           WSRPairTies({1,2},{3,5},0) | WSRPairTieCorrectionTerm({1,2},{3,5},0)
           WSRPairNegative({1,2},{3,5},0) | WSRPairPositive({1,2},{3,5},0)
           MWUsingNormalApproximation(2,2) | MWpValue(2,2,3,0) | MWTies({1,2},{3,4})
           MWTieCorrectionTerm({1,2},{3,4}) | MWRankSum1({1,2},{3,4}) | MWRankSum2({1,2},{3,4})
           KWData(2,{1,2},{3,4}) | KWpValue(0,{1,2},{3,4}) | KWpValueComputationMethod({2,2}))")) {
    const std::wstring wide(call.begin(), call.end());
    present += L"+ISNUMBER(Zav" + wide + L"+0)";
    absent += L"+ISERROR(Zav" + wide + L"+0)";
  }
  CHECK(Show(CopyOfWhatShips("with extension"), present.c_str()).shown == "19");
  CHECK(Show(folder, absent.c_str()).shown == "19");
  CHECK(Show(folder, L"=ZavMWpValue(2,2,3,0)").shown == "#NAME?");

  std::filesystem::create_directories(folder / "ZavrelFuncs Extensions");
  std::ofstream(folder / kTests) << "no library";
  CHECK(Show(folder, absent.c_str()).shown == "19");
  CHECK(Show(folder, L"=ZavMWpValue(2,2,3,0)").shown == "#NAME?");
  CHECK(Show(folder, L"=ZavMean(4,4)").shown == "4");
}

/// By a process of its own, for an add-in stays loaded; see below.
TEST_CASE("child process: an export of the add-in in the current folder" * doctest::skip()) {
  zavhost::Engine engine(BookOf({"A: 1"}), {});
  engine.LoadAddIn(std::filesystem::absolute("ZavrelFuncs8_x64.xll"));
  engine.Announce(5);
  auto* const largest = EntryPoint<XLOPER12*()>("ZavrelWSRExactPValMaxSample");
  for (int i = 0; i < 2; ++i) {
    const XLOPER12* const result = largest();
    CHECK((result->xltype & xltypeMask) == xltypeErr);
    CHECK(result->val.err == xlerrValue);
  }
  CloseClean(engine);
}

TEST_CASE("an export that is called without the extension tells what could not be loaded") {
  const std::filesystem::path folder = CopyOfWhatShips("export without extension");
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  wchar_t program[MAX_PATH] = L"";
  REQUIRE(GetModuleFileNameW(nullptr, program, MAX_PATH) != 0);
  const std::filesystem::path before = std::filesystem::current_path();
  const std::string log = LogOf(folder / "temp", [&] {
    std::filesystem::current_path(folder);
    const Outcome outcome = RunProgram(program, L"--no-skip \"--test-case=child process: an ex*\"");
    std::filesystem::current_path(before);
    CHECK_MESSAGE(outcome.exit_code == 0, outcome.output);
    CHECK(outcome.output.find("| 1 passed") != std::string::npos);
  });
  CHECK(Occurrences(log, "NonparametricTestsLoadDll: Could not load ") == 1);
  CHECK(Occurrences(log, "\\ZavrelFuncs Extensions\\NonparametricTests8_x64.DLL.\n") == 1);
  CHECK(Occurrences(log, "EUtilityLibraryLoadDll") == 0);
}

TEST_CASE("a macro draws a random number") {
  auto engine = ServingAddIn();
  auto* const draw = EntryPoint<double()>("ZavrelRandVB");
  for (int i = 0; i < 100; ++i) {
    const double number = draw();
    CHECK((number >= 0 && number < 1));
  }
  CloseClean(*engine);
}

}  // namespace zavrel::tests
