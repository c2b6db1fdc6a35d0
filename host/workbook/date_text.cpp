#include "host/workbook/date_text.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/workbook/calendar.h"
#include "host/workbook/month_names.h"
#include "host/workbook/text.h"
#include "platform/white_space.h"

namespace zavhost {
namespace {

/// A part of a date: digits, or the name of a month.
struct DateField {
  int number = 0;
  int digits = 0;  // 0 for a name
  /// The sign between this field and the one before it: '/', '-' or ','; a blank for none of them.
  char16_t separator = u' ';

  bool IsName() const { return digits == 0; }
};

/// The year that digits mean; 0 for none.
int YearOf(const DateField& field) {
  if (field.digits == 4) return field.number;
  if (field.IsName() || field.digits > 2) return 0;
  return field.number + (field.number < 30 ? 2000 : 1900);
}

std::optional<int> DayOfFields(const DateField& year, const DateField& month,
                               const DateField& day) {
  if (month.digits > 2 || day.digits > 2) return std::nullopt;
  return ExistingDayOf({YearOf(year), month.number, day.number});
}

/// A month, and a day of the current year or a year: the first day of the month then.
std::optional<int> DayOfTwoFields(const DateField& month, const DateField& other, bool can_be_year,
                                  int current_year) {
  if (month.digits > 2) return std::nullopt;
  if (other.digits <= 2) {
    if (const auto day = ExistingDayOf({current_year, month.number, other.number})) return day;
  }
  if (!can_be_year && other.digits != 4) return std::nullopt;
  return ExistingDayOf({YearOf(other), month.number, 1});
}

std::optional<int> DayOfFields(const std::vector<DateField>& fields, int current_year) {
  if (fields.size() == 2) {
    const bool month_is_last = fields[1].IsName() || fields[0].digits == 4;
    return month_is_last ? DayOfTwoFields(fields[1], fields[0], false, current_year)
                         : DayOfTwoFields(fields[0], fields[1], true, current_year);
  }
  if (fields[0].digits == 4) return DayOfFields(fields[0], fields[1], fields[2]);
  if (fields[1].IsName()) return DayOfFields(fields[2], fields[1], fields[0]);
  return DayOfFields(fields[2], fields[0], fields[1]);
}

/// True if the separators and the places of names are those of a date.
bool IsDate(const std::vector<DateField>& fields) {
  if (fields.size() < 2) return false;
  int names = 0;
  bool has_only_signs = true;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    names += fields[i].IsName() ? 1 : 0;
    const char16_t separator = fields[i].separator;
    has_only_signs = has_only_signs && (i == 0 || separator == u'/' || separator == u'-');
    if (separator == u',' && i + 1 < fields.size()) return false;
  }
  const bool ends_with_name = fields.size() == 3 && fields[2].IsName();
  return names == 0 ? has_only_signs : names == 1 && !ends_with_name;
}

bool IsAsciiDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsAsciiLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

class DateTextReader {
 public:
  DateTextReader(std::u16string_view text, int current_year)
      : rest_(text), current_year_(current_year) {}

  std::optional<DateAndTime> Read() {
    DateAndTime read;
    SkipBlanks();
    // A date stands before or after its time.
    read.day = TakeDate();
    if (SkipBlanks() || !read.day) read.time = TakeTime();
    if (SkipBlanks() && !read.day) read.day = TakeDate();
    SkipBlanks();
    if (!rest_.empty() || (!read.day && !read.time)) return std::nullopt;
    return read;
  }

 private:
  bool SkipBlanks() {
    const std::size_t before = rest_.size();
    while (!rest_.empty() && zavrel::IsWhiteSpace(rest_.front())) rest_.remove_prefix(1);
    return rest_.size() < before;
  }

  bool TakeSign(char16_t sign) {
    if (rest_.empty() || rest_.front() != sign) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::u16string_view TakeRun(bool (*belongs)(char16_t)) {
    std::size_t length = 0;
    while (length < rest_.size() && belongs(rest_[length])) ++length;
    const std::u16string_view run = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return run;
  }

  /// One to four digits, which are all digits at this place.
  std::optional<DateField> TakeNumber() {
    const std::u16string_view run = TakeRun(IsAsciiDigit);
    if (run.empty() || run.size() > 4) return std::nullopt;
    DateField field;
    field.digits = static_cast<int>(run.size());
    for (const char16_t digit : run) field.number = field.number * 10 + (digit - u'0');
    return field;
  }

  std::optional<DateField> TakeDateField() {
    if (!rest_.empty() && IsAsciiDigit(rest_.front())) {
      const auto field = TakeNumber();
      return !rest_.empty() && rest_.front() == u':' ? std::nullopt : field;
    }
    const std::u16string name = LowerCase(TakeRun(IsAsciiLetter));
    for (int month = 1; name.size() >= 3 && month <= 12; ++month) {
      if (LowerCase(MonthName(month)).starts_with(name)) return DateField{month, 0};
    }
    return std::nullopt;
  }

  /// The sign before the next field. One between blanks counts as a blank, so that "1 - 2" is no
  /// date.
  char16_t TakeSeparator() {
    const bool has_blank = SkipBlanks();
    for (const char16_t sign : {u'/', u'-', u','}) {
      if (!TakeSign(sign)) continue;
      const bool has_more = SkipBlanks();
      return sign != u',' && (has_blank || has_more) ? u' ' : sign;
    }
    return u' ';
  }

  std::optional<int> TakeDate() {
    const std::u16string_view all = rest_;
    std::vector<DateField> fields;
    while (fields.size() < 3) {
      const std::u16string_view before = rest_;
      const char16_t separator = fields.empty() ? u' ' : TakeSeparator();
      auto field = TakeDateField();
      if (!field) {
        rest_ = before;
        break;
      }
      field->separator = separator;
      fields.push_back(*field);
    }
    const auto day = IsDate(fields) ? DayOfFields(fields, current_year_) : std::nullopt;
    if (!day) rest_ = all;
    return day;
  }

  /// Digits after a decimal point.
  double TakeFraction() {
    double unit = 1.0;
    double value = 0.0;
    for (const char16_t digit : TakeRun(IsAsciiDigit)) {
      value = value * 10.0 + (digit - u'0');
      unit *= 10.0;
      if (unit > 1e15) break;
    }
    return value / unit;
  }

  /// "AM" or "PM" behind blanks, or the first letter only; 'a', 'p' or nothing.
  std::optional<char16_t> TakeHalfOfDay() {
    const std::u16string_view before = rest_;
    if (SkipBlanks()) {
      const std::u16string half = LowerCase(TakeRun(IsAsciiLetter));
      if (half == u"am" || half == u"pm" || half == u"a" || half == u"p") return half.front();
    }
    rest_ = before;
    return std::nullopt;
  }

  std::optional<double> TakeTime() {
    const std::u16string_view all = rest_;
    const auto time = TakeTimeOfDay();
    if (!time) rest_ = all;
    return time;
  }

  std::optional<double> TakeTimeOfDay() {
    std::vector<int> parts;
    do {
      const auto part = TakeNumber();
      if (!part || (!parts.empty() && (part->digits > 2 || part->number > 59))) return std::nullopt;
      parts.push_back(part->number);
    } while (parts.size() < 3 && TakeSign(u':'));
    double fraction = 0.0;
    if (parts.size() > 1 && TakeSign(u'.')) {
      fraction = TakeFraction();
      if (parts.size() == 2) parts.insert(parts.begin(), 0);
    }
    if (const auto half = TakeHalfOfDay()) {
      if (parts[0] > 12) return std::nullopt;
      parts[0] = parts[0] % 12 + (*half == u'p' ? 12 : 0);
    } else if (parts.size() == 1) {
      return std::nullopt;
    }
    parts.resize(3);
    return (parts[0] * 3600.0 + parts[1] * 60.0 + parts[2] + fraction) / 86'400.0;
  }

  std::u16string_view rest_;
  int current_year_;
};

}  // namespace

std::optional<DateAndTime> DateAndTimeFromText(std::u16string_view text, int current_year) {
  // Most texts are no dates; these are found out at once.
  constexpr std::size_t kLongestDate = 64;
  if (text.size() > kLongestDate || std::none_of(text.begin(), text.end(), IsAsciiDigit)) return {};
  return DateTextReader(text, current_year).Read();
}

}  // namespace zavhost
