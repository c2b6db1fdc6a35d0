#include "stats/box_plot.h"

#include <algorithm>

namespace zavrel {

Fences Fences::Around(const Quartiles& quartiles) {
  const double range = quartiles.upper - quartiles.lower;
  return {quartiles.lower - 3 * range, quartiles.lower - 1.5 * range, quartiles.upper + 1.5 * range,
          quartiles.upper + 3 * range};
}

OutlierType Fences::TypeOf(double value) const {
  if (value <= lower_mild)
    return value <= lower_extreme ? OutlierType::kExtreme : OutlierType::kMild;
  if (value >= upper_mild)
    return value >= upper_extreme ? OutlierType::kExtreme : OutlierType::kMild;
  return OutlierType::kNone;
}

BoxPlot::BoxPlot(std::span<const double> sorted, double the_mean, const Quartiles& the_quartiles)
    : mean(the_mean), quartiles(the_quartiles), fences(Fences::Around(the_quartiles)) {
  const auto from = [&](auto begin, double fence) {
    return std::lower_bound(begin, sorted.end(), fence);
  };
  const auto behind = [&](double fence) {
    return std::upper_bound(sorted.begin(), sorted.end(), fence);
  };
  const auto lower_mild_begin = behind(fences.lower_extreme);
  const auto inside_begin = behind(fences.lower_mild);
  const auto inside_end = from(inside_begin, fences.upper_mild);
  const auto upper_extreme_begin = from(inside_end, fences.upper_extreme);

  lower_extreme = {sorted.begin(), lower_mild_begin};
  lower_mild = {lower_mild_begin, inside_begin};
  upper_mild = {inside_end, upper_extreme_begin};
  upper_extreme = {upper_extreme_begin, sorted.end()};
  const bool any_inside = inside_begin != inside_end;
  lower_whisker = any_inside ? *inside_begin : quartiles.lower;
  upper_whisker = any_inside ? *(inside_end - 1) : quartiles.upper;
}

std::size_t BoxPlot::MostOutliers() const {
  return std::max(
      {lower_extreme.size(), lower_mild.size(), upper_mild.size(), upper_extreme.size()});
}

}  // namespace zavrel
