// Dates and times in formats.

#include <algorithm>
#include <cmath>

#include "host/workbook/calendar.h"
#include "host/workbook/month_names.h"
#include "host/workbook/number_format.h"

namespace zavhost {
namespace {

using Kind = FormatTokenKind;

std::u16string Padded(std::int64_t number, int width) {
  const std::string digits = std::to_string(number);
  const std::size_t missing =
      static_cast<std::size_t>(std::max(0, width - static_cast<int>(digits.size())));
  std::u16string shown(missing, u'0');
  return shown.append(digits.begin(), digits.end());
}

/// "3", "03", "Mar", "March" or, of months only, "M".
std::u16string Month(int month, int letters) {
  const std::u16string_view name = MonthName(month);
  if (letters <= 2) return Padded(month, letters);
  return std::u16string(letters == 3 ? name.substr(0, 3) : letters == 5 ? name.substr(0, 1) : name);
}

std::u16string Day(const Date& date, int weekday, int letters) {
  if (letters <= 2) return Padded(date.day, letters);
  const std::u16string_view name = WeekdayName(weekday);
  return std::u16string(letters == 3 ? name.substr(0, 3) : name);
}

std::u16string Year(int year, int letters) {
  return letters <= 2 ? Padded(year % 100, 2) : Padded(year, 4);
}

/// The values from which the parts of a date are written.
struct DateParts {
  Moment moment;
  Date date;
  std::int64_t elapsed_seconds;  // since the serial number 0
  bool has_halves;               // of the day

  std::u16string Hours(int letters) const {
    const int hours = has_halves ? (moment.hours + 11) % 12 + 1 : moment.hours;
    return Padded(hours, std::min(letters, 2));
  }

  std::u16string Write(const FormatToken& token) const {
    switch (token.kind) {
      case Kind::kYear:
        return Year(date.year, token.count);
      case Kind::kBuddhistYear:
        return Year(date.year + 543, token.count);
      case Kind::kMonth:
        return Month(date.month, token.count);
      case Kind::kDay:
        return Day(date, WeekdayOf(moment.day), token.count);
      case Kind::kHour:
        return Hours(token.count);
      case Kind::kMinute:
        return Padded(moment.minutes, std::min(token.count, 2));
      case Kind::kSecond:
        return Padded(moment.seconds, std::min(token.count, 2));
      case Kind::kSecondFraction:
        return u"." + Padded(moment.fraction, token.count);
      case Kind::kElapsedHours:
        return Padded(elapsed_seconds / 3600, token.count);
      case Kind::kElapsedMinutes:
        return Padded(elapsed_seconds / 60, token.count);
      case Kind::kElapsedSeconds:
        return Padded(elapsed_seconds, token.count);
      case Kind::kHalfOfDay: {
        const std::size_t length = token.text.size() / 2;
        return token.text.substr(moment.hours < 12 ? 0 : length, length);
      }
      default:
        return token.text;
    }
  }
};

bool IsTime(Kind kind) { return kind >= Kind::kHour; }

}  // namespace

std::optional<std::u16string> FormattedDate(double serial, const FormatSection& section,
                                            bool date1904) {
  const int first = FirstDay(date1904);
  if (!(serial >= 0.0 && serial < kLastDay + 1 - first)) return std::nullopt;
  int decimals = 0;
  bool has_time = false;
  bool has_halves = false;
  for (const FormatToken& token : section.tokens) {
    has_time = has_time || IsTime(token.kind);
    has_halves = has_halves || token.kind == Kind::kHalfOfDay;
    if (token.kind == Kind::kSecondFraction) decimals = std::max(decimals, token.count);
  }
  Moment moment = MomentOf(has_time ? serial : std::floor(serial), decimals);
  const int seconds = (moment.hours * 60 + moment.minutes) * 60 + moment.seconds;
  const std::int64_t elapsed = moment.day * std::int64_t{86'400} + seconds;
  moment.day += first;
  if (moment.day > kLastDay) return std::nullopt;
  const DateParts parts{moment, DateOf(moment.day), elapsed, has_halves};
  std::u16string shown;
  for (const FormatToken& token : section.tokens) shown += parts.Write(token);
  return shown;
}

}  // namespace zavhost
