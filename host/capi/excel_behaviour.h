#pragma once
// Where Excel's behaviour depends on its version or on how it is used.

#include <cstdint>
#include <string>

namespace zavhost {

/// What xlfCaller answers while a formula is calculated.
enum class CallerForm : std::uint8_t {
  kSheetReference,     // SRef
  kExternalReference,  // Ref, with the sheet's id
  kError,              // #REF!, as from a conditional format or a dialog
  kNumber,             // as from a register id
  kText,               // as from a control on a sheet, by name
  kMenu,               // a small array, as from a menu command
};

struct ExcelBehaviour {
  CallerForm caller = CallerForm::kSheetReference;
  /// References to the calling sheet itself arrive as Ref too, not as SRef.
  bool external_references_only = false;
  /// xlCoerce of whole columns ends with the last row that the sheet uses, of whole rows with the
  /// last column. Excel itself gives every cell, 32 bytes each, so that an add-in that reads a
  /// column in one go gets a million elements; those that read by blocks see the same cells in both
  /// ways.
  bool clip_whole_columns = false;
  /// The version text that xlfGetWorkspace(2) answers.
  std::u16string version = u"16.0";
};

}  // namespace zavhost
