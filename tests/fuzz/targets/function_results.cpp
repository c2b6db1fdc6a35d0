// Results of registered functions, whatever they return: a value that a cell can hold, or a finding
// of the judge. A value for the add-in to free is freed once.
#include <cmath>
#include <string>

#include "fuzz/host_cells.h"
#include "fuzz/hostile_values.h"
#include "fuzz/owned_record.h"
#include "fuzz/target.h"
#include "host/capi/add_in_function.h"
#include "host/capi/excel_record.h"

namespace zavrel::tests {
namespace {

// What the function returns.
std::uint64_t returned = 0;
double returned_number = 0;
std::uint64_t ReturnWord() { return returned; }
double ReturnNumber() { return returned_number; }

using zavhost::Operand;
using zavhost::TypeLetter;
using zavhost::TypeText;
using zavhost::Value;

void CheckValue(const Value& value) {
  if (const double* number = value.number())
    Require(std::isfinite(*number) && std::fpclassify(*number) != FP_SUBNORMAL,
            "a number that no cell holds");
  if (value.text() != nullptr)
    Require(value.text()->size() <= zavhost::kLongestText, "a text that no cell holds");
}

void CheckOperand(const Operand& operand) {
  if (const Value* value = std::get_if<Value>(&operand)) return CheckValue(*value);
  if (const auto* reference = std::get_if<zavhost::Reference>(&operand))
    return Require(reference->sheet < 3 && !reference->areas.empty(), "a reference to nothing");
  const auto* array = std::get_if<zavhost::ArrayPtr>(&operand);
  Require(array != nullptr, "no result");
  for (const Value& value : (*array)->values) CheckValue(value);
}

/// A text of this many units and its end; an endless one has as many as are looked at.
template <class Unit>
const void* TextOf(Bytes& bytes, ValueMemory& memory, std::size_t limit) {
  const bool is_endless = bytes.Below(8) == 0;
  const std::size_t length = is_endless ? limit + 1 : bytes.Below(200);
  auto* text = memory.Get<Unit>((length + (is_endless ? 0 : 1)) * sizeof(Unit));
  for (std::size_t i = 0; i < length; ++i) {
    const auto unit = i < 8 ? bytes.Take<Unit>() : Unit{'x'};
    text[i] = is_endless && unit == 0 ? Unit{'y'} : unit;
  }
  return text;
}

template <class Unit>
const void* CountedTextOf(Bytes& bytes, ValueMemory& memory) {
  const auto count = bytes.Take<Unit>();
  auto* text = memory.Get<Unit>((std::size_t{count} + 1) * sizeof(Unit));
  text[0] = count;
  for (std::size_t i = 1; i <= count; ++i) text[i] = i < 8 ? bytes.Take<Unit>() : Unit{'x'};
  return text;
}

template <class Size>
const void* NumbersOf(Bytes& bytes, ValueMemory& memory) {
  Size size[2] = {bytes.Take<Size>(), bytes.Take<Size>()};
  const bool is_small = bytes.Below(4) != 0;
  if (is_small)
    for (Size& part : size) part = static_cast<Size>(1 + static_cast<std::uint32_t>(part) % 8);
  const std::int64_t count = std::int64_t{size[0]} * size[1];
  // Of one that no array has, nothing but its size is read.
  const bool has_numbers = size[0] > 0 && size[1] > 0 && size[0] <= kExcelRows &&
                           size[1] <= kExcelColumns && count <= 100'000;
  if (!has_numbers && count <= zavhost::kElementLimit) size[0] = 0;
  const std::size_t numbers = has_numbers ? static_cast<std::size_t>(count) : 0;
  auto* block = memory.Get<std::byte>(8 + numbers * sizeof(double));
  std::memcpy(block, size, sizeof size);
  for (std::size_t i = 0; i < std::min<std::size_t>(numbers, 64); ++i) {
    const auto number = bytes.Take<double>();
    std::memcpy(block + 8 + i * sizeof number, &number, sizeof number);
  }
  return block;
}

const void* ResultOf(TypeLetter letter, Bytes& bytes, ValueMemory& memory) {
  switch (letter) {
    case TypeLetter::kNarrowText:
      return TextOf<unsigned char>(bytes, memory, zavhost::kNarrowLimit);
    case TypeLetter::kWideText:
      return TextOf<char16_t>(bytes, memory, kExcelTextLimit);
    case TypeLetter::kCountedNarrowText:
      return CountedTextOf<unsigned char>(bytes, memory);
    case TypeLetter::kCountedWideText:
      return CountedTextOf<char16_t>(bytes, memory);
    case TypeLetter::kSmallNumberArray:
      return NumbersOf<std::uint16_t>(bytes, memory);
    case TypeLetter::kNumberArray:
      return NumbersOf<std::int32_t>(bytes, memory);
    default: {
      auto* owned = memory.Get<OwnedRecord>(sizeof(OwnedRecord));
      *owned = {HostileValues(bytes, memory).Any(), 0};
      return owned;
    }
  }
}

void Return(std::span<const std::uint8_t> input) {
  static constexpr const char16_t* kTypes[] = {u"A",  u"L", u"B", u"E",  u"H",  u"I",  u"M",
                                               u"J",  u"N", u"C", u"C%", u"D",  u"D%", u"K",
                                               u"K%", u"Q", u"U", u"Q#", u"U#", u"Q",  u"U"};
  Bytes bytes(input);
  const TypeText type =
      std::get<TypeText>(zavhost::ParseTypeText(kTypes[bytes.Below(std::size(kTypes))]));
  const bool is_record =
      type.result == TypeLetter::kValue || type.result == TypeLetter::kValueOrReference;
  const bool is_direct = type.result == TypeLetter::kBoolean ||
                         type.result == TypeLetter::kInteger || type.result == TypeLetter::kShort ||
                         type.result == TypeLetter::kUnsignedShort;
  ValueMemory memory;
  returned_number = bytes.Take<double>();
  returned = std::bit_cast<std::uint64_t>(returned_number);
  if (!is_direct)
    returned = bytes.Below(32) == 0
                   ? 0
                   : reinterpret_cast<std::uintptr_t>(ResultOf(type.result, bytes, memory));

  SmallCells cells;
  zavhost::Judge judge;
  zavhost::ExcelApi api(cells, judge, {});
  zavhost::ArgumentBlock block;
  const bool gives_double = type.result == TypeLetter::kNumber;
  const zavhost::RegistryEntry entry{
      1, type,
      gives_double ? reinterpret_cast<void*>(&ReturnNumber) : reinterpret_cast<void*>(&ReturnWord),
      &FuzzedAddIn()};
  CheckOperand(zavhost::AddInFunction(api, block, entry).Call({}));
  if (!is_record || returned == 0) return;
  const auto& [record, freed] = *reinterpret_cast<const OwnedRecord*>(returned);
  const bool is_well_formed =
      !zavhost::CheckRecord(record, type.result == TypeLetter::kValueOrReference);
  const bool is_owned = is_well_formed && (record.xltype & xlbitDLLFree) != 0;
  Require(freed == (is_owned ? 1 : 0), "what the add-in owns is not freed once");
  if (!is_well_formed) Require(judge.count() == 1, "a malformed record is not reported");
}

const FuzzTarget target("function_results", Return);

}  // namespace
}  // namespace zavrel::tests
