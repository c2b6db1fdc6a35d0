#pragma once
// Pairs of variables without gaps.

#include <span>
#include <vector>

#include "matrix/pair_value.h"
#include "matrix/scanned_variable.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// Variables without gaps, and their rows and columns in the result.
struct WholeVariables {
  std::vector<const ScannedVariable*> variables;
  std::vector<std::size_t> places;

  std::size_t size() const { return variables.size(); }
  VariableColumn column(std::size_t c) const { return variables[c]->values; }
  std::size_t rows() const { return variables.empty() ? 0 : column(0).size(); }
};

struct ModeratePairs {
  std::vector<VariableSummary> summaries;
  /// An operation overflowed or underflowed: some variable was not moderate, and the values are
  /// meaningless.
  bool left_normal_range = false;
};

/// Values of all pairs of moderate variables. Each variable is summarised once; several pairs are
/// summed at a time, from blocks of deviations that stay in the fastest cache.
ModeratePairs CalculateModeratePairs(const WholeVariables& variables, PairOptions options,
                                     DoubleMatrix& matrix);

/// Values of all pairs with at least one of `others`, for values of any kind.
void CalculateOtherPairs(const WholeVariables& moderate,
                         std::span<const VariableSummary> moderate_summaries,
                         const WholeVariables& others, PairOptions options, DoubleMatrix& matrix);

}  // namespace zavrel
