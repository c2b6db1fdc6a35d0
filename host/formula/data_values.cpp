#include "host/formula/data_values.h"

#include "host/formula/builtin_groups.h"

namespace zavhost {

DataValues NumbersOf(const BuiltInCall& call, NonNumbers others) {
  DataValues data;
  data.error =
      VisitValues(call, [&](const Value& value, bool is_direct) -> std::optional<ErrorCode> {
        if (!is_direct && value.number() == nullptr && value.error() == nullptr) {
          if (others == NonNumbers::kSkipped || value.IsBlank()) return std::nullopt;
          data.numbers.push_back(value.boolean() != nullptr && *value.boolean() ? 1.0 : 0.0);
          return std::nullopt;
        }
        const Converted<double> number = ToNumber(value);
        if (!number.error) data.numbers.push_back(number.value);
        return number.error;
      });
  return data;
}

DataValues NumbersOfArgument(const BuiltInCall& call, std::size_t index) {
  return NumbersOf({call.arguments.subspan(index, 1), call.context, call.as_array});
}

DataPairs PairsOf(const BuiltInCall& call, std::size_t x_index, std::size_t y_index) {
  ArgumentReader read(call);
  const ArrayPtr x = read.Array(x_index);
  const ArrayPtr y = read.Array(y_index);
  DataPairs pairs;
  if (x->values.size() != y->values.size()) {
    // A range that could not be read is its error alone.
    for (const Array* array : {x.get(), y.get()}) {
      if (array->values.size() == 1 && array->values[0].error() != nullptr && !pairs.error)
        pairs.error = *array->values[0].error();
    }
    if (!pairs.error) pairs.error = ErrorCode::kNA;
    return pairs;
  }
  for (std::size_t i = 0; i < x->values.size() && !pairs.error; ++i) {
    for (const Value* value : {&x->values[i], &y->values[i]}) {
      if (value->error() != nullptr && !pairs.error) pairs.error = *value->error();
    }
    const double* x_number = x->values[i].number();
    const double* y_number = y->values[i].number();
    if (x_number == nullptr || y_number == nullptr) continue;
    pairs.x.push_back(*x_number);
    pairs.y.push_back(*y_number);
  }
  return pairs;
}

}  // namespace zavhost
