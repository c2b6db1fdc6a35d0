#pragma once

#include <cstdint>

#include "data/excel_data.h"
#include "excel/or_failure.h"

namespace zavrel {

/// The p-th percentile of the data set's numbers by a method -1..5 (stats/target.h); -1 leaves the
/// choice to the data. A double that stands for an error is passed on as it is. #VALUE! for a p
/// outside 0..1, a method that there is not, and data without a number.
OrFailure<double> PercentileOf(ExcelData& data, double p, std::int32_t method);

}  // namespace zavrel
