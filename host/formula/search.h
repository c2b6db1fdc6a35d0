#pragma once
// The searches of lookup functions in one row or column.

#include <cstdint>
#include <optional>

#include "host/formula/rectangle.h"

namespace zavhost {

enum class MatchMode { kExact, kOrSmaller, kOrLarger, kWildcard };
/// Ascending and descending values are searched by halving.
enum class SearchOrder { kFirstToLast, kLastToFirst, kAscending, kDescending };

/// The values in which a lookup searches. Whole columns and rows end with the used cells; what lies
/// beyond is blank.
class SearchVector {
 public:
  SearchVector(ArrayPtr stored, std::int32_t size) : stored_(std::move(stored)), size_(size) {}
  /// A rectangle with a single row or column.
  static SearchVector Of(const Rectangle& rectangle, EvaluationContext& context);
  static SearchVector OfColumn(const Rectangle& rectangle, EvaluationContext& context);
  static SearchVector OfRow(const Rectangle& rectangle, EvaluationContext& context);

  std::int32_t size() const { return size_; }
  const ArrayPtr& array() const { return stored_; }
  std::int32_t stored() const { return static_cast<std::int32_t>(stored_->values.size()); }
  const Value& operator[](std::int32_t index) const {
    return stored_->values[static_cast<std::size_t>(index)];
  }

 private:
  ArrayPtr stored_;
  std::int32_t size_;
};

/// The position of a value, or of the next smaller or larger one; nothing if there is none. Values
/// of other kinds are passed over. In values that are not sorted as the order says, the result is
/// that of Excel's way of halving: passes over other kinds towards the end, and takes the last of a
/// run of equal values.
std::optional<std::int32_t> Search(const Value& wanted, const SearchVector& in, MatchMode mode,
                                   SearchOrder order);

/// In values that descend: the first that equals, otherwise the last before the first smaller one.
std::optional<std::int32_t> SearchDescending(const Value& wanted, const SearchVector& in);

}  // namespace zavhost
