#include "host/calc/formula_text.h"

#include <algorithm>

#include "formula/a1_reference.h"
#include "formula/lexer.h"
#include "host/formula/evaluate.h"
#include "host/formula/file_marks.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

std::u16string MovedText(std::u16string_view token, std::int32_t rows, std::int32_t columns) {
  const std::size_t mark = token.rfind(u'!');
  const std::size_t prefix = mark == std::u16string_view::npos ? 0 : mark + 1;
  const auto reference = formula::ScanA1(token.substr(prefix));
  if (!reference || prefix + reference->length != token.size()) return std::u16string(token);
  const auto moved = formula::Moved(*reference, rows, columns);
  return std::u16string(token.substr(0, prefix)) + (moved ? formula::A1Text(*moved) : u"#REF!");
}

}  // namespace

std::u16string ShownFormulaText(std::u16string_view text, const CellAddress& origin,
                                const CellAddress& cell) {
  if (text.size() > kLongestFormula) return std::u16string(text.substr(0, kLongestFormula));
  const bool is_moved = origin.row != cell.row || origin.column != cell.column;
  if (!is_moved && text.find(u'_') == std::u16string_view::npos) return std::u16string(text);
  const std::int32_t rows = cell.row - origin.row;
  const std::int32_t columns = cell.column - origin.column;
  std::u16string moved;
  moved.reserve(text.size() + 8);
  for (const formula::Token& token : formula::Tokenize(text)) {
    if (token.kind == formula::TokenKind::kReference) {
      moved += is_moved ? MovedText(token.text, rows, columns) : token.text;
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
