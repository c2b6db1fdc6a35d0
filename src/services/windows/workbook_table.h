#pragma once

#include <string>
#include <vector>

#include "analyses/data_table.h"
#include "msexcel/windows/workbook.h"

namespace zavrel::services {

/// The table in some cells of an open workbook: columns with their headings in the first row. It
/// may lie in several areas with the same rows. Of a single cell, everything around it counts, and
/// of whole columns and rows the part that is in use.
class WorkbookTable {
 public:
  /// Throws analyses::DataProblem if the cells are no such table.
  explicit WorkbookTable(const MsExcel::Range& cells);

  const MsExcel::Worksheet& sheet() const { return sheet_; }
  const std::vector<analyses::TableColumn>& columns() const { return columns_; }
  /// The names of the groups in a column, by its number.
  std::vector<std::u16string> CategoriesOf(std::size_t column) const;
  /// The name of the column that a cell stands in. Throws DataProblem if none does.
  const std::string& NameAt(const MsExcel::Range& cell) const;

 private:
  void AddArea(const MsExcel::Range& area);
  MsExcel::Block ValuesOf(const analyses::Area& cells) const;

  MsExcel::Worksheet sheet_;
  std::string sheet_name_;
  std::vector<analyses::TableColumn> columns_;
};

}  // namespace zavrel::services
