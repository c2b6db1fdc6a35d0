// What only Windows shows: both routes to the callback, and what is said of a crash.
#include <windows.h>

#include <doctest/doctest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "host/planted_add_in.h"

namespace zavhost::tests {
namespace {

constexpr char kFormulaVariable[] = "ZAVHOST_CRASHING_FORMULA";

struct Outcome {
  DWORD exit_code = 0;
  std::string errors;
};

/// This program once more, with the formula to evaluate in its environment.
Outcome CrashWith(const char* formula) {
  wchar_t program[MAX_PATH];
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::filesystem::path errors =
      std::filesystem::temp_directory_path() /
      ("zavhost-crash-" + std::to_string(GetCurrentProcessId()) + ".txt");
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  const HANDLE file = CreateFileW(errors.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                  CREATE_ALWAYS, 0, nullptr);
  std::wstring line = L"\"" + std::wstring(program) + L"\" \"--test-case=child that crashes\"";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = file;
  startup.hStdError = file;
  PROCESS_INFORMATION process{};
  SetEnvironmentVariableA(kFormulaVariable, formula);
  REQUIRE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                         &startup, &process));
  SetEnvironmentVariableA(kFormulaVariable, nullptr);
  CloseHandle(file);
  Outcome outcome;
  CHECK(WaitForSingleObject(process.hProcess, 60'000) == WAIT_OBJECT_0);
  GetExitCodeProcess(process.hProcess, &outcome.exit_code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  {
    std::ifstream stream(errors, std::ios::binary);
    outcome.errors.assign(std::istreambuf_iterator<char>(stream), {});
  }
  std::filesystem::remove(errors);
  return outcome;
}

}  // namespace

TEST_CASE("the callback is found in the program, or through XLCall32 when that is loaded") {
  {
    auto engine = PlantedEngine();
    CHECK(GetModuleHandleW(L"XLCall32") == nullptr);
    CHECK(Shown(*engine, u"GoodSum(A1:A5)") == "15");
  }
  EngineOptions options;
  options.call_library = PLANTED_XLCALL32;
  auto engine = PlantedEngine(SmallWorkbook(), options);
  CHECK(Shown(*engine, u"GoodSum(A1:A5)") == "15");
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
  Shown(*engine, Utf16FromUtf8(formula));
}

TEST_CASE("a crash names formula and cell, and has an exit code of its own") {
  const auto check = [](const char* formula, const char* cause) {
    const Outcome outcome = CrashWith(formula);
    CAPTURE(outcome.errors);
    CHECK(outcome.exit_code == 3);
    CHECK(outcome.errors.find(std::string("Sheet1!H2: =") + formula) != std::string::npos);
    CHECK(outcome.errors.find(cause) != std::string::npos);
  };
  check("FaultCrash()", "writing address 0x0");
  check("FaultAbort()", "abort");
}

}  // namespace zavhost::tests
