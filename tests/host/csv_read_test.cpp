#include <doctest/doctest.h>

#include "host/xlsx/xlsx_file.h"
#include "support/book_builder.h"

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
      "last,1e5");
  const Sheet& sheet = book.sheets.at(0);
  CHECK(book.file_name == u"data.csv");
  CHECK(sheet.name() == u"Data");
  CHECK(sheet.At(0, 0) == Value(u"Name"));
  CHECK(sheet.At(0, 2) == Value(u"a \"quoted\", two\r\nlines"));
  CHECK(sheet.At(1, 1) == Value(1.5));
  CHECK(sheet.At(1, 2).IsBlank());
  CHECK(sheet.At(3, 0) == Value(u"\u00FC"));
  CHECK(sheet.At(3, 1) == Value(-300.0));
  CHECK(sheet.At(3, 2).IsBlank());
  CHECK(sheet.At(3, 3) == Value(true));
  CHECK(sheet.At(3, 4) == Value(ErrorCode::kNA));
  CHECK(sheet.At(3, 5) == Value(0.5));
  CHECK(sheet.At(3, 6).IsBlank());
  CHECK(sheet.At(3, 7) == Value(7.0));
  CHECK(sheet.At(4, 1) == Value(1e5));
  CHECK(sheet.used_range() == CellRange{0, 0, 4, 7});
}

TEST_CASE("comma-separated text that cannot be used is refused in one line") {
  const auto refused = [](const std::string& text, const std::string& words) {
    try {
      Read(text);
    } catch (const WorkbookError& error) {
      const std::string what = error.what();
      return what.find(words) != std::string::npos && what.find('\n') == std::string::npos;
    }
    return false;
  };
  CHECK(refused("a,\"b\n\n", "begins in row 1 does not end"));
  CHECK(refused(std::string("a\0b", 3), "not comma-separated text"));
  CHECK(refused(std::string(20'000, ','), "more than 16384 fields"));
  CHECK(refused(std::string(1'100'000, '\n') + "1", "more than 1048576 rows"));
  CHECK(refused(std::string(40'000, 'x'), "longer than 32767"));
  CHECK(!Read("").sheets.at(0).used_range());
  CHECK(refused("name,value\nM\xFCller,1\n", "this is not comma-separated text in UTF-8"));
  const std::string semicolons = "this file seems to be divided by semicolons; commas are expected";
  CHECK(refused("name;value\nx;1,5\n", semicolons));
  CHECK(refused("\"Name, first\";value\r\n", semicolons));
  CHECK(Read("\"a;b\"\nc;d\n").sheets.at(0).At(1, 0) == Value(u"c;d"));
  CHECK(Read("a;b,c\n").sheets.at(0).At(0, 0) == Value(u"a;b"));
}
