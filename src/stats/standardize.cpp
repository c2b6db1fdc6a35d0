#include "stats/standardize.h"

#include "numbers/floating_point_scope.h"

namespace zavrel {

Standardized Standardize(double x, double mean, double standard_deviation) {
  const FloatingPointScope environment;
  const double value = Settled((x - mean) / standard_deviation);
  if (standard_deviation == 0) return {StandardizeStatus::kNoSpread, value};
  return {environment.Overflowed() ? StandardizeStatus::kOverflow : StandardizeStatus::kGiven,
          value};
}

}  // namespace zavrel
