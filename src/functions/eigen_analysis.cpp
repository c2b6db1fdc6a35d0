// Eigen-analysis and principal components: ZavEigenvalues, ZavEigenvectors, ZavEigendata,
// ZavPCAScores.
//
// The argument is a block of numbers, one area or an array. A blank, text or boolean cell: #VALUE!;
// an error cell: that error; cells that cannot be read, a matrix that is not square, not exactly
// symmetric or not solvable: #N/A. Results fill the calling range (functions/matrix_result.h).
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "data/data_argument.h"
#include "frame/worksheet_function.h"
#include "functions/matrix_result.h"
#include "matrix/eigendata.h"
#include "platform/export.h"

namespace zavrel {
namespace {

OrFailure<DoubleMatrix> ReadBlock(const XLOPER12* argument) {
  const DataArgument data = ReadDataArgument(std::array{argument});
  if (!data.ok()) return data.failure().uncalculated() ? data.failure() : Failure(ExcelError::kNA);
  constexpr MissingDataPolicy kPolicy = MissingDataPolicy::kNumbersRequired;
  const XXloper& acceptance = (*data)->Acceptance(kPolicy, true);
  if (acceptance.type() != xltypeNil) return Failure(acceptance);
  const std::span<const double> numbers = (*data)->Numbers(kPolicy);
  const std::optional<CellBlock> block = (*data)->block();
  if (numbers.empty() || !block) return Failure(ExcelError::kValue);
  DoubleMatrix rows;
  for (std::size_t at = 0; at < numbers.size(); at += block->columns) {
    const std::span<const double> row = numbers.subspan(at, block->columns);
    rows.emplace_back(row.begin(), row.end());
  }
  return rows;
}

/// A worksheet function that shows, over the calling range, the matrix that `use` makes from the
/// block.
template <class Use>
XLOPER12* OfBlock(const char* name, const XLOPER12* argument, Use use) noexcept {
  return WorksheetFunction(name, [&]() -> CellResult {
    const OrFailure<DoubleMatrix> block = ReadBlock(argument);
    if (!block.ok()) return block.failure();
    return MatrixForCaller(use(*block));
  });
}

struct Eigendata {
  std::vector<double> values;
  DoubleMatrix vectors;
};

Eigendata Analyse(const DoubleMatrix& matrix, bool compute_vectors) {
  Eigendata result;
  matrix::eigendata_private(matrix, result.values, result.vectors,
                            {.compute_vectors = compute_vectors, .descending = true});
  return result;
}

}  // namespace

/// The eigenvalues in a column, largest first.
ZAV_EXPORT XLOPER12* ZavrelEigenvalues(const XLOPER12* matrix) {
  return OfBlock("ZavrelEigenvalues", matrix, [](const DoubleMatrix& rows) {
    DoubleMatrix column;
    for (const double value : Analyse(rows, false).values) column.push_back({value});
    return column;
  });
}

/// The eigenvectors: column j is the unit vector of the j-th largest eigenvalue.
ZAV_EXPORT XLOPER12* ZavrelEigenvectors(const XLOPER12* matrix) {
  return OfBlock("ZavrelEigenvectors", matrix,
                 [](const DoubleMatrix& rows) { return Analyse(rows, true).vectors; });
}

/// Both: the eigenvalues in the first column, the eigenvectors in those after it.
ZAV_EXPORT XLOPER12* ZavrelEigendata(const XLOPER12* matrix) {
  return OfBlock("ZavrelEigendata", matrix, [](const DoubleMatrix& rows) {
    Eigendata data = Analyse(rows, true);
    for (std::size_t i = 0; i < data.values.size(); ++i)
      data.vectors[i].insert(data.vectors[i].begin(), data.values[i]);
    return std::move(data.vectors);
  });
}

/// The scores of the observations (the rows of the data) on the principal axes of the data, which
/// are neither centred nor scaled.
ZAV_EXPORT XLOPER12* ZavrelPCAScores(const XLOPER12* data) {
  return OfBlock("ZavrelPCAScores", data,
                 [](const DoubleMatrix& rows) { return matrix::PrincipalComponentScores(rows); });
}

}  // namespace zavrel
