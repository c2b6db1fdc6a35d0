#include "functions/association_matrix.h"

#include <utility>
#include <vector>

#include "numbers/error_double.h"

namespace zavrel {

DoubleMatrix AssociationMatrix(const AssociationOptions& options, const DoubleMatrix& variables) {
  const std::vector<VariableColumn> columns(variables.begin(), variables.end());
  AssociationResult result = CalculateAssociationMatrix(options, columns);
  if (!result.error) return std::move(result.matrix);
  return DoubleMatrix(columns.size(),
                      std::vector<double>(columns.size(), ErrorCodedNaN(*result.error)));
}

AssociationOptions OptionsOf(Measure measure, bool use_ranks, bool sample_divisor,
                             bool listwise_deletion) {
  return {.pair = {measure, sample_divisor ? Form::kSample : Form::kPopulation},
          .use_ranks = use_ranks,
          .listwise_deletion = listwise_deletion};
}

}  // namespace zavrel
