#include "calc/call_index.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>

namespace zavcalc {
namespace {

using zavhost::Array;
using zavhost::ArrayPtr;
using zavhost::Operand;
using zavhost::Value;
using Kind = SiteArgument::Kind;

/// Arguments beyond these are not looked at here.
constexpr std::size_t kMostArguments = 64;
/// Of larger ranges only so many values are compared here.
constexpr std::int32_t kSampledValues = 64;

enum Mark : std::uint64_t { kNumberMark = 1, kTextMark, kErrorMark, kMissingMark, kArrayMark };

bool Has(std::uint64_t bits, std::size_t index) {
  return index < kMostArguments && ((bits >> index) & 1U) != 0;
}

/// A value as Calc passes it: a boolean as a number, a blank cell of a range as "".
std::uint64_t MarkOf(const Value& value) {
  if (const double* number = value.number())
    return Mixed(kNumberMark, std::bit_cast<std::uint64_t>(*number + 0.0));
  if (const bool* boolean = value.boolean()) return MarkOf(Value(*boolean ? 1.0 : 0.0));
  if (const auto* error = value.error())
    return Mixed(kErrorMark, static_cast<std::uint64_t>(*error));
  const std::u16string* text = value.text();
  return Mixed(kTextMark, std::hash<std::u16string_view>{}(text == nullptr ? u"" : *text));
}

std::uint64_t ShapeMark(std::int32_t rows, std::int32_t columns) {
  return Mixed(static_cast<std::uint64_t>(rows), static_cast<std::uint64_t>(columns));
}

std::uint64_t MarkOf(const Array& array) {
  std::uint64_t mark = Mixed(kArrayMark, ShapeMark(array.rows, array.columns));
  for (const Value& value : array.values) mark = Mixed(mark, MarkOf(value));
  return mark;
}

std::uint64_t MarkOfLiteral(const SiteArgument& argument) {
  switch (argument.kind) {
    case Kind::kMissing:
      return kMissingMark;
    case Kind::kText:
      return MarkOf(Value(std::u16string_view(argument.text)));
    case Kind::kArray:
      return MarkOf(argument.array);
    default:
      return MarkOf(Value(argument.number));
  }
}

std::uint64_t MarkOf(const Operand& operand) {
  if (const auto* array = std::get_if<ArrayPtr>(&operand)) return MarkOf(**array);
  if (const auto* value = std::get_if<Value>(&operand)) return MarkOf(*value);
  return kMissingMark;
}

std::uint64_t ShapeOf(const Operand& operand) {
  if (const auto* array = std::get_if<ArrayPtr>(&operand))
    return ShapeMark((*array)->rows, (*array)->columns);
  return std::holds_alternative<Value>(operand) ? ShapeMark(1, 1) : kMissingMark;
}

/// The first values of a range. A single blank cell arrives as 0.
std::uint64_t SampleMark(std::span<const Value> values) {
  if (values.size() == 1 && values[0].IsBlank()) return MarkOf(Value(0.0));
  std::uint64_t mark = kArrayMark;
  for (const Value& value : values.first(std::min<std::size_t>(values.size(), kSampledValues)))
    mark = Mixed(mark, MarkOf(value));
  return values.size() == 1 ? MarkOf(values[0]) : mark;
}

std::uint64_t SampleOf(const Operand& operand) {
  if (const auto* array = std::get_if<ArrayPtr>(&operand)) return SampleMark((*array)->values);
  const auto* value = std::get_if<Value>(&operand);
  return value == nullptr ? kMissingMark : SampleMark({value, 1});
}

bool IsLiteral(Kind kind) {
  return kind == Kind::kMissing || kind == Kind::kNumber || kind == Kind::kBoolean ||
         kind == Kind::kText || kind == Kind::kArray;
}

bool IsReference(Kind kind) { return kind == Kind::kReference || kind == Kind::kSeveralSheets; }

/// Where a range lies.
std::uint64_t PlaceMark(const SheetRange& range) {
  std::uint64_t mark = static_cast<std::uint64_t>(range.sheet);
  for (const std::int32_t number :
       {range.first_column, range.first_row, range.last_column, range.last_row})
    mark = Mixed(mark, static_cast<std::uint64_t>(number));
  return mark;
}

/// The first rows, which have as many values as are compared.
SheetRange SampleRange(const SheetRange& range) {
  SheetRange sample = range;
  const std::int32_t rows = std::max(1, (kSampledValues - 1) / ColumnsOf(range) + 1);
  sample.last_row = std::min(range.last_row, range.first_row + rows - 1);
  return sample;
}

std::uint64_t FilledMark(const CallSite& site) {
  return site.filled ? ShapeMark(site.filled->rows, site.filled->columns) : 0;
}

/// What an argument of a call can mean if its values are known.
std::uint64_t MeaningOf(const SiteArgument& argument, RangeContents& contents) {
  std::uint64_t mark = Mixed(static_cast<std::uint64_t>(argument.kind), argument.is_plain ? 1 : 0);
  for (const SheetRange& source : argument.sources) mark = Mixed(mark, contents.KindsMark(source));
  if (argument.kind != Kind::kReference) return mark;
  const SheetRange& range = argument.reference;
  const bool is_sampled = SampleRange(range) != range && !contents.HasFormulas(range);
  return Mixed(Mixed(mark, contents.KindsMark(range)), is_sampled ? PlaceMark(range) : 0);
}

}  // namespace

std::uint64_t Mixed(std::uint64_t mark, std::uint64_t value) {
  std::uint64_t mixed =
      (mark ^ std::rotl(value * 0x9E37'79B9'7F4A'7C15U, 29)) + 0x632B'E59B'D9B4'E019U;
  mixed = (mixed ^ (mixed >> 30U)) * 0xBF58'476D'1CE4'E5B9U;
  mixed = (mixed ^ (mixed >> 27U)) * 0x94D0'49BB'1331'11EBU;
  return mixed ^ (mixed >> 31U);
}

void CallIndex::Add(CallSite site) {
  Form form;
  form.count = site.arguments.size();
  std::uint64_t mark = 0;
  std::uint64_t places = Mixed(form.count, FilledMark(site));
  for (std::size_t i = 0; i < std::min(form.count, kMostArguments); ++i) {
    const SiteArgument& argument = site.arguments[i];
    if (IsLiteral(argument.kind)) {
      form.literals |= std::uint64_t{1} << i;
      mark = Mixed(mark, MarkOfLiteral(argument));
    } else if (IsReference(argument.kind)) {
      form.references |= std::uint64_t{1} << i;
      mark = Mixed(mark, ShapeMark(RowsOf(argument.reference), ColumnsOf(argument.reference)));
      places = Mixed(places, PlaceMark(argument.reference));
    }
    places = Mixed(places, static_cast<std::uint64_t>(argument.kind));
  }
  const int described = std::popcount(form.literals) + std::popcount(form.references);
  if (std::cmp_equal(described, form.count) && !known_.insert(Mixed(mark, places)).second) return;
  forms_[form][mark].sites.push_back(std::move(site));
}

std::vector<AlikeCalls> CallIndex::Find(std::span<const Operand> arguments,
                                        RangeContents& contents) {
  std::vector<AlikeCalls> found;
  for (auto& [form, groups] : forms_) {
    if (form.count > arguments.size()) continue;
    std::uint64_t mark = 0;
    for (std::size_t i = 0; i < form.count; ++i) {
      if (Has(form.literals, i)) mark = Mixed(mark, MarkOf(arguments[i]));
      if (Has(form.references, i)) mark = Mixed(mark, ShapeOf(arguments[i]));
    }
    if (const auto group = groups.find(mark); group != groups.end())
      FindIn(group->second, arguments, contents, found);
  }
  return found;
}

void CallIndex::FindIn(Group& group, std::span<const Operand> arguments, RangeContents& contents,
                       std::vector<AlikeCalls>& found) {
  if (group.sites.size() == 1) return found.push_back({group.sites.data(), 1});
  if (!group.is_sorted) Sort(group, contents);
  for (const auto& [constants, by_mark] : group.by_constants) {
    std::uint64_t mark = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (Has(constants, i)) mark = Mixed(mark, SampleOf(arguments[i]));
    }
    if (const auto alike = by_mark.find(mark); alike != by_mark.end())
      found.insert(found.end(), alike->second.begin(), alike->second.end());
  }
}

void CallIndex::Sort(Group& group, RangeContents& contents) {
  std::unordered_map<std::uint64_t, std::size_t> places;
  for (const CallSite& site : group.sites) {
    std::uint64_t constants = 0;
    std::uint64_t mark = 0;
    std::uint64_t meaning = FilledMark(site);
    for (std::size_t i = 0; i < std::min(site.arguments.size(), kMostArguments); ++i) {
      const SiteArgument& argument = site.arguments[i];
      meaning = Mixed(meaning, MeaningOf(argument, contents));
      if (argument.kind != Kind::kReference || contents.HasFormulas(argument.reference)) continue;
      constants |= std::uint64_t{1} << i;
      mark = Mixed(mark, SampleMark(contents.ValuesOf(SampleRange(argument.reference))));
    }
    auto& calls = group.by_constants[constants][mark];
    const auto [place, is_new] =
        places.try_emplace(Mixed(Mixed(constants, mark), meaning), calls.size());
    if (is_new) {
      calls.push_back({&site, 1});
    } else {
      ++calls[place->second].count;
    }
  }
  group.is_sorted = true;
}

}  // namespace zavcalc
