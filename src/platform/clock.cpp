#include "platform/clock.h"

#include <cstdio>
#include <ctime>

namespace zavrel {

std::string LocalTimeText() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  if (localtime_s(&local, &now) != 0) return {};
#else
  if (localtime_r(&now, &local) == nullptr) return {};
#endif
  // asctime shares one buffer between all threads, and asctime's form is independent of the locale
  // where strftime's names are not.
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  char text[64];
  std::snprintf(text, sizeof text, "%s %s%3d %.2d:%.2d:%.2d %d", kDays[local.tm_wday % 7],
                kMonths[local.tm_mon % 12], local.tm_mday, local.tm_hour, local.tm_min,
                local.tm_sec, 1900 + local.tm_year);
  return text;
}

std::int64_t CalendarSeconds() { return static_cast<std::int64_t>(std::time(nullptr)); }

}  // namespace zavrel
