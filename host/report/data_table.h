#pragma once
// The data of a report: a table with a heading over every column.

#include <string>
#include <vector>

#include "analyses/analysis.h"
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
/// Throws WorkbookError if there is none.
DataTable ReadDataTable(const Sheet& sheet);

/// What an analysis is made of.
struct Selection {
  std::vector<std::string> columns;  // the variables by name; all columns of numbers if empty
  std::string by;                    // the column that divides the rows; none if empty
};

/// The variables and groups as they stand on the sheet kDataSheet. `notes` gets a line for what is
/// left out. Throws WorkbookError for a name that is no column's, and for a column without numbers.
zavrel::analyses::Data SelectData(const DataTable& table, const Selection& selection,
                                  std::vector<std::string>& notes);

}  // namespace zavhost
