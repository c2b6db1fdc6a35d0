#pragma once
// From a data argument to its data set.

#include <cstddef>
#include <memory>
#include <span>

#include "data/cell_reader.h"
#include "data/excel_data.h"

namespace zavrel {

/// More cells than this (64 full columns) are refused as unreadable: they would be a slip, and
/// several hundred megabytes.
inline constexpr std::size_t kMostCells = std::size_t{1} << 26;

/// The data set, when `outcome` is kRead.
struct DataArgument {
  ReadOutcome outcome = ReadOutcome::kUnreadable;
  std::shared_ptr<ExcelData> data;
};

/// The data set that the pieces form together, in their order. Omitted pieces at the end (null
/// pointers included) contribute nothing; when all are omitted, the data set is one omitted value.
///
/// A piece of one cell whose text is the handle of a selection of stacked data stands for the cells
/// that the selection takes (data/stacked_argument.h).
///
/// The cells are read at every call. Those of the data set that the session's cache has under the
/// same key are compared with them, in every bit, while they come in, without allocating anything.
/// Only from the first difference on is a new data set built, which then takes the other's place.
///
/// An argument of more than `most_cells` cells is unreadable. Those of whole columns and rows count
/// as they come in, up to the last used one.
DataArgument ReadDataArgument(std::span<const XLOPER12* const> pieces,
                              std::size_t most_cells = kMostCells);

}  // namespace zavrel
