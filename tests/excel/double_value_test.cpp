#include "excel/double_value.h"

#include <doctest/doctest.h>

#include <limits>
#include <utility>

#include "numbers/error_double.h"

using namespace zavrel;

namespace {

using Limits = std::numeric_limits<double>;

/// The error code of the converted value; -1 when it is no error.
std::int32_t ErrorOf(double value) {
  const XXloper converted = ToExcelValue(value);
  return converted.Is(xltypeErr) ? converted.record().val.err : -1;
}

}  // namespace

TEST_CASE("Excel's 14 errors go into not-a-numbers and come back") {
  std::uint64_t index = 0;
  for (const std::int32_t code : {0, 7, 15, 23, 29, 36, 42, 43, 45, 48, 49, 50, 46, 47}) {
    const double coded = ErrorCodedNaN(code);
    CHECK(std::bit_cast<std::uint64_t>(coded) == (0x7FF8000000000000u | index++ << 32));
    CHECK(ErrorCodeOf(coded) == code);
    CHECK(ErrorOf(coded) == code);
  }
  const double unlisted = ErrorCodedNaN(44);
  CHECK(std::bit_cast<std::uint64_t>(unlisted) == 0x7FF8000E00000000u);
  CHECK_FALSE(ErrorCodeOf(unlisted));
  CHECK(ErrorOf(unlisted) == xlerrValue);
}

TEST_CASE("Conditions, infinities and every other not-a-number become what they stand for") {
  CHECK(ToExcelValue(ConditionDouble(-8)).type() == xltypeNil);
  for (const auto& [value, code] : {std::pair{ConditionDouble(-9), xlerrNA},
                                    {ConditionDouble(-14), xlerrNum},
                                    {ConditionDouble(-15), xlerrDiv0},
                                    {ConditionDouble(-16), xlerrValue},
                                    {ConditionDouble(-1), xlerrValue},
                                    {Limits::infinity(), xlerrNum},
                                    {-Limits::infinity(), xlerrNum}})
    CHECK(ErrorOf(value) == code);
  for (const std::uint64_t bits :
       {0x7FF0000000000001u,  // signalling
        0x7FF8000000000001u,  // a listed high word with something in the low one
        0x7FF8000100000001u, 0xFFF8000000000000u, 0xFFF8000100000000u, 0x7FF8001000000000u})
    CHECK(ErrorOf(std::bit_cast<double>(bits)) == xlerrValue);
  for (const double number : {0.0, -1.5, Limits::max(), Limits::denorm_min(), kMissingValue}) {
    const XXloper value = ToExcelValue(number);
    CHECK((value.type() == xltypeNum && value.record().val.num == number));
    CHECK_FALSE(ErrorCodeOf(number));
  }
}
