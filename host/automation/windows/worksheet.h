#pragma once
// Worksheet objects.

#include <optional>
#include <vector>

#include "host/automation/windows/objects.h"

namespace zavhost {

class WorksheetObject final : public SheetObject<WorksheetObject> {
 public:
  static constexpr std::u16string_view kName = u"Worksheet";
  static std::span<const Member<WorksheetObject>> Members();
  using SheetObject::SheetObject;
};

std::span<const Member<WorksheetObject>> WorksheetProtectionMembers();
std::span<const Member<WorksheetObject>> WorksheetListMembers();
std::span<const Member<WorksheetObject>> WorksheetPivotMembers();
std::span<const Member<WorksheetObject>> WorksheetChartMembers();
std::span<const Member<WorksheetObject>> WorksheetPageMembers();

/// A collection of a worksheet, or its item that the argument names.
template <class Collection>
Variant CollectionOf(WorksheetObject& self, const Arguments& given,
                     Variant (*item)(Collection&, const Arguments&)) {
  const Microsoft::WRL::ComPtr<Collection> all(
      new Collection(self.shared_excel(), self.shared_book(), self.shared_sheet()));
  return given.Has(0) ? item(*all.Get(), given) : Variant(ObjectPtr(all));
}

/// The place in front of which a sheet goes by the first two arguments, Before and After; nothing
/// if neither is given.
std::optional<std::size_t> PlaceBeside(const Book& book, const Arguments& given);

}  // namespace zavhost
