#pragma once

#include "analyses/report_sheet.h"
#include "msexcel/windows/workbook.h"
#include "services/progress.h"

namespace zavrel::services {

/// Adds the sheet of an analysis behind another one, and leaves it active. If that fails, the
/// workbook is as it was. Throws VekCantAddWorksheet, VekUserCancelled, and whatever Excel refuses.
MsExcel::Worksheet AddReport(const MsExcel::Worksheet& behind, const analyses::ReportSheet& report,
                             Progress& progress);

}  // namespace zavrel::services
