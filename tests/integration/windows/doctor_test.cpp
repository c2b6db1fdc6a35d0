// ZavHost doctor on sound and unsound installations.
#include <doctest/doctest.h>

#include <algorithm>

#include "integration/host_process.h"

namespace zavrel::tests {
namespace {

Outcome Doctor(const std::filesystem::path& folder, const wchar_t* options = L"") {
  return ZavHost(std::wstring(L"doctor ") + options, 60, folder);
}

/// The lines of problems.
std::string Problems(const Outcome& outcome) {
  std::string problems;
  for (std::size_t at = 0; at < outcome.output.size();) {
    const std::size_t end = std::min(outcome.output.find('\n', at), outcome.output.size());
    const std::string line = outcome.output.substr(at, end - at);
    if (line.starts_with("  PROBLEM")) problems += line + '\n';
    at = end + 1;
  }
  return problems;
}

/// Excel's list of add-ins, without the values of the test once it ends.
class ExcelOptions {
 public:
  ExcelOptions() {
    REQUIRE(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Office\\16.0\\Excel\\Options",
                            0, nullptr, 0, KEY_WRITE, nullptr, &key_, nullptr) == ERROR_SUCCESS);
  }
  ~ExcelOptions() {
    for (const wchar_t* name : {L"OPEN7", L"OPEN8"}) RegDeleteValueW(key_, name);
    RegCloseKey(key_);
  }
  ExcelOptions(const ExcelOptions&) = delete;
  ExcelOptions& operator=(const ExcelOptions&) = delete;
  void Set(const wchar_t* name, const std::wstring& text) const {
    RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

 private:
  HKEY key_ = nullptr;
};

}  // namespace

TEST_CASE("the doctor finds what ships sound, and says what it looked at") {
  const Outcome outcome = Doctor(AddInFile().parent_path());
  CHECK(outcome.exit_code == 0);
  CHECK(outcome.errors.empty());
  CHECK_MESSAGE(Problems(outcome).empty(), Problems(outcome));
  for (const char* part : {"ZavrelFuncs8_x64.xll", "English, German", "=ZavF(2,2,", "Log"})
    CHECK_MESSAGE(Contains(outcome.output, part), part);
  CHECK(Contains(Doctor(AddInFile().parent_path(), L"--json").output, "\"sound\": true"));
}

TEST_CASE("a missing companion is named, with what fails for want of it") {
  const std::filesystem::path folder = CopyOfWhatShips("no distributions");
  std::filesystem::remove(folder / "Pdflib8_x64.DLL");
  const Outcome outcome = Doctor(folder);
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(Problems(outcome), "Pdflib8_x64.DLL"));
  CHECK(Contains(Problems(outcome), "=ZavNormal("));
  CHECK(!Contains(Problems(outcome), "=ZavMean("));

  std::filesystem::remove(folder / "ZavrelMessages8_x64.DLL");
  CHECK(Contains(Problems(Doctor(folder)), "ZavrelMessages8_x64.DLL"));
}

TEST_CASE("half of the rank tests is a problem, none of them is not") {
  const std::filesystem::path folder = CopyOfWhatShips("rank tests");
  std::filesystem::remove(folder / "EUtilityLibrary8_x64.DLL");
  CHECK(Contains(Problems(Doctor(folder)), "EUtilityLibrary8_x64.DLL"));
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  CHECK(Doctor(folder).exit_code == 0);
}

TEST_CASE("files of other versions and without one are told from those that belong") {
  const std::filesystem::path folder = CopyOfWhatShips("mixed versions");
  // A library of the system's has a version of its own, the test's stand-in none.
  wchar_t system[MAX_PATH];
  REQUIRE(GetSystemDirectoryW(system, MAX_PATH) > 0);
  Replace(folder / "ZavrelMessages8_x64.DLL", std::filesystem::path(system) / "version.dll");
  Replace(folder / "Pdflib8_x64.DLL", SIBLING_LIBRARY);
  const Outcome outcome = Doctor(folder);
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(Problems(outcome), "ZavrelMessages8_x64.DLL"));
  CHECK(Contains(Problems(outcome), "does not match"));
  CHECK(Contains(Problems(outcome), "version none"));
}

TEST_CASE("an add-in that cannot be loaded, or is none, ends in a finding and not in silence") {
  const std::filesystem::path folder = CopyOfWhatShips("no add-in");
  std::filesystem::remove(folder / "ZavrelFuncs8_x64.xll");
  CHECK(Doctor(folder).exit_code == 1);
  CHECK(Contains(Problems(Doctor(folder)), "cannot be loaded"));
  Replace(folder / "ZavrelFuncs8_x64.xll", SIBLING_LIBRARY);
  const Outcome outcome = Doctor(folder);
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(Problems(outcome), "The add-in at work"));
}

TEST_CASE("what Excel refused stands in its log, and the doctor explains it") {
  const std::filesystem::path folder = ScratchFolder() / "excel's log";
  std::filesystem::create_directories(folder);
  const auto problems_with = [&](const std::string& lines) {
    std::ofstream(folder / "VekZavrelFuncs8.log", std::ios::binary)
        << "Wed Nov 25 06:16:34 2026\nExe fileName=C:\\Office\\EXCEL.EXE\n"
        << lines;
    std::string problems;
    WithTemporaryFolder(folder, [&] { problems = Problems(Doctor(AddInFile().parent_path())); });
    return problems;
  };
  CHECK(problems_with("===== ZavrelMean enter =====\n").empty());
  const std::string refused = problems_with(
      "Registration refused: ZavMean, return code 0, value #VALUE!\n"
      "Registration refused: ZavSum, return code 32, value #VALUE!\n");
  CHECK(Contains(refused,
                 "EXCEL.EXE refused 2 functions, the first of them ZavMean, return code "
                 "0, value #VALUE!: one of the arguments was rejected"));
  const std::string without = problems_with(
      "Callback of Excel not found: XLCall32 returned none; return code 32, value #VALUE!\n"
      "Registration refused: ZavrelFuncsVersion, return code 32, value #VALUE!\n");
  CHECK(Contains(without, "in EXCEL.EXE, the add-in could not call Excel"));
  CHECK(!Contains(without, "refused"));
}

TEST_CASE("two copies are named: in a running program, in Excel's list and in its start folder") {
  const std::filesystem::path ships = AddInFile().parent_path(), other = CopyOfWhatShips("update");
  {
    const HMODULE first = LoadLibraryW(AddInFile().c_str());
    const HMODULE second = LoadLibraryW((other / "ZavrelFuncs8_x64.xll").c_str());
    CHECK((first != nullptr && second != nullptr && first != second));
    // What a macro's declaration finds.
    CHECK(GetModuleHandleW(L"ZavrelFuncs8_x64.xll") == first);
    const std::string problems = Problems(Doctor(ships));
    CHECK(Contains(problems, "Running integration_test.exe"));
    const std::size_t used = problems.find("functions and macros use " + AddInFile().string());
    CHECK(used != std::string::npos);
    CHECK(problems.find(", not " + other.string(), used) != std::string::npos);
    FreeLibrary(second);
    const Outcome one = Doctor(ships);
    CHECK(Contains(one.output, "has loaded " + AddInFile().string()));
    CHECK(!Contains(Problems(one), "copies"));
    FreeLibrary(first);
  }
  {
    const ExcelOptions options;
    options.Set(L"OPEN7", L"/R \"" + AddInFile().wstring() + L"\"");
    options.Set(L"OPEN8", L"/R \"" + (other / "ZavrelFuncs8_x64.xll").wstring() + L"\"");
    CHECK(Contains(Problems(Doctor(ships)), "Excel opens 2 copies: untick all but one"));
  }
  const std::filesystem::path roaming = ScratchFolder() / "roaming";
  std::filesystem::create_directories(roaming / "Microsoft/Excel/XLSTART");
  std::ofstream(roaming / "Microsoft/Excel/XLSTART/ZavrelCompanion.xlam") << "a user's own";
  wchar_t before[MAX_PATH + 1] = L"";
  GetEnvironmentVariableW(L"APPDATA", before, MAX_PATH);
  SetEnvironmentVariableW(L"APPDATA", roaming.c_str());
  CHECK(Contains(Problems(Doctor(ships)), "Excel's start folder"));
  SetEnvironmentVariableW(L"APPDATA", before);
}

TEST_CASE("the doctor tells what Excel opens, the add-in and a companion each for itself") {
  const ExcelOptions options;
  const std::filesystem::path folder = AddInFile().parent_path();
  const std::wstring add_in = (folder / "ZavrelFuncs8_x64.xll").make_preferred().wstring();
  CHECK(Contains(Doctor(folder).output, "not in this user's list"));

  options.Set(L"OPEN7", L"/R \"" + add_in + L"\"");
  Outcome outcome = Doctor(folder);
  CHECK(Contains(outcome.output, "OPEN7 = /R"));
  CHECK(!Contains(outcome.output, "another copy"));
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(Problems(outcome), "Excel opens no ZavrelCompanion.xlam"));

  options.Set(L"OPEN8", L"\"" + (folder / "nowhere/ZavrelCompanion.xlam").wstring() + L"\"");
  CHECK(Contains(Problems(Doctor(folder)), "the workbook does not exist: OPEN8"));

  const std::filesystem::path companion = ScratchFolder() / "ZavrelCompanion.xlam";
  std::ofstream(companion) << "a user's own";
  options.Set(L"OPEN8", L"\"" + companion.wstring() + L"\"");
  outcome = Doctor(folder);
  CHECK_MESSAGE(outcome.exit_code == 0, Problems(outcome));
  CHECK(Contains(outcome.output, "OPEN8 = "));

  // Windows does not tell cases apart; a folder that begins alike is another one.
  std::wstring capitals = add_in;
  CharUpperW(capitals.data());
  options.Set(L"OPEN7", L"/R \"" + capitals + L"\"");
  CHECK(!Contains(Doctor(folder).output, "another copy"));
  for (const std::wstring& other :
       {folder.wstring() + L"2\\ZavrelFuncs8_x64.xll", std::wstring(L"ZavrelFuncs8_x64.xll")}) {
    options.Set(L"OPEN7", L"/R \"" + other + L"\"");
    CHECK(Contains(Doctor(folder).output, "opens another copy: OPEN7"));
  }
}

}  // namespace zavrel::tests
