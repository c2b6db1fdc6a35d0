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
#include "functions/variables.h"
#include "matrix/eigendata.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// The block's rows, or the call's result instead of them.
struct Block {
  DoubleMatrix rows{};
  std::optional<XXloper> failure{};
};

Block ReadBlock(const XLOPER12* argument) {
  const DataArgument read = ReadDataArgument(std::array{argument});
  if (read.outcome == ReadOutcome::kUncalculated) return {{}, XXloper::Error(ExcelError::kRef)};
  if (read.outcome != ReadOutcome::kRead) return {{}, XXloper::Error(ExcelError::kNA)};
  constexpr MissingDataPolicy kPolicy = MissingDataPolicy::kNumbersRequired;
  const XXloper& acceptance = read.data->Acceptance(kPolicy, true);
  if (acceptance.type() != xltypeNil) return {{}, acceptance};
  const std::span<const double> numbers = read.data->Numbers(kPolicy);
  if (numbers.empty()) return {{}, XXloper::Error(ExcelError::kValue)};
  const auto columns = BlockColumns(*argument, *read.data);
  if (!columns || numbers.size() % *columns != 0) return {{}, XXloper::Error(ExcelError::kValue)};
  Block block;
  for (std::size_t at = 0; at < numbers.size(); at += *columns) {
    const std::span<const double> row = numbers.subspan(at, *columns);
    block.rows.emplace_back(row.begin(), row.end());
  }
  return block;
}

template <class Use>
XXloper OfBlock(const XLOPER12* argument, Use use) {
  const Block block = ReadBlock(argument);
  return block.failure ? *block.failure : MatrixForCaller(use(block.rows));
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

/// The eigenvalues, largest first, one below the other.
ZAV_EXPORT XLOPER12* ZavrelEigenvalues(const XLOPER12* matrix) {
  return WorksheetFunction("ZavrelEigenvalues", [&] {
    return OfBlock(matrix, [](const DoubleMatrix& rows) {
      DoubleMatrix column;
      for (const double value : Analyse(rows, false).values) column.push_back({value});
      return column;
    });
  });
}

/// The eigenvectors: column j is the unit vector of the j-th largest eigenvalue.
ZAV_EXPORT XLOPER12* ZavrelEigenvectors(const XLOPER12* matrix) {
  return WorksheetFunction("ZavrelEigenvectors", [&] {
    return OfBlock(matrix, [](const DoubleMatrix& rows) { return Analyse(rows, true).vectors; });
  });
}

/// Both: the eigenvalues in the first column, the eigenvectors in those after it.
ZAV_EXPORT XLOPER12* ZavrelEigendata(const XLOPER12* matrix) {
  return WorksheetFunction("ZavrelEigendata", [&] {
    return OfBlock(matrix, [](const DoubleMatrix& rows) {
      Eigendata data = Analyse(rows, true);
      for (std::size_t i = 0; i < data.values.size(); ++i)
        data.vectors[i].insert(data.vectors[i].begin(), data.values[i]);
      return std::move(data.vectors);
    });
  });
}

/// The scores of each observation, a row of the data, on the principal axes of the data as they
/// are: neither centred nor scaled.
ZAV_EXPORT XLOPER12* ZavrelPCAScores(const XLOPER12* data) {
  return WorksheetFunction("ZavrelPCAScores", [&] {
    return OfBlock(data,
                   [](const DoubleMatrix& rows) { return matrix::PrincipalComponentScores(rows); });
  });
}

}  // namespace zavrel
