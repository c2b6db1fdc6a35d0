#include "platform/clock.h"

#include <cstdio>

namespace zavrel {

std::string LocalTimeText() {
  const std::optional<std::tm> now = LocalTime(std::time(nullptr));
  if (!now) return {};
  // asctime shares one buffer between all threads, and strftime's names depend on the locale.
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  char text[64];
  std::snprintf(text, sizeof text, "%s %s%3d %.2d:%.2d:%.2d %d", kDays[now->tm_wday % 7],
                kMonths[now->tm_mon % 12], now->tm_mday, now->tm_hour, now->tm_min, now->tm_sec,
                1900 + now->tm_year);
  return text;
}

std::int64_t CalendarSeconds() { return static_cast<std::int64_t>(std::time(nullptr)); }

}  // namespace zavrel
