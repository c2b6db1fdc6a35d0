#include "data/used_part.h"

#include "data/whole_area.h"
#include "excel/coerce.h"
#include "excel/excel_call.h"
#include "excel/xxloper.h"

namespace zavrel {
namespace {

class UsedPart {
 public:
  UsedPart(const ReferenceView& reference, XLREF12& area) : reference_(reference), area_(area) {}

  ReadOutcome Cut() {
    const bool ends_with_rows = IsWholeColumns(area_);
    const bool ends_with_columns = IsWholeRows(area_);
    if (!IsUsed(area_)) {
      area_.rwLast = area_.rwFirst - 1;
      return outcome_;
    }
    if (ends_with_rows) CutEnd(&XLREF12::rwFirst, &XLREF12::rwLast);
    if (ends_with_columns) CutEnd(&XLREF12::colFirst, &XLREF12::colLast);
    return outcome_;
  }

 private:
  using Line = std::int32_t XLREF12::*;

  /// Halves what may be blank until the last line is one in use.
  void CutEnd(Line first, Line last) {
    std::int32_t used = area_.*first;  // no line behind the last one in use
    while (used < area_.*last && outcome_ == ReadOutcome::kRead) {
      XLREF12 rest = area_;
      rest.*first = area_.*last - (area_.*last - used - 1) / 2;
      if (IsUsed(rest)) {
        used = rest.*first;
      } else {
        area_.*last = rest.*first - 1;
      }
    }
  }

  bool IsUsed(const XLREF12& part) {
    const OneArea one(reference_, part);
    const ExcelResult counted = CallExcel(xlfCounta, {XXloper::FromArgument(&one.record())});
    if (WantsReturn(counted)) {
      outcome_ = ReadOutcome::kUncalculated;
    } else if (!counted.ok() || !counted.value.Is(xltypeNum)) {
      outcome_ = ReadOutcome::kUnreadable;
    }
    return outcome_ == ReadOutcome::kRead && counted.value.record().val.num > 0;
  }

  const ReferenceView& reference_;
  XLREF12& area_;
  ReadOutcome outcome_ = ReadOutcome::kRead;
};

}  // namespace

ReadOutcome CutToUsedPart(const ReferenceView& reference, XLREF12& area) {
  return UsedPart(reference, area).Cut();
}

}  // namespace zavrel
