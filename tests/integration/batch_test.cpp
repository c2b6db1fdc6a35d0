// Many workbooks, each in a process of its own.
#include <doctest/doctest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "host/xlsx/xlsx_file.h"
#include "integration/host_process.h"
#include "support/book_builder.h"
#include "support/hostile_workbooks.h"

namespace zavrel::tests {
namespace {

namespace fs = std::filesystem;

/// A folder with workbooks of every fate, one of them below another folder.
fs::path FolderOfBooks(const char* name) {
  const fs::path folder = ScratchFolder() / name;
  fs::remove_all(folder);
  fs::create_directories(folder / u"unten \u00e4");
  const auto put = [&](const fs::path& file, const std::string& rows) {
    const std::string bytes = zavhost_test::ZipBook(zavhost_test::OneSheetBook(rows));
    std::ofstream(folder / file, std::ios::binary) << bytes;
  };
  put("good.xlsx", R"(<row><c><f>_xll.ZavMean(1,2,3)</f><v>2</v></c></row>)");
  put(fs::path(u"unten \u00e4") / "stale.XLSX",
      R"(<row><c><f>_xll.ZavMean(1,2,6)</f><v>2.9999</v></c></row>)");
  put("cycle.xlsx", R"(<row r="1"><c r="A1"><f>_xll.ZavMean(B1)</f><v>5</v></c>)"
                    R"(<c r="B1"><f>_xll.ZavMean(A1)</f><v>5</v></c></row>)");
  put("~$good.xlsx", "");  // an open workbook's note
  std::ofstream(folder / "broken.xlsx") << "no zip archive";
  return folder;
}

/// The lines of JSON by the workbook's file name.
std::map<std::string, nlohmann::json> LinesOf(const Outcome& outcome) {
  std::map<std::string, nlohmann::json> lines;
  std::istringstream text(outcome.output);
  for (std::string line; std::getline(text, line);) {
    const auto parsed = nlohmann::json::parse(line);
    lines[fs::path(parsed["workbook"].get<std::string>()).filename().string()] = parsed;
  }
  return lines;
}

}  // namespace

TEST_CASE("a batch computes what it can, says what it cannot, and ends with the worst code") {
  const fs::path books = FolderOfBooks("batch"), outputs = ScratchFolder() / "batch-out";
  fs::remove_all(outputs);
  const std::vector<std::string> arguments{"run",
                                           Utf8FromPath(books),
                                           Utf8FromPath(books / "missing.xlsx"),
                                           "--output-folder",
                                           Utf8FromPath(outputs),
                                           "--jobs",
                                           "3"};
  auto as_json = arguments;
  as_json.emplace_back("--json");
  const Outcome outcome = ZavHost(as_json);
  CHECK(outcome.exit_code == 1);
  CHECK(Contains(outcome.errors, "5 workbooks: 2 done, 3 not (the worst failed); 2 formulas"));
  auto lines = LinesOf(outcome);
  REQUIRE(lines.size() == 5);
  CHECK(lines["good.xlsx"]["status"] == "done");
  CHECK(lines["good.xlsx"]["changed"] == 0);
  CHECK(lines["stale.XLSX"]["changed"] == 1);
  CHECK(lines["cycle.xlsx"]["exit_code"] == 4);
  CHECK(Contains(lines["cycle.xlsx"]["message"], "circular reference"));
  CHECK(lines["broken.xlsx"]["exit_code"] == 1);
  CHECK(Contains(lines["broken.xlsx"]["message"], "broken.xlsx"));
  CHECK(Contains(lines["missing.xlsx"]["message"], "no such file"));

  // Outputs keep their place below the folder; nothing else is left there.
  std::vector<std::string> written;
  for (const auto& entry : fs::recursive_directory_iterator(outputs)) {
    if (entry.is_regular_file())
      written.push_back(Utf8FromPath(entry.path().lexically_relative(outputs).generic_u16string()));
  }
  std::ranges::sort(written);
  CHECK(written ==
        std::vector<std::string>{"cycle.xlsx", "good.xlsx", "unten \xC3\xA4/stale.XLSX"});

  // What is there already is left out, unless its workbook has changed since.
  auto again = arguments;
  again.emplace_back("--resume");
  fs::last_write_time(books / "good.xlsx",
                      fs::file_time_type::clock::now() + std::chrono::hours(1));
  const Outcome rest = ZavHost(again);
  CHECK(Contains(rest.output, "good.xlsx: 1 formula, 0 changed"));
  CHECK(!Contains(rest.output, "stale"));
  CHECK(Contains(rest.output, "2 already up to date"));
}

TEST_CASE("stored values are held against the computed ones") {
  const fs::path books = FolderOfBooks("checked");
  fs::remove(books / "broken.xlsx");
  fs::remove(books / "cycle.xlsx");
  const Outcome outcome = ZavHost({"check", Utf8FromPath(books)});
  CHECK(outcome.exit_code == 5);
  CHECK(Contains(outcome.output, "stale.XLSX: differs: 1 formula, 1 difference"));
  CHECK(Contains(outcome.output, "Data!A1  =ZavMean(1,2,6)  is stored as 2.9999 but gives 3"));
  CHECK(Contains(outcome.output, "good.xlsx: 1 formula, 0 differences"));
  CHECK(ZavHost({"check", "--digits", "4", Utf8FromPath(books)}).exit_code == 0);
  CHECK(ZavHost({"check", "--digits", "5", Utf8FromPath(books)}).exit_code == 5);
}

TEST_CASE("a mistake in a batch is told before anything is computed") {
  const fs::path books = FolderOfBooks("mistakes"), empty = ScratchFolder() / "empty";
  fs::create_directories(empty);
  const auto error_of = [](const std::vector<std::string>& arguments) {
    const Outcome outcome = ZavHost(arguments);
    CHECK(outcome.exit_code == 1);
    CHECK(outcome.output.empty());
    return outcome.errors;
  };
  const std::string good = Utf8FromPath(books / "good.xlsx");
  CHECK(Contains(error_of({"run", Utf8FromPath(empty)}), "no workbooks in this folder"));
  CHECK(Contains(error_of({"run", good, good, "-o", "x.xlsx"}), "--output-folder"));
  CHECK(Contains(error_of({"run", good, good, "--output-folder", Utf8FromPath(empty)}),
                 "the output would be that of"));
  CHECK(Contains(error_of({"run", good, "--output-folder", Utf8FromPath(books)}),
                 "would replace the workbook"));
  CHECK(ZavHost({"run", good, "--resume"}).exit_code == 64);
  CHECK(ZavHost({"run", good, good, "--csv"}).exit_code == 64);
}

// The sanitizers' own memory is beyond every limit, and they report crashes themselves.
#ifndef __SANITIZE_ADDRESS__
TEST_CASE("hunger, a hang and a crash cost only the workbook that has them") {
  const fs::path books = ScratchFolder() / "fates";
  fs::create_directories(books);
  const auto put = [&](const char* name, const std::string& rows) {
    const std::string bytes = zavhost_test::ZipBook(zavhost_test::OneSheetBook(rows));
    std::ofstream(books / name, std::ios::binary) << bytes;
  };
  put("crash.xlsx", "<row><c><f>_xll.FaultCrash()</f></c></row>");
  put("good.xlsx", "<row><c><f>_xll.ZavMean(1,2,3)</f></c></row>");
  // Fits to hundreds of samples of ten values, which are others each time: minutes.
  std::string slow;
  for (int i = 0; i < 2000; ++i)
    slow += "<row><c><f>INDEX(_xll.ZavDistFitTest(\"gamma\",{1,2,3,4,5.5,7,9,11,12," +
            std::to_string(13 + i) + "},\"AD\"),2,2)</f></c></row>";
  put("slow.xlsx", slow);
  std::string large;
  for (int i = 0; i < 1'000'000; ++i) large += "<row><c><v>1.5</v></c></row>";
  put("large.xlsx", large);
  const auto fates = [&](const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"run", Utf8FromPath(books), "--json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome = ZavHost(arguments);
    std::string all = std::to_string(outcome.exit_code);
    for (const auto& [name, line] : LinesOf(outcome))
      all += " " + name.substr(0, name.find('.')) + ":" + line["status"].get<std::string>();
    return all;
  };
  CHECK(fates({"--timeout", "3"}) == "6 crash:in doubt good:done large:done slow:out of time");
#ifndef _WIN32  // Wine does not hold a process to its limit
  CHECK(fates({"--timeout", "3", "--memory", "40"}) ==
        "6 crash:in doubt good:done large:failed slow:out of time");
#endif
  CHECK(fates({"--add-in", ANNOUNCED_FAULTS}) == "3 crash:crashed good:done large:done slow:done");
}
#endif

}  // namespace zavrel::tests
