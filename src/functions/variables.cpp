#include "functions/variables.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/data_argument.h"
#include "excel/reference.h"

namespace zavrel {

std::optional<std::size_t> BlockColumns(const XLOPER12& part, const ExcelData& data) {
  if (TypeOf(part) == xltypeMulti) return static_cast<std::size_t>(part.val.array.columns);
  const auto reference = ReferenceView::Of(part);
  if (reference && reference->areas().size() > 1) return std::nullopt;
  const CellLayout& layout = data.layout();
  switch (layout.kind) {
    case CellLayout::Kind::kOpenEnd:
      if (reference && RowsOf(reference->areas().front()) == 1) return data.size();  // a whole row
      [[fallthrough]];
    case CellLayout::Kind::kComplete:
      return std::max<std::size_t>(layout.width, 1);
    case CellLayout::Kind::kWholeRows:
      return data.size() / layout.width;
    case CellLayout::Kind::kClipped:
      break;
  }
  return std::nullopt;
}

namespace {

/// The rows of what was given, used or not.
std::int32_t GivenRows(const XLOPER12& part) {
  if (TypeOf(part) == xltypeMulti) return part.val.array.rows;
  const auto reference = ReferenceView::Of(part);
  return reference ? RowsOf(reference->areas().front()) : 1;
}

}  // namespace

bool Variables::Add(const XLOPER12* argument) {
  if (XXloper::FromArgument(argument).IsMissing()) return true;
  const auto reference = ReferenceView::Of(*argument);
  if (!reference) return AddPart(*argument);
  for (const XLREF12& area : reference->areas()) {
    const OneArea part(*reference, area);
    if (!AddPart(part.record())) return false;
  }
  return true;
}

bool Variables::AddPart(const XLOPER12& part) {
  DataArgument read = ReadDataArgument(std::array{&part});
  if (read.outcome != ReadOutcome::kRead) return Fail(ExcelError::kRef);
  const std::optional<std::size_t> width = BlockColumns(part, *read.data);
  if (!width) return Fail(ExcelError::kValue);

  const std::span<const double> numbers =
      read.data->Numbers(MissingDataPolicy::kPositionalWithErrors);
  data_.push_back(std::move(read.data));
  const std::size_t rows = *width > 0 ? numbers.size() / *width : 0;
  if (*width <= 1 || GivenRows(part) == 1) {
    columns_.push_back(numbers);
    return true;
  }
  for (std::size_t column = 0; column < *width; ++column) {
    BlockArray<double> gathered;
    gathered.Reserve(rows);
    double* next = gathered.Extend(rows);
    for (std::size_t row = 0; row < rows; ++row) next[row] = numbers[row * *width + column];
    columns_.emplace_back(next, rows);
    gathered_.push_back(std::move(gathered));
  }
  return true;
}

bool Variables::Fail(ExcelError error) {
  failure_ = XXloper::Error(error);
  return false;
}

}  // namespace zavrel
