// Worksheet, without its protection.
#include "host/automation/windows/worksheet.h"

#include <algorithm>

#include "host/automation/windows/range.h"

namespace zavhost {
namespace {

bool IsSheetName(std::u16string_view name) {
  constexpr std::size_t kLongest = 31;
  return !name.empty() && name.size() <= kLongest && name.front() != u'\'' &&
         name.back() != u'\'' && name.find_first_of(u":\\/?*[]") == std::u16string_view::npos &&
         !EqualIgnoringCase(name, u"History");
}

void PutName(WorksheetObject& self, const Arguments& given) {
  const std::u16string name = given.text();
  if (self.book().is_structure_protected || !IsSheetName(name)) Refuse();
  const SheetPtr other = self.book().FindSheet(name);
  if (other && other.get() != &self.sheet())
    Refuse(u"That name is already taken. Try a different one.");
  self.book().RenameSheet(self.sheet(), name);
}

bool IsLastVisible(const Book& book, const SheetState& sheet) {
  return std::none_of(book.sheets().begin(), book.sheets().end(), [&](const SheetPtr& other) {
    return other.get() != &sheet && other->visibility == kSheetVisible;
  });
}

void PutVisible(WorksheetObject& self, const Arguments& given) {
  Book& book = self.book();
  SheetState& sheet = self.sheet();
  // TRUE and FALSE are -1 and 0.
  const std::int32_t visibility = given.integer();
  const bool is_known =
      visibility == kSheetVisible || visibility == kSheetHidden || visibility == kSheetVeryHidden;
  const bool hides_last = visibility != kSheetVisible && IsLastVisible(book, sheet);
  if (!is_known || hides_last || book.is_structure_protected) Refuse();
  sheet.visibility = visibility;
  book.is_saved = false;
  if (visibility != kSheetVisible && book.active.get() == &sheet) {
    book.active = *std::find_if(book.sheets().begin(), book.sheets().end(), [](const auto& other) {
      return other->visibility == kSheetVisible;
    });
  }
}

Variant Activate(WorksheetObject& self, const Arguments&) {
  if (self.sheet().visibility != kSheetVisible) Refuse();
  self.book().active = self.shared_sheet();
  return {};
}

/// Nobody answers the question whether a sheet with content may go: it stays, and the result is
/// FALSE. Excel does not delete a sheet that is very hidden.
Variant Delete(WorksheetObject& self, const Arguments&) {
  Book& book = self.book();
  SheetState& sheet = self.sheet();
  const bool is_last = sheet.visibility == kSheetVisible && IsLastVisible(book, sheet);
  if (book.is_structure_protected || is_last || sheet.visibility == kSheetVeryHidden) Refuse();
  const bool has_content = !sheet.formulas.empty() || book.CellsOf(sheet).used_range();
  if (self.excel().display_alerts && has_content) return false;
  book.RemoveSheet(sheet);
  return true;
}

/// Into the same workbook only.
Variant Copy(WorksheetObject& self, const Arguments& given) {
  const std::optional<std::size_t> place = PlaceBeside(self.book(), given);
  if (!place || self.book().is_structure_protected) Refuse();
  self.book().CopySheet(self.sheet(), *place);
  return {};
}

template <RangeUnit kUnit>
Variant WholeSheet(WorksheetObject& self, const Arguments&) {
  return MakeBeside<RangeObject>(self, std::vector{kWholeSheet}, kUnit);
}

constexpr Member<WorksheetObject> kMembers[] = {
    {u"Name", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return std::u16string_view(self.sheet().name);
     },
     's', PutName},
    {u"CodeName", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return std::u16string_view(self.sheet().name);
     }},
    {u"Index", kProperty, "",
     [](WorksheetObject& self, const Arguments&) {
       return Count(self.book().IndexOf(self.sheet()).value() + 1);
     }},
    {u"Type", kProperty, "", [](WorksheetObject&, const Arguments&) -> Variant { return -4167; }},
    {u"Visible", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant { return self.sheet().visibility; },
     'i', PutVisible},
    {u"Cells", kProperty, "", WholeSheet<RangeUnit::kCells>},
    {u"Rows", kProperty, "", WholeSheet<RangeUnit::kRows>},
    {u"Columns", kProperty, "", WholeSheet<RangeUnit::kColumns>},
    {u"Range", kProperty, "Cell1:v Cell2?v",
     [](WorksheetObject& self, const Arguments& given) -> Variant {
       ObjectPtr range =
           RangeFrom(self.shared_excel(), self.shared_book(), self.shared_sheet(), given);
       // Cells of another sheet are not this one's.
       const Variant held(range);
       if (&In<RangeObject>(held)->sheet() != &self.sheet()) Refuse();
       return range;
     }},
    {u"UsedRange", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       self.excel().Calculated(self.book());
       return MakeBeside<RangeObject>(self, std::vector{UsedCells(self.book(), self.sheet())});
     }},
    {u"Names", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return MakeNames(self.shared_excel(), self.shared_book(), self.shared_sheet());
     }},
    {u"Parent", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return MakeWorkbook(self.shared_excel(), self.shared_book());
     }},
    {u"Application", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return MakeApplication(self.shared_excel());
     }},
    {u"Calculate", kMethod, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       self.book().Calculate();
       return {};
     }},
    {u"Activate", kMethod, "", Activate},
    {u"Select", kMethod, "Replace?b", Activate},
    {u"Delete", kMethod, "", Delete},
    {u"Copy", kMethod, "Before?v After?v", Copy},
};

}  // namespace

std::span<const Member<WorksheetObject>> WorksheetObject::Members() {
  static const std::vector<Member<WorksheetObject>> all = Joined<WorksheetObject>(
      {kMembers, WorksheetProtectionMembers(), WorksheetListMembers(), WorksheetPivotMembers(),
       WorksheetChartMembers(), WorksheetPageMembers()});
  return all;
}

ObjectPtr MakeWorksheet(const ExcelPtr& excel, const BookPtr& book, const SheetPtr& sheet) {
  return Make<WorksheetObject>(excel, book, sheet);
}

}  // namespace zavhost
