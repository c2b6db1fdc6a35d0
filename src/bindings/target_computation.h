#pragma once
// The target computation, as the worksheet functions call it.

#include <cstdint>
#include <optional>
#include <span>

#include "stats/is_discrete.h"

namespace zavrel {

/// The percentile of sorted values at probability p, by method -1..5 (stats/target.h). The sibling
/// product's library computes it if it is installed beside the add-in (and judges discreteness for
/// itself), otherwise the add-in does. std::nullopt if the computation fails. There must be at
/// least one value.
std::optional<double> PercentileOfSorted(std::span<const double> sorted, double p,
                                         std::int16_t method,
                                         DiscreteSetting setting = DiscreteSetting::kUnknown);

/// Whether a computed double stands for an error. The sibling product's library decides if it is
/// there; otherwise NaN and infinity are errors.
bool IsErrorCoded(double result);

}  // namespace zavrel
