// How the cells of a range look.
#include <algorithm>
#include <cmath>

#include "host/automation/cell_places.h"
#include "host/automation/windows/range.h"
#include "host/workbook/number_format_code.h"

namespace zavhost {
namespace {

using Self = RangeObject;

// Styles of cells.

/// A property of all cells alike; null if they differ.
template <auto kField>
Variant GetStyle(const Self& self) {
  const auto first = self.sheet().styles.At(self.corner().row, self.corner().column).*kField;
  bool is_mixed = false;
  for (const CellRange& area : self.areas()) {
    self.sheet().styles.ForEach(
        area, [&](const CellStyle& style) { is_mixed = is_mixed || style.*kField != first; });
  }
  return is_mixed ? Variant::Null() : Variant(first);
}

void ChangeStyle(const Self& self, const CellStyles::Change& change) {
  self.CheckPermitted(kFormattingCells);
  for (const CellRange& area : self.areas()) self.sheet().styles.Apply(area, change);
  self.book().is_saved = false;
}

template <auto kField>
void PutStyle(const Self& self, const Arguments& given) {
  using Field = std::remove_reference_t<decltype(CellStyle().*kField)>;
  Field value{};
  if constexpr (std::is_same_v<Field, bool>) {
    value = given.boolean();
  } else if constexpr (std::is_same_v<Field, double>) {
    value = given.number();
  } else if constexpr (std::is_same_v<Field, std::int32_t>) {
    value = given.integer();
  } else {
    value = given.text();
  }
  ChangeStyle(self, [&](CellStyle& style) { style.*kField = value; });
}

/// The letter of what a property of a style takes.
template <auto kField>
constexpr char LetterOf() {
  using Field = std::remove_reference_t<decltype(CellStyle().*kField)>;
  return std::is_same_v<Field, bool>           ? 'b'
         : std::is_same_v<Field, double>       ? 'n'
         : std::is_same_v<Field, std::int32_t> ? 'i'
                                               : 's';
}

/// Fonts and interiors: objects of a range that show some of its styles.
template <class Part>
class StylePart : public SheetObject<Part> {
 public:
  // NOLINTNEXTLINE(bugprone-crtp-constructor-accessibility): it stands between others and a class.
  explicit StylePart(Self& range)
      : SheetObject<Part>(range.shared_excel(), range.shared_book(), range.shared_sheet()),
        range_(&range) {}
  Self& range() const { return *range_.Get(); }

 private:
  Microsoft::WRL::ComPtr<Self> range_;
};

/// A member that is a property of the styles, of a Range or of a part of it.
template <auto kField, class Of>
constexpr Member<Of> StyleMember(std::u16string_view name) {
  const auto range_of = [](Of& self) -> Self& {
    if constexpr (std::is_same_v<Of, Self>) {
      return self;
    } else {
      return self.range();
    }
  };
  return {name,
          kProperty,
          "",
          [](Of& self, const Arguments&) { return GetStyle<kField>(decltype(range_of)()(self)); },
          LetterOf<kField>(),
          [](Of& self, const Arguments& given) {
            PutStyle<kField>(decltype(range_of)()(self), given);
          }};
}

class Font final : public StylePart<Font> {
 public:
  static constexpr std::u16string_view kName = u"Font";
  static std::span<const Member<Font>> Members();
  using StylePart::StylePart;
};

constexpr Member<Font> kFontMembers[] = {
    StyleMember<&CellStyle::font, Font>(u"Name"),
    StyleMember<&CellStyle::size, Font>(u"Size"),
    StyleMember<&CellStyle::is_bold, Font>(u"Bold"),
    StyleMember<&CellStyle::is_italic, Font>(u"Italic"),
    StyleMember<&CellStyle::font_colour, Font>(u"Color"),
};
std::span<const Member<Font>> Font::Members() { return kFontMembers; }

class Interior final : public StylePart<Interior> {
 public:
  static constexpr std::u16string_view kName = u"Interior";
  static std::span<const Member<Interior>> Members();
  using StylePart::StylePart;
};

/// A colour makes the fill solid; no pattern takes the colour away.
void PutFillColour(Interior& self, const Arguments& given) {
  ChangeStyle(self.range(), [&](CellStyle& style) {
    style.fill_colour = given.integer();
    if (style.pattern == kNoPattern) style.pattern = kSolidPattern;
  });
}

void PutPattern(Interior& self, const Arguments& given) {
  ChangeStyle(self.range(), [&](CellStyle& style) {
    style.pattern = given.integer();
    if (style.pattern == kNoPattern) style.fill_colour = CellStyle().fill_colour;
  });
}

constexpr Member<Interior> kInteriorMembers[] = {
    {u"Color", kProperty, "",
     [](Interior& self, const Arguments&) {
       return GetStyle<&CellStyle::fill_colour>(self.range());
     },
     'i', PutFillColour},
    {u"Pattern", kProperty, "",
     [](Interior& self, const Arguments&) { return GetStyle<&CellStyle::pattern>(self.range()); },
     'i', PutPattern},
};
std::span<const Member<Interior>> Interior::Members() { return kInteriorMembers; }

void PutNumberFormat(Self& self, const Arguments& given) {
  if (!ParseFormatCode(given.text())) Refuse();
  PutStyle<&CellStyle::number_format>(self, given);
}

// Columns and rows.

struct Lines {
  std::map<std::int32_t, double> SheetState::*sizes;
  std::set<std::int32_t> SheetState::*hidden;
  std::int32_t CellRange::*first;
  std::int32_t CellRange::*last;
  RangeUnit unit;
  SheetPermission permission;
  double size;  // of a line without its own
  double most;
};
constexpr Lines kColumnLines{&SheetState::column_widths,
                             &SheetState::hidden_columns,
                             &CellRange::first_column,
                             &CellRange::last_column,
                             RangeUnit::kColumns,
                             kFormattingColumns,
                             kColumnWidth,
                             255};
constexpr Lines kRowLines{&SheetState::row_heights,
                          &SheetState::hidden_rows,
                          &CellRange::first_row,
                          &CellRange::last_row,
                          RangeUnit::kRows,
                          kFormattingRows,
                          kRowHeight,
                          409.5};

double SizeOf(const SheetState& sheet, const Lines& lines, std::int32_t line) {
  if ((sheet.*lines.hidden).contains(line)) return 0;
  const auto own = (sheet.*lines.sizes).find(line);
  return own == (sheet.*lines.sizes).end() ? lines.size : own->second;
}

template <class Visit>
void ForEachLine(const Self& self, const Lines& lines, const Visit& visit) {
  for (const CellRange& area : self.areas()) {
    for (std::int32_t line = area.*lines.first; line <= area.*lines.last; ++line) visit(line);
  }
}

bool HasWholeLines(const Self& self, const Lines& lines) {
  const bool is_columns = lines.unit == RangeUnit::kColumns;
  return std::all_of(self.areas().begin(), self.areas().end(), [&](const CellRange& area) {
    return is_columns ? area.HasAllRows() : area.HasAllColumns();
  });
}

template <const Lines& kLines>
Variant GetSize(Self& self, const Arguments&) {
  const double first = SizeOf(self.sheet(), kLines, self.first().*kLines.first);
  bool is_mixed = false;
  ForEachLine(self, kLines, [&](std::int32_t line) {
    is_mixed = is_mixed || SizeOf(self.sheet(), kLines, line) != first;
  });
  return is_mixed ? Variant::Null() : Variant(first);
}

/// A size of 0 hides.
template <const Lines& kLines>
void PutSize(Self& self, const Arguments& given) {
  const double size = given.number();
  self.CheckPermitted(kLines.permission);
  if (!(size >= 0 && size <= kLines.most)) Refuse();
  SheetState& sheet = self.sheet();
  ForEachLine(self, kLines, [&](std::int32_t line) {
    if (size == 0) {
      (sheet.*kLines.hidden).insert(line);
    } else {
      (sheet.*kLines.hidden).erase(line);
      (sheet.*kLines.sizes)[line] = size;
    }
  });
  self.book().is_saved = false;
}

Variant GetHidden(Self& self, const Arguments&) {
  const Lines& lines = HasWholeLines(self, kColumnLines) ? kColumnLines : kRowLines;
  if (!HasWholeLines(self, lines)) Refuse();
  std::size_t hidden = 0, all = 0;
  ForEachLine(self, lines, [&](std::int32_t line) {
    ++all;
    if ((self.sheet().*lines.hidden).contains(line)) ++hidden;
  });
  return hidden != 0 && hidden != all ? Variant::Null() : Variant(hidden != 0);
}

void PutHidden(Self& self, const Arguments& given) {
  const Lines& lines = HasWholeLines(self, kColumnLines) ? kColumnLines : kRowLines;
  if (!HasWholeLines(self, lines)) Refuse();
  self.CheckPermitted(lines.permission);
  ForEachLine(self, lines, [&](std::int32_t line) {
    if (given.boolean()) {
      (self.sheet().*lines.hidden).insert(line);
    } else {
      (self.sheet().*lines.hidden).erase(line);
    }
  });
  self.book().is_saved = false;
}

/// Columns become as wide as their longest text, by its number of characters; rows get their usual
/// height.
Variant AutoFit(Self& self, const Arguments&) {
  SheetState& sheet = self.sheet();
  if (self.unit() == RangeUnit::kRows || HasWholeLines(self, kRowLines)) {
    self.CheckPermitted(kFormattingRows);
    ForEachLine(self, kRowLines, [&](std::int32_t row) { sheet.row_heights.erase(row); });
    return true;
  }
  if (self.unit() != RangeUnit::kColumns && !HasWholeLines(self, kColumnLines)) Refuse();
  self.CheckPermitted(kFormattingColumns);
  const Sheet& cells = self.excel().Calculated(self.book()).CellsOf(sheet);
  for (const CellRange& area : self.areas()) {
    for (std::int32_t column = area.first_column; column <= area.last_column; ++column) {
      std::size_t longest = 0;
      for (const Sheet::Entry& entry : cells.column(column)) {
        if (entry.row >= area.first_row && entry.row <= area.last_row)
          longest = std::max(longest, GeneralText(entry.value).size());
      }
      if (longest > 0) {
        sheet.column_widths[column] =
            std::min(static_cast<double>(longest) + 0.71, kColumnLines.most);
      }
    }
  }
  return true;
}

// Merged cells.

const CellRange* MergedAt(const SheetState& sheet, const CellPosition& cell) {
  const auto found = std::find_if(sheet.merged.begin(), sheet.merged.end(), [&](const auto& area) {
    return area.Contains(cell.row, cell.column);
  });
  return found == sheet.merged.end() ? nullptr : &*found;
}

Variant GetMergeCells(Self& self, const Arguments&) {
  if (self.sheet().merged.empty()) return false;
  bool all = true, any = false;
  self.ForEachCell([&](const CellPosition& cell) {
    const bool is_merged = MergedAt(self.sheet(), cell) != nullptr;
    all = all && is_merged;
    any = any || is_merged;
  });
  return any && !all ? Variant::Null() : Variant(any);
}

Variant MergeArea(Self& self, const Arguments&) {
  if (!self.first().IsSingleCell()) Refuse();
  const CellRange* merged = MergedAt(self.sheet(), self.corner());
  return self.Of(merged == nullptr ? self.first() : *merged);
}

/// What the other cells hold is lost. With Across, each row is merged by itself.
Variant Merge(Self& self, const Arguments& given) {
  self.CheckPermitted(kFormattingCells);
  self.CheckWritable();
  const auto merge = [&](const CellRange& area) {
    if (area.IsSingleCell()) return;
    std::erase_if(self.sheet().merged, [&](const CellRange& merged) {
      return area.Contains(merged.first_row, merged.first_column);
    });
    for (const CellRange& rest :
         {CellRange{area.first_row, area.first_column + 1, area.first_row, area.last_column},
          CellRange{area.first_row + 1, area.first_column, area.last_row, area.last_column}}) {
      if (rest.rows() > 0 && rest.columns() > 0) self.book().ClearContents(self.sheet(), rest);
    }
    self.sheet().merged.push_back(area);
  };
  for (const CellRange& area : self.areas()) {
    if (!given.Boolean(0)) {
      merge(area);
      continue;
    }
    for (std::int32_t row = area.first_row; row <= area.last_row; ++row)
      merge({row, area.first_column, row, area.last_column});
  }
  return {};
}

template <double (*kPlace)(const SheetState&, std::int32_t), std::int32_t CellRange::*kLine>
Variant GetPlace(Self& self, const Arguments&) {
  return kPlace(self.sheet(), self.first().*kLine);
}
template <double (*kPlace)(const SheetState&, std::int32_t), std::int32_t CellRange::*kFirst,
          std::int32_t CellRange::*kLast>
Variant GetExtent(Self& self, const Arguments&) {
  return kPlace(self.sheet(), self.first().*kLast + 1) - kPlace(self.sheet(), self.first().*kFirst);
}

constexpr Member<Self> kMembers[] = {
    {u"NumberFormat", kProperty, "",
     [](Self& self, const Arguments&) { return GetStyle<&CellStyle::number_format>(self); }, 's',
     PutNumberFormat},
    StyleMember<&CellStyle::alignment, Self>(u"HorizontalAlignment"),
    StyleMember<&CellStyle::wraps, Self>(u"WrapText"),
    StyleMember<&CellStyle::is_locked, Self>(u"Locked"),
    {u"Font", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return Make<Font>(self); }},
    {u"Interior", kProperty, "",
     [](Self& self, const Arguments&) -> Variant { return Make<Interior>(self); }},
    {u"ColumnWidth", kProperty, "", GetSize<kColumnLines>, 'n', PutSize<kColumnLines>},
    {u"RowHeight", kProperty, "", GetSize<kRowLines>, 'n', PutSize<kRowLines>},
    {u"Hidden", kProperty, "", GetHidden, 'b', PutHidden},
    {u"AutoFit", kMethod, "", AutoFit},
    {u"MergeCells", kProperty, "", GetMergeCells},
    {u"MergeArea", kProperty, "", MergeArea},
    {u"Merge", kMethod, "Across?b", Merge},
    {u"Left", kProperty, "", GetPlace<LeftOf, &CellRange::first_column>},
    {u"Top", kProperty, "", GetPlace<TopOf, &CellRange::first_row>},
    {u"Width", kProperty, "", GetExtent<LeftOf, &CellRange::first_column, &CellRange::last_column>},
    {u"Height", kProperty, "", GetExtent<TopOf, &CellRange::first_row, &CellRange::last_row>},
};

}  // namespace

std::span<const Member<RangeObject>> RangeFormatMembers() { return kMembers; }

}  // namespace zavhost
