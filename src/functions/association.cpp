// Covariances and correlations: ZavCovariance, ZavCovarianceP, ZavCorrelationCoeff,
// ZavCovarianceMatrix, ZavCorrelationMatrix.
//
// Blank, text and boolean cells are gaps. An error cell in the rows that are compared is the result
// of the whole call.
#include <cmath>

#include "excel/double_value.h"
#include "frame/worksheet_function.h"
#include "functions/matrix_result.h"
#include "functions/variables.h"
#include "matrix/association.h"
#include "platform/export.h"

namespace zavrel {
namespace {

constexpr Reading kTwoVariables = Reading("RR", MissingDataPolicy::kPositionalWithErrors).Paired();
constexpr Reading kTwoVariablesAndFlag =
    Reading("RRd", MissingDataPolicy::kPositionalWithErrors).Paired();

/// The reading itself if both variables are given; otherwise the call is #N/A, and nothing is read.
Reading IfGiven(const Reading& reading, const XLOPER12* x, const XLOPER12* y) {
  return reading.OnlyIf(!IsOmitted(x) && !IsOmitted(y), ExcelError::kNA);
}

/// The matrix entry for two data sets, each one variable whatever its shape.
CellResult EntryOfTwo(const Parameters& read, const AssociationOptions& options) {
  const VariableColumn columns[] = {read.numbers(0), read.numbers(1)};
  const AssociationResult result = CalculateAssociationMatrix(options, columns);
  if (result.error) return Failure::ByCode(*result.error);
  return result.matrix[0][1];
}

/// The matrix of up to 27 data sets, which follow three numbers: ranks, sample divisor and listwise
/// deletion, each 0 if left out. The result is always the whole matrix, not cut to the calling
/// range, because eigen-analysis takes it as its argument.
XLOPER12* MatrixOf(const char* name, Measure measure, Arguments arguments) noexcept {
  return WorksheetFunction(
      name, Reading("ddd"), arguments, [&](const Parameters& read) -> CellResult {
        const OrFailure<Variables> variables = Variables::Of(arguments.subspan(3));
        if (!variables.ok()) return variables.failure();
        if (variables->columns().empty()) return Failure(ExcelError::kNA);
        const Form form = read.number_or(1, 0) != 0 ? Form::kSample : Form::kPopulation;
        const AssociationResult result =
            CalculateAssociationMatrix({.pair = {measure, form},
                                        .use_ranks = read.number_or(0, 0) != 0,
                                        .listwise_deletion = read.number_or(2, 0) != 0},
                                       variables->columns());
        if (result.error) return Failure::ByCode(*result.error);
        return WholeMatrix(result.matrix);
      });
}

}  // namespace

/// The sample covariance of two variables, paired as far as both have values. Fewer than two
/// complete pairs, or a variable left out: #N/A.
ZAV_EXPORT XLOPER12* ZavrelCovariance(const XLOPER12* x, const XLOPER12* y) {
  return WorksheetFunction(
      "ZavrelCovariance", IfGiven(kTwoVariables, x, y), {x, y}, [](const Parameters& read) {
        return EntryOfTwo(read, {.pair = {Measure::kCovariance, Form::kSample}});
      });
}

/// The population covariance. No complete pair: #N/A.
ZAV_EXPORT XLOPER12* ZavrelCovarianceP(const XLOPER12* x, const XLOPER12* y) {
  return WorksheetFunction(
      "ZavrelCovarianceP", IfGiven(kTwoVariables, x, y), {x, y}, [](const Parameters& read) {
        return EntryOfTwo(read, {.pair = {Measure::kCovariance, Form::kPopulation}});
      });
}

/// Pearson's coefficient; Spearman's when `ranks`, rounded down, is not 0. A variable without
/// spread: #DIV/0!; no complete pair: #N/A.
ZAV_EXPORT XLOPER12* ZavrelCorrelationCoeff(const XLOPER12* x, const XLOPER12* y,
                                            const XLOPER12* ranks) {
  return WorksheetFunction("ZavrelCorrelationCoeff", IfGiven(kTwoVariablesAndFlag, x, y),
                           {x, y, ranks}, [](const Parameters& read) {
                             return EntryOfTwo(
                                 read, {.pair = {Measure::kCorrelation, Form::kPopulation},
                                        .use_ranks = std::floor(read.number_or(2, 0)) != 0});
                           });
}

#define ZAV_ASSOCIATION_MATRIX(name, measure)                       \
  ZAV_EXPORT XLOPER12* name(ZAV_THIRTY_PARAMETERS) {                \
    return MatrixOf(#name, Measure::measure, ZAV_THIRTY_ARGUMENTS); \
  }

// A matrix with a row and a column for each variable. No variable at all: #N/A; more than 4,096:
// #VALUE!.
ZAV_ASSOCIATION_MATRIX(ZavrelCovarianceMatrix, kCovariance)
ZAV_ASSOCIATION_MATRIX(ZavrelCorrelationMatrix, kCorrelation)

}  // namespace zavrel
