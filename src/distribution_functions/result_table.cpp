#include "distribution_functions/result_table.h"

#include <cmath>
#include <utility>

#include "platform/utf.h"

namespace zavrel {

void ResultTable::Add(std::string text, std::initializer_list<double> numbers) {
  rows_.push_back({std::move(text), numbers});
}

XXloper ResultTable::Finish() && {
  XXloperArray cells(static_cast<std::int32_t>(rows_.size()), static_cast<std::int32_t>(columns_));
  std::size_t next = 0;
  for (const Row& row : rows_) {
    cells.SetText(next, Utf16FromUtf8(row.text));
    for (std::size_t i = 1; i < columns_; ++i) {
      const bool given = i <= row.numbers.size() && !std::isnan(row.numbers[i - 1]);
      if (given) {
        cells.SetNumber(next + i, row.numbers[i - 1]);
      } else {
        cells.SetText(next + i, u"");
      }
    }
    next += columns_;
  }
  return std::move(cells).Finish();
}

XXloper ReasonRow(const std::string& reason, std::size_t columns) {
  XXloperArray cells(1, static_cast<std::int32_t>(columns), ExcelError::kNum);
  cells.SetText(0, Utf16FromUtf8(reason));
  return std::move(cells).Finish();
}

}  // namespace zavrel
