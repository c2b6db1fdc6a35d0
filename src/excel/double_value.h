#pragma once

#include "excel/xxloper.h"

namespace zavrel {

/// The value that Excel gets for a computed double: the number, or what its code stands for
/// (numbers/error_double.h). An infinity gives #NUM!, a NaN without a code #VALUE!, the condition
/// -8 (blank) an empty value.
XXloper ToExcelValue(double value);

}  // namespace zavrel
