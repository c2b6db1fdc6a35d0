#include "calc/any_value.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace zavcalc {
namespace {

using zavhost::Array;
using zavhost::ErrorCode;
using zavhost::Operand;
using zavhost::Value;

template <class T>
const T& DataOf(const uno_Any& any) {
  return *static_cast<const T*>(any.pData);
}

Value ToValue(const uno_Any& any) {
  switch (any.pType->eTypeClass) {
    case typelib_TypeClass_DOUBLE:
      return DataOf<double>(any);
    case typelib_TypeClass_STRING: {
      const std::u16string_view text = TextOf(DataOf<rtl_uString*>(any));
      return text.empty() ? Value() : Value(text);
    }
    case typelib_TypeClass_VOID:
      return {};
    default:
      return ErrorCode::kValue;
  }
}

/// Calc's code of an error, which it finds in the low bits of a number that is none.
double ErrorNumber(ErrorCode error) {
  static constexpr std::pair<ErrorCode, std::uint64_t> kCodes[] = {
      {ErrorCode::kNull, 521}, {ErrorCode::kDiv0, 532}, {ErrorCode::kRef, 524},
      {ErrorCode::kName, 525}, {ErrorCode::kNum, 503},  {ErrorCode::kNA, 32767},
  };
  constexpr std::uint64_t kNotANumber = 0x7FF8'0000'0000'0000;
  constexpr std::uint64_t kValueError = 519;
  const auto* known = std::find_if(std::begin(kCodes), std::end(kCodes),
                                   [&](const auto& code) { return code.first == error; });
  return std::bit_cast<double>(kNotANumber |
                               (known == std::end(kCodes) ? kValueError : known->second));
}

void ConstructValue(uno_Any& result, const Value& value) {
  if (const auto* text = value.text()) return ConstructText(result, *text);
  if (const auto* error = value.error()) return ConstructNumber(result, ErrorNumber(*error));
  if (const auto* number = value.number()) return ConstructNumber(result, *number);
  if (const auto* boolean = value.boolean()) return ConstructNumber(result, *boolean ? 1.0 : 0.0);
  ConstructText(result, {});
}

/// Values under construction, destroyed with their owner.
class Anys {
 public:
  Anys() = default;
  Anys(const Anys&) = delete;
  Anys& operator=(const Anys&) = delete;
  ~Anys() {
    for (uno_Any& any : anys_) uno_any_destruct(&any, nullptr);
  }
  /// Room for further values; those that stand in it do not move.
  void Reserve(std::size_t count) { anys_.reserve(count); }
  void Add(const Value& value) { ConstructValue(anys_.emplace_back(), value); }
  uno_Sequence* NewRow() const {
    static const TypeReference type = SequenceType(u"[]any");
    return NewSequence(type, anys_.data(), anys_.size());
  }

 private:
  std::vector<uno_Any> anys_;
};

void ConstructArray(uno_Any& result, const Array& array) {
  static const TypeReference type = SequenceType(u"[][]any");
  std::vector<uno_Sequence*> rows;
  for (std::int32_t row = 0; row < array.rows; ++row) {
    Anys elements;
    elements.Reserve(static_cast<std::size_t>(array.columns));
    for (std::int32_t column = 0; column < array.columns; ++column)
      elements.Add(array.At(row, column));
    rows.push_back(elements.NewRow());
  }
  uno_Sequence* sequence = NewSequence(type, rows.data(), rows.size());
  static const TypeReference row_type = SequenceType(u"[]any");
  for (uno_Sequence*& row : rows) uno_type_destructData(&row, row_type, nullptr);
  uno_type_any_construct(&result, &sequence, type, nullptr);
  uno_type_destructData(&sequence, type, nullptr);
}

}  // namespace

Operand ToArray(uno_Sequence* sequence) {
  const auto rows = ElementsOf<uno_Sequence*>(sequence);
  if (rows.empty() || rows.front()->nElements == 0) return Value(ErrorCode::kValue);
  auto array = std::make_shared<Array>();
  array->rows = static_cast<std::int32_t>(rows.size());
  array->columns = rows.front()->nElements;
  array->values.reserve(rows.size() * static_cast<std::size_t>(array->columns));
  for (uno_Sequence* row : rows) {
    if (row->nElements != array->columns) return Value(ErrorCode::kValue);
    for (const uno_Any& element : ElementsOf<uno_Any>(row))
      array->values.push_back(ToValue(element));
  }
  return zavhost::ArrayPtr(std::move(array));
}

Operand ToOperand(const uno_Any& argument) {
  switch (argument.pType->eTypeClass) {
    case typelib_TypeClass_VOID:
      return zavhost::MissingArgument{};
    case typelib_TypeClass_SEQUENCE:
      if (TextOf(argument.pType->pTypeName) != u"[][]any") return Value(ErrorCode::kValue);
      return ToArray(DataOf<uno_Sequence*>(argument));
    default:
      return ToValue(argument);
  }
}

void ConstructResult(uno_Any& result, const Operand& operand) {
  if (const auto* array = std::get_if<zavhost::ArrayPtr>(&operand))
    return ConstructArray(result, **array);
  const auto* value = std::get_if<Value>(&operand);
  ConstructValue(result, value == nullptr ? Value(ErrorCode::kValue) : *value);
}

}  // namespace zavcalc
