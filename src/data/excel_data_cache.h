#pragma once
// The session's data sets, found by the key text of their arguments.

#include <cstddef>
#include <list>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "data/sheet_ids.h"
#include "data/stacked_data.h"

namespace zavrel {

class ExcelData;

/// The session's data sets. Used from Excel's main thread only.
///
/// Invariants:
/// - At most one data set per key text.
/// - A key alone proves nothing. ReadDataArgument compares the cells of a data set found here with
///   the host's before it is used, and replaces it if they differ; ReadStackedData does the same
///   with the serials of the data sets that its result came from.
/// - The entries are ordered by their latest use. A new one pushes out the least recently used, so
///   the limit holds after every Put, unless a single entry exceeds it.
/// - Prune goes down to a smaller budget but never drops a data set that is also held elsewhere.
///   The DatasetParmCache holds the data sets of the latest calls, so functions that read the same
///   range keep sharing one.
/// - bytes() is the sum of the entries' sizes when they were last measured. An entry grows by what
///   is computed from it, so the latest ones are measured again before the sum is used.
class ExcelDataCache {
 public:
  struct Budget {
    std::size_t entries;
    std::size_t bytes;
  };
  static constexpr Budget kLimit{16384, std::size_t{256} << 20};
  static constexpr Budget kAfterPruning{4096, std::size_t{64} << 20};

  explicit ExcelDataCache(Budget limit = kLimit, Budget after_pruning = kAfterPruning);
  ~ExcelDataCache();
  ExcelDataCache(const ExcelDataCache&) = delete;
  ExcelDataCache& operator=(const ExcelDataCache&) = delete;

  /// The data set under this key, which becomes the latest used; null if there is none.
  std::shared_ptr<ExcelData> Find(std::string_view key);
  /// Adds a data set and drops the one with the same key. If there is no memory for the entry, the
  /// data set stays uncached.
  void Put(std::shared_ptr<ExcelData> data) noexcept;

  /// Drops the least recently used data sets down to the smaller budget, but none that is held
  /// elsewhere.
  void Prune() noexcept;
  /// Drops everything and releases the memory kept for reuse.
  void Clear() noexcept;

  /// Kept as long as the session: a handle stays valid whatever data sets are dropped here.
  StackedSelections& stacked_selections() { return stacked_selections_; }

  /// For the keys of data sets.
  SheetIds& sheet_ids() { return sheet_ids_; }

  std::size_t size() const { return entries_.size(); }
  std::size_t bytes() const { return bytes_; }

 private:
  struct Entry {
    std::shared_ptr<ExcelData> data;
    std::size_t bytes;
  };
  using Entries = std::list<Entry>;  // latest used first

  /// How many of the latest used are measured together: nearly every call has fewer data arguments.
  static constexpr std::size_t kMeasured = 8;

  void MeasureLatest() noexcept;
  void Measure(Entry& entry) noexcept;
  void Erase(Entries::iterator entry) noexcept;
  bool Exceeds(const Budget& budget) const noexcept;

  Budget limit_;
  Budget after_pruning_;
  Entries entries_;
  std::unordered_map<std::string_view, Entries::iterator> by_key_;  // the data sets own the keys
  std::size_t bytes_ = 0;
  SheetIds sheet_ids_;
  StackedSelections stacked_selections_;
};

}  // namespace zavrel
