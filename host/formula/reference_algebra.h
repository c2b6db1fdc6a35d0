#pragma once
// References: where a written one points to, the reference operators, and their values.

#include <cstdint>
#include <optional>
#include <string_view>

#include "formula/a1_reference.h"
#include "host/formula/evaluate.h"
#include "host/formula/expression.h"

namespace zavhost {

/// How far relative references move from the cell that a text was written for.
struct Shift {
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  bool goes_round = false;  // past an edge to the opposite one, as in defined names

  static Shift Between(const CellAddress& origin, const CellAddress& caller, bool goes_round);
};

/// The range that a written reference means after the shift; nothing when it leaves the sheet.
std::optional<CellRange> ShiftedRange(const formula::A1Reference& written, const Shift& shift);

/// The sheet that a prefix names (`current` without one); nothing when there is no such sheet.
std::optional<std::uint32_t> SheetOf(const SheetPrefix& prefix, std::uint32_t current,
                                     const Workbook& workbook);

/// The defined name as seen from a sheet or through its prefix; null when there is none.
const DefinedName* DefinedNameOf(const SheetPrefix& prefix, std::u16string_view name,
                                 std::uint32_t current, const Workbook& workbook);

/// The operators ":", intersection and union. Both operands must be references to one sheet, else
/// #VALUE! (an operand's own error goes first); nothing in common is #NULL!; more areas than the C
/// API can count are #VALUE!.
Operand CombineReferences(Operator op, const Operand& left, const Operand& right);

/// The one cell that stands for a reference in a normal cell: the reference itself when it is one
/// cell, else the cell of a column or row that lies in the caller's row or column. Nothing when
/// there is none: #VALUE!.
std::optional<CellAddress> ImplicitIntersection(const Reference& reference,
                                                const CellAddress& caller);

/// The value of an operand where one value or an array is wanted: a Value or an ArrayPtr. A range
/// becomes an array with `as_array` and one value by implicit intersection without; a reference of
/// several areas is #VALUE!; a missing argument is blank.
Operand Dereference(const Operand& operand, bool as_array, EvaluationContext& context,
                    RangeExtent extent = RangeExtent::kWhole);

}  // namespace zavhost
