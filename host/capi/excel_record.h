#pragma once
// Converts values of the host to records of the C API, and back.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "excel/xloper12.h"
#include "host/workbook/value.h"
#include "host/workbook/workbook.h"

namespace zavhost {

/// The longest text of 8-bit characters.
inline constexpr std::size_t kNarrowLimit = 255;
/// More elements than fit into the memory of a 64-bit Excel in one result.
inline constexpr std::int64_t kElementLimit = 1ll << 26;

/// Ids of sheets in references. No index and no small number is a valid id.
std::uint64_t SheetId(std::uint32_t sheet);
/// The sheet with this id; nothing if there is none. Id 0 is the current sheet.
std::optional<std::uint32_t> SheetFromId(std::uint64_t id, std::uint32_t current,
                                         const Workbook& workbook);

/// The number of code units of a value's text as a counted string; 0 for values without text.
std::size_t TextUnits(const Value& value);
/// Writes a value. A text goes to `text`, which is then advanced. The record is zeroed first, so
/// that equal values are equal byte by byte.
void WriteValue(const Value& value, XLOPER12& record, char16_t*& text);
void WriteText(std::u16string_view value, XLOPER12& record, char16_t*& text);
void WriteError(std::int32_t code, XLOPER12& record);
void WriteRange(const CellRange& range, XLREF12& record);

/// Writes the values in a range of a sheet row by row to `elements` (rows x columns); their texts
/// follow each other at `text`. Reads each column once.
void WriteCells(const Sheet& sheet, const CellRange& range, XLOPER12* elements, char16_t* text);
/// The number of code units of the texts in a range as counted strings.
std::size_t TextUnits(const Sheet& sheet, const CellRange& range);
/// How many of a range's cells are not blank.
std::size_t CountUsed(const Sheet& sheet, const CellRange& range);

/// The range of an area; nothing if it lies outside a sheet or its corners are swapped.
std::optional<CellRange> ToRange(const XLREF12& area);
/// The reference in a record of type Ref or SRef; nothing if it is malformed.
std::optional<Reference> ToReference(const XLOPER12& record, std::uint32_t current_sheet,
                                     const Workbook& workbook);
/// The value of a record that holds one value: a number that is not finite becomes #NUM!, a
/// subnormal number becomes 0, and missing and nil become blank.
Value ToValue(const XLOPER12& record);
/// A number as a cell stores it, by the same rules.
Value NumberResult(double number);
/// The elements of an array record that CheckRecord has accepted.
Array ToArray(const XLOPER12& record);

/// Describes the fault of a record that the add-in made; nothing if it is valid. References are
/// valid only where they are allowed.
std::optional<std::string> CheckRecord(const XLOPER12& record, bool may_be_reference);

}  // namespace zavhost
