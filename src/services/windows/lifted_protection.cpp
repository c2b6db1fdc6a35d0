#include "services/windows/lifted_protection.h"

#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"

namespace zavrel::services {

LiftedProtection::LiftedProtection(const MsExcel::Worksheet& sheet, std::u16string password)
    : sheet_(sheet), password_(std::move(password)), protection_(sheet.CurrentProtection()) {
  if (!protection_.is_protected()) return;
  try {
    sheet_.Unprotect(password_);
    // Excel itself does not always say that a password was wrong.
    lifted_ = !sheet_.CurrentProtection().is_protected();
  } catch (const VekExcelCallFailed&) {
    lifted_ = false;
  }
  if (!lifted_) {
    throw VekExcelWorksheetProtected("LiftedProtection::LiftedProtection",
                                     messages::kMessageExcelWorksheetProtected, {sheet_.Name()});
  }
}

LiftedProtection::~LiftedProtection() {
  try {
    PutBack();
  } catch (...) {  // a destructor tells nobody
  }
}

void LiftedProtection::PutBack() {
  if (!lifted_) return;
  sheet_.Protect(password_, protection_);
  lifted_ = false;
}

}  // namespace zavrel::services
