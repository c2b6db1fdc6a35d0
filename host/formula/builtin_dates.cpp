// Dates and times and their parts.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/date_arguments.h"
#include "host/workbook/date_text.h"

namespace zavhost {
namespace {

Operand MakeDate(const BuiltInCall& call) {
  DateReader read(call);
  double year = read.Whole(0);
  const double month = read.Whole(1);
  const double day = read.Whole(2);
  if (year >= 0 && year < 1900) year += 1900;
  // Any more months than that leave the calendar.
  read.Require(year >= 1900 && year <= 9999 && std::fabs(month) < 1e5 && std::fabs(day) < 1e8);
  if (read.failed()) return read.failure();
  const int first = DayOf({static_cast<int>(year), static_cast<int>(month), 1});
  return read.Result(first + day - 1);
}

Operand MakeTime(const BuiltInCall& call) {
  constexpr double kMost = 32767;
  ArgumentReader read(call);
  const double hours = read.Whole(0);
  const double minutes = read.Whole(1);
  const double seconds = read.Whole(2);
  const double time = hours * 3600 + minutes * 60 + seconds;
  read.Require(time >= 0 && hours <= kMost && minutes <= kMost && seconds <= kMost);
  return read.failed() ? read.failure() : Value(std::fmod(time, 86'400.0) / 86'400.0);
}

int YearOf(const Date& date) { return date.year; }
int MonthOf(const Date& date) { return date.month; }
int DayOfMonth(const Date& date) { return date.day; }

template <int (*kPart)(const Date&)>
Operand OfDate(const BuiltInCall& call) {
  DateReader read(call);
  const int day = read.Day(0);
  return read.failed() ? read.failure() : Value(double(kPart(DateOf(day))));
}

/// HOUR, MINUTE and SECOND, of the time rounded to seconds.
template <int Moment::*kPart>
Operand OfTime(const BuiltInCall& call) {
  DateReader read(call);
  const double serial = read.Serial(0);
  return read.failed() ? read.failure() : Value(double(MomentOf(serial, 0).*kPart));
}

/// The first day of a week, 0 for Monday, for the types 11 to 17 and the old ones that share their
/// meaning; nothing for another type.
std::optional<int> FirstWeekday(double type) {
  if (type == 1) return 6;
  if (type == 2) return 0;
  if (type >= 11 && type <= 17) return static_cast<int>(type) - 11;
  return std::nullopt;
}

int DaysSince(int weekday, int first_weekday) { return (weekday - first_weekday + 7) % 7; }

Operand Weekday(const BuiltInCall& call) {
  DateReader read(call);
  const int weekday = WeekdayOf(read.Day(0));
  const double type = read.Whole(1, 1.0);
  const auto first = FirstWeekday(type);
  read.Require(first.has_value() || type == 3);
  if (read.failed()) return read.failure();
  return Value(type == 3 ? double(weekday) : double(DaysSince(weekday, *first) + 1));
}

/// The week whose Thursday is in the year, from Monday on.
int IsoWeek(int day) {
  const int thursday = day - WeekdayOf(day) + 3;
  const int year = DateOf(thursday).year;
  return (thursday - DayOf({year, 1, 1})) / 7 + 1;
}

Operand IsoWeekNum(const BuiltInCall& call) {
  DateReader read(call);
  const int day = read.Day(0);
  return read.failed() ? read.failure() : Value(double(IsoWeek(day)));
}

Operand WeekNum(const BuiltInCall& call) {
  DateReader read(call);
  const int day = read.Day(0);
  const double type = read.Whole(1, 1.0);
  const auto first = FirstWeekday(type);
  read.Require(first.has_value() || type == 21);
  if (read.failed()) return read.failure();
  if (type == 21) return Value(double(IsoWeek(day)));
  const int new_year = DayOf({DateOf(day).year, 1, 1});
  const int week = (day - new_year + DaysSince(WeekdayOf(new_year), *first)) / 7 + 1;
  return Value(double(week));
}

/// EDATE and EOMONTH: some months later, on the same day of the month or its last one.
template <bool kAtEnd>
Operand MonthsLater(const BuiltInCall& call) {
  DateReader read(call);
  read.RefuseBooleans();
  const int day = read.Day(0);
  const double months = read.Whole(1);
  read.Require(std::fabs(months) < 1e5);
  if (read.failed()) return read.failure();
  const Date from = DateOf(day);
  const int first = DayOf({from.year, from.month + static_cast<int>(months), 1});
  const int last = DayOf({from.year, from.month + static_cast<int>(months) + 1, 0});
  return read.Result(kAtEnd ? last : std::min(first + from.day - 1, last));
}

Operand Today(const BuiltInCall& call) { return Value(std::floor(call.context.Now())); }
Operand Now(const BuiltInCall& call) { return Value(call.context.Now()); }

/// DATEVALUE and TIMEVALUE: one part of what a text spells; 0 if it has only the other.
template <bool kIsTime>
Operand PartOfText(const BuiltInCall& call) {
  DateReader read(call);
  const std::u16string text = read.Text(0);
  if (read.failed()) return read.failure();
  const auto spelt = DateAndTimeFromText(text, DatesOf(call.context).year.value_or(ClockYear()));
  if (!spelt) return Value(ErrorCode::kValue);
  const double time = spelt->time.value_or(0.0);
  if (kIsTime) return Value(time - std::floor(time));
  if (!spelt->day) return Value(std::floor(time));
  const bool is_in_calendar = *spelt->day >= FirstDay(read.is_date1904());
  return is_in_calendar ? read.Result(*spelt->day) : Value(ErrorCode::kValue);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"DATE", 3, 3, "s", MakeDate},
    {u"TIME", 3, 3, "s", MakeTime},
    {u"YEAR", 1, 1, "s", OfDate<YearOf>},
    {u"MONTH", 1, 1, "s", OfDate<MonthOf>},
    {u"DAY", 1, 1, "s", OfDate<DayOfMonth>},
    {u"HOUR", 1, 1, "s", OfTime<&Moment::hours>},
    {u"MINUTE", 1, 1, "s", OfTime<&Moment::minutes>},
    {u"SECOND", 1, 1, "s", OfTime<&Moment::seconds>},
    {u"WEEKDAY", 1, 2, "s", Weekday},
    {u"WEEKNUM", 1, 2, "s", WeekNum},
    {u"ISOWEEKNUM", 1, 1, "s", IsoWeekNum},
    {u"EDATE", 2, 2, "s", MonthsLater<false>},
    {u"EOMONTH", 2, 2, "s", MonthsLater<true>},
    {u"TODAY", 0, 0, "s", Today},
    {u"NOW", 0, 0, "s", Now},
    {u"DATEVALUE", 1, 1, "s", PartOfText<false>},
    {u"TIMEVALUE", 1, 1, "s", PartOfText<true>},
};

}  // namespace

std::span<const BuiltInFunction> DateFunctions() { return kFunctions; }

}  // namespace zavhost
