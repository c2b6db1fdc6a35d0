#pragma once
// What is known of a variable before anything is computed from it.

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "matrix/association.h"

namespace zavrel {

struct AssociationKernels;

/// A bit for each observation, 64 to a word.
using ObservationBits = std::vector<std::uint64_t>;

inline bool IsSet(std::span<const std::uint64_t> bits, std::size_t observation) {
  return (bits[observation / 64] >> (observation % 64) & 1) != 0;
}

struct ScannedVariable {
  static constexpr std::size_t kNoError = std::numeric_limits<std::size_t>::max();

  VariableColumn values;
  /// Every value that is not missing is 0 or a number from kModerateFloor to below kModerateLimit
  /// in magnitude; or nobody looked, see Looked.
  bool is_moderate = true;
  /// The sum in observation order, of a moderate variable without gaps.
  double sum = 0;
  /// Where a cell error stands first.
  std::size_t first_error = kNoError;
  /// Empty, or which observations are there, as far as the longest variable goes: a shorter one
  /// misses the rest.
  ObservationBits present;

  bool has_gaps() const { return !present.empty(); }
};

/// Which variables are looked at value by value.
enum class Looked {
  /// Those whose sum shows that a gap or an error may be among them: it is not a number, or not
  /// below kModerateLimit in magnitude. The rest counts as moderate and without gaps. Whoever
  /// relies
  /// on that must find that nothing overflowed or underflowed: a gap's marker that others cancel in
  /// the sum overflows as soon as a deviation is squared.
  kWhereSumsAreUnusual,
  kEverywhere,
};

std::vector<ScannedVariable> Scan(std::span<const VariableColumn> variables, Looked looked,
                                  const AssociationKernels& kernels);

/// The cell error that is met first by this order: pair by pair (j, then i <= j), row by row as far
/// as both go, j before i.
std::optional<std::int32_t> FirstErrorByPair(std::span<const ScannedVariable> variables);

/// The cell error that is met first row by row, as far as the first variable goes, within a row by
/// variable; also in a row that misses another value.
std::optional<std::int32_t> FirstErrorByRow(std::span<const ScannedVariable> variables);

}  // namespace zavrel
