// The companions of nonparametric tests in their places, missing, broken, and without their
// functions.
#include <doctest/doctest.h>

#include "excel/xloper12.h"
#include "integration/entry_point.h"
#include "integration/host_process.h"

namespace zavrel::tests {
namespace {

constexpr const char* kTests = "ZavrelFuncs Extensions/NonparametricTests8_x64.DLL";
constexpr const char* kUtility = "EUtilityLibrary8_x64.DLL";

struct Seen {
  std::string shown, log;
};
Seen Show(const std::filesystem::path& folder, const wchar_t* formula) {
  Seen seen;
  seen.log = LogOf(folder / "temp", [&] { seen.shown = Evaluated(formula, folder); });
  return seen;
}

/// One function of each library, and one that needs neither.
constexpr const wchar_t* kBoth =
    L"=IFERROR(ZavWSRExactPValMaxSample(),1)+IFERROR(ZavKWData(2,{1,2},{3,4}),2)+ZavMean(4,4)";

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

TEST_CASE("a companion without a function is told of once, and released") {
  const std::filesystem::path folder = CopyOfWhatShips("other tests");
  Replace(folder / kTests, SIBLING_LIBRARY);
  const Seen seen = Show(folder, kBoth);
  CHECK(seen.shown == "7");
  CHECK(Occurrences(seen.log,
                    "NonparametricTests: The function WSRExactPValMaxSample could not be "
                    "found in ") == 1);
  CHECK(Occurrences(seen.log, "\\ZavrelFuncs Extensions\\NonparametricTests8_x64.DLL") == 1);
  CHECK(Show(folder, L"=ZavMWTies({1,2},{3,4})").shown == "#VALUE!");
}

TEST_CASE("without the second companion none of the functions computes") {
  const std::filesystem::path folder = CopyOfWhatShips("without utility");
  std::filesystem::remove(folder / kUtility);
  const Seen missing = Show(folder, kBoth);
  CHECK(missing.shown == "7");
  CHECK(Occurrences(missing.log, "EUtilityLibraryLoadDll: Could not load ") == 1);
  CHECK(Occurrences(missing.log, "\\EUtilityLibrary8_x64.DLL.\n") == 1);

  Replace(folder / kUtility, SIBLING_LIBRARY);
  const Seen other = Show(folder, kBoth);
  CHECK(other.shown == "7");
  CHECK(Occurrences(other.log, "NonparametricTests: The function KWData could not be found in ") ==
        1);
}

}  // namespace zavrel::tests
