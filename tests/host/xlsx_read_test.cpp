#include <doctest/doctest.h>

#include "host/xlsx/iso_date.h"
#include "host/xlsx/xlsx_file.h"
#include "support/book_builder.h"
#include "support/workbooks.h"

using namespace zavhost;
using namespace zavhost_test;
using zavhost::tests::Content;

namespace {

Workbook Read(const BookParts& parts) {
  const TemporaryFolder folder;
  return ReadXlsx(folder.Put(u"book.xlsx", ZipBook(parts)));
}
Workbook ReadRows(const std::string& rows) { return Read(OneSheetBook(rows)); }

/// A workbook with shared texts.
BookParts WithSharedTexts(const std::string& rows, const std::string& texts) {
  BookParts parts = OneSheetBook(rows);
  parts["xl/_rels/workbook.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "worksheet", "/xl/worksheets/sheet1.xml") +
                       RelationshipXml("rId2", "sharedStrings", "sharedStrings.xml"));
  parts["xl/sharedStrings.xml"] = R"(<sst count="9">)" + texts + "</sst>";
  return parts;
}

std::string Utf16(std::string_view text, bool big_endian) {
  std::string bytes = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char16_t unit : Utf16FromUtf8(text)) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += big_endian ? high : low;
    bytes += big_endian ? low : high;
  }
  return bytes;
}

}  // namespace

TEST_CASE("every cell type reads as what it stands for") {
  const Workbook book =
      ReadRows(R"(<row r="3" spans="1:9"><c r="A3"><v>1.5E-3</v></c><c t="b"><v>1</v></c>)"
               R"(<c t="e"><v>#DIV/0!</v></c><c r="F3" t="str"><v> a&amp;b&#x20AC; </v></c>)"
               R"(<c t="inlineStr"><is><t>in</t><r><rPr><b/></rPr>)"
               R"(<t xml:space="preserve"> line</t></r></is></c><c t="d">)"
               R"(<v>2024-03-05T12:00:00Z</v></c><c t="n" s="4"/><c t="str"><v></v></c></row>)"
               R"(<row><c r="A4"><v> 0.1 </v></c><c t="e"><v>#FUTURE!</v></c><c t="str"><v>)"
               R"(<![CDATA[<&>]]></v></c><c t="d"><v>1900-02-28</v></c></row>)"
               "<row><c><v>+5</v></c><c><v>\n -1e-400 \n</v></c><c t='b'><v>true</v></c>"
               "<c t='b'><v>0</v></c><c t='b'><v>false</v></c><c "
               "t='str'><v>&quot;\r\n&apos;\r&#x1F600;</v></c></row>");
  const Sheet& sheet = book.sheets.at(0);
  CHECK(Content(sheet, "A3:J5") ==
        "0.0015,TRUE,#DIV/0!,,,\" a&b\u20AC \",\"in line\",45356.5,,\"\";"
        "0.1,#UNKNOWN!,\"<&>\",59,,,,,,;"
        "5,0,TRUE,FALSE,FALSE,\"\"\n'\n\U0001F600\",,,,;");
  CHECK(sheet.used_range() == CellRange{2, 0, 4, 9});
  CHECK(book.file_name == u"book.xlsx");
}

TEST_CASE("dates and times as Excel and other programs write them, and what is none") {
  const std::pair<const char*, std::optional<double>> texts[] = {
      {"1900-01-01", 1.0},
      {"1899-12-31", 0.0},
      {"1900-03-01", 61.0},
      {"10:30", 0.4375},
      {"24:00:00", 1.0},
      {"2024-03-05T06:00", 45356.25},
      {"2024-03-05T06:00:00.864+02:00", 45356.25001},
      {"1899-12-30", std::nullopt},
      {"2024-13-01", std::nullopt},
      {"2024/03/05", std::nullopt},
      {"2024-3-5", std::nullopt},
      {"2024-03-0a", std::nullopt},
      {"2024-03-05T", std::nullopt},
      {"25:00", std::nullopt},
      {"10:60", std::nullopt},
      {"10:30:61", std::nullopt},
      {"10:30:00.5s", std::nullopt},
      {"10:30:", std::nullopt},
      {"noon", std::nullopt}};
  for (const auto& [text, serial] : texts) {
    CAPTURE(text);
    const std::optional<double> read = SerialFromIsoDate(text, false);
    REQUIRE(read.has_value() == serial.has_value());
    if (serial) CHECK(*read == doctest::Approx(*serial).epsilon(1e-12));
  }
  CHECK(SerialFromIsoDate("1904-01-01", true) == 0.0);
  CHECK_FALSE(SerialFromIsoDate("1903-12-31", true));
}

TEST_CASE("shared texts: runs joined, readings dropped, escapes decoded, texts held once") {
  const Workbook book = Read(WithSharedTexts(
      R"(<row><c t="s"><v>0</v></c><c t="s"><v>1</v></c><c t="s"><v>2</v></c><c t="s">)"
      R"(<v>3</v></c><c t="s"><v>3</v></c></row>)",
      "<si><r><t>Tokyo</t></r><r><rPr/><t xml:space=\"preserve\"> 1 </t></r>"
      "<rPh sb=\"0\" eb=\"1\"><t>reading</t></rPh><phoneticPr fontId=\"1\"/></si>"
      "<si><t>a_x000D_b_x005F_x0041__xZZZZ_</t></si><si/><si><t>\n \tsame\t</t></si>"));
  const Sheet& sheet = book.sheets.at(0);
  CHECK(Content(sheet, "A1:E1") == "\"Tokyo 1 \",\"a\rb_x0041__xZZZZ_\",\"\",\"same\",\"same\";");
  CHECK(sheet.At(0, 3).text() == sheet.At(0, 4).text());
}

TEST_CASE("formulas: normal, shared, array, data table and those without their text") {
  const Workbook book =
      ReadRows(R"(<row r="1"><c r="A1"><f>=_xll.ZavMean(B1)</f><v>2</v></c><c r="D1">)"
               R"(<f t="array" ref="D1:E2">B1:C2*2</f><v>4</v></c><c r="E1"><v>6</v></c></row>)"
               R"(<row r="2"><c r="A2"><f t="shared" si="3"/><v>1</v></c></row><row r="3">)"
               R"(<c r="A3"><f t="shared" ref="A2:A4" si="3">B3&lt;C3</f></c></row><row r="4">)"
               R"(<c r="A4"><f t="shared" si="3"/></c><c r="B4"><f t="shared" si="9"/><v>7</v>)"
               R"(</c><c r="C4"><f t="dataTable" ref="C4:C9" r1="A1"/><v>8</v></c>)"
               R"(<c r="D4" cm="1"><f t="array" ref="D4">B1</f><v>1</v></c></row>)");
  REQUIRE(book.formulas.size() == 7);
  const auto text = [&](std::size_t i) { return book.formula_texts[book.formulas[i].text]; };
  CHECK(text(0) == u"_xll.ZavMean(B1)");
  CHECK(book.formulas[1].array == CellRange{0, 3, 1, 4});
  CHECK(book.formulas[2].address == CellAddress{0, 1, 0});
  CHECK(text(2) == u"B3<C3");
  CHECK(book.formulas[2].origin == CellAddress{0, 2, 0});
  CHECK(book.formulas[4].text == book.formulas[3].text);
  CHECK(book.formulas[5].array == CellRange{3, 2, 8, 2});
  CHECK(book.formulas[6].array == CellRange{3, 3, 3, 3});
  REQUIRE(book.unreadable_formulas.size() == 1);
  CHECK(book.unreadable_formulas[0] == CellAddress{0, 3, 1});
  CHECK(Content(book.sheets[0], "A1:E4") == "2,,,4,6;1,,,,;,,,,;,7,8,1,;");
}

TEST_CASE("the used range holds the cells that formulas will fill") {
  const Workbook book =
      ReadRows(R"(<row r="2"><c r="B2"><f t="array" ref="B2:C5">1</f></c></row><row r="9">)"
               R"(<c r="A9"><f>1</f></c></row>)");
  CHECK(book.sheets[0].used_range() == CellRange{1, 0, 8, 2});
}

TEST_CASE("sheets come in the order of the workbook, with names, dates and protection") {
  BookParts parts = OneSheetBook("");
  parts["xl/workbook.xml"] = WorkbookXml(
      "<sheet name=\"Z &amp;\r\n\xC3\x9C\" sheetId=\"7\" r:id=\"rId9\"/><sheet name=\"Chart\" "
      "sheetId=\"3\" "
      "r:id=\"rId2\"/><sheet name=\"A\" sheetId=\"1\" state=\"hidden\" r:id=\"rId1\"/>",
      "<workbookPr date1904=\"true\"/><definedNames><definedName name=\"Rate\">A!$B$1</definedName>"
      "<definedName name=\"Rate\" localSheetId=\"2\">=0.5</definedName>"
      "<definedName name=\"_xlnm.Print_Area\" localSheetId=\"0\">A!$A$1</definedName>"
      "<definedName name=\"Rate\" function=\"1\">A!$A$1</definedName>"
      "<definedName name=\"Rate\" vbProcedure=\"true\">A!$A$1</definedName>"
      "<definedName name=\"secret\" hidden=\"1\">1</definedName></definedNames>");
  parts["xl/_rels/workbook.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "worksheet", "worksheets/./sheet1.xml") +
                       RelationshipXml("rId2", "chartsheet", "chartsheets/sheet1.xml") +
                       RelationshipXml("rId9", "worksheet", "../xl/worksheets/sheet9.xml"));
  parts["xl/worksheets/sheet9.xml"] =
      SheetXml(R"(<row><c t="d"><v>1904-01-02</v></c></row>)",
               R"(<sheetProtection sheet="1" objects="1"/><autoFilter ref="?"/>)");
  const Workbook book = Read(parts);
  REQUIRE(book.sheets.size() == 3);
  CHECK(book.sheets[0].name() == u"Z & \u00DC");
  CHECK(book.sheets[0].is_protected());
  CHECK(!book.sheets[0].filter());
  CHECK(book.sheets[0].At(0, 0) == Value(1.0));
  CHECK(!book.sheets[1].has_cells());
  CHECK(book.sheets[2].name() == u"A");
  CHECK(!book.sheets[2].is_protected());
  CHECK(book.date1904);
  REQUIRE(book.names.size() == 3);
  CHECK(book.FindName(u"secret", 0)->text == u"1");
  CHECK(book.FindName(u"rate", 2)->text == u"0.5");
  CHECK(book.FindName(u"rate", 1)->text == u"A!$B$1");
}

TEST_CASE("other ways to write the same: strict names, prefixes, UTF-16, comments, back slashes") {
  const std::string strict =
      R"(<?xml version="1.0" encoding="US-ASCII"?><!-- c -->)"
      "<x:worksheet xmlns:x='http://purl.oclc.org/ooxml/spreadsheetml/main'><?pi ?>"
      "<x:sheetData><x:row\tr='2'><x:c r='B2'><x:f>1+1</x:f><x:v>"
      "<!-- no -->4<![CDATA[2]]></x:v></x:c></x:row></x:sheetData><x:extLst><x:ext>"
      "<x:f>3</x:f></x:ext></x:extLst></x:worksheet>";
  for (const std::string& xml :
       {strict, "\xEF\xBB\xBF" + strict, Utf16(strict, false), Utf16(strict, true)}) {
    BookParts parts = OneSheetBook("");
    parts.erase("xl/worksheets/sheet1.xml");
    parts["xl\\Worksheets\\Sheet1.xml"] = xml;
    parts["xl/workbook.xml"] =
        WorkbookXml(R"(<sheet name="Data" xmlns:id="http://any" id:id="rId1"/>)");
    const Workbook book = Read(parts);
    CHECK(book.sheets[0].At(1, 1) == Value(42.0));
    CHECK(book.formulas.size() == 1);
  }
}

TEST_CASE("files under any name, of any name") {
  const TemporaryFolder folder;
  const std::u16string name = u"Größe 数据 \U0001F600.xlsx";
  const std::filesystem::path file = folder.Put(name, ZipBook(OneSheetBook("")));
  CHECK(ReadXlsx(file).file_name == name);
}

namespace {

/// A workbook with a part of its own for the first sheet's relationships, the metadata and a table.
BookParts WithTable(const std::string& table) {
  BookParts parts =
      OneSheetBook(R"(<row r="1" hidden="1"><c r="A1" t="str"><v>Item</v></c></row>)"
                   R"(<row r="2"><c r="B2" cm="2"><f t="array" ref="B2:B4">A2</f></c>)"
                   R"(<c r="C2" cm="1"><f t="array" ref="C2">A2</f></c>)"
                   R"(<c r="D2"><f t="array" ref="D2:D3">A2</f></c>)"
                   R"(<c r="E2" cm="9"><f t="array" ref="E2">A2</f></c></row>)");
  parts["xl/worksheets/_rels/sheet1.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "table", "../tables/table1.xml") +
                       RelationshipXml("rId2", "table", "../tables/absent.xml") +
                       RelationshipXml("rId3", "drawing", "../drawings/drawing1.xml"));
  parts["xl/drawings/drawing1.xml"] = "<wsDr/>";
  parts["xl/tables/table1.xml"] = table;
  parts["xl/_rels/workbook.xml.rels"] =
      RelationshipsXml(RelationshipXml("rId1", "worksheet", "worksheets/sheet1.xml") +
                       RelationshipXml("rId2", "sheetMetadata", "metadata.xml"));
  parts["xl/metadata.xml"] =
      R"(<metadata><metadataTypes count="2"><metadataType name="XLRICHVALUE"/><metadataType name="XLDAPR"/>)"
      R"(</metadataTypes><cellMetadata count="2"><bk><rc t="1" v="0"/></bk><bk><rc t="2" v="0"/><rc t="1" v="0"/></bk>)"
      R"(</cellMetadata></metadata>)";
  return parts;
}

}  // namespace

TEST_CASE("tables, hidden rows, and which array formulas are dynamic") {
  const Workbook book = Read(WithTable(
      R"(<table name="t" displayName="Sales" ref="A1:B5" totalsRowCount="1"><autoFilter ref="A1:B4"/>)"
      R"(<tableColumns count="2"><tableColumn name="Item"/><tableColumn name="Unit_x000a_price"/>)"
      R"(</tableColumns></table>)"));
  REQUIRE(book.tables.size() == 1);
  const Table& table = book.tables[0];
  CHECK(table.name == u"Sales");
  CHECK(table.range == CellRange{0, 0, 4, 1});
  CHECK((table.heading_rows == 1 && table.total_rows == 1));
  CHECK(table.columns == std::vector<std::u16string>{u"Item", u"Unit\nprice"});
  CHECK(book.sheets[0].filter() == CellRange{0, 0, 3, 1});
  CHECK(book.sheets[0].IsHidden(0));
  CHECK_FALSE(book.sheets[0].IsHidden(1));
  std::string dynamic;
  for (const FormulaCell& formula : book.formulas) dynamic += formula.is_dynamic ? 'D' : '-';
  CHECK(dynamic == "D---");
}

TEST_CASE("a what-if table depends on its input cells and on what stands beside it") {
  const Workbook book = ReadRows(
      R"(<row r="2"><c r="B2"><f t="dataTable" ref="B2:D4" dt2D="1" r1="F1" r2="F2"/><v>1</v></c></row>)"
      R"(<row r="6"><c r="A6"><f t="dataTable" ref="A6:A7" r1="F1"/></c></row>)"
      R"(<row r="1"><c r="B1"><f t="dataTable" ref="B1:B2" r1="F1"/></c></row>)");
  REQUIRE(book.formulas.size() == 3);
  CHECK(book.formula_texts[0] == u"TABLE(F1,F2,A1:D1,A2:A4)");
  CHECK(book.formulas[0].array == CellRange{1, 1, 3, 3});
  CHECK(book.formula_texts[1] == u"TABLE(F1,,A5)");
  CHECK(book.formula_texts[2] == u"TABLE(F1,,A1:A2)");
}

TEST_CASE("a table that cannot be is one clear line") {
  for (
      const char* table :
      {R"(<table displayName="T" ref="A1:B5"><tableColumns><tableColumn name="a"/></tableColumns></table>)",
       R"(<table displayName="T" ref="A1:XFE5"/>)", "<sheet/>", "<table"}) {
    CAPTURE(table);
    CHECK_THROWS_AS(Read(WithTable(table)), WorkbookError);
  }
}
