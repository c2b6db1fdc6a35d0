#pragma once
// The helper columns of charts, as worksheet results.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "excel/xxloper.h"
#include "frame/calling_array.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {

/// The most points that a column of a chart may have.
inline constexpr auto kMostChartPoints = static_cast<std::size_t>(kMostResultRows);

/// The numbers point(0) ... point(points - 1) in the first column of the calling range and #N/A in
/// its other cells, where Excel would otherwise repeat a single point or column. The column has all
/// points even if the range has fewer rows: entered in one cell, it spills. More than
/// kMostChartPoints points: #VALUE!.
///
/// The points are computed in a FloatingPointScope; one that is not finite shows as #NUM!.
template <class PointOf>
OrFailure<XXloper> ChartColumn(std::size_t points, PointOf point) {
  if (points > kMostChartPoints) return Failure(ExcelError::kValue);
  const OrFailure<CallingRange> caller = CallingRange::Ask();
  if (!caller.ok()) return caller.failure();
  const std::int32_t columns = std::clamp(caller->columns(), 1, kMostResultColumns);
  const std::int32_t rows =
      std::clamp(std::max(static_cast<std::int32_t>(points), caller->rows()), 1, kMostResultRows);
  const FloatingPointScope environment;
  XXloperArray column(rows, columns);
  for (std::size_t row = 0; row < points; ++row)
    column.SetNumber(row * static_cast<std::size_t>(columns), point(row));
  return std::move(column).Finish();
}

}  // namespace zavrel
