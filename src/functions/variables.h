#pragma once
// The variables that a function over several of them is given.

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "data/excel_data.h"
#include "matrix/association.h"
#include "platform/block_pool.h"

namespace zavrel {

/// Columns of numbers, gaps as the missing-value marker, error cells with their codes. A range or
/// array of several rows and columns is as many variables as it has columns; one row, a single
/// value or several areas together are one variable each area. Of whole columns and rows the used
/// part is taken; a whole sheet cannot be.
class Variables {
 public:
  /// Adds those of an argument; an omitted one has none. False with the call's result in failure().
  bool Add(const XLOPER12* argument);
  const XXloper& failure() const { return failure_; }

  /// They live as long as this object.
  std::span<const VariableColumn> columns() const { return columns_; }

 private:
  bool AddPart(const XLOPER12& part);
  bool Fail(ExcelError error);

  std::vector<std::shared_ptr<ExcelData>> data_;  // whose numbers the columns view
  std::vector<BlockArray<double>> gathered_;      // columns taken out of wider data
  std::vector<VariableColumn> columns_;
  XXloper failure_;
};

/// How many columns the cells of one area or array form, which lie row by row. Nothing for what is
/// no block: several areas, a whole sheet.
std::optional<std::size_t> BlockColumns(const XLOPER12& part, const ExcelData& data);

}  // namespace zavrel
