#pragma once
// The session's data sets, found by the text of the argument that they came from.

#include <cstddef>
#include <list>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "data/stacked_data.h"

namespace zavrel {

class ExcelData;

/// The session's data sets. Used from Excel's main thread only.
///
/// Invariants:
/// - At most one data set per key text.
/// - Nothing found here is believed for its key alone: ReadDataArgument compares its cells with the
///   host's before anybody uses it, and puts another in its place where they differ.
/// - The entries are in the order of their latest use. What comes in pushes out what was used
///   longest ago, so that the limit holds after every Put.
/// - Prune narrows that to a smaller budget but never drops what somebody else holds. The
///   DatasetParmCache holds the data sets of the latest calls, so functions that read the same range
///   keep sharing one.
/// - bytes() is the sum of what each entry had when it was last measured. An entry grows by what is
///   worked out from it, so the latest ones are measured again whenever the sum is used.
class ExcelDataCache {
 public:
  struct Budget {
    std::size_t entries;
    std::size_t bytes;
  };
  static constexpr Budget kLimit{16384, std::size_t{512} << 20};
  static constexpr Budget kAfterPruning{4096, std::size_t{64} << 20};

  explicit ExcelDataCache(Budget limit = kLimit, Budget after_pruning = kAfterPruning);
  ~ExcelDataCache();
  ExcelDataCache(const ExcelDataCache&) = delete;
  ExcelDataCache& operator=(const ExcelDataCache&) = delete;

  /// The data set under this key, now the latest used; null when there is none.
  std::shared_ptr<ExcelData> Find(std::string_view key);
  /// Adds a data set, in place of the one with the same key. Without memory for the entry the data
  /// set stays uncached.
  void Put(std::shared_ptr<ExcelData> data) noexcept;

  /// Drops what was used longest ago, down to the smaller budget; nothing that others hold.
  void Prune() noexcept;
  /// Drops everything, the memory kept for reuse included.
  void Clear() noexcept;

  /// Kept as long as the session: a handle that was issued stays good whatever is dropped here.
  StackedSelections& stacked_selections() { return stacked_selections_; }

  std::size_t size() const { return entries_.size(); }
  std::size_t bytes() const { return bytes_; }

 private:
  struct Entry {
    std::shared_ptr<ExcelData> data;
    std::size_t bytes;
  };
  using Entries = std::list<Entry>;  // latest used first

  /// So many of the latest used are measured together: more than a call has data arguments, but for
  /// few.
  static constexpr std::size_t kMeasured = 8;

  void MeasureLatest() noexcept;
  void Measure(Entry& entry) noexcept;
  void Erase(Entries::iterator entry) noexcept;
  bool Exceeds(const Budget& budget) const noexcept;

  Budget limit_;
  Budget after_pruning_;
  Entries entries_;
  std::unordered_map<std::string_view, Entries::iterator> by_key_;  // keys stand in the data sets
  std::size_t bytes_ = 0;
  StackedSelections stacked_selections_;
};

}  // namespace zavrel
