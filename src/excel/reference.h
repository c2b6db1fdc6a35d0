#pragma once
// References: their areas, their sheets, the calling range, and references as text.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "excel/or_failure.h"
#include "excel/xxloper.h"

namespace zavrel {

constexpr std::int32_t RowsOf(const XLREF12& area) { return area.rwLast - area.rwFirst + 1; }
constexpr std::int32_t ColumnsOf(const XLREF12& area) { return area.colLast - area.colFirst + 1; }
/// True when the area lies on a worksheet and its ends are in order.
constexpr bool IsOnSheet(const XLREF12& area) {
  return area.rwFirst >= 0 && area.rwFirst <= area.rwLast && area.rwLast < kExcelRows &&
         area.colFirst >= 0 && area.colFirst <= area.colLast && area.colLast < kExcelColumns;
}

/// The areas and the sheet of a reference record, checked. A view: the record must outlive it.
class ReferenceView {
 public:
  /// std::nullopt if the record is not a reference, has no areas, or has an area that lies outside
  /// a worksheet.
  static std::optional<ReferenceView> Of(const XLOPER12& record);

  /// At least one area.
  std::span<const XLREF12> areas() const { return areas_; }
  /// std::nullopt for a reference that does not name its sheet: it is on the calling formula's.
  std::optional<std::uint64_t> sheet_id() const { return sheet_id_; }

 private:
  ReferenceView(std::span<const XLREF12> areas, std::optional<std::uint64_t> sheet_id)
      : areas_(areas), sheet_id_(sheet_id) {}

  std::span<const XLREF12> areas_;
  std::optional<std::uint64_t> sheet_id_;
};

/// A reference record of one area, on the sheet of another reference or on the sheet with an id.
class OneArea {
 public:
  OneArea(const ReferenceView& sheet, const XLREF12& area);
  OneArea(std::uint64_t sheet_id, const XLREF12& area);
  OneArea(const OneArea&) = delete;
  OneArea& operator=(const OneArea&) = delete;

  const XLOPER12& record() const { return record_; }

 private:
  XLMREF12 areas_{};
  XLOPER12 record_{};
};

/// The cell or range whose formula is being calculated.
class CallingRange {
 public:
  /// Asks Excel. If the call does not come from a cell (but from a macro, a conditional format, a
  /// menu), there is no range, and Excel answers with a number, a text, an array or #REF!. Fails
  /// with #REF! if Excel gives no answer, or something else.
  static OrFailure<CallingRange> Ask();

  bool is_range() const { return view_.has_value(); }
  /// Size of the range's first area, for an array formula the whole range; 0 without a range.
  std::int32_t rows() const { return view_ ? RowsOf(view_->areas().front()) : 0; }
  std::int32_t columns() const { return view_ ? ColumnsOf(view_->areas().front()) : 0; }
  /// What Excel answered.
  const XXloper& value() const { return value_; }

 private:
  explicit CallingRange(XXloper value)
      : value_(std::move(value)), view_(ReferenceView::Of(value_.record())) {}

  XXloper value_;
  std::optional<ReferenceView> view_;
};

/// The name that Excel gives for the sheet of a reference, "[Book]Sheet"; empty if it gives none.
/// Uncalculated when Excel wants the call to end.
OrFailure<std::u16string> SheetNameOf(const XXloper& reference);
/// The id of the sheet with this name ("[Book]Sheet", or "Sheet" in the active workbook); no value
/// for 0, by which Excel means whichever sheet is current. Uncalculated as above.
OrFailure<std::optional<std::uint64_t>> SheetIdOf(std::u16string_view sheet_name);

/// The external form: 'Sheet'!B7 for a cell, 'Sheet'!B7:C9 for a larger area, areas joined by
/// commas. Quotes within the name are doubled. Without a sheet name, the areas alone.
std::u16string ReferenceText(const ReferenceView& reference, std::u16string_view sheet_name);

}  // namespace zavrel
