#pragma once
// Ranks of the samples of nonparametric tests, kept for the functions that each show one number of
// them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "data/latest_map.h"

namespace zavrel {

/// The ties and the rank sums of a test, in the order in which its functions show them.
struct RankSumRecord {
  double ties = 0;                 // groups of equal values
  double tie_correction_term = 0;  // sum of t^3 - t over these
  double rank_sum_1 = 0;           // of sample 1, of the negative differences
  double rank_sum_2 = 0;           // of sample 2, of the positive differences
};

/// The records of a session, found by a key that names the test, its arguments' references and its
/// parameters. A record goes with the data sets that it was computed from and not with whatever the
/// references hold later: it is found only for these very data sets, by their serials. Excel's main
/// thread only.
class RankSumRecords {
 public:
  /// So many are kept; those go first that were used longest ago.
  static constexpr std::size_t kMost = 4096;

  /// The serials of the data sets; a test of one sample has 0 in the second place.
  using Serials = std::array<std::uint64_t, 2>;

  /// Null when there is none for these data sets. It lives until the next change.
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
