#pragma once
// Puts the values of cells into the copies that a chart part stores of them.

#include <string>
#include <string_view>

#include "host/workbook/workbook.h"
#include "host/xlsx/xlsx_file.h"

namespace zavhost {

/// The chart part `xml` with the current values of the cells to which its formulas refer, so that
/// programs which do not calculate show what the cells show. A formula that refers to no cells, or
/// to far too many, keeps its stored values. Throws XmlError.
std::string RewriteChart(std::string_view xml, const Workbook& workbook,
                         const FindReference& find_reference);

}  // namespace zavhost
