#pragma once

#include <optional>
#include <string_view>

#include "msexcel/windows/workbook.h"
#include "services/stored_items.h"

namespace zavrel::services {

/// The items that a workbook keeps in a very hidden sheet. They go with the workbook: saved,
/// copied, reopened. What is stored is replaced as a whole or not at all: the new rows are written
/// beside the old ones, read back, and one cell then says which are valid.
///
/// Throws VekDataStoredInWorkbookInvalid if the sheet is damaged or somebody else's, which is left
/// alone, and whatever Excel refuses.
class HiddenStorage {
 public:
  static constexpr std::u16string_view kSheetName = u"ZavrelData";

  explicit HiddenStorage(MsExcel::Workbook book) : book_(std::move(book)) {}

  /// Empty if nothing was stored yet.
  StoredItems ReadAll() const;
  std::optional<StoredItem> Read(std::u16string_view name) const;
  /// Replaces an item of the same name. Throws VekParameterError for what cannot be stored
  /// (CanBeStored), VekCantAddWorksheet if the workbook's structure is protected.
  void Store(std::u16string_view name, StoredItem item) const;
  /// False if there is none.
  bool Remove(std::u16string_view name) const;

 private:
  void Replace(const StoredItems& items) const;
  MsExcel::Worksheet AddSheet() const;

  MsExcel::Workbook book_;
};

}  // namespace zavrel::services
