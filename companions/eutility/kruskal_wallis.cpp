// The Kruskal-Wallis test.
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <new>
#include <optional>
#include <span>
#include <vector>

#include "companions/eutility/arrangements.h"
#include "contracts/eutility.h"
#include "numbers/floating_point_scope.h"
#include "stats/rank_sums.h"

namespace EUtility {
namespace {

using Real = long double;

/// The groups as passed by the caller.
struct Groups {
  std::vector<std::span<const double>> values;
  std::span<const std::int32_t> sizes;
};

std::optional<Groups> Accepted(std::int32_t groups, const double* const* values,
                               const std::int32_t* counts) {
  if (groups < 2 || values == nullptr || counts == nullptr) return std::nullopt;
  Groups accepted;
  accepted.sizes = {counts, static_cast<std::size_t>(groups)};
  for (std::size_t i = 0; i < accepted.sizes.size(); ++i) {
    if (values[i] == nullptr || counts[i] < 1) return std::nullopt;
    const std::span<const double> group(values[i], static_cast<std::size_t>(counts[i]));
    for (const double value : group)
      if (std::isnan(value)) return std::nullopt;
    accepted.values.push_back(group);
  }
  return accepted;
}

/// H computed from the distances of the groups' mean ranks from the overall mean, without
/// cancellation.
Real Uncorrected(const zavrel::RankSums& ranks, const Groups& groups) {
  const Real n = ranks.count;
  Real sum = 0;
  for (std::size_t i = 0; i < groups.sizes.size(); ++i) {
    const Real size = groups.sizes[i];
    const Real distance = ranks.sums[i] / size - (n + 1) / 2;
    sum += size * distance * distance;
  }
  return 12 / (n * (n + 1)) * sum;
}

Real TieDivisor(const zavrel::RankSums& ranks) {
  const Real n = ranks.count;
  return 1 - ranks.tie_correction / (n * n * n - n);
}

bool NoSpread(const zavrel::RankSums& ranks) {
  return ranks.tied_groups == 1 && ranks.group_sizes.size() == 1;
}

std::int16_t Item(std::int32_t item, const zavrel::RankSums& ranks, const Groups& groups,
                  double& result) {
  switch (item) {
    case KW_STATISTIC:
      if (NoSpread(ranks)) return EUTILITY_NO_SPREAD;
      result = static_cast<double>(Uncorrected(ranks, groups) / TieDivisor(ranks));
      return EUTILITY_OK;
    case KW_STATISTIC_UNCORRECTED:
      result = static_cast<double>(Uncorrected(ranks, groups));
      return EUTILITY_OK;
    case KW_DEGREES_OF_FREEDOM:
      result = static_cast<double>(groups.sizes.size() - 1);
      return EUTILITY_OK;
    case KW_TOTAL:
      result = ranks.count;
      return EUTILITY_OK;
    case KW_TIES:
      result = ranks.tied_groups;
      return EUTILITY_OK;
    case KW_TIE_DIVISOR:
      result = static_cast<double>(TieDivisor(ranks));
      return EUTILITY_OK;
    default:
      break;
  }
  const std::int64_t group = std::int64_t{item} - KW_RANK_SUM;
  if (group < 1 || group > static_cast<std::int64_t>(ranks.sums.size())) return EUTILITY_REFUSED;
  result = ranks.sums[static_cast<std::size_t>(group - 1)];
  return EUTILITY_OK;
}

std::int16_t PValue(std::int32_t method, const zavrel::RankSums& ranks, const Groups& groups,
                    double& p_value) {
  if (NoSpread(ranks)) return EUTILITY_NO_SPREAD;
  const bool can_enumerate = method != KW_CHI_SQUARE && CanEnumerate(groups.sizes);
  if (method == KW_EXACT && !can_enumerate) return EUTILITY_TOO_MANY;
  if (can_enumerate) {
    p_value = ShareAtLeast(groups.sizes, ranks.group_sizes, ranks.sums);
    return EUTILITY_OK;
  }
  const Real statistic = Uncorrected(ranks, groups) / TieDivisor(ranks);
  const Real df = static_cast<Real>(groups.sizes.size() - 1);
  p_value = static_cast<double>(boost::math::gamma_q(df / 2, statistic / 2));
  return EUTILITY_OK;
}

/// The common part of both functions: `compute` returns the code from (ranks, groups, result).
template <class Compute>
std::int16_t Answer(std::int32_t groups, const double* const* values, const std::int32_t* counts,
                    double* result, Compute compute) noexcept {
  const zavrel::FloatingPointScope scope;
  try {
    const std::optional<Groups> accepted = Accepted(groups, values, counts);
    if (!accepted || result == nullptr) return EUTILITY_REFUSED;
    double value = 0;
    const std::int16_t code =
        compute(zavrel::RankTogether(accepted->values, true), *accepted, value);
    if (code == EUTILITY_OK) *result = value;
    return code;
  } catch (const std::bad_alloc&) {
    return EUTILITY_NO_MEMORY;
  } catch (...) {
    return EUTILITY_REFUSED;
  }
}

}  // namespace
}  // namespace EUtility

using namespace EUtility;

int16_t KWData(int32_t item, int32_t groups, const double* const* values, const int32_t* counts,
               double* result) {
  return Answer(groups, values, counts, result,
                [&](const zavrel::RankSums& ranks, const Groups& accepted, double& value) {
                  return Item(item, ranks, accepted, value);
                });
}

int16_t KWpValue(int32_t method, int32_t groups, const double* const* values, const int32_t* counts,
                 double* p_value) {
  if (method < KW_AUTOMATIC || method > KW_EXACT) return EUTILITY_REFUSED;
  return Answer(groups, values, counts, p_value,
                [&](const zavrel::RankSums& ranks, const Groups& accepted, double& value) {
                  return PValue(method, ranks, accepted, value);
                });
}

int16_t KWpValueComputationMethod(int32_t groups, const int32_t* counts) {
  if (groups < 2 || counts == nullptr) return 0;
  const std::span<const std::int32_t> sizes(counts, static_cast<std::size_t>(groups));
  for (const std::int32_t size : sizes)
    if (size < 1) return 0;
  return CanEnumerate(sizes) ? KW_EXACT : KW_CHI_SQUARE;
}
