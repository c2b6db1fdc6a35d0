// Type texts and the arguments that are laid out by them: what is read can be written, and each
// argument reaches the function as it was, in memory that only the function may change.
#include <cmath>
#include <string>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "host/capi/argument_block.h"
#include "host/capi/excel_record.h"
#include "host/workbook/text.h"

namespace zavrel::tests {
namespace {

using zavhost::Array;
using zavhost::ArrayPtr;
using zavhost::MissingArgument;
using zavhost::Operand;
using zavhost::Reference;
using zavhost::TypeLetter;
using zavhost::TypeText;
using zavhost::Value;

/// In the order of TypeLetter.
constexpr const char16_t* kLetters[] = {u"A",  u"L",  u"B",  u"E", u"H",  u"I", u"M",
                                        u"J",  u"N",  u"C",  u"F", u"D",  u"G", u"C%",
                                        u"F%", u"D%", u"G%", u"K", u"K%", u"Q", u"U"};

std::u16string Written(const TypeText& type) {
  std::u16string text;
  if (type.result_argument != 0) {
    text += static_cast<char16_t>(u'0' + type.result_argument);
  } else {
    text += kLetters[static_cast<std::size_t>(type.result)];
  }
  for (const TypeLetter letter : type.arguments) text += kLetters[static_cast<std::size_t>(letter)];
  if (type.is_volatile) text += u'!';
  if (type.is_macro_type) text += u'#';
  return text;
}

std::optional<TypeText> ReadType(std::u16string_view text) {
  const auto read = zavhost::ParseTypeText(text);
  if (const auto* reason = std::get_if<std::string>(&read)) {
    Require(!reason->empty(), "a type text is refused without a reason");
    return std::nullopt;
  }
  const TypeText& type = std::get<TypeText>(read);
  Require(type.arguments.size() <= zavhost::MachineArguments::kLimit, "too many arguments");
  const auto again = zavhost::ParseTypeText(Written(type));
  const TypeText* second = std::get_if<TypeText>(&again);
  Require(second != nullptr && second->result == type.result &&
              second->result_argument == type.result_argument &&
              second->arguments == type.arguments && second->is_volatile == type.is_volatile &&
              second->is_macro_type == type.is_macro_type,
          "a type text changes when it is written");
  return type;
}

Value AnyValue(Bytes& bytes) {
  switch (bytes.Below(8)) {
    case 0:
      return Value();
    case 1:
      return bytes.Below(2) == 1;
    case 2:
      return zavhost::ErrorCode::kNA;
    case 3:
      return static_cast<double>(bytes.Take<std::int32_t>()) / 4;
    case 4: {
      const auto number = bytes.Take<double>();
      return std::isnormal(number) ? number : 0.0;
    }
    case 5:  // longer than narrow texts may be, or than any
      return Value(std::u16string(bytes.Take<std::uint16_t>(), u'x'));
    default:
      return Value(zavhost::Utf16FromUtf8(bytes.Text(40)));
  }
}

Operand AnyOperand(TypeLetter letter, Bytes& bytes) {
  const std::size_t choice = bytes.Below(6);
  if (choice == 0) return MissingArgument{};
  if (choice == 1 && letter == TypeLetter::kValueOrReference) {
    Reference reference{static_cast<std::uint32_t>(bytes.Below(2)), {}};
    for (std::size_t i = bytes.Below(3) + 1; i > 0; --i) {
      const auto row = static_cast<std::int32_t>(bytes.Below(200));
      reference.areas.push_back({row, 3, row + static_cast<std::int32_t>(bytes.Below(9)), 4});
    }
    return reference;
  }
  if (choice == 2 && !zavhost::IsScalar(letter)) {
    Array array{static_cast<std::int32_t>(bytes.Below(4) + 1),
                static_cast<std::int32_t>(bytes.Below(4) + 1),
                {}};
    for (std::int32_t i = 0; i < array.rows * array.columns; ++i)
      array.values.push_back(AnyValue(bytes));
    return std::make_shared<const Array>(std::move(array));
  }
  return AnyValue(bytes);
}

/// The record that the function sees, beside the operand that it was made of.
void CheckRecord(const XLOPER12& record, const Operand& operand) {
  static const zavhost::Workbook book = [] {
    zavhost::Workbook made;
    made.sheets.emplace_back(u"One");
    made.sheets.emplace_back(u"Two");
    return made;
  }();
  const auto expected = [](const Value& value) {
    const std::u16string* text = value.text();
    return text != nullptr ? Value(text->substr(0, kExcelTextLimit)) : value;
  };
  Require(!zavhost::CheckRecord(record, true), "a malformed argument");
  if (const Value* value = std::get_if<Value>(&operand)) {
    Require(zavhost::ToValue(record) == expected(*value), "a value arrives as another");
  } else if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand)) {
    const Array arrived = zavhost::ToArray(record);
    Require(arrived.rows == (*array)->rows && arrived.columns == (*array)->columns,
            "an array arrives in another size");
    for (std::size_t i = 0; i < arrived.values.size(); ++i)
      Require(arrived.values[i] == expected((*array)->values[i]), "an element arrives as another");
  } else if (const Reference* reference = std::get_if<Reference>(&operand)) {
    Require(zavhost::ToReference(record, 0, book) == *reference, "a reference arrives as another");
  } else {
    Require(record.xltype == xltypeMissing, "a missing argument is given");
  }
}

bool IsRecord(TypeLetter letter) {
  return letter == TypeLetter::kValue || letter == TypeLetter::kValueOrReference;
}

void LayOut(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  const bool external_only = bytes.Below(2) == 1;
  const auto type = ReadType(zavhost::Utf16FromUtf8(bytes.Text(70)));
  if (!type) return;
  std::vector<Operand> operands;
  for (const TypeLetter letter : type->arguments) operands.push_back(AnyOperand(letter, bytes));

  zavhost::ArgumentBlock block;
  const auto error = block.Prepare(*type, operands, 0, external_only);
  Require(block.Prepare(*type, operands, 0, external_only) == error,
          "another error the second time");
  if (error) return;
  Require(!block.WasWritten(), "nobody wrote to an argument");
  for (std::size_t i = 0; i < operands.size(); ++i) {
    if (IsRecord(type->arguments[i]))
      CheckRecord(*static_cast<const XLOPER12*>(block.buffer(i)), operands[i]);
  }
  for (std::size_t i = 0; i < operands.size(); ++i) {
    if (!IsRecord(type->arguments[i])) continue;
    auto& byte = *static_cast<std::uint8_t*>(const_cast<void*>(block.buffer(i)));
    byte ^= 1;
    Require(block.WasWritten(), "an argument that was written to is not noticed");
    byte ^= 1;
    Require(!block.WasWritten(), "an argument was put back");
  }
}

const FuzzTarget target("type_texts", LayOut);

}  // namespace
}  // namespace zavrel::tests
