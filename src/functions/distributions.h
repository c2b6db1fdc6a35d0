#pragma once

#include <cstdint>

namespace zavrel {

// The indices of two properties among the selectors.
inline constexpr std::int32_t kCumulativeProbability = 8;  // "xtop"
inline constexpr std::int32_t kQuantile = 9;               // "ptox"

/// Stores a property of the normal distribution, the result of ZavNormal, in `value` and returns 0.
/// If it cannot be computed, returns another code and stores nothing.
std::int32_t NormalProperty(double mean, double standard_deviation, std::int32_t selector, double x,
                            double* value);

}  // namespace zavrel
