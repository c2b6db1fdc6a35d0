#pragma once
// The scale of a sample, by which it is compared with the normal distribution.

#include <variant>

#include "data/excel_data.h"
#include "excel/xxloper.h"

namespace zavrel {

struct SampleScale {
  double mean = 0;
  double standard_deviation = 1;
};

/// Mean and sample standard deviation of the data set's numbers, or what a call shows that could
/// not get them: #DIV/0! for one number or only equal ones.
std::variant<SampleScale, XXloper> SampleScaleOf(ExcelData& data);

}  // namespace zavrel
