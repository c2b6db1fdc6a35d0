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
