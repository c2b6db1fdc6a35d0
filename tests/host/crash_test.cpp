// What is said of an add-in that crashes. Sanitizers say more than the host then.
#ifndef __SANITIZE_ADDRESS__
#include <doctest/doctest.h>

#include <cstdlib>

#include "host/planted_add_in.h"
#include "platform/module.h"
#include "support/run_program.h"

namespace zavhost::tests {
namespace {

constexpr char kFormulaVariable[] = "ZAVHOST_CRASHING_FORMULA";

/// This program once more, with the formula to evaluate in its environment.
zavrel::tests::Outcome CrashWith(const char* formula) {
  const zavrel::tests::EnvironmentVariable variable(kFormulaVariable, formula);
  return zavrel::tests::RunProgram(zavrel::HostExecutablePath(),
                                   {"--test-case=child that crashes"});
}

}  // namespace

TEST_CASE("child that crashes" * doctest::description("does nothing without its variable")) {
  const char* formula = std::getenv(kFormulaVariable);
  if (formula == nullptr) return;
  auto engine = PlantedEngine();
  Shown(*engine, formula);
}

TEST_CASE("a crash names formula and cell, and has an exit code of its own") {
  for (const auto& [formula, cause] : {std::pair{"FaultCrash()", " address 0x0"},
                                       {"FaultDivide()", "integer division by zero"},
                                       {"FaultIllegal()", "illegal instruction"},
                                       {"FaultAbort()", "abort"}}) {
    const auto outcome = CrashWith(formula);
    CAPTURE(outcome.errors);
    CHECK(outcome.exit_code == 3);
    CHECK(outcome.errors.find(std::string("Sheet1!U2: =") + formula) != std::string::npos);
    CHECK(outcome.errors.find(cause) != std::string::npos);
  }
}

}  // namespace zavhost::tests
#endif
