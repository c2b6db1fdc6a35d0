// The time between two dates.

#include <cmath>

#include "host/formula/builtin_groups.h"
#include "host/formula/date_arguments.h"
#include "host/formula/day_count.h"

namespace zavhost {
namespace {

Operand DaysBetween(const BuiltInCall& call) {
  DateReader read(call);
  const int end = read.Day(0);
  const int start = read.Day(1);
  return read.failed() ? read.failure() : Value(double(end - start));
}

Operand DaysOf360(const BuiltInCall& call) {
  DateReader read(call);
  const Date start = DateOf(read.Day(0));
  const Date end = DateOf(read.Day(1));
  const bool is_european = read.Boolean(2, false);
  if (read.failed()) return read.failure();
  return Value(double(is_european ? EuropeanDays360(start, end) : AmericanDays360(start, end)));
}

Operand YearFrac(const BuiltInCall& call) {
  DateReader read(call);
  read.RefuseBooleans();
  const int start = read.Day(0);
  const int end = read.Day(1);
  const double basis = read.Whole(2, 0.0);
  read.Require(basis >= 0 && basis <= 4);
  if (read.failed()) return read.failure();
  return NumberValue(
      YearFraction(std::min(start, end), std::max(start, end), static_cast<int>(basis)));
}

/// DATEDIF: whole years, months or days, or what remains of them.
Operand DateDif(const BuiltInCall& call) {
  DateReader read(call);
  const int start = read.Day(0);
  const int end = read.Day(1);
  const std::u16string unit = UpperCase(read.Text(2));
  read.Require(start <= end);
  if (read.failed()) return read.failure();
  const Date from = DateOf(start);
  const Date to = DateOf(end);
  const bool is_short = to.day < from.day;  // the last month is not over
  const int months = (to.year - from.year) * 12 + to.month - from.month - (is_short ? 1 : 0);
  const int years = months / 12;
  if (unit == u"Y") return Value(double(years));
  if (unit == u"M") return Value(double(months));
  if (unit == u"D") return Value(double(end - start));
  if (unit == u"YM") return Value(double(months - years * 12));
  // Days after the last full month, with the length of the month before the end's.
  if (unit == u"MD")
    return Value(
        double(is_short ? end - DayOf({to.year, to.month - 1, from.day}) : to.day - from.day));
  // Days after the last full year, counted in the first one.
  if (unit != u"YD") return Value(ErrorCode::kNum);
  const bool is_next_year = to.month < from.month || (to.month == from.month && to.day < from.day);
  return Value(double(DayOf({from.year + (is_next_year ? 1 : 0), to.month, to.day}) - start));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"DAYS", 2, 2, "s", DaysBetween},
    {u"DAYS360", 2, 3, "s", DaysOf360},
    {u"YEARFRAC", 2, 3, "s", YearFrac},
    {u"DATEDIF", 3, 3, "s", DateDif},
};

}  // namespace

std::span<const BuiltInFunction> PeriodFunctions() { return kFunctions; }

}  // namespace zavhost
