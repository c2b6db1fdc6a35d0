#pragma once
// Sheets as libxlsxwriter writes them.

#include <xlsxwriter.h>

#include <utility>
#include <vector>

#include "host/automation/book.h"

namespace zavhost {

/// The formats of a file, one for each style that occurs.
class SavedFormats {
 public:
  explicit SavedFormats(lxw_workbook* book) : book_(book) {}
  /// Null for the style of a new cell.
  lxw_format* Of(const CellStyle& style);

 private:
  lxw_workbook* book_;
  std::vector<std::pair<CellStyle, lxw_format*>> formats_;
};

/// Everything on a sheet but its visibility and its protection. Throws WorkbookError.
void SaveSheet(lxw_workbook* saved_book, lxw_worksheet* saved, Book& book, SheetState& sheet,
               SavedFormats& formats);

}  // namespace zavhost
