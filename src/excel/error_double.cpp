#include "excel/error_double.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace zavrel {
namespace {

// A code's index here stands in the not-a-number; 48 to 50 come before 46 and 47.
constexpr std::int32_t kErrorCodes[] = {
    xlerrNull,        xlerrDiv0,  xlerrValue,   xlerrRef,   xlerrName, xlerrNum,     xlerrNA,
    xlerrGettingData, xlerrSpill, xlerrUnknown, xlerrField, xlerrCalc, xlerrConnect, xlerrBlocked};
static_assert(std::size(kErrorCodes) == 14);

constexpr std::uint64_t kQuietNaN = 0x7FF8000000000000u;
constexpr int kIndexShift = 32;

}  // namespace

double ErrorCodedNaN(std::int32_t error_code) {
  const auto* found = std::find(std::begin(kErrorCodes), std::end(kErrorCodes), error_code);
  const auto index = static_cast<std::uint64_t>(found - std::begin(kErrorCodes));
  return std::bit_cast<double>(kQuietNaN | index << kIndexShift);
}

std::optional<std::int32_t> ErrorCodeOf(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t index = (bits ^ kQuietNaN) >> kIndexShift;
  const bool low_word_clear = (bits & 0xFFFFFFFFu) == 0;
  if (!low_word_clear || index >= std::size(kErrorCodes)) return std::nullopt;
  return kErrorCodes[index];
}

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
