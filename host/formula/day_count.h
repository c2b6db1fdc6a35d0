#pragma once
// Conventions that count the days between two dates, also of securities.

#include "host/workbook/calendar.h"

namespace zavhost {

/// Days in years of twelve months with 30 days. A 31st counts as the 30th.
int EuropeanDays360(const Date& start, const Date& end);
/// The same as DAYS360 counts: the last day of February counts as the 30th at the start, and a 31st
/// at the end is the 1st of the next month unless the start is a 30th.
int AmericanDays360(const Date& start, const Date& end);
/// The same as YEARFRAC counts (basis 0): the last day of February counts as the 30th at the start,
/// and then also at the end.
int AmericanSecuritiesDays360(Date start, Date end);

/// The part of a year between two days in order by the conventions of YEARFRAC: 0 American 30/360,
/// 1 actual days and years, 2 actual/360, 3 actual/365, 4 European 30/360.
double YearFraction(int start, int end, int basis);

}  // namespace zavhost
