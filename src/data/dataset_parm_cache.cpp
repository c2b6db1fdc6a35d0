#include "data/dataset_parm_cache.h"

#include <algorithm>
#include <utility>

#include "data/dataset_parm.h"

namespace zavrel {

DatasetParmCache::DatasetParmCache(std::size_t bytes_after_pruning)
    : bytes_after_pruning_(bytes_after_pruning) {
  parms_.reserve(kEntries);
}
DatasetParmCache::~DatasetParmCache() = default;

std::shared_ptr<const DatasetParm> DatasetParmCache::Get(const std::shared_ptr<ExcelData>& data,
                                                         MissingDataPolicy policy,
                                                         bool propagate_errors) {
  const auto found = std::find_if(parms_.begin(), parms_.end(), [&](const auto& parm) {
    return parm->shared_data() == data && parm->policy() == policy &&
           parm->propagate_errors() == propagate_errors;
  });
  if (found != parms_.end()) {
    std::rotate(parms_.begin(), found, found + 1);
    return parms_.front();
  }
  auto parm = std::make_shared<const DatasetParm>(data, policy, propagate_errors);
  if (parms_.size() == kEntries) parms_.pop_back();
  parms_.insert(parms_.begin(), std::move(parm));
  return parms_.front();
}

void DatasetParmCache::Forget(const ExcelData* data) noexcept {
  std::erase_if(parms_, [data](const auto& parm) { return &parm->data() == data; });
}

void DatasetParmCache::Prune() noexcept {
  std::size_t held = 0;
  for (std::size_t i = 0; i < parms_.size(); ++i) {
    held += parms_[i]->data().bytes();
    if (i > 0 && held > bytes_after_pruning_) {
      parms_.resize(i);
      return;
    }
  }
}

void DatasetParmCache::Clear() noexcept { parms_.clear(); }

}  // namespace zavrel
