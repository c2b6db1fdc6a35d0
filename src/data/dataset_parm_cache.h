#pragma once
// The data-set parameters of the latest calls.

#include <cstddef>
#include <memory>
#include <vector>

#include "data/missing_data_policy.h"

namespace zavrel {

class DatasetParm;
class ExcelData;

/// The parameters of the latest calls. Used from Excel's main thread only.
///
/// Invariants:
/// - At most one parameter per data set, policy and treatment of errors; at most kEntries in all.
/// - The entries are ordered by their latest use.
/// - A data set held here survives the pruning of the ExcelDataCache: this is the working set of
///   the current calculation, whatever its size. The latest entry is never pruned.
/// - A data set that was replaced because its cells changed is not held.
class DatasetParmCache {
 public:
  static constexpr std::size_t kEntries = 32;
  /// Bytes of data sets that pruning leaves held; the latest parameter's stays even if it has more.
  static constexpr std::size_t kBytesAfterPruning = std::size_t{256} << 20;

  explicit DatasetParmCache(std::size_t bytes_after_pruning = kBytesAfterPruning);
  ~DatasetParmCache();
  DatasetParmCache(const DatasetParmCache&) = delete;
  DatasetParmCache& operator=(const DatasetParmCache&) = delete;

  /// The parameter, found or newly made; it becomes the latest used.
  std::shared_ptr<const DatasetParm> Get(const std::shared_ptr<ExcelData>& data,
                                         MissingDataPolicy policy, bool propagate_errors);
  /// Drops the parameters of a data set whose cells changed.
  void Forget(const ExcelData* data) noexcept;

  /// Drops the least recently used parameters until the rest hold no more bytes than pruning
  /// leaves.
  void Prune() noexcept;
  void Clear() noexcept;

  std::size_t size() const { return parms_.size(); }

 private:
  std::size_t bytes_after_pruning_;
  std::vector<std::shared_ptr<const DatasetParm>> parms_;  // latest used first
};

}  // namespace zavrel
