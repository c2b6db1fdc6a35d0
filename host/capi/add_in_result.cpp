// Results that a function of the add-in returns by pointer: texts, arrays and records, checked
// before use.

#include <fmt/format.h>

#include <cstring>

#include "host/capi/add_in_function.h"
#include "host/capi/excel_record.h"

namespace zavhost {
namespace {

template <class T>
T Read(const void* pointer, std::size_t offset = 0) {
  T value;
  std::memcpy(&value, static_cast<const std::byte*>(pointer) + offset, sizeof value);
  return value;
}

/// The length of a zero-terminated text; `limit` + 1 if there is no zero within the limit.
template <class Unit>
std::size_t BoundedLength(const Unit* text, std::size_t limit) {
  std::size_t length = 0;
  while (length <= limit && text[length] != 0) ++length;
  return length;
}

std::u16string FromLatin1(const unsigned char* text, std::size_t length) {
  return {text, text + length};
}

}  // namespace

Operand AddInFunction::Malformed(const std::string& what) {
  api_.judge().Report(ViolationKind::kMalformedResult, what + " was returned");
  return Value(ErrorCode::kValue);
}

Operand AddInFunction::TakePointer(const void* pointer, TypeLetter kind) {
  if (pointer == nullptr) return Value(ErrorCode::kNum);
  switch (kind) {
    case TypeLetter::kNumberPointer:
      return NumberResult(Read<double>(pointer));
    case TypeLetter::kBooleanPointer:
      return Value(Read<std::int16_t>(pointer) != 0);
    case TypeLetter::kShortPointer:
      return Value(static_cast<double>(Read<std::int16_t>(pointer)));
    case TypeLetter::kIntegerPointer:
      return Value(static_cast<double>(Read<std::int32_t>(pointer)));
    case TypeLetter::kSmallNumberArray:
    case TypeLetter::kNumberArray:
      return TakeNumbers(pointer, kind == TypeLetter::kSmallNumberArray);
    case TypeLetter::kValue:
    case TypeLetter::kValueOrReference:
      return TakeRecord(static_cast<XLOPER12*>(const_cast<void*>(pointer)));
    default:
      return TakeText(pointer, kind);
  }
}

Operand AddInFunction::TakeText(const void* pointer, TypeLetter kind) {
  const auto* narrow = static_cast<const unsigned char*>(pointer);
  const auto* wide = static_cast<const char16_t*>(pointer);
  switch (kind) {
    case TypeLetter::kCountedNarrowText:
    case TypeLetter::kCountedNarrowBuffer:
      return Value(FromLatin1(narrow + 1, narrow[0]));
    case TypeLetter::kCountedWideText:
    case TypeLetter::kCountedWideBuffer:
      if (wide[0] > kExcelTextLimit)
        return Malformed(fmt::format("a string of {} characters", static_cast<unsigned>(wide[0])));
      return Value(std::u16string_view(wide + 1, wide[0]));
    case TypeLetter::kWideText:
    case TypeLetter::kWideBuffer: {
      const std::size_t length = BoundedLength(wide, kExcelTextLimit);
      if (length > kExcelTextLimit) return Malformed("a string of more than 32,767 characters");
      return Value(std::u16string_view(wide, length));
    }
    default: {
      const std::size_t length = BoundedLength(narrow, kNarrowLimit);
      if (length > kNarrowLimit) return Malformed("a narrow string of more than 255 characters");
      return Value(FromLatin1(narrow, length));
    }
  }
}

Operand AddInFunction::TakeNumbers(const void* pointer, bool small) {
  const std::int32_t rows = small ? Read<std::uint16_t>(pointer) : Read<std::int32_t>(pointer);
  const std::int32_t columns =
      small ? Read<std::uint16_t>(pointer, 2) : Read<std::int32_t>(pointer, 4);
  if (rows < 1 || columns < 1 || rows > kExcelRows || columns > kExcelColumns ||
      static_cast<std::int64_t>(rows) * columns > kElementLimit)
    return Malformed(fmt::format("an array of {} rows and {} columns", rows, columns));
  auto array = std::make_shared<Array>();
  array->rows = rows;
  array->columns = columns;
  const std::size_t size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  array->values.reserve(size);
  for (std::size_t i = 0; i < size; ++i)
    array->values.push_back(NumberResult(Read<double>(pointer, 8 + i * sizeof(double))));
  return ArrayPtr(std::move(array));
}

Operand AddInFunction::TakeRecord(XLOPER12* record) {
  const std::uint32_t type = TypeOf(*record);
  if ((type == xltypeStr || type == xltypeMulti) && api_.memory().WasFreed(record->val.str))
    return Malformed("a value in memory that was already freed");
  const bool may_be_reference = type_.result == TypeLetter::kValueOrReference;
  if (const auto problem = CheckRecord(*record, may_be_reference)) return Malformed(*problem);

  Operand result;
  if (type == xltypeMulti) {
    result = std::make_shared<const Array>(ToArray(*record));
  } else if (type == xltypeRef || type == xltypeSRef) {
    const auto reference =
        ToReference(*record, api_.current_sheet(), api_.cells().cells_workbook());
    result = reference ? Operand(*reference) : Operand(Value(ErrorCode::kRef));
  } else {
    result = ToValue(*record);
  }
  ReleaseRecord(record);
  return result;
}

void AddInFunction::ReleaseRecord(XLOPER12* record) {
  if ((record->xltype & xlbitXLFree) != 0) {
    switch (TypeOf(*record)) {
      case xltypeStr:
        return api_.memory().Free(record->val.str);
      case xltypeMulti:
        return api_.memory().Free(record->val.array.lparray);
      case xltypeRef:
        return api_.memory().Free(record->val.mref.lpmref);
      default:
        return;
    }
  }
  if ((record->xltype & xlbitDLLFree) == 0) return;
  void* free_function = add_in_.module->FindExport("xlAutoFree12");
  if (free_function == nullptr) {
    api_.judge().Report(ViolationKind::kMalformedResult,
                        "a value for the add-in to free was returned, and xlAutoFree12 is missing");
    return;
  }
  MachineArguments arguments;
  arguments.AddPointer(record);
  arguments.CallForInteger(free_function);
}

}  // namespace zavhost
