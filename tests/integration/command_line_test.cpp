// The host as a user starts it.
#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "host/xlsx/xlsx_file.h"
#include "integration/host_process.h"
#include "support/book_builder.h"
#include "support/hostile_workbooks.h"

namespace zavrel::tests {
namespace {

const std::filesystem::path kExample =
    std::filesystem::path(ZAVREL_SOURCE_DIR) / "examples" / "air-quality.xlsx";

}  // namespace

TEST_CASE("run shows every formula and writes a workbook that reads back the same") {
  const std::filesystem::path written = ScratchFolder() / u"Luft g\u00fcte.xlsx";
  const Outcome outcome = ZavHost({"run", Utf8FromPath(kExample), "-o", Utf8FromPath(written)});
  CHECK(outcome.exit_code == 0);
  CHECK(outcome.errors.empty());
  CHECK(Contains(outcome.output, "=ZavMean(Ozone)"));
  CHECK(Contains(outcome.output, "42.129"));
  CHECK(Contains(outcome.output, "{=ZavMean(IF("));
  const zavhost::Workbook book = zavhost::ReadXlsx(written);
  const zavhost::Value mean = book.sheets[*book.FindSheet(u"Summary")].At(7, 1);
  REQUIRE(mean.number() != nullptr);
  CHECK(*mean.number() == doctest::Approx(42.129310344827587).epsilon(1e-14));

  const Outcome again = ZavHost({"run", "--json", Utf8FromPath(written)});
  CHECK(again.exit_code == 0);
  CHECK(Contains(again.output, "\"formula\": \"=ZavMean(Ozone)\""));
  const Outcome lines = ZavHost({"run", "--csv", Utf8FromPath(written)});
  CHECK(Contains(lines.output, "Summary,B8,=ZavMean(Ozone),42.1293103448"));
}

TEST_CASE("each command shows what it is asked for, and a mistake gets one clear line") {
  const std::filesystem::path folder = ScratchFolder() / "commands";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "data.csv") << "price,in stock\n1.5,TRUE\n,FALSE\n2.5,TRUE\n";
  // Headings that are no names as they stand, one that is a number, and one that comes twice.
  std::ofstream(folder / "names.csv") << "x,2024 sales,2025,x,c\n1,2,3,4,5\n3,4,5,6,7\n";
  zavhost_test::WriteHostileWorkbooks(folder);
  const auto file = [&](const char* name) { return Utf8FromPath(folder / name); };
  const std::vector<std::string> named{"eval", "ZavSum(x,_2024_sales,_2025,_c)", "--data",
                                       file("names.csv")};
  const std::string cyclic = file("cyclic_cells.xlsx");
  const struct {
    std::vector<std::string> arguments;
    int exit_code;
    const char *output, *errors;
  } cases[] = {{{"eval", "=ZavMean(1,2,3)"}, 0, "\n2\n", ""},
               {{"eval", "ZavMean(price)", "--data", file("data.csv")}, 0, "\n2\n", ""},
               {named, 0, "\n30\n", "\"2024 sales\" is called _2024_sales"},
               {named, 0, "", "column 4 gets no name"},
               {{"eval", "=Zav( "}, 1, "", ""},
               {{"eval", "=NoSuch(1)"}, 7, "\n#NAME?\n", "the formula uses NoSuch"},
               {{"functions"}, 0, "ZavCorrelationMatrix(", ""},
               {{"functions", "zavmean"}, 0, "ZavMean(", ""},
               {{"functions", "ZavNoSuch"}, 1, "", ""},
               {{}, 64, "", ""},
               {{"run"}, 64, "", ""},
               {{"run", "no-such-file.xlsx"}, 1, "", "no-such-file.xlsx"},
               {{"eval", "=1", "--add-in", "no-such.xll"}, 1, "", "no-such.xll"},
               {{"--help"}, 0, "", ""},
               {{"run", "book.xlsx", "-o", ""}, 64, "", ""},
               {{"run", "book.xlsx", "--max-formulas", "-1"}, 64, "", ""},
               {{"run", cyclic}, 4, "kept: circular reference", ""},
               {{"run", "--json", cyclic}, 4, "\"problem\": \"circular reference\"", ""},
               {{"run", "--csv", cyclic}, 4, ",circular reference", ""}};
  for (const auto& given : cases) {
    const Outcome outcome = ZavHost(given.arguments);
    INFO((&given - cases), ": ", outcome.output, outcome.errors);
    CHECK(outcome.exit_code == given.exit_code);
    CHECK(Contains('\n' + outcome.output, given.output));
    CHECK(Contains(outcome.errors, given.errors));
  }
}

TEST_CASE("a stale or missing input is never taken silently") {
  const std::filesystem::path folder = ScratchFolder() / "inputs";
  std::filesystem::create_directories(folder);
  const auto put = [&](const char* name, const std::string& rows) {
    const std::string bytes = zavhost_test::ZipBook(zavhost_test::OneSheetBook(rows));
    std::ofstream(folder / name, std::ios::binary) << bytes;
    return Utf8FromPath(folder / name);
  };
  // A program has changed A1 and left the stored results.
  const std::string changed =
      put("changed.xlsx", R"(<row r="1"><c r="A1"><v>1000</v></c><c r="B1"><f>A1*2</f><v>2</v></c>)"
                          R"(<c r="C1"><f>_xll.ZavMean(B1:B10)</f><v>2</v></c></row>)");
  const Outcome computed = ZavHost({"run", changed, "--csv"});
  CHECK(computed.exit_code == 0);
  CHECK(Contains(computed.output, "Data,C1,=ZavMean(B1:B10),2000,"));
  // Nothing is stored, and F1 cannot be computed.
  const std::string missing = put(
      "missing.xlsx", R"(<row r="1"><c r="A1"><f>NOSUCH(1)</f></c><c r="B1"><f>A1*2</f></c>)"
                      R"(<c r="C1"><f>_xll.ZavMean(B1:B10)</f></c><c r="D1"><f>1+1</f></c></row>)");
  const Outcome doubtful = ZavHost({"run", missing, "--csv"});
  CHECK(doubtful.exit_code == 7);
  CHECK(doubtful.errors ==
        "warning: Data!A1 uses NOSUCH, which this host does not compute, and has no stored value\n"
        "warning: Data!B1 depends on Data!A1 and may be wrong\n"
        "warning: Data!C1 depends on Data!A1 and may be wrong\n");
  const Outcome batch =
      ZavHost({"run", missing, changed, "--output-folder", Utf8FromPath(folder / "out")});
  CHECK(batch.exit_code == 7);
  CHECK(Contains(batch.output, "in doubt: Data!A1 uses NOSUCH"));
}

TEST_CASE("the input changes only where that is asked for") {
  const std::filesystem::path folder = ScratchFolder() / "in place";
  std::filesystem::create_directories(folder);
  const std::filesystem::path book = folder / u"B\u00fccher \u65e5\u672c.xlsx";
  const std::string bytes = zavhost_test::ZipBook(
      zavhost_test::OneSheetBook(R"(<row><c><f>_xll.ZavMean(1,2,3)</f><v>9</v></c></row>)"));
  std::ofstream(book, std::ios::binary) << bytes;
  const std::string name = Utf8FromPath(book);
  const auto content = [&] {
    std::ifstream file(book, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  const Outcome refused =
      ZavHost({"run", name, "-o", Utf8FromPath(folder / "." / book.filename())});
  CHECK(refused.exit_code == 1);
  CHECK(Contains(refused.errors, "--in-place does that"));
  CHECK(content() == bytes);
  CHECK(ZavHost({"run", name, "--in-place", "-o", "x.xlsx"}).exit_code == 64);
  const Outcome done = ZavHost({"run", name, "--in-place"});
  CHECK(done.exit_code == 0);
  CHECK(Contains(done.output, "written to "));
  CHECK(zavhost::ReadXlsx(book).sheets[0].At(0, 0) == zavhost::Value(2.0));
  CHECK(ZavHost({"run", name, name, "--in-place", "--values-only"}).exit_code ==
        1);  // the same twice
  CHECK(ZavHost({"run", Utf8FromPath(folder), "--in-place", "--values-only"}).exit_code == 0);
  CHECK(zavhost::ReadXlsx(book).formulas.empty());
  CHECK(std::distance(std::filesystem::directory_iterator(folder), {}) == 1);
}

TEST_CASE("functions lists all that the tables have, and says which ones the wizard hides") {
  nlohmann::json tables;
  for (const char* folder : {"functions", "distribution_functions"}) {
    std::ifstream file(std::filesystem::path(ZAVREL_SOURCE_DIR) / "src" / folder /
                       "functions.json");
    const auto data = nlohmann::json::parse(file);
    for (const auto& table : data["tables"]) tables.push_back(table);
  }
  std::size_t count = 0, hidden = 0;
  const std::string listed = ZavHost({"functions"}).output;
  const std::string lines = ZavHost({"functions", "--csv"}).output;
  for (const auto& table : tables) {
    for (const auto& function : table["functions"]) {
      const std::string name = function["name"];
      const bool is_hidden = function.value("hidden", table["defaults"].value("hidden", false));
      CAPTURE(name);
      CHECK(Contains(listed, "\n  " + name + "("));
      const std::size_t start = lines.find("\n" + name + ",");
      REQUIRE(start != std::string::npos);
      const std::string line = lines.substr(start + 1, lines.find('\n', start + 1) - start - 1);
      CHECK(line.ends_with(is_hidden ? ",TRUE" : ",FALSE"));
      ++count;
      hidden += is_hidden ? 1 : 0;
    }
  }
  CHECK(listed.ends_with(std::to_string(count) + " functions, " + std::to_string(hidden) +
                         " of them hidden in the function wizard\n"));
  CHECK(Contains(ZavHost({"functions", "ZavMeanI"}).output, ", hidden in the function wizard\n"));
  CHECK(ZavHost({"functions", "--language", "de"}).output != listed);
}

TEST_CASE("distributions lists them, and explains those that are named") {
  const std::string listed = ZavHost({"distributions"}).output;
  CHECK(Contains(listed, "  Weibull "));
  CHECK(listed.ends_with(" distributions\n"));
  const std::string explained = ZavHost({"distributions", "weibull", "GAMMA 3P"}).output;
  CHECK(Contains(explained, "\nWeibull(shape, [scale])\n"));
  CHECK(Contains(explained, "\nPearson III(shape, [scale], [location])\n"));
  CHECK(Contains(explained, "\n  scale must be greater than 0, 1 by default\n"));
  const auto entries = nlohmann::json::parse(ZavHost({"distributions", "--json"}).output);
  CHECK(entries.size() > 60);
  CHECK(entries[0]["parameters"][0]["domain"] == "must be a number");
  const auto unknown = ZavHost({"distributions", "no such name"});
  CHECK(unknown.exit_code == 1);
  CHECK(Contains(unknown.errors, "there is no distribution no such name; "));
}

TEST_CASE("hostile workbooks end in one line and a non-zero exit") {
  const std::filesystem::path folder = ScratchFolder() / "hostile";
  std::filesystem::create_directories(folder);
  std::size_t count = 0;
  for (const auto& hostile : zavhost_test::WriteHostileWorkbooks(folder)) {
    const Outcome outcome =
        ZavHost({"run", Utf8FromPath(hostile.file), "--max-formulas", "500000"});
    CAPTURE(hostile.file.string());
    CAPTURE(outcome.errors);
    CHECK(outcome.exit_code != 3);
    // Nothing is wrong with what only asks for too much: its cells show errors.
    if (hostile.expected.empty() && outcome.exit_code == 0) continue;
    CHECK(outcome.exit_code != 0);
    CHECK(std::count(outcome.errors.begin(), outcome.errors.end(), '\n') == 1);
    ++count;
  }
  CHECK(count >= 30);
}

}  // namespace zavrel::tests
