#include <doctest/doctest.h>

#include <bit>
#include <cstdint>
#include <fstream>
#include <limits>
#include <new>
#include <random>
#include <sstream>

#include "host/workbook/cell_names.h"
#include "host/xlsx/xlsx_file.h"
#include "host/xlsx/zip_archive.h"
#include "support/book_builder.h"

using namespace zavhost;
using namespace zavhost_test;

namespace {

constexpr char kSheetPart[] = "xl/worksheets/sheet1.xml";

std::string Bytes(const std::filesystem::path& file) {
  const std::ifstream stream(file, std::ios::binary);
  return (std::ostringstream() << stream.rdbuf()).str();
}

/// What the sheet part inside sheetData becomes when the values are put into its cells.
std::string Rewritten(const std::string& rows,
                      const std::vector<std::pair<CellPosition, Value>>& values) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(OneSheetBook(rows)));
  Workbook book = ReadXlsx(file);
  std::vector<CellAddress> changed;
  for (const auto& [cell, value] : values) {
    book.sheets[0].Set(cell.row, cell.column, value);
    changed.push_back({0, cell.row, cell.column});
  }
  WriteXlsx(file, file, book, {.cells = changed});
  const std::string xml = ZipArchive(Bytes(file), {}).Read(kSheetPart);
  const std::size_t start = xml.find("<sheetData>") + 11;
  return xml.substr(start, xml.find("</sheetData>") - start);
}

}  // namespace

TEST_CASE("only t and v of the cells named change") {
  // Each value over each way a cell may look; what else the cell holds stays, byte for byte.
  CHECK(Rewritten(R"(<row r="1"><c r="A1" s="3" t="str" cm='1' ><f>_xll.ZavSum(1)</f><v>old</v>)"
                  "<extLst/></c></row>",
                  {{{0, 0}, 0.1}}) ==
        R"(<row r="1"><c r="A1" s="3" cm='1' ><f>_xll.ZavSum(1)</f><v>0.1</v><extLst/>)"
        "</c></row>");
  CHECK(Rewritten(R"(<row r="1"><c r='A1'><f t="shared" si="0" ref="A1">x</f></c></row>)",
                  {{{0, 0}, ErrorCode::kNA}}) ==
        R"(<row r="1"><c r='A1' t="e"><f t="shared" si="0" ref="A1">x</f><v>#N/A</v></c>)"
        "</row>");
  CHECK(Rewritten(R"(<row r="1"><c r="A1" t='inlineStr'><is><t>a</t></is></c></row>)",
                  {{{0, 0}, true}}) == R"(<row r="1"><c r="A1" t='b'><v>1</v></c></row>)");
  CHECK(Rewritten(R"(<row r="1"><c r="A1"  s="2" /><c r="B1"/></row>)", {{{0, 0}, 1e20}}) ==
        R"(<row r="1"><c r="A1"  s="2" ><v>1E+20</v></c><c r="B1"/></row>)");
  CHECK(Rewritten(R"(<row r="1"><c><!-- k --><v>1</v><f>x</f> <v>2</v></c></row>)",
                  {{{0, 0}, -0.0}}) == R"(<row r="1"><c><!-- k --><f>x</f><v>-0</v> </c></row>)");
  CHECK(Rewritten(R"(<row r="1"><c r="A1" t="str"><f>x</f><v>1</v></c></row>)",
                  {{{0, 0}, Value()}}) == R"(<row r="1"><c r="A1"><f>x</f></c></row>)");
  // What no file can hold as a number, and a cell that was and stays empty.
  CHECK(Rewritten(R"(<row r="2"/><row r="1"><c r="A1"/><c r="B1" t="s"/><c r="C1"/></row>)",
                  {{{0, 0}, std::numeric_limits<double>::infinity()},
                   {{0, 1}, Value()},
                   {{0, 2}, false}}) ==
        R"(<row r="2"/><row r="1"><c r="A1" t="e"><v>#NUM!</v></c><c r="B1"/>)"
        R"(<c r="C1" t="b"><v>0</v></c></row>)");
}

TEST_CASE("a workbook that cannot be written whole is not written") {
  const TemporaryFolder folder;
  std::vector<ZipPart> parts;
  for (const auto& [name, content] : OneSheetBook(R"(<row r="1"><c r="A1"><v>1</v></c></row>)"))
    parts.push_back({.name = name, .content = content});
  // Nobody reads this part, which is copied as the list of parts has it.
  parts.push_back(
      {.name = "docProps/picture.bin", .content = std::string(5000, 'x'), .declared_size = 70'000});
  const std::filesystem::path file = folder.Put(u"book.xlsx", Zip(parts));
  const std::string before = Bytes(file);
  Workbook book = ReadXlsx(file);
  book.sheets[0].Set(0, 0, 2.0);
  const std::filesystem::path target = folder.path() / "new.xlsx";
  for (const auto& written : {target, file}) {
    CHECK_THROWS_WITH_AS(
        WriteXlsx(file, written, book, {.cells = {{0, 0, 0}}}),
        doctest::Contains("it cannot be written whole: part 'docprops/picture.bin'"),
        WorkbookError);
  }
  CHECK(Bytes(file) == before);
  CHECK_FALSE(std::filesystem::exists(target));
}

TEST_CASE("texts are escaped so that they read back the same") {
  CHECK(Rewritten("<row><c><f>x</f></c></row>", {{{0, 0}, Value(u" <a>&\r_x0041_ ")}}) ==
        R"(<row><c t="str"><f>x</f>)"
        R"(<v xml:space="preserve"> &lt;a&gt;&amp;_x000D__x005F_x0041_ </v></c></row>)");
  for (const char16_t* text : {u" a", u"a ", u"a  b", u"\ta", u"a\nb"}) {
    CHECK(Rewritten("<row><c/></row>", {{{0, 0}, Value(text)}}).find(R"( xml:space="preserve">)") !=
          std::string::npos);
  }
  CHECK(Rewritten("<row><c/></row>", {{{0, 0}, Value(u"a b")}}) ==
        R"(<row><c t="str"><v>a b</v></c></row>)");
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(
      u"book.xlsx", ZipBook(OneSheetBook(R"(<row><c><v>1</v></c></row><row><c t="s"/></row>)")));
  const std::u16string text =
      std::u16string(u"\t\n\u0001\uFFFE 数据\U0001F600_x_x004_") + char16_t{0xD800};
  Workbook book = ReadXlsx(file);
  book.sheets[0].Set(0, 0, Value(text));
  book.sheets[0].Set(1, 0, Value(u""));
  WriteXlsx(file, file, book, {.cells = {{0, 0, 0}, {0, 1, 0}}});
  const Workbook again = ReadXlsx(file);
  CHECK(again.sheets[0].At(0, 0) == Value(text));
  CHECK(again.sheets[0].At(1, 0) == Value(u""));
}

TEST_CASE("cells of an array that the file lacks are made in their places") {
  const std::string rows =
      R"(<row r="2" ht="20"><c r="A2"/><c r="B2"><f t="array" ref="B2:C5">x</f></c>)"
      R"(<c r="D2"><v>9</v></c></row><row r="4"/><row r="7"><c r="A7"/></row>)";
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(OneSheetBook(rows)));
  Workbook book = ReadXlsx(file);
  for (int i = 0; i < 8; ++i) book.sheets[0].Set(1 + i / 2, 1 + i % 2, static_cast<double>(i));
  std::vector<CellAddress> block;
  for (std::int32_t row = 1; row <= 4; ++row) {
    for (std::int32_t column = 1; column <= 2; ++column) block.push_back({0, row, column});
  }
  WriteXlsx(file, folder.path() / "new.xlsx", book, {.cells = block});
  const std::string xml = ZipArchive(Bytes(folder.path() / "new.xlsx"), {}).Read(kSheetPart);
  CHECK(xml ==
        SheetXml(R"(<row r="2" ht="20"><c r="A2"/><c r="B2"><f t="array" ref="B2:C5">x</f>)"
                 R"(<v>0</v></c><c r="C2"><v>1</v></c><c r="D2"><v>9</v></c></row><row r="3">)"
                 R"(<c r="B3"><v>2</v></c><c r="C3"><v>3</v></c></row><row r="4"><c r="B4">)"
                 R"(<v>4</v></c><c r="C4"><v>5</v></c></row><row r="5"><c r="B5"><v>6</v></c>)"
                 R"(<c r="C5"><v>7</v></c></row><row r="7"><c r="A7"/></row>)"));
  // Rows in any order, an empty sheet, and prefixed names.
  CHECK(Rewritten(R"(<row r="5"/><row r="3"><c r="C3"/></row>)",
                  {{{2, 1}, 1.0}, {{4, 0}, 2.0}, {{9, 0}, 3.0}}) ==
        R"(<row r="5"><c r="A5"><v>2</v></c></row><row r="3"><c r="B3"><v>1</v></c>)"
        R"(<c r="C3"/></row><row r="10"><c r="A10"><v>3</v></c></row>)");
  BookParts parts = OneSheetBook("");
  parts[kSheetPart] = R"(<x:worksheet xmlns:x="m"><x:sheetData /></x:worksheet>)";
  const std::filesystem::path empty = folder.Put(u"empty.xlsx", ZipBook(parts));
  book = ReadXlsx(empty);
  book.sheets[0].Set(0, 0, u"a");
  WriteXlsx(empty, empty, book, {.cells = {{0, 0, 0}}});
  CHECK(ZipArchive(Bytes(empty), {}).Read(kSheetPart) ==
        R"(<x:worksheet xmlns:x="m"><x:sheetData ><x:row r="1"><x:c r="A1" t="str">)"
        "<x:v>a</x:v></x:c></x:row></x:sheetData></x:worksheet>");
}

TEST_CASE("every other part keeps its packed bytes, whatever it holds") {
  BookParts parts = OneSheetBook("<row><c><v>1</v></c></row>");
  parts["xl/calcChain.xml"] = R"(<calcChain><c r="A1"/></calcChain>)";
  std::string& image = parts["xl/media/image1.png"] = std::string("\x89PNG\0\1\2", 7);
  for (std::mt19937 random(1); image.size() < 200'000;) image += static_cast<char>(random());
  parts["customXml/odd.xml"] = "<not well <formed";
  const TemporaryFolder folder;
  const std::filesystem::path source = folder.Put(u"Quelle \u00FC.xlsx", ZipBook(parts));
  const std::filesystem::path target = folder.path() / std::filesystem::path(u"Ziel \u00FC.xlsx");
  Workbook book = ReadXlsx(source);
  book.sheets[0].Set(0, 0, 2.0);
  WriteXlsx(source, target, book, {.cells = {{0, 0, 0}}});
  const std::string bytes = Bytes(target);
  ZipArchive archive(bytes, {});
  for (const auto& [name, content] : parts) {
    CAPTURE(name);
    if (name == kSheetPart) {
      CHECK(archive.Read(name) == SheetXml("<row><c><v>2</v></c></row>"));
    } else {
      CHECK(archive.Read(name) == content);
      CHECK(bytes.find(name + Deflate(content)) != std::string::npos);
    }
  }
  // The same work gives the same bytes, and nothing but the two files is left in the folder.
  WriteXlsx(source, target, book, {.cells = {{0, 0, 0}}});
  CHECK(Bytes(target) == bytes);
  WriteXlsx(source, source, book, {});
  CHECK(Bytes(source) == ZipBook(parts));
  const std::filesystem::directory_iterator files(folder.path());
  CHECK(std::distance(begin(files), end(files)) == 2);
}

TEST_CASE("numbers come back bit by bit, and UTF-16 parts stay UTF-16") {
  std::string rows;
  for (int i = 0; i < 2'000; ++i) rows += "<row><c/></row>";
  BookParts parts = OneSheetBook(rows);
  std::string wide = "\xFF\xFE";
  for (const char c : parts[kSheetPart]) wide += std::string{c, '\0'};
  parts[kSheetPart] = wide;
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(parts));
  Workbook book = ReadXlsx(file);
  std::mt19937_64 random(7);
  std::vector<double> numbers = {
      0.1, 1.0 / 3.0, 1.7976931348623157e308, 2.2250738585072014e-308, 5e-324, 123456789.123456789,
      -0.0};
  while (numbers.size() < 2'000) {
    const auto number = std::bit_cast<double>(std::uint64_t{random()});
    if (number - number == 0.0) numbers.push_back(number);
  }
  std::vector<CellAddress> changed;
  for (std::int32_t row = 0; row < 2'000; ++row) {
    book.sheets[0].Set(row, 0, numbers[static_cast<std::size_t>(row)]);
    changed.push_back({0, row, 0});
  }
  WriteXlsx(file, file, book, {.cells = changed});
  CHECK(ZipArchive(Bytes(file), {}).Read(kSheetPart).starts_with(wide.substr(0, 100)));
  const Workbook again = ReadXlsx(file);
  int differing = 0;
  for (std::int32_t row = 0; row < 2'000; ++row) {
    const double* number = again.sheets[0].At(row, 0).number();
    REQUIRE(number != nullptr);
    const auto bits = std::bit_cast<std::uint64_t>(numbers[static_cast<std::size_t>(row)]);
    differing += std::bit_cast<std::uint64_t>(*number) != bits ? 1 : 0;
  }
  CHECK(differing == 0);
}

TEST_CASE("a failure to write names the file and leaves what was there") {
  const TemporaryFolder folder;
  const std::filesystem::path source =
      folder.Put(u"book.xlsx", ZipBook(OneSheetBook("<row><c><v>1</v></c></row>")));
  const std::filesystem::path target = folder.Put(u"target.xlsx", "precious");
  Workbook book = ReadXlsx(source);
  const auto failure = [&](const std::filesystem::path& from, const std::filesystem::path& to) {
    try {
      WriteXlsx(from, to, book, {.cells = {{0, 0, 0}}});
      return std::string();
    } catch (const WorkbookError& error) {
      return std::string(error.what());
    }
  };
  CHECK(failure(folder.path() / "absent.xlsx", target).find("no such file") != std::string::npos);
  CHECK(failure(source, folder.path()).find("this is a folder") != std::string::npos);
  CHECK(failure(source, folder.path() / "none" / "x.xlsx").find("files cannot be written") !=
        std::string::npos);
  // The file has become another one since it was read: other names, a chart in place of the cells,
  // fewer sheets.
  BookParts other = OneSheetBook("");
  other["xl/workbook.xml"] = WorkbookXml(R"(<sheet name="Other" sheetId="1" r:id="rId1"/>)");
  BookParts chart = OneSheetBook("");
  chart["xl/_rels/workbook.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "chartsheet", "c.xml"));
  for (const BookParts& parts : {other, chart}) {
    CHECK(failure(folder.Put(u"other.xlsx", ZipBook(parts)), target)
              .find("have changed since it was read") != std::string::npos);
  }
  book.sheets.emplace_back(u"Second");
  CHECK_THROWS_WITH_AS(WriteXlsx(source, target, book, {.cells = {{1, 0, 0}}}),
                       doctest::Contains("have changed since it was read"), WorkbookError);
  CHECK(Bytes(target) == "precious");
}

TEST_CASE("the range of a dynamic array formula changes with its cells") {
  const BookParts parts =
      OneSheetBook(R"(<row r="1"><c r="A1" cm="1"><f t="array" ref="A1:A2">x</f><v>1</v></c></row>)"
                   R"(<row r="2"><c r="A2"><v>2</v></c></row>)");
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(parts));
  Workbook book = ReadXlsx(file);
  book.formulas[0].is_dynamic = true;
  book.formulas[0].array = CellRange{0, 0, 0, 1};
  book.sheets[0].Set(1, 0, Value());
  book.sheets[0].Set(0, 1, 5.0);
  // Where no cell changes, the sheet is not even unpacked.
  const std::string before = Bytes(file);
  WriteXlsx(file, file, book, {}, {.changed_bytes = 0});
  CHECK(Bytes(file) == before);
  WriteXlsx(file, file, book, {.cells = {{0, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
  CHECK(ZipArchive(Bytes(file), {}).Read(kSheetPart) ==
        SheetXml(R"(<row r="1"><c r="A1" cm="1"><f t="array" ref="A1:B1">x</f><v>1</v></c>)"
                 R"(<c r="B1"><v>5</v></c></row><row r="2"><c r="A2"></c></row>)"));
}

TEST_CASE("a workbook of values has no formulas and no list of their cells") {
  BookParts parts = OneSheetBook(
      R"(<row r="1"><c r="A1" s="3" cm="1"><f t="array" ref="A1">x</f><v>1</v></c><c r="B1"><v>7</v></c>)"
      R"(<c r="C1" t="str"><f>y</f><v>a</v></c><c r="D1"><f>z</f></c><c r="E1" t="s"><v>0</v></c>)"
      R"(<c r="F1" cm="1"><f t="array" ref="F1">x</f></c></row>)");
  parts["xl/worksheets/sheet2.xml"] =
      SheetXml(R"(<row><c><f t="shared" si="7"/><v>3</v></c></row>)");
  parts["xl/workbook.xml"] = WorkbookXml(
      R"(<sheet name="Data" sheetId="1" r:id="rId1"/><sheet name="More" sheetId="2" r:id="rId4"/>)");
  parts["xl/sharedStrings.xml"] = "<sst><si><t>kept</t></si></sst>";
  parts["xl/calcChain.xml"] = R"(<calcChain><c r="A1"/></calcChain>)";
  parts["xl/_rels/workbook.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "worksheet", "worksheets/sheet1.xml") +
                       RelationshipXml("rId2", "calcChain", "calcChain.xml") +
                       RelationshipXml("rId3", "sharedStrings", "sharedStrings.xml") +
                       RelationshipXml("rId4", "worksheet", "worksheets/sheet2.xml"));
  const std::string types = R"(<Types><Override PartName="/a" ContentType="b"/>)";
  const std::string chain =
      R"(<Override PartName="/xl/calcChain.xml" ContentType="x.calcChain+xml"/>)";
  parts["[Content_Types].xml"] = types + chain + "</Types>";
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(parts));
  Workbook book = ReadXlsx(file);
  book.sheets[0].Set(0, 0, 2.0);
  book.sheets[0].Set(0, 5, u"b");
  WriteXlsx(file, file, book, {.cells = {{0, 0, 0}, {0, 0, 5}}, .values_only = true});
  ZipArchive archive(Bytes(file), {});
  CHECK(
      archive.Read(kSheetPart) ==
      SheetXml(
          R"(<row r="1"><c r="A1" s="3"><v>2</v></c><c r="B1"><v>7</v></c><c r="C1" t="str"><v>a</v></c>)"
          R"(<c r="D1"></c><c r="E1" t="s"><v>0</v></c><c r="F1" t="str"><v>b</v></c></row>)"));
  CHECK(archive.Read("xl/worksheets/sheet2.xml") == SheetXml("<row><c><v>3</v></c></row>"));
  CHECK_FALSE(archive.Has("xl/calcChain.xml"));
  CHECK(archive.Read("[Content_Types].xml") == types + "</Types>");
  CHECK(archive.Read("xl/_rels/workbook.xml.rels").find("calcChain") == std::string::npos);
  CHECK(ReadXlsx(file).formulas.empty());
  // Without the list, or with nothing but a relationship to it, there is nothing to take away.
  for (const char* list : {"calcChain", "unknown"}) {
    BookParts without = OneSheetBook("<row><c><f>x</f></c></row>");
    without["xl/_rels/workbook.xml.rels"] =
        RelationshipsXml(RelationshipXml("rId1", "worksheet", "worksheets/sheet1.xml") +
                         RelationshipXml("rId2", list, "calcChain.xml"));
    const std::filesystem::path other = folder.Put(u"other.xlsx", ZipBook(without));
    WriteXlsx(other, other, ReadXlsx(other), {.values_only = true});
    CHECK(ReadXlsx(other).formulas.empty());
  }
}

TEST_CASE("charts store what their cells show") {
  BookParts parts = OneSheetBook(
      R"(<row r="1"><c r="A1"><f>1</f><v>1</v></c></row><row r="2"><c r="A2"><v>2</v></c></row>)");
  const std::string before =
      R"(<c:chart xmlns:c="m"><c:ser><c:tx><c:strRef><c:f>name</c:f></c:strRef></c:tx>)"
      R"(<c:val><c:numRef><c:f>cells</c:f><c:numCache><c:formatCode>0.0</c:formatCode><c:ptCount val="1"/>)"
      R"(<c:pt idx="0"><c:v>9</c:v></c:pt></c:numCache><c:extLst/></c:numRef></c:val>)";
  const std::string kept =
      R"(<c:val><c:numRef><c:f>nothing</c:f><c:numCache/></c:numRef></c:val>)"
      R"(<c:val><c:numRef><c:f>million</c:f><c:numCache/></c:numRef></c:val></c:ser></c:chart>)";
  parts["xl/charts/chart1.xml"] = before + kept;
  parts["[Content_Types].xml"] =
      R"(<Types><Override PartName="/xl/charts/chart1.xml" ContentType="a.drawingml.chart+xml"/>)"
      R"(<Override PartName="/xl/charts/absent.xml" ContentType="a.drawingml.chart+xml"/></Types>)";
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(parts));
  Workbook book = ReadXlsx(file);
  book.sheets[0].Set(0, 0, 0.1);
  book.sheets[0].Set(0, 1, Value(u"a<b"));
  book.sheets[0].Set(2, 0, ErrorCode::kNA);
  book.sheets[0].Set(1, 1, false);
  book.sheets[0].Set(2, 1, true);
  book.sheets[0].Set(99, 16'000, 1.0);
  XlsxChanges changes;
  changes.find_reference = [](std::u16string_view text) -> std::optional<Reference> {
    if (text == u"cells") return Reference{0, {{0, 0, 2, 0}, {0, 1, 2, 1}, {5, 5, 5, 5}}};
    if (text == u"name") return Reference{0, {{0, 1, 2, 1}}};
    if (text == u"million") return Reference{0, {{0, 0, 99, 16'000}}};
    return std::nullopt;
  };
  WriteXlsx(file, file, book, changes);
  CHECK(
      ZipArchive(Bytes(file), {}).Read("xl/charts/chart1.xml") ==
      R"(<c:chart xmlns:c="m"><c:ser><c:tx><c:strRef><c:f>name</c:f><c:strCache><c:ptCount val="3"/>)"
      R"(<c:pt idx="0"><c:v>a&lt;b</c:v></c:pt><c:pt idx="1"><c:v>FALSE</c:v></c:pt><c:pt idx="2"><c:v>TRUE</c:v></c:pt></c:strCache></c:strRef></c:tx>)"
      R"(<c:val><c:numRef><c:f>cells</c:f><c:numCache><c:formatCode>0.0</c:formatCode><c:ptCount val="7"/>)"
      R"(<c:pt idx="0"><c:v>0.1</c:v></c:pt><c:pt idx="1"><c:v>2</c:v></c:pt>)"
      R"(<c:pt idx="2"><c:v>#N/A</c:v></c:pt></c:numCache><c:extLst/>)"
      R"(</c:numRef></c:val>)" +
          kept);
}

TEST_CASE("charts that cannot be rewritten, and too little memory for their cells") {
  BookParts parts = OneSheetBook("");
  const TemporaryFolder folder;
  const auto write = [&](const FindReference& find_reference) {
    const std::filesystem::path file = folder.Put(u"book.xlsx", ZipBook(parts));
    WriteXlsx(file, file, ReadXlsx(file), {.find_reference = find_reference});
    return Bytes(file) == ZipBook(parts);
  };
  const FindReference find_nothing = [](std::u16string_view) { return std::nullopt; };
  parts["xl/charts/chart1.xml"] = "<chart><numRef><f>x</f>";
  parts["[Content_Types].xml"] =
      R"(<Types><Override PartName="/xl/charts/chart1.xml" ContentType="a.drawingml.chart+xml"/></Types>)";
  CHECK_THROWS_WITH_AS(
      write(find_nothing),
      doctest::Contains("book.xlsx: part 'xl/charts/chart1.xml' is damaged: it ends"),
      WorkbookError);
  parts["xl/charts/chart1.xml"] += "</numRef></chart>";
  CHECK_THROWS_WITH_AS(
      write([](std::u16string_view) -> std::optional<Reference> { throw std::bad_alloc(); }),
      doctest::Contains("book.xlsx: not enough memory"), WorkbookError);
  CHECK(write(find_nothing));
  parts.erase("[Content_Types].xml");
  CHECK(write(find_nothing));
}
