#pragma once
// Values of the host as records of the C API, and back.

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

/// Ids of sheets in references; no index, and no small number, is a valid id.
std::uint64_t SheetId(std::uint32_t sheet);
/// The sheet of an id; nothing when there is no such sheet. Id 0 is the current sheet.
std::optional<std::uint32_t> SheetFromId(std::uint64_t id, std::uint32_t current,
                                         const Workbook& workbook);

/// Code units that the text of a value takes as a counted string; 0 for values without text.
std::size_t TextUnits(const Value& value);
/// Writes a value; a text goes to `text`, which moves on behind it. The record is zeroed first, so
/// that equal values are equal byte by byte.
void WriteValue(const Value& value, XLOPER12& record, char16_t*& text);
void WriteText(std::u16string_view value, XLOPER12& record, char16_t*& text);
void WriteError(std::int32_t code, XLOPER12& record);
void WriteRange(const CellRange& range, XLREF12& record);

/// What stands in a range of a sheet, row by row into `elements` (rows x columns of them); the
/// texts follow each other at `text`. Reads each column once.
void WriteCells(const Sheet& sheet, const CellRange& range, XLOPER12* elements, char16_t* text);
/// Code units that the texts of a range take as counted strings.
std::size_t TextUnits(const Sheet& sheet, const CellRange& range);

/// The range of an area; nothing when it lies outside a sheet or its corners are swapped.
std::optional<CellRange> ToRange(const XLREF12& area);
/// The reference of a record of type Ref or SRef; nothing when it is malformed.
std::optional<Reference> ToReference(const XLOPER12& record, std::uint32_t current_sheet,
                                     const Workbook& workbook);
/// The value of a record that holds one value: a number that is not finite is #NUM!, one too small
/// for full precision is 0, missing and nil are blank.
Value ToValue(const XLOPER12& record);
/// A number as a cell keeps it, by the same rules.
Value NumberResult(double number);
/// The elements of an array record that CheckRecord found sound.
Array ToArray(const XLOPER12& record);

/// What is wrong with a record that the add-in made, in words; nothing when it is sound. References
/// are sound only where they may stand.
std::optional<std::string> CheckRecord(const XLOPER12& record, bool may_be_reference);

}  // namespace zavhost
