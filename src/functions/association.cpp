// Covariances and correlations: ZavCovariance, ZavCovarianceP, ZavCorrelationCoeff,
// ZavCovarianceMatrix, ZavCorrelationMatrix.
//
// Blank, text and boolean cells are gaps; an error cell among the rows that are looked at is the
// result of the whole call.
#include <array>
#include <cmath>
#include <utility>

#include "data/cell_layout.h"
#include "data/get_parameters.h"
#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/matrix_result.h"
#include "functions/variables.h"
#include "matrix/association.h"
#include "platform/export.h"

namespace zavrel {
namespace {

enum class Measure : bool { kCovariance, kCorrelation };
enum class Divisor : bool { kPopulation, kSample };

/// A number that was left out counts as 0.
double OptionOf(const Parameters& parameters, std::size_t position) {
  return parameters.given(position) ? parameters.number(position) : 0;
}

/// The measure of two data sets, each of them one variable whatever its shape; `kinds`: RR and then
/// an optional number for the ranks.
XXloper OfTwo(Measure measure, Divisor divisor, std::string_view kinds,
              std::span<const XLOPER12* const> arguments) {
  for (const XLOPER12* variable : arguments.first(2)) {
    if (XXloper::FromArgument(variable).IsMissing()) return XXloper::Error(ExcelError::kNA);
  }
  const Parameters parameters =
      GetParameters(kinds, MissingDataPolicy::kPositionalWithErrors, arguments);
  if (!parameters.accepted()) return parameters.failure();
  const VariableColumn columns[] = {parameters.numbers(0), parameters.numbers(1)};
  if (!CanPairShorter(parameters.data(0).layout(), columns[0].size(), parameters.data(1).layout(),
                      columns[1].size())) {
    return XXloper::Error(ExcelError::kValue);
  }
  const bool use_ranks = kinds.size() > 2 && std::floor(OptionOf(parameters, 2)) != 0;
  const AssociationResult result = CalculateAssociationMatrix(
      measure == Measure::kCorrelation, use_ranks, divisor == Divisor::kSample, false, columns);
  return result.error ? XXloper::ErrorByCode(*result.error) : ToExcelValue(result.matrix[0][1]);
}

/// The matrix of up to 27 data sets, after three numbers: ranks, sample divisor, listwise deletion.
/// Always all of it, never cut to the calling range: eigen-analysis takes it as its argument.
XXloper MatrixOf(Measure measure, std::span<const XLOPER12* const> arguments) {
  const Parameters options =
      GetParameters("ddd", MissingDataPolicy::kPositionalWithErrors, arguments.first(3));
  if (!options.accepted()) return options.failure();
  Variables variables;
  for (const XLOPER12* argument : arguments.subspan(3)) {
    if (!variables.Add(argument)) return variables.failure();
  }
  if (variables.columns().empty()) return XXloper::Error(ExcelError::kNA);
  const AssociationResult result = CalculateAssociationMatrix(
      measure == Measure::kCorrelation, OptionOf(options, 0) != 0, OptionOf(options, 1) != 0,
      OptionOf(options, 2) != 0, variables.columns());
  return result.error ? XXloper::ErrorByCode(*result.error) : WholeMatrix(result.matrix);
}

}  // namespace

/// The sample covariance of two variables, paired as far as both have values. Fewer than two
/// complete pairs, or a variable left out: #N/A.
ZAV_EXPORT XLOPER12* ZavrelCovariance(const XLOPER12* x, const XLOPER12* y) {
  return WorksheetFunction("ZavrelCovariance", [&] {
    return OfTwo(Measure::kCovariance, Divisor::kSample, "RR", std::array{x, y});
  });
}

/// The population covariance. No complete pair: #N/A.
ZAV_EXPORT XLOPER12* ZavrelCovarianceP(const XLOPER12* x, const XLOPER12* y) {
  return WorksheetFunction("ZavrelCovarianceP", [&] {
    return OfTwo(Measure::kCovariance, Divisor::kPopulation, "RR", std::array{x, y});
  });
}

/// Pearson's coefficient; Spearman's when the whole part of `ranks` is not 0. A variable without
/// spread: #DIV/0!; no complete pair: #N/A.
ZAV_EXPORT XLOPER12* ZavrelCorrelationCoeff(const XLOPER12* x, const XLOPER12* y,
                                            const XLOPER12* ranks) {
  return WorksheetFunction("ZavrelCorrelationCoeff", [&] {
    return OfTwo(Measure::kCorrelation, Divisor::kPopulation, "RRd", std::array{x, y, ranks});
  });
}

#define ZAV_ASSOCIATION_MATRIX(name, measure)                                                   \
  ZAV_EXPORT XLOPER12* name(ZAV_THIRTY_PARAMETERS) {                                            \
    return WorksheetFunction(#name,                                                             \
                             [&] { return MatrixOf(Measure::measure, ZAV_THIRTY_ARGUMENTS); }); \
  }

// A matrix with a row and a column for each variable. No variable at all: #N/A.
ZAV_ASSOCIATION_MATRIX(ZavrelCovarianceMatrix, kCovariance)
ZAV_ASSOCIATION_MATRIX(ZavrelCorrelationMatrix, kCorrelation)

}  // namespace zavrel
