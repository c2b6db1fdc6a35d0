// The distribution companion beside the add-in, missing, and without a function.
#include <doctest/doctest.h>

#include "integration/host_process.h"

namespace zavrel::tests {
namespace {

/// A folder with what ships, without the companion.
std::filesystem::path FolderWithoutCompanion(const char* name) {
  const std::filesystem::path folder = ScratchFolder() / name;
  std::filesystem::create_directories(folder);
  for (const auto& file : std::filesystem::directory_iterator(AddInFile().parent_path())) {
    if (!file.is_regular_file() || file.path().filename() == "Pdflib8_x64.DLL") continue;
    std::filesystem::copy_file(file, folder / file.path().filename(),
                               std::filesystem::copy_options::overwrite_existing);
  }
  return folder;
}

std::string FirstLine(const Outcome& outcome) {
  CHECK(outcome.exit_code == 0);
  CHECK(outcome.errors.empty());
  return outcome.output.substr(0, outcome.output.find_first_of("\r\n"));
}

std::string Shown(const std::wstring& formula,
                  const std::filesystem::path& folder = AddInFile().parent_path()) {
  return FirstLine(ZavHost(L"eval \"" + formula + L"\"", 60, folder));
}

int Occurrences(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

/// Shows two distributions with a log in the temporary folder, and gives the log.
std::string LogOf(const std::filesystem::path& folder) {
  const std::filesystem::path temporary = folder / "temp";
  std::filesystem::create_directories(temporary);
  std::ofstream(temporary / "BrennicLoggingDetail.txt").flush();
  wchar_t tmp[MAX_PATH + 1] = L"";
  const bool set = GetEnvironmentVariableW(L"TMP", tmp, MAX_PATH) != 0;
  SetEnvironmentVariableW(L"TMP", temporary.c_str());
  CHECK(Shown(L"=IF(ISERROR(ZavNormal(0,1,\"\"xtop\"\",0)),ZavChisq(3,\"\"Mean\"\"))", folder) ==
        "#NUM!");
  SetEnvironmentVariableW(L"TMP", set ? tmp : nullptr);
  return ReadAll(temporary / "VekZavrelFuncs8.log");
}

}  // namespace

TEST_CASE("the distributions come from the companion") {
  CHECK(Shown(L"=ZavNormal(10,2,\"\"St Dev\"\")") == "2");
  CHECK(Shown(L"=ZavNormal(10,2,2)") == "2");
  CHECK(Shown(L"=ZavNormal(0,1,9,0)") == "0.5");
  CHECK(Shown(L"=ZavStudent(1,\"\"xtop\"\",1)") == "0.75");
  CHECK(Shown(L"=ZavStudent(1,\"\"Var\"\")") == "#NUM!");
  CHECK(Shown(L"=ZavChisq(4,\"\"mode\"\")") == "2");
  CHECK(Shown(L"=ZavF(2,2,\"\"xtoq\"\",3)") == "0.25");
  CHECK(Shown(L"=ZavBinomial(10,0.5,\"\"ptox\"\",0.05)") == "2");
}

TEST_CASE("without the companion there are no distributions, and the log says so once") {
  const std::filesystem::path folder = FolderWithoutCompanion("without distributions");
  CHECK(Shown(L"=ZavNormal(0,1,\"\"Mean\"\")", folder) == "#NUM!");
  CHECK(Shown(L"=ZavMean(1,2,3)", folder) == "2");
  CHECK(Shown(L"=ZavLilliefors({1,2,4})", folder) == "#VALUE!");
  CHECK(Shown(L"=ZavQQPlotZValue({1,2,4},1)", folder) == "#VALUE!");
  CHECK(Occurrences(LogOf(folder), "Could not load ") == 1);
}

TEST_CASE("a companion without a function counts as none") {
  const std::filesystem::path folder = FolderWithoutCompanion("other distributions");
  for (const auto& [file, missing] :
       {std::pair{SIBLING_LIBRARY, "pdfNormal"}, {PARTIAL_PDFLIB, "pdfF"}}) {
    std::filesystem::copy_file(file, folder / "Pdflib8_x64.DLL",
                               std::filesystem::copy_options::overwrite_existing);
    const std::string line = std::string("The function ") + missing + " could not be found in ";
    CHECK(Occurrences(LogOf(folder), line) == 1);
    std::filesystem::remove(folder / "temp" / "VekZavrelFuncs8.log");
  }
}

}  // namespace zavrel::tests
