// SUBTOTAL and AGGREGATE: other functions of the cells that are not left out.

#include <algorithm>
#include <array>

#include "host/formula/argument_reader.h"
#include "host/formula/builtin_groups.h"

namespace zavhost {
namespace {

/// The functions by their numbers from 1; SUBTOTAL has the first 11. The last six take an array and
/// a second argument, the others references.
constexpr std::array<std::u16string_view, 19> kAggregated = {
    u"AVERAGE",        u"COUNT",        u"COUNTA",         u"MAX",         u"MIN",
    u"PRODUCT",        u"STDEV.S",      u"STDEV.P",        u"SUM",         u"VAR.S",
    u"VAR.P",          u"MEDIAN",       u"MODE.SNGL",      u"LARGE",       u"SMALL",
    u"PERCENTILE.INC", u"QUARTILE.INC", u"PERCENTILE.EXC", u"QUARTILE.EXC"};
constexpr int kSubtotals = 11;
constexpr int kOfReferences = 13;

/// What is left out.
struct Exclusions {
  enum class Rows { kNone, kFiltered, kHidden };
  Rows rows = Rows::kNone;
  bool errors = false;
  bool subtotals = false;  // cells whose formula calls one of these two functions
};

bool IsSubtotal(const EvaluationContext& context, const CellAddress& cell) {
  const auto formula = context.FormulaText(cell);
  if (!formula) return false;
  const std::u16string text = LowerCase(*formula);
  return text.find(u"subtotal(") != std::u16string::npos ||
         text.find(u"aggregate(") != std::u16string::npos;
}

bool IsRowExcluded(const Exclusions& exclusions, const Sheet& sheet, std::int32_t row) {
  if (exclusions.rows == Exclusions::Rows::kNone || !sheet.IsHidden(row)) return false;
  if (exclusions.rows == Exclusions::Rows::kHidden) return true;
  const auto& filter = sheet.filter();
  return filter && row >= filter->first_row && row <= filter->last_row;
}

/// The values as an array; of none, one blank, which no function counts.
Operand Column(std::vector<Value> values) {
  if (values.empty()) values.emplace_back();
  const auto rows = static_cast<std::int32_t>(values.size());
  return std::make_shared<const Array>(Array{rows, 1, std::move(values)});
}

bool IsExcludedError(const Exclusions& exclusions, const Value& value) {
  return exclusions.errors && value.error() != nullptr;
}

/// The cells of an area without those that are left out.
Operand Remaining(const Exclusions& exclusions, EvaluationContext& context, std::uint32_t sheet,
                  const CellRange& area) {
  const ArrayPtr read = context.ReadRange(sheet, area, RangeExtent::kUsed);
  const Sheet& rows = context.workbook().sheets[sheet];
  std::vector<Value> values;
  for (std::int32_t row = 0; row < read->rows; ++row) {
    if (IsRowExcluded(exclusions, rows, area.first_row + row)) continue;
    for (std::int32_t column = 0; column < read->columns; ++column) {
      const Value& value = read->At(row, column);
      if (value.IsBlank() || IsExcludedError(exclusions, value)) continue;
      const CellAddress cell{sheet, area.first_row + row, area.first_column + column};
      if (exclusions.subtotals && IsSubtotal(context, cell)) continue;
      values.push_back(value);
    }
  }
  return Column(std::move(values));
}

Operand Remaining(const Exclusions& exclusions, const Array& array) {
  std::vector<Value> values;
  std::copy_if(array.values.begin(), array.values.end(), std::back_inserter(values),
               [&](const Value& value) { return !IsExcludedError(exclusions, value); });
  return Column(std::move(values));
}

/// Appends what remains of an argument; false for a single value, which is no data.
bool Append(const Exclusions& exclusions, EvaluationContext& context, const Operand& argument,
            std::vector<Operand>& data) {
  if (const Reference* reference = std::get_if<Reference>(&argument)) {
    for (const CellRange& area : reference->areas)
      data.push_back(Remaining(exclusions, context, reference->sheet, area));
    return true;
  }
  const ArrayPtr* array = std::get_if<ArrayPtr>(&argument);
  if (array == nullptr) return false;
  data.push_back(Remaining(exclusions, **array));
  return true;
}

/// The error of an argument that is one, otherwise #VALUE!.
Operand NoData(const Operand& argument) {
  const Value* value = std::get_if<Value>(&argument);
  return value != nullptr && value->error() != nullptr ? *value : Value(ErrorCode::kValue);
}

/// The function with this number of what remains of the arguments from `first` on.
Operand Aggregated(const BuiltInCall& call, int function, std::size_t first,
                   const Exclusions& exclusions) {
  std::vector<Operand> arguments;
  const bool has_second = function > kOfReferences;
  const std::size_t data_end = has_second ? first + 1 : call.arguments.size();
  for (std::size_t i = first; i < data_end; ++i) {
    if (!Append(exclusions, call.context, call.arguments[i], arguments))
      return NoData(call.arguments[i]);
  }
  if (has_second) {
    if (call.arguments.size() != data_end + 1 || arguments.size() != 1)
      return Value(ErrorCode::kValue);
    arguments.push_back(call.arguments[data_end]);
  }
  const BuiltInFunction* aggregated =
      FindBuiltIn(kAggregated[static_cast<std::size_t>(function) - 1]);
  return aggregated->call({arguments, call.context, call.as_array});
}

Operand Subtotal(const BuiltInCall& call) {
  ArgumentReader read(call);
  double function = read.Whole(0);
  const bool without_hidden = function > 100.0;
  if (without_hidden) function -= 100.0;
  read.Require(function >= 1.0 && function <= kSubtotals, ErrorCode::kValue);
  for (std::size_t i = 1; i < read.count() && !read.failed(); ++i) {
    if (read.AsReference(i) == nullptr) return NoData(call.arguments[i]);
  }
  if (read.failed()) return read.failure();
  const auto rows = without_hidden ? Exclusions::Rows::kHidden : Exclusions::Rows::kFiltered;
  return Aggregated(call, static_cast<int>(function), 1, {.rows = rows, .subtotals = true});
}

Operand Aggregate(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double function = read.Whole(0);
  const double option = read.Whole(1);
  read.Require(function >= 1.0 && function <= static_cast<double>(kAggregated.size()),
               ErrorCode::kValue);
  read.Require(option >= 0.0 && option <= 7.0, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  // Bits of the option: hidden rows, errors; the first four also leave out subtotals.
  const auto bits = static_cast<unsigned>(option);
  const auto rows = (bits & 1U) != 0 ? Exclusions::Rows::kHidden : Exclusions::Rows::kNone;
  return Aggregated(call, static_cast<int>(function), 2,
                    {.rows = rows, .errors = (bits & 2U) != 0, .subtotals = bits < 4});
}

constexpr BuiltInFunction kFunctions[] = {
    {u"SUBTOTAL", 2, kAnyNumberOfArguments, "sr", Subtotal},
    {u"AGGREGATE", 3, kAnyNumberOfArguments, "ssx", Aggregate},
};

}  // namespace

std::span<const BuiltInFunction> SubtotalFunctions() { return kFunctions; }

}  // namespace zavhost
