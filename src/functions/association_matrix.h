#pragma once

#include "matrix/association.h"
#include "numbers/double_matrix.h"

namespace zavrel {

/// The association matrix of variables, one in each row. If a value carries a cell error, every
/// entry is that error's code.
DoubleMatrix AssociationMatrix(const AssociationOptions& options, const DoubleMatrix& variables);

/// The options as other programs pass them.
AssociationOptions OptionsOf(Measure measure, bool use_ranks, bool sample_divisor,
                             bool listwise_deletion);

}  // namespace zavrel
