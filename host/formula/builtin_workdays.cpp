// Days without weekends and holidays.

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "host/formula/builtin_groups.h"
#include "host/formula/date_arguments.h"

namespace zavhost {
namespace {

/// The days of a week on which nobody works, Monday first.
using Weekend = std::array<bool, 7>;

constexpr Weekend kSaturdayAndSunday = {false, false, false, false, false, true, true};

/// The weekend of a number: 1 is Saturday and Sunday, 2 Sunday and Monday and so on, 11 is Sunday
/// alone, 12 Monday and so on.
std::optional<Weekend> WeekendOfNumber(double number) {
  Weekend weekend{};
  if (number >= 1 && number <= 7) {
    const auto first = static_cast<std::size_t>(number) + 4;
    weekend[first % 7] = weekend[(first + 1) % 7] = true;
  } else if (number >= 11 && number <= 17) {
    weekend[(static_cast<std::size_t>(number) - 5) % 7] = true;
  } else {
    return std::nullopt;
  }
  return weekend;
}

/// The weekend of a text such as "0000011".
std::optional<Weekend> WeekendOfText(std::u16string_view text) {
  Weekend weekend{};
  if (text.size() != weekend.size()) return std::nullopt;
  for (std::size_t i = 0; i < weekend.size(); ++i) {
    if (text[i] != u'0' && text[i] != u'1') return std::nullopt;
    weekend[i] = text[i] == u'1';
  }
  return weekend;
}

Weekend ReadWeekend(ArgumentReader& read, std::size_t index) {
  if (read.IsOmitted(index)) return kSaturdayAndSunday;
  const Value value = read.Any(index);
  const bool is_text = value.text() != nullptr;
  const auto weekend = is_text ? WeekendOfText(*value.text()) : WeekendOfNumber(read.Whole(index));
  read.Require(weekend.has_value(), is_text ? ErrorCode::kValue : ErrorCode::kNum);
  return weekend.value_or(Weekend{});
}

/// Counts working days.
class WorkingDays {
 public:
  WorkingDays(const Weekend& weekend, std::vector<int> holidays)
      : weekend_(weekend), holidays_(std::move(holidays)) {
    std::erase_if(holidays_, [this](int day) { return IsWeekend(day); });
    std::sort(holidays_.begin(), holidays_.end());
    holidays_.erase(std::unique(holidays_.begin(), holidays_.end()), holidays_.end());
  }

  /// The number of them from one day to another, both included.
  int Count(int first, int last) const {
    if (first > last) return 0;
    const int weeks = (last - first + 1) / 7;
    int count = weeks * static_cast<int>(std::count(weekend_.begin(), weekend_.end(), false));
    for (int day = first + weeks * 7; day <= last; ++day) count += IsWeekend(day) ? 0 : 1;
    const auto from = std::lower_bound(holidays_.begin(), holidays_.end(), first);
    const auto to = std::upper_bound(holidays_.begin(), holidays_.end(), last);
    return count - static_cast<int>(to - from);
  }

  bool HasAny() const { return std::count(weekend_.begin(), weekend_.end(), false) > 0; }

 private:
  bool IsWeekend(int day) const { return weekend_[static_cast<std::size_t>(WeekdayOf(day))]; }

  Weekend weekend_;
  std::vector<int> holidays_;  // in order, without those on weekends
};

/// The day that is `count` working days after (or, if negative, before) a day; nothing outside the
/// calendar.
std::optional<int> DayAfter(int start, double count, const WorkingDays& working_days) {
  const bool is_forward = count > 0;
  const auto is_reached = [&](int distance) {
    const int days = is_forward ? working_days.Count(start + 1, start + distance)
                                : working_days.Count(start - distance, start - 1);
    return days >= std::fabs(count);
  };
  int short_of = 0;
  int reached = is_forward ? kLastDay - start : start;
  if (count == 0) return start;
  if (!is_reached(reached)) return std::nullopt;
  while (reached - short_of > 1) {
    const int middle = short_of + (reached - short_of) / 2;
    (is_reached(middle) ? reached : short_of) = middle;
  }
  return is_forward ? start + reached : start - reached;
}

/// NETWORKDAYS and NETWORKDAYS.INTL, whose third argument is the weekend.
template <bool kHasWeekend>
Operand NetWorkDays(const BuiltInCall& call) {
  DateReader read(call);
  read.RefuseBooleans();
  const int start = read.Day(0);
  const int end = read.Day(1);
  const Weekend weekend = kHasWeekend ? ReadWeekend(read, 2) : kSaturdayAndSunday;
  const WorkingDays working_days(weekend, read.Days(kHasWeekend ? 3 : 2));
  if (read.failed()) return read.failure();
  return Value(
      double(start <= end ? working_days.Count(start, end) : -working_days.Count(end, start)));
}

/// WORKDAY and WORKDAY.INTL
template <bool kHasWeekend>
Operand WorkDay(const BuiltInCall& call) {
  DateReader read(call);
  read.RefuseBooleans();
  const int start = read.Day(0);
  const double count = read.Whole(1);
  const Weekend weekend = kHasWeekend ? ReadWeekend(read, 2) : kSaturdayAndSunday;
  const WorkingDays working_days(weekend, read.Days(kHasWeekend ? 3 : 2));
  read.Require(working_days.HasAny(), ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const auto day = DayAfter(start, count, working_days);
  return day ? read.Result(*day) : Value(ErrorCode::kNum);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"NETWORKDAYS", 2, 3, "ssr", NetWorkDays<false>},
    {u"NETWORKDAYS.INTL", 2, 4, "sssr", NetWorkDays<true>},
    {u"WORKDAY", 2, 3, "ssr", WorkDay<false>},
    {u"WORKDAY.INTL", 2, 4, "sssr", WorkDay<true>},
};

}  // namespace

std::span<const BuiltInFunction> WorkdayFunctions() { return kFunctions; }

}  // namespace zavhost
