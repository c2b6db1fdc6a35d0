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
/// - At most one parameter for a data set, a policy and a way with errors, and at most kEntries.
/// - The entries are in the order of their latest use.
/// - Whatever is held here stays in the ExcelDataCache through its pruning: the working set of the
///   calculation at hand, whatever its size. The latest entry is never pruned.
/// - No data set is held that ReadDataArgument has replaced because its cells changed.
class DatasetParmCache {
 public:
  static constexpr std::size_t kEntries = 32;
  /// Cells' memory that pruning leaves held, the latest parameter's excepted.
  static constexpr std::size_t kBytesAfterPruning = std::size_t{256} << 20;

  DatasetParmCache();
  ~DatasetParmCache();
  DatasetParmCache(const DatasetParmCache&) = delete;
  DatasetParmCache& operator=(const DatasetParmCache&) = delete;

  /// The parameter, found or made; now the latest used.
  std::shared_ptr<const DatasetParm> Get(const std::shared_ptr<ExcelData>& data,
                                         MissingDataPolicy policy, bool propagate_errors);
  /// Lets go of a data set whose cells changed.
  void Forget(const ExcelData* data) noexcept;

  /// Drops the parameters used longest ago until the rest holds no more than kBytesAfterPruning.
  void Prune() noexcept;
  void Clear() noexcept;

  std::size_t size() const { return parms_.size(); }

 private:
  std::vector<std::shared_ptr<const DatasetParm>> parms_;  // latest used first
};

}  // namespace zavrel
