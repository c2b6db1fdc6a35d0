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

std::span<const Member<WorksheetObject>> WorksheetMembers();
std::span<const Member<WorksheetObject>> WorksheetProtectionMembers();

/// The place in front of which a sheet goes by the first two arguments, Before and After; nothing
/// if neither is given.
std::optional<std::size_t> PlaceBeside(const Book& book, const Arguments& given);

}  // namespace zavhost
