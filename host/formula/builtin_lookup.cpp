#include <string>
#include <utility>

#include "host/formula/builtin_groups.h"
#include "host/formula/rectangle.h"
#include "host/formula/search.h"
#include "host/formula/wildcards.h"
#include "host/workbook/cell_names.h"

namespace zavhost {
namespace {

Operand NotFound() { return Value(ErrorCode::kNA); }

/// The value to look for, where a blank is 0 and Excel limits the length of texts.
Value ReadWanted(ArgumentReader& read) {
  Value wanted = read.Any(0);
  if (const ErrorCode* error = wanted.error()) read.Fail(*error);
  const std::u16string* text = wanted.text();
  read.Require(text == nullptr || text->size() <= WildcardPattern::kLongest, ErrorCode::kValue);
  if (wanted.IsBlank()) wanted = 0.0;
  return wanted;
}

template <bool kVertical>
Operand TableLookup(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Value wanted = ReadWanted(read);
  const Rectangle table = ReadRectangle(call, 1, read);
  const double line = read.Whole(2);
  const bool is_sorted = read.Boolean(3, true);
  read.Require(line >= 1.0, ErrorCode::kValue);
  read.Require(line <= (kVertical ? table.columns() : table.rows()), ErrorCode::kRef);
  if (read.failed()) return read.failure();
  const SearchVector in = kVertical ? SearchVector::OfColumn(table, call.context)
                                    : SearchVector::OfRow(table, call.context);
  const auto found = is_sorted
                         ? Search(wanted, in, MatchMode::kOrSmaller, SearchOrder::kAscending)
                         : Search(wanted, in, MatchMode::kWildcard, SearchOrder::kFirstToLast);
  if (!found) return NotFound();
  const auto index = static_cast<std::int32_t>(line) - 1;
  return kVertical ? table.At(*found, index, call.context) : table.At(index, *found, call.context);
}

/// The vector form, and the array form: the longer side is searched, and the last row or column has
/// the results.
Operand Lookup(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Value wanted = ReadWanted(read);
  const Rectangle table = ReadRectangle(call, 1, read);
  const bool has_results = read.IsGiven(2);
  const Rectangle results = has_results ? ReadRectangle(call, 2, read) : Rectangle();
  read.Require(results.IsVector(), ErrorCode::kNA);
  if (read.failed()) return read.failure();
  const bool is_row = table.columns() > table.rows();
  const SearchVector in = is_row ? SearchVector::OfRow(table, call.context)
                                 : SearchVector::OfColumn(table, call.context);
  const auto found = Search(wanted, in, MatchMode::kOrSmaller, SearchOrder::kAscending);
  if (!found) return NotFound();
  if (has_results) {
    if (*found >= results.length()) return NotFound();
    return results.rows() == 1 ? results.At(0, *found, call.context)
                               : results.At(*found, 0, call.context);
  }
  return is_row ? table.At(table.rows() - 1, *found, call.context)
                : table.At(*found, table.columns() - 1, call.context);
}

Operand PositionResult(const std::optional<std::int32_t>& found) {
  return found ? Value(*found + 1.0) : NotFound();
}

Operand Match(const BuiltInCall& call) {
  ArgumentReader read(call);
  const Value wanted = ReadWanted(read);
  const Rectangle table = ReadRectangle(call, 1, read);
  const double type = read.Number(2, 1.0);
  read.Require(table.IsVector(), ErrorCode::kNA);
  if (read.failed()) return read.failure();
  const SearchVector in = SearchVector::Of(table, call.context);
  if (type < 0.0) return PositionResult(SearchDescending(wanted, in));
  return PositionResult(type > 0.0
                            ? Search(wanted, in, MatchMode::kOrSmaller, SearchOrder::kAscending)
                            : Search(wanted, in, MatchMode::kWildcard, SearchOrder::kFirstToLast));
}

struct HowToSearch {
  MatchMode mode = MatchMode::kExact;
  SearchOrder order = SearchOrder::kFirstToLast;
};

/// The two last arguments of XLOOKUP and XMATCH.
HowToSearch ReadHowToSearch(std::size_t index, ArgumentReader& read) {
  constexpr std::pair<double, MatchMode> kModes[] = {{0.0, MatchMode::kExact},
                                                     {-1.0, MatchMode::kOrSmaller},
                                                     {1.0, MatchMode::kOrLarger},
                                                     {2.0, MatchMode::kWildcard}};
  constexpr std::pair<double, SearchOrder> kOrders[] = {{1.0, SearchOrder::kFirstToLast},
                                                        {-1.0, SearchOrder::kLastToFirst},
                                                        {2.0, SearchOrder::kAscending},
                                                        {-2.0, SearchOrder::kDescending}};
  const auto chosen = [&read](const auto& choices, double number) {
    for (const auto& [choice, meaning] : choices) {
      if (choice == number) return meaning;
    }
    read.Fail(ErrorCode::kValue);
    return choices[0].second;
  };
  const double mode = read.IsOmitted(index) ? 0.0 : read.Whole(index);
  const double order = read.IsOmitted(index + 1) ? 1.0 : read.Whole(index + 1);
  const HowToSearch how{chosen(kModes, mode), chosen(kOrders, order)};
  const bool halves = how.order == SearchOrder::kAscending || how.order == SearchOrder::kDescending;
  read.Require(how.mode != MatchMode::kWildcard || !halves, ErrorCode::kValue);
  return how;
}

/// The value to look for, where a blank finds blank cells.
Value ReadWantedOrBlank(const HowToSearch& how, ArgumentReader& read) {
  if (how.mode == MatchMode::kWildcard && !read.Any(0).IsBlank()) return ReadWanted(read);
  Value wanted = read.Any(0);
  if (const ErrorCode* error = wanted.error()) read.Fail(*error);
  return wanted;
}

Operand XMatch(const BuiltInCall& call) {
  ArgumentReader read(call);
  const HowToSearch how = ReadHowToSearch(2, read);
  const Value wanted = ReadWantedOrBlank(how, read);
  const Rectangle table = ReadRectangle(call, 1, read);
  read.Require(table.IsVector(), ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return PositionResult(Search(wanted, SearchVector::Of(table, call.context), how.mode, how.order));
}

Operand XLookup(const BuiltInCall& call) {
  ArgumentReader read(call);
  const HowToSearch how = ReadHowToSearch(4, read);
  const Value wanted = ReadWantedOrBlank(how, read);
  const Rectangle table = ReadRectangle(call, 1, read);
  const Rectangle results = ReadRectangle(call, 2, read);
  const bool is_column = table.columns() == 1 && (table.rows() > 1 || results.rows() == 1);
  read.Require(table.IsVector(), ErrorCode::kValue);
  read.Require(is_column ? table.rows() == results.rows() : table.columns() == results.columns(),
               ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const auto found = Search(wanted, SearchVector::Of(table, call.context), how.mode, how.order);
  if (!found) return read.IsOmitted(3) ? NotFound() : call.arguments[3];
  return is_column ? results.Part(*found, 0, 1, results.columns())
                   : results.Part(0, *found, results.rows(), 1);
}

/// A coordinate of ADDRESS in R1C1 style.
std::u16string R1C1Part(char16_t letter, double number, bool is_absolute) {
  const std::u16string digits = GeneralText(number);
  return letter + (is_absolute ? digits : u"[" + digits + u"]");
}

Operand Address(const BuiltInCall& call) {
  ArgumentReader read(call);
  const double row = read.Whole(0);
  const double column = read.Whole(1);
  const double form = read.IsOmitted(2) ? 1.0 : read.Whole(2);
  const bool is_a1 = read.IsOmitted(3) || read.Boolean(3);
  const std::u16string sheet = read.Text(4, u"");
  read.Require(row >= 1.0 && row <= kSheetRows && column >= 1.0 && column <= kSheetColumns &&
                   form >= 1.0 && form <= 4.0,
               ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const bool has_absolute_row = form <= 2.0;
  const bool has_absolute_column = form == 1.0 || form == 3.0;
  std::u16string text = read.IsOmitted(4) ? u"" : QuotedSheetName(sheet) + u"!";
  if (is_a1) {
    text += has_absolute_column ? u"$" : u"";
    text += ColumnLetters(static_cast<std::int32_t>(column) - 1);
    text += has_absolute_row ? u"$" : u"";
    text += GeneralText(row);
  } else {
    text += R1C1Part(u'R', row, has_absolute_row) + R1C1Part(u'C', column, has_absolute_column);
  }
  if (text.size() > kLongestText) return Value(ErrorCode::kValue);
  return Value(std::u16string_view(text));
}

Operand Areas(const BuiltInCall& call) {
  const ArgumentReader read(call);
  if (const Reference* reference = read.AsReference(0))
    return Value(static_cast<double>(reference->areas.size()));
  const Value value = read.Any(0);
  return value.error() != nullptr ? value : Value(ErrorCode::kValue);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"VLOOKUP", 3, 4, "srs", TableLookup<true>},
    {u"HLOOKUP", 3, 4, "srs", TableLookup<false>},
    {u"LOOKUP", 2, 3, "sx", Lookup},
    {u"MATCH", 2, 3, "srs", Match},
    {u"XMATCH", 2, 4, "srs", XMatch},
    {u"XLOOKUP", 3, 6, "srrrs", XLookup},
    {u"ADDRESS", 2, 5, "s", Address},
    {u"AREAS", 1, 1, "r", Areas},
};

}  // namespace

std::span<const BuiltInFunction> LookupFunctions() { return kFunctions; }

}  // namespace zavhost
