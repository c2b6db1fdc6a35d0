#include "host/capi/excel_record.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zavhost {
namespace {

constexpr std::uint64_t kFirstSheetId = 0x2A5C0000;
constexpr std::uint64_t kSheetIdStep = 16;

template <class Visit>
void VisitCells(const Sheet& sheet, const CellRange& range, Visit visit) {
  const std::optional<CellRange>& used = sheet.used_range();
  if (!used) return;
  const std::int32_t last_column = std::min(range.last_column, used->last_column);
  for (std::int32_t column = std::max(range.first_column, used->first_column);
       column <= last_column; ++column) {
    const Sheet::Column& cells = sheet.column(column);
    auto cell = std::lower_bound(
        cells.begin(), cells.end(), range.first_row,
        [](const Sheet::Entry& entry, std::int32_t row) { return entry.row < row; });
    for (; cell != cells.end() && cell->row <= range.last_row; ++cell)
      visit(cell->row, column, cell->value);
  }
}

std::string TypeName(std::uint32_t type) { return fmt::format("type 0x{:04X}", type); }

std::optional<std::string> CheckText(const XCHAR* text) {
  if (text == nullptr) return "a string without text";
  if (text[0] > kExcelTextLimit)
    return fmt::format("a string of {} characters, more than the 32,767 that a cell holds",
                       static_cast<unsigned>(text[0]));
  return std::nullopt;
}

bool IsOneValue(std::uint32_t type) {
  switch (type) {
    case xltypeNum:
    case xltypeStr:
    case xltypeBool:
    case xltypeErr:
    case xltypeInt:
    case xltypeNil:
    case xltypeMissing:
      return true;
    default:
      return false;
  }
}

std::optional<std::string> CheckArray(const XLOPER12& record) {
  const auto& array = record.val.array;
  if (array.rows < 1 || array.columns < 1 || array.rows > kExcelRows ||
      array.columns > kExcelColumns ||
      static_cast<std::int64_t>(array.rows) * array.columns > kElementLimit) {
    return fmt::format("an array of {} rows and {} columns", array.rows, array.columns);
  }
  if (array.lparray == nullptr)
    return fmt::format("an array of {} x {} without data", array.rows, array.columns);
  const std::size_t size =
      static_cast<std::size_t>(array.rows) * static_cast<std::size_t>(array.columns);
  for (std::size_t i = 0; i < size; ++i) {
    const XLOPER12& element = array.lparray[i];
    const std::uint32_t type = TypeOf(element);
    if (!IsOneValue(type)) {
      return fmt::format("an array with an element of {}",
                         type == xltypeMulti ? "type array" : TypeName(element.xltype));
    }
    if (type != xltypeStr) continue;
    if (auto problem = CheckText(element.val.str)) return "an array with " + *problem;
  }
  return std::nullopt;
}

std::optional<std::string> CheckReference(const XLOPER12& record) {
  if (TypeOf(record) == xltypeSRef) {
    if (record.val.sref.count != 1) return "a reference with a count other than 1";
    return ToRange(record.val.sref.ref) ? std::nullopt
                                        : std::optional<std::string>("a reference off the sheet");
  }
  const XLMREF12* areas = record.val.mref.lpmref;
  if (areas == nullptr) return std::nullopt;  // names only a sheet
  if (areas->count == 0) return "a reference with an empty list of areas";
  for (std::size_t i = 0; i < areas->count; ++i) {
    if (!ToRange(areas->reftbl[i])) return "a reference off the sheet";
  }
  return std::nullopt;
}

}  // namespace

std::uint64_t SheetId(std::uint32_t sheet) { return kFirstSheetId + sheet * kSheetIdStep; }

std::optional<std::uint32_t> SheetFromId(std::uint64_t id, std::uint32_t current,
                                         const Workbook& workbook) {
  const std::uint64_t own_id = id == 0 ? SheetId(current) : id;
  if (own_id < kFirstSheetId || (own_id - kFirstSheetId) % kSheetIdStep != 0) return std::nullopt;
  const std::uint64_t sheet = (own_id - kFirstSheetId) / kSheetIdStep;
  if (sheet >= workbook.sheets.size()) return std::nullopt;
  return static_cast<std::uint32_t>(sheet);
}

std::size_t TextUnits(const Value& value) {
  const std::u16string* text = value.text();
  return text == nullptr ? 0 : std::min(text->size(), kExcelTextLimit) + 1;
}

void WriteText(std::u16string_view value, XLOPER12& record, char16_t*& text) {
  std::memset(&record, 0, sizeof record);
  record.xltype = xltypeStr;
  record.val.str = text;
  const std::size_t length = std::min(value.size(), kExcelTextLimit);
  *text++ = static_cast<char16_t>(length);
  text = std::copy_n(value.begin(), length, text);
}

void WriteError(std::int32_t code, XLOPER12& record) {
  std::memset(&record, 0, sizeof record);
  record.xltype = xltypeErr;
  record.val.err = code;
}

void WriteRange(const CellRange& range, XLREF12& record) {
  record = {range.first_row, range.last_row, range.first_column, range.last_column};
}

void WriteValue(const Value& value, XLOPER12& record, char16_t*& text) {
  std::memset(&record, 0, sizeof record);
  if (const double* number = value.number()) {
    record.xltype = xltypeNum;
    record.val.num = *number;
  } else if (const bool* boolean = value.boolean()) {
    record.xltype = xltypeBool;
    record.val.xbool = *boolean ? 1 : 0;
  } else if (const std::u16string* content = value.text()) {
    WriteText(*content, record, text);
  } else if (const ErrorCode* error = value.error()) {
    WriteError(static_cast<std::int32_t>(*error), record);
  } else {
    record.xltype = xltypeNil;
  }
}

void WriteCells(const Sheet& sheet, const CellRange& range, XLOPER12* elements, char16_t* text) {
  const auto columns = static_cast<std::size_t>(range.columns());
  XLOPER12 blank;
  std::memset(&blank, 0, sizeof blank);
  blank.xltype = xltypeNil;
  std::fill_n(elements, static_cast<std::size_t>(range.rows()) * columns, blank);
  VisitCells(sheet, range, [&](std::int32_t row, std::int32_t column, const Value& value) {
    const std::size_t index = static_cast<std::size_t>(row - range.first_row) * columns +
                              static_cast<std::size_t>(column - range.first_column);
    WriteValue(value, elements[index], text);
  });
}

std::size_t TextUnits(const Sheet& sheet, const CellRange& range) {
  std::size_t units = 0;
  VisitCells(sheet, range,
             [&](std::int32_t, std::int32_t, const Value& value) { units += TextUnits(value); });
  return units;
}

std::size_t CountUsed(const Sheet& sheet, const CellRange& range) {
  std::size_t used = 0;
  VisitCells(sheet, range, [&](std::int32_t, std::int32_t, const Value& value) {
    if (!value.IsBlank()) ++used;
  });
  return used;
}

std::optional<CellRange> ToRange(const XLREF12& area) {
  if (area.rwFirst < 0 || area.colFirst < 0 || area.rwLast < area.rwFirst ||
      area.colLast < area.colFirst || area.rwLast >= kExcelRows || area.colLast >= kExcelColumns)
    return std::nullopt;
  return CellRange{area.rwFirst, area.colFirst, area.rwLast, area.colLast};
}

std::optional<Reference> ToReference(const XLOPER12& record, std::uint32_t current_sheet,
                                     const Workbook& workbook) {
  const bool is_local = TypeOf(record) == xltypeSRef;
  std::span<const XLREF12> areas{&record.val.sref.ref, 1};
  if (!is_local) {
    const XLMREF12* external = record.val.mref.lpmref;
    if (external == nullptr) return std::nullopt;
    areas = {external->reftbl, external->count};
  }
  const std::optional<std::uint32_t> sheet =
      SheetFromId(is_local ? 0 : record.val.mref.idSheet, current_sheet, workbook);
  if (!sheet || areas.empty()) return std::nullopt;
  Reference reference{*sheet, {}};
  for (const XLREF12& area : areas) {
    const std::optional<CellRange> range = ToRange(area);
    if (!range) return std::nullopt;
    reference.areas.push_back(*range);
  }
  return reference;
}

Value NumberResult(double number) {
  if (!std::isfinite(number)) return ErrorCode::kNum;
  return std::fpclassify(number) == FP_SUBNORMAL ? 0.0 : number;
}

Value ToValue(const XLOPER12& record) {
  switch (TypeOf(record)) {
    case xltypeNum:
      return NumberResult(record.val.num);
    case xltypeInt:
      return static_cast<double>(record.val.w);
    case xltypeBool:
      return record.val.xbool != 0;
    case xltypeErr:
      return static_cast<ErrorCode>(record.val.err);
    case xltypeStr:
      return Value(TextIn(record));
    default:
      return {};
  }
}

Array ToArray(const XLOPER12& record) {
  Array array;
  array.rows = record.val.array.rows;
  array.columns = record.val.array.columns;
  const std::size_t size =
      static_cast<std::size_t>(array.rows) * static_cast<std::size_t>(array.columns);
  array.values.reserve(size);
  for (std::size_t i = 0; i < size; ++i)
    array.values.push_back(ToValue(record.val.array.lparray[i]));
  return array;
}

std::optional<std::string> CheckRecord(const XLOPER12& record, bool may_be_reference) {
  const std::uint32_t type = TypeOf(record);
  const std::uint32_t flags = record.xltype & ~xltypeMask;
  if ((flags & ~(xlbitXLFree | xlbitDLLFree)) != 0 || flags == (xlbitXLFree | xlbitDLLFree))
    return "a value of unknown " + TypeName(record.xltype);
  if (type == xltypeStr) return CheckText(record.val.str);
  if (IsOneValue(type)) return std::nullopt;
  if (type == xltypeMulti) return CheckArray(record);
  if (type == xltypeRef || type == xltypeSRef) {
    if (!may_be_reference) return "a reference in place of a value";
    return CheckReference(record);
  }
  return "a value of unknown " + TypeName(record.xltype);
}

}  // namespace zavhost
