#pragma once
// Dates as some writers store them in cells, and Excel's serial numbers.

#include <optional>
#include <string_view>

namespace zavhost {

/// The serial number of "2024-03-05", "2024-03-05T10:30:00.5Z" or "10:30:00"; nothing for other
/// texts and for dates before the first serial number. A time zone is left out of account, as in
/// Excel. In the 1900 system serial 60 is the day that never was, 29 February 1900.
std::optional<double> SerialFromIsoDate(std::string_view text, bool date1904);

}  // namespace zavhost
