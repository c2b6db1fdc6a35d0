#pragma once
// Dates among the arguments of functions.

#include <cmath>

#include "host/formula/argument_reader.h"
#include "host/workbook/calendar.h"

namespace zavhost {

/// How texts become dates in a workbook: by its date system, and without a year in the year of its
/// clock. The implicit conversions of coercion.h know neither the one nor the other.
inline DateReading DatesOf(const EvaluationContext& context) {
  const bool date1904 = context.workbook().date1904;
  const double today = std::floor(context.Now()) + FirstDay(date1904);
  if (!(today >= 0 && today <= kLastDay)) return {date1904, std::nullopt};
  return {date1904, DateOf(static_cast<int>(today)).year};
}

/// Reads arguments that are dates.
class DateReader : public ArgumentReader {
 public:
  explicit DateReader(const BuiltInCall& call)
      : ArgumentReader(call), context_(call.context), first_(FirstDay(is_date1904())) {}

  /// The functions that came later than others take no booleans for dates.
  void RefuseBooleans() { refuses_booleans_ = true; }
  /// A serial number with the time of day; #NUM! for what is no date.
  double Serial(std::size_t index);
  /// The day of a serial number in the calendar.
  int Day(std::size_t index) { return static_cast<int>(std::floor(Serial(index))) + first_; }
  /// The days in the array or reference of an argument, without blanks.
  std::vector<int> Days(std::size_t index);

  bool is_date1904() const { return context_.workbook().date1904; }
  /// A day as a function's result; #NUM! outside the calendar.
  Operand Result(double day) const;

 private:
  double SerialOf(const Value& value);

  EvaluationContext& context_;
  int first_;
  bool refuses_booleans_ = false;
};

}  // namespace zavhost
