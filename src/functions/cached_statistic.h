#pragma once

#include "data/excel_data.h"
#include "stats/statistic_id.h"

namespace zavrel {

/// A statistic other than the mode of the data set's numbers, computed at the first request and
/// kept with the data set. An error-coded double if it does not exist.
///
/// Computed from the numbers alone, whatever the policy under which the data set was read.
double CachedStatistic(ExcelData& data, StatisticId id, Form form);

}  // namespace zavrel
