// ZavHost doctor on sound and unsound installations.
#include <doctest/doctest.h>

#include "integration/doctor.h"
#include "platform/module.h"

namespace zavrel::tests {
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

TEST_CASE(
    "what is missing, broken or of another version is named, with what fails for want of it") {
  const std::string add_in = AddInFile().filename().string(),
                    distributions = LibraryFileName("Pdflib", 8).string(),
                    messages = LibraryFileName("ZavrelMessages", 8).string(),
                    utility = LibraryFileName("EUtilityLibrary", 8).string();
  const struct {
    std::string file;
    std::string in_its_place;  // empty: none
    std::vector<std::string> named;
  } cases[] = {{distributions, "", {distributions, "=ZavNormal("}},
               {messages, "", {messages}},
               {utility, "", {utility}},
               {messages, OTHER_VERSION, {messages, "does not match"}},
               // The stand-in states no version.
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
    for (const std::string& name : given.named) CHECK_MESSAGE(Contains(problems, name), name);
    CHECK((given.file == add_in || !Contains(problems, "=ZavMean(")));
  }
  // Half of the rank tests is a problem; none of them is not.
  const std::filesystem::path folder = CopyOfWhatShips("no rank tests");
  std::filesystem::remove(folder / utility);
  std::filesystem::remove_all(folder / "ZavrelFuncs Extensions");
  CHECK(Doctor(folder).exit_code == 0);
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
