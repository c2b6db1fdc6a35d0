#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/latest_map.h"
#include "excel/or_failure.h"
#include "excel/xloper12.h"

namespace zavrel {

/// The ids that calling sheets had when the host was last asked, which spares most calls two of its
/// questions. Another sheet may bear a name by now: these ids serve only where a wrong one does no
/// harm, as in the keys of data sets. Excel's main thread only.
class SheetIds {
 public:
  /// As CallingSheetId.
  OrFailure<std::optional<std::uint64_t>> OfCalling(const XLOPER12& reference);
  void Clear() noexcept;

 private:
  bool host_converts_ = true;  // until it did not once
  LatestMap<std::u16string, std::uint64_t> by_name_{256};
};

}  // namespace zavrel
