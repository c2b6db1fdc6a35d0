#include "bindings/target_computation.h"

#include <cmath>

#include "bindings/companion_library.h"
#include "stats/target.h"

namespace zavrel {
namespace {

// The sibling's entries. Its whole numbers are of 16 or 32 bits; each is passed at the full width
// of its slot with its sign, which is right for either.
using Whole = std::int64_t;
using CalcDoubleArrayTarget3 = std::int16_t(Whole count, const double* sorted, Whole direction,
                                            double p_or_value, Whole discrete_setting, Whole method,
                                            double* result);
using DoubleIsError = std::int16_t(double value);

template <class Function>
Function* SiblingEntry(const char* name) {
  return AsFunction<Function>(SiblingLibrary().FindExport(name));
}

}  // namespace

std::optional<double> PercentileOfSorted(std::span<const double> sorted, double p,
                                         std::int16_t method, DiscreteSetting setting) {
  constexpr auto kDirection = Stats::Direction::kProbabilityToValue;
  static auto* const sibling = SiblingEntry<CalcDoubleArrayTarget3>("QLX4_CalcDoubleArrayTarget3");
  if (sibling == nullptr) {
    // Looked at here rather than caught: a throw takes longer than the computation.
    if (!(p >= 0 && p <= 1) || method < Stats::kFirstPercentileMethod ||
        method > Stats::kLastPercentileMethod) {
      return std::nullopt;
    }
    return Stats::Target(sorted, kDirection, method, setting, p);
  }
  double result = 0;
  const std::int16_t status =
      sibling(static_cast<Whole>(sorted.size()), sorted.data(), static_cast<Whole>(kDirection), p,
              static_cast<Whole>(DiscreteSetting::kUnknown), method, &result);
  if (status != 0) return std::nullopt;
  return result;
}

bool IsErrorCoded(double result) {
  static auto* const sibling = SiblingEntry<DoubleIsError>("QLX4_DoubleIsError");
  return sibling != nullptr ? sibling(result) != 0 : !std::isfinite(result);
}

}  // namespace zavrel
