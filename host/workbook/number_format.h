#pragma once
// Number formats: the texts that cells show for their values.

#include <optional>
#include <string>
#include <string_view>

#include "host/workbook/number_format_code.h"
#include "host/workbook/value.h"

namespace zavhost {

/// A number or text as a cell with this format code shows it, in US English; booleans show TRUE or
/// FALSE and blanks are 0. Colours, languages and filling characters have no effect, and
/// "_x" is a blank. Nothing for a wrong code, for an error, and for a number that is no date in a
/// date format.
std::optional<std::u16string> FormattedText(const Value& value, std::u16string_view code,
                                            bool date1904);

/// The parts of that: a number from 0 up without dates, and a serial number with dates.
std::optional<std::u16string> FormattedNumber(double magnitude, const FormatSection& section);
std::optional<std::u16string> FormattedDate(double serial, const FormatSection& section,
                                            bool date1904);

}  // namespace zavhost
