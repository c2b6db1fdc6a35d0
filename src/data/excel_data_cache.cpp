#include "data/excel_data_cache.h"

#include <new>
#include <utility>

#include "data/excel_data.h"
#include "platform/block_pool.h"

namespace zavrel {

ExcelDataCache::ExcelDataCache(Budget limit, Budget after_pruning)
    : limit_(limit), after_pruning_(after_pruning) {}

ExcelDataCache::~ExcelDataCache() { Clear(); }

std::shared_ptr<ExcelData> ExcelDataCache::Find(std::string_view key) {
  const auto found = by_key_.find(key);
  if (found == by_key_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, found->second);
  Measure(*found->second);
  return found->second->data;
}

void ExcelDataCache::Put(std::shared_ptr<ExcelData> data) noexcept {
  if (const auto same = by_key_.find(data->key()); same != by_key_.end()) Erase(same->second);
  try {
    Entries entry;
    entry.push_front({std::move(data), 0});
    by_key_.emplace(entry.front().data->key(), entry.begin());
    entries_.splice(entries_.begin(), entry);
  } catch (const std::bad_alloc&) {
    return;
  }
  MeasureLatest();
  while (entries_.size() > 1 && Exceeds(limit_)) Erase(std::prev(entries_.end()));
}

void ExcelDataCache::Prune() noexcept {
  MeasureLatest();
  auto entry = entries_.end();
  while (Exceeds(after_pruning_) && entry != entries_.begin()) {
    --entry;
    if (entry->data.use_count() > 1) continue;
    const auto dropped = entry++;
    Erase(dropped);
  }
}

void ExcelDataCache::Clear() noexcept {
  by_key_.clear();
  entries_.clear();
  bytes_ = 0;
  sheet_ids_.Clear();
  ReleaseKeptBlocks();
}

// A data set grows by what is computed from it after it was found or put here, in the current call
// or the one before.
void ExcelDataCache::MeasureLatest() noexcept {
  std::size_t left = kMeasured;
  for (auto entry = entries_.begin(); left > 0 && entry != entries_.end(); ++entry, --left)
    Measure(*entry);
}

void ExcelDataCache::Measure(Entry& entry) noexcept {
  const std::size_t bytes = entry.data->bytes();
  bytes_ += bytes - entry.bytes;
  entry.bytes = bytes;
}

void ExcelDataCache::Erase(Entries::iterator entry) noexcept {
  bytes_ -= entry->bytes;
  by_key_.erase(entry->data->key());
  entries_.erase(entry);
}

bool ExcelDataCache::Exceeds(const Budget& budget) const noexcept {
  return entries_.size() > budget.entries || bytes_ > budget.bytes;
}

}  // namespace zavrel
