#include "stats/target.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"

namespace zavrel::Stats {
namespace {

using Sorted = std::span<const double>;

constexpr double kEpsilon = 2.220446049250313e-16;  // the rounding of p

double CountOf(Sorted x) { return static_cast<double>(x.size()); }

/// The order statistic x(rank) for a whole number `rank` from 1; ranks beyond an end give that end.
double OrderStatistic(Sorted x, double rank) {
  if (!(rank > 1)) return x.front();
  return rank < CountOf(x) ? x[static_cast<std::size_t>(rank) - 1] : x.back();
}

/// Interpolates between the neighbours of the fractional rank `position` + `offset`; the offset is
/// separate to keep the digits of a small position. On a whole rank, and between equal neighbours,
/// the result is exactly their value, even if it is infinite.
double Interpolated(Sorted x, double position, double offset = 0) {
  const double whole = std::floor(position);
  const double fraction = position - whole;
  const double below = OrderStatistic(x, whole + offset);
  const double above = OrderStatistic(x, whole + offset + 1);
  if (fraction == 0 || below == above) return below;
  return (1 - fraction) * below + fraction * above;
}

/// Definition 3.
double Nearest(Sorted x, double p) {
  const double n = CountOf(x);
  const double below = (p - kEpsilon) * n;
  const double above = (p + kEpsilon) * n;
  const bool on_half = below - std::floor(below) <= 0.5 && above - std::floor(above) >= 0.5;
  if (!on_half) return OrderStatistic(x, std::floor(n * p + 0.5));
  const double rank = std::floor(n * p);
  return OrderStatistic(x, std::fmod(rank, 2) == 0 ? rank : rank + 1);
}

/// Definition 1.
double InverseEcdf(Sorted x, double p) {
  return OrderStatistic(x, std::ceil(CountOf(x) * std::max(p - kEpsilon, 0.0)));
}

/// Definition 2. The rank of a jump is computed from above: 0.29 * 100 is just below 29 in doubles,
/// but the average must be that of x(29) and x(30). In extended precision, since rounding of the
/// product would hide some of the jumps that lie within the rounding of p.
double InverseEcdfAverage(Sorted x, double p) {
  const long double n = CountOf(x);
  const long double epsilon = kEpsilon;
  const auto rank = static_cast<double>(std::floor((p + epsilon) * n));
  const auto rank_below = static_cast<double>(std::floor((p - epsilon) * n));
  if (rank > rank_below) return std::midpoint(OrderStatistic(x, rank), OrderStatistic(x, rank + 1));
  return OrderStatistic(x, rank + 1);
}

bool TakenAsDiscrete(Sorted x, DiscreteSetting setting) {
  if (setting == DiscreteSetting::kUnknown) return IsDiscrete(x).forPercentile;
  return setting == DiscreteSetting::kDiscrete;
}

double ValueOfProbability(Sorted x, PercentileMethod method, DiscreteSetting setting, double p) {
  using enum PercentileMethod;
  const double n = CountOf(x);
  switch (method) {
    case kAutomatic:
      return TakenAsDiscrete(x, setting) ? InverseEcdf(x, p) : Interpolated(x, n * p);
    case kLinearIncluding:
      return Interpolated(x, (n - 1) * p, 1);
    case kLinearEcdf:
      return Interpolated(x, n * p);
    case kNearest:
      return Nearest(x, p);
    case kInverseEcdf:
      return InverseEcdf(x, p);
    case kLinearExcluding:
      return Interpolated(x, (n + 1) * p);
    case kInverseEcdfAverage:
      return InverseEcdfAverage(x, p);
  }
  return ConditionDouble(kConditionNotComputed);
}

/// The position of v between two values, as a fraction of their distance; 0 if there is no finite
/// distance.
double FractionBetween(double below, double above, double v) {
  if (!std::isfinite(below) || !std::isfinite(above) || !(above > below)) return 0;
  const double scale = std::isfinite(above - below) ? 1 : 0.5;
  return (v * scale - below * scale) / (above * scale - below * scale);
}

double FractionOfValue(Sorted x, DiscreteSetting setting, double v) {
  const auto above = std::upper_bound(x.begin(), x.end(), v);
  const auto k = static_cast<std::size_t>(above - x.begin());
  if (k == 0) return 0;
  if (k == x.size()) return 1;
  const auto count = static_cast<double>(k);
  if (TakenAsDiscrete(x, setting)) return count / CountOf(x);
  return (count + FractionBetween(x[k - 1], x[k], v)) / CountOf(x);
}

}  // namespace

double Target(std::span<const double> sorted, Direction direction, std::int32_t method,
              DiscreteSetting setting, double p_or_v) {
  if (std::isnan(p_or_v)) return p_or_v;
  if (sorted.empty()) return ConditionDouble(kConditionNotComputed);
  const FloatingPointScope environment;
  if (direction == Direction::kValueToFraction)
    return Settled(FractionOfValue(sorted, setting, p_or_v));
  if (!(p_or_v >= 0 && p_or_v <= 1))
    throw VekInvalidP("Stats::Target", messages::kMessageInvalidP, {p_or_v});
  if (method < kFirstPercentileMethod || method > kLastPercentileMethod) {
    throw VekInvalidPercentileMethod("Stats::Target", messages::kMessageInvalidPercentileMethod,
                                     {std::int64_t{method}});
  }
  return Settled(
      ValueOfProbability(sorted, static_cast<PercentileMethod>(method), setting, p_or_v));
}

}  // namespace zavrel::Stats
