#include "functions/association_matrix.h"

#include <utility>
#include <vector>

#include "numbers/error_double.h"

namespace zavrel {

DoubleMatrix AssociationMatrix(bool is_correlation, bool use_ranks, bool sample_divisor,
                               bool listwise_deletion, const DoubleMatrix& variables) {
  const std::vector<VariableColumn> columns(variables.begin(), variables.end());
  AssociationResult result = CalculateAssociationMatrix(is_correlation, use_ranks, sample_divisor,
                                                        listwise_deletion, columns);
  if (!result.error) return std::move(result.matrix);
  return DoubleMatrix(columns.size(),
                      std::vector<double>(columns.size(), ErrorCodedNaN(*result.error)));
}

}  // namespace zavrel
