// ZavHost doctor on sound and unsound installations.
#include <doctest/doctest.h>

#include "integration/doctor.h"
#include "platform/module.h"

namespace zavrel::tests {
namespace {

const std::string kMessages = LibraryFileName("ZavrelMessages", 8).string();
const std::string kDistributions = LibraryFileName("Pdflib", 8).string();
const std::string kUtility = LibraryFileName("EUtilityLibrary", 8).string();

}  // namespace

TEST_CASE("the doctor finds what ships sound, and says what it looked at") {
  const Outcome outcome = Doctor(AddInFile().parent_path());
  CHECK(outcome.exit_code == 0);
  CHECK(outcome.errors.empty());
  CHECK_MESSAGE(Problems(outcome).empty(), Problems(outcome));
  for (const std::string& part : {AddInFile().filename().string(), std::string("English, German"),
                                  std::string("=ZavF(2,2,"), std::string("Log")})
    CHECK_MESSAGE(Contains(outcome.output, part), part);
  CHECK(
      Contains(Doctor(AddInFile().parent_path(), {"doctor", "--json"}).output, "\"sound\": true"));
}

TEST_CASE("a missing companion is named, with what fails for want of it") {
  const std::filesystem::path folder = CopyOfWhatShips("no distributions");
  std::filesystem::remove(folder / kDistributions);
  const Outcome outcome = Doctor(folder);
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(Problems(outcome), kDistributions));
  CHECK(Contains(Problems(outcome), "=ZavNormal("));
  CHECK(!Contains(Problems(outcome), "=ZavMean("));

  std::filesystem::remove(folder / kMessages);
  CHECK(Contains(Problems(Doctor(folder)), kMessages));
}

TEST_CASE("half of the rank tests is a problem, none of them is not") {
  const std::filesystem::path folder = CopyOfWhatShips("rank tests");
  std::filesystem::remove(folder / kUtility);
  CHECK(Contains(Problems(Doctor(folder)), kUtility));
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  CHECK(Doctor(folder).exit_code == 0);
}

TEST_CASE("files of other versions and without one are told from those that belong") {
  const std::filesystem::path folder = CopyOfWhatShips("mixed versions");
  Replace(folder / kMessages, OTHER_VERSION);
  Replace(folder / kDistributions, SIBLING_LIBRARY);  // states none
  const Outcome outcome = Doctor(folder);
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(Problems(outcome), kMessages));
  CHECK(Contains(Problems(outcome), "does not match"));
  CHECK(Contains(Problems(outcome), "version none"));
}

TEST_CASE("an add-in that cannot be loaded, or is none, ends in a finding and not in silence") {
  const std::filesystem::path folder = CopyOfWhatShips("no add-in");
  std::filesystem::remove(folder / AddInFile().filename());
  CHECK(Doctor(folder).exit_code == 1);
  CHECK(Contains(Problems(Doctor(folder)), "cannot be loaded"));
  Replace(folder / AddInFile().filename(), SIBLING_LIBRARY);
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
    const EnvironmentVariable temporary(kTemporaryFolder, Utf8FromPath(folder));
    return Problems(Doctor(AddInFile().parent_path()));
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

}  // namespace zavrel::tests
