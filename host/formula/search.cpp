#include "host/formula/search.h"

#include "host/formula/coercion.h"
#include "host/formula/search_index.h"
#include "host/formula/wildcards.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

using Position = std::optional<std::int32_t>;

/// The first position for which the condition holds.
template <typename Condition>
Position Find(const SearchVector& in, bool from_last, const Condition& condition) {
  const std::int32_t count = in.stored();
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t at = from_last ? count - 1 - i : i;
    if (condition(in[at])) return at;
  }
  return std::nullopt;
}

Position FindBlank(const SearchVector& in, bool from_last) {
  const bool has_more = in.size() > in.stored();
  if (from_last && has_more) return in.size() - 1;
  const Position found = Find(in, from_last, [](const Value& value) { return value.IsBlank(); });
  return found || !has_more ? found : in.stored();
}

Position FindEqual(const Value& wanted, const SearchVector& in, bool from_last) {
  if (wanted.IsBlank()) return FindBlank(in, from_last);
  if (const SearchIndex* index = SearchIndex::Of(in.array())) return index->Find(wanted, from_last);
  if (const double* number = wanted.number()) {
    return Find(in, from_last, [number](const Value& value) {
      return value.number() != nullptr && *value.number() == *number;
    });
  }
  if (const std::u16string* text = wanted.text()) {
    return Find(in, from_last, [text](const Value& value) {
      return value.text() != nullptr && EqualIgnoringCase(*value.text(), *text);
    });
  }
  return Find(in, from_last, [&wanted](const Value& value) { return value == wanted; });
}

Position FindPattern(const Value& wanted, const SearchVector& in, bool from_last) {
  if (wanted.text() == nullptr) return FindEqual(wanted, in, from_last);
  const WildcardPattern pattern(*wanted.text());
  if (const std::u16string* plain = pattern.plain())
    return FindEqual(Value(std::u16string_view(*plain)), in, from_last);
  return Find(in, from_last, [&pattern](const Value& value) {
    return value.text() != nullptr && pattern.Matches(*value.text());
  });
}

/// The next value in a direction (-1 smaller, 1 larger) in values that are not sorted.
Position FindNearest(const Value& wanted, const SearchVector& in, int direction, bool from_last) {
  Position best;
  const std::int32_t count = in.stored();
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t at = from_last ? count - 1 - i : i;
    if (!AreOfOneKind(in[at], wanted) || CompareValues(in[at], wanted) * direction < 0) continue;
    if (!best || CompareValues(in[at], in[*best]) * direction < 0) best = at;
  }
  return best;
}

/// The first value of the wanted kind in a range of positions.
Position NextOfKind(const Value& wanted, const SearchVector& in, std::int32_t first,
                    std::int32_t last) {
  for (std::int32_t at = first; at <= last; ++at) {
    if (AreOfOneKind(in[at], wanted)) return at;
  }
  return std::nullopt;
}

/// The last value that does not come after the wanted one; `sign` is -1 for descending values.
Position Halve(const Value& wanted, const SearchVector& in, int sign) {
  const std::int32_t count = in.stored();
  Position found;
  std::int32_t low = 0;
  std::int32_t high = count - 1;
  while (low <= high) {
    const std::int32_t middle = low + (high - low) / 2;
    const Position probe = NextOfKind(wanted, in, middle, high);
    const int order = probe ? CompareValues(in[*probe], wanted) * sign : 1;
    if (order > 0) {
      high = middle - 1;
      continue;
    }
    found = probe;
    low = *probe + 1;
    if (order < 0) continue;
    const auto is_equal = [&](std::int32_t at) {
      return AreOfOneKind(in[at], wanted) && CompareValues(in[at], wanted) == 0;
    };
    while (*found + 1 < count && is_equal(*found + 1)) ++*found;
    return found;
  }
  return found;
}

Position SearchSorted(const Value& wanted, const SearchVector& in, MatchMode mode, int sign) {
  if (wanted.IsBlank()) return FindBlank(in, false);
  const Position floor = Halve(wanted, in, sign);
  if (floor && CompareValues(in[*floor], wanted) == 0) return floor;
  if (mode == MatchMode::kExact) return std::nullopt;
  // In descending values, the last one that does not come after the wanted one is larger.
  const bool is_floor = (mode == MatchMode::kOrSmaller) == (sign > 0);
  return is_floor ? floor : NextOfKind(wanted, in, floor ? *floor + 1 : 0, in.stored() - 1);
}

}  // namespace

SearchVector SearchVector::Of(const Rectangle& rectangle, EvaluationContext& context) {
  return rectangle.columns() == 1 ? OfColumn(rectangle, context) : OfRow(rectangle, context);
}

SearchVector SearchVector::OfColumn(const Rectangle& rectangle, EvaluationContext& context) {
  return {rectangle.Column(0, context, RangeExtent::kUsed), rectangle.rows()};
}

SearchVector SearchVector::OfRow(const Rectangle& rectangle, EvaluationContext& context) {
  return {rectangle.Row(0, context, RangeExtent::kUsed), rectangle.columns()};
}

Position Search(const Value& wanted, const SearchVector& in, MatchMode mode, SearchOrder order) {
  if (order == SearchOrder::kAscending) return SearchSorted(wanted, in, mode, 1);
  if (order == SearchOrder::kDescending) return SearchSorted(wanted, in, mode, -1);
  const bool from_last = order == SearchOrder::kLastToFirst;
  if (mode == MatchMode::kWildcard) return FindPattern(wanted, in, from_last);
  if (mode == MatchMode::kExact || wanted.IsBlank()) return FindEqual(wanted, in, from_last);
  return FindNearest(wanted, in, mode == MatchMode::kOrSmaller ? -1 : 1, from_last);
}

Position SearchDescending(const Value& wanted, const SearchVector& in) {
  Position found;
  for (std::int32_t at = 0; at < in.stored(); ++at) {
    if (!AreOfOneKind(in[at], wanted)) continue;
    const int order = CompareValues(in[at], wanted);
    if (order < 0) break;
    found = at;
    if (order == 0) break;
  }
  return found;
}

}  // namespace zavhost
