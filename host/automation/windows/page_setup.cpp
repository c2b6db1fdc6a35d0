// PageSetup: how a worksheet is printed.
#include "host/automation/windows/range.h"
#include "host/automation/windows/worksheet.h"

namespace zavhost {
namespace {

class PageSetup final : public SheetObject<PageSetup> {
 public:
  static constexpr std::u16string_view kName = u"PageSetup";
  static std::span<const Member<PageSetup>> Members();
  using SheetObject::SheetObject;
  PageLayout& page() const { return sheet().page; }
};

/// A number between two limits, or FALSE.
template <std::int32_t PageLayout::*kNumber, std::int32_t kLeast, std::int32_t kMost>
constexpr Member<PageSetup> NumberOrFalse(std::u16string_view name) {
  return {name,
          kProperty,
          "",
          [](PageSetup& self, const Arguments&) -> Variant {
            const std::int32_t number = self.page().*kNumber;
            return number == 0 ? Variant(false) : Variant(number);
          },
          'v',
          [](PageSetup& self, const Arguments& given) {
            Variant number(given.value());
            if (FAILED(VariantChangeType(number.address(), number.address(), 0, VT_I4)))
              RefuseType();
            const LONG wanted = number.get().lVal;
            const bool is_false = given.value().type() == VT_BOOL && wanted == 0;
            if (!is_false && (wanted < kLeast || wanted > kMost)) Refuse();
            self.page().*kNumber = wanted;
          }};
}

constexpr std::int32_t kMostPages = 32'767;

constexpr Member<PageSetup> kMembers[] = {
    {u"PrintArea", kProperty, "",
     [](PageSetup& self, const Arguments&) -> Variant {
       return std::u16string_view(self.page().print_area);
     },
     's',
     [](PageSetup& self, const Arguments& given) {
       const std::u16string area = given.text();
       if (!area.empty() && !CellsNamed(self.book(), self.shared_sheet(), area)) Refuse();
       self.page().print_area = area;
     }},
    {u"Orientation", kProperty, "",
     [](PageSetup& self, const Arguments&) -> Variant { return self.page().orientation; }, 'i',
     [](PageSetup& self, const Arguments& given) {
       if (given.integer() != 1 && given.integer() != 2) Refuse();
       self.page().orientation = given.integer();
     }},
    NumberOrFalse<&PageLayout::zoom, 10, 400>(u"Zoom"),
    NumberOrFalse<&PageLayout::pages_wide, 1, kMostPages>(u"FitToPagesWide"),
    NumberOrFalse<&PageLayout::pages_tall, 1, kMostPages>(u"FitToPagesTall"),
};

std::span<const Member<PageSetup>> PageSetup::Members() { return kMembers; }

constexpr Member<WorksheetObject> kSheetMembers[] = {
    {u"PageSetup", kProperty, "",
     [](WorksheetObject& self, const Arguments&) -> Variant {
       return MakeBeside<PageSetup>(self);
     }},
};

}  // namespace

std::span<const Member<WorksheetObject>> WorksheetPageMembers() { return kSheetMembers; }

}  // namespace zavhost
