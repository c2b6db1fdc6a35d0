#pragma once
// An index of the values of an array for many lookups in it.

#include <cstdint>
#include <optional>
#include <vector>

#include "host/workbook/value.h"

namespace zavhost {

/// The positions of an array's elements in the order of their values. An array never changes, so
/// neither does its index.
class SearchIndex {
 public:
  /// The index of an array that is searched once more; null for a small one and until the third
  /// search, since sorting takes as long as a few of them.
  static const SearchIndex* Of(const ArrayPtr& array);

  explicit SearchIndex(const ArrayPtr& array);
  /// The first position of a value that is neither an error nor blank, or its last one.
  std::optional<std::int32_t> Find(const Value& wanted, bool from_last) const;

 private:
  const Array* array_;
  std::vector<std::int32_t> positions_;
};

}  // namespace zavhost
