#include "support/hostile_workbooks.h"

#include <fstream>
#include <functional>

#include "support/book_builder.h"

namespace zavhost_test {
namespace fs = std::filesystem;
namespace {

constexpr char kSheetPart[] = "xl/worksheets/sheet1.xml";
constexpr char kBookPart[] = "xl/workbook.xml";
constexpr char kBookRelationships[] = "xl/_rels/workbook.xml.rels";
constexpr char kDataSheet[] = "<sheet name=\"Data\" sheetId=\"1\" r:id=\"rId1\"/>";
constexpr char kGoodRows[] = "<row r=\"1\"><c r=\"A1\"><v>1</v></c></row>";

std::string Repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

class Writer {
 public:
  explicit Writer(const fs::path& folder) : folder_(folder) {}

  void Add(const std::string& name, const std::string& expected, const std::string& bytes) {
    const fs::path file = folder_ / (name + ".xlsx");
    std::ofstream(file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    books_.push_back({file, expected});
  }
  void AddRows(const std::string& name, const std::string& expected, const std::string& rows) {
    Add(name, expected, ZipBook(OneSheetBook(rows)));
  }
  /// One cell B2 with these attributes and content.
  void AddCell(const std::string& name, const std::string& expected, const std::string& attributes,
               const std::string& content) {
    AddRows(name, expected,
            "<row r=\"2\"><c r=\"B2\" " + attributes + ">" + content + "</c></row>");
  }
  /// A good workbook with one part changed.
  void AddPart(const std::string& name, const std::string& expected, const std::string& part,
               const std::string& content) {
    BookParts parts = OneSheetBook(kGoodRows);
    parts[part] = content;
    Add(name, expected, ZipBook(parts));
  }
  void AddWithout(const std::string& name, const std::string& expected, const std::string& part) {
    BookParts parts = OneSheetBook(kGoodRows);
    parts.erase(part);
    Add(name, expected, ZipBook(parts));
  }
  /// A good workbook whose sheet is packed in a bad way.
  void AddPacked(const std::string& name, const std::string& expected,
                 const std::function<void(ZipPart&)>& spoil) {
    std::vector<ZipPart> list;
    for (const auto& [part, content] : OneSheetBook(kGoodRows)) {
      list.push_back({.name = part, .content = content});
      if (part == kSheetPart) spoil(list.back());
    }
    Add(name, expected, Zip(list));
  }
  void AddPath(const fs::path& file, const std::string& expected) {
    books_.push_back({file, expected});
  }
  std::vector<HostileWorkbook> Take() { return std::move(books_); }

 private:
  fs::path folder_;
  std::vector<HostileWorkbook> books_;
};

void AddOtherFiles(Writer& writer, const fs::path& folder) {
  const std::string good = ZipBook(OneSheetBook(kGoodRows));
  writer.Add("empty", "the file is empty", "");
  writer.Add("text", "not an Excel workbook", "a,b,c\n1,2,3\n");
  writer.Add("old", "old (.xls) or encrypted",
             "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(1000, '\0'));
  writer.Add("only_signature", "damaged or cut short", "PK");
  writer.Add("half", "damaged or cut short", good.substr(0, good.size() / 2));
  writer.Add("without_last_bytes", "damaged or cut short", good.substr(0, good.size() - 10));
  writer.Add("plain_zip", "a zip archive, but not", Zip({{.name = "a.txt", .content = "a"}}));
  writer.Add("open_document", "OpenDocument",
             Zip({{.name = "mimetype", .content = "x"}, {.name = "content.xml", .content = "x"}}));
  writer.AddPart("binary_book", "binary workbook (.xlsb)", "_rels/.rels",
                 RelationshipsXml(RelationshipXml("rId1", "officeDocument", "xl/workbook.bin")));
  writer.AddPart("other_document", "another kind of document", kBookPart, "<document/>");
  fs::create_directories(folder / "folder.xlsx");
  writer.AddPath(folder / "folder.xlsx", "this is a folder");
  writer.AddPath(folder / "absent.xlsx", "no such file");
}

void AddPackages(Writer& writer) {
  const auto relation = [](const std::string& target, const std::string& rest = "") {
    return RelationshipsXml(RelationshipXml("rId1", "worksheet", target, rest));
  };
  writer.AddWithout("no_book_part", "part 'xl/workbook.xml' is missing", kBookPart);
  writer.AddWithout("no_relationships", "is missing", kBookRelationships);
  writer.AddWithout("no_sheet_part", "part 'xl/worksheets/sheet1.xml' is missing", kSheetPart);
  writer.AddPart("no_shared_texts", "'xl/sharedStrings.xml' is missing", kBookRelationships,
                 RelationshipsXml(RelationshipXml("rId1", "worksheet", "worksheets/sheet1.xml") +
                                  RelationshipXml("rId2", "sharedStrings", "sharedStrings.xml")));
  writer.AddPart("sheet_without_relation", "the part of sheet 'Data' is not named",
                 kBookRelationships, RelationshipsXml(""));
  writer.AddPart("outside", "leads outside", kBookRelationships, relation("../../../etc/passwd"));
  writer.AddPart("absolute", "part 'etc/passwd' is missing", kBookRelationships,
                 relation("/etc/passwd"));
  writer.AddPart("external", "is not named", kBookRelationships,
                 relation("http://example.com/sheet.xml", "TargetMode=\"External\""));
  writer.AddPart("sheet_is_book", "it is no worksheet", kBookRelationships,
                 relation("workbook.xml"));
  writer.AddPart("broken_relationships", "an end tag without its start tag", "_rels/.rels",
                 "<Relationships></Relationship>");
  writer.AddPart("no_sheets", "no sheets", kBookPart, WorkbookXml(""));
  writer.AddPart(
      "same_sheet_names", "two sheets are named", kBookPart,
      WorkbookXml(std::string(kDataSheet) + "<sheet name=\"DATA\" sheetId=\"2\" r:id=\"rId1\"/>"));
  writer.AddPart(
      "same_sheet_parts", "shares its part", kBookPart,
      WorkbookXml(std::string(kDataSheet) + "<sheet name=\"Other\" sheetId=\"2\" r:id=\"rId1\"/>"));
  writer.AddPart("name_of_no_sheet", "belongs to a sheet that does not exist", kBookPart,
                 WorkbookXml(kDataSheet,
                             "<definedNames><definedName name=\"n\" localSheetId=\"7\">1"
                             "</definedName></definedNames>"));
  writer.AddPart("negative_sheet_of_name", "is no valid whole number", kBookPart,
                 WorkbookXml(kDataSheet,
                             "<definedNames><definedName name=\"n\" localSheetId=\"-1\">1"
                             "</definedName></definedNames>"));
  writer.AddPart("same_names", "is defined twice", kBookPart,
                 WorkbookXml(kDataSheet,
                             "<definedNames><definedName name=\"n\">1</definedName>"
                             "<definedName name=\"N\">2</definedName></definedNames>"));
}

void AddArchives(Writer& writer) {
  writer.AddPacked("bomb", "is too large", [](ZipPart& part) {
    part.content = DeflateBlanks(1000);
    part.is_packed = true;
    part.declared_size = 1000u << 20;
  });
  writer.AddPacked("lying_bomb", "is too large", [](ZipPart& part) {
    part.content = DeflateBlanks(300);
    part.is_packed = true;
    part.declared_size = 1000;
  });
  writer.AddPacked("wrong_checksum", "its checksum is wrong",
                   [](ZipPart& part) { part.checksum = 1; });
  writer.AddPacked("damaged_data", "cannot be unpacked", [](ZipPart& part) {
    part.content = "this is no packed data";
    part.is_packed = true;
  });
  writer.AddPacked("password", "protected by a password", [](ZipPart& part) { part.flags = 1; });
  writer.AddPacked("unknown_packing", "a method that is not read",
                   [](ZipPart& part) { part.method = 97; });
  std::vector<ZipPart> many(20'000, {.name = "", .content = "", .stored = true});
  for (std::size_t i = 0; i < many.size(); ++i) many[i].name = std::to_string(i);
  writer.Add("many_parts", "it has 20000 parts", Zip(many));
  std::vector<ZipPart> twice;
  for (const auto& [name, content] : OneSheetBook(kGoodRows)) {
    twice.push_back({.name = name, .content = content});
    if (name == kBookPart) twice.push_back({.name = "/XL\\Workbook.xml", .content = content});
  }
  writer.Add("part_twice", "two parts named", Zip(twice));
}

void AddXml(Writer& writer) {
  const std::string entities =
      "<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b "
      "\"&a;&a;&a;&a;&a;&a;\"><!ENTITY c \"&b;&b;&b;&b;&b;\">]>";
  writer.AddPart("entity_bomb", "declares a document type", kSheetPart,
                 entities + "<worksheet><sheetData>&c;</sheetData></worksheet>");
  writer.AddPart("entity_bomb_in_book", "declares a document type", kBookPart,
                 entities + "<workbook/>");
  writer.AddPart("undefined_entity", "an entity that XML does not define", kSheetPart,
                 SheetXml("<row><c t=\"str\"><v>&bomb;</v></c></row>"));
  writer.AddRows("deep", "nested too deeply", Repeated("<a>", 100'000));
  writer.AddRows("deep_in_skipped", "nested too deeply", "<row>" + Repeated("<c><x>", 100'000));
  writer.AddRows("attributes", "too many attributes",
                 "<row " + Repeated("a=\"1\" ", 50'000) + "/>");
  writer.AddPart("cut_xml", "ends in the middle", kSheetPart,
                 "<worksheet><sheetData><row r=\"1\"><c r=\"A1\"><v>1");
  writer.AddPart("no_element", "it holds no element", kSheetPart, "   ");
  writer.AddPart("two_roots", "a second root element", kSheetPart, "<worksheet/><worksheet/>");
  writer.AddPart("text_behind", "text outside", kSheetPart, "<worksheet/>text");
  writer.AddCell("invalid_utf8", "not UTF-8", "t=\"str\"", "<v>\xC0\xAF</v>");
  writer.AddCell("control_character", "control character", "t=\"str\"",
                 std::string("<v>a\0b</v>", 10));
  writer.AddPart("odd_utf16", "UTF-16", kSheetPart, std::string("\xFF\xFE<\0w", 5));
  writer.AddPart("other_encoding", "only UTF-8 and UTF-16", kSheetPart,
                 "<?xml version=\"1.0\" encoding=\"windows-1252\"?><worksheet/>");
}

void AddCells(Writer& writer) {
  writer.AddRows("row_zero", "rows go from 1", "<row r=\"0\"/>");
  writer.AddRows("row_far", "rows go from 1", "<row r=\"99999999\"/>");
  writer.AddRows("row_negative", "is no valid whole number", "<row r=\"-3\"/>");
  writer.AddRows("row_overflow", "is no valid whole number", "<row r=\"99999999999999999999\"/>");
  writer.AddRows("row_behind_last", "rows go from 1", "<row r=\"1048576\"/><row/>");
  writer.AddRows("column_far", "there is no cell 'ZZZZ1'", "<row r=\"1\"><c r=\"ZZZZ1\"/></row>");
  writer.AddRows("cell_row_zero", "there is no cell 'A0'", "<row r=\"1\"><c r=\"A0\"/></row>");
  writer.AddRows("cell_name", "there is no cell 'first'", "<row r=\"1\"><c r=\"first\"/></row>");
  writer.AddRows("columns", "more than 16384 cells", "<row>" + Repeated("<c/>", 20'000) + "</row>");
  writer.AddCell("number", "cell B2 holds 'abc', which is not a number", "", "<v>abc</v>");
  writer.AddCell("infinite", "not a number", "", "<v>1E+999</v>");
  writer.AddCell("nan", "not a number", "", "<v>NaN</v>");
  writer.AddCell("boolean", "not a boolean", "t=\"b\"", "<v>2</v>");
  writer.AddCell("date", "not a date", "t=\"d\"", "<v>2024-02-30</v>");
  writer.AddCell("type", "unknown type 'q'", "t=\"q\"", "<v>1</v>");
  writer.AddCell("shared_text_far", "shared text 4000000000, and there are 0", "t=\"s\"",
                 "<v>4000000000</v>");
  writer.AddCell("shared_text_negative", "number of a shared text", "t=\"s\"", "<v>-1</v>");
  writer.AddCell("long_text", "at most 32767", "t=\"str\"",
                 "<v>" + std::string(40'000, 'x') + "</v>");
  writer.AddCell("message_lines", "which is not a number", "",
                 "<v>\n\n\xE2\x80\xAE" + std::string(5'000, 'x') + "</v>");
  writer.AddCell("array_without_range", "which cells it fills", "", "<f t=\"array\">1</f><v>1</v>");
  writer.AddCell("array_elsewhere", "which cells it fills", "",
                 "<f t=\"array\" ref=\"C3:D4\">1</f><v>1</v>");
  writer.AddCell("array_everywhere", "more cells than are read", "",
                 "<f t=\"array\" ref=\"B2:XFD1048576\">1</f><v>1</v>");
  writer.AddCell("shared_index", "is no valid whole number", "",
                 "<f t=\"shared\" si=\"-5\">1</f><v>1</v>");
}

void AddReadable(Writer& writer) {
  const auto formula = [](const std::string& cell, const std::string& text) {
    return "<c r=\"" + cell + "\"><f>" + text + "</f><v>5</v></c>";
  };
  BookParts cyclic_names =
      OneSheetBook("<row r=\"1\">" + formula("A1", "ZavMean(first)") + "</row>");
  cyclic_names[kBookPart] =
      WorkbookXml(kDataSheet,
                  "<definedNames><definedName name=\"first\">second</definedName>"
                  "<definedName name=\"second\">first</definedName></definedNames>");
  writer.Add("cyclic_names", "", ZipBook(cyclic_names));
  writer.AddRows(
      "cyclic_cells", "",
      "<row r=\"1\">" + formula("A1", "ZavMean(B1)") + formula("B1", "ZavMean(A1)") + "</row>");
  writer.AddRows("texts_without_bounds", "",
                 "<row r=\"1\"><c r=\"A1\"><f t=\"array\" ref=\"A1\">"
                 "ZavMean(ROW(1:500)*COLUMN(A:IV)&amp;\"" +
                     std::string(4000, 'x') + "\")</f><v>5</v></c></row>");
  std::string rows;
  for (int row = 1; row <= 1'000'000; ++row) {
    rows += "<row><c><f t=\"shared\" si=\"0\"";
    rows += row == 1 ? " ref=\"A1:A1000000\">ZavMean(B1:C1)</f>" : "/>";
    rows += "<v>0</v></c></row>";
  }
  writer.AddRows("million_formulas", "", rows);
}

}  // namespace

std::vector<HostileWorkbook> WriteHostileWorkbooks(const fs::path& folder) {
  Writer writer(folder);
  AddOtherFiles(writer, folder);
  AddPackages(writer);
  AddArchives(writer);
  AddXml(writer);
  AddCells(writer);
  AddReadable(writer);
  return writer.Take();
}

}  // namespace zavhost_test
