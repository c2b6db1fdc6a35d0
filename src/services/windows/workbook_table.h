#pragma once

#include <string>
#include <vector>

#include "analyses/data_table.h"
#include "msexcel/windows/workbook.h"
#include "services/progress.h"

namespace zavrel::services {

/// The table in some cells of an open workbook: columns with their headings in the first row. It
/// may lie in several areas with the same rows. Of a single cell, everything around it counts, and
/// of whole columns and rows the part that is in use.
class WorkbookTable {
 public:
  /// Throws analyses::DataProblem if the cells are no such table, and VekUserCancelled.
  WorkbookTable(const MsExcel::Range& cells, Progress& progress);

  const MsExcel::Worksheet& sheet() const { return sheet_; }
  const std::vector<analyses::TableColumn>& columns() const { return columns_; }
  /// The names of the groups in a column, by its number.
  std::vector<std::u16string> CategoriesOf(std::size_t column) const;
  /// The heading of the column that a cell stands in, of the table in some cells; the cell's own
  /// address if it has none.
  static std::string HeadingOf(const MsExcel::Range& cell, const MsExcel::Range& cells);

 private:
  void AddArea(const MsExcel::Range& area, Progress& progress);
  MsExcel::Block ValuesOf(const analyses::Area& cells) const;

  MsExcel::Worksheet sheet_;
  std::string sheet_name_;
  std::vector<analyses::TableColumn> columns_;
};

}  // namespace zavrel::services
