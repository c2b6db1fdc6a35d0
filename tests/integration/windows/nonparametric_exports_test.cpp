// What a macro gets from the functions of the extension.
#include "excel/xloper12.h"
#include "integration/entry_point.h"
#include "integration/host_process.h"

namespace zavrel::tests {

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
    const Outcome outcome = RunProgram(program, {"--no-skip", "--test-case=child process: an ex*"});
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
