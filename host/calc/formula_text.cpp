#include "host/calc/formula_text.h"

#include <algorithm>

#include "formula/a1_reference.h"
#include "formula/lexer.h"
#include "host/formula/evaluate.h"
#include "host/formula/file_marks.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

class Mover {
 public:
  Mover(std::int32_t rows, std::int32_t columns) : rows_(rows), columns_(columns) {}

  std::u16string Move(std::u16string_view token) const {
    const std::size_t mark = token.rfind(u'!');
    const std::size_t prefix = mark == std::u16string_view::npos ? 0 : mark + 1;
    const auto reference = formula::ScanA1(token.substr(prefix));
    if (!reference || prefix + reference->length != token.size()) return std::u16string(token);
    std::u16string moved(token.substr(0, prefix));
    if (!Append(*reference, moved)) return moved.substr(0, prefix) + u"#REF!";
    return moved;
  }

 private:
  bool Append(const formula::A1Reference& reference, std::u16string& text) const {
    if (!AppendCorner(reference.first, reference, text)) return false;
    const bool one_cell = reference.first.row == reference.last.row &&
                          reference.first.column == reference.last.column &&
                          reference.first.row_absolute == reference.last.row_absolute &&
                          reference.first.column_absolute == reference.last.column_absolute;
    if (one_cell && !reference.whole_columns && !reference.whole_rows) return true;
    text += u':';
    return AppendCorner(reference.last, reference, text);
  }

  bool AppendCorner(const formula::A1Corner& corner, const formula::A1Reference& reference,
                    std::u16string& text) const {
    const std::int32_t row = corner.row + (corner.row_absolute ? 0 : rows_);
    const std::int32_t column = corner.column + (corner.column_absolute ? 0 : columns_);
    if (!reference.whole_rows) {
      if (column < 0 || column >= formula::kSheetColumns) return false;
      if (corner.column_absolute) text += u'$';
      text += formula::ColumnLetters(column);
    }
    if (!reference.whole_columns) {
      if (row < 0 || row >= formula::kSheetRows) return false;
      if (corner.row_absolute) text += u'$';
      for (const char digit : std::to_string(row + 1)) text += static_cast<char16_t>(digit);
    }
    return true;
  }

  std::int32_t rows_;
  std::int32_t columns_;
};

}  // namespace

std::u16string ShownFormulaText(std::u16string_view text, const CellAddress& origin,
                                const CellAddress& cell) {
  if (text.size() > kLongestFormula) return std::u16string(text.substr(0, kLongestFormula));
  const bool is_moved = origin.row != cell.row || origin.column != cell.column;
  if (!is_moved && text.find(u'_') == std::u16string_view::npos) return std::u16string(text);
  const Mover mover(cell.row - origin.row, cell.column - origin.column);
  std::u16string moved;
  moved.reserve(text.size() + 8);
  for (const formula::Token& token : formula::Tokenize(text)) {
    if (token.kind == formula::TokenKind::kReference) {
      moved += is_moved ? mover.Move(token.text) : token.text;
    } else if (token.kind == formula::TokenKind::kFunction ||
               token.kind == formula::TokenKind::kName) {
      moved += WithoutFileMarks(token.text);
    } else {
      moved += token.text;
    }
  }
  return moved;
}

std::string CellText(const Workbook& workbook, const CellAddress& cell) {
  std::u16string name =
      cell.sheet < workbook.sheets.size() ? workbook.sheets[cell.sheet].name() : std::u16string();
  const bool plain = !name.empty() && formula::IsNameStart(name[0]) &&
                     std::all_of(name.begin(), name.end(), [](char16_t c) {
                       return formula::IsNamePart(c) && c != u'.' && c != u'\\' && c != u'?';
                     });
  if (!plain) {
    std::u16string quoted = u"'";
    for (const char16_t c : name) quoted.append(c == u'\'' ? 2 : 1, c);
    name = quoted + u"'";
  }
  return PrintableUtf8(name + u"!" + formula::A1Text(cell.row, cell.column));
}

}  // namespace zavhost
