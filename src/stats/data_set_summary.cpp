#include "stats/data_set_summary.h"

#include <fmt/printf.h>

#include <algorithm>
#include <limits>

namespace zavrel {
namespace {

std::int32_t Clamped(std::size_t count) {
  return static_cast<std::int32_t>(
      std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max()));
}

constexpr const char* kMomentsText =
    "{ numTotalData=%d, numUsedData=%d, numErrs=%d, numFiltered=%d, min=%g, max=%g, mean=%g, "
    "stdDev=%g, variance=%g, skewness=%g, kurtosis=%g }";
constexpr const char* kMomentsFullText =
    "{ numTotalData=%d, numUsedData=%d, numErrs=%d, numFiltered=%d, min=%+24.16E, max=%+24.16E, "
    "mean=%+24.16E, stdDev=%+24.16E, variance=%+24.16E, skewness=%+24.16E, kurtosis=%+24.16E }";
constexpr const char* kPowerSumsText =
    "numTotalData=%d, numUsedData=%d, numErrs=%d, numFiltered=%d, min=%g, max=%g, sumX1=%s, "
    "sumX2=%s, sumX3=%s, sumX4=%s";

}  // namespace

std::string PowerSum::Text() const {
  return accumulator ? fmt::sprintf("%.20Lg", *accumulator) : fmt::sprintf("%g", sum);
}

std::string DataSetSummary::Text(bool full_precision) const {
  if (const auto* m = std::get_if<SummaryMoments>(&statistics)) {
    return fmt::sprintf(full_precision ? kMomentsFullText : kMomentsText, numTotalData, numUsedData,
                        numErrs, numFiltered, min, max, m->mean, m->stdDev, m->variance,
                        m->skewness, m->kurtosis);
  }
  const PowerSums& sums = std::get<PowerSums>(statistics);
  return fmt::sprintf(kPowerSumsText, numTotalData, numUsedData, numErrs, numFiltered, min, max,
                      sums[0].Text(), sums[1].Text(), sums[2].Text(), sums[3].Text());
}

DataSetSummary SummaryOf(const MomentBlock& block, std::size_t total, std::size_t errors) {
  return {.numTotalData = Clamped(total),
          .numUsedData = Clamped(block.valid),
          .numErrs = Clamped(errors),
          .numFiltered = Clamped(block.excluded),
          .min = block.minimum,
          .max = block.maximum,
          .statistics = SummaryMoments{block.mean, block.standard_deviation, block.variance,
                                       block.skewness, block.kurtosis}};
}

}  // namespace zavrel
