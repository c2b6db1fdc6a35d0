#pragma once
// Writes a report as a new workbook.

#include <filesystem>

#include "analyses/report_sheet.h"
#include "host/report/data_table.h"

namespace zavhost {

/// The report's sheet, and the data on a sheet of their own. Formulas have no values yet. Throws WorkbookError.
void WriteReport(const std::filesystem::path& file, const DataTable& data,
                 const zavrel::analyses::ReportSheet& report);

/// A path that the C library takes. Throws WorkbookError if there is none.
std::string NarrowPath(const std::filesystem::path& file);

}  // namespace zavhost
