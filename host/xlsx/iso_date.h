#pragma once
// Converts dates, as some writers store them in cells, to Excel's serial numbers.

#include <optional>
#include <string_view>

namespace zavhost {

/// The serial number of "2024-03-05", "2024-03-05T10:30:00.5Z" or "10:30:00"; nothing for other
/// text and for dates before the first serial number. Time zones are ignored, as in Excel. In the
/// 1900 system, serial number 60 is the nonexistent day 29 February 1900.
std::optional<double> SerialFromIsoDate(std::string_view text, bool date1904);

}  // namespace zavhost
