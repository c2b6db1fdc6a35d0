#pragma once
// Rank sums of the samples of nonparametric tests, kept for the functions that each show one of
// them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "data/latest_map.h"

namespace zavrel {

/// The ties and the rank sums of a test.
struct RankSumRecord {
  double ties = 0;                 // groups of equal values
  double tie_correction_term = 0;  // sum of t^3 - t over these groups
  double rank_sum_1 = 0;           // of sample 1, or of the negative differences
  double rank_sum_2 = 0;           // of sample 2, or of the positive differences
};

/// The records of a session, found by a key that names the test, its arguments' references and its
/// parameters. A record belongs to the data sets that it was computed from, whatever the references
/// hold later: it is found only with the serials of these very data sets. Excel's main thread only.
class RankSumRecords {
 public:
  /// The most records kept; the least recently used are dropped first.
  static constexpr std::size_t kMost = 4096;

  /// The serials of the data sets; a test of one sample has 0 in the second place.
  using Serials = std::array<std::uint64_t, 2>;

  /// Null if there is no record for these data sets. The record lives until the next change.
  const RankSumRecord* Find(const std::string& key, const Serials& serials) {
    const Entry* entry = entries_.Use(key);
    return entry != nullptr && entry->serials == serials ? &entry->record : nullptr;
  }
  void Put(const std::string& key, const Serials& serials, const RankSumRecord& record) {
    entries_.Put(key, {serials, record});
  }
  void Clear() noexcept { entries_.Clear(); }
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    Serials serials;
    RankSumRecord record;
  };
  LatestMap<std::string, Entry> entries_{kMost};
};

}  // namespace zavrel
