#pragma once

#include "matrix/association.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// The association matrix of variables, one in each row. A cell error among the values fills all of
/// it with its code.
DoubleMatrix AssociationMatrix(const AssociationOptions& options, const DoubleMatrix& variables);

/// The options as other programs give them.
AssociationOptions OptionsOf(Measure measure, bool use_ranks, bool sample_divisor,
                             bool listwise_deletion);

}  // namespace zavrel
