#pragma once
// The data of a report: a table with a heading over every column.

#include <string>
#include <vector>

#include "analyses/data_table.h"
#include "host/workbook/workbook.h"

namespace zavhost {

struct DataColumn {
  std::string name;
  std::vector<Value> cells;
  std::size_t numbers = 0;
  std::size_t others = 0;  // cells that are neither numbers nor blank
};

struct DataTable {
  std::vector<DataColumn> columns;
  std::size_t rows = 0;  // without the headings
};

/// The name of the sheet that a report has its data on.
inline constexpr const char* kDataSheet = "Data";

/// The table that begins in the first row of a sheet: columns up to the first without a heading.
/// Throws DataProblem if there is none.
DataTable ReadDataTable(const Sheet& sheet);

/// The variables and groups as they stand on the sheet kDataSheet. Throws DataProblem.
zavrel::analyses::SelectedData SelectData(const DataTable& table,
                                          const zavrel::analyses::Selection& selection);

}  // namespace zavhost
