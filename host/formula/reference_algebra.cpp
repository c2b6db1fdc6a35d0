#include "host/formula/reference_algebra.h"

#include <algorithm>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

using formula::kSheetColumns;
using formula::kSheetRows;

constexpr std::size_t kMaxAreas = 65'535;
constexpr std::uint32_t kNoSheet = 0xFFFF'FFFF;

/// Moves one coordinate; false if it leaves the sheet.
bool Move(std::int32_t& coordinate, std::int32_t distance, std::int32_t size, bool goes_round) {
  coordinate += distance;  // both are below 2^21
  if (goes_round) coordinate = ((coordinate % size) + size) % size;
  return coordinate >= 0 && coordinate < size;
}

bool MoveCorner(formula::A1Corner& corner, const Shift& shift,
                const formula::A1Reference& written) {
  const bool moves_row = !corner.row_absolute && !written.whole_columns;
  const bool moves_column = !corner.column_absolute && !written.whole_rows;
  return (!moves_row || Move(corner.row, shift.rows, kSheetRows, shift.goes_round)) &&
         (!moves_column || Move(corner.column, shift.columns, kSheetColumns, shift.goes_round));
}

CellRange Hull(const Reference& left, const Reference& right) {
  CellRange hull = left.areas.front();
  const auto extend = [&hull](const CellRange& area) {
    hull.first_row = std::min(hull.first_row, area.first_row);
    hull.first_column = std::min(hull.first_column, area.first_column);
    hull.last_row = std::max(hull.last_row, area.last_row);
    hull.last_column = std::max(hull.last_column, area.last_column);
  };
  std::for_each(left.areas.begin(), left.areas.end(), extend);
  std::for_each(right.areas.begin(), right.areas.end(), extend);
  return hull;
}

Operand Intersect(const Reference& left, const Reference& right) {
  Reference common{left.sheet, {}};
  for (const CellRange& a : left.areas) {
    for (const CellRange& b : right.areas) {
      const CellRange both{
          std::max(a.first_row, b.first_row), std::max(a.first_column, b.first_column),
          std::min(a.last_row, b.last_row), std::min(a.last_column, b.last_column)};
      if (both.rows() <= 0 || both.columns() <= 0) continue;
      if (common.areas.size() == kMaxAreas) return Value(ErrorCode::kValue);
      common.areas.push_back(both);
    }
  }
  if (common.areas.empty()) return Value(ErrorCode::kNull);
  return common;
}

const Value* ErrorIn(const Operand& operand) {
  const Value* value = std::get_if<Value>(&operand);
  return value != nullptr && value->error() != nullptr ? value : nullptr;
}

}  // namespace

Shift Shift::Between(const CellAddress& origin, const CellAddress& caller, bool goes_round) {
  return {caller.row - origin.row, caller.column - origin.column, goes_round};
}

std::optional<CellRange> ShiftedRange(const formula::A1Reference& written, const Shift& shift) {
  formula::A1Corner first = written.first;
  formula::A1Corner last = written.last;
  if (!MoveCorner(first, shift, written) || !MoveCorner(last, shift, written)) return std::nullopt;
  const auto [top, bottom] = std::minmax(first.row, last.row);
  const auto [left, right] = std::minmax(first.column, last.column);
  return CellRange{top, left, bottom, right};
}

std::optional<std::uint32_t> SheetOf(const SheetPrefix& prefix, std::uint32_t current,
                                     const Workbook& workbook) {
  if (prefix.kind != SheetPrefix::Kind::kSheet) return current;
  return workbook.FindSheet(prefix.sheet);
}

const DefinedName* DefinedNameOf(const SheetPrefix& prefix, std::u16string_view name,
                                 std::uint32_t current_sheet, const Workbook& workbook) {
  std::optional<std::uint32_t> sheet = current_sheet;
  if (prefix.kind == SheetPrefix::Kind::kThisWorkbook) sheet = kNoSheet;
  if (prefix.kind == SheetPrefix::Kind::kSheet) {
    sheet = workbook.FindSheet(prefix.sheet);
    // "Book1.xlsx!total" is a name of the workbook itself.
    if (!sheet && EqualIgnoringCase(prefix.sheet, workbook.file_name)) sheet = kNoSheet;
  }
  return sheet ? workbook.FindName(name, *sheet) : nullptr;
}

Operand CombineReferences(Operator op, const Operand& left, const Operand& right) {
  if (const Value* error = ErrorIn(left)) return *error;
  if (const Value* error = ErrorIn(right)) return *error;
  const Reference* a = std::get_if<Reference>(&left);
  const Reference* b = std::get_if<Reference>(&right);
  if (a == nullptr || b == nullptr || a->areas.empty() || b->areas.empty() ||
      a->sheet != b->sheet) {
    return Value(ErrorCode::kValue);
  }
  if (op == Operator::kIntersection) return Intersect(*a, *b);
  if (op == Operator::kRange) return Reference{a->sheet, {Hull(*a, *b)}};
  if (a->areas.size() + b->areas.size() > kMaxAreas) return Value(ErrorCode::kValue);
  Reference both = *a;
  both.areas.insert(both.areas.end(), b->areas.begin(), b->areas.end());
  return both;
}

std::optional<CellAddress> ImplicitIntersection(const Reference& reference,
                                                const CellAddress& caller) {
  if (reference.areas.size() != 1) return std::nullopt;
  const CellRange& area = reference.areas.front();
  if (area.IsSingleCell()) return CellAddress{reference.sheet, area.first_row, area.first_column};
  if (area.columns() == 1 && area.Contains(caller.row, area.first_column)) {
    return CellAddress{reference.sheet, caller.row, area.first_column};
  }
  if (area.rows() == 1 && area.Contains(area.first_row, caller.column)) {
    return CellAddress{reference.sheet, area.first_row, caller.column};
  }
  return std::nullopt;
}

Operand Dereference(const Operand& operand, bool as_array, EvaluationContext& context,
                    RangeExtent extent) {
  if (std::holds_alternative<MissingArgument>(operand)) return {};  // a blank value
  const Reference* reference = std::get_if<Reference>(&operand);
  if (reference == nullptr) return operand;
  if (reference->areas.size() != 1) return Value(ErrorCode::kValue);
  const CellRange& area = reference->areas.front();
  if (as_array && !area.IsSingleCell()) return context.ReadRange(reference->sheet, area, extent);
  const auto cell = ImplicitIntersection(*reference, context.caller());
  if (!cell) return Value(ErrorCode::kValue);
  return context.ReadCell(*cell);
}

}  // namespace zavhost
