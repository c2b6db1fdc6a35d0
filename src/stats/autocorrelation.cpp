#include "stats/autocorrelation.h"

#include <cmath>

#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"
#include "stats/moment_block.h"

namespace zavrel {

double Autocorrelation(std::span<const double> values, std::size_t lag) {
  const std::size_t n = values.size();
  if (n < 1 || n < lag) return ConditionDouble(kConditionNotComputed);
  const MomentBlock moments = ComputeMoments(values, Form::kSample);
  if (std::isnan(moments.mean)) return moments.mean;
  // Compares the values themselves, since rounding of the mean gives equal values deviations.
  if (moments.minimum == moments.maximum) return ConditionDouble(kConditionTooFew);

  const FloatingPointScope environment;
  const long double mean = moments.mean;
  long double products = 0;
  for (std::size_t t = 0; t + lag < n; ++t)
    products += (values[t] - mean) * (values[t + lag] - mean);
  long double squares = 0;
  for (const double x : values) squares += (x - mean) * (x - mean);
  return Settled(static_cast<double>(products / squares));
}

}  // namespace zavrel
