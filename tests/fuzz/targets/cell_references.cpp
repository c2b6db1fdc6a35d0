// References and names of sheets as texts: what is read is within a sheet, and its own text reads
// as the same again.
#include <string>

#include "formula/a1_reference.h"
#include "formula/lexer.h"
#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "host/workbook/cell_names.h"
#include "host/workbook/text.h"

namespace zavrel::tests {
namespace {

using formula::A1Corner;
using formula::A1Reference;

bool IsOnSheet(const A1Corner& corner) {
  return corner.row >= 0 && corner.row < formula::kSheetRows && corner.column >= 0 &&
         corner.column < formula::kSheetColumns;
}

bool AreSame(const A1Corner& a, const A1Corner& b) {
  return a.row == b.row && a.column == b.column && a.row_absolute == b.row_absolute &&
         a.column_absolute == b.column_absolute;
}

void CheckScan(std::u16string_view text) {
  const std::optional<A1Reference> reference = formula::ScanA1(text);
  if (!reference) return;
  Require(reference->length > 0 && reference->length <= text.size(), "a reference beyond the text");
  Require(IsOnSheet(reference->first) && IsOnSheet(reference->last), "a reference off the sheet");
  const std::u16string written = formula::A1Text(*reference);
  const std::optional<A1Reference> again = formula::ScanA1(written);
  Require(again && again->length == written.size() && AreSame(again->first, reference->first) &&
              AreSame(again->last, reference->last) &&
              again->whole_columns == reference->whole_columns &&
              again->whole_rows == reference->whole_rows,
          "a reference changes when it is written");
}

void CheckNames(std::string_view text) {
  if (const auto cell = zavhost::ParseCellName(text)) {
    const std::u16string name = formula::A1Text(cell->row, cell->column);
    Require(zavhost::ParseCellName(zavhost::Utf8FromUtf16(name)) == cell,
            "a cell's name changes when it is written");
  }
  if (const auto range = zavhost::ParseRangeName(text)) {
    Require(range->first_row <= range->last_row && range->first_column <= range->last_column,
            "a range with its corners out of order");
    if (range->HasAllRows() || range->HasAllColumns()) return;  // written as A:B or 1:2
    Require(zavhost::ParseRangeName(zavhost::Utf8FromUtf16(zavhost::A1Text(*range))) == range,
            "a range's name changes when it is written");
  }
}

/// In front of a reference, the name of any sheet is one token with it.
void CheckSheetName(std::u16string_view name) {
  if (name.empty()) return;
  const std::u16string text = zavhost::QuotedSheetName(name) + u"!B7";
  const auto tokens = formula::Tokenize(text);
  Require(tokens.size() == 1 && tokens[0].kind == formula::TokenKind::kReference,
          "a quoted sheet name does not lead to a reference");
}

void Read(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const bool is_wide = bytes.Below(2) == 1;
  const std::string_view narrow = bytes.Rest();
  std::u16string text = zavhost::Utf16FromUtf8(narrow);
  if (is_wide) {  // any code units, lone surrogates among them
    text.resize(narrow.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i)
      text[i] = static_cast<char16_t>(static_cast<unsigned char>(narrow[2 * i]) |
                                      static_cast<unsigned char>(narrow[2 * i + 1]) << 8);
  }
  CheckScan(text);
  CheckNames(narrow);
  CheckSheetName(text);
}

const FuzzTarget target("cell_references", Read);

}  // namespace
}  // namespace zavrel::tests
