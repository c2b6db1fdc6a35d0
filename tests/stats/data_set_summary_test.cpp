#include "stats/data_set_summary.h"

#include <doctest/doctest.h>

#include <vector>

namespace zavrel::tests {

TEST_CASE("a data set's summary as the log shows it") {
  const std::vector<double> values{1, 2, 4, ConditionDouble(kConditionExcluded)};
  const DataSetSummary summary = SummaryOf(ComputeMoments(values, Form::kSample), 7, 2);
  CHECK(summary.Text() ==
        "{ numTotalData=7, numUsedData=3, numErrs=2, numFiltered=1, min=1, max=4, mean=2.33333, "
        "stdDev=1.52753, variance=2.33333, skewness=0.93522, kurtosis=-nan }");
  CHECK(summary.Text(true).starts_with(
      "{ numTotalData=7, numUsedData=3, numErrs=2, numFiltered=1, min= +1.0000000000000000E+00, "
      "max= +4.0000000000000000E+00, mean= +2.3333333333333335E+00, "));

  DataSetSummary sums = summary;
  sums.statistics = DataSetSummary::PowerSums{PowerSum{7}, PowerSum{21}, PowerSum{73},
                                              PowerSum{1e300, 1.25e4000L}};
  CHECK(sums.Text() ==
        "numTotalData=7, numUsedData=3, numErrs=2, numFiltered=1, min=1, max=4, sumX1=7, sumX2=21, "
        "sumX3=73, sumX4=1.25e+4000");
}

}  // namespace zavrel::tests
