#pragma once

#include <cstdint>

namespace zavrel {

// Properties of a normal distribution by their index among the selectors.
inline constexpr std::int32_t kCumulativeProbability = 8;  // "xtop"
inline constexpr std::int32_t kQuantile = 9;               // "ptox"

/// A property of the normal distribution, as ZavNormal gives it, into `value`. 0 on success; any
/// other code, and nothing stored, when it cannot be computed.
std::int32_t NormalProperty(double mean, double standard_deviation, std::int32_t selector, double x,
                            double* value);

}  // namespace zavrel
