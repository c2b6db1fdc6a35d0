#include "host/formula/text_reference.h"

#include <algorithm>
#include <optional>

#include "host/formula/expression.h"
#include "host/formula/reference_algebra.h"
#include "host/formula/structured_reference.h"

namespace zavhost {
namespace {

Operand NoReference() { return Value(ErrorCode::kRef); }

/// The step of a formula that is nothing but an operand; null for any other.
const Step* OnlyStep(const FormulaPtr& formula) {
  if (!formula || formula->expression().steps.size() != 1) return nullptr;
  return &formula->expression().steps.front();
}

FormulaPtr Parsed(std::u16string_view text) {
  try {
    return ParseFormula(text);
  } catch (const FormulaError&) {
    return nullptr;
  }
}

Operand ResolveCells(const ReferenceStep& step, const Shift& shift,
                     const EvaluationContext& context) {
  const auto sheet = SheetOf(step.prefix, context.caller().sheet, context.workbook());
  const auto range = ShiftedRange(step.reference, shift);
  if (!sheet || !range) return NoReference();
  return Reference{*sheet, {*range}};
}

/// A name whose text is itself nothing but a reference.
Operand ResolveDefinedName(const DefinedName& name, EvaluationContext& context) {
  FormulaPtr formula;
  try {
    formula = context.ParsedName(name);
  } catch (const FormulaError&) {
    return NoReference();
  }
  const Step* step = OnlyStep(formula);
  const ReferenceStep* cells = step != nullptr ? std::get_if<ReferenceStep>(step) : nullptr;
  if (cells == nullptr) return NoReference();
  return ResolveCells(*cells, Shift::Between({}, context.caller(), true), context);
}

Operand ResolveTable(const StructuredReference& written, const EvaluationContext& context) {
  return ResolveStructured(written, context.caller(), context.workbook());
}

Operand ResolveName(const NameStep& step, EvaluationContext& context) {
  const Workbook& workbook = context.workbook();
  const DefinedName* name = DefinedNameOf(step.prefix, step.name, context.caller().sheet, workbook);
  if (name != nullptr) return ResolveDefinedName(*name, context);
  if (workbook.FindTable(step.name) == nullptr) return NoReference();
  return ResolveTable({.table = step.name}, context);
}

/// "A1#": the cells that the formula of a cell fills.
Operand ResolveSpilled(const Reference& anchor, EvaluationContext& context) {
  const CellRange& cell = anchor.areas.front();
  const auto filled = cell.IsSingleCell()
                          ? context.SpillRange({anchor.sheet, cell.first_row, cell.first_column})
                          : std::nullopt;
  if (!filled) return NoReference();
  return Reference{anchor.sheet, {*filled}};
}

Operand ResolveStep(const Step& step, EvaluationContext& context) {
  if (const auto* cells = std::get_if<ReferenceStep>(&step))
    return ResolveCells(*cells, {}, context);
  if (const auto* name = std::get_if<NameStep>(&step)) return ResolveName(*name, context);
  if (const auto* structured = std::get_if<StructuredReference>(&step))
    return ResolveTable(*structured, context);
  return NoReference();
}

/// Takes "R", "R5" or "R[-2]" with its letter in either case; the zero-based coordinate, or nothing
/// if it leaves the sheet or is malformed.
std::optional<std::int32_t> TakeCoordinate(std::u16string_view& text, std::int32_t current,
                                           std::int32_t size) {
  text.remove_prefix(1);
  const bool is_relative = text.starts_with(u'[');
  if (is_relative) text.remove_prefix(1);
  const bool is_negative = is_relative && text.starts_with(u'-');
  if (is_negative) text.remove_prefix(1);
  std::int32_t number = 0;
  std::size_t digits = 0;
  for (; digits < text.size() && text[digits] >= u'0' && text[digits] <= u'9'; ++digits) {
    number = number * 10 + (text[digits] - u'0');
    if (number > size) return std::nullopt;
  }
  text.remove_prefix(digits);
  if (is_relative) {
    if (digits == 0 || !text.starts_with(u']')) return std::nullopt;
    text.remove_prefix(1);
  }
  const std::int32_t moved = current + (is_negative ? -number : number);
  const std::int32_t place = is_relative || digits == 0 ? moved : number - 1;
  if (place < 0 || place >= size) return std::nullopt;
  return place;
}

/// Takes "R1C1", a whole row "R1" or a whole column "C1".
std::optional<CellRange> TakeR1C1(std::u16string_view& text, const CellAddress& caller) {
  using formula::kSheetColumns;
  using formula::kSheetRows;
  const auto begins_with = [&text](char16_t letter) {
    return !text.empty() && (text.front() | 0x20) == letter;
  };
  CellRange range{0, 0, kSheetRows - 1, kSheetColumns - 1};
  const bool has_row = begins_with(u'r');
  if (has_row) {
    const auto row = TakeCoordinate(text, caller.row, kSheetRows);
    if (!row) return std::nullopt;
    range.first_row = range.last_row = *row;
  }
  const bool has_column = begins_with(u'c');
  if (has_column) {
    const auto column = TakeCoordinate(text, caller.column, kSheetColumns);
    if (!column) return std::nullopt;
    range.first_column = range.last_column = *column;
  }
  return has_row || has_column ? std::optional(range) : std::nullopt;
}

std::optional<CellRange> ParseR1C1(std::u16string_view text, const CellAddress& caller) {
  const auto first = TakeR1C1(text, caller);
  if (!first || text.empty()) return first;
  if (!text.starts_with(u':')) return std::nullopt;
  text.remove_prefix(1);
  const auto last = TakeR1C1(text, caller);
  const bool is_range = last && text.empty() && first->HasAllRows() == last->HasAllRows() &&
                        first->HasAllColumns() == last->HasAllColumns();
  if (!is_range) return std::nullopt;
  return CellRange{std::min(first->first_row, last->first_row),
                   std::min(first->first_column, last->first_column),
                   std::max(first->last_row, last->last_row),
                   std::max(first->last_column, last->last_column)};
}

}  // namespace

Operand ReferenceFromText(std::u16string_view text, EvaluationContext& context) {
  const FormulaPtr formula = Parsed(text);
  if (!formula) return NoReference();
  const std::vector<Step>& steps = formula->expression().steps;
  const Operator* last = std::get_if<Operator>(&steps.back());
  const bool is_spilled = steps.size() == 2 && last != nullptr && *last == Operator::kSpill;
  if (steps.size() != 1 && !is_spilled) return NoReference();
  const Operand resolved = ResolveStep(steps.front(), context);
  const Reference* reference = std::get_if<Reference>(&resolved);
  return is_spilled && reference != nullptr ? ResolveSpilled(*reference, context) : resolved;
}

Operand ReferenceFromR1C1(std::u16string_view text, EvaluationContext& context) {
  const std::size_t mark = text.rfind(u'!') + 1;  // npos + 1 is 0
  if (const auto range = ParseR1C1(text.substr(mark), context.caller())) {
    // The prefix is what it would be before a cell in the other style.
    const FormulaPtr formula = Parsed(std::u16string(text.substr(0, mark)) + u"A1");
    const Step* step = OnlyStep(formula);
    const ReferenceStep* cell = step != nullptr ? std::get_if<ReferenceStep>(step) : nullptr;
    const auto sheet = cell != nullptr
                           ? SheetOf(cell->prefix, context.caller().sheet, context.workbook())
                           : std::nullopt;
    if (!sheet) return NoReference();
    return Reference{*sheet, {*range}};
  }
  const FormulaPtr formula = Parsed(text);
  const Step* step = OnlyStep(formula);
  const bool is_cell = step == nullptr || std::holds_alternative<ReferenceStep>(*step);
  return is_cell ? NoReference() : ResolveStep(*step, context);
}

}  // namespace zavhost
