#include "host/formula/argument_reader.h"

#include <cmath>
#include <memory>
#include <utility>

#include "host/formula/reference_algebra.h"

namespace zavhost {

Value ArgumentReader::Any(std::size_t index) const {
  if (IsOmitted(index)) return {};
  const Operand& argument = call_.arguments[index];
  if (const Value* value = std::get_if<Value>(&argument)) return *value;
  if (const ArrayPtr* array = std::get_if<ArrayPtr>(&argument)) return (*array)->At(0, 0);
  const Reference& reference = std::get<Reference>(argument);
  const CellRange& area = reference.areas.front();
  return call_.context.ReadCell({reference.sheet, area.first_row, area.first_column});
}

double ArgumentReader::Number(std::size_t index) { return Taken(ToNumber(Any(index))); }
double ArgumentReader::Whole(std::size_t index) { return std::trunc(Number(index)); }
bool ArgumentReader::Boolean(std::size_t index) { return Taken(ToBoolean(Any(index))); }
std::u16string ArgumentReader::Text(std::size_t index) { return Taken(ToText(Any(index))); }

ArrayPtr ArgumentReader::Array(std::size_t index, RangeExtent extent) {
  Operand read = IsOmitted(index)
                     ? Operand(Value())
                     : Dereference(call_.arguments[index], true, call_.context, extent);
  if (ArrayPtr* array = std::get_if<ArrayPtr>(&read)) return std::move(*array);
  return std::make_shared<const zavhost::Array>(
      zavhost::Array{1, 1, {std::move(std::get<Value>(read))}});
}

const Reference* ArgumentReader::AsReference(std::size_t index) const {
  return IsGiven(index) ? std::get_if<Reference>(&call_.arguments[index]) : nullptr;
}

Operand ArrayResult(std::int32_t rows, std::int32_t columns, std::vector<Value> values) {
  if (values.size() == 1) return std::move(values.front());
  return std::make_shared<const Array>(Array{rows, columns, std::move(values)});
}

}  // namespace zavhost
