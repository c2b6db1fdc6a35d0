#include "calc/document.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "calc/any_value.h"
#include "calc/formula_text.h"
#include "calc/function_names.h"
#include "calc/spreadsheet.h"

namespace zavcalc {
namespace {

using zavhost::Array;
using zavhost::ArrayPtr;
using zavhost::ErrorCode;
using zavhost::Operand;
using zavhost::Value;
using Kind = SiteArgument::Kind;

/// More kinds of calls than this that may be meant by the same values are not looked through.
constexpr std::size_t kMostCandidates = 1'000;
/// Each meaning of the arguments is a call.
constexpr std::size_t kMostMeanings = 4;

/// A number that a boolean or a blank cell would also be, or a text that a blank cell would be.
bool IsAmbiguous(const Value& value) {
  const double* number = value.number();
  return value.IsBlank() || (number != nullptr && (*number == 0 || *number == 1));
}

bool IsAmbiguous(const Operand& operand) {
  if (const auto* array = std::get_if<ArrayPtr>(&operand)) {
    return std::ranges::any_of((*array)->values,
                               [](const Value& value) { return IsAmbiguous(value); });
  }
  const auto* value = std::get_if<Value>(&operand);
  return value != nullptr && IsAmbiguous(*value);
}

bool HasShape(const Operand& operand, const SheetRange& range) {
  if (const auto* array = std::get_if<ArrayPtr>(&operand))
    return (*array)->rows == RowsOf(range) && (*array)->columns == ColumnsOf(range);
  return std::holds_alternative<Value>(operand) && RowsOf(range) == 1 && ColumnsOf(range) == 1;
}

/// "" in the place of what arrived as blank.
Value WithoutBlank(const Value& value) { return value.IsBlank() ? Value(u"") : value; }

Operand WithoutBlanks(const Operand& operand) {
  if (const auto* value = std::get_if<Value>(&operand)) return WithoutBlank(*value);
  const auto* array = std::get_if<ArrayPtr>(&operand);
  if (array == nullptr) return operand;
  auto texts = std::make_shared<Array>(**array);
  for (Value& value : texts->values) value = WithoutBlank(value);
  return ArrayPtr(std::move(texts));
}

/// Whether the values are those of an array, as Calc passes them.
bool IsArray(const Array& array, const Operand& given) {
  const auto* values = std::get_if<ArrayPtr>(&given);
  if (values == nullptr || (*values)->rows != array.rows || (*values)->columns != array.columns)
    return false;
  return std::ranges::equal(array.values, (*values)->values, [](const Value& a, const Value& b) {
    const bool* boolean = a.boolean();
    return (boolean == nullptr ? a : Value(*boolean ? 1.0 : 0.0)) == WithoutBlank(b);
  });
}

/// Whether a call with this argument can have passed these values, as far as the formula says.
bool MayBe(const SiteArgument& argument, const Operand& given) {
  const auto* value = std::get_if<Value>(&given);
  switch (argument.kind) {
    case Kind::kMissing:
      return std::holds_alternative<zavhost::MissingArgument>(given);
    case Kind::kNumber:
    case Kind::kBoolean:
      return value != nullptr && *value == Value(argument.number);
    case Kind::kText:
      return value != nullptr && WithoutBlank(*value) == Value(argument.text);
    case Kind::kReference:
    case Kind::kSeveralSheets:
      return HasShape(given, argument.reference);
    case Kind::kArray:
      return IsArray(argument.array, given);
    case Kind::kRefused:
      return false;
    case Kind::kExpression:
      return !std::holds_alternative<zavhost::MissingArgument>(given);
  }
  return false;
}

bool MayBe(const CallSite& site, std::span<const Operand> arguments) {
  static const SiteArgument missing_argument = [] {
    SiteArgument missing;
    missing.kind = Kind::kMissing;
    return missing;
  }();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const SiteArgument& argument = i < site.arguments.size() ? site.arguments[i] : missing_argument;
    if (!MayBe(argument, arguments[i])) return false;
  }
  return site.arguments.size() <= arguments.size();
}

bool FillsRange(std::u16string_view function) {
  return std::ranges::any_of(kColumnFunctions,
                             [&](auto name) { return UpperCase(name) == function; });
}

std::u16string LowerCase(std::u16string_view text) { return zavhost::LowerCase(text); }

}  // namespace

bool IsSame(const Operand& a, const Operand& b) {
  const auto* one = std::get_if<ArrayPtr>(&a);
  const auto* other = std::get_if<ArrayPtr>(&b);
  if (one == nullptr || other == nullptr) return a == b;
  return (*one)->rows == (*other)->rows && (*one)->columns == (*other)->columns &&
         (*one)->values == (*other)->values;
}

// Reading the document.

void Document::Read() {
  sheets_.clear();
  sheet_indices_.clear();
  calls_.clear();
  std::int32_t index = 0;
  for (NamedSheet& sheet : SheetsOf(model_)) {
    sheet_indices_.emplace(LowerCase(sheet.name), index);
    sheets_.emplace_back(index++, std::move(sheet.range));
  }
  for (std::int32_t i = 0; i < index; ++i) ReadSheet(i);
  is_read_ = true;
}

void Document::ReadSheet(std::int32_t index) {
  SheetCells& cells = sheets_[static_cast<std::size_t>(index)];
  arrays_.clear();
  for (const SheetRange& range : FormulaRanges(cells.sheet())) {
    cells.AddFormulas(range);
    VisitFormulas(cells.sheet(), range,
                  [&](std::int32_t column, std::int32_t row, std::u16string_view text) {
                    AddFormula(index, column, row, text);
                  });
  }
  cells.SortFormulas();
}

void Document::AddFormula(std::int32_t sheet, std::int32_t column, std::int32_t row,
                          std::u16string_view text) {
  const NameScope scope{sheet,
                        [&](std::u16string_view name) -> std::optional<std::int32_t> {
                          const auto found = sheet_indices_.find(LowerCase(name));
                          return found == sheet_indices_.end() ? std::nullopt
                                                               : std::optional(found->second);
                        },
                        [&](std::u16string_view name) { return RangeNamed(sheet, name); }};
  auto calls = ReadFormula(text, scope);
  if (!calls || !calls->is_plain)
    sheets_[static_cast<std::size_t>(sheet)].AddUnplain(CellAt(sheet, column, row));
  if (!calls) return AddUnreadable(text);
  if (IsArrayFormula(text) && !IsNewArray(calls->calls, sheet, column, row, text)) return;
  for (CallSite& site : calls->calls) {
    Calls& known = calls_[site.function];
    known.has_several_sheets |= std::ranges::any_of(
        site.arguments,
        [](const SiteArgument& argument) { return argument.kind == Kind::kSeveralSheets; });
    known.index.Add(std::move(site));
  }
}

/// Each cell of an array formula has its text. Formulas of the same text pass the same cells, but
/// the range that they fill matters to some functions.
bool Document::IsNewArray(std::vector<CallSite>& calls, std::int32_t sheet, std::int32_t column,
                          std::int32_t row, std::u16string_view text) {
  const auto fills_range = [](const CallSite& site) { return FillsRange(site.function); };
  if (std::ranges::none_of(calls, fills_range)) return arrays_.emplace(text).second;
  const SheetRange array = AddressOf(
      ArrayAround(sheets_[static_cast<std::size_t>(sheet)].sheet(), CellAt(sheet, column, row)));
  for (CallSite& site : calls) site.filled = FilledShape{RowsOf(array), ColumnsOf(array)};
  return array.first_column == column && array.first_row == row;
}

/// Of a formula that cannot be read, each of our functions may be called with anything.
void Document::AddUnreadable(std::u16string_view text) {
  for (std::size_t at = text.find(kPrefix); at != std::u16string_view::npos;
       at = text.find(kPrefix, at + 1)) {
    const std::size_t begin = at + kPrefix.size();
    const std::u16string function(text.substr(begin, text.find(u'(', begin) - begin));
    Calls& known = calls_[function];
    known.has_several_sheets = true;
    known.index.Add({function, std::vector<SiteArgument>(1), std::nullopt});
  }
}

std::optional<SheetRange> Document::RangeNamed(std::int32_t sheet, std::u16string_view name) {
  if (auto own = NamedIn(sheets_[static_cast<std::size_t>(sheet)].sheet(), name)) return own;
  return NamedIn(model_, name);
}

std::optional<SheetRange> Document::NamedIn(const UnoReference& owner, std::u16string_view name) {
  try {
    UnoText property(u"NamedRanges");
    UnoText wanted(name);
    const AnyValue names(owner.As(u"com.sun.star.beans.XPropertySet"),
                         u"com.sun.star.beans.XPropertySet::getPropertyValue",
                         {property.address()});
    const UnoReference access = names.Object().As(u"com.sun.star.container.XNameAccess");
    sal_Bool is_known = 0;
    access.Call(u"com.sun.star.container.XNameAccess::hasByName", &is_known, {wanted.address()});
    if (is_known == 0) return std::nullopt;
    const AnyValue entry(access, u"com.sun.star.container.XNameAccess::getByName",
                         {wanted.address()});
    const UnoReference cells =
        entry.Object()
            .As(u"com.sun.star.sheet.XCellRangeReferrer")
            .ObjectFrom(u"com.sun.star.sheet.XCellRangeReferrer::getReferredCells", {});
    return AddressOf(cells);
  } catch (const CallFailure&) {  // no range, but a formula
    return std::nullopt;
  }
}

// Cells.

SheetCells& Document::SheetOf(const SheetRange& range) {
  return sheets_.at(static_cast<std::size_t>(range.sheet));
}

std::uint64_t Document::KindsMark(const SheetRange& range) {
  const Kinds kinds = KindsOf(range);
  std::uint64_t mark = 0;
  for (const auto* parts : {&kinds.blank, &kinds.logical, &kinds.uncertain}) {
    mark = Mixed(mark, parts->size());
    for (const SheetRange& part : *parts) {
      for (const std::int32_t place :
           {part.first_column - range.first_column, part.first_row - range.first_row,
            ColumnsOf(part), RowsOf(part)})
        mark = Mixed(mark, static_cast<std::uint64_t>(place));
    }
  }
  return mark;
}

/// Ranges with formulas are not read: these may wait for the call.
std::vector<Value> Document::ValuesOf(const SheetRange& range) {
  SequenceValue rows(u"[][]any");
  SheetOf(range)
      .Part(range)
      .As(u"com.sun.star.sheet.XCellRangeData")
      .Call(u"com.sun.star.sheet.XCellRangeData::getDataArray", rows.Receive(), {});
  const Operand read = ToArray(rows.get());
  const auto* array = std::get_if<ArrayPtr>(&read);
  return array == nullptr ? std::vector<Value>() : (*array)->values;
}

bool Document::HoldsConstants(const SheetRange& range, const Operand& given) {
  const std::vector<Value> cells = ValuesOf(range);
  if (const auto* array = std::get_if<ArrayPtr>(&given)) return cells == (*array)->values;
  const auto* value = std::get_if<Value>(&given);
  if (value == nullptr || cells.size() != 1) return false;
  // A single blank cell arrives as 0.
  return cells[0] == *value || (cells[0].IsBlank() && *value == Value(0.0));
}

bool Document::IsShownAsLogical(const SheetRange& cell) {
  const auto format = FormatOf(SheetOf(cell).Part(cell));
  return format && IsLogical(*format);
}

// Calls.

/// The values with their cells' kinds; nothing if the cells do not hold them, or if that cannot be
/// said.
std::optional<Operand> Document::FromCells(const SheetRange& range, const Operand& given,
                                           bool is_only_one) {
  const Kinds kinds = KindsOf(range);
  if (kinds.IsPlain()) return WithoutBlanks(given);
  Array cells{RowsOf(range), ColumnsOf(range), {}};
  const auto* array = std::get_if<ArrayPtr>(&given);
  cells.values = array == nullptr ? std::vector<Value>{std::get<Value>(given)} : (*array)->values;
  const auto change = [&](const SheetRange& part, const auto& convert) {
    const auto common = Common(part, range);
    for (std::int32_t row = common->first_row; row <= common->last_row; ++row) {
      for (std::int32_t column = common->first_column; column <= common->last_column; ++column) {
        const auto at = static_cast<std::size_t>(row - range.first_row) *
                            static_cast<std::size_t>(cells.columns) +
                        static_cast<std::size_t>(column - range.first_column);
        convert(cells.values[at]);
      }
    }
  };
  for (Value& value : cells.values) value = WithoutBlank(value);
  for (const SheetRange& part : kinds.blank) change(part, [](Value& value) { value = Value(); });
  for (const SheetRange& part : kinds.logical) {
    change(part, [](Value& value) {
      if (const double* number = value.number(); number != nullptr && IsAmbiguous(value))
        value = *number == 1;
    });
  }
  bool is_certain = true;
  for (const SheetRange& cell : kinds.uncertain) {
    change(cell, [&](Value& value) {
      if (value.number() == nullptr || !IsAmbiguous(value)) return;
      // A formula that does not belong to this call may not be calculated yet.
      if (!is_only_one) is_certain = false;
      if (is_only_one && IsShownAsLogical(cell)) value = *value.number() == 1;
    });
  }
  if (!is_certain) return std::nullopt;
  if (array == nullptr) return cells.values[0];
  return ArrayPtr(std::make_shared<Array>(std::move(cells)));
}

/// What the values of an argument can be; empty if that cannot be known.
std::vector<Operand> Document::Meanings(const SiteArgument& argument, const Operand& given,
                                        bool is_only_one) {
  switch (argument.kind) {
    case Kind::kSeveralSheets:
      return {Value(ErrorCode::kRef)};
    case Kind::kBoolean:
      return {Value(argument.number == 1)};
    case Kind::kText:
      return {Value(std::u16string_view(argument.text))};
    case Kind::kArray:
      return {std::make_shared<const Array>(argument.array)};
    case Kind::kReference:
      if (auto cells = FromCells(argument.reference, given, is_only_one)) return {*cells};
      return {};
    case Kind::kExpression:
      break;
    default:
      return {given};
  }
  if (!argument.is_plain) return {};
  bool has_blank = false;
  for (const SheetRange& source : argument.sources) {
    const Kinds kinds = KindsOf(source);
    if (!kinds.logical.empty() || !kinds.uncertain.empty()) return {};
    has_blank = has_blank || !kinds.blank.empty();
  }
  if (has_blank) return {WithoutBlanks(given), given};
  return {WithoutBlanks(given)};
}

/// All that the arguments can be if this is the call; empty if that cannot be known.
std::vector<Document::Operands> Document::At(const CallSite& site,
                                             std::span<const Operand> arguments, bool is_only_one) {
  std::vector<Operands> all{Operands(arguments.begin(), arguments.end())};
  for (std::size_t i = 0; i < site.arguments.size(); ++i) {
    const SiteArgument& argument = site.arguments[i];
    if (argument.kind != Kind::kSeveralSheets && argument.kind != Kind::kArray &&
        !IsAmbiguous(arguments[i]))
      continue;
    const std::vector<Operand> meanings = Meanings(argument, arguments[i], is_only_one);
    if (all.size() * meanings.size() > kMostMeanings) return {};
    std::vector<Operands> extended;
    for (const Operands& operands : all) {
      for (const Operand& meaning : meanings) {
        extended.push_back(operands);
        extended.back()[i] = meaning;
      }
    }
    all = std::move(extended);
  }
  return all;
}

/// A range of constants with other values than these was not passed.
bool Document::IsExcluded(const CallSite& site, std::span<const Operand> arguments) {
  for (std::size_t i = 0; i < site.arguments.size(); ++i) {
    const SiteArgument& argument = site.arguments[i];
    if (argument.kind == Kind::kReference && !HasFormulas(argument.reference) &&
        !HoldsConstants(argument.reference, arguments[i]))
      return true;
  }
  return false;
}

bool Document::MaySpanSheets(const std::u16string& function) {
  if (sheet_count_ == 0) sheet_count_ = CountSheets(model_);
  if (sheet_count_ == 1) return false;
  if (!is_read_) Read();
  const auto calls = calls_.find(function);
  return calls != calls_.end() && calls->second.has_several_sheets;
}

std::vector<AlikeCalls> Document::CallsWith(const std::u16string& function,
                                            std::span<const Operand> arguments) {
  if (!is_read_) Read();
  std::vector<AlikeCalls> calls = calls_[function].index.Find(arguments, *this);
  std::erase_if(calls, [&](const AlikeCalls& alike) { return !MayBe(*alike.one, arguments); });
  return calls;
}

std::optional<FilledShape> Document::ShapeFilledBy(std::u16string_view function,
                                                   std::span<const Operand> arguments) {
  const std::vector<AlikeCalls> calls = CallsWith(UpperCase(function), arguments);
  if (calls.empty()) return std::nullopt;
  const auto& shape = calls.front().one->filled;
  const bool is_one = std::ranges::all_of(
      calls, [&](const AlikeCalls& alike) { return alike.one->filled == shape; });
  return is_one ? shape : std::nullopt;
}

std::vector<Document::Operands> Document::Resolve(std::u16string_view function,
                                                  std::span<const Operand> arguments) {
  const std::u16string key = UpperCase(function);
  const bool is_ambiguous =
      std::ranges::any_of(arguments, [](const Operand& operand) { return IsAmbiguous(operand); });
  if (!is_ambiguous && !MaySpanSheets(key)) return {Operands(arguments.begin(), arguments.end())};
  std::vector<AlikeCalls> candidates = CallsWith(key, arguments);
  if (candidates.size() > kMostCandidates) return {};
  if (candidates.size() > 1) {
    std::erase_if(candidates,
                  [&](const AlikeCalls& calls) { return IsExcluded(*calls.one, arguments); });
  }
  const bool is_only_one = candidates.size() == 1 && candidates.front().count == 1;
  std::vector<Operands> all;
  for (const AlikeCalls& calls : candidates) {
    const std::vector<Operands> here = At(*calls.one, arguments, is_only_one);
    if (here.empty()) return {};
    for (const Operands& operands : here) {
      const bool is_known = std::ranges::any_of(
          all, [&](const Operands& known) { return std::ranges::equal(known, operands, IsSame); });
      if (!is_known) all.push_back(operands);
    }
    if (all.size() > kMostMeanings) return {};
  }
  return all;
}

}  // namespace zavcalc
