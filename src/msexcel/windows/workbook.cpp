#include "msexcel/windows/workbook.h"

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "msexcel/windows/application.h"

namespace MsExcel {

Workbook Worksheet::ParentBook() const { return Get<"Parent">().As<Workbook>(); }
Application Workbook::ExcelApplication() const { return Get<"Application">().As<Application>(); }

void Worksheet::Rename(std::u16string_view name) const {
  try {
    Put<"Name">(name);
  } catch (const zavrel::VekExcelCallFailed&) {
    throw zavrel::VekCantRenameWorksheet("Worksheet.Name",
                                         zavrel::messages::kMessageCantRenameWorksheet,
                                         {Name(), std::u16string(name)});
  }
}

SheetProtection::SheetProtection(const Worksheet& sheet)
    : contents_(sheet.ProtectContents()),
      drawing_objects_(sheet.ProtectDrawingObjects()),
      scenarios_(sheet.ProtectScenarios()),
      user_interface_only_(sheet.ProtectionMode()) {
  if (!is_protected()) return;
  const Protection allowed = sheet.Protection();
  formatting_cells_ = allowed.AllowFormattingCells();
  formatting_columns_ = allowed.AllowFormattingColumns();
  formatting_rows_ = allowed.AllowFormattingRows();
  inserting_columns_ = allowed.AllowInsertingColumns();
  inserting_rows_ = allowed.AllowInsertingRows();
  inserting_hyperlinks_ = allowed.AllowInsertingHyperlinks();
  deleting_columns_ = allowed.AllowDeletingColumns();
  deleting_rows_ = allowed.AllowDeletingRows();
  sorting_ = allowed.AllowSorting();
  filtering_ = allowed.AllowFiltering();
  pivot_tables_ = allowed.AllowUsingPivotTables();
}

void SheetProtection::PutBack(const Worksheet& sheet, std::u16string_view password) const {
  if (!is_protected()) return;
  // An empty password would be one; left out, the protection has none.
  sheet.Call<"Protect">({password.empty() ? Variant::Missing() : Variant(password),
                         drawing_objects_, contents_, scenarios_, user_interface_only_,
                         formatting_cells_, formatting_columns_, formatting_rows_,
                         inserting_columns_, inserting_rows_, inserting_hyperlinks_,
                         deleting_columns_, deleting_rows_, sorting_, filtering_, pivot_tables_});
}

std::optional<Worksheet> Worksheets::Find(std::u16string_view name) const {
  try {
    return Named(name);
  } catch (const zavrel::VekExcelCallFailed&) {
    return std::nullopt;  // Excel offers no other way to ask
  }
}

Worksheet Worksheets::AddAfter(const Worksheet& sheet) const {
  try {
    return Call<"Add">({Variant::Missing(), sheet}).As<Worksheet>();
  } catch (const zavrel::VekExcelCallFailed&) {
    throw zavrel::VekCantAddWorksheet("Worksheets.Add", zavrel::messages::kMessageCantAddWorksheet);
  }
}

}  // namespace MsExcel
