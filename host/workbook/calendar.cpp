#include "host/workbook/calendar.h"

#include <cmath>
#include <cstdint>
#include <ctime>

#include "platform/clock.h"

namespace zavhost {
namespace {

int FloorDivide(int dividend, int divisor) {
  return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

/// The number of 31 December of the year before: January's day 0.
int DayBeforeYear(int year) {
  const int before = year - 1;
  const int leap_days =
      FloorDivide(before, 4) - FloorDivide(before, 100) + FloorDivide(before, 400);
  constexpr int kLeapDaysBefore1900 = 1899 / 4 - 1899 / 100 + 1899 / 400;
  return 365 * (year - 1900) + leap_days - kLeapDaysBefore1900 + (year > 1900 ? 1 : 0);
}

}  // namespace

int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

Date DateOf(int day) {
  if (day == 0) return {1900, 1, 0};
  int year = 1900 + FloorDivide(day - 1, 366);  // never too late
  while (day > DayBeforeYear(year + 1)) ++year;
  day -= DayBeforeYear(year);
  int month = 1;
  for (; day > DaysInMonth(year, month); ++month) day -= DaysInMonth(year, month);
  return {year, month, day};
}

int DayOf(const Date& date) {
  const int months = date.month - 1;
  const int year = date.year + FloorDivide(months, 12);
  int day = DayBeforeYear(year) + date.day;
  for (int month = 1; month <= months - FloorDivide(months, 12) * 12; ++month)
    day += DaysInMonth(year, month);
  return day;
}

std::optional<int> ExistingDayOf(const Date& date) {
  if (date.year < 1900 || date.year > 9999 || date.month < 1 || date.month > 12) return {};
  if (date.day < 1 || date.day > DaysInMonth(date.year, date.month)) return {};
  return DayOf(date);
}

int WeekdayOf(int day) {
  const int since_monday = day + 5;
  return since_monday - FloorDivide(since_monday, 7) * 7;
}

Moment MomentOf(double days, int decimals) {
  constexpr std::int64_t kUnits[] = {1, 10, 100, 1000};
  const std::int64_t unit = kUnits[decimals];
  const double whole = std::floor(days);
  const std::int64_t milliseconds = std::llround((days - whole) * 86'400'000.0);
  const std::int64_t time = (milliseconds * unit + 500) / 1000;
  const auto seconds = static_cast<int>(time / unit);
  return {static_cast<int>(whole) + seconds / 86'400, seconds / 3600 % 24, seconds / 60 % 60,
          seconds % 60, static_cast<int>(time % unit)};
}

int ClockYear() {
  static const int year = [] {
    const std::optional<std::tm> now = zavrel::LocalTime(std::time(nullptr));
    return now ? now->tm_year + 1900 : 1900;
  }();
  return year;
}

}  // namespace zavhost
