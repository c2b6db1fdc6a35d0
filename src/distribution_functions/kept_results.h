#pragma once
// Results that take long and that several formulas show: fits, tests and rankings of a sample.

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "data/excel_data.h"
#include "data/latest_map.h"
#include "platform/variant_copies.h"

namespace zavrel {

/// A result, or why there is none, for people.
template <class Result>
using ResultOrReason = std::variant<Result, std::string>;

/// The results of a session, found by a key that names the computation with everything but the
/// sample's values. A result belongs to the data set that it was computed from, whatever the
/// reference holds later: it is found only with the serial of this very data set. Excel's main
/// thread only.
template <class Result>
class KeptResults {
 public:
  /// The most results kept; the least recently used are dropped first.
  static constexpr std::size_t kMost = 1024;

  using Pointer = std::shared_ptr<const ResultOrReason<Result>>;

  /// Null if there is none for this data set.
  Pointer Find(const std::string& key, const ExcelData& sample) {
    const Entry* entry = entries_.Use(key);
    return entry != nullptr && entry->serial == sample.serial() ? entry->result : nullptr;
  }
  Pointer Put(const std::string& key, const ExcelData& sample, ResultOrReason<Result> result) {
    auto kept = std::make_shared<const ResultOrReason<Result>>(std::move(result));
    entries_.Put(key, {sample.serial(), kept});
    return kept;
  }
  void Clear() noexcept { entries_.Clear(); }

 private:
  struct Entry {
    std::uint64_t serial = 0;
    Pointer result;
  };
  LatestMap<std::string, Entry> entries_{kMost};
};

}  // namespace zavrel
