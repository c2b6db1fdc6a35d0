#include "excel/reference.h"

#include <algorithm>

#include "excel/coerce.h"
#include "excel/excel_call.h"
#include "formula/a1_reference.h"

namespace zavrel {
namespace {

void AppendSheet(std::u16string& text, std::u16string_view sheet_name) {
  text += u'\'';
  for (const char16_t unit : sheet_name) text.append(unit == u'\'' ? 2 : 1, unit);
  text += u"'!";
}

}  // namespace

std::optional<ReferenceView> ReferenceView::Of(const XLOPER12& record) {
  std::span<const XLREF12> areas;
  std::optional<std::uint64_t> sheet_id;
  if (TypeOf(record) == xltypeSRef) {
    areas = {&record.val.sref.ref, 1};
  } else if (TypeOf(record) == xltypeRef && record.val.mref.lpmref != nullptr) {
    areas = {record.val.mref.lpmref->reftbl, record.val.mref.lpmref->count};
    sheet_id = record.val.mref.idSheet;
  }
  if (areas.empty() || !std::all_of(areas.begin(), areas.end(), IsOnSheet)) return std::nullopt;
  return ReferenceView(areas, sheet_id);
}

OneArea::OneArea(std::uint64_t sheet_id, const XLREF12& area) {
  areas_.count = 1;
  areas_.reftbl[0] = area;
  record_.xltype = xltypeRef;
  record_.val.mref.lpmref = &areas_;
  record_.val.mref.idSheet = sheet_id;
}

OneArea::OneArea(const ReferenceView& sheet, const XLREF12& area)
    : OneArea(sheet.sheet_id().value_or(0), area) {
  if (sheet.sheet_id()) return;
  record_ = {};
  record_.xltype = xltypeSRef;
  record_.val.sref.count = 1;
  record_.val.sref.ref = area;
}

OrFailure<CallingRange> CallingRange::Ask() {
  ExcelResult answer = CallExcel(xlfCaller);
  if (WantsReturn(answer)) return Failure::Uncalculated();
  CallingRange caller(std::move(answer.value));
  constexpr std::uint32_t kNoCell = xltypeNum | xltypeStr | xltypeMulti | xltypeErr;
  const bool is_answer = answer.ok() && (caller.is_range() || caller.value().Is(kNoCell));
  if (!is_answer) return Failure(ExcelError::kRef);
  return caller;
}

OrFailure<std::u16string> SheetNameOf(const XXloper& reference) {
  const ExcelResult name = CallExcel(xlSheetNm, {reference});
  if (WantsReturn(name)) return Failure::Uncalculated();
  return std::u16string(name.value.text());
}

OrFailure<std::optional<std::uint64_t>> SheetIdOf(std::u16string_view sheet_name) {
  const ExcelResult sheet = CallExcel(xlSheetId, {XXloper::Text(sheet_name)});
  if (WantsReturn(sheet)) return Failure::Uncalculated();
  if (sheet.value.type() != xltypeRef) return std::optional<std::uint64_t>();
  const std::uint64_t id = sheet.value.record().val.mref.idSheet;
  return id != 0 ? std::optional(id) : std::nullopt;
}

std::u16string ReferenceText(const ReferenceView& reference, std::u16string_view sheet_name) {
  std::u16string text;
  for (const XLREF12& area : reference.areas()) {
    if (!text.empty()) text += u',';
    if (!sheet_name.empty()) AppendSheet(text, sheet_name);
    text += formula::A1Text(area.rwFirst, area.colFirst);
    if (RowsOf(area) > 1 || ColumnsOf(area) > 1) {
      text += u':';
      text += formula::A1Text(area.rwLast, area.colLast);
    }
  }
  return text;
}

}  // namespace zavrel
