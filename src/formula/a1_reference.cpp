#include "formula/a1_reference.h"

#include <string>

namespace formula {
namespace {

bool IsLetter(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}
bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// One end of a reference: "$A$1", "$A" or "$1".
struct End {
  A1Corner corner;
  bool has_column = false;
  bool has_row = false;
  std::size_t length = 0;
};

/// Reads "$" and letters up to column XFD; leaves `end` alone when there is no column.
void ScanColumn(std::u16string_view text, End& end) {
  std::size_t i = end.length;
  const bool absolute = i < text.size() && text[i] == u'$';
  if (absolute) ++i;
  std::int32_t column = 0;
  std::size_t letters = 0;
  for (; i < text.size() && IsLetter(text[i]); ++i) {
    if (++letters > 3) return;
    column = column * 26 + ((text[i] | 0x20) - u'a' + 1);
  }
  if (letters == 0 || column > kSheetColumns) return;
  end.corner.column = column - 1;
  end.corner.column_absolute = absolute;
  end.has_column = true;
  end.length = i;
}

void ScanRow(std::u16string_view text, End& end) {
  std::size_t i = end.length;
  const bool absolute = i < text.size() && text[i] == u'$';
  if (absolute) ++i;
  if (i >= text.size() || text[i] == u'0') return;
  std::int32_t row = 0;
  std::size_t digits = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    if (++digits > 7) return;
    row = row * 10 + (text[i] - u'0');
  }
  if (digits == 0 || row > kSheetRows) return;
  end.corner.row = row - 1;
  end.corner.row_absolute = absolute;
  end.has_row = true;
  end.length = i;
}

std::u16string RowDigits(std::int32_t row) {
  const std::string digits = std::to_string(row + 1);
  return {digits.begin(), digits.end()};
}

End ScanEnd(std::u16string_view text) {
  End end;
  ScanColumn(text, end);
  ScanRow(text, end);
  return end;
}

void Shift(A1Corner& corner, const A1Reference& reference, std::int32_t rows,
           std::int32_t columns) {
  if (!corner.row_absolute && !reference.whole_columns) corner.row += rows;
  if (!corner.column_absolute && !reference.whole_rows) corner.column += columns;
}

bool IsOnSheet(const A1Corner& corner) {
  return corner.row >= 0 && corner.row < kSheetRows && corner.column >= 0 &&
         corner.column < kSheetColumns;
}

void AppendCorner(const A1Corner& corner, const A1Reference& reference, std::u16string& text) {
  if (!reference.whole_rows) {
    if (corner.column_absolute) text += u'$';
    text += ColumnLetters(corner.column);
  }
  if (!reference.whole_columns) {
    if (corner.row_absolute) text += u'$';
    text += RowDigits(corner.row);
  }
}

}  // namespace

std::u16string ColumnLetters(std::int32_t column) {
  std::u16string letters;
  for (std::int32_t rest = column; rest >= 0; rest = rest / 26 - 1)
    letters.insert(letters.begin(), static_cast<char16_t>(u'A' + rest % 26));
  return letters;
}

std::u16string A1Text(std::int32_t row, std::int32_t column) {
  return ColumnLetters(column) + RowDigits(row);
}

A1Reference Shifted(A1Reference reference, std::int32_t rows, std::int32_t columns) {
  Shift(reference.first, reference, rows, columns);
  Shift(reference.last, reference, rows, columns);
  return reference;
}

std::optional<A1Reference> Moved(const A1Reference& reference, std::int32_t rows,
                                 std::int32_t columns) {
  const A1Reference moved = Shifted(reference, rows, columns);
  return IsOnSheet(moved.first) && IsOnSheet(moved.last) ? std::optional(moved) : std::nullopt;
}

std::u16string A1Text(const A1Reference& reference) {
  std::u16string text;
  AppendCorner(reference.first, reference, text);
  if (!reference.is_range && !reference.whole_columns && !reference.whole_rows) return text;
  text += u':';
  AppendCorner(reference.last, reference, text);
  return text;
}

bool IsNameStart(char16_t unit) {
  if (unit < 0x80) return IsLetter(unit) || unit == u'_' || unit == u'\\';
  const bool no_letter = unit <= 0xA0 || unit == 0xD7 || unit == 0xF7 ||
                         (unit >= 0x2000 && unit <= 0x206F) || unit == 0x3000 || unit >= 0xFEFF;
  return !no_letter;
}

bool IsNamePart(char16_t unit) {
  return IsNameStart(unit) || IsDigit(unit) || unit == u'.' || unit == u'?';
}

bool ReferenceEnds(std::u16string_view text, std::size_t length) {
  if (length >= text.size()) return true;
  const char16_t next = text[length];
  return !IsNamePart(next) && next != u'(' && next != u'!' && next != u'[' && next != u'$';
}

std::optional<A1Reference> ScanA1(std::u16string_view text) {
  const End first = ScanEnd(text);
  if (!first.has_column && !first.has_row) return std::nullopt;
  const bool is_cell = first.has_column && first.has_row;

  A1Reference found{.first = first.corner, .last = first.corner, .length = first.length};
  if (first.length < text.size() && text[first.length] == u':') {
    const std::u16string_view rest = text.substr(first.length + 1);
    const End last = ScanEnd(rest);
    if (last.has_column == first.has_column && last.has_row == first.has_row &&
        ReferenceEnds(rest, last.length)) {
      found.last = last.corner;
      found.is_range = true;
      found.length += 1 + last.length;
      found.whole_columns = !first.has_row;
      found.whole_rows = !first.has_column;
      if (found.whole_columns) found.last.row = kSheetRows - 1;
      if (found.whole_rows) found.last.column = kSheetColumns - 1;
      return found;
    }
  }
  if (!is_cell || !ReferenceEnds(text, first.length)) return std::nullopt;
  return found;
}

}  // namespace formula
