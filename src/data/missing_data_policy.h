#pragma once

#include <cstddef>

namespace zavrel {

/// How a statistics function treats cells that do not hold a number: which data sets it accepts,
/// and in which shape it gets their numbers.
enum class MissingDataPolicy {
  kNumbersRequired = 0,  // every cell must be a number; numbers only
  kPositional = 1,       // any cells; one entry per cell, the missing-value marker for the rest
  kOneRun = 2,           // the numbers must form one run; numbers only
  kNumbersOnly = 3,      // any cells; numbers only
  kPositionalWithErrors = 4,  // as kPositional, but an error cell gives its error-coded NaN
};
inline constexpr std::size_t kMissingDataPolicies = 5;

/// True when the policy's shape has one entry per cell.
constexpr bool IsPositional(MissingDataPolicy policy) {
  return policy == MissingDataPolicy::kPositional ||
         policy == MissingDataPolicy::kPositionalWithErrors;
}

}  // namespace zavrel
