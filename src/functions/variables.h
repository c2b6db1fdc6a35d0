#pragma once
// The variables in the arguments of a function over several variables.

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

/// Columns of numbers, with the missing-value marker for gaps and error codes for error cells. An
/// area of a reference, or an array, of several rows and columns has one variable per column; a
/// single row or value is one variable. Of whole columns and rows the used part is taken; a whole
/// sheet is refused, because its columns are not known.
class Variables {
 public:
  /// Their matrix has as many cells as the largest that other functions fill, and takes 700 MB.
  static constexpr std::size_t kMost = 4096;

  /// The variables of all arguments; an omitted argument has none. More than kMost: #VALUE!.
  static OrFailure<Variables> Of(Arguments arguments);

  /// The columns live as long as this object.
  std::span<const VariableColumn> columns() const { return columns_; }

 private:
  std::optional<Failure> Add(const std::shared_ptr<ExcelData>& data);

  std::vector<std::shared_ptr<ExcelData>> data_;  // whose numbers the columns view
  std::vector<BlockArray<double>> gathered_;      // columns copied out of wider data
  std::vector<VariableColumn> columns_;
};

}  // namespace zavrel
