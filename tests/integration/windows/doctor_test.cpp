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

TEST_CASE(
    "what is missing, broken or of another version is named, with what fails for want of it") {
  // A library of the system's has a version of its own, the test's stand-in none.
  wchar_t system[MAX_PATH];
  REQUIRE(GetSystemDirectoryW(system, MAX_PATH) > 0);
  const std::string versioned = (std::filesystem::path(system) / "version.dll").string();
  const char *const add_in = "ZavrelFuncs8_x64.xll", *const distributions = "Pdflib8_x64.DLL",
                    *const messages = "ZavrelMessages8_x64.DLL";
  const struct {
    const char* file;
    std::string in_its_place;  // empty: none
    std::vector<const char*> named;
  } cases[] = {{distributions, "", {distributions, "=ZavNormal("}},
               {messages, "", {messages}},
               {"EUtilityLibrary8_x64.DLL", "", {"EUtilityLibrary8_x64.DLL"}},
               {messages, versioned, {messages, "does not match"}},
               {distributions, SIBLING_LIBRARY, {"version none"}},
               {add_in, "", {"cannot be loaded"}},
               {add_in, SIBLING_LIBRARY, {"The add-in at work"}}};
  for (const auto& given : cases) {
    const std::filesystem::path folder = CopyOfWhatShips("unsound");
    std::filesystem::remove(folder / given.file);
    if (!given.in_its_place.empty()) Replace(folder / given.file, given.in_its_place);
    const Outcome outcome = Doctor(folder);
    const std::string problems = Problems(outcome);
    CAPTURE(problems);
    CHECK(outcome.exit_code == 1);
    for (const char* name : given.named) CHECK_MESSAGE(Contains(problems, name), name);
    CHECK((given.file == add_in || !Contains(problems, "=ZavMean(")));
  }
  // Half of the rank tests is a problem; none of them is not.
  const std::filesystem::path folder = CopyOfWhatShips("no rank tests");
  std::filesystem::remove(folder / "EUtilityLibrary8_x64.DLL");
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  CHECK(Doctor(folder).exit_code == 0);
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
