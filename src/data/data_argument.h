#pragma once
// From a data argument to its data set.

#include <cstddef>
#include <memory>
#include <optional>

#include "data/excel_data.h"
#include "excel/arguments.h"
#include "excel/or_failure.h"
#include "platform/function_ref.h"

namespace zavrel {

/// More cells than this (64 full columns) are refused as unreadable: they would take several
/// hundred megabytes and are surely a mistake.
inline constexpr std::size_t kMostCells = std::size_t{1} << 26;
/// The most arguments that together form a data set in any function.
inline constexpr std::size_t kMostPieces = 30;

/// A data set; #REF! if its cells cannot be read.
using DataArgument = OrFailure<std::shared_ptr<ExcelData>>;

/// The data set that the arguments together form, in their order. Omitted arguments at the end
/// contribute nothing; if all are omitted, the data set is one omitted value.
///
/// An argument of one cell whose text is the handle of a selection of stacked data stands for the
/// cells that the selection takes (data/stacked_argument.h).
///
/// The cells are read at every call. If the session's cache has a data set under the same key, the
/// incoming cells are compared with its cells, bit by bit and without an allocation. A new data set
/// is built only from the first difference on; it then replaces the cached one.
///
/// More than `most_cells` cells are unreadable. Whole columns and rows count up to their last used
/// row or column.
DataArgument ReadDataArgument(Arguments arguments, std::size_t most_cells = kMostCells);

/// Reads each area of an argument as a separate data set (an array or a value is one data set) and
/// hands it to `take`. Stops at the first failure and returns it.
std::optional<Failure> ReadAreas(
    const XLOPER12& argument,
    FunctionRef<std::optional<Failure>(const std::shared_ptr<ExcelData>& data)> take);

}  // namespace zavrel
