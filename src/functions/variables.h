#pragma once
// The variables that a function over several of them is given.

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "data/excel_data.h"
#include "excel/arguments.h"
#include "excel/or_failure.h"
#include "matrix/association.h"
#include "platform/block_pool.h"

namespace zavrel {

/// Columns of numbers, gaps as the missing-value marker, error cells with their codes. A range or
/// array of several rows and columns is as many variables as it has columns; one row, a single
/// value or several areas together are one variable each area. Of whole columns and rows the used
/// part is taken; a whole sheet has no columns to tell and is refused.
class Variables {
 public:
  /// Those of all arguments; an omitted one has none.
  static OrFailure<Variables> Of(Arguments arguments);

  /// They live as long as this object.
  std::span<const VariableColumn> columns() const { return columns_; }

 private:
  std::optional<Failure> Add(const std::shared_ptr<ExcelData>& data);

  std::vector<std::shared_ptr<ExcelData>> data_;  // whose numbers the columns view
  std::vector<BlockArray<double>> gathered_;      // columns taken out of wider data
  std::vector<VariableColumn> columns_;
};

}  // namespace zavrel
