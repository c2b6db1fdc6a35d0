// Worksheets, which Sheets are too.
#include <algorithm>

#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

class Worksheets final : public BookObject<Worksheets> {
 public:
  static constexpr std::u16string_view kName = u"Sheets";
  static std::span<const Member<Worksheets>> Members();
  using BookObject::BookObject;
};

Variant Item(Worksheets& self, const Arguments& given) {
  const auto& sheets = self.book().sheets();
  const auto place = PlaceIn(sheets, given[0], [](const SheetPtr& sheet) { return sheet->name; });
  if (!place) RefuseIndex();
  return MakeWorksheet(self.shared_excel(), self.shared_book(), sheets[*place]);
}

Variant Add(Worksheets& self, const Arguments& given) {
  constexpr std::int32_t kWorksheet = -4167, kMostAtOnce = 255;
  Book& book = self.book();
  const std::int32_t count = given.Integer(2, 1);
  if (book.is_structure_protected || count < 1 || count > kMostAtOnce ||
      given.Integer(3, kWorksheet) != kWorksheet)
    Refuse();
  const std::size_t place = PlaceBeside(book, given).value_or(book.IndexOf(*book.active).value());
  for (std::int32_t i = 0; i < count; ++i) book.AddSheet(place);
  return MakeWorksheet(self.shared_excel(), self.shared_book(), book.active);
}

constexpr Member<Worksheets> kMembers[] = {
    {u"Count", kProperty, "",
     [](Worksheets& self, const Arguments&) { return Count(self.book().sheets().size()); }},
    {u"Item", kProperty, "Index:v", Item},
    {u"_Default", kProperty, "Index:v", Item},
    {u"Application", kProperty, "",
     [](Worksheets& self, const Arguments&) -> Variant {
       return MakeApplication(self.shared_excel());
     }},
    {u"Parent", kProperty, "",
     [](Worksheets& self, const Arguments&) -> Variant {
       return MakeWorkbook(self.shared_excel(), self.shared_book());
     }},
    {u"Add", kMethod, "Before?v After?v Count?i Type?i", Add},
};

std::span<const Member<Worksheets>> Worksheets::Members() { return kMembers; }

}  // namespace

std::optional<std::size_t> PlaceBeside(const Book& book, const Arguments& given) {
  if (!given.Has(0) && !given.Has(1)) return std::nullopt;
  const bool is_before = given.Has(0);
  if (is_before && given.Has(1)) Refuse();
  const auto* beside = In<WorksheetObject>(given[is_before ? 0 : 1]);
  if (beside == nullptr) RefuseType();
  const std::optional<std::size_t> place = book.IndexOf(beside->sheet());
  if (!place) Refuse();
  return *place + (is_before ? 0 : 1);
}

ObjectPtr MakeWorksheets(const ExcelPtr& excel, const BookPtr& book) {
  return Make<Worksheets>(excel, book);
}

}  // namespace zavhost
