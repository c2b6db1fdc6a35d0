#include "stats/runs.h"

#include <cstddef>

#include "numbers/error_double.h"

namespace zavrel {

double CountRuns(std::span<const double> values, double cutoff) {
  if (values.empty()) return ConditionDouble(kConditionNotComputed);
  std::size_t runs = 1;
  for (std::size_t i = 1; i < values.size(); ++i)
    if ((values[i] >= cutoff) != (values[i - 1] >= cutoff)) ++runs;
  return static_cast<double>(runs);
}

}  // namespace zavrel
