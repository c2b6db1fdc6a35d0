#include "bindings/target_computation.h"

#include <cmath>

#include "bindings/sibling_library.h"
#include "stats/target.h"

namespace zavrel {

std::optional<double> PercentileOfSorted(std::span<const double> sorted, double p,
                                         std::int16_t method, DiscreteSetting setting) {
  constexpr auto kDirection = Stats::Direction::kProbabilityToValue;
  const auto of_sibling = SiblingProduct().calc_double_array_target;
  if (of_sibling == nullptr) {
    // Checked here rather than caught: a throw takes longer than the computation.
    if (!(p >= 0 && p <= 1) || method < Stats::kFirstPercentileMethod ||
        method > Stats::kLastPercentileMethod) {
      return std::nullopt;
    }
    return Stats::Target(sorted, kDirection, method, setting, p);
  }
  using Whole = SiblingFunctions::Whole;
  double result = 0;
  const std::int16_t status =
      of_sibling(static_cast<Whole>(sorted.size()), sorted.data(), static_cast<Whole>(kDirection),
                 p, static_cast<Whole>(DiscreteSetting::kUnknown), method, &result);
  if (status != 0) return std::nullopt;
  return result;
}

bool IsErrorCoded(double result) {
  const auto of_sibling = SiblingProduct().double_is_error;
  return of_sibling != nullptr ? of_sibling(result) != 0 : !std::isfinite(result);
}

}  // namespace zavrel
