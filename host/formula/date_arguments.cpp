#include "host/formula/date_arguments.h"

namespace zavhost {

double DateReader::SerialOf(const Value& value) {
  if (refuses_booleans_ && value.boolean() != nullptr) Fail(ErrorCode::kValue);
  Converted<double> serial;
  if (const std::u16string* text = value.text()) {
    const auto read = NumberFromText(*text, DatesOf(context_));
    serial = read ? Converted<double>{*read, {}} : Converted<double>{0.0, ErrorCode::kValue};
  } else {
    serial = ToNumber(value);
  }
  if (serial.error) Fail(*serial.error);
  Require(serial.value >= 0.0 && serial.value < kLastDay + 1.0 - first_);
  return failed() ? 0.0 : serial.value;
}

double DateReader::Serial(std::size_t index) { return SerialOf(Any(index)); }

std::vector<int> DateReader::Days(std::size_t index) {
  std::vector<int> days;
  if (IsOmitted(index)) return days;
  const ArrayPtr array = Array(index, RangeExtent::kUsed);
  for (const Value& value : array->values) {
    if (value.IsBlank()) continue;
    days.push_back(static_cast<int>(std::floor(SerialOf(value))) + first_);
  }
  return days;
}

Operand DateReader::Result(double day) const {
  const double serial = day - first_;
  return Value(serial >= 0.0 && day <= kLastDay ? Value(serial) : Value(ErrorCode::kNum));
}

}  // namespace zavhost
