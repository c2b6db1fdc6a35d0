#pragma once
// Memory that the host hands out with its values and gets back through xlFree.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/capi/judge.h"

namespace zavhost {

class HostMemory {
 public:
  explicit HostMemory(Judge& judge) : judge_(judge) {}

  /// Returns a block of at least `bytes` bytes for the result of `function` (a string literal).
  void* Give(std::size_t bytes, const char* function);
  /// Takes a block back. Accepts null; reports a block that the add-in does not hold.
  void Free(const void* block);
  /// True if this block was handed out and freed recently.
  bool WasFreed(const void* block) const { return freed_.contains(block); }
  /// Reports once if the add-in holds more and more values.
  void JudgeGrowth();
  /// Reports every block that the add-in holds, and takes them back.
  void ReportHeld();

 private:
  using Storage = std::unique_ptr<std::byte[]>;
  struct Block {
    Storage storage;
    std::size_t bytes = 0;
    const char* function = "";
    std::shared_ptr<const Place> place;
  };

  Storage TakeLarge(std::size_t bytes, std::size_t& actual);
  void Retire(Block block);

  Judge& judge_;
  std::unordered_map<const void*, Block> held_;
  std::unordered_set<const void*> freed_;  // the addresses in the next two members
  std::deque<Block> quarantine_;  // small blocks, whose addresses are not reused for a while
  std::deque<Block> large_;       // for reuse, since fresh memory of this size is expensive
  bool growth_reported_ = false;
};

}  // namespace zavhost
