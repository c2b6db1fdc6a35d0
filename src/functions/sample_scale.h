#pragma once
// The scale of a sample, for comparison with the normal distribution.

#include "data/excel_data.h"
#include "excel/or_failure.h"

namespace zavrel {

struct SampleScale {
  double mean = 0;
  double standard_deviation = 1;
};

/// Mean and sample standard deviation of the data set's numbers. #DIV/0! for one number or only
/// equal ones.
OrFailure<SampleScale> SampleScaleOf(ExcelData& data);

}  // namespace zavrel
