#include "numbers/error_double.h"

#include <algorithm>
#include <iterator>

namespace zavrel {
namespace {

// Excel's codes of #NULL!, #DIV/0!, #VALUE!, #REF!, #NAME?, #NUM!, #N/A, #GETTING_DATA, #SPILL!,
// #UNKNOWN!, #FIELD!, #CALC!, #CONNECT!, #BLOCKED!. The not-a-number contains the index of the code
// in this list, in which 48 to 50 come before 46 and 47.
constexpr std::int32_t kErrorCodes[] = {0, 7, 15, 23, 29, 36, 42, 43, 45, 48, 49, 50, 46, 47};
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

}  // namespace zavrel
