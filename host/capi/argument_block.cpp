#include "host/capi/argument_block.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/capi/excel_record.h"
#include "host/capi/scalar_conversion.h"

namespace zavhost {
namespace {

constexpr std::size_t kNarrowBuffer = 256;
constexpr std::size_t kWideBuffer = kExcelTextLimit + 1;

std::size_t Words(std::size_t bytes) { return (bytes + 7) / 8; }

bool IsBuffer(TypeLetter kind) {
  return kind == TypeLetter::kNarrowBuffer || kind == TypeLetter::kCountedNarrowBuffer ||
         kind == TypeLetter::kWideBuffer || kind == TypeLetter::kCountedWideBuffer;
}

bool IsWide(TypeLetter kind) {
  return kind == TypeLetter::kWideText || kind == TypeLetter::kWideBuffer ||
         kind == TypeLetter::kCountedWideText || kind == TypeLetter::kCountedWideBuffer;
}

bool IsCounted(TypeLetter kind) {
  return kind == TypeLetter::kCountedNarrowText || kind == TypeLetter::kCountedNarrowBuffer ||
         kind == TypeLetter::kCountedWideText || kind == TypeLetter::kCountedWideBuffer;
}

std::size_t RecordWords(const Operand& operand) {
  std::size_t bytes = sizeof(XLOPER12);
  if (const Value* value = std::get_if<Value>(&operand)) {
    bytes += TextUnits(*value) * sizeof(char16_t);
  } else if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand)) {
    bytes += (*array)->values.size() * sizeof(XLOPER12);
    for (const Value& element : (*array)->values) bytes += TextUnits(element) * sizeof(char16_t);
  } else if (const Reference* reference = std::get_if<Reference>(&operand)) {
    bytes += sizeof(XLMREF12) + reference->areas.size() * sizeof(XLREF12);
  }
  return Words(bytes);
}

/// The maximum number of words of an argument.
std::size_t WordsFor(TypeLetter kind, const Operand& operand) {
  switch (kind) {
    case TypeLetter::kValue:
    case TypeLetter::kValueOrReference:
      return RecordWords(operand);
    case TypeLetter::kSmallNumberArray:
    case TypeLetter::kNumberArray: {
      const ArrayPtr* array = std::get_if<ArrayPtr>(&operand);
      return 1 + (array == nullptr ? 1 : (*array)->values.size());
    }
    default:
      break;
  }
  if (IsBuffer(kind)) return Words(IsWide(kind) ? kWideBuffer * sizeof(char16_t) : kNarrowBuffer);
  const Value* value = std::get_if<Value>(&operand);
  const std::size_t units = value == nullptr ? 0 : TextUnits(*value);
  return Words((std::max<std::size_t>(units, 64) + 2) * sizeof(char16_t));
}

std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
  return std::rotl((hash ^ word) * 0x9E3779B97F4A7C15u, 29);
}

}  // namespace

// Four independent chains, so that arrays of a million records are checked at memory speed.
std::uint64_t ArgumentBlock::Fingerprint() const {
  const auto word = [this](std::size_t index) {
    std::uint64_t read;
    std::memcpy(&read, memory_.get() + index * 8, sizeof read);
    return read;
  };
  std::uint64_t chains[4] = {1, 2, 3, 4};
  std::size_t i = 0;
  for (; i + 4 <= taken_; i += 4) {
    for (std::size_t lane = 0; lane < 4; ++lane) chains[lane] = Mix(chains[lane], word(i + lane));
  }
  for (; i < taken_; ++i) chains[0] = Mix(chains[0], word(i));
  return Mix(Mix(chains[0], chains[1]), Mix(chains[2], chains[3]));
}

std::byte* ArgumentBlock::Take(std::size_t bytes, bool writable) {
  std::size_t& taken = writable ? writable_taken_ : taken_;
  std::byte* place = memory_.get() + ((writable ? read_only_ : 0) + taken) * 8;
  taken += Words(bytes);
  return place;
}

std::optional<ErrorCode> ArgumentBlock::Prepare(const TypeText& type,
                                                std::span<const Operand> operands,
                                                std::uint32_t calling_sheet,
                                                bool external_references_only) {
  calling_sheet_ = calling_sheet;
  external_references_only_ = external_references_only;
  machine_ = {};
  places_.assign(operands.size(), nullptr);
  taken_ = writable_taken_ = read_only_ = 0;
  const auto writable = [&](std::size_t i) {
    return IsBuffer(type.arguments[i]) || type.result_argument == i + 1;
  };
  std::size_t words = 0;
  for (std::size_t i = 0; i < operands.size(); ++i) {
    const std::size_t own = WordsFor(type.arguments[i], operands[i]);
    words += own;
    if (!writable(i)) read_only_ += own;
  }
  if (words > capacity_ || capacity_ > std::max<std::size_t>(words * 4, 1u << 20)) {
    memory_ = std::make_unique_for_overwrite<std::byte[]>(words * 8);
    capacity_ = words;
  }
  // Includes padding, so that the bytes can be compared.
  if (words > 0) std::memset(memory_.get(), 0, words * 8);
  for (std::size_t i = 0; i < operands.size(); ++i) {
    places_[i] = memory_.get() + (writable(i) ? read_only_ + writable_taken_ : taken_) * 8;
    if (const auto error = Add(type.arguments[i], operands[i], writable(i))) return error;
  }
  fingerprint_ = Fingerprint();
  return std::nullopt;
}

std::optional<ErrorCode> ArgumentBlock::Add(TypeLetter kind, const Operand& operand,
                                            bool writable) {
  switch (kind) {
    case TypeLetter::kValue:
    case TypeLetter::kValueOrReference:
      AddRecord(operand);
      return std::nullopt;
    case TypeLetter::kSmallNumberArray:
    case TypeLetter::kNumberArray:
      return AddNumbers(operand, kind == TypeLetter::kSmallNumberArray, writable);
    default:
      break;
  }
  const Value* given = std::get_if<Value>(&operand);
  const Value value = given == nullptr ? Value() : *given;
  switch (kind) {
    case TypeLetter::kNumber:
    case TypeLetter::kNumberPointer: {
      const std::optional<double> number = NumberOf(value);
      if (!number) return ErrorCode::kValue;
      if (kind == TypeLetter::kNumber) {
        machine_.AddDouble(*number);
        Take(8, writable);
        return std::nullopt;
      }
      std::byte* place = Take(sizeof *number, writable);
      std::memcpy(place, &*number, sizeof *number);
      machine_.AddPointer(place);
      return std::nullopt;
    }
    case TypeLetter::kBoolean:
    case TypeLetter::kBooleanPointer:
    case TypeLetter::kUnsignedShort:
    case TypeLetter::kShort:
    case TypeLetter::kShortPointer:
    case TypeLetter::kInteger:
    case TypeLetter::kIntegerPointer:
      return AddInteger(kind, value, writable);
    default:
      return AddText(kind, value, writable);
  }
}

void ArgumentBlock::AddRecord(const Operand& operand) {
  auto& record = *reinterpret_cast<XLOPER12*>(Take(sizeof(XLOPER12), false));
  machine_.AddPointer(&record);
  if (const Value* value = std::get_if<Value>(&operand)) {
    auto* text = reinterpret_cast<char16_t*>(Take(TextUnits(*value) * sizeof(char16_t), false));
    WriteValue(*value, record, text);
  } else if (const ArrayPtr* array = std::get_if<ArrayPtr>(&operand)) {
    FillArray(**array, record);
  } else if (const Reference* reference = std::get_if<Reference>(&operand)) {
    FillReference(*reference, record);
  } else {
    record.xltype = xltypeMissing;
  }
}

void ArgumentBlock::FillArray(const Array& array, XLOPER12& record) {
  const std::size_t size = array.values.size();
  auto* elements = reinterpret_cast<XLOPER12*>(Take(size * sizeof(XLOPER12), false));
  std::size_t units = 0;
  for (const Value& element : array.values) units += TextUnits(element);
  auto* text = reinterpret_cast<char16_t*>(Take(units * sizeof(char16_t), false));
  for (std::size_t i = 0; i < size; ++i) WriteValue(array.values[i], elements[i], text);
  record.xltype = xltypeMulti;
  record.val.array = {elements, array.rows, array.columns};
}

void ArgumentBlock::FillReference(const Reference& reference, XLOPER12& record) {
  if (reference.areas.size() == 1 && reference.sheet == calling_sheet_ &&
      !external_references_only_) {
    record.xltype = xltypeSRef;
    record.val.sref.count = 1;
    WriteRange(reference.areas[0], record.val.sref.ref);
    return;
  }
  const std::size_t count = reference.areas.size();
  auto* areas = reinterpret_cast<XLMREF12*>(
      Take(offsetof(XLMREF12, reftbl) + count * sizeof(XLREF12), false));
  areas->count = static_cast<std::uint16_t>(count);
  for (std::size_t i = 0; i < count; ++i) WriteRange(reference.areas[i], areas->reftbl[i]);
  record.xltype = xltypeRef;
  record.val.mref.lpmref = areas;
  record.val.mref.idSheet = SheetId(reference.sheet);
}

// K has two 16-bit dimensions, K% two 32-bit dimensions; the numbers follow at byte 8. Blank cells
// are 0, booleans 1 and 0; such an array cannot hold text or errors.
std::optional<ErrorCode> ArgumentBlock::AddNumbers(const Operand& operand, bool small,
                                                   bool writable) {
  Array single;
  const Array* array = &single;
  if (const ArrayPtr* given = std::get_if<ArrayPtr>(&operand)) {
    array = given->get();
  } else {
    const Value* value = std::get_if<Value>(&operand);
    single.values.push_back(value == nullptr ? Value() : *value);
  }
  if (small && (array->rows > 0xFFFF || array->columns > 0xFFFF)) return ErrorCode::kValue;
  std::byte* place = Take(8 + array->values.size() * sizeof(double), writable);
  if (small) {
    const std::uint16_t dimensions[] = {static_cast<std::uint16_t>(array->rows),
                                        static_cast<std::uint16_t>(array->columns)};
    std::memcpy(place, dimensions, sizeof dimensions);
  } else {
    const std::int32_t dimensions[] = {array->rows, array->columns};
    std::memcpy(place, dimensions, sizeof dimensions);
  }
  auto* numbers = reinterpret_cast<double*>(place + 8);
  for (const Value& value : array->values) {
    const std::optional<double> number =
        value.text() == nullptr ? NumberOf(value) : std::optional<double>();
    if (!number) return ErrorCode::kValue;
    *numbers++ = *number;
  }
  machine_.AddPointer(place);
  return std::nullopt;
}

// Narrow text is Latin-1; all other characters become question marks.
std::optional<ErrorCode> ArgumentBlock::AddText(TypeLetter kind, const Value& value,
                                                bool writable) {
  const std::optional<std::u16string> text = TextOf(value);
  const bool wide = IsWide(kind);
  if (!text || text->size() > (wide ? kExcelTextLimit : kNarrowLimit)) return ErrorCode::kValue;
  const bool counted = IsCounted(kind);
  const std::size_t room = IsBuffer(kind) ? (wide ? kWideBuffer : kNarrowBuffer) : text->size() + 1;
  std::byte* place = Take(room * (wide ? sizeof(char16_t) : 1), writable);
  machine_.AddPointer(place);
  if (wide) {
    auto* units = reinterpret_cast<char16_t*>(place);
    if (counted) *units++ = static_cast<char16_t>(text->size());
    std::copy(text->begin(), text->end(), units);
    return std::nullopt;
  }
  auto* bytes = reinterpret_cast<unsigned char*>(place);
  if (counted) *bytes++ = static_cast<unsigned char>(text->size());
  for (const char16_t unit : *text)
    *bytes++ = unit <= 0xFF ? static_cast<unsigned char>(unit) : static_cast<unsigned char>('?');
  return std::nullopt;
}

std::optional<ErrorCode> ArgumentBlock::AddInteger(TypeLetter kind, const Value& value,
                                                   bool writable) {
  std::int32_t integer = 0;
  if (kind == TypeLetter::kBoolean || kind == TypeLetter::kBooleanPointer) {
    const std::optional<bool> boolean = BooleanOf(value);
    if (!boolean) return ErrorCode::kValue;
    integer = *boolean ? 1 : 0;
  } else {
    std::int32_t low = INT16_MIN;
    std::int32_t high = INT16_MAX;
    if (kind == TypeLetter::kUnsignedShort) {
      low = 0;
      high = UINT16_MAX;
    } else if (kind == TypeLetter::kInteger || kind == TypeLetter::kIntegerPointer) {
      low = INT32_MIN;
      high = INT32_MAX;
    }
    const IntegerOutcome outcome = IntegerOf(value, low, high);
    if (!outcome.integer) return outcome.error;
    integer = *outcome.integer;
  }
  std::byte* place = Take(8, writable);
  const bool by_pointer = kind == TypeLetter::kBooleanPointer ||
                          kind == TypeLetter::kShortPointer || kind == TypeLetter::kIntegerPointer;
  if (by_pointer) {
    std::memcpy(place, &integer, sizeof integer);  // the low half comes first
    machine_.AddPointer(place);
  } else {
    machine_.AddInteger(static_cast<std::uint64_t>(static_cast<std::int64_t>(integer)));
  }
  return std::nullopt;
}

}  // namespace zavhost
