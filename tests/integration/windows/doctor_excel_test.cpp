// What the doctor says of Excel's settings.
#include <windows.h>

#include <doctest/doctest.h>

#include "integration/doctor.h"

namespace zavrel::tests {
namespace {

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
  const EnvironmentVariable start_folder("APPDATA", roaming.string());
  CHECK(Contains(Problems(Doctor(ships)), "Excel's start folder"));
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
