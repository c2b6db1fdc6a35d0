#pragma once
// Excel's behaviour where it depends on the version or on the way in which Excel is used.

#include <cstdint>
#include <string>

namespace zavhost {

/// The result of xlfCaller while a formula is calculated.
enum class CallerForm : std::uint8_t {
  kSheetReference,     // SRef
  kExternalReference,  // Ref, with the sheet's id
  kError,              // #REF!, as in a conditional format or a dialog
  kNumber,             // as for a register id
  kText,               // as for a control on a sheet, by name
  kMenu,               // a small array, as for a menu command
};

struct ExcelBehaviour {
  CallerForm caller = CallerForm::kSheetReference;
  /// References to the calling sheet itself also arrive as Ref, not as SRef.
  bool external_references_only = false;
  /// xlCoerce of whole columns ends with the last used row of the sheet, and of whole rows with the
  /// last used column. Excel itself returns every cell, 32 bytes each, so an add-in that reads a
  /// whole column gets a million elements. Add-ins that read in blocks see the same cells in both
  /// cases.
  bool clip_whole_columns = false;
  /// The version text that xlfGetWorkspace(2) returns.
  std::u16string version = u"16.0";
};

}  // namespace zavhost
