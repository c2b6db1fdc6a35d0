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

/// More cells than this (64 full columns) are refused as unreadable: they would be a slip, and
/// several hundred megabytes.
inline constexpr std::size_t kMostCells = std::size_t{1} << 26;
/// As many arguments as form a data set together in any function.
inline constexpr std::size_t kMostPieces = 30;

/// A data set; #REF! for cells that cannot be read.
using DataArgument = OrFailure<std::shared_ptr<ExcelData>>;

/// The data set that the arguments form together, in their order. Omitted ones at the end
/// contribute nothing; when all are omitted, the data set is one omitted value.
///
/// An argument of one cell whose text is the handle of a selection of stacked data stands for the
/// cells that the selection takes (data/stacked_argument.h).
///
/// The cells are read at every call. Those of the data set that the session's cache has under the
/// same key are compared with them, in every bit, while they come in, without allocating anything.
/// Only from the first difference on is a new data set built, which then takes the other's place.
///
/// More than `most_cells` cells are unreadable. Those of whole columns and rows count as they come
/// in, up to the last used one.
DataArgument ReadDataArgument(Arguments arguments, std::size_t most_cells = kMostCells);

/// Reads an argument area by area, each of them as a data set of its own (an array or a value is
/// one), and hands these to `take`; ends at the first failure, which it gives.
std::optional<Failure> ReadAreas(
    const XLOPER12& argument,
    FunctionRef<std::optional<Failure>(const std::shared_ptr<ExcelData>& data)> take);

}  // namespace zavrel
