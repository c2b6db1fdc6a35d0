#pragma once
// References in A1 style: cells, ranges, whole columns and whole rows, each part with or without
// "$".

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace formula {

inline constexpr std::int32_t kSheetRows = 1'048'576;
inline constexpr std::int32_t kSheetColumns = 16'384;

/// A corner as written, zero-based; a part without "$" is relative.
struct A1Corner {
  std::int32_t row = 0;
  std::int32_t column = 0;
  bool row_absolute = false;
  bool column_absolute = false;
};

/// A single cell has equal corners. The corners are as written: B2:A1 is not reordered.
struct A1Reference {
  A1Corner first;
  A1Corner last;
  bool whole_columns = false;  // "A:C": rows span the sheet
  bool whole_rows = false;     // "3:7": columns span the sheet
  bool is_range = false;       // with ":"
  std::size_t length = 0;      // of the text, in code units
};

/// "A" for column 0, "XFD" for the last one.
std::u16string ColumnLetters(std::int32_t column);
/// "B7" from zero-based numbers.
std::u16string A1Text(std::int32_t row, std::int32_t column);

/// The reference with its relative parts moved, even off the sheet.
A1Reference Shifted(A1Reference reference, std::int32_t rows, std::int32_t columns);
/// The same; std::nullopt if a part leaves the sheet.
std::optional<A1Reference> Moved(const A1Reference& reference, std::int32_t rows,
                                 std::int32_t columns);
/// "$B7:C9": the reference without a sheet prefix.
std::u16string A1Text(const A1Reference& reference);

/// Letters, digits, "_", ".", "\", "?" and letters beyond ASCII continue a name; a digit, "." and
/// "?" do not begin one.
bool IsNameStart(char16_t unit);
bool IsNamePart(char16_t unit);

/// True where a reference of this length at the start of `text` does not continue as a name, a
/// function or a prefix.
bool ReferenceEnds(std::u16string_view text, std::size_t length);

/// The longest reference without a sheet prefix at the start of `text`; std::nullopt if there is
/// none or if it continues as a name, a function or a prefix ("A1B", "LOG10(", "A1!B2").
std::optional<A1Reference> ScanA1(std::u16string_view text);

}  // namespace formula
