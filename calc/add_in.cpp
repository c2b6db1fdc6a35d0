#include "calc/add_in.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "calc/function_names.h"
#include "host/capi/callback.h"
#include "platform/message_box.h"

namespace zavcalc {
namespace {

using zavhost::Array;
using zavhost::ArrayPtr;
using zavhost::ErrorCode;
using zavhost::Operand;
using zavhost::Value;

/// The companion whose announcement has the add-in register its functions, and the language of its
/// messages.
constexpr std::uint16_t kCompanion = 5;
constexpr std::uint64_t kEnglish = 9;

constexpr int kLeastCallingRows = 64;
constexpr int kMostCallingRows = 65'535;
/// A range of more cells is filled from its first column alone.
constexpr std::int64_t kMostFilledCells = 1'000'000;

/// How a function fills the range in which its formula was entered.
enum class Filling { kNone, kColumn, kMatrix };

Filling FillingOf(std::u16string_view name) {
  const auto stands_in = [&](const auto& names) {
    return std::ranges::find(names, name) != std::end(names);
  };
  if (stands_in(kColumnFunctions)) return Filling::kColumn;
  return stands_in(kMatrixFunctions) ? Filling::kMatrix : Filling::kNone;
}

std::size_t SizeOf(const Operand& operand) {
  const auto* array = std::get_if<ArrayPtr>(&operand);
  return array == nullptr ? 1 : (*array)->values.size();
}

/// A column that is long enough for every result of these arguments.
zavhost::CellRange CallingColumn(std::span<const Operand> arguments) {
  std::size_t longest = kLeastCallingRows;
  for (const Operand& argument : arguments) longest = std::max(longest, SizeOf(argument));
  const auto rows = static_cast<std::int32_t>(std::min<std::size_t>(longest, kMostCallingRows));
  return {0, 0, rows - 1, 0};
}

bool HasShape(const Operand& result, const FilledShape& shape) {
  const auto* array = std::get_if<ArrayPtr>(&result);
  return array != nullptr && (*array)->rows == shape.rows && (*array)->columns == shape.columns;
}

bool IsNotAvailable(const Value& value) {
  return value.error() != nullptr && *value.error() == ErrorCode::kNA;
}

std::int32_t RowsWithValues(const Array& array) {
  std::int32_t rows = array.rows;
  const auto is_empty = [&](std::int32_t row) {
    for (std::int32_t column = 0; column < array.columns; ++column) {
      if (!IsNotAvailable(array.At(row, column))) return false;
    }
    return true;
  };
  while (rows > 1 && is_empty(rows - 1)) --rows;
  return rows;
}

/// The result with a row and a column of #N/A at its end. Calc repeats a single row, column or
/// value over the whole range of an array formula, and these functions must not repeat any.
Operand Bordered(const Operand& result) {
  Array whole{1, 1, {}};
  if (const auto* array = std::get_if<ArrayPtr>(&result)) {
    whole = **array;
  } else if (const auto* value = std::get_if<Value>(&result); value && value->error() == nullptr) {
    whole.values = {*value};
  } else {
    return result;
  }
  const std::int32_t rows = RowsWithValues(whole);
  auto bordered = std::make_shared<Array>();
  bordered->rows = rows + 1;
  bordered->columns = whole.columns + 1;
  for (std::int32_t row = 0; row < bordered->rows; ++row) {
    for (std::int32_t column = 0; column < bordered->columns; ++column) {
      const bool is_inside = row < rows && column < whole.columns;
      bordered->values.push_back(is_inside ? whole.At(row, column) : Value(ErrorCode::kNA));
    }
  }
  return ArrayPtr(std::move(bordered));
}

zavhost::Workbook WorkbookWithOneSheet() {
  zavhost::Workbook workbook;
  workbook.sheets.emplace_back(u"Sheet1");
  return workbook;
}

}  // namespace

AddIn::AddIn() : workbook_(WorkbookWithOneSheet()), api_(*this, judge_, {}) {
  zavrel::SuppressErrorBoxes();
  const auto folder =
      zavrel::PathOfModuleContaining(reinterpret_cast<const void*>(&MdCallBack12)).parent_path();
  Load(folder / ZAVCALC_ADD_IN);
  Load(folder / ZAVCALC_DISTRIBUTIONS_ADD_IN);
}

void AddIn::Load(const std::filesystem::path& file) {
  std::optional<zavrel::Module> module = zavrel::Module::Load(file);
  if (!module) return;
  Opened& add_in = opened_.emplace_back(Opened{std::move(*module), {}});
  add_in.loaded = {&add_in.module, file};
  if (CallExport(add_in, "xlAutoOpen", {}) != 1) {
    opened_.pop_back();
    return;
  }
  zavhost::MachineArguments announcement;
  announcement.AddPointer(nullptr);  // the application's automation object
  announcement.AddPointer(nullptr);  // the companion's
  announcement.AddInteger(kCompanion);
  announcement.AddPointer(nullptr);  // the companion's workbook
  announcement.AddInteger(kEnglish);
  announcement.AddPointer(nullptr);  // its version
  announcement.AddPointer(nullptr);  // its help
  CallExport(add_in, "InitializeXlaInformationW", announcement);
}

std::int32_t AddIn::CallExport(const Opened& add_in, const char* name,
                               const zavhost::MachineArguments& arguments) {
  void* function = add_in.module.FindExport(name);
  if (function == nullptr) return 0;
  const zavhost::ExcelApi::Entry entry(api_, zavhost::CallContext::kCommand, add_in.loaded);
  return static_cast<std::int32_t>(arguments.CallForInteger(function));
}

zavhost::AddInFunction* AddIn::Find(std::u16string_view name) {
  std::u16string key(name);
  if (const auto known = functions_.find(key); known != functions_.end()) return &known->second;
  const auto& registry = api_.registry();
  const std::size_t index = registry.Find(name);
  if (index == zavhost::FunctionRegistry::npos) return nullptr;
  zavhost::AddInFunction function(api_, block_, registry.entry(index));
  return &functions_.emplace(std::move(key), std::move(function)).first->second;
}

bool AddIn::FillsRange(std::u16string_view name) { return FillingOf(name) == Filling::kColumn; }

Operand AddIn::Call(std::u16string_view name, std::span<const Operand> arguments,
                    const std::optional<FilledShape>& filled) {
  const std::lock_guard lock(mutex_);
  zavhost::AddInFunction* function = Find(name);
  if (function == nullptr) return Value(ErrorCode::kName);
  const Filling filling = FillingOf(name);
  const bool is_known =
      filled && static_cast<std::int64_t>(filled->rows) * filled->columns <= kMostFilledCells;
  calling_ = zavhost::CallingCells{};
  if (filling == Filling::kColumn) {
    calling_->range = is_known ? zavhost::CellRange{0, 0, filled->rows - 1, filled->columns - 1}
                               : CallingColumn(arguments);
  }
  const Operand result = function->Call(arguments);
  const bool is_whole = is_known && HasShape(result, *filled);
  return filling == Filling::kNone || is_whole ? result : Bordered(result);
}

}  // namespace zavcalc

/// The add-in asks a library of this name for the callback before it looks in the program; the
/// component is linked under it.
ZAVHOST_EXPORT Excel12Callback GetExcel12EntryPt() { return &MdCallBack12; }
