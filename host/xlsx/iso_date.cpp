#include "host/xlsx/iso_date.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "host/workbook/calendar.h"

namespace zavhost {
namespace {

/// Whether a text has the form of another one: any digit for a 0, and the other characters.
bool HasForm(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char wanted) {
    return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
  });
}

/// The number in the digits at a position of the text.
int NumberAt(std::string_view text, std::size_t place, std::size_t length) {
  int number = 0;
  std::from_chars(text.data() + place, text.data() + place + length, number);
  return number;
}

std::optional<double> DaySerial(std::string_view text, bool date1904) {
  if (!HasForm(text, "0000-00-00")) return std::nullopt;
  // A time of day can be stored as one on day 0, the last of 1899.
  const std::optional<int> day =
      text == "1899-12-31"
          ? std::optional(0)
          : ExistingDayOf({NumberAt(text, 0, 4), NumberAt(text, 5, 2), NumberAt(text, 8, 2)});
  if (!day || *day < FirstDay(date1904)) return std::nullopt;
  return *day - FirstDay(date1904);
}

/// A time of day as a fraction of a day: "10:30", "10:30:00", "10:30:00.25".
std::optional<double> DayFraction(std::string_view text) {
  const bool has_seconds = HasForm(text.substr(0, 8), "00:00:00");
  if (!has_seconds && !HasForm(text, "00:00")) return std::nullopt;
  const int hours = NumberAt(text, 0, 2), minutes = NumberAt(text, 3, 2);
  const char* end = text.data() + text.size();
  const char* stop = end;
  double seconds = 0.0;
  if (has_seconds)
    stop = std::from_chars(text.data() + 6, end, seconds, std::chars_format::fixed).ptr;
  if (stop != end || hours > 24 || minutes > 59 || seconds >= 61.0) return std::nullopt;
  return (hours * 3600.0 + minutes * 60.0 + seconds) / 86400.0;
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
  return fraction ? std::optional(*days + *fraction) : std::nullopt;
}

}  // namespace zavhost
