#include "services/windows/hidden_storage.h"

#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "services/windows/calm_excel.h"
#include "services/windows/try_to.h"

namespace zavrel::services {
namespace {

constexpr const char* kPlace = "HiddenStorage";

[[noreturn]] void ThrowInvalid(const MsExcel::Workbook& book) {
  throw VekDataStoredInWorkbookInvalid(kPlace, messages::kMessageDataStoredInWorkbookInvalid,
                                       {book.Name()});
}

/// The cells of the first column.
MsExcel::Range RowsAt(const MsExcel::Worksheet& sheet, std::uint32_t first, std::uint32_t rows) {
  return sheet.Area(static_cast<long>(first), 1, static_cast<long>(rows), 1);
}

/// The texts of the cells; nothing if one holds anything else.
std::optional<std::vector<std::u16string>> TextsOf(const MsExcel::Block& block) {
  std::vector<std::u16string> texts;
  for (const MsExcel::CellValue& value : block.values) {
    const auto* text = std::get_if<std::u16string>(&value);
    if (text == nullptr) return std::nullopt;
    texts.push_back(*text);
  }
  return texts;
}

bool Holds(const MsExcel::Range& cells, const std::vector<std::u16string>& texts) {
  return TextsOf(cells.Values()) == texts;
}

/// True for a single blank cell, as which a sheet without anything has its used range.
bool IsBlank(const MsExcel::Range& used) {
  return used.CellCount() == 1 && std::holds_alternative<std::monostate>(used.Value());
}

/// Nothing for a sheet that has nothing in it: whoever added it was stopped.
std::optional<StorageHeading> HeadingOf(const MsExcel::Worksheet& sheet) {
  const MsExcel::CellValue value = RowsAt(sheet, 1, 1).Value();
  if (const auto* text = std::get_if<std::u16string>(&value)) {
    if (const auto heading = HeadingIn(*text)) return heading;
  } else if (std::holds_alternative<std::monostate>(value) && IsBlank(sheet.UsedRange())) {
    return std::nullopt;
  }
  ThrowInvalid(sheet.ParentBook());
}

std::optional<StoredItems> ItemsAt(const MsExcel::Worksheet& sheet, const StorageHeading& heading) {
  if (heading.rows == 0) return StoredItems{};
  const auto rows = TextsOf(RowsAt(sheet, heading.first_row, heading.rows).Values());
  if (!rows || ChecksumOf(*rows) != heading.checksum) return std::nullopt;
  return ItemsIn(*rows);
}

/// Where new rows have place: before the valid ones, or behind them.
std::uint32_t PlaceFor(std::size_t rows, const std::optional<StorageHeading>& valid) {
  const bool fits_before = !valid || rows + 2 <= valid->first_row;
  return fits_before ? 2 : valid->first_row + valid->rows;
}

/// Writes the rows and reads them back.
void WriteRows(const MsExcel::Worksheet& sheet, std::uint32_t first,
               const std::vector<std::u16string>& rows) {
  if (rows.empty()) return;
  MsExcel::Block block(rows.size(), 1);
  block.values.assign(rows.begin(), rows.end());
  const MsExcel::Range cells = RowsAt(sheet, first, static_cast<std::uint32_t>(rows.size()));
  cells.SetNumberFormat(u"@");  // digits alone would become a number
  cells.SetValues(block);
  if (!Holds(cells, rows)) ThrowInvalid(sheet.ParentBook());
}

void Clear(const MsExcel::Worksheet& sheet, const StorageHeading& heading) {
  if (heading.rows > 0) RowsAt(sheet, heading.first_row, heading.rows).Clear();
}

/// Excel does not delete what is hidden like this.
void Delete(const MsExcel::Worksheet& sheet) {
  sheet.SetVisible(MsExcel::Visibility::kVisible);
  sheet.Delete();
}

}  // namespace

StoredItems HiddenStorage::ReadAll() const {
  const auto sheet = book_.Worksheets().Find(kSheetName);
  if (!sheet) return {};
  const auto heading = HeadingOf(*sheet);
  if (!heading) return {};
  auto items = ItemsAt(*sheet, *heading);
  if (!items) ThrowInvalid(book_);
  return *std::move(items);
}

std::optional<StoredItem> HiddenStorage::Read(std::u16string_view name) const {
  StoredItems items = ReadAll();
  const auto found = items.find(name);
  return found == items.end() ? std::nullopt : std::optional(std::move(found->second));
}

void HiddenStorage::Store(std::u16string_view name, StoredItem item) const {
  if (!CanBeStored(name, item))
    throw VekParameterError(kPlace, messages::kMessageItemCannotBeStored, {std::u16string(name)});
  StoredItems items = ReadAll();
  items.insert_or_assign(std::u16string(name), std::move(item));
  Replace(items);
}

bool HiddenStorage::Remove(std::u16string_view name) const {
  StoredItems items = ReadAll();
  const auto found = items.find(name);
  if (found == items.end()) return false;
  items.erase(found);
  Replace(items);
  return true;
}

MsExcel::Worksheet HiddenStorage::AddSheet() const {
  if (book_.ProtectStructure())
    throw VekCantAddWorksheet(kPlace, messages::kMessageStructureProtected, {book_.Name()});
  const MsExcel::Worksheets sheets = book_.Worksheets();
  MsExcel::Worksheet sheet = sheets.AddAfter(sheets.At(sheets.Count()));
  try {
    sheet.Rename(kSheetName);
    sheet.SetVisible(MsExcel::Visibility::kVeryHidden);
  } catch (...) {
    TryTo([&] { Delete(sheet); });
    throw;
  }
  return sheet;
}

void HiddenStorage::Replace(const StoredItems& items) const {
  const CalmExcel calm(book_.ExcelApplication());
  const auto existing = book_.Worksheets().Find(kSheetName);
  const MsExcel::Worksheet sheet = existing ? *existing : AddSheet();
  const auto valid = existing ? HeadingOf(sheet) : std::nullopt;
  const std::vector<std::u16string> rows = RowsOf(items);
  const StorageHeading heading{PlaceFor(rows.size(), valid),
                               static_cast<std::uint32_t>(rows.size()), ChecksumOf(rows)};
  try {
    WriteRows(sheet, heading.first_row, rows);
    RowsAt(sheet, 1, 1).SetValue(heading.Text());
  } catch (...) {
    TryTo([&] { existing ? Clear(sheet, heading) : Delete(sheet); });
    throw;
  }
  // The new rows are valid now; old ones that cannot be cleared disturb nobody.
  if (valid) TryTo([&] { Clear(sheet, *valid); });
}

}  // namespace zavrel::services
