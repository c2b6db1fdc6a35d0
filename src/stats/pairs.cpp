#include "stats/pairs.h"

#include <algorithm>
#include <cmath>

#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

/// Calls take(x, y) for each complete pair as long as it returns true.
template <class Take>
void EachPair(PairedValues x, PairedValues y, Take take) {
  const std::size_t pairs = std::min(x.size(), y.size());
  for (std::size_t i = 0; i < pairs; ++i) {
    if (x[i] != kMissingValue && y[i] != kMissingValue && !take(x[i], y[i])) return;
  }
}

}  // namespace

std::size_t CountPairs(PairedValues x, PairedValues y) {
  std::size_t count = 0;
  EachPair(x, y, [&](double, double) {
    ++count;
    return true;
  });
  return count;
}

std::size_t PairedDifferences(PairedValues x, PairedValues y, std::span<double> out) {
  const FloatingPointScope environment;
  std::size_t count = 0;
  EachPair(x, y, [&](double a, double b) {
    out[count++] = a - b;
    return true;
  });
  return count;
}

PairedQuotientsResult PairedQuotients(PairedValues x, PairedValues y, Quotient quotient,
                                      std::span<double> out) {
  const FloatingPointScope environment;
  PairedQuotientsResult result;
  EachPair(x, y, [&](double a, double b) {
    if (b == 0) {
      result.failure = ConditionDouble(kConditionTooFew);
      return false;
    }
    const double q = quotient == Quotient::kAbsolute ? std::abs(a / b) : a / b;
    if (std::isinf(q)) {
      result.failure = ConditionDouble(kConditionNotFinite);
      return false;
    }
    out[result.count++] = q;
    return true;
  });
  return result;
}

std::size_t CountInRange(std::span<const double> values, const NumericRange& range) {
  return static_cast<std::size_t>(std::count_if(
      values.begin(), values.end(), [&](double value) { return range.Contains(value); }));
}

std::size_t CountPairsInRange(PairedValues x, PairedValues y, const NumericRange& range) {
  const FloatingPointScope environment;
  std::size_t count = 0;
  EachPair(x, y, [&](double a, double b) {
    if (range.Contains(a - b)) ++count;
    return true;
  });
  return Settled(count);
}

}  // namespace zavrel
