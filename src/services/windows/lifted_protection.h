#pragma once

#include <string>

#include "msexcel/windows/workbook.h"

namespace zavrel::services {

/// Lifts the protection of a sheet while it lives, and puts back exactly what was protected and
/// allowed, whatever happens in between. An unprotected sheet stays one.
class LiftedProtection {
 public:
  /// Throws VekExcelWorksheetProtected if the password is not the sheet's.
  LiftedProtection(const MsExcel::Worksheet& sheet, std::u16string password);
  LiftedProtection(const LiftedProtection&) = delete;
  LiftedProtection& operator=(const LiftedProtection&) = delete;
  ~LiftedProtection();

  /// Throws what Excel says if it refuses, and has the destructor try once more.
  void PutBack();

 private:
  MsExcel::Worksheet sheet_;
  std::u16string password_;
  MsExcel::SheetProtection protection_;
  bool lifted_ = false;
};

}  // namespace zavrel::services
