#include "support/hostile_workbooks.h"

#include <fstream>
#include <functional>
#include <sstream>

#include "support/book_builder.h"

namespace zavhost_test {
namespace fs = std::filesystem;
namespace {

constexpr char kSheetPart[] = "xl/worksheets/sheet1.xml";
constexpr char kBookPart[] = "xl/workbook.xml";
constexpr char kGoodRows[] = R"(<row r="1"><c r="A1"><v>1</v></c></row>)";

/// The text with what its escapes and repetitions stand for.
std::string Unfolded(std::string_view text) {
  std::string all;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '{') {
      const std::size_t star = text.find('*', i), end = text.find('}', i);
      const int times = std::stoi(std::string(text.substr(i + 1)));
      for (int k = 0; k < times; ++k) all += text.substr(star + 1, end - star - 1);
      i = end;
    } else if (text[i] != '\\') {
      all += text[i];
    } else if (const char kind = text[++i]; kind == 'x') {
      all += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      all += kind == 'n' ? '\n' : kind == 'r' ? '\r' : '\0';
    }
  }
  return all;
}

std::vector<std::string> Listed(const std::string& text) {
  std::vector<std::string> items;
  std::istringstream stream(text);
  for (std::string item; std::getline(stream >> std::ws, item, ',');) items.push_back(item);
  return items;
}

/// A good workbook but for one thing, as the file of cases words it.
BookParts PartsWith(const std::string& wrong) {
  const std::size_t space = std::min(wrong.find(' '), wrong.size());
  const std::string kind = wrong.substr(0, space);
  const std::string rest = Unfolded(wrong.substr(std::min(space + 1, wrong.size())));
  if (kind == "rows") return OneSheetBook(rest);
  if (kind == "cell") {
    const std::size_t content = rest.find('<');
    return OneSheetBook(R"(<row r="2"><c r="B2" )" + rest.substr(0, content) + ">" +
                        rest.substr(content) + "</c></row>");
  }
  BookParts parts = OneSheetBook(kGoodRows);
  std::string list;
  int id = 0;
  if (kind == "relations") {
    for (const std::string& relation : Listed(rest)) {
      const std::size_t at = relation.find(' ');
      list += RelationshipXml("rId" + std::to_string(++id), relation.substr(0, at),
                              relation.substr(at + 1));
    }
    parts["xl/_rels/workbook.xml.rels"] = RelationshipsXml(list);
  } else if (kind == "sheets" || kind == "names") {
    for (const std::string& name : Listed(kind == "sheets" ? rest : "Data"))
      list += R"(<sheet name=")" + name + R"(" sheetId=")" + std::to_string(++id) +
              R"(" r:id="rId1"/>)";
    parts[kBookPart] =
        WorkbookXml(list, kind == "sheets" ? "" : "<definedNames>" + rest + "</definedNames>");
  } else if (kind == "without") {
    parts.erase(rest);
  } else {
    const std::size_t at = rest.find(' ');
    parts[rest.substr(0, at)] = rest.substr(at + 1);
  }
  return parts;
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

void AddOfFile(Writer& writer) {
  std::ifstream file(ZAVREL_HOSTILE_WORKBOOKS);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t words = line.find(" | "), wrong = line.find(" | ", words + 3);
    writer.Add(line.substr(0, words), line.substr(words + 3, wrong - words - 3),
               ZipBook(PartsWith(line.substr(wrong + 3))));
  }
}

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
  std::string attributes;
  for (int i = 0; i < 200; ++i) attributes += " a" + std::to_string(i) + R"(="1")";
  writer.Add("attributes", "too many attributes",
             ZipBook(OneSheetBook("<row r=\"1\"" + attributes + "/>")));
  fs::create_directories(folder / "folder.xlsx");
  writer.AddPath(folder / "folder.xlsx", "this is a folder");
  writer.AddPath(folder / "absent.xlsx", "no such file");
}

void AddArchives(Writer& writer) {
  writer.AddPacked("bomb", "is too large", [](ZipPart& part) {
    part.content = DeflateBlanks(1000);
    part.is_packed = true;
    part.declared_size = 1000u << 20;
  });
  writer.AddPacked("lying_bomb", "of more than 1 MB", [](ZipPart& part) {
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
  writer.AddPacked("unknown_packing", "a compression method that is not supported",
                   [](ZipPart& part) { part.method = 97; });
  // The end of the archive can declare 65,535, and declares 5.
  std::vector<ZipPart> many(65'541, {.name = "", .content = "", .stored = true});
  for (std::size_t i = 0; i < many.size(); ++i) many[i].name = std::to_string(i);
  writer.Add("many_parts", "it has 65541 parts", Zip(many));
  std::vector<ZipPart> twice;
  for (const auto& [name, content] : OneSheetBook(kGoodRows)) {
    twice.push_back({.name = name, .content = content});
    if (name == kBookPart) twice.push_back({.name = "/XL\\Workbook.xml", .content = content});
  }
  // Each record in the comment would do as the end of the file.
  std::string ends = ZipBook(OneSheetBook(kGoodRows));
  constexpr int kEnds = 3, kEndSize = 22;
  ends[ends.size() - 2] = kEnds * kEndSize;
  for (int rest = kEnds - 1; rest >= 0; --rest)
    ends += "PK\5\6" + std::string(16, '\0') + static_cast<char>(rest * kEndSize) + '\0';
  writer.Add("several_ends", "can be read in several ways", ends);
  writer.Add("part_twice", "two parts named", Zip(twice));
}

/// What is readable, and asks for more than there is.
void AddReadable(Writer& writer) {
  const auto add = [&](const char* name, const std::string& rows) {
    writer.Add(name, "", ZipBook(OneSheetBook(rows)));
  };
  BookParts cyclic_names = PartsWith(R"(names <definedName name="first">second</definedName>)"
                                     R"(<definedName name="second">first</definedName>)");
  cyclic_names[kSheetPart] =
      SheetXml(R"(<row r="1"><c r="A1"><f>ZavMean(first)</f><v>5</v></c></row>)");
  writer.Add("cyclic_names", "", ZipBook(cyclic_names));
  add("cyclic_cells", R"(<row r="1"><c r="A1"><f>ZavMean(B1)</f><v>5</v></c><c r="B1">)"
                      "<f>ZavMean(A1)</f><v>5</v></c></row>");
  add("texts_without_bounds",
      "<row r=\"1\"><c r=\"A1\"><f t=\"array\" ref=\"A1\">ZavMean(ROW(1:500)*COLUMN(A:IV)&amp;\"" +
          std::string(4000, 'x') + R"(")</f><v>5</v></c></row>)");
  std::string rows;
  for (int row = 1; row <= 1'000'000; ++row) {
    rows += R"(<row><c><f t="shared" si="0")";
    rows += row == 1 ? R"( ref="A1:A1000000">ZavMean(B1:C1)</f>)" : "/>";
    rows += "<v>0</v></c></row>";
  }
  add("million_formulas", rows);
}

}  // namespace

std::vector<HostileWorkbook> WriteHostileWorkbooks(const fs::path& folder) {
  Writer writer(folder);
  AddOfFile(writer);
  AddOtherFiles(writer, folder);
  AddArchives(writer);
  AddReadable(writer);
  return writer.Take();
}

}  // namespace zavhost_test
