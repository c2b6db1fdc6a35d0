#pragma once
// The properties of a variable that are determined before anything is computed from it.

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "matrix/association.h"

namespace zavrel {

/// A bit for each observation, 64 to a word.
using ObservationBits = std::vector<std::uint64_t>;

inline bool IsSet(std::span<const std::uint64_t> bits, std::size_t observation) {
  return (bits[observation / 64] >> (observation % 64) & 1) != 0;
}

struct ScannedVariable {
  static constexpr std::size_t kNoError = std::numeric_limits<std::size_t>::max();

  VariableColumn values;
  /// Every value that is not missing is 0 or a number from kModerateFloor to below kModerateLimit
  /// in magnitude, or the values were not examined; see Looked.
  bool is_moderate = true;
  /// The sum in observation order, of a moderate variable without gaps.
  double sum = 0;
  /// The position of the first cell error.
  std::size_t first_error = kNoError;
  /// Empty, or the bits of the observations that are present, up to the length of the longest
  /// variable; a shorter variable has missing values at its end.
  ObservationBits present;

  bool has_gaps() const { return !present.empty(); }
};

/// Which variables are examined value by value.
enum class Looked {
  /// Variables whose sum shows that they may contain a gap or an error, since it is not a number or
  /// not below kModerateLimit in magnitude. All others count as moderate and without gaps. Code
  /// that relies on this must check that nothing overflowed or underflowed: if other values cancel
  /// the marker of a gap in the sum, it still overflows when a deviation is squared.
  kWhereSumsAreUnusual,
  kEverywhere,
};

std::vector<ScannedVariable> Scan(std::span<const VariableColumn> variables, Looked looked);

/// The first cell error in this order: pair by pair (j, then i <= j), row by row up to the shorter
/// of both, j before i.
std::optional<std::int32_t> FirstErrorByPair(std::span<const ScannedVariable> variables);

/// The first cell error row by row, up to the length of the first variable, and within a row by
/// variable; also in rows with another missing value.
std::optional<std::int32_t> FirstErrorByRow(std::span<const ScannedVariable> variables);

}  // namespace zavrel
