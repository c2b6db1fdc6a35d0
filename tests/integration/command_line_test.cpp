// The host as a user starts it.
#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "host/xlsx/xlsx_file.h"
#include "integration/host_process.h"
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

TEST_CASE("functions lists all that the tables have, and says which ones the wizard hides") {
  std::ifstream file(std::filesystem::path(ZAVREL_SOURCE_DIR) / "src/functions/functions.json");
  const auto data = nlohmann::json::parse(file);
  std::size_t count = 0, hidden = 0;
  const std::string listed = ZavHost({"functions"}).output;
  const std::string lines = ZavHost({"functions", "--csv"}).output;
  for (const auto& table : data["tables"]) {
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
