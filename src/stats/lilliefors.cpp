#include "stats/lilliefors.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "numbers/error_double.h"

namespace zavrel {

double LargestDistance(std::span<const double> sorted, const CumulativeProbability& cumulative) {
  if (sorted.empty()) return ConditionDouble(kConditionNotComputed);
  const auto n = static_cast<double>(sorted.size());
  double largest = 0;
  double below = 0;  // the step function before the value
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    const std::optional<double> probability = cumulative(sorted[i]);
    if (!probability) return ConditionDouble(kConditionNotComputed);
    const double above = static_cast<double>(i + 1) / n;
    largest = std::max({largest, std::abs(*probability - below), std::abs(above - *probability)});
    below = above;
  }
  return largest;
}

}  // namespace zavrel
