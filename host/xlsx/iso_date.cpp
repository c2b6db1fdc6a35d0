#include "host/xlsx/iso_date.h"

#include <charconv>
#include <cstddef>
#include <system_error>

#include "host/workbook/calendar.h"

namespace zavhost {
namespace {

/// Exactly `length` digits at a position of the text.
std::optional<int> Digits(std::string_view text, std::size_t place, std::size_t length) {
  if (text.size() < place + length) return std::nullopt;
  int number = 0;
  for (const char c : text.substr(place, length)) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

std::optional<double> DaySerial(std::string_view text, bool date1904) {
  const std::optional<int> y = Digits(text, 0, 4), m = Digits(text, 5, 2), d = Digits(text, 8, 2);
  if (!y || !m || !d || text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  // A time of day can be stored as one on day 0, the last of 1899.
  const std::optional<int> day =
      text == "1899-12-31" ? std::optional(0) : ExistingDayOf({*y, *m, *d});
  if (!day || *day < FirstDay(date1904)) return std::nullopt;
  return *day - FirstDay(date1904);
}

/// A time of day as a fraction of a day: "10:30", "10:30:00", "10:30:00.25".
std::optional<double> DayFraction(std::string_view text) {
  const std::optional<int> hours = Digits(text, 0, 2), minutes = Digits(text, 3, 2);
  if (!hours || !minutes || text[2] != ':' || *hours > 24 || *minutes > 59) return std::nullopt;
  double seconds = 0.0;
  if (text.size() > 5) {
    if (text[5] != ':' || !Digits(text, 6, 2)) return std::nullopt;
    const char* end = text.data() + text.size();
    const auto [stop, error] =
        std::from_chars(text.data() + 6, end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || seconds >= 61.0) return std::nullopt;
  }
  return (*hours * 3600.0 + *minutes * 60.0 + seconds) / 86400.0;
}

}  // namespace

std::optional<double> SerialFromIsoDate(std::string_view text, bool date1904) {
  if (text.ends_with('Z')) text.remove_suffix(1);
  const std::size_t t = text.find('T');
  const bool only_time = t == std::string_view::npos && text.find(':') != std::string_view::npos;
  if (only_time) return DayFraction(text);
  const std::optional<double> days = DaySerial(text.substr(0, t), date1904);
  if (!days || t == std::string_view::npos) return days;
  std::string_view time = text.substr(t + 1);
  time = time.substr(0, time.find_first_of("+-"));
  const std::optional<double> fraction = DayFraction(time);
  if (!fraction) return std::nullopt;
  return *days + *fraction;
}

}  // namespace zavhost
