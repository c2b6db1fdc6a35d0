#pragma once
// References: the targets of written references, the reference operators, and the values of
// references.

#include <cstdint>
#include <optional>
#include <string_view>

#include "formula/a1_reference.h"
#include "host/formula/evaluate.h"
#include "host/formula/expression.h"

namespace zavhost {

/// The distance by which relative references move from the cell for which a text was written.
struct Shift {
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  bool goes_round = false;  // past an edge to the opposite edge, as in defined names

  static Shift Between(const CellAddress& origin, const CellAddress& caller, bool goes_round);
};

/// The range of a written reference after the shift; nothing if it leaves the sheet.
std::optional<CellRange> ShiftedRange(const formula::A1Reference& written, const Shift& shift);

/// The sheet that a prefix names (`current` without one); nothing if there is no such sheet.
std::optional<std::uint32_t> SheetOf(const SheetPrefix& prefix, std::uint32_t current,
                                     const Workbook& workbook);

/// The defined name as seen from a sheet or through its prefix; null if there is none.
const DefinedName* DefinedNameOf(const SheetPrefix& prefix, std::u16string_view name,
                                 std::uint32_t current, const Workbook& workbook);

/// The operators ":", intersection and union. If the operands are not references to one sheet, the
/// result is #VALUE!, or the error of an operand. An empty intersection is #NULL!. More areas than
/// the C API can count are #VALUE!.
Operand CombineReferences(Operator op, const Operand& left, const Operand& right);

/// The single cell that replaces a reference in a normal cell: the reference itself if it is one
/// cell, otherwise the cell of a column or row that lies in the caller's row or column. Nothing if
/// there is none, which gives #VALUE!.
std::optional<CellAddress> ImplicitIntersection(const Reference& reference,
                                                const CellAddress& caller);

/// The operand as a Value or an ArrayPtr. A range becomes an array with `as_array`, otherwise one
/// value by implicit intersection. A reference with several areas is #VALUE!; a missing argument is
/// blank.
Operand Dereference(const Operand& operand, bool as_array, EvaluationContext& context,
                    RangeExtent extent = RangeExtent::kWhole);

}  // namespace zavhost
