#include "excel/xxloper.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "excel/excel_call.h"
#include "excel/wide_text.h"

namespace zavrel {
namespace {

constexpr XLOPER12 ErrorRecord(std::int32_t code) {
  XLOPER12 record{};
  record.val.err = code;
  record.xltype = xltypeErr;
  return record;
}

constexpr XLOPER12 BooleanRecord(bool boolean) {
  XLOPER12 record{};
  record.val.xbool = boolean ? 1 : 0;
  record.xltype = xltypeBool;
  return record;
}

constexpr XLOPER12 EmptyRecord(std::uint32_t type) {
  XLOPER12 record{};
  record.xltype = type;
  return record;
}

// The shared records exist before any code runs and are never written to by the library. They are
// not const because a host may mark and unmark a returned record for a moment, which needs writable
// memory.
constinit XLOPER12 shared_missing = EmptyRecord(xltypeMissing);
constinit XLOPER12 shared_nil = EmptyRecord(xltypeNil);
constinit XCHAR no_units[] = {0, 0};  // the count, and a terminator
constinit XLOPER12 shared_empty_text{.val = {.str = no_units}, .xltype = xltypeStr};
constinit XLOPER12 shared_booleans[] = {BooleanRecord(false), BooleanRecord(true)};
constinit std::array shared_errors = {
    ErrorRecord(xlerrDiv0),   ErrorRecord(xlerrValue),       ErrorRecord(xlerrRef),
    ErrorRecord(xlerrName),   ErrorRecord(xlerrNum),         ErrorRecord(xlerrNA),
    ErrorRecord(xlerrCalc),   ErrorRecord(xlerrGettingData), ErrorRecord(xlerrSpill),
    ErrorRecord(xlerrField),  ErrorRecord(xlerrConnect),     ErrorRecord(xlerrBlocked),
    ErrorRecord(xlerrUnknown)};

// Wraps a record that lives as long as the library: it has no owner, and nothing is counted.
std::shared_ptr<const XLOPER12> Uncounted(const XLOPER12& record) noexcept {
  return {std::shared_ptr<const XLOPER12>(), &record};
}

/// The owner of every argument: one counter for all of them, so that wrapping one allocates
/// nothing. Never destroyed, because values may be released while the library is being unloaded.
const std::shared_ptr<const XLOPER12>& ArgumentOwner() {
  static const auto& owner =
      *new std::shared_ptr<const XLOPER12>(&shared_missing, ExcelOwnsItSoDoNotFree{});
  return owner;
}

/// The count and the units. The terminator that a std::u16string adds is not needed.
std::u16string CountedText(std::u16string_view text) {
  text = CutToUnits(text, kExcelTextLimit);
  std::u16string counted;
  counted.reserve(text.size() + 1);
  counted.push_back(static_cast<XCHAR>(text.size()));
  counted.append(text);
  return counted;
}

struct TextValue {
  explicit TextValue(std::u16string_view text) : counted(CountedText(text)) {
    record.xltype = xltypeStr;
    record.val.str = counted.data();
  }
  TextValue(const TextValue&) = delete;
  TextValue& operator=(const TextValue&) = delete;

  std::u16string counted;
  XLOPER12 record{};
};

std::int32_t InRange(std::int32_t count, std::int32_t most) { return std::clamp(count, 1, most); }

XXloper CopyOf(const XXloper& value) {
  const XLOPER12& record = value.record();
  switch (value.type()) {
    case xltypeNum:
      return XXloper::Number(record.val.num);
    case xltypeInt:
      return XXloper::Integer(record.val.w);
    case xltypeBool:
      return XXloper::Boolean(record.val.xbool != 0);
    case xltypeErr:
      return XXloper::ErrorByCode(record.val.err);
    case xltypeStr:
      return XXloper::Text(value.text());
    case xltypeMulti: {
      const std::span<const XLOPER12> elements = value.elements();
      if (elements.empty()) break;
      XXloperArray copy(record.val.array.rows, record.val.array.columns);
      for (std::size_t i = 0; i < elements.size(); ++i) copy.Set(i, elements[i]);
      return std::move(copy).Finish();
    }
    case xltypeMissing:
      return XXloper::Missing();
    case xltypeNil:
      return XXloper::Nil();
    default:
      break;
  }
  return XXloper::Error(ExcelError::kValue);
}

}  // namespace

std::span<const XLOPER12> ElementsIn(const XLOPER12& record) {
  if (TypeOf(record) != xltypeMulti || record.val.array.lparray == nullptr) return {};
  const std::int32_t rows = record.val.array.rows;
  const std::int32_t columns = record.val.array.columns;
  if (rows < 1 || rows > kExcelRows || columns < 1 || columns > kExcelColumns) return {};
  return {record.val.array.lparray,
          static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns)};
}

std::optional<std::int32_t> FirstError(const XLOPER12& record) {
  if (TypeOf(record) == xltypeErr) return record.val.err;
  for (const XLOPER12& element : ElementsIn(record)) {
    if (TypeOf(element) == xltypeErr) return element.val.err;
  }
  return std::nullopt;
}

void CallExcelToFree::operator()(const XLOPER12* record) const noexcept {
  const std::unique_ptr<const XLOPER12> memory(record);
  // The record was made by CallExcel and is not const; Excel nulls the pointer in it.
  FreeThroughExcel(const_cast<XLOPER12*>(record));
}

std::shared_ptr<XLOPER12> NewExcelResult() {
  // Without memory to own it, it is freed at once, as a whole value.
  std::shared_ptr<XLOPER12> record(new XLOPER12(EmptyRecord(xltypeNil)), CallExcelToFree{});
  *record = {};
  return record;
}

XXloper::XXloper() noexcept : XXloper(Missing()) {}

XXloper XXloper::FromArgument(const XLOPER12* argument) {
  if (argument == nullptr) return Missing();
  return XXloper(std::shared_ptr<const XLOPER12>(ArgumentOwner(), argument));
}

XXloper XXloper::FromExcelResult(std::shared_ptr<XLOPER12> record) noexcept {
  return XXloper(std::move(record));
}

XXloper XXloper::Number(double number) {
  const auto record = std::make_shared<XLOPER12>();
  record->xltype = xltypeNum;
  record->val.num = number;
  return XXloper(record);
}

XXloper XXloper::Integer(std::int32_t integer) {
  const auto record = std::make_shared<XLOPER12>();
  record->xltype = xltypeInt;
  record->val.w = integer;
  return XXloper(record);
}

XXloper XXloper::Boolean(bool boolean) noexcept {
  return XXloper(Uncounted(shared_booleans[boolean ? 1 : 0]));
}

XXloper XXloper::Text(std::u16string_view text) {
  const auto value = std::make_shared<TextValue>(text);
  return XXloper(std::shared_ptr<const XLOPER12>(value, &value->record));
}

XXloper XXloper::Missing() noexcept { return XXloper(Uncounted(shared_missing)); }

XXloper XXloper::Nil() noexcept { return XXloper(Uncounted(shared_nil)); }

XXloper XXloper::EmptyText() noexcept { return XXloper(Uncounted(shared_empty_text)); }

XXloper XXloper::Error(ExcelError error) noexcept {
  const auto found = std::find_if(
      shared_errors.begin(), shared_errors.end(),
      [&](const XLOPER12& record) { return record.val.err == static_cast<std::int32_t>(error); });
  return found != shared_errors.end() ? XXloper(Uncounted(*found)) : Error(ExcelError::kValue);
}

XXloper XXloper::ErrorByCode(std::int32_t code) {
  XXloper shared = Error(static_cast<ExcelError>(code));
  if (shared.record().val.err == code) return shared;
  return XXloper(std::make_shared<const XLOPER12>(ErrorRecord(code)));
}

XXloper XXloper::Element(std::size_t index) const {
  const std::span<const XLOPER12> all = elements();
  if (index >= all.size()) return Missing();
  return XXloper(std::shared_ptr<const XLOPER12>(record_, &all[index]));
}

XXloper XXloper::Owned() const {
  const bool is_argument = std::get_deleter<ExcelOwnsItSoDoNotFree>(record_) != nullptr;
  const bool is_excel_filled = std::get_deleter<CallExcelToFree>(record_) != nullptr;
  return is_argument || is_excel_filled ? CopyOf(*this) : *this;
}

struct XXloperArray::Storage {
  XLOPER12 record{};
  std::unique_ptr<XLOPER12[]> elements;
  std::size_t size = 0;
  std::vector<std::unique_ptr<XCHAR[]>> texts;
};

XXloperArray::XXloperArray(std::int32_t rows, std::int32_t columns, ExcelError fill)
    : storage_(std::make_shared<Storage>()) {
  rows = InRange(rows, kExcelRows);
  columns = InRange(columns, kExcelColumns);
  storage_->size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  storage_->elements = std::make_unique_for_overwrite<XLOPER12[]>(storage_->size);
  std::fill_n(storage_->elements.get(), storage_->size,
              ErrorRecord(static_cast<std::int32_t>(fill)));
  XLOPER12& record = storage_->record;
  record.xltype = xltypeMulti;
  record.val.array.lparray = storage_->elements.get();
  record.val.array.rows = rows;
  record.val.array.columns = columns;
}

XXloperArray::~XXloperArray() = default;

std::size_t XXloperArray::size() const { return storage_ ? storage_->size : 0; }

XLOPER12& XXloperArray::At(std::size_t index) {
  if (index >= size()) throw std::out_of_range("XXloperArray");
  return storage_->elements[index];
}

void XXloperArray::SetNumber(std::size_t index, double number) {
  if (!std::isfinite(number)) return SetError(index, xlerrNum);
  XLOPER12& element = At(index);
  element.val.num = number;
  element.xltype = xltypeNum;
}

void XXloperArray::SetText(std::size_t index, std::u16string_view text) {
  XLOPER12& element = At(index);
  text = CutToUnits(text, kExcelTextLimit);
  auto counted = std::make_unique_for_overwrite<XCHAR[]>(text.size() + 1);
  counted[0] = static_cast<XCHAR>(text.size());
  std::copy(text.begin(), text.end(), counted.get() + 1);
  storage_->texts.push_back(std::move(counted));
  element.val.str = storage_->texts.back().get();
  element.xltype = xltypeStr;
}

void XXloperArray::SetBoolean(std::size_t index, bool boolean) {
  At(index) = BooleanRecord(boolean);
}

void XXloperArray::SetError(std::size_t index, std::int32_t code) { At(index) = ErrorRecord(code); }

void XXloperArray::SetEmpty(std::size_t index) { At(index) = EmptyRecord(xltypeNil); }

void XXloperArray::Set(std::size_t index, const XLOPER12& value) {
  switch (TypeOf(value)) {
    case xltypeNum:
      return SetNumber(index, value.val.num);
    case xltypeStr:
      return SetText(index, TextIn(value));
    case xltypeBool:
      return SetBoolean(index, value.val.xbool != 0);
    case xltypeErr:
      return SetError(index, value.val.err);
    case xltypeMissing:
    case xltypeNil:
      return SetEmpty(index);
    case xltypeInt: {
      XLOPER12& element = At(index);
      element.val.w = value.val.w;
      element.xltype = xltypeInt;
      return;
    }
    default:
      return SetError(index, xlerrValue);
  }
}

XXloper XXloperArray::Finish() && {
  const std::shared_ptr<Storage> storage = std::move(storage_);
  if (storage == nullptr) return XXloper();
  return XXloper(std::shared_ptr<const XLOPER12>(storage, &storage->record));
}

}  // namespace zavrel
