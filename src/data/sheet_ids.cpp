#include "data/sheet_ids.h"

#include "excel/calling_sheet.h"
#include "excel/reference.h"

namespace zavrel {

OrFailure<std::optional<std::uint64_t>> SheetIds::OfCalling(const XLOPER12& reference) {
  if (host_converts_) {
    const auto converted = ConvertedSheetId(reference);
    if (!converted.ok() || *converted) return converted;
    host_converts_ = false;
  }
  const OrFailure<std::u16string> name = SheetNameOf(XXloper::FromArgument(&reference));
  if (!name.ok()) return name.failure();
  if (const std::uint64_t* known = by_name_.Use(*name)) return std::optional(*known);
  const auto id = SheetIdOf(*name);
  if (id.ok() && *id && !name->empty()) by_name_.Put(*name, **id);
  return id;
}

void SheetIds::Clear() noexcept {
  host_converts_ = true;
  by_name_.Clear();
}

}  // namespace zavrel
