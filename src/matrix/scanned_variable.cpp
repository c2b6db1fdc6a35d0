#include "matrix/scanned_variable.h"

#include <algorithm>
#include <cmath>

#include "matrix/association_kernels.h"
#include "matrix/matrix_parallel.h"
#include "numbers/error_double.h"

namespace zavrel {
namespace {

bool IsModerate(double value) {
  const double magnitude = std::abs(value);
  return magnitude < kModerateLimit && (magnitude >= kModerateFloor || magnitude == 0);
}

/// Sums some variables of equal length, up to kMostSummed groups.
void Sum(std::span<ScannedVariable* const> variables) {
  const double* columns[kMostSummed * kGroup];
  double sums[kMostSummed * kGroup];
  const std::size_t groups = (variables.size() + kGroup - 1) / kGroup;
  for (std::size_t c = 0; c < kMostSummed * kGroup; ++c)
    columns[c] = variables[std::min(c, variables.size() - 1)]->values.data();
  SumColumns(columns, groups, variables[0]->values.size(), sums);
  for (std::size_t c = 0; c < variables.size(); ++c) variables[c]->sum = sums[c];
}

void SumAll(std::span<ScannedVariable* const> variables) {
  const std::size_t groups = (variables.size() + kGroup - 1) / kGroup;
  const std::size_t parts =
      std::max((groups + kMostSummed - 1) / kMostSummed, std::min(groups, ParallelThreads()));
  ParallelCompute(parts, [&](std::size_t part) {
    const std::size_t first = groups * part / parts * kGroup;
    const std::size_t end = std::min(groups * (part + 1) / parts * kGroup, variables.size());
    Sum(variables.subspan(first, end - first));
  });
}

void ScanValues(ScannedVariable& variable) {
  for (std::size_t i = 0; i < variable.values.size(); ++i) {
    const double value = variable.values[i];
    if (value == kMissingValue) continue;
    variable.present[i / 64] |= std::uint64_t{1} << (i % 64);
    if (IsModerate(value)) continue;
    variable.is_moderate = false;
    if (variable.first_error == ScannedVariable::kNoError && ErrorCodeOf(value))
      variable.first_error = i;
  }
}

bool AllPresent(const ScannedVariable& variable, std::size_t observations) {
  const auto missing = [&](std::size_t i) { return !IsSet(variable.present, i); };
  for (std::size_t i = 0; i < observations; ++i) {
    if (missing(i)) return false;
  }
  return true;
}

std::optional<std::int32_t> ErrorAt(const ScannedVariable& variable, std::size_t row) {
  return ErrorCodeOf(variable.values[row]);
}

}  // namespace

std::vector<ScannedVariable> Scan(std::span<const VariableColumn> variables, Looked looked) {
  std::vector<ScannedVariable> scanned(variables.size());
  std::size_t longest = 0;
  for (const VariableColumn values : variables) longest = std::max(longest, values.size());
  std::vector<ScannedVariable*> summed;
  for (std::size_t c = 0; c < variables.size(); ++c) {
    scanned[c].values = variables[c];
    if (variables[c].size() == longest) summed.push_back(&scanned[c]);
  }
  SumAll(summed);

  std::vector<ScannedVariable*> looked_at;
  for (ScannedVariable& variable : scanned) {
    const bool is_usual = std::abs(variable.sum) < kModerateLimit;
    if (looked == Looked::kWhereSumsAreUnusual && is_usual && variable.values.size() == longest)
      continue;
    variable.present.assign(longest / 64 + 1, 0);
    looked_at.push_back(&variable);
  }
  ParallelCompute(looked_at.size(), [&](std::size_t c) {
    ScanValues(*looked_at[c]);
    if (AllPresent(*looked_at[c], longest)) ObservationBits().swap(looked_at[c]->present);
  });
  return scanned;
}

std::optional<std::int32_t> FirstErrorByPair(std::span<const ScannedVariable> variables) {
  for (std::size_t j = 0; j < variables.size(); ++j) {
    for (std::size_t i = 0; i <= j; ++i) {
      const ScannedVariable& x = variables[i];
      const ScannedVariable& y = variables[j];
      const ScannedVariable& first = x.first_error < y.first_error ? x : y;
      if (first.first_error < std::min(x.values.size(), y.values.size()))
        return ErrorAt(first, first.first_error);
    }
  }
  return std::nullopt;
}

std::optional<std::int32_t> FirstErrorByRow(std::span<const ScannedVariable> variables) {
  if (variables.empty()) return std::nullopt;
  const auto first = std::min_element(variables.begin(), variables.end(),
                                      [](const ScannedVariable& a, const ScannedVariable& b) {
                                        return a.first_error < b.first_error;
                                      });
  if (first->first_error >= variables[0].values.size()) return std::nullopt;
  return ErrorAt(*first, first->first_error);
}

}  // namespace zavrel
