// What only Windows shows: both routes to the callback, and what is said of a crash.
#include <cstdlib>

#include "host/planted_add_in.h"
#include "support/run_program.h"

namespace zavhost::tests {
namespace {

constexpr char kFormulaVariable[] = "ZAVHOST_CRASHING_FORMULA";

/// This program once more, with the formula to evaluate in its environment.
zavrel::tests::Outcome CrashWith(const char* formula) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  SetEnvironmentVariableA(kFormulaVariable, formula);
  const auto outcome = zavrel::tests::RunProgram(program, L"\"--test-case=child that crashes\"");
  SetEnvironmentVariableA(kFormulaVariable, nullptr);
  return outcome;
}

}  // namespace

TEST_CASE("the callback is found in the program, or through XLCall32 when that is loaded") {
  {
    auto engine = PlantedEngine();
    CHECK(GetModuleHandleW(L"XLCall32") == nullptr);
    CHECK(Shown(*engine, "GoodSum(A1:A5)") == "15");
  }
  EngineOptions options;
  options.call_library = PLANTED_XLCALL32;
  auto engine = PlantedEngine(SmallWorkbook(), options);
  CHECK(Shown(*engine, "GoodSum(A1:A5)") == "15");
  const HMODULE library = GetModuleHandleW(L"XLCall32");
  REQUIRE(library != nullptr);
  auto* times_asked = reinterpret_cast<void*>(GetProcAddress(library, "TimesAsked"));
  REQUIRE(times_asked != nullptr);
  CHECK(reinterpret_cast<int (*)()>(times_asked)() == 1);
  engine->CloseAddIn();
  CHECK(engine->judge().count() == 0);
  CHECK(GetModuleHandleW(L"XLCall32") == nullptr);
}

TEST_CASE("child that crashes" * doctest::description("does nothing without its variable")) {
  const char* formula = std::getenv(kFormulaVariable);
  if (formula == nullptr) return;
  auto engine = PlantedEngine();
  Shown(*engine, formula);
}

TEST_CASE("a crash names formula and cell, and has an exit code of its own") {
  for (const auto& [formula, cause] :
       {std::pair{"FaultCrash()", "writing address 0x0"}, {"FaultAbort()", "abort"}}) {
    const auto outcome = CrashWith(formula);
    CAPTURE(outcome.errors);
    CHECK(outcome.exit_code == 3);
    CHECK(outcome.errors.find(std::string("Sheet1!U2: =") + formula) != std::string::npos);
    CHECK(outcome.errors.find(cause) != std::string::npos);
  }
}

}  // namespace zavhost::tests
