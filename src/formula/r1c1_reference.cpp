#include "formula/r1c1_reference.h"

#include <string>

namespace formula {
namespace {

/// One row or column as written.
struct Part {
  std::int32_t number = 0;  // a place from 0, or a distance
  bool absolute = false;
};

struct End {
  std::optional<Part> row;
  std::optional<Part> column;
  std::size_t length = 0;
};

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// The number of up to seven digits at `at`, which moves behind it; std::nullopt if there is none.
std::optional<std::int32_t> ScanNumber(std::u16string_view text, std::size_t& at) {
  const std::size_t start = at;
  std::int32_t number = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    if (at - start == 7) return std::nullopt;
    number = number * 10 + (text[at] - u'0');
  }
  return at > start ? std::optional(number) : std::nullopt;
}

/// The distance in brackets at `at`, which moves behind it; 0 if there are none.
std::optional<std::int32_t> ScanDistance(std::u16string_view text, const R1C1Letters& letters,
                                         std::size_t& at) {
  if (at >= text.size() || text[at] != letters.open) return 0;
  std::size_t behind = at + 1;
  const bool negative = behind < text.size() && text[behind] == u'-';
  if (negative) ++behind;
  const auto distance = ScanNumber(text, behind);
  if (!distance || behind >= text.size() || text[behind] != letters.close) return std::nullopt;
  at = behind + 1;
  return negative ? -*distance : *distance;
}

/// Reads a letter and its number or distance, which are within a sheet of `size` lines.
std::optional<Part> ScanPart(std::u16string_view text, char16_t letter, const R1C1Letters& letters,
                             std::int32_t size, std::size_t& length) {
  std::size_t at = length;
  if (at >= text.size() || (text[at] != letter && text[at] != (letter | 0x20))) return std::nullopt;
  ++at;
  Part part;
  if (at < text.size() && IsDigit(text[at])) {
    const auto place = ScanNumber(text, at);
    if (!place || *place < 1 || *place > size) return std::nullopt;
    part = {*place - 1, true};
  } else {
    const auto distance = ScanDistance(text, letters, at);
    if (!distance || *distance <= -size || *distance >= size) return std::nullopt;
    part = {*distance, false};
  }
  length = at;
  return part;
}

End ScanEnd(std::u16string_view text, const R1C1Letters& letters) {
  End end;
  end.row = ScanPart(text, letters.row, letters, kSheetRows, end.length);
  end.column = ScanPart(text, letters.column, letters, kSheetColumns, end.length);
  return end;
}

A1Corner CornerOf(const End& end) {
  A1Corner corner;
  if (end.row) {
    corner.row = end.row->number;
    corner.row_absolute = end.row->absolute;
  }
  if (end.column) {
    corner.column = end.column->number;
    corner.column_absolute = end.column->absolute;
  }
  return corner;
}

void AppendPart(char16_t letter, const Part& part, const R1C1Letters& letters,
                std::u16string& text) {
  text += letter;
  if (!part.absolute && part.number == 0) return;
  const std::string digits = std::to_string(part.absolute ? part.number + 1 : part.number);
  if (!part.absolute) text += letters.open;
  text.append(digits.begin(), digits.end());
  if (!part.absolute) text += letters.close;
}

void AppendCorner(const A1Corner& corner, const A1Reference& reference, const R1C1Letters& letters,
                  std::u16string& text) {
  if (!reference.whole_columns)
    AppendPart(letters.row, {corner.row, corner.row_absolute}, letters, text);
  if (!reference.whole_rows)
    AppendPart(letters.column, {corner.column, corner.column_absolute}, letters, text);
}

/// Whether "R3" alone says all of the rows "3:3".
bool IsOneLine(const A1Reference& reference) {
  const A1Corner &first = reference.first, &last = reference.last;
  if (reference.whole_rows) return first.row == last.row && first.row_absolute == last.row_absolute;
  return reference.whole_columns && first.column == last.column &&
         first.column_absolute == last.column_absolute;
}

}  // namespace

std::optional<A1Reference> ScanR1C1(std::u16string_view text, const R1C1Letters& letters) {
  const End first = ScanEnd(text, letters);
  if (!first.row && !first.column) return std::nullopt;
  A1Reference found{.first = CornerOf(first),
                    .last = CornerOf(first),
                    .whole_columns = !first.row,
                    .whole_rows = !first.column,
                    .length = first.length};
  if (first.length < text.size() && text[first.length] == u':') {
    const std::u16string_view rest = text.substr(first.length + 1);
    const End last = ScanEnd(rest, letters);
    if (last.row.has_value() == first.row.has_value() &&
        last.column.has_value() == first.column.has_value() && ReferenceEnds(rest, last.length)) {
      found.last = CornerOf(last);
      found.is_range = true;
      found.length += 1 + last.length;
    }
  }
  if (!ReferenceEnds(text, found.length)) return std::nullopt;
  if (found.whole_columns) found.last.row = kSheetRows - 1;
  if (found.whole_rows) found.last.column = kSheetColumns - 1;
  return found;
}

std::u16string R1C1Text(const A1Reference& distances, const R1C1Letters& letters) {
  std::u16string text;
  AppendCorner(distances.first, distances, letters, text);
  if (!distances.is_range || IsOneLine(distances)) return text;
  text += u':';
  AppendCorner(distances.last, distances, letters, text);
  return text;
}

}  // namespace formula
