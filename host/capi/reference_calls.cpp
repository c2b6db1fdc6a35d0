// The calls of the C API that read and write cells, and those for sheets.

#include <algorithm>
#include <cstring>

#include "host/capi/excel_api.h"
#include "host/capi/excel_record.h"
#include "host/capi/scalar_conversion.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

// xlCoerce and xlSet refuse more than this: 8 million cells are 256 MB of records.
constexpr std::int64_t kCellLimit = 1 << 23;

std::int64_t CellCount(const CellRange& range) {
  return static_cast<std::int64_t>(range.rows()) * range.columns();
}

std::uint32_t TypeOf(const Value& value) {
  if (value.number() != nullptr) return xltypeNum;
  if (value.text() != nullptr) return xltypeStr;
  if (value.boolean() != nullptr) return xltypeBool;
  if (value.error() != nullptr) return xltypeErr;
  return xltypeNil;
}

std::u16string QualifiedName(const Workbook& workbook, std::uint32_t sheet) {
  return u"[" + workbook.file_name + u"]" + workbook.sheets[sheet].name();
}

std::optional<std::uint32_t> SheetByName(std::u16string_view name, const Workbook& workbook) {
  if (!name.empty() && name.front() == u'[') {
    const std::size_t end = name.find(u']');
    if (end == std::u16string_view::npos ||
        !EqualIgnoringCase(name.substr(1, end - 1), workbook.file_name))
      return std::nullopt;
    name.remove_prefix(end + 1);
  }
  return workbook.FindSheet(name);
}

}  // namespace

bool ExcelApi::MeetsUncalculated(std::uint32_t sheet, const CellRange& range) {
  return context_ == CallContext::kWorksheetFunction && cells_.MeetsUncalculated(sheet, range);
}

// xlCoerce

int ExcelApi::Coerce(const Arguments& arguments, XLOPER12& result) {
  std::uint32_t types = 0;
  if (arguments.Has(1)) {
    const IntegerOutcome mask = IntegerOf(ToValue(arguments[1]), 1, xltypeMask);
    if (!mask.integer) return xlretInvXloper;
    types = static_cast<std::uint32_t>(*mask.integer);
  }
  const XLOPER12& source = arguments[0];
  const std::uint32_t type = TypeOf(source);
  if (type == xltypeRef || type == xltypeSRef) return CoerceReference(source, types, result);
  if (type == xltypeMulti) {
    if (types == 0 || (types & xltypeMulti) != 0) return CopyArray(source, result);
    return CoerceValue(ToValue(source.val.array.lparray[0]), types, result);
  }
  return CoerceValue(ToValue(source), types, result);
}

int ExcelApi::CoerceReference(const XLOPER12& source, std::uint32_t types, XLOPER12& result) {
  if ((types & (xltypeRef | xltypeSRef)) != 0) return CopyReference(source, result);
  const std::optional<Reference> reference =
      ToReference(source, current_sheet(), cells_.cells_workbook());
  if (!reference) return xlretInvXloper;
  if (reference->areas.size() != 1) return xlretFailed;
  const CellRange& range = reference->areas[0];
  const bool one_cell = range.IsSingleCell() || (types != 0 && (types & xltypeMulti) == 0);
  if (!one_cell) return CoerceRange(*reference, result);
  const CellRange top_left{range.first_row, range.first_column, range.first_row,
                           range.first_column};
  if (MeetsUncalculated(reference->sheet, top_left)) return xlretUncalced;
  const Sheet& sheet = cells_.cells_workbook().sheets[reference->sheet];
  return CoerceValue(sheet.At(range.first_row, range.first_column), types, result);
}

int ExcelApi::CoerceRange(const Reference& reference, XLOPER12& result) {
  const Sheet& sheet = cells_.cells_workbook().sheets[reference.sheet];
  CellRange range = reference.areas[0];
  if (MeetsUncalculated(reference.sheet, range)) return xlretUncalced;
  if (behaviour_.clip_whole_columns) range = sheet.Clipped(range);
  if (CellCount(range) > kCellLimit) return xlretFailed;
  const auto size = static_cast<std::size_t>(CellCount(range));
  const std::size_t units = TextUnits(sheet, range);
  void* block = memory_.Give(size * sizeof(XLOPER12) + units * sizeof(char16_t), function_name_);
  auto* elements = static_cast<XLOPER12*>(block);
  WriteCells(sheet, range, elements, reinterpret_cast<char16_t*>(elements + size));
  result.xltype = xltypeMulti;
  result.val.array = {elements, range.rows(), range.columns()};
  return xlretSuccess;
}

int ExcelApi::CoerceValue(const Value& value, std::uint32_t types, XLOPER12& result) {
  if (types == 0 || (types & TypeOf(value)) != 0) {
    GiveValue(value, result);
    return xlretSuccess;
  }
  if ((types & xltypeNum) != 0) {
    if (const std::optional<double> number = NumberOf(value)) {
      GiveValue(*number, result);
      return xlretSuccess;
    }
  }
  if ((types & xltypeStr) != 0) {
    if (const std::optional<std::u16string> text = TextOf(value)) {
      GiveText(*text, result);
      return xlretSuccess;
    }
  }
  if ((types & xltypeBool) != 0) {
    if (const std::optional<bool> boolean = BooleanOf(value)) {
      GiveValue(*boolean, result);
      return xlretSuccess;
    }
  }
  if ((types & xltypeInt) != 0) {
    const IntegerOutcome outcome = IntegerOf(value, INT32_MIN, INT32_MAX);
    if (outcome.integer) {
      result.xltype = xltypeInt;
      result.val.w = *outcome.integer;
      return xlretSuccess;
    }
  }
  if ((types & xltypeMulti) != 0) {
    const std::size_t bytes = sizeof(XLOPER12) + TextUnits(value) * sizeof(char16_t);
    auto* element = static_cast<XLOPER12*>(memory_.Give(bytes, function_name_));
    auto* text = reinterpret_cast<char16_t*>(element + 1);
    WriteValue(value, *element, text);
    result.xltype = xltypeMulti;
    result.val.array = {element, 1, 1};
    return xlretSuccess;
  }
  return xlretFailed;
}

int ExcelApi::CopyArray(const XLOPER12& source, XLOPER12& result) {
  const auto& array = source.val.array;
  const std::size_t size =
      static_cast<std::size_t>(array.rows) * static_cast<std::size_t>(array.columns);
  std::size_t units = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (TypeOf(array.lparray[i]) == xltypeStr)
      units += static_cast<std::size_t>(array.lparray[i].val.str[0]) + 1;
  }
  auto* elements = static_cast<XLOPER12*>(
      memory_.Give(size * sizeof(XLOPER12) + units * sizeof(char16_t), function_name_));
  auto* text = reinterpret_cast<char16_t*>(elements + size);
  for (std::size_t i = 0; i < size; ++i) WriteValue(ToValue(array.lparray[i]), elements[i], text);
  result.xltype = xltypeMulti;
  result.val.array = {elements, array.rows, array.columns};
  return xlretSuccess;
}

int ExcelApi::CopyReference(const XLOPER12& source, XLOPER12& result) {
  const std::optional<Reference> reference =
      ToReference(source, current_sheet(), cells_.cells_workbook());
  if (!reference) return xlretInvXloper;
  if (TypeOf(source) == xltypeSRef) {
    result.xltype = xltypeSRef;
    result.val.sref.count = 1;
    WriteRange(reference->areas[0], result.val.sref.ref);
    return xlretSuccess;
  }
  const std::size_t count = reference->areas.size();
  auto* areas = static_cast<XLMREF12*>(
      memory_.Give(offsetof(XLMREF12, reftbl) + count * sizeof(XLREF12), function_name_));
  areas->count = static_cast<std::uint16_t>(count);
  for (std::size_t i = 0; i < count; ++i) WriteRange(reference->areas[i], areas->reftbl[i]);
  result.xltype = xltypeRef;
  result.val.mref.lpmref = areas;
  result.val.mref.idSheet = SheetId(reference->sheet);
  return xlretSuccess;
}

// xlfCounta

int ExcelApi::CountUsed(const Arguments& arguments, XLOPER12& result) {
  std::size_t used = 0;
  for (int i = 0; i < arguments.count; ++i) {
    const XLOPER12& argument = arguments[i];
    const std::uint32_t type = TypeOf(argument);
    if (type != xltypeRef && type != xltypeSRef) {
      const bool is_array = type == xltypeMulti;
      const Array values = is_array ? ToArray(argument) : Array{1, 1, {ToValue(argument)}};
      used += values.values.size() -
              static_cast<std::size_t>(std::ranges::count_if(values.values, &Value::IsBlank));
      continue;
    }
    const std::optional<Reference> reference =
        ToReference(argument, current_sheet(), cells_.cells_workbook());
    if (!reference) return xlretInvXloper;
    for (const CellRange& area : reference->areas) {
      if (MeetsUncalculated(reference->sheet, area)) return xlretUncalced;
      used += zavhost::CountUsed(cells_.cells_workbook().sheets[reference->sheet], area);
    }
  }
  GiveValue(static_cast<double>(used), result);
  return xlretSuccess;
}

// xlfCaller

int ExcelApi::Caller(XLOPER12& result) {
  const std::optional<CallingCells> calling = cells_.calling_cells();
  if (!calling || behaviour_.caller == CallerForm::kError) {
    WriteError(xlerrRef, result);
    return xlretSuccess;
  }
  XLOPER12 own;
  std::memset(&own, 0, sizeof own);
  switch (behaviour_.caller) {
    case CallerForm::kNumber:
      GiveValue(1.0, result);
      return xlretSuccess;
    case CallerForm::kText:
      GiveText(u"Button 1", result);
      return xlretSuccess;
    case CallerForm::kMenu: {
      XLOPER12 numbers[4];
      char16_t* no_text = nullptr;
      for (int i = 0; i < 4; ++i) WriteValue(Value(i + 1.0), numbers[i], no_text);
      own.xltype = xltypeMulti;
      own.val.array = {numbers, 1, 4};
      return CopyArray(own, result);
    }
    case CallerForm::kExternalReference: {
      XLMREF12 areas;
      areas.count = 1;
      WriteRange(calling->range, areas.reftbl[0]);
      own.xltype = xltypeRef;
      own.val.mref.lpmref = &areas;
      own.val.mref.idSheet = SheetId(calling->sheet);
      return CopyReference(own, result);
    }
    default:
      result.xltype = xltypeSRef;
      result.val.sref.count = 1;
      WriteRange(calling->range, result.val.sref.ref);
      return xlretSuccess;
  }
}

// xlSet

int ExcelApi::Set(const Arguments& arguments, XLOPER12& result) {
  const XLOPER12& target = arguments[0];
  const std::uint32_t type = TypeOf(target);
  if (type != xltypeRef && type != xltypeSRef) return xlretInvXloper;
  Workbook& workbook = cells_.cells_workbook();
  const std::optional<Reference> reference = ToReference(target, current_sheet(), workbook);
  if (!reference) return xlretInvXloper;
  if (reference->areas.size() != 1) return xlretFailed;
  const CellRange& range = reference->areas[0];
  Sheet& sheet = workbook.sheets[reference->sheet];
  if (sheet.is_protected() || !sheet.has_cells() || CellCount(range) > kCellLimit)
    return xlretFailed;

  Array values{1, 1, {Value()}};
  bool broadcast = true;
  if (arguments.Has(1)) {
    const std::uint32_t value_type = TypeOf(arguments[1]);
    if (value_type == xltypeRef || value_type == xltypeSRef) return xlretInvXloper;
    broadcast = value_type != xltypeMulti;
    values = broadcast ? Array{1, 1, {ToValue(arguments[1])}} : ToArray(arguments[1]);
  }
  for (std::int32_t column = 0; column < range.columns(); ++column) {
    for (std::int32_t row = 0; row < range.rows(); ++row) {
      Value value = ErrorCode::kNA;
      if (broadcast) {
        value = values.values[0];
      } else if (row < values.rows && column < values.columns) {
        value = values.At(row, column);
      }
      sheet.Set(range.first_row + row, range.first_column + column, std::move(value));
    }
  }
  result.xltype = xltypeBool;
  result.val.xbool = 1;
  return xlretSuccess;
}

// Sheets

int ExcelApi::SheetIdOf(const Arguments& arguments, XLOPER12& result) {
  const Workbook& workbook = cells_.cells_workbook();
  std::uint32_t sheet = current_sheet();
  if (arguments.Has(0)) {
    const Value name = ToValue(arguments[0]);
    if (name.text() == nullptr) return xlretInvXloper;
    const std::optional<std::uint32_t> found = SheetByName(*name.text(), workbook);
    if (!found) return xlretFailed;
    sheet = *found;
  }
  if (sheet >= workbook.sheets.size()) return xlretFailed;
  result.xltype = xltypeRef;
  result.val.mref.lpmref = nullptr;
  result.val.mref.idSheet = SheetId(sheet);
  return xlretSuccess;
}

int ExcelApi::SheetNameOf(const Arguments& arguments, XLOPER12& result) {
  const Workbook& workbook = cells_.cells_workbook();
  const std::uint32_t type = TypeOf(arguments[0]);
  if (type != xltypeSRef && type != xltypeRef) return xlretInvXloper;
  const std::optional<std::uint32_t> sheet =
      SheetFromId(type == xltypeRef ? arguments[0].val.mref.idSheet : 0, current_sheet(), workbook);
  if (!sheet) return xlretFailed;
  GiveText(QualifiedName(workbook, *sheet), result);
  return xlretSuccess;
}

}  // namespace zavhost
