#pragma once

#include <cstdint>

#include "data/excel_data.h"
#include "excel/or_failure.h"

namespace zavrel {

/// The percentile of the data set's numbers at probability p, by a method -1..5 (stats/target.h);
/// with -1 the data decide. A double that stands for an error is passed on as it is. #VALUE! for a
/// p outside 0..1, an unknown method, and data without a number.
OrFailure<double> PercentileOf(ExcelData& data, double p, std::int32_t method);

}  // namespace zavrel
