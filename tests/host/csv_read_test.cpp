#include <doctest/doctest.h>

#include "host/xlsx/xlsx_file.h"
#include "support/book_builder.h"
#include "support/workbooks.h"

using namespace zavhost;
using namespace zavhost_test;

namespace {

Workbook Read(const std::string& text) {
  const TemporaryFolder folder;
  return ReadCsv(folder.Put(u"data.csv", text));
}

}  // namespace

TEST_CASE("comma-separated text becomes the cells of a sheet") {
  const Workbook book = Read(
      "\xEF\xBB\xBFName,Value,\"a \"\"quoted\"\", two\r\nlines\"\r\n"
      "x,1.5,NA\r\n"
      "\n"
      "\xC3\xBC,-3e2,,true,#n/a,50%,\"\",\" 7 \"\r"
      "last,1e5,False");
  const Sheet& sheet = book.sheets.at(0);
  CHECK(book.file_name == u"data.csv");
  CHECK(sheet.name() == u"Data");
  CHECK(zavhost::tests::Content(sheet, "A1:H5") ==
        "\"Name\",\"Value\",\"a \"quoted\", two\r\nlines\",,,,,;\"x\",1.5,,,,,,;,,,,,,,;"
        "\"\u00FC\",-300,,TRUE,#N/A,0.5,,7;\"last\",100000,FALSE,,,,,;");
  CHECK(sheet.used_range() == CellRange{0, 0, 4, 7});
}

TEST_CASE("comma-separated text that cannot be used is refused in one line") {
  const std::string semicolons =
      "the fields of this file seem to be separated by semicolons; commas are expected";
  const std::pair<std::string, std::string> refused[] = {
      {"a,\"b\n\n", "opens in row 1 is never closed"},
      {std::string("a\0b", 3), "not comma-separated text"},
      {std::string(20'000, ','), "more than 16384 fields"},
      {std::string(1'100'000, '\n') + "1", "more than 1048576 rows"},
      {std::string(40'000, 'x'), "longer than 32767"},
      {"name,value\nM\xFCller,1\n", "this is not comma-separated text in UTF-8"},
      {"name;value\nx;1,5\n", semicolons},
      {"\"Name, first\";value\r\n", semicolons}};
  for (const auto& [text, words] : refused) {
    CAPTURE(words);
    std::string error;
    try {
      Read(text);
    } catch (const WorkbookError& refusal) {
      error = refusal.what();
    }
    CHECK(error.find(words) != std::string::npos);
    CHECK(error.find('\n') == std::string::npos);
  }
  const TemporaryFolder folder;
  CHECK_THROWS_WITH_AS(ReadCsv(folder.Put(u"two.csv", "1,NA,2"), {.cells = 1}),
                       doctest::Contains("more cells than the host can read"), WorkbookError);
  CHECK(!Read("").sheets.at(0).used_range());
  CHECK(Read("\"a;b\"\nc;d\n").sheets.at(0).At(1, 0) == Value(u"c;d"));
  CHECK(Read("a;b,c\n").sheets.at(0).At(0, 0) == Value(u"a;b"));
}
