#include "matrix/scanned_variable.h"

#include <algorithm>
#include <cmath>

#include "matrix/association_kernels.h"
#include "matrix/matrix_parallel.h"
#include "numbers/error_double.h"

namespace zavrel {
namespace {

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
  const VariableColumn values = variable.values;
  variable.is_moderate =
      MarkPresent(values.data(), values.size(), kMissingValue, variable.present.data());
  if (variable.is_moderate) return;
  const auto error = std::find_if(values.begin(), values.end(),
                                  [](double value) { return ErrorCodeOf(value).has_value(); });
  if (error != values.end())
    variable.first_error = static_cast<std::size_t>(error - values.begin());
}

bool AllPresent(const ScannedVariable& variable, std::size_t observations) {
  const auto whole = static_cast<std::ptrdiff_t>(observations / 64);
  const auto end = variable.present.begin() + whole;
  return std::all_of(variable.present.begin(), end, [](std::uint64_t w) { return ~w == 0; }) &&
         *end == (std::uint64_t{1} << (observations % 64)) - 1;
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
