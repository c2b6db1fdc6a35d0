#pragma once
// The English names of months and days of the week; their first three letters are the short ones.

#include <string_view>

namespace zavhost {

/// The name of month 1 to 12.
constexpr std::u16string_view MonthName(int month) {
  constexpr std::u16string_view kNames[] = {u"January",   u"February", u"March",    u"April",
                                            u"May",       u"June",     u"July",     u"August",
                                            u"September", u"October",  u"November", u"December"};
  return kNames[month - 1];
}

/// The name of day 0 (Monday) to 6.
constexpr std::u16string_view WeekdayName(int weekday) {
  constexpr std::u16string_view kNames[] = {u"Monday", u"Tuesday",  u"Wednesday", u"Thursday",
                                            u"Friday", u"Saturday", u"Sunday"};
  return kNames[weekday];
}

}  // namespace zavhost
