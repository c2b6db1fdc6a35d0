#pragma once

#include "excel/xxloper.h"

namespace zavrel {

/// The value that Excel gets for a computed double: a number, or what its code stands for
/// (numbers/error_double.h). Infinities give #NUM!, any not-a-number without a code #VALUE!, -8 an
/// empty value.
XXloper ToExcelValue(double value);

}  // namespace zavrel
