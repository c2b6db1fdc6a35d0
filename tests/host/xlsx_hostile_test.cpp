#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>

#include "host/workbook/value.h"
#include "host/xlsx/xlsx_file.h"
#include "support/book_builder.h"
#include "support/hostile_workbooks.h"

using namespace zavhost;
using namespace zavhost_test;

namespace {

/// What reading the file ends in; empty when it can be read.
std::string ReadingError(const std::filesystem::path& file, const XlsxLimits& limits = {}) {
  try {
    ReadXlsx(file, limits);
    return {};
  } catch (const WorkbookError& error) {
    return error.what();
  }
}

}  // namespace

TEST_CASE("every hostile workbook ends in one clear line, soon") {
  const TemporaryFolder folder;
  const std::vector<HostileWorkbook> books = WriteHostileWorkbooks(folder.path());
  CHECK(books.size() >= 60);
  for (const HostileWorkbook& book : books) {
    const std::string path = Utf8FromUtf16(book.file.u16string());
    CAPTURE(path);
    const auto start = std::chrono::steady_clock::now();
    const std::string error = ReadingError(book.file);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    CAPTURE(error);
    CHECK(taken.count() < 60.0);
    CHECK(error.empty() == book.expected.empty());
    if (book.expected.empty()) continue;
    CHECK(error.find(book.expected) != std::string::npos);
    CHECK(error.starts_with(path + ": "));
    CHECK(error.size() < path.size() + 300);
    CHECK(std::none_of(error.begin(), error.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x20; }));
  }
}

TEST_CASE("limits hold for the file, all parts together, the sheets and the cells") {
  const TemporaryFolder folder;
  const std::string rows = "<row><c><v>1</v></c><c><v>2</v></c></row>";
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(OneSheetBook(rows)));
  CHECK(ReadingError(file).empty());
  CHECK(ReadingError(file, {.file_bytes = 100}).find("the file is too large") != std::string::npos);
  CHECK(ReadingError(file, {.total_bytes = 800}).find("parts are too large") != std::string::npos);
  CHECK(ReadingError(file, {.cells = 1}).find("more cells than the host can read") !=
        std::string::npos);
  CHECK(ReadingError(file, {.cells = 2}).empty());
  CHECK(ReadingError(file, {.parts = 4}).find("it has 5 parts") != std::string::npos);
  CHECK(ReadingError(file, {.list_bytes = 100}).find("' is too large") != std::string::npos);
  CHECK(ReadingError(file, {.part_bytes = 100}).find("sheet1.xml' is too large") !=
        std::string::npos);
  CHECK(ReadingError(file, {.kept_bytes = 31}).find("take more than") != std::string::npos);
  CHECK(ReadingError(file, {.kept_bytes = 32}).empty());
  BookParts chart_sheets = OneSheetBook("");
  std::string list;
  for (int i = 0; i < 6; ++i)
    list += "<sheet name='" + std::to_string(i) + "' sheetId='1' r:id='rId1'/>";
  chart_sheets["xl/workbook.xml"] = WorkbookXml(list);
  chart_sheets["xl/_rels/workbook.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "chartsheet", "chartsheets/sheet1.xml"));
  const std::filesystem::path charts = folder.Put(u"charts.xlsx", ZipBook(chart_sheets));
  CHECK(ReadingError(charts, {.parts = 5}).find("it has more than 5 sheets") != std::string::npos);
  CHECK(ReadingError(charts, {.parts = 6}).empty());
  Workbook book = ReadXlsx(file);
  book.sheets[0].Set(0, 0, 3.0);
  const auto write = [&](std::uint64_t bytes) {
    WriteXlsx(file, folder.path() / "new.xlsx", book, {.cells = {{0, 0, 0}}},
              {.changed_bytes = bytes});
  };
  CHECK_THROWS_AS(write(300), WorkbookError);
  CHECK_FALSE(std::filesystem::exists(folder.path() / "new.xlsx"));
  write(2000);
}

TEST_CASE(
    "a good workbook cut off anywhere, or with any byte changed, never does worse than fail") {
  const TemporaryFolder folder;
  const BookParts parts = OneSheetBook(
      R"(<row r="1"><c r="A1" t="str"><f t="shared" si="0" ref="A1:A2">B1&amp;1</f>)"
      R"(<v>a&#10;b</v></c></row><row r="2"><c r="A2"><f t="shared" si="0"/></c></row>)");
  std::vector<ZipPart> list;
  for (const auto& [name, content] : parts) {
    list.push_back({.name = name, .content = content, .stored = true});
  }
  const std::string good = Zip(list);
  for (std::size_t length = 0; length < good.size(); ++length) {
    CHECK(!ReadingError(folder.Put(u"cut.xlsx", good.substr(0, length))).empty());
  }
  int readable = 0;
  for (std::size_t place = 0; place < good.size(); place += 3) {
    std::string changed = good;
    changed[place] = static_cast<char>(changed[place] ^ (1 << place % 8));
    readable += ReadingError(folder.Put(u"changed.xlsx", changed)).empty() ? 1 : 0;
  }
  // The bytes of parts are under a checksum; times and a few flags are all that may change freely.
  CHECK(readable < static_cast<int>(good.size() / 3 / 2));
}
