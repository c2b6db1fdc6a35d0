#include <cmath>
#include <string>
#include <utility>

#include "host/formula/argument_reader.h"
#include "host/formula/builtin_groups.h"
#include "host/workbook/cell_names.h"

namespace zavhost {

Value ScalarArgument(const BuiltInCall& call, std::size_t index) {
  if (index >= call.arguments.size()) return {};
  const Value* value = std::get_if<Value>(&call.arguments[index]);
  return value == nullptr ? Value() : *value;
}

namespace {

bool IsNA(const Value& value) { return value == Value(ErrorCode::kNA); }
bool IsError(const Value& value) { return value.error() != nullptr; }
bool IsErrorButNA(const Value& value) { return IsError(value) && !IsNA(value); }
bool IsBlank(const Value& value) { return value.IsBlank(); }
bool IsNumber(const Value& value) { return value.number() != nullptr; }
bool IsText(const Value& value) { return value.text() != nullptr; }
bool IsNoText(const Value& value) { return !IsText(value); }
bool IsLogical(const Value& value) { return value.boolean() != nullptr; }

template <bool (*kHolds)(const Value&)>
Operand Test(const BuiltInCall& call) {
  return Value(kHolds(ScalarArgument(call, 0)));
}

Operand IsReference(const BuiltInCall& call) {
  return Value(std::holds_alternative<Reference>(call.arguments[0]));
}

/// ISEVEN and ISODD do not take booleans for numbers.
template <bool kIsOdd>
Operand HasParity(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double number = read.Whole(0);
  read.Require(!IsLogical(read.Any(0)), ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return Value((std::fmod(number, 2.0) != 0.0) == kIsOdd);
}

/// The number that Excel gives an error; #N/A for what is none.
Operand ErrorType(const BuiltInCall& call) {
  constexpr std::pair<ErrorCode, double> kTypes[] = {
      {ErrorCode::kNull, 1},     {ErrorCode::kDiv0, 2},        {ErrorCode::kValue, 3},
      {ErrorCode::kRef, 4},      {ErrorCode::kName, 5},        {ErrorCode::kNum, 6},
      {ErrorCode::kNA, 7},       {ErrorCode::kGettingData, 8}, {ErrorCode::kSpill, 9},
      {ErrorCode::kConnect, 10}, {ErrorCode::kBlocked, 11},    {ErrorCode::kUnknown, 12},
      {ErrorCode::kField, 13},   {ErrorCode::kCalc, 14},
  };
  const Value value = ScalarArgument(call, 0);
  for (const auto& [code, type] : kTypes) {
    if (value == Value(code)) return Value(type);
  }
  return Value(ErrorCode::kNA);
}

Operand Type(const BuiltInCall& call) {
  if (std::holds_alternative<ArrayPtr>(call.arguments[0])) return Value(64.0);
  const Value value = ScalarArgument(call, 0);
  return Value(IsText(value) ? 2.0 : IsLogical(value) ? 4.0 : IsError(value) ? 16.0 : 1.0);
}

Operand NA(const BuiltInCall&) { return Value(ErrorCode::kNA); }

/// "$B$7", and before it the workbook and the sheet of another sheet than the caller's.
std::u16string AddressText(const CellAddress& cell, const EvaluationContext& context) {
  std::u16string text = u"$" + ColumnLetters(cell.column) + u"$" + GeneralText(cell.row + 1.0);
  if (cell.sheet == context.caller().sheet) return text;
  const Workbook& workbook = context.workbook();
  const std::u16string& sheet = workbook.sheets[cell.sheet].name();
  const bool has_quotes =
      QuotedSheetName(sheet) != sheet || QuotedSheetName(workbook.file_name) != workbook.file_name;
  const std::u16string place = u"[" + workbook.file_name + u"]" + sheet;
  return (has_quotes ? QuotedSheetName(place) : place) + u"!" + text;
}

/// What needs no formats: the contents, the kind of contents and the place of a cell, by default of
/// the caller.
Operand Cell(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string asked = LowerCase(read.Text(0));
  const Reference* reference = read.AsReference(1);
  read.Require(read.IsOmitted(1) || reference != nullptr, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  CellAddress cell = call.context.caller();
  if (reference != nullptr) {
    const CellRange& area = reference->areas.front();
    cell = {reference->sheet, area.first_row, area.first_column};
  }
  if (asked == u"address") return Value(std::u16string_view(AddressText(cell, call.context)));
  if (asked == u"row") return Value(cell.row + 1.0);
  if (asked == u"col") return Value(cell.column + 1.0);
  if (asked != u"contents" && asked != u"type") return Value(ErrorCode::kValue);
  Value value = call.context.ReadCell(cell);
  if (asked == u"contents") return value;
  return Value(value.IsBlank() ? u"b" : IsText(value) ? u"l" : u"v");
}

/// What a headless Excel for Windows would say of itself; its memory is not known any more.
Operand Info(const BuiltInCall& call) {
  constexpr std::pair<std::u16string_view, const char16_t*> kAnswers[] = {
      {u"origin", u"$A:$A$1"},
      {u"recalc", u"Automatic"},
      {u"release", u"16.0"},
      {u"system", u"pcdos"},
  };
  ArgumentReader read(call);
  const std::u16string asked = LowerCase(read.Text(0));
  if (read.failed()) return read.failure();
  for (const auto& [question, answer] : kAnswers) {
    if (asked == question) return Value(answer);
  }
  if (asked == u"numfile") return Value(static_cast<double>(call.context.workbook().sheets.size()));
  const bool is_memory = asked == u"memavail" || asked == u"memused" || asked == u"totmem";
  return Value(is_memory ? ErrorCode::kNA : ErrorCode::kValue);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"ISBLANK", 1, 1, "s", Test<IsBlank>},
    {u"ISERR", 1, 1, "s", Test<IsErrorButNA>},
    {u"ISERROR", 1, 1, "s", Test<IsError>},
    {u"ISLOGICAL", 1, 1, "s", Test<IsLogical>},
    {u"ISNA", 1, 1, "s", Test<IsNA>},
    {u"ISNONTEXT", 1, 1, "s", Test<IsNoText>},
    {u"ISNUMBER", 1, 1, "s", Test<IsNumber>},
    {u"ISTEXT", 1, 1, "s", Test<IsText>},
    {u"ISREF", 1, 1, "r", IsReference},
    {u"ISEVEN", 1, 1, "s", HasParity<false>},
    {u"ISODD", 1, 1, "s", HasParity<true>},
    {u"ERROR.TYPE", 1, 1, "s", ErrorType},
    {u"TYPE", 1, 1, "a", Type},
    {u"NA", 0, 0, "s", NA},
    {u"CELL", 1, 2, "sr", Cell},
    {u"INFO", 1, 1, "s", Info},
};

}  // namespace

std::span<const BuiltInFunction> InformationFunctions() { return kFunctions; }

}  // namespace zavhost
