#include "excel/double_value.h"

#include <cmath>

#include "numbers/error_double.h"

namespace zavrel {

XXloper ToExcelValue(double value) {
  if (std::isfinite(value)) return XXloper::Number(value);
  if (std::isinf(value)) return XXloper::Error(ExcelError::kNum);
  if (const auto code = ErrorCodeOf(value)) return XXloper::ErrorByCode(*code);
  if (HasCondition(value, kConditionBlank)) return XXloper::Nil();
  if (HasCondition(value, kConditionNoData)) return XXloper::Error(ExcelError::kNA);
  if (HasCondition(value, kConditionNotFinite)) return XXloper::Error(ExcelError::kNum);
  if (HasCondition(value, kConditionTooFew)) return XXloper::Error(ExcelError::kDiv0);
  return XXloper::Error(ExcelError::kValue);
}

}  // namespace zavrel
