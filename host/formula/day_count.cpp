#include "host/formula/day_count.h"

#include <algorithm>

namespace zavhost {
namespace {

int Days360(const Date& start, int start_day, const Date& end, int end_day) {
  return (end.year - start.year) * 360 + (end.month - start.month) * 30 + end_day - start_day;
}

bool IsEndOfFebruary(const Date& date) {
  return date.month == 2 && date.day == DaysInMonth(date.year, 2);
}

/// The average length of the years that a period touches; of one year at most, 366 if there is a
/// 29 February in it or if it lies in a leap year.
double YearLength(int start, int end) {
  const Date from = DateOf(start);
  const Date to = DateOf(end);
  if (from.year == to.year) return IsLeapYear(from.year) ? 366.0 : 365.0;
  const bool is_within_year =
      to.year == from.year + 1 &&
      (to.month < from.month || (to.month == from.month && to.day <= from.day));
  if (is_within_year) {
    const auto is_inside = [&](int year) {
      const int leap_day = DayOf({year, 2, 29});
      return IsLeapYear(year) && start <= leap_day && leap_day <= end;
    };
    return is_inside(from.year) || is_inside(to.year) ? 366.0 : 365.0;
  }
  const int days = DayOf({to.year + 1, 1, 1}) - DayOf({from.year, 1, 1});
  return static_cast<double>(days) / (to.year - from.year + 1);
}

}  // namespace

int EuropeanDays360(const Date& start, const Date& end) {
  return Days360(start, std::min(start.day, 30), end, std::min(end.day, 30));
}

int AmericanDays360(const Date& start, const Date& end) {
  const int start_day = IsEndOfFebruary(start) ? 30 : std::min(start.day, 30);
  const int end_day = end.day == 31 && start_day == 30 ? 30 : end.day;
  return Days360(start, start_day, end, end_day);
}

int AmericanSecuritiesDays360(Date start, Date end) {
  if (IsEndOfFebruary(start)) {
    if (IsEndOfFebruary(end)) end.day = 30;
    start.day = 30;
  }
  start.day = std::min(start.day, 30);
  if (start.day == 30) end.day = std::min(end.day, 30);
  return Days360(start, start.day, end, end.day);
}

double YearFraction(int start, int end, int basis) {
  switch (basis) {
    case 0:
      return AmericanSecuritiesDays360(DateOf(start), DateOf(end)) / 360.0;
    case 1:
      return (end - start) / YearLength(start, end);
    case 2:
      return (end - start) / 360.0;
    case 3:
      return (end - start) / 365.0;
    default:
      return EuropeanDays360(DateOf(start), DateOf(end)) / 360.0;
  }
}

}  // namespace zavhost
