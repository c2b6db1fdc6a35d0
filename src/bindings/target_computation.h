#pragma once
// The target computation as the worksheet functions get it.

#include <cstdint>
#include <optional>
#include <span>

#include "stats/is_discrete.h"

namespace zavrel {

/// The p-th percentile of sorted values by a method -1..5 (stats/target.h): from the sibling
/// product's library when it stands beside the add-in (which judges discreteness for itself), else
/// from the add-in's own computation. Nothing when it fails. The values are not empty.
std::optional<double> PercentileOfSorted(std::span<const double> sorted, double p,
                                         std::int16_t method,
                                         DiscreteSetting setting = DiscreteSetting::kUnknown);

/// Whether a computed double stands for an error rather than a number; the sibling product's
/// judgement when its library is there. By the add-in's own: not-a-number or infinite.
bool IsErrorCoded(double result);

}  // namespace zavrel
