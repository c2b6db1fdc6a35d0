#include "msexcel/windows/workbook.h"

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "msexcel/windows/application.h"
#include "platform/letter_case.h"

namespace MsExcel {
namespace {

/// What the protection of a sheet allows.
class Protection : public ObjectOf<Protection> {
 public:
  static constexpr std::string_view kName = "Protection";
  using ObjectOf::ObjectOf;

  std::array<bool, 11> Allowed() const {
    return {Get<"AllowFormattingCells">().Flag(), Get<"AllowFormattingColumns">().Flag(),
            Get<"AllowFormattingRows">().Flag(),  Get<"AllowInsertingColumns">().Flag(),
            Get<"AllowInsertingRows">().Flag(),   Get<"AllowInsertingHyperlinks">().Flag(),
            Get<"AllowDeletingColumns">().Flag(), Get<"AllowDeletingRows">().Flag(),
            Get<"AllowSorting">().Flag(),         Get<"AllowFiltering">().Flag(),
            Get<"AllowUsingPivotTables">().Flag()};
  }
};

}  // namespace

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

SheetProtection Worksheet::CurrentProtection() const {
  SheetProtection current{Get<"ProtectDrawingObjects">().Flag(), Get<"ProtectContents">().Flag(),
                          Get<"ProtectScenarios">().Flag(), Get<"ProtectionMode">().Flag()};
  if (current.is_protected()) current.allowed = Get<"Protection">().As<Protection>().Allowed();
  return current;
}

void Worksheet::Protect(std::u16string_view password, const SheetProtection& protection) const {
  const auto& allowed = protection.allowed;
  // An empty password would be one; left out, the protection has none.
  Call<"Protect">({password.empty() ? Variant::Missing() : Variant(password),
                   protection.drawing_objects, protection.contents, protection.scenarios,
                   protection.user_interface_only, allowed[0], allowed[1], allowed[2], allowed[3],
                   allowed[4], allowed[5], allowed[6], allowed[7], allowed[8], allowed[9],
                   allowed[10]});
}

std::optional<Worksheet> Worksheets::Find(std::u16string_view name) const {
  // Asked for by its name, a sheet that is not there fails like any other call.
  for (const Worksheet& sheet : All()) {
    if (zavrel::EqualIgnoringCase(sheet.Name(), name)) return sheet;
  }
  return std::nullopt;
}

Worksheet Worksheets::AddAfter(const Worksheet& sheet) const {
  try {
    return Call<"Add">({Variant::Missing(), sheet}).As<Worksheet>();
  } catch (const zavrel::VekExcelCallFailed&) {
    throw zavrel::VekCantAddWorksheet("Worksheets.Add", zavrel::messages::kMessageCantAddWorksheet);
  }
}

}  // namespace MsExcel
