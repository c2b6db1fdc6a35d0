// What the cells of a range hold.
#include "host/automation/windows/cell_values.h"
#include "host/automation/windows/range.h"
#include "host/calc/formula_text.h"
#include "host/workbook/number_format.h"

namespace zavhost {
namespace {

using Self = RangeObject;

// Reading.

/// What `of_cell(cell)` gives for the only cell, or an array for the first area.
template <class OfCell>
Variant Block(const Self& self, const OfCell& of_cell) {
  constexpr std::int64_t kMostCells = 1 << 24;
  const CellRange& area = self.first();
  if (area.IsSingleCell()) return of_cell(self.corner());
  if (std::int64_t{area.rows()} * area.columns() > kMostCells) throw std::bad_alloc();
  return ArrayOf(area.rows(), area.columns(), [&](std::int32_t row, std::int32_t column) {
    return of_cell(CellPosition{area.first_row + row, area.first_column + column});
  });
}

/// What all cells give alike; null if they differ.
template <class OfCell>
Variant Common(const Self& self, const OfCell& of_cell) {
  std::optional<decltype(of_cell(CellPosition{}))> common;
  bool is_mixed = false;
  self.ForEachCell([&](const CellPosition& cell) {
    auto value = of_cell(cell);
    is_mixed = is_mixed || (common && *common != value);
    common = std::move(value);
  });
  return is_mixed ? Variant::Null() : Variant(*common);
}

Variant GetValue2(Self& self, const Arguments&) {
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(self.sheet());
  return Block(
      self, [&](const CellPosition& cell) { return VariantOf(cells.At(cell.row, cell.column)); });
}

bool ShowsDate(const CellStyle& style) {
  if (style.number_format == u"General") return false;
  const auto sections = ParseFormatCode(style.number_format);
  return sections && !sections->empty() && sections->front().is_date;
}

Variant GetValue(Self& self, const Arguments&) {
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(self.sheet());
  return Block(self, [&](const CellPosition& cell) {
    const Value& value = cells.At(cell.row, cell.column);
    const double* number = value.number();
    if (number != nullptr && ShowsDate(self.sheet().styles.At(cell.row, cell.column)))
      return Variant::Date(*number);
    return VariantOf(value);
  });
}

/// A formula with its "=", otherwise the constant as it is entered.
Variant GetFormula(Self& self, const Arguments&) {
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(self.sheet());
  return Block(self, [&](const CellPosition& cell) -> Variant {
    const auto found = self.book().FormulaAt(self.sheet(), cell);
    if (found && (!found->formula->is_dynamic || found->cell == cell))
      return std::u16string_view(u"=" + found->formula->text);
    return std::u16string_view(GeneralText(cells.At(cell.row, cell.column)));
  });
}

Variant HasFormula(Self& self, const Arguments&) {
  return Common(self, [&](const CellPosition& cell) {
    const auto found = self.book().FormulaAt(self.sheet(), cell);
    return found && (!found->formula->is_dynamic || found->cell == cell);
  });
}

bool IsInArray(Self& self, const CellPosition& cell) {
  const auto found = self.book().FormulaAt(self.sheet(), cell);
  return found && found->formula->array && !found->formula->is_dynamic;
}

Variant HasArray(Self& self, const Arguments&) {
  return Common(self, [&](const CellPosition& cell) { return IsInArray(self, cell); });
}

Variant CurrentArray(Self& self, const Arguments&) {
  if (!IsInArray(self, self.corner())) Refuse(u"No cells were found.");
  return self.Of(*self.book().FormulaAt(self.sheet(), self.corner())->formula->array);
}

Variant GetText(Self& self, const Arguments&) {
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(self.sheet());
  const Variant common = Common(self, [&](const CellPosition& cell) {
    const Value& value = cells.At(cell.row, cell.column);
    if (value.IsBlank()) return std::u16string();
    const std::u16string& code = self.sheet().styles.At(cell.row, cell.column).number_format;
    return FormattedText(value, code, self.book().engine().workbook().date1904)
        .value_or(GeneralText(value));
  });
  return common;
}

// Writing.

std::u16string TextFor(const Self& self, std::u16string_view text, const CellPosition& cell) {
  const CellAddress origin{0, self.first().first_row, self.first().first_column};
  return ShownFormulaText(text, origin, {0, cell.row, cell.column});
}

void EnterFormula(const Self& self, const CellPosition& cell, std::u16string text,
                  bool is_dynamic) {
  CellFormula formula{std::move(text), std::nullopt, is_dynamic};
  if (is_dynamic) formula.array = CellRange{cell.row, cell.column, cell.row, cell.column};
  self.book().SetFormula(self.sheet(), cell, std::move(formula));
}

/// A text of one element: a formula in its cell as written, or a constant.
void EnterText(const Self& self, const CellPosition& cell, std::u16string_view text,
               bool is_dynamic, bool moves) {
  const bool is_text = self.sheet().styles.At(cell.row, cell.column).number_format == u"@";
  if (!is_text && text.size() > 1 && text.starts_with(u'=')) {
    CheckFormula(self.book(), text.substr(1));
    return EnterFormula(
        self, cell,
        moves ? TextFor(self, text.substr(1), cell) : ShownFormulaText(text.substr(1), {}, {}),
        is_dynamic);
  }
  self.book().SetValue(self.sheet(), cell, is_text ? Value(text) : ValueFromEntry(text));
}

void EnterDateFormat(const Self& self, const CellPosition& cell) {
  const CellRange range{cell.row, cell.column, cell.row, cell.column};
  self.sheet().styles.Apply(range, [](CellStyle& style) {
    if (style.number_format == u"General") style.number_format = u"m/d/yyyy";
  });
}

template <bool kIsDynamic>
void Enter(Self& self, const Arguments& given) {
  self.CheckWritable();
  const Variant& value = given.value();
  // The value of a range object is its cells'.
  if (auto* range = In<RangeObject>(value)) {
    std::vector<Variant> read{GetValue2(*range, Arguments({}))};
    return Enter<kIsDynamic>(self, Arguments(std::move(read)));
  }
  const VariantBlock block = BlockIn(value.get());
  const bool is_single = block.elements.size() == 1;
  for (const CellRange& area : self.areas()) {
    for (std::int32_t row = area.first_row; row <= area.last_row; ++row) {
      for (std::int32_t column = area.first_column; column <= area.last_column; ++column) {
        const CellPosition cell{row, column};
        const Variant* element = block.At(row - area.first_row, column - area.first_column);
        if (element == nullptr) {
          self.book().SetValue(self.sheet(), cell, ErrorCode::kNA);
        } else if (element->type() == VT_BSTR) {
          EnterText(self, cell, element->text(), kIsDynamic, is_single);
        } else {
          self.book().SetValue(self.sheet(), cell, ValueIn(element->get()));
          if (element->type() == VT_DATE) EnterDateFormat(self, cell);
        }
      }
    }
  }
}

Variant GetFormulaArray(Self& self, const Arguments& given) {
  if (self.first().IsSingleCell()) return GetFormula(self, given);
  const auto found = self.book().FormulaAt(self.sheet(), self.corner());
  const bool is_array = found && found->formula->array == self.first();
  return is_array ? Variant(std::u16string_view(u"=" + found->formula->text)) : Variant::Null();
}

void PutFormulaArray(Self& self, const Arguments& given) {
  constexpr std::size_t kLongestArrayFormula = 255;
  self.CheckWritable();
  std::u16string text = given.text();
  if (text.size() > kLongestArrayFormula || self.areas().size() != 1) Refuse();
  if (text.starts_with(u'=')) text.erase(0, 1);
  CheckFormula(self.book(), text);
  self.book().SetFormula(self.sheet(), self.corner(),
                         {ShownFormulaText(text, {}, {}), self.first(), false});
}

Variant Clear(Self& self, const Arguments&) {
  self.CheckWritable();
  for (const CellRange& area : self.areas()) {
    self.book().ClearContents(self.sheet(), area);
    self.sheet().styles.Apply(area, [](CellStyle& style) { style = {}; });
    std::erase_if(self.sheet().merged, [&](const CellRange& merged) {
      return area.Contains(merged.first_row, merged.first_column);
    });
  }
  return true;
}

Variant ClearContents(Self& self, const Arguments&) {
  self.CheckWritable();
  for (const CellRange& area : self.areas()) self.book().ClearContents(self.sheet(), area);
  return true;
}

// Replacing.

std::u16string Replaced(std::u16string_view text, std::u16string_view what,
                        std::u16string_view with) {
  std::u16string result;
  while (!text.empty()) {
    if (text.size() >= what.size() && EqualIgnoringCase(text.substr(0, what.size()), what)) {
      result += with;
      text.remove_prefix(what.size());
    } else {
      result += text.front();
      text.remove_prefix(1);
    }
  }
  return result;
}

/// The cells that hold something, of a copy that writing does not change.
std::vector<CellPosition> FilledCells(Self& self) {
  std::vector<CellPosition> filled;
  const CellRange used = UsedCells(self.book(), self.sheet());
  const Sheet& cells = self.book().CellsOf(self.sheet());
  for (const CellRange& area : self.areas()) {
    for (std::int32_t row = std::max(area.first_row, used.first_row);
         row <= std::min(area.last_row, used.last_row); ++row) {
      for (std::int32_t column = std::max(area.first_column, used.first_column);
           column <= std::min(area.last_column, used.last_column); ++column) {
        if (!cells.At(row, column).IsBlank() || self.sheet().formulas.contains({row, column}))
          filled.push_back({row, column});
      }
    }
  }
  return filled;
}

/// A formula that would be none after it stays as it is, as in Excel without its message.
void ReplaceIn(Self& self, const CellPosition& cell, const Arguments& given, bool is_whole) {
  const auto found = self.book().FormulaAt(self.sheet(), cell);
  if (found && found->cell != cell) return;
  const Sheet& cells = self.book().CellsOf(self.sheet());
  const std::u16string text =
      found ? u"=" + found->formula->text : GeneralText(cells.At(cell.row, cell.column));
  const std::u16string_view what = given.Text(0), with = given.Text(1);
  if (is_whole && !EqualIgnoringCase(text, what)) return;
  const std::u16string replaced = is_whole ? std::u16string(with) : Replaced(text, what, with);
  if (replaced == text) return;
  const bool is_formula = replaced.size() > 1 && replaced.starts_with(u'=');
  if (!found || !found->formula->array || !is_formula)
    return EnterText(self, cell, replaced, found && found->formula->is_dynamic, false);
  CheckFormula(self.book(), replaced.substr(1));
  CellFormula formula = *found->formula;
  formula.text = replaced.substr(1);
  formula.is_new = true;
  self.book().SetFormula(self.sheet(), cell, std::move(formula));
}

Variant Replace(Self& self, const Arguments& given) {
  constexpr std::int32_t kWhole = 1, kPart = 2;
  if (given.Text(0).empty()) return true;
  self.CheckWritable();
  const bool is_whole = given.Integer(2, kPart) == kWhole;
  for (const CellPosition& cell : FilledCells(self)) {
    try {
      ReplaceIn(self, cell, given, is_whole);
    } catch (const AutomationError&) {
    }
  }
  return true;
}

Variant CalculateCells(Self& self, const Arguments&) {
  self.book().Calculate();
  return true;
}

constexpr Member<Self> kMembers[] = {
    {u"Value2", kProperty, "", GetValue2, 'v', Enter<false>},
    {u"Value", kProperty, "RangeValueDataType?v", GetValue, 'v', Enter<false>},
    {u"Formula", kProperty, "", GetFormula, 'v', Enter<false>},
    {u"Formula2", kProperty, "", GetFormula, 'v', Enter<true>},
    {u"FormulaArray", kProperty, "", GetFormulaArray, 's', PutFormulaArray},
    {u"HasFormula", kProperty, "", HasFormula},
    {u"HasArray", kProperty, "", HasArray},
    {u"CurrentArray", kProperty, "", CurrentArray},
    {u"Text", kProperty, "", GetText},
    {u"Clear", kMethod, "", Clear},
    {u"ClearContents", kMethod, "", ClearContents},
    {u"Replace", kMethod, "What:s Replacement:s LookAt?i SearchOrder?i MatchCase?b MatchByte?v",
     Replace},
    {u"Calculate", kMethod, "", CalculateCells},
    {u"_Default", kProperty, "RowIndex?v ColumnIndex?v",
     [](Self& self, const Arguments& given) -> Variant {
       return given.Has(0) ? RangeItem(self, given) : GetValue(self, given);
     }},
};

}  // namespace

std::span<const Member<RangeObject>> RangeContentMembers() { return kMembers; }

}  // namespace zavhost
