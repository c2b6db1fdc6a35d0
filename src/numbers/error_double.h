#pragma once
// Doubles that stand for something other than a number: the marker of a missing value, the
// library's own conditions and Excel's errors.

#include <bit>
#include <cstdint>
#include <optional>

namespace zavrel {

/// Marks a cell without a number in a positional list of numbers. Compared for exact equality.
inline constexpr double kMissingValue = 1.01e300;
static_assert(std::bit_cast<std::uint64_t>(kMissingValue) == 0x7E38216618B8C8B4ull);

/// A double that encodes one of the library's own conditions as the bit pattern of a small negative
/// integer.
constexpr double ConditionDouble(std::int64_t condition) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(condition));
}
inline constexpr std::int64_t kConditionBlank = -8;        // an empty result
inline constexpr std::int64_t kConditionNoData = -9;       // #N/A
inline constexpr std::int64_t kConditionNotFinite = -14;   // #NUM!
inline constexpr std::int64_t kConditionTooFew = -15;      // #DIV/0!: too few values or zero spread
inline constexpr std::int64_t kConditionExcluded = -16;    // input side: skipped and counted
inline constexpr std::int64_t kConditionNotComputed = -1;  // all bits set: #VALUE!

/// The not-a-number that encodes an Excel error code by its index in a fixed list of 14. A code
/// outside the list gets index 14, which converts back to #VALUE! like any unlisted not-a-number.
/// Index 0 is #NULL!, and its pattern is the quiet NaN of std::numeric_limits; a computation
/// without a result must therefore return a condition, never that constant.
double ErrorCodedNaN(std::int32_t error_code);
/// The Excel error code that such a not-a-number encodes; nothing for any other double.
std::optional<std::int32_t> ErrorCodeOf(double value);
/// True if the double has exactly the bits of this condition.
constexpr bool HasCondition(double value, std::int64_t condition) {
  return std::bit_cast<std::uint64_t>(value) == static_cast<std::uint64_t>(condition);
}

}  // namespace zavrel
