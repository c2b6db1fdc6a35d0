#pragma once
// The calendar of serial numbers.
//
// Both date systems count the days of the same calendar, in which 29 February 1900 exists. A day's
// number here is its serial number in the 1900 system: 1 is 1 January 1900. A serial number of the
// 1904 system is smaller by kFirstDayOf1904, the number of its day 0.

#include <optional>

namespace zavhost {

struct Date {
  int year;
  int month;
  int day;
};

inline constexpr int kLastDay = 2'958'465;  // 31 December 9999
inline constexpr int kFirstDayOf1904 = 1'462;

/// The number of the day that has serial number 0.
constexpr int FirstDay(bool date1904) { return date1904 ? kFirstDayOf1904 : 0; }

constexpr bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0 || year == 1900);
}
int DaysInMonth(int year, int month);

/// The date of a day. Day 0 is "0 January 1900", as Excel shows it; days before it are in 1899.
Date DateOf(int day);
/// The number of a date's day. Months and days beyond their range count on: month 13 is the next
/// January, day 0 the last of the month before.
int DayOf(const Date& date);
/// The same for a date that exists, from 1900 to 9999; nothing for any other.
std::optional<int> ExistingDayOf(const Date& date);
/// 0 for Monday to 6 for Sunday. Before March 1900, these are Excel's days of the week, not those
/// of history.
int WeekdayOf(int day);

/// A point in time as clocks show it.
struct Moment {
  int day;
  int hours;
  int minutes;
  int seconds;
  int fraction;  // of a second, in units of its last decimal
};

/// A number of days (at least 0, at most kLastDay + 1) as day and time, rounded first to
/// milliseconds, then to `decimals` (0 to 3) of a second, so that 23:59:59.9 is the next day's
/// midnight.
Moment MomentOf(double days, int decimals);

/// The year by the computer's clock, the same as long as the process runs.
int ClockYear();

}  // namespace zavhost
