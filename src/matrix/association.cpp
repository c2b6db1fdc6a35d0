#include "matrix/association.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>

#include "matrix/association_kernels.h"
#include "matrix/gapped_pairs.h"
#include "matrix/matrix_parallel.h"
#include "matrix/pair_value.h"
#include "matrix/ranks.h"
#include "matrix/scanned_variable.h"
#include "matrix/whole_pairs.h"
#include "numbers/error_double.h"
#include "numbers/floating_point_scope.h"
#include "platform/block_pool.h"
#include "platform/parallel.h"

namespace zavrel {
namespace {

using Columns = std::vector<BlockArray<double>>;
using Orders = std::vector<BlockArray<std::uint32_t>>;

template <class T>
BlockArray<T> Uninitialised(std::size_t count) {
  BlockArray<T> array;
  array.Extend(count);
  return array;
}

std::vector<VariableColumn> ViewsOf(const Columns& columns) {
  std::vector<VariableColumn> views;
  for (const BlockArray<double>& column : columns) views.emplace_back(column.data(), column.size());
  return views;
}

ObservationBits CompleteObservations(std::span<const ScannedVariable> variables, std::size_t rows) {
  ObservationBits complete(rows / 64 + 1, ~std::uint64_t{0});
  for (const ScannedVariable& variable : variables) {
    for (std::size_t w = 0; variable.has_gaps() && w < complete.size(); ++w)
      complete[w] &= variable.present[w];
  }
  return complete;
}

/// Keeps only the complete observations, up to the length of the first variable. Copies them into
/// `storage` unless all observations are complete.
void DeleteListwise(std::vector<ScannedVariable>& variables, Looked looked, Columns& storage) {
  if (std::none_of(variables.begin(), variables.end(),
                   [](const ScannedVariable& v) { return v.has_gaps(); }))
    return;
  const std::size_t rows = variables[0].values.size();
  const ObservationBits complete = CompleteObservations(variables, rows);
  std::size_t count = 0;
  for (std::size_t row = 0; row < rows; ++row) count += std::size_t{IsSet(complete, row)};
  for (std::size_t c = 0; c < variables.size(); ++c)
    storage.push_back(Uninitialised<double>(count));
  ParallelCompute(variables.size(), [&](std::size_t c) {
    std::size_t n = 0;
    for (std::size_t row = 0; n < count; ++row) {
      if (IsSet(complete, row)) storage[c].data()[n++] = variables[c].values[row];
    }
  });
  variables = Scan(ViewsOf(storage), looked);
}

Orders OrdersOf(std::span<const ScannedVariable> variables) {
  Orders orders;
  orders.reserve(variables.size());
  std::size_t most_rows = 0;
  for (const ScannedVariable& variable : variables) {
    if (variable.values.size() > kMostRanked) throw std::bad_alloc();
    most_rows = std::max(most_rows, variable.values.size());
    orders.push_back(Uninitialised<std::uint32_t>(variable.values.size()));
  }
  const std::size_t parts = std::min(variables.size(), ParallelThreads());
  std::vector<BlockArray<std::uint64_t>> scratch;
  scratch.reserve(parts);
  for (std::size_t part = 0; part < parts; ++part)
    scratch.push_back(Uninitialised<std::uint64_t>(2 * most_rows));
  ParallelCompute(parts, [&](std::size_t part) {
    for (std::size_t c = part; c < variables.size(); c += parts)
      OrderInto(variables[c].values, orders[c].elements(), scratch[part].elements());
  });
  return orders;
}

/// Replaces variables without gaps by their ranks.
void ReplaceByRanks(std::vector<ScannedVariable>& variables, const Orders& orders,
                    Columns& storage) {
  std::vector<std::size_t> whole;
  for (std::size_t c = 0; c < variables.size(); ++c) {
    if (variables[c].has_gaps()) continue;
    whole.push_back(c);
    storage.push_back(Uninitialised<double>(variables[c].values.size()));
  }
  ParallelCompute(whole.size(), [&](std::size_t w) {
    RankAllInto(orders[whole[w]].elements(), storage[w].elements());
  });
  const std::vector<ScannedVariable> ranks = Scan(ViewsOf(storage), Looked::kWhereSumsAreUnusual);
  for (std::size_t w = 0; w < whole.size(); ++w) variables[whole[w]] = ranks[w];
}

/// True if the assumptions about a variable that was not examined may be wrong.
bool CalculateWholePairs(std::span<const ScannedVariable> variables, PairOptions options,
                         DoubleMatrix& matrix) {
  WholeVariables moderate;
  WholeVariables others;
  for (std::size_t c = 0; c < variables.size(); ++c) {
    if (variables[c].has_gaps()) continue;
    WholeVariables& kind = variables[c].is_moderate ? moderate : others;
    kind.variables.push_back(&variables[c]);
    kind.places.push_back(c);
  }
  const ModeratePairs pairs = CalculateModeratePairs(moderate, options, matrix);
  CalculateOtherPairs(moderate, pairs.summaries, others, options, matrix);
  return pairs.left_normal_range;
}

/// Whether a variable that was not examined has values as large as the marker of a gap.
bool MayHideGaps(std::span<const ScannedVariable> variables, const Orders& orders) {
  for (std::size_t c = 0; c < variables.size(); ++c) {
    const std::span<const std::uint32_t> order = orders[c].elements();
    if (variables[c].has_gaps() || !variables[c].is_moderate || order.empty()) continue;
    if (variables[c].values[order.back() & ~kBeginsTie] >= kModerateLimit) return true;
  }
  return false;
}

/// Nothing if all variables must be examined.
std::optional<AssociationResult> Calculate(const AssociationOptions& options,
                                           std::span<const VariableColumn> variables,
                                           Looked looked) {
  std::vector<ScannedVariable> scanned = Scan(variables, looked);
  AssociationResult result;
  result.error = options.listwise_deletion ? FirstErrorByRow(scanned) : FirstErrorByPair(scanned);
  if (result.error) return result;
  Columns complete;
  if (options.listwise_deletion) DeleteListwise(scanned, looked, complete);

  const std::size_t k = scanned.size();
  result.matrix.assign(k, std::vector<double>(k, ConditionDouble(kConditionNoData)));
  bool must_look = false;
  if (options.use_ranks) {
    const Orders orders = OrdersOf(scanned);
    must_look = MayHideGaps(scanned, orders);
    CalculateCompactedPairs(scanned, orders, false, options.pair, result.matrix);
    Columns ranks;
    ReplaceByRanks(scanned, orders, ranks);
    CalculateWholePairs(scanned, options.pair, result.matrix);
  } else {
    must_look = CalculateWholePairs(scanned, options.pair, result.matrix);
    must_look |= CalculateModerateGappedPairs(scanned, options.pair, result.matrix);
    CalculateCompactedPairs(scanned, {}, true, options.pair, result.matrix);
  }
  if (must_look && looked != Looked::kEverywhere) return std::nullopt;
  return result;
}

bool AreSame(VariableColumn x, VariableColumn y) {
  return x.size() == y.size() &&
         (x.data() == y.data() || std::equal(x.begin(), x.end(), y.begin()));
}

/// The correlation of a variable with itself is 1, which rounding may miss.
void CorrelateSameVariables(std::span<const VariableColumn> variables, DoubleMatrix& matrix) {
  constexpr double kNearOne = 1 - 1e-9;
  for (std::size_t i = 0; i < matrix.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      if (matrix[i][j] > kNearOne && AreSame(variables[i], variables[j])) SetBoth(matrix, i, j, 1);
    }
  }
}

/// Whether the work is done before another thread wakes.
bool IsSmall(const AssociationOptions& options, std::span<const VariableColumn> variables) {
  constexpr std::size_t kFewProducts = 50'000;
  constexpr std::size_t kProductsPerRank = 16;  // to sort a value takes as long
  std::size_t rows = 0;
  for (const VariableColumn variable : variables) rows = std::max(rows, variable.size());
  const std::size_t per_value = variables.size() + (options.use_ranks ? kProductsPerRank : 0);
  return rows < kFewProducts && rows * variables.size() * per_value < kFewProducts;
}

}  // namespace

AssociationResult CalculateAssociationMatrix(const AssociationOptions& options,
                                             std::span<const VariableColumn> variables) {
  const FloatingPointScope environment;
  std::optional<CallingThreadOnly> small;
  if (IsSmall(options, variables)) small.emplace();
  auto result = Calculate(options, variables, Looked::kWhereSumsAreUnusual);
  if (!result) result = Calculate(options, variables, Looked::kEverywhere);
  if (options.pair.measure == Measure::kCorrelation && !result->error)
    CorrelateSameVariables(variables, result->matrix);
  return *std::move(result);
}

}  // namespace zavrel
