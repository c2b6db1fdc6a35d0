#include "host/capi/host_memory.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace zavhost {
namespace {

constexpr std::size_t kQuarantined = 512;
constexpr std::size_t kLarge = 256u << 10;
constexpr std::size_t kLargeKept = 4;
constexpr std::size_t kLargestKept = 80u << 20;
// An add-in may keep values between calls, but hardly this many.
constexpr std::size_t kGrowthLimit = 20'000;
constexpr int kFreedPattern = 0xDD;

}  // namespace

HostMemory::Storage HostMemory::TakeLarge(std::size_t bytes, std::size_t& actual) {
  const auto fits = [&](const Block& block) {
    return block.bytes >= bytes && block.bytes / 2 <= bytes;
  };
  const auto found = std::find_if(large_.begin(), large_.end(), fits);
  if (found == large_.end()) return nullptr;
  Storage storage = std::move(found->storage);
  actual = found->bytes;
  large_.erase(found);
  return storage;
}

void* HostMemory::Give(std::size_t bytes, const char* function) {
  bytes = std::max<std::size_t>(bytes, 1);
  Storage storage;
  if (bytes >= kLarge) storage = TakeLarge(bytes, bytes);
  if (!storage) storage = std::make_unique_for_overwrite<std::byte[]>(bytes);
  void* address = storage.get();
  freed_.erase(address);
  held_.emplace(address, Block{std::move(storage), bytes, function, judge_.place()});
  return address;
}

void HostMemory::Free(const void* block) {
  if (block == nullptr) return;
  const auto found = held_.find(block);
  if (found != held_.end()) {
    Block taken = std::move(found->second);
    held_.erase(found);
    Retire(std::move(taken));
  } else if (freed_.contains(block)) {
    judge_.Report(ViolationKind::kFreedTwice, "xlFree was given a value that was already freed");
  } else {
    judge_.Report(ViolationKind::kFreedForeign, "xlFree was given a value that is not the host's");
  }
}

// An address is known as freed only as long as its memory stays in quarantine. Later, any owner may
// get it, including the add-in's own heap.
void HostMemory::Retire(Block block) {
  if (block.bytes > kLargestKept) return;
  freed_.insert(block.storage.get());
  const bool large = block.bytes >= kLarge;
  if (!large) std::memset(block.storage.get(), kFreedPattern, block.bytes);
  std::deque<Block>& kept = large ? large_ : quarantine_;
  kept.push_back(std::move(block));
  if (kept.size() > (large ? kLargeKept : kQuarantined)) {
    freed_.erase(kept.front().storage.get());
    kept.pop_front();
  }
}

void HostMemory::JudgeGrowth() {
  if (growth_reported_ || held_.size() < kGrowthLimit) return;
  growth_reported_ = true;
  judge_.Report(
      ViolationKind::kNotFreed,
      fmt::format("the add-in holds {} of the host's values, and their number keeps growing",
                  held_.size()));
}

void HostMemory::ReportHeld() {
  for (auto& [address, block] : held_) {
    judge_.Report(ViolationKind::kNotFreed,
                  fmt::format("a value returned by {} was never freed", block.function),
                  *block.place);
    // Pointers that still refer to it find valid memory.
    freed_.insert(address);
    quarantine_.push_back(std::move(block));
  }
  held_.clear();
  growth_reported_ = false;
}

}  // namespace zavhost
