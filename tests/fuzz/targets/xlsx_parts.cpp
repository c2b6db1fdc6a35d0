// The parts of a workbook, one at a time: read, or refused with one line. What a sheet part says is
// within bounds; changed values come back from it, and without changes it keeps every byte.
#include <set>
#include <string>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "host/workbook/text.h"
#include "host/xlsx/chart_writer.h"
#include "host/xlsx/metadata_reader.h"
#include "host/xlsx/package.h"
#include "host/xlsx/shared_strings.h"
#include "host/xlsx/sheet_reader.h"
#include "host/xlsx/sheet_writer.h"
#include "host/xlsx/table_reader.h"
#include "support/book_builder.h"

namespace zavrel::tests {
namespace {

using zavhost::CellRange;
using zavhost::SheetChanges;
using zavhost::Value;
using zavhost::Workbook;
using zavhost::XmlError;

constexpr std::uint64_t kCells = 5000;
constexpr std::uint64_t kMostKept = 1 << 26;

bool IsOnSheet(const CellRange& range) {
  return range.first_row >= 0 && range.first_row <= range.last_row && range.first_column >= 0 &&
         range.first_column <= range.last_column && range.last_row < formula::kSheetRows &&
         range.last_column < formula::kSheetColumns;
}

Workbook ReadSheet(std::string_view xml) {
  static const std::vector<zavhost::Text> strings = {zavhost::Text(u"one"), zavhost::Text(u"")};
  static const std::vector<bool> marks = {false, true};
  Workbook book;
  book.sheets.emplace_back(u"Data");
  zavhost::KeptBytes kept(kMostKept);
  zavhost::SheetReading reading{&book, &strings, &marks, kCells, &kept};
  zavhost::XmlReader reader(xml);
  zavhost::ReadSheet(reader, 0, reading);
  return book;
}

void CheckBounds(const Workbook& book) {
  const zavhost::Sheet& sheet = book.sheets[0];
  if (const auto& used = sheet.used_range()) {
    Require(IsOnSheet(*used), "cells off the sheet");
    for (std::int32_t column = used->first_column; column <= used->last_column; ++column) {
      std::int32_t last = used->first_row - 1;
      for (const zavhost::Sheet::Entry& cell : sheet.column(column)) {
        Require(cell.row > last, "rows out of order");
        last = cell.row;
      }
      Require(last <= used->last_row, "a cell outside the used range");
    }
  }
  for (const zavhost::FormulaCell& cell : book.formulas) {
    Require(cell.text < book.formula_texts.size(), "a formula without a text");
    Require(!cell.array || IsOnSheet(*cell.array), "an array formula off the sheet");
  }
}

SheetChanges ChangeCells(Workbook& book, Bytes& choices) {
  static const Value values[] = {
      0.1, -0.0, true, zavhost::ErrorCode::kNA, u" a<&>\"_x0041_\r\n\x01", u"", 1e300};
  SheetChanges changes;
  std::set<zavhost::CellPosition> cells = {{0, 0}, {3, 2}};
  for (const zavhost::FormulaCell& cell : book.formulas)
    if (!cell.array) cells.insert({cell.address.row, cell.address.column});
  for (const zavhost::CellPosition& cell : cells) {
    const std::size_t choice = choices.Below(std::size(values) + 1);
    // What a cell showed may also go.
    book.sheets[0].Set(cell.row, cell.column,
                       choice < std::size(values) ? values[choice] : Value());
  }
  changes.cells.assign(cells.begin(), cells.end());
  changes.values_only = choices.Below(2) == 1;
  return changes;
}

bool AreSame(const Value& one, const Value& other) {
  if (one == other) return true;
  const auto* text = one.text();  // an empty text may be stored as nothing
  return text != nullptr && text->empty() && other.IsBlank();
}

void CheckSheet(std::string_view xml, Bytes choices) {
  Workbook book = ReadSheet(xml);
  CheckBounds(book);
  Require(zavhost::RewriteSheet(xml, book.sheets[0], {}) == xml, "no change changes bytes");
  const SheetChanges changes = ChangeCells(book, choices);
  const Workbook again = ReadSheet(zavhost::RewriteSheet(xml, book.sheets[0], changes));
  for (const auto& [row, column] : changes.cells)
    Require(AreSame(book.sheets[0].At(row, column), again.sheets[0].At(row, column)),
            "another value came back");
  Require(again.formulas.size() == (changes.values_only ? 0 : book.formulas.size()),
          "formulas came, or went");
}

void CheckCellText(std::string_view bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    text[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                    static_cast<unsigned char>(bytes[2 * i + 1]) << 8);
  std::string raw = "<v>";
  zavhost::AppendCellText(text, raw);
  raw += "</v>";
  std::string stored;
  try {
    zavhost::XmlReader reader(raw);
    reader.Next();
    reader.ReadText(stored);
  } catch (const XmlError&) {
    Require(false, "a text is no XML");
  }
  Require(zavhost::UnescapeCellText(stored) == text, "a text changes when it is stored");
}

/// The part in its place in a whole workbook.
void CheckInBook(const std::string& name, std::string_view bytes) {
  zavhost_test::BookParts parts = zavhost_test::OneSheetBook("");
  parts[name] = bytes;
  std::vector<zavhost_test::ZipPart> list;
  for (const auto& [part, content] : parts)
    list.push_back({.name = part, .content = content, .stored = true});
  const std::string zip = zavhost_test::Zip(list);
  zavhost::ZipArchive archive(zip, {});
  zavhost::PartsOfType(archive, "xml");
  const zavhost::WorkbookParts read = zavhost::ReadWorkbookParts(archive);
  Require(!read.sheets.empty(), "a workbook without sheets");
  for (const zavhost::DefinedName& defined : read.names)
    Require(!defined.sheet || *defined.sheet < read.sheets.size(), "a name of no sheet");
}

void CheckChart(std::string_view xml) {
  Workbook book;
  book.sheets.emplace_back(u"Data").Set(0, 0, 1.5);
  book.sheets[0].Set(1, 0, u"two");
  const zavhost::FindReference find =
      [](std::u16string_view text) -> std::optional<zavhost::Reference> {
    if (text.find(u'A') == std::u16string_view::npos) return std::nullopt;
    return zavhost::Reference{0, {{0, 0, 2, static_cast<std::int32_t>(text.size() % 3)}}};
  };
  const std::string once = zavhost::RewriteChart(xml, book, find);
  Require(zavhost::RewriteChart(once, book, find) == once, "a chart changes again");
}

void CheckSharedStrings(std::string_view xml) {
  zavhost::KeptBytes kept(kMostKept);
  zavhost::XmlReader reader(xml);
  for (const zavhost::Text& text : zavhost::ReadSharedStrings(reader, kept))
    Require(text.get() != nullptr, "a shared text is missing");
}

void CheckPart(std::size_t kind, const std::string& bytes, Bytes choices) {
  if (kind == 0) return CheckCellText(bytes);
  if (kind == 1) return CheckInBook("xl/workbook.xml", bytes);
  if (kind == 2) return CheckInBook("xl/_rels/workbook.xml.rels", bytes);
  if (kind == 3) return CheckInBook(std::string(zavhost::kContentTypesPart), bytes);
  const zavhost::DecodedXml xml = zavhost::DecodeXml(bytes);
  Require(zavhost::EncodeXml(xml.text, xml.encoding) == bytes, "an encoding loses something");
  std::optional<CellRange> filter;
  switch (kind) {
    case 4:
      return CheckSharedStrings(xml.text);
    case 5:
      Require(IsOnSheet(zavhost::ReadTable(xml.text, 0, filter).range), "a table off the sheet");
      return;
    case 6:
      Require(!zavhost::ReadDynamicArrayMarks(xml.text).empty(), "no mark for cells without one");
      return;
    case 7:
      return CheckChart(xml.text);
    default:
      return CheckSheet(xml.text, choices);
  }
}

void Read(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const std::size_t kind = bytes.Below(12);
  const auto choices = bytes.Take<std::uint64_t>();
  const std::string line = [&]() -> std::string {
    try {
      const Bytes chosen({reinterpret_cast<const std::uint8_t*>(&choices), sizeof choices});
      CheckPart(kind, std::string(bytes.Rest()), chosen);
      return "read";
    } catch (const XmlError& error) {
      return error.what();
    } catch (const zavhost::WorkbookError& error) {
      return error.what();
    }
  }();
  Require(!line.empty() && line.find_first_of("\r\n") == std::string::npos, "no line says why");
}

const FuzzTarget target("xlsx_parts", Read);

}  // namespace
}  // namespace zavrel::tests
