#include "functions/variables.h"

#include <algorithm>
#include <utility>

#include "data/data_argument.h"
#include "data/whole_area.h"
#include "excel/reference.h"

namespace zavrel {
namespace {

bool HasWholeSheet(const XLOPER12& argument) {
  const auto reference = ReferenceView::Of(argument);
  return reference &&
         std::any_of(reference->areas().begin(), reference->areas().end(),
                     [](const XLREF12& area) { return IsWholeColumns(area) && IsWholeRows(area); });
}

}  // namespace

OrFailure<Variables> Variables::Of(Arguments arguments) {
  Variables variables;
  for (const XLOPER12* argument : arguments) {
    if (IsOmitted(argument)) continue;
    // Refused before it is read, which may take minutes.
    if (HasWholeSheet(*argument)) return Failure(ExcelError::kValue);
    const auto add = [&](const auto& data) { return variables.Add(data); };
    if (const auto failure = ReadAreas(*argument, add)) return *failure;
  }
  return variables;
}

std::optional<Failure> Variables::Add(const std::shared_ptr<ExcelData>& data) {
  const std::optional<CellBlock> block = data->block();
  if (!block) return Failure(ExcelError::kValue);
  const bool is_one = block->columns <= 1 || data->layout().is_one_row();
  if (columns_.size() + (is_one ? 1 : block->columns) > kMost) return Failure(ExcelError::kValue);
  const std::span<const double> numbers = data->Numbers(MissingDataPolicy::kPositionalWithErrors);
  data_.push_back(data);
  if (is_one) {
    columns_.push_back(numbers);
    return std::nullopt;
  }
  for (std::size_t column = 0; column < block->columns; ++column) {
    BlockArray<double> gathered;
    gathered.Reserve(block->rows);
    double* next = gathered.Extend(block->rows);
    for (std::size_t row = 0; row < block->rows; ++row)
      next[row] = numbers[row * block->columns + column];
    columns_.emplace_back(next, block->rows);
    gathered_.push_back(std::move(gathered));
  }
  return std::nullopt;
}

}  // namespace zavrel
