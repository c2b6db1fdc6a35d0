#pragma once
// Number format codes as lists of tokens.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zavhost {

enum class FormatTokenKind {
  kLiteral,
  kGeneral,
  kText,      // @
  kDigit,     // a placeholder: 0, # or ?
  kPoint,     // the decimal point
  kComma,     // only while a code is read: it separates thousands or scales
  kExponent,  // E+ or E-
  kBar,       // the bar of a fraction
  // Dates and times.
  kYear,
  kBuddhistYear,
  kMonth,
  kDay,
  kWeekday,
  kHour,
  kMinute,
  kSecond,
  kSecondFraction,  // ".00" behind seconds
  kElapsedHours,
  kElapsedMinutes,
  kElapsedSeconds,
  kHalfOfDay,  // AM/PM or A/P
};

constexpr bool IsDatePart(FormatTokenKind kind) { return kind >= FormatTokenKind::kYear; }

struct FormatToken {
  FormatTokenKind kind;
  /// The literal; the placeholder; the sign of E+ or E-; the two halves of the day, "A" and "P" or
  /// "AM" and "PM", one after the other.
  std::u16string text;
  int count = 1;  // the number of letters or of decimal places
};

struct FormatCondition {
  std::u16string op;  // "<", "<=", "=", ">=", ">" or "<>"
  double limit = 0.0;

  bool Holds(double number) const;
  /// True if it can only hold for negative numbers.
  bool IsOfNegatives() const;
};

struct FormatSection {
  std::vector<FormatToken> tokens;
  std::optional<FormatCondition> condition;
  bool is_date = false;
  bool has_thousands_separators = false;
  /// The power of ten by which numbers are multiplied: 2 for each %, -3 for each comma behind the
  /// placeholders.
  int scale = 0;

  bool Has(FormatTokenKind kind) const;
};

inline constexpr std::size_t kLongestFormatCode = 255;

/// The one to four sections of a code; nothing for a wrong one.
std::optional<std::vector<FormatSection>> ParseFormatCode(std::u16string_view code);

}  // namespace zavhost
