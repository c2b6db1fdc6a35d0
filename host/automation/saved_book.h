#pragma once
// Edited workbooks as .xlsx files: written whole by libxlsxwriter, not as a change of a file.

#include <filesystem>

#include "host/automation/book.h"

namespace zavhost {

/// Writes cells, formulas with their values, styles, widths, hidden rows, columns and sheets,
/// names, tables, charts, page layouts and protection, through a temporary file. Not written: pivot
/// tables, series that hold values instead of references, points without x values, and types of
/// series other than their chart's. Throws WorkbookError.
void SaveBook(Book& book, const std::filesystem::path& file);

/// A workbook from an .xlsx or .csv file, with the visibility of sheets and names and the
/// protection; not with styles, widths and charts. Throws WorkbookError.
BookPtr OpenBook(const std::filesystem::path& file,
                 const std::vector<std::filesystem::path>& add_ins);

}  // namespace zavhost
