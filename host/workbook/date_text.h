#pragma once
// Dates and times that users write into cells.

#include <optional>
#include <string_view>

namespace zavhost {

struct DateAndTime {
  std::optional<int> day;      // by the calendar (calendar.h)
  std::optional<double> time;  // in days
};

/// A date, a time or both as US English spells them: "2024-03-05", "3/5/2024", "5-Mar-24",
/// "March 5, 2024", "Mar 2024" (its first day), "3/5" and "5 Mar" (of `current_year`), "10:30",
/// "27:30:15.5", "30:15.5" (minutes and seconds), "10 PM". Months can be cut after three letters.
/// Years of two digits are from 1930 to 2029. Nothing for other text.
std::optional<DateAndTime> DateAndTimeFromText(std::u16string_view text, int current_year);

}  // namespace zavhost
