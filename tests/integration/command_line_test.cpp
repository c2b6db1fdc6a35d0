// The host as a user starts it.
#include <doctest/doctest.h>

#include <algorithm>

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

TEST_CASE("eval computes a formula, over a file of values too") {
  CHECK(ZavHost({"eval", "=ZavMean(1,2,3)"}).output == "2\n");
  const std::filesystem::path data = ScratchFolder() / "data.csv";
  std::ofstream(data) << "price,in stock\n1.5,TRUE\n,FALSE\n2.5,TRUE\n";
  CHECK(ZavHost({"eval", "ZavMean(price)", "--data", Utf8FromPath(data)}).output == "2\n");
  // Headings that are no names as they stand, one that is a number, and one that comes twice.
  std::ofstream(data) << "x,2024 sales,2025,x,c\n1,2,3,4,5\n3,4,5,6,7\n";
  const Outcome named =
      ZavHost({"eval", "ZavSum(x,_2024_sales,_2025,_c)", "--data", Utf8FromPath(data)});
  CHECK(named.output == "30\n");
  CHECK(Contains(named.errors, "\"2024 sales\" is called _2024_sales"));
  CHECK(Contains(named.errors, "column 4 gets no name"));
  CHECK(ZavHost({"eval", "=Zav( "}).exit_code == 1);
  CHECK(ZavHost({"eval", "=NoSuch(1)"}).output == "#NAME?\n");
}

TEST_CASE("functions lists what the wizard would, in the language asked for") {
  const Outcome english = ZavHost({"functions"});
  const Outcome german = ZavHost({"functions", "--language", "de"});
  CHECK(english.exit_code == 0);
  CHECK(Contains(english.output, "ZavCorrelationMatrix("));
  CHECK(!Contains(english.output, "ZavMeanI("));
  CHECK(Contains(ZavHost({"functions", "--hidden"}).output, "ZavMeanI("));
  CHECK(german.output != english.output);
  CHECK(Contains(ZavHost({"functions", "zavmean"}).output, "ZavMean("));
  CHECK(ZavHost({"functions", "ZavNoSuch"}).exit_code == 1);
}

TEST_CASE("a mistake gets one clear line") {
  CHECK(ZavHost({}).exit_code == 64);
  CHECK(ZavHost({"run"}).exit_code == 64);
  const Outcome missing = ZavHost({"run", "no-such-file.xlsx"});
  CHECK(missing.exit_code == 1);
  CHECK(Contains(missing.errors, "no-such-file.xlsx"));
  const Outcome no_add_in = ZavHost({"eval", "=1", "--add-in", "no-such.xll"});
  CHECK(no_add_in.exit_code == 1);
  CHECK(Contains(no_add_in.errors, "no-such.xll"));
  CHECK(ZavHost({"--help"}).exit_code == 0);
  CHECK(ZavHost({"run", "book.xlsx", "-o", ""}).exit_code == 64);
  CHECK(ZavHost({"run", "book.xlsx", "--max-formulas", "-1"}).exit_code == 64);
}

TEST_CASE("a formula that could not be computed is marked as such in every form") {
  const std::filesystem::path folder = ScratchFolder() / "marked";
  std::filesystem::create_directories(folder);
  zavhost_test::WriteHostileWorkbooks(folder);
  const std::string book = Utf8FromPath(folder / "cyclic_cells.xlsx");
  const Outcome table = ZavHost({"run", book});
  CHECK(table.exit_code == 4);
  CHECK(Contains(table.output, "kept: circular reference"));
  CHECK(Contains(ZavHost({"run", "--json", book}).output, "\"problem\": \"circular reference\""));
  CHECK(Contains(ZavHost({"run", "--csv", book}).output, ",circular reference"));
}

TEST_CASE("hostile workbooks end in one line and a non-zero exit") {
  const std::filesystem::path folder = ScratchFolder() / "hostile";
  std::filesystem::create_directories(folder);
  std::size_t count = 0;
  for (const auto& hostile : zavhost_test::WriteHostileWorkbooks(folder)) {
    const Outcome outcome = ZavHost({"run", Utf8FromPath(hostile.file)});
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
